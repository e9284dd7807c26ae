#include "host/mel/error.h"

#include <algorithm>

namespace vesk::mel {

namespace {

constexpr std::size_t kExcerpt = 100;      ///< bytes of a line that an excerpt shows
constexpr std::size_t kInnermostShown = 8; ///< procedures that an error lists
constexpr std::size_t kOutermostShown = 3;

struct Excerpt {
    std::string text;
    std::string caret;
};

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

/// The line, or of a long one what stands around a byte, without control characters; and a caret that stands
/// under the byte. Tabs stay tabs, so that it does however wide they are shown.
Excerpt partAround(std::string_view line, std::size_t at) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    at = std::min(at, line.size());
    std::size_t first = line.size() > kExcerpt && at > kExcerpt / 2 ? at - kExcerpt / 2 : 0;
    std::size_t last = std::min(first + kExcerpt, line.size());
    while (first > 0 && first < at && continuesCharacter(line[first]))
        ++first;
    while (last < line.size() && last > at && continuesCharacter(line[last]))
        --last;
    Excerpt part;
    if (first > 0) part.text = part.caret = "...";
    part.caret.replace(0, part.caret.size(), part.caret.size(), ' ');
    for (std::size_t i = first; i < last; ++i) {
        const bool isControl = static_cast<unsigned char>(line[i]) < ' ' && line[i] != '\t';
        part.text += isControl ? '?' : line[i];
        if (i < at && !continuesCharacter(line[i])) part.caret += line[i] == '\t' ? '\t' : ' ';
    }
    if (last < line.size()) part.text += "...";
    part.caret += '^';
    return part;
}

} // namespace

Source::Source(std::string name, std::string text, int firstLine)
    : name_(std::move(name)), text_(std::move(text)), firstLine_(firstLine) {
    lineStarts_.push_back(0);
    for (std::size_t i = 0; i < text_.size(); ++i) {
        if (text_[i] == '\n') lineStarts_.push_back(static_cast<std::uint32_t>(i + 1));
    }
}

std::size_t Source::lineIndex(std::uint32_t offset) const {
    const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    return static_cast<std::size_t>(next - lineStarts_.begin()) - 1;
}

int Source::line(std::uint32_t offset) const { return firstLine_ + static_cast<int>(lineIndex(offset)); }

int Source::column(std::uint32_t offset) const {
    return static_cast<int>(offset - lineStarts_[lineIndex(offset)]) + 1;
}

std::string_view Source::lineText(std::uint32_t offset) const {
    const std::size_t start = lineStarts_[lineIndex(offset)];
    const std::size_t end = std::min(text_.find('\n', start), text_.size());
    return std::string_view(text_).substr(start, end - start);
}

const std::string& Place::file() const {
    static const std::string none;
    return source ? source->name() : none;
}

int Place::line() const { return source ? source->line(offset) : 0; }

int Place::column() const { return source ? source->column(offset) : 0; }

std::string Place::describe() const {
    if (!source) return {};
    const std::string line = "line " + std::to_string(source->line(offset));
    return source->name().empty() ? line : "file \"" + source->name() + "\" " + line;
}

std::string Place::excerpt() const {
    if (!source) return {};
    const Excerpt part =
        partAround(source->lineText(offset), static_cast<std::size_t>(source->column(offset)) - 1);
    return part.text + "\n" + part.caret;
}

std::string Error::describe() const { return isPlaced() ? place_.describe() + ": " + message_ : message_; }

std::string Error::detail() const {
    if (!isPlaced()) return {};
    const std::string number = std::to_string(place_.line()) + ":" + std::to_string(place_.column());
    const std::string lines = place_.excerpt();
    const std::size_t end = lines.find('\n');
    std::string text = number + " | " + lines.substr(0, end) + "\n" + std::string(number.size(), ' ') +
                       " | " + lines.substr(end + 1);
    const bool inProcedure = std::any_of(stack_.begin(), stack_.end(),
                                         [](const StackEntry& entry) { return !entry.procedure.empty(); });
    if (!inProcedure) return text;
    for (std::size_t i = 0; i < stack_.size(); ++i) {
        if (i == kInnermostShown && stack_.size() > kInnermostShown + kOutermostShown) {
            const std::size_t left = stack_.size() - kInnermostShown - kOutermostShown;
            text += "\n... and " + std::to_string(left) + " more";
            i += left;
        }
        text += "\nin " + (stack_[i].procedure.empty() ? std::string() : stack_[i].procedure + ", ") +
                stack_[i].place.describe();
    }
    return text;
}

} // namespace vesk::mel
