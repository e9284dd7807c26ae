#pragma once
// The head of a PLY file: which elements follow, how often, made of what.

#include "host/core/result.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::formats {

enum class PlyType : std::uint8_t { Int8, UInt8, Int16, UInt16, Int32, UInt32, Float32, Float64 };

/// Bytes in binary files.
std::size_t plySize(PlyType type);
/// The largest number of an integer type, 1 for the others.
double plyLargest(PlyType type);
inline bool isPlyInteger(PlyType type) { return type < PlyType::Float32; }

struct PlyProperty {
    std::string name;
    PlyType type = PlyType::Float32;
    bool isList = false;
    PlyType countType = PlyType::UInt8; ///< of a list's length: an integer type
};

struct PlyElement {
    std::string name;
    std::size_t count = 0;
    std::vector<PlyProperty> properties;

    /// Index of the first property of this name that is a list or not, as asked; -1 when none is.
    int find(std::string_view property, bool list) const;
};

enum class PlyFormat : std::uint8_t { Ascii, BinaryLittle, BinaryBig };

struct PlyHeader {
    PlyFormat format = PlyFormat::Ascii;
    std::vector<PlyElement> elements;
    std::size_t size = 0; ///< bytes up to the first row

    /// Null when there is none.
    const PlyElement* find(std::string_view element) const;
};

/// Lines may end in LF or CR LF. Fails on anything that is not of the format and on two elements of one name.
/// The counts are what the file says, not yet compared with its size.
Result<PlyHeader> parsePlyHeader(std::string_view bytes, const std::filesystem::path& name);

} // namespace vesk::formats
