#pragma once
// The text of the six procedures that carry the user's blocks, and the way back from a line of that text to
// the user's own line.

#include <string>
#include <string_view>

namespace vesk::nodes {

/// In the order in which they run.
enum class PointBlock { kPosition, kWeight, kColor, kNormal, kRadius, kMap };
inline constexpr PointBlock kPointBlocks[] = {PointBlock::kPosition, PointBlock::kWeight, PointBlock::kColor,
                                              PointBlock::kNormal,   PointBlock::kRadius, PointBlock::kMap};

/// `position_POINT` and its five siblings.
const char* procedureName(PointBlock block);
/// The attribute that holds the user's text: `stringPosition` ...
const char* blockAttribute(PointBlock block);
/// Numbers that the procedure returns for each point (for each UV in the map block).
unsigned numbersPerPoint(PointBlock block);

/// Full names (`node.attribute`) of the plugs that the procedures read.
struct PointPlugs {
    std::string ids, mapIds, mapVertices;
    std::string positions, positions2, colors, colors2, weights, weights2, normals, normals2, radii, radii2;
    std::string sharedMap, sharedMap2, map, map2;
};

/// All that goes into the texts of one compute.
struct PointScript {
    std::string node;
    std::string frame; ///< the current time as the host writes numbers
    PointPlugs plugs;
    std::string startText, endText; ///< the blocks around the loop
};

/// Where a line of a procedure comes from.
struct PointLine {
    const char* attribute = nullptr; ///< the text that it belongs to; null: none, the line is generated
    int line = 0;                    ///< within that text, from 1
};

/// A procedure ready to be defined.
class PointProcedure {
  public:
    /// `count` is the number of points that the loop visits, `text` the user's block.
    PointProcedure(PointBlock block, const PointScript& script, std::string_view text, unsigned count);

    const std::string& text() const { return text_; }
    /// `line` counts from 1.
    PointLine origin(int line) const;
    /// What an error message of the host says, with the user's line and the generated line in front:
    /// `stringPosition, line 2 (line 31 of position_POINT): Cannot find procedure "nope".`
    std::string explain(std::string_view message) const;

  private:
    struct Part {
        const char* attribute;
        int first, last; ///< lines
    };
    void add(std::string_view piece) { text_ += piece; }
    Part addUserText(const char* attribute, std::string_view piece, std::string_view behind);
    void addDeclarations(const PointScript& script, unsigned count);
    void addFetches(const PointPlugs& plugs);
    void addLoopHead(unsigned count);
    int lineOf(std::string_view message) const;

    PointBlock block_;
    std::string text_;
    Part parts_[3] = {}; ///< start, block, end
};

} // namespace vesk::nodes
