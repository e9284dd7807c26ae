#pragma once

#include <maya/MStatus.h>

#include "host/api/number_text.h"

#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

class MString;
class MStringArray;

namespace vesk {
/// For the host: the text of an `MString` without a copy, and an `MString` around a text.
const std::string& text(const MString& string);
MString toMString(std::string text);
} // namespace vesk

/// A byte string in UTF-8. Positions and lengths count bytes; comparison is byte by byte.
/// Numbers become text as in MEL: ints plain, doubles with up to ten significant digits.
class MString {
  public:
    MString() = default;
    /// A null pointer makes an empty string.
    MString(const char* text) : text_(text ? text : "") {}
    MString(const char* text, int length) { set(text, length); }
    MString& operator=(const char* text) { return *this = MString(text); }

    MStatus set(const char* text) { return *this = text, MStatus(); }
    /// The first `length` bytes of `text`.
    MStatus set(const char* text, int length) {
        text_.assign(text && length > 0 ? std::string_view(text, static_cast<std::size_t>(length)) : "");
        return {};
    }
    MStatus set(double value) { return text_ = vesk::formatDouble(value), MStatus(); }
    /// `precision` digits after the point.
    MStatus set(double value, int precision) {
        return text_ = vesk::formatFixed(value, precision), MStatus();
    }
    MStatus set(int value) { return text_ = std::to_string(value), MStatus(); }
    MStatus set(unsigned int value) { return text_ = std::to_string(value), MStatus(); }
    MStatus clear() { return text_.clear(), MStatus(); }

    const char* asChar() const noexcept { return text_.c_str(); }
    const char* asChar(int& length) const noexcept { return length = bytes(), text_.c_str(); }
    const char* asUTF8() const noexcept { return text_.c_str(); }
    unsigned int length() const noexcept { return static_cast<unsigned int>(text_.size()); }
    /// Characters, which are fewer than `length()` where some take several bytes.
    unsigned int numChars() const noexcept;

    MString& operator+=(const MString& other) { return text_ += other.text_, *this; }
    MString& operator+=(const char* other) { return text_ += (other ? other : ""), *this; }
    MString& operator+=(double value) { return text_ += vesk::formatDouble(value), *this; }
    MString& operator+=(int value) { return text_ += std::to_string(value), *this; }
    MString& operator+=(unsigned int value) { return text_ += std::to_string(value), *this; }
    MString operator+(const MString& other) const { return MString(*this) += other; }
    MString operator+(const char* other) const { return MString(*this) += other; }
    MString operator+(double value) const { return MString(*this) += value; }
    MString operator+(int value) const { return MString(*this) += value; }
    MString operator+(unsigned int value) const { return MString(*this) += value; }
    friend MString operator+(const char* a, const MString& b) { return MString(a) += b; }

    bool operator==(const MString& other) const noexcept { return text_ == other.text_; }
    bool operator==(const char* other) const noexcept { return text_ == (other ? other : ""); }

    /// Place of the first (`rindex`: last) such byte, or -1.
    int index(char c) const noexcept { return place(text_.find(c)); }
    int rindex(char c) const noexcept { return place(text_.rfind(c)); }
    /// The bytes `first` to `last`, both included, as far as they exist; empty when `first` does not.
    MString substring(int first, int last) const;
    /// Appends the pieces between the separators to `pieces`; empty pieces are left out.
    MStatus split(char separator, MStringArray& pieces) const;

    MString& toLowerCase() { return changeCase('A', 'Z', 'a' - 'A'); }
    MString& toUpperCase() { return changeCase('a', 'z', 'A' - 'a'); }

    /// Whether the whole text is a number of that kind and in its range.
    bool isShort() const noexcept { return isIntegerBetween(-32768.0, 32767.0); }
    bool isInt() const noexcept { return isIntegerBetween(-2147483648.0, 2147483647.0); }
    bool isUnsigned() const noexcept { return isIntegerBetween(0.0, 4294967295.0); }
    bool isFloat() const noexcept { return isDouble(); }
    bool isDouble() const noexcept { return vesk::wholeNumber(text_).has_value(); }

    /// The number with which the text begins, integers truncated toward zero and held in range; else 0.
    short asShort() const noexcept { return static_cast<short>(leadingBetween(-32768.0, 32767.0)); }
    int asInt() const noexcept { return static_cast<int>(leadingBetween(-2147483648.0, 2147483647.0)); }
    unsigned int asUnsigned() const noexcept {
        return static_cast<unsigned int>(leadingBetween(0.0, 4294967295.0));
    }
    float asFloat() const noexcept { return static_cast<float>(asDouble()); }
    double asDouble() const noexcept { return vesk::leadingNumber(text_).value; }

    friend std::ostream& operator<<(std::ostream& out, const MString& string) { return out << string.text_; }
    friend const std::string& vesk::text(const MString& string);
    friend MString vesk::toMString(std::string text);

  private:
    int bytes() const noexcept { return static_cast<int>(text_.size()); }
    static int place(std::size_t at) noexcept { return at == std::string::npos ? -1 : static_cast<int>(at); }
    bool isIntegerBetween(double low, double high) const noexcept;
    double leadingBetween(double low, double high) const noexcept;
    MString& changeCase(char first, char last, int shift);

    std::string text_;
};

inline unsigned int MString::numChars() const noexcept {
    unsigned int count = 0;
    for (const char c : text_)
        count += (static_cast<unsigned char>(c) & 0xC0u) != 0x80u; // not a later byte
    return count;
}

inline MString MString::substring(int first, int last) const {
    if (first < 0 || first > last || first >= bytes()) return {};
    const auto start = static_cast<std::size_t>(first);
    return vesk::toMString(text_.substr(start, static_cast<std::size_t>(last) - start + 1));
}

inline MString& MString::changeCase(char first, char last, int shift) {
    for (char& c : text_) {
        if (c >= first && c <= last) c = static_cast<char>(c + shift);
    }
    return *this;
}

inline bool MString::isIntegerBetween(double low, double high) const noexcept {
    const auto number = vesk::wholeInteger(text_);
    return number && *number >= low && *number <= high;
}

inline double MString::leadingBetween(double low, double high) const noexcept {
    const double number = asDouble();
    return number < low ? low : number > high ? high : number;
}

namespace vesk {
inline const std::string& text(const MString& string) { return string.text_; }
inline MString toMString(std::string text) {
    MString string;
    string.text_ = std::move(text);
    return string;
}
} // namespace vesk

// What MStatus says in words.

inline MString MStatus::errorString() const {
    switch (code_) {
    case kSuccess: return "(kSuccess): Success";
    case kFailure: return "(kFailure): Unexpected internal failure";
    case kInsufficientMemory: return "(kInsufficientMemory): Out of memory";
    case kInvalidParameter: return "(kInvalidParameter): Invalid argument";
    case kLicenseFailure: return "(kLicenseFailure): Application is not licensed";
    case kUnknownParameter: return "(kUnknownParameter): Unrecognized parameter";
    case kNotImplemented: return "(kNotImplemented): Not implemented";
    case kNotFound: return "(kNotFound): Not found";
    case kEndOfFile: return "(kEndOfFile): End of file";
    }
    return "(unknown)";
}

inline void MStatus::perror(const char* text) const { perror(MString(text)); }

inline void MStatus::perror(const MString& text) const {
    std::fprintf(stderr, "%s: %s\n", text.asChar(), errorString().asChar());
}
