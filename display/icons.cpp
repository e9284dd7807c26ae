#include "display/icons.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace vesk::display {

std::map<std::string, IconElement> iconElements;
std::map<int, std::vector<std::string>> iconDefinitions;
std::vector<std::string> iconFileLines;

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";
constexpr const char* kPlaceholder = "PLACEHOLDER";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

using Words = std::vector<std::string>;

Words wordsOf(std::string_view line) {
    Words words;
    std::size_t at = 0;
    while ((at = line.find_first_not_of(kWhiteSpace, at)) != std::string_view::npos) {
        const auto end = std::min(line.find_first_of(kWhiteSpace, at), line.size());
        words.emplace_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

/// The lines as words, and where what is wrong with them is told.
class Parser {
  public:
    Parser() {
        for (const auto& line : iconFileLines)
            lines_.push_back(wordsOf(line));
    }

    void readElements() {
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            if (lines_[i].size() < 2 || lines_[i][0] != "<element>") continue;
            readBlock(i + 1);
            iconElements[lines_[i][1]] = record_;
        }
    }

    void readIcons() {
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            const Words& words = lines_[i];
            if (words.empty() || words[0] != "<icon>") continue;
            const bool isKnown = std::all_of(words.begin() + 1, words.end(),
                                             [](const auto& name) { return iconElements.contains(name); });
            if (words.size() > 1 && isKnown) {
                iconDefinitions[static_cast<int>(iconDefinitions.size())].assign(words.begin() + 1,
                                                                                 words.end());
            } else {
                std::printf("ERROR: line %zu: icon definition contains invalid element names.\n", i + 1);
                ++faults_.errors;
            }
        }
    }

    void addPlaceholder() {
        iconElements[kPlaceholder] = record_;
        iconDefinitions[0] = {kPlaceholder};
    }

    IconFaults faults() const { return faults_; }

  private:
    bool endsBlock(const Words& words) const {
        return words.size() > 1 && (words[0] == "<element>" || words[0] == "<icon>");
    }

    /// Properties from this line on. What the block leaves out keeps the value of the block before: there is
    /// one working record, and files rely on it.
    void readBlock(std::size_t first) {
        bool is3D = record_.is3D;
        int type = record_.type;
        std::size_t end = first;
        for (; end < lines_.size() && !endsBlock(lines_[end]); ++end) {
            const Words& words = lines_[end];
            if (words.size() < 2) continue;
            // How points are checked depends on these two, wherever in the block they stand.
            if (words[0] == "<is3D>") is3D = std::atoi(words[1].c_str()) != 0;
            if (words[0] == "<type>") type = std::atoi(words[1].c_str());
        }
        if (type > kLines) return;
        for (std::size_t i = first; i < end; ++i) {
            if (lines_[i].size() > 1) readProperty(i, is3D, type);
        }
    }

    void readProperty(std::size_t line, bool is3D, int type) {
        const Words& words = lines_[line];
        const std::string& tag = words[0];
        const auto number = [&] { return static_cast<float>(std::atof(words[1].c_str())); };
        const auto isOn = [&] { return std::atoi(words[1].c_str()) != 0; };
        if (tag == "<points>") {
            readPoints(line, is3D, type);
        } else if (tag == "<color>") {
            if (words.size() != 4) return warn(line, "tag <color> should contain exactly 3 values.");
            for (std::size_t i = 0; i < 3; ++i)
                record_.color[i] = static_cast<float>(std::atof(words[i + 1].c_str()));
        } else if (tag == "<alpha>") {
            record_.alpha = number();
        } else if (tag == "<type>") {
            record_.type = std::atoi(words[1].c_str());
        } else if (tag == "<width>") {
            record_.width = number();
        } else if (tag == "<scalable_lines_width>") {
            record_.scalableLinesWidth = isOn();
        } else if (tag == "<antialias>") {
            record_.antialias = isOn();
        } else if (tag == "<outline>") {
            record_.outline = isOn();
        } else if (tag == "<is3D>") {
            record_.is3D = isOn();
        }
    }

    void readPoints(std::size_t line, bool is3D, int type) {
        const Words& words = lines_[line];
        std::size_t count = words.size() - 1;
        if (count > kMaxPointValues) {
            warn(line, "too many point coordinates. The first 90 values will be used.");
            count = kMaxPointValues;
        }
        if (const char* fault = is3D ? faultOf3D(count, type) : faultOf2D(count, type))
            return warn(line, fault);
        for (std::size_t i = 0; i < count; ++i)
            record_.points[i] = static_cast<float>(std::atof(words[i + 1].c_str()));
        record_.pointValueCount = static_cast<std::int32_t>(count);
    }

    /// Two values of a third point pass, deliberately.
    static const char* faultOf3D(std::size_t count, int type) {
        if (type == kPolygon && count < 9) return "at least 9 values (3 3D points) should be provided.";
        if ((type == kLineLoop || type == kLines) && count < 6)
            return "at least 6 values (2 3D points) should be provided.";
        return count % 3 == 1 ? "insufficient number of (XYZ) point coordinates." : nullptr;
    }

    /// Lines have no lower limit in screen space, deliberately.
    static const char* faultOf2D(std::size_t count, int type) {
        if (type == kPolygon && count < 6) return "at least 6 values (3 2D points) should be provided.";
        if (type == kLineLoop && count < 4) return "at least 4 values (2 2D points) should be provided.";
        return count % 2 == 1 ? "odd number of (XY) point coordinates." : nullptr;
    }

    void warn(std::size_t line, const char* text) {
        std::printf("WARNING: line %zu: %s\n", line + 1, text);
        ++faults_.warnings;
    }

    std::vector<Words> lines_;
    IconElement record_;
    IconFaults faults_;
};

} // namespace

bool readIconFileLines(const std::string& path) {
    std::error_code ignored;
    std::ifstream file;
    if (!std::filesystem::is_directory(path, ignored)) file.open(path, std::ios::binary);
    if (!file.is_open()) return false;
    iconFileLines.clear();
    for (std::string line; std::getline(file, line);)
        iconFileLines.emplace_back(trimmed(line));
    return true;
}

IconFaults parseIconFileLines() {
    iconElements.clear();
    iconDefinitions.clear();
    Parser parser;
    parser.readElements();
    parser.readIcons();
    std::printf("INFO: %zu element(s) loaded.\n", iconElements.size());
    std::printf("INFO: %zu icon(s) loaded.\n", iconDefinitions.size());
    if (iconDefinitions.empty()) parser.addPlaceholder();
    return parser.faults();
}

IconFaults loadIconsFile(const std::string& path) {
    (void)readIconFileLines(path);
    return parseIconFileLines();
}

} // namespace vesk::display
