#pragma once
// Values of a PLY file's rows, one after another, from text or from bytes. Both sources have the same
// methods; one that returns false has set `problem` and stands at `place`.

#include "host/scene/formats/numbers.h"
#include "host/scene/formats/ply_header.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace vesk::formats {

/// One row a line.
class PlyTextSource {
  public:
    explicit PlyTextSource(std::string_view body) : cursor_(body) {}

    bool beginRow() {
        cursor_.skipBlanks();
        return !cursor_.atEnd() || expected("a row");
    }
    bool endRow() {
        cursor_.skipBlanksInLine();
        return cursor_.atEnd() || cursor_.take('\n') || expected("the end of the line");
    }
    /// Infinite when it does not fit into a float.
    bool real(PlyType, float& value) {
        cursor_.skipBlanksInLine();
        const TextCursor start = cursor_;
        if (cursor_.number(value) && atWordEnd()) return true;
        cursor_ = start;
        return expected("a number");
    }
    bool integer(PlyType, std::int64_t& value) {
        cursor_.skipBlanksInLine();
        const TextCursor start = cursor_;
        if (cursor_.integer(value) && atWordEnd()) return true;
        cursor_ = start;
        return expected("an integer");
    }
    bool skip(PlyType, std::int64_t count) {
        for (; count > 0; --count) {
            cursor_.skipBlanksInLine();
            if (cursor_.word().empty()) return expected("a value");
        }
        return true;
    }
    /// How many values there can be at most in what is left.
    std::int64_t room(PlyType) const { return static_cast<std::int64_t>(cursor_.rest().size() / 2 + 1); }
    /// How many rows of the element: every value takes a byte and one after it, the last of all perhaps not.
    std::size_t rowRoom(const PlyElement& element) const {
        return (cursor_.rest().size() + 1) / (2 * element.properties.size());
    }

    const char* place() const { return cursor_.at(); }
    std::string_view rest() const { return cursor_.rest(); }
    std::string problem;

  private:
    bool atWordEnd() const { return cursor_.atEnd() || isBlank(cursor_.peek()); }
    bool expected(const char* what) {
        problem = std::string("expected ") + what + ", found " + foundAt(cursor_);
        return false;
    }

    TextCursor cursor_;
};

class PlyByteSource {
  public:
    PlyByteSource(std::string_view body, bool bigEndian)
        : rest_(body), swap_(bigEndian != (std::endian::native == std::endian::big)) {}

    static bool beginRow() { return true; }
    static bool endRow() { return true; }
    bool real(PlyType type, float& value) {
        if (rest_.size() < plySize(type)) return truncated();
        switch (type) {
        case PlyType::Float32: value = take<float>(); break;
        case PlyType::Float64: value = narrowed(take<double>()); break;
        default: value = static_cast<float>(takeInteger(type)); break;
        }
        return true;
    }
    bool integer(PlyType type, std::int64_t& value) {
        if (rest_.size() < plySize(type)) return truncated();
        if (!isPlyInteger(type)) {
            problem = "expected an integer, the type is a floating-point one";
            return false;
        }
        value = takeInteger(type);
        return true;
    }
    bool skip(PlyType type, std::int64_t count) {
        if (count > room(type)) return truncated();
        rest_.remove_prefix(static_cast<std::size_t>(count) * plySize(type));
        return true;
    }
    std::int64_t room(PlyType type) const { return static_cast<std::int64_t>(rest_.size() / plySize(type)); }
    std::size_t rowRoom(const PlyElement& element) const {
        std::size_t least = 0;
        for (const PlyProperty& property : element.properties)
            least += plySize(property.isList ? property.countType : property.type);
        return rest_.size() / least;
    }

    const char* place() const { return rest_.data(); }
    std::string_view rest() const { return rest_; }
    std::string problem;

  private:
    template <class T>
    T take() {
        char bytes[sizeof(T)];
        std::memcpy(bytes, rest_.data(), sizeof(T));
        if (swap_) std::reverse(bytes, bytes + sizeof(T));
        rest_.remove_prefix(sizeof(T));
        return std::bit_cast<T>(bytes);
    }
    std::int64_t takeInteger(PlyType type) {
        switch (type) {
        case PlyType::Int8: return take<std::int8_t>();
        case PlyType::UInt8: return take<std::uint8_t>();
        case PlyType::Int16: return take<std::int16_t>();
        case PlyType::UInt16: return take<std::uint16_t>();
        case PlyType::Int32: return take<std::int32_t>();
        default: return take<std::uint32_t>();
        }
    }
    static float narrowed(double value) {
        const bool fits = std::abs(value) <= std::numeric_limits<float>::max() || std::isnan(value);
        return fits ? static_cast<float>(value) : std::numeric_limits<float>::infinity();
    }
    bool truncated() {
        problem = "the data ends here, more was announced";
        return false;
    }

    std::string_view rest_;
    bool swap_;
};

} // namespace vesk::formats
