#include "host/mel/error.h"

#include <algorithm>

namespace vesk::mel {

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
    const std::string_view text = source->lineText(offset);
    const std::size_t before = static_cast<std::size_t>(source->column(offset)) - 1;
    // Tabs stay tabs, so that the caret stands under its byte however wide they are shown.
    std::string caret;
    for (const char c : text.substr(0, before))
        caret += c == '\t' ? '\t' : ' ';
    return std::string(text) + "\n" + caret + "^";
}

std::string Error::describe() const { return isPlaced() ? place_.describe() + ": " + message_ : message_; }

} // namespace vesk::mel
