#pragma once
// A forward walk over a text of numbers: blanks, words, numbers. Never reads past the end, never allocates.

#include "host/api/number_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

namespace vesk::formats {

/// The blanks of `leadingNumber`: space, tab, carriage return, vertical tab, form feed, line feed.
constexpr bool isBlank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool isBlankInLine(char c) noexcept { return isBlank(c) && c != '\n'; }

/// A place in a text. Copies are marks to return to.
class TextCursor {
  public:
    TextCursor() = default;
    explicit TextCursor(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    bool atEnd() const noexcept { return at_ == end_; }
    const char* at() const noexcept { return at_; }
    std::string_view rest() const noexcept { return {at_, static_cast<std::size_t>(end_ - at_)}; }
    /// The next byte, NUL at the end.
    char peek() const noexcept { return at_ == end_ ? '\0' : *at_; }
    /// Only when not at the end.
    void step() noexcept { ++at_; }
    /// Steps over `c` when it is next.
    bool take(char c) noexcept {
        if (at_ == end_ || *at_ != c) return false;
        ++at_;
        return true;
    }

    /// Also over line ends.
    void skipBlanks() noexcept {
        while (at_ != end_ && isBlank(*at_))
            ++at_;
    }
    void skipBlanksInLine() noexcept {
        while (at_ != end_ && isBlankInLine(*at_))
            ++at_;
    }
    /// To the byte after the next line feed.
    void skipLine() noexcept {
        const void* const lineEnd = std::memchr(at_, '\n', static_cast<std::size_t>(end_ - at_));
        at_ = lineEnd ? static_cast<const char*>(lineEnd) + 1 : end_;
    }
    /// The bytes up to the next blank: empty when there is a blank here.
    std::string_view word() noexcept {
        const char* const start = at_;
        while (at_ != end_ && !isBlank(*at_))
            ++at_;
        return {start, static_cast<std::size_t>(at_ - start)};
    }

    /// Reads the number that starts right here, by the rule of `vesk::leadingNumber`: "nan" and "inf" are
    /// none, one too large for the type reads as infinite, one too small as 0. A float is rounded once, from
    /// the digits. Stays put when there is none.
    template <class Real>
    bool number(Real& value) noexcept;
    /// Sign and decimal digits. Stays put when there is none or it leaves 64 bits.
    bool integer(std::int64_t& value) noexcept;

  private:
    const char* at_ = nullptr;
    const char* end_ = nullptr;
};

/// The line of a place in a text, counted from 1. Walks the text: for messages.
inline std::size_t lineOf(std::string_view text, const char* place) {
    return 1 + static_cast<std::size_t>(std::count(text.data(), place, '\n'));
}

/// What stands at a place, for messages: "'word'", shortened when long, bytes that do not print as "?"; or
/// "the end of the line", "the end of the file".
std::string foundAt(TextCursor place);

// Bodies.

template <class Real>
bool TextCursor::number(Real& value) noexcept {
    // What most numbers start with goes straight to the conversion; the rest by the general rule.
    const char* const digit = at_ != end_ && *at_ == '-' ? at_ + 1 : at_;
    if (digit != end_ && (number_text::isDigit(*digit) || *digit == '.')) {
        const auto [end, error] = std::from_chars(at_, end_, value);
        if (error == std::errc()) {
            at_ = end;
            return true;
        }
    }
    if (at_ == end_ || isBlank(*at_)) return false;
    const LeadingNumber found = leadingNumber(rest());
    if (found.length == 0) return false;
    constexpr double largest = std::numeric_limits<Real>::max();
    constexpr Real infinity = std::numeric_limits<Real>::infinity();
    value = found.value > largest    ? infinity
            : found.value < -largest ? -infinity
                                     : static_cast<Real>(found.value);
    at_ += found.length;
    return true;
}

inline bool TextCursor::integer(std::int64_t& value) noexcept {
    const char* first = at_;
    if (end_ - at_ > 1 && *at_ == '+' && number_text::isDigit(at_[1])) ++first;
    const auto [end, error] = std::from_chars(first, end_, value);
    if (error != std::errc()) return false;
    at_ = end;
    return true;
}

inline std::string foundAt(TextCursor place) {
    constexpr std::size_t longest = 32;
    place.skipBlanksInLine();
    if (place.atEnd()) return "the end of the file";
    if (place.peek() == '\n') return "the end of the line";
    const std::string_view word = place.word();
    std::string shown(word.substr(0, longest));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return "'" + shown + (word.size() > longest ? "..." : "") + "'";
}

} // namespace vesk::formats
