// `vesk icons`: checks an icons file, and draws its sheet for people to look at.

#include "app/commands.h"

#include "display/icons.h"
#include "host/scene/formats/atomic_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <locale>
#include <numbers>
#include <sstream>

namespace vesk::app {

namespace {

constexpr int kColumns = 8;
constexpr double kCell = 96;        ///< pixels of the sheet
constexpr double kLabel = 18;       ///< of them below each icon
constexpr double kZoom = 2.4;       ///< sheet pixels a pixel of the viewport
constexpr double kSceneZoom = 1250; ///< sheet pixels a unit of a 3D element's points

struct SheetPoint {
    double x, y;
};

/// Flat elements as they are; those of the scene seen from the right and above.
std::vector<SheetPoint> pointsOf(const display::IconElement& element) {
    const double turn = std::numbers::pi / 5, tilt = std::numbers::pi / 7;
    std::vector<SheetPoint> points;
    const int stride = element.is3D ? 3 : 2;
    for (int i = 0; i + stride <= element.pointValueCount; i += stride) {
        const float* p = element.points + i;
        if (!element.is3D) {
            points.push_back({kZoom * p[0], 0 - kZoom * p[1]});
            continue;
        }
        const double across = p[0] * std::cos(turn) - p[2] * std::sin(turn);
        const double away = -p[0] * std::sin(turn) - p[2] * std::cos(turn);
        points.push_back(
            {kSceneZoom * across, 0 - kSceneZoom * (p[1] * std::cos(tilt) + away * std::sin(tilt))});
    }
    return points;
}

std::string plainText(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        const bool isPlain = c >= ' ' && c < 127 && c != '&' && c != '<' && c != '>';
        safe += isPlain ? c : '?';
    }
    return safe;
}

/// The host draws numbers that are none or far off as it likes; a sheet leaves them out.
bool isDrawable(const std::vector<SheetPoint>& points) {
    for (const auto& point : points) {
        if (!(std::abs(point.x) < 1e6 && std::abs(point.y) < 1e6)) return false;
    }
    return !points.empty();
}

void draw(std::ostream& out, const display::IconElement& element) {
    const auto points = pointsOf(element);
    if (!isDrawable(points)) return;
    const auto channel = [&](int i) {
        const float value = element.color[i];
        return value > 0 ? static_cast<int>(std::lround(255 * std::min(value, 1.0F))) : 0;
    };
    std::ostringstream color;
    color << "rgb(" << channel(0) << ',' << channel(1) << ',' << channel(2) << ')';
    out << (element.type == display::kLines ? "    <polyline" : "    <polygon") << " points=\"";
    for (const auto& point : points)
        out << (&point == points.data() ? "" : " ") << point.x << ',' << point.y;
    if (element.type == display::kPolygon) {
        out << "\" fill=\"" << color.str() << "\" fill-opacity=\"" << element.alpha << "\"/>\n";
    } else {
        out << "\" fill=\"none\" stroke=\"" << color.str() << "\" stroke-opacity=\"" << element.alpha
            << "\" stroke-width=\"" << element.width << "\" stroke-linejoin=\"round\"/>\n";
    }
}

/// All icons in rows of eight, each with its ordinal below it.
std::string sheet() {
    const auto count = static_cast<int>(display::iconDefinitions.size());
    const int rows = (count + kColumns - 1) / kColumns;
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kColumns * kCell << "\" height=\""
        << rows * (kCell + kLabel) << "\">\n"
        << "  <rect width=\"100%\" height=\"100%\" fill=\"rgb(46,48,52)\"/>\n";
    for (const auto& [ordinal, names] : display::iconDefinitions) {
        const double x = (ordinal % kColumns + 0.5) * kCell;
        const double y = static_cast<double>(ordinal / kColumns) * (kCell + kLabel) + kCell / 2;
        out << "  <g transform=\"translate(" << x << ' ' << y << ")\">\n    <title>";
        for (const auto& name : names)
            out << (&name == names.data() ? "" : " ") << plainText(name);
        out << "</title>\n";
        for (const auto& name : names)
            draw(out, display::iconElements.at(name));
        out << "    <text y=\"" << kCell / 2 + 6
            << "\" font-family=\"sans-serif\" font-size=\"12\" fill=\"rgb(170,174,180)\" "
               "text-anchor=\"middle\">"
            << ordinal << "</text>\n  </g>\n";
    }
    out << "</svg>\n";
    return out.str();
}

} // namespace

int checkIcons(const IconsOptions& options) {
    if (!display::readIconFileLines(options.file)) {
        std::fprintf(stderr, "vesk: cannot read '%s'\n", options.file.c_str());
        return kFailed;
    }
    const auto faults = display::parseIconFileLines();
    if (!options.svg.empty()) {
        formats::AtomicFile file(options.svg);
        file.write(sheet());
        if (auto outcome = file.commit(); !outcome) {
            std::fprintf(stderr, "vesk: %s\n", outcome.error.c_str());
            return kFailed;
        }
    }
    return faults.errors > 0 ? kFailed : kAllDone;
}

} // namespace vesk::app
