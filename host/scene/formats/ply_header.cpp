#include "host/scene/formats/ply_header.h"

#include "host/scene/formats/numbers.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace vesk::formats {

namespace {

struct TypeNames {
    std::string_view plain, sized;
    std::size_t size;
    double largest;
};

/// In the order of `PlyType`.
constexpr std::array<TypeNames, 8> typeNames{{{"char", "int8", 1, 127.0},
                                              {"uchar", "uint8", 1, 255.0},
                                              {"short", "int16", 2, 32767.0},
                                              {"ushort", "uint16", 2, 65535.0},
                                              {"int", "int32", 4, 2147483647.0},
                                              {"uint", "uint32", 4, 4294967295.0},
                                              {"float", "float32", 4, 1.0},
                                              {"double", "float64", 8, 1.0}}};

std::optional<PlyType> typeOf(std::string_view word) {
    for (std::size_t i = 0; i < typeNames.size(); ++i) {
        if (word == typeNames[i].plain || word == typeNames[i].sized) return static_cast<PlyType>(i);
    }
    return std::nullopt;
}

class HeaderReader {
  public:
    HeaderReader(std::string_view bytes, const std::filesystem::path& name)
        : bytes_(bytes), name_(name), cursor_(bytes) {}

    Result<PlyHeader> read();

  private:
    bool magic();
    bool statement();
    bool format();
    bool element();
    bool property();
    bool type(PlyType& type);
    bool lineEnd();
    std::string_view word() {
        cursor_.skipBlanksInLine();
        place_ = cursor_;
        return cursor_.word();
    }
    bool fail(const std::string& what);
    bool failExpecting(const char* what) {
        return fail(std::string("expected ") + what + ", found " + foundAt(place_));
    }

    std::string_view bytes_;
    const std::filesystem::path& name_;
    TextCursor cursor_;
    TextCursor place_; ///< start of the last word
    PlyHeader header_;
    bool hasFormat_ = false;
    bool ended_ = false;
    std::string error_;
};

Result<PlyHeader> HeaderReader::read() {
    if (!magic()) return Outcome::fail(error_);
    while (!ended_) {
        if (!statement()) return Outcome::fail(error_);
    }
    header_.size = static_cast<std::size_t>(cursor_.at() - bytes_.data());
    return std::move(header_);
}

bool HeaderReader::magic() {
    if (!bytes_.starts_with("ply")) {
        error_ = name_.string() + ": not a PLY file";
        return false;
    }
    word();
    return lineEnd();
}

bool HeaderReader::statement() {
    const std::string_view keyword = word();
    if (keyword == "comment" || keyword == "obj_info") {
        cursor_.skipLine();
        return true;
    }
    if (keyword == "format") return format() && lineEnd();
    if (keyword == "element") return element() && lineEnd();
    if (keyword == "property") return property() && lineEnd();
    if (keyword != "end_header") return failExpecting("a statement of the header");
    if (!hasFormat_) return fail("the header names no format");
    ended_ = true;
    return lineEnd();
}

bool HeaderReader::format() {
    const std::string_view format = word();
    if (format == "ascii") {
        header_.format = PlyFormat::Ascii;
    } else if (format == "binary_little_endian") {
        header_.format = PlyFormat::BinaryLittle;
    } else if (format == "binary_big_endian") {
        header_.format = PlyFormat::BinaryBig;
    } else {
        return failExpecting("ascii, binary_little_endian or binary_big_endian");
    }
    if (word() != "1.0") return failExpecting("version 1.0");
    hasFormat_ = true;
    return true;
}

bool HeaderReader::element() {
    PlyElement element;
    element.name = word();
    if (element.name.empty()) return failExpecting("the name of an element");
    if (header_.find(element.name)) return fail("a second element " + element.name);
    const auto count = wholeInteger(word());
    if (!count || *count < 0) return failExpecting("a count");
    element.count = static_cast<std::size_t>(*count);
    header_.elements.push_back(std::move(element));
    return true;
}

bool HeaderReader::property() {
    if (header_.elements.empty()) return fail("a property before any element");
    PlyProperty property;
    const TextCursor start = cursor_;
    property.isList = word() == "list";
    if (!property.isList) cursor_ = start;
    if (property.isList && !type(property.countType)) return false;
    if (!isPlyInteger(property.countType)) return failExpecting("an integer type");
    if (!type(property.type)) return false;
    property.name = word();
    if (property.name.empty()) return failExpecting("the name of a property");
    header_.elements.back().properties.push_back(std::move(property));
    return true;
}

bool HeaderReader::type(PlyType& type) {
    const auto found = typeOf(word());
    if (!found) return failExpecting("a type");
    type = *found;
    return true;
}

bool HeaderReader::lineEnd() {
    cursor_.skipBlanksInLine();
    place_ = cursor_;
    return cursor_.take('\n') || failExpecting("the end of the line");
}

bool HeaderReader::fail(const std::string& what) {
    error_ = name_.string() + ":" + std::to_string(lineOf(bytes_, place_.at())) + ": " + what;
    return false;
}

} // namespace

std::size_t plySize(PlyType type) { return typeNames[static_cast<std::size_t>(type)].size; }

double plyLargest(PlyType type) { return typeNames[static_cast<std::size_t>(type)].largest; }

int PlyElement::find(std::string_view property, bool list) const {
    for (std::size_t i = 0; i < properties.size(); ++i) {
        if (properties[i].isList == list && properties[i].name == property) return static_cast<int>(i);
    }
    return -1;
}

const PlyElement* PlyHeader::find(std::string_view element) const {
    const auto found = std::find_if(elements.begin(), elements.end(),
                                    [&](const PlyElement& other) { return other.name == element; });
    return found == elements.end() ? nullptr : &*found;
}

Result<PlyHeader> parsePlyHeader(std::string_view bytes, const std::filesystem::path& name) {
    return HeaderReader(bytes, name).read();
}

} // namespace vesk::formats
