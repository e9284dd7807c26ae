#include "host/scene/text_words.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace vesk::scene {

using commands::WordKind;

namespace {

bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }
/// Lists of names stand in braces, with commas between them: both only separate.
bool separates(char c) { return isBlank(c) || c == '{' || c == '}' || c == ','; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::optional<int> truth(std::string_view word) {
    if (word == "yes" || word == "on" || word == "true") return 1;
    if (word == "no" || word == "off" || word == "false") return 0;
    return std::nullopt;
}

template <class T>
bool parseWhole(std::string_view word, T& to) {
    const char* first = word.data();
    const char* last = first + word.size();
    if (first != last && *first == '+') ++first;
    if constexpr (std::is_same_v<T, int>) {
        int value = 0;
        if (const auto [end, failure] = std::from_chars(first, last, value);
            failure == std::errc() && end == last) {
            to = value;
            return true;
        }
        double real = 0; // a fraction, or too large: cut off, held in range
        if (!parseWhole(word, real)) return false;
        to = mel::truncated(real);
        return true;
    } else {
        const auto [end, failure] = std::from_chars(first, last, to);
        if (end != last || first == last) return false;
        if (failure == std::errc::result_out_of_range) {
            // Too large or too small for the type: as an infinity or zero, with its sign.
            double wide = 0;
            const bool fitsDouble = std::from_chars(first, last, wide).ec == std::errc();
            const bool isSmall = fitsDouble && std::abs(wide) < 1;
            to = isSmall ? T(0)
                         : std::copysign(std::numeric_limits<T>::infinity(), *first == '-' ? T(-1) : T(1));
            return true;
        }
        return failure == std::errc();
    }
}

char escaped(char c) {
    switch (c) {
    case 'n': return '\n';
    case 't': return '\t';
    case 'r': return '\r';
    default: return c;
    }
}

} // namespace

TextWords::TextWords(std::string_view statement)
    : at_(statement.data()), end_(statement.data() + statement.size()) {}

void TextWords::skipBlanks() {
    while (at_ != end_) {
        if (separates(*at_)) {
            ++at_;
        } else if (*at_ == '/' && end_ - at_ > 1 && at_[1] == '/') {
            while (at_ != end_ && *at_ != '\n')
                ++at_;
        } else {
            return;
        }
    }
}

std::string_view TextWords::bytes() const {
    const char* to = at_;
    if (to != end_ && *to == '"') {
        for (++to; to != end_ && *to != '"'; ++to) {
            if (*to == '\\' && to + 1 != end_) ++to;
        }
        if (to != end_) ++to;
    } else {
        while (to != end_ && !separates(*to) && *to != '"')
            ++to;
    }
    return {at_, static_cast<std::size_t>(to - at_)};
}

std::size_t TextWords::mostLeft() const { return static_cast<std::size_t>(end_ - at_) / 2 + 1; }

std::size_t TextWords::numbersAhead() {
    const char* const here = at_;
    std::size_t count = 0;
    double number = 0;
    while (take(&number, 1) == 1)
        ++count;
    at_ = here;
    return count;
}

WordKind TextWords::peek() {
    skipBlanks();
    if (at_ == end_) return WordKind::End;
    const char first = *at_;
    if (first == '"') return WordKind::Text;
    if (first == '-' && end_ - at_ > 1 && isLetter(at_[1])) {
        double number = 0;
        return parseWhole(bytes(), number) ? WordKind::Number : WordKind::Flag; // "-inf" is a number
    }
    const std::string_view word = bytes();
    double number = 0;
    return truth(word) || parseWhole(word, number) ? WordKind::Number : WordKind::Text;
}

std::string_view TextWords::text() {
    skipBlanks();
    const std::string_view word = bytes();
    at_ += word.size();
    if (word.empty() || word.front() != '"') return word;
    std::string_view inside = word.substr(1, word.size() - (word.size() > 1 && word.back() == '"' ? 2 : 1));
    if (inside.find('\\') == std::string_view::npos) return inside;
    unescaped_.clear();
    for (std::size_t i = 0; i < inside.size(); ++i) {
        const bool isEscape = inside[i] == '\\' && i + 1 < inside.size();
        unescaped_ += isEscape ? escaped(inside[++i]) : inside[i];
    }
    return unescaped_;
}

std::string TextWords::asWritten() {
    skipBlanks();
    const std::string_view word = bytes();
    at_ += word.size();
    return std::string(word);
}

template <class T>
bool TextWords::takeOne(T& to) {
    std::string_view word = bytes();
    const std::size_t length = word.size();
    if (!word.empty() && word.front() == '"') word = word.substr(1, word.size() > 1 ? word.size() - 2 : 0);
    if (const auto answer = truth(word)) {
        to = static_cast<T>(*answer);
    } else if (!parseWhole(word, to)) {
        return false;
    }
    at_ += length;
    return true;
}

template <class T>
std::size_t TextWords::take(T* to, std::size_t count) {
    std::size_t taken = 0;
    while (taken < count) {
        while (at_ != end_ && isBlank(*at_))
            ++at_;
        // Straight to the conversion; whatever it leaves over goes the general way.
        const auto [after, failure] = std::from_chars(at_, end_, to[taken]);
        if (failure == std::errc() && (after == end_ || isBlank(*after))) {
            at_ = after;
            ++taken;
            continue;
        }
        skipBlanks();
        if (at_ == end_ || !takeOne(to[taken])) break;
        ++taken;
    }
    return taken;
}

std::size_t TextWords::numbers(double* to, std::size_t count) { return take(to, count); }
std::size_t TextWords::numbers(float* to, std::size_t count) { return take(to, count); }
std::size_t TextWords::numbers(int* to, std::size_t count) { return take(to, count); }

std::vector<mel::Value> valuesOf(std::string_view statement) {
    std::vector<mel::Value> values;
    TextWords words(statement);
    while (true) {
        switch (words.peek()) {
        case WordKind::End: return values;
        case WordKind::Number: {
            double number = 0;
            words.numbers(&number, 1);
            if (number == std::trunc(number) && std::abs(number) < 2147483648.0) {
                values.emplace_back(static_cast<int>(number));
            } else {
                values.emplace_back(number);
            }
            break;
        }
        case WordKind::Text:
        case WordKind::Flag: values.emplace_back(std::string(words.text())); break;
        }
    }
}

} // namespace vesk::scene
