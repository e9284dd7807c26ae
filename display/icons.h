#pragma once
// The icons of the viewport: a line-oriented text file, its parser, and the tables that every display node
// shares.
//
// A line is trimmed and split on white space; its first word is the tag. An element block is `<element> name`
// and the property lines behind it, up to the next element or icon line; `<icon> name name ...` is one icon,
// drawn in the order of its elements. Icons have no names: nodes choose them by their ordinal among the valid
// icon lines, from 0. Lines with any other first word are passed over.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vesk::display {

/// Numbers that a `<points>` line may have.
constexpr int kMaxPointValues = 90;

enum IconPrimitive : std::int32_t { kPolygon = 0, kLineLoop = 1, kLines = 2 };

struct IconElement {
    std::int32_t pointValueCount = 0;
    float points[kMaxPointValues] = {}; ///< pairs in pixels, or triples in units of the icon, by `is3D`
    float color[3] = {};
    float alpha = 0;
    std::int32_t type = kPolygon; ///< an IconPrimitive; the file may hold other numbers below 3
    float width = 0;              ///< of lines, in pixels
    bool scalableLinesWidth = false;
    bool antialias = false;
    bool outline = false; ///< takes the selection colour while the icon is selected
    bool is3D = false;    ///< in the scene, else in screen space at constant size
};

/// Faults that the last parse reported.
struct IconFaults {
    int warnings = 0;
    int errors = 0;
};

// Process-wide; they outlive the nodes. Use them from the drawing thread alone.

extern std::map<std::string, IconElement> iconElements;
extern std::map<int, std::vector<std::string>> iconDefinitions; ///< by ordinal, names in drawing order
extern std::vector<std::string> iconFileLines;                  ///< trimmed, of the last file that was read

/// Reads the file and rebuilds both tables. A file that cannot be read leaves the lines of the one before,
/// and the tables are built from those again.
IconFaults loadIconsFile(const std::string& path);

/// False, and nothing changed, when the path names no file that can be read.
bool readIconFileLines(const std::string& path);

/// Rebuilds both tables from `iconFileLines`. Faults and the two counts go to standard output; none stops it.
/// Without one valid icon there is an icon 0 of an element "PLACEHOLDER", so that there is always one to look
/// up.
IconFaults parseIconFileLines();

} // namespace vesk::display
