#pragma once
// Numbers as text and back, in one place and free of the locale. MEL, strings and file writers use these.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace vesk {

/// As `%.<precision>g`: 5, 0.3333333333, 1e-07, nan, inf, -inf.
std::string formatDouble(double value, int precision = 10);
/// As `%.<places>f`, `places` held between 0 and 60.
std::string formatFixed(double value, int places);
/// The shortest text that reads back as the same number: at most 17 digits for a double, 9 for a float.
/// Plain for decimal exponents from -5 to 16, else with an exponent.
std::string formatExact(double value);
std::string formatExact(float value);
/// The same text into memory that has room for `exactTextSize` bytes; returns its end. For long lists.
inline constexpr std::size_t exactTextSize = 32;
char* writeExact(char* to, double value) noexcept;
char* writeExact(char* to, float value) noexcept;

/// The number at the start of a text, after blanks: an optional sign, digits with an optional point, an
/// optional exponent. `length` counts the bytes up to its end and is 0, as `value` is, when there is none
/// (also for "nan" and "inf"). A number too large for a double reads as infinite, one too small as 0.
struct LeadingNumber {
    double value = 0.0;
    std::size_t length = 0;
};
LeadingNumber leadingNumber(std::string_view text) noexcept;

/// The number that the text is, blanks around it allowed; nothing when there is anything else in it.
std::optional<double> wholeNumber(std::string_view text) noexcept;
/// The same for an optional sign and decimal digits only; nothing either when it leaves 64 bits.
std::optional<std::int64_t> wholeInteger(std::string_view text) noexcept;

// Bodies.

namespace number_text {

constexpr std::string_view blanks = " \t\r\n\v\f";

inline std::size_t skipBlanks(std::string_view text) noexcept {
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string_view::npos ? text.size() : start;
}

inline bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

template <class Real, class... Format>
std::string format(Real value, Format... format) {
    if (std::isnan(value)) return "nan"; // whatever its sign bit
    std::array<char, 512> buffer;        // the longest text: 309 digits, a point and 60 places
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...).ptr;
    return std::string(buffer.data(), end);
}

template <class Real>
char* writeShortest(char* to, Real value) noexcept {
    if (std::isnan(value)) value = std::numeric_limits<Real>::quiet_NaN(); // whatever its sign bit
    const Real size = std::abs(value);
    const bool plain = size == 0 || (size >= static_cast<Real>(1e-5) && size < static_cast<Real>(1e17));
    return std::to_chars(to, to + exactTextSize, value,
                         plain ? std::chars_format::fixed : std::chars_format::scientific)
        .ptr;
}

template <class Real>
std::string formatShortest(Real value) {
    std::array<char, exactTextSize> buffer;
    return {buffer.data(), writeShortest(buffer.data(), value)};
}

/// What a number outside the range of doubles reads as: by the power of ten of its first digit other than 0.
inline double beyondRange(std::string_view number) noexcept {
    const auto e = static_cast<std::int64_t>(std::min(number.find_first_of("eE"), number.size()));
    const auto point = static_cast<std::int64_t>(std::min(number.find('.'), static_cast<std::size_t>(e)));
    const auto first = static_cast<std::int64_t>(number.find_first_of("123456789"));
    std::int64_t exponent = 0;
    if (static_cast<std::size_t>(e) < number.size()) {
        const char* digits = number.data() + e + (number[static_cast<std::size_t>(e) + 1] == '+' ? 2 : 1);
        const auto read = std::from_chars(digits, number.data() + number.size(), exponent);
        if (read.ec != std::errc()) exponent = *digits == '-' ? -(1LL << 62) : 1LL << 62;
    }
    const double size = exponent + point - first > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return number.front() == '-' ? -size : size;
}

} // namespace number_text

inline std::string formatDouble(double value, int precision) {
    return number_text::format(value, std::chars_format::general, std::min(precision, 100));
}

inline std::string formatFixed(double value, int places) {
    return number_text::format(value, std::chars_format::fixed, std::min(std::max(places, 0), 60));
}

inline std::string formatExact(double value) { return number_text::formatShortest(value); }
inline std::string formatExact(float value) { return number_text::formatShortest(value); }
inline char* writeExact(char* to, double value) noexcept { return number_text::writeShortest(to, value); }
inline char* writeExact(char* to, float value) noexcept { return number_text::writeShortest(to, value); }

inline LeadingNumber leadingNumber(std::string_view text) noexcept {
    std::size_t start = number_text::skipBlanks(text);
    if (start < text.size() && text[start] == '+') {
        ++start;
        if (start < text.size() && text[start] == '-') return {};
    }
    std::size_t digit = start;
    if (digit < text.size() && text[digit] == '-') ++digit;
    if (digit < text.size() && text[digit] == '.') ++digit;
    if (digit >= text.size() || !number_text::isDigit(text[digit])) return {}; // keeps nan and inf out

    const char* const first = text.data() + start;
    LeadingNumber number;
    const auto [end, error] = std::from_chars(first, text.data() + text.size(), number.value);
    if (error == std::errc::result_out_of_range) {
        number.value =
            number_text::beyondRange(std::string_view(first, static_cast<std::size_t>(end - first)));
    }
    number.length = static_cast<std::size_t>(end - text.data());
    return number;
}

inline std::optional<double> wholeNumber(std::string_view text) noexcept {
    const LeadingNumber number = leadingNumber(text);
    if (number.length == 0) return std::nullopt;
    const std::string_view rest = text.substr(number.length);
    if (number_text::skipBlanks(rest) != rest.size()) return std::nullopt;
    return number.value;
}

inline std::optional<std::int64_t> wholeInteger(std::string_view text) noexcept {
    std::size_t start = number_text::skipBlanks(text);
    if (start + 1 < text.size() && text[start] == '+' && number_text::isDigit(text[start + 1])) ++start;
    std::int64_t value = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + start, last, value);
    if (error != std::errc()) return std::nullopt;
    const std::string_view rest(end, static_cast<std::size_t>(last - end));
    if (number_text::skipBlanks(rest) != rest.size()) return std::nullopt;
    return value;
}

} // namespace vesk
