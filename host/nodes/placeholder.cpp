#include "host/nodes/placeholder.h"

#include "host/nodes/declare.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace vesk::nodes {

using graph::AttrKind;

namespace {

/// Longest path of names that is followed, and most numbers that one attribute is made for.
constexpr std::size_t kMaxSegments = 12;
constexpr int kMaxNumbers = 64;

struct Segment {
    std::string name;
    bool indexed = false;
    int elements = 1; ///< that its brackets name
};

std::optional<int> readIndex(std::string_view digits) {
    int value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, value);
    if (failure != std::errc() || stop != end || value < 0) return std::nullopt;
    return value;
}

/// Elements that `3`, `0:4` or `*` names; 0 when it is none of these.
int elementsIn(std::string_view inside) {
    if (inside.empty() || inside == "*" || inside == ":") return 1;
    const auto colon = inside.find(':');
    const auto first = readIndex(inside.substr(0, colon));
    if (!first) return 0;
    if (colon == std::string_view::npos) return 1;
    const auto last = readIndex(inside.substr(colon + 1));
    return last && *last >= *first && *last - *first < INT32_MAX ? *last - *first + 1 : 0;
}

bool isName(std::string_view name) {
    const auto isLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
    };
    return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), [&](char c) {
        return isLetter(c) || (c >= '0' && c <= '9');
    });
}

/// Empty when the path is none.
std::vector<Segment> parsePath(std::string_view path) {
    std::vector<Segment> segments;
    while (true) {
        const auto dot = path.find('.');
        std::string_view text = path.substr(0, dot);
        Segment segment;
        if (const auto open = text.find('['); open != std::string_view::npos) {
            if (text.back() != ']') return {};
            segment.indexed = true;
            segment.elements = elementsIn(text.substr(open + 1, text.size() - open - 2));
            text = text.substr(0, open);
        }
        if (!isName(text) || segment.elements == 0 || segments.size() == kMaxSegments) return {};
        segment.name = text;
        segments.push_back(std::move(segment));
        if (dot == std::string_view::npos) return segments;
        path.remove_prefix(dot + 1);
    }
}

AttrRef tupleOf(const std::string& name, MFnNumericData::Type leaf, int count, bool isColor) {
    static const std::string letters[] = {"X", "Y", "Z", "W"}, colors[] = {"R", "G", "B", "A"};
    const auto* from = isColor ? colors : letters;
    return graph::tuple(name, name, graph::numericTuple(leaf, count),
                        std::vector<std::string>(from, from + count));
}

AttrRef ofNumbers(const std::string& name, int count) {
    if (count <= 1) return graph::real(name, name);
    if (count <= 4) return tupleOf(name, MFnNumericData::kDouble, count, false);
    if (count > kMaxNumbers) return nullptr;
    std::vector<AttrRef> children;
    for (int i = 0; i < count; ++i) {
        const std::string child = name + std::to_string(i);
        children.push_back(graph::real(child, child));
    }
    return graph::compound(name, name, std::move(children));
}

AttrRef ofType(const std::string& name, const std::string& type) {
    static constexpr std::pair<std::string_view, MFnData::Type> kData[] = {
        {"string", MFnData::kString},
        {"stringArray", MFnData::kStringArray},
        {"doubleArray", MFnData::kDoubleArray},
        {"Int32Array", MFnData::kIntArray},
        {"vectorArray", MFnData::kVectorArray},
        {"pointArray", MFnData::kPointArray},
        {"mesh", MFnData::kMesh},
        {"componentList", MFnData::kComponentList},
        {"lattice", MFnData::kLattice},
        {"nurbsCurve", MFnData::kNurbsCurve},
        {"nurbsSurface", MFnData::kNurbsSurface}};
    for (const auto& [word, data] : kData) {
        if (word == type) return graph::typed(name, name, data);
    }
    if (type == "matrix") return graph::matrix(name, name);
    static constexpr std::pair<std::string_view, MFnNumericData::Type> kLeaves[] = {
        {"double", MFnNumericData::kDouble},
        {"float", MFnNumericData::kFloat},
        {"long", MFnNumericData::kInt},
        {"short", MFnNumericData::kShort}};
    for (const auto& [word, leaf] : kLeaves) {
        if (type.size() != word.size() + 1 || !type.starts_with(word)) continue;
        const int count = type.back() - '0';
        if (count >= 2 && count <= 4 && graph::numericTuple(leaf, count) != MFnNumericData::kInvalid)
            return tupleOf(name, leaf, count, false);
    }
    if (type == "reflectanceRGB" || type == "spectrumRGB")
        return tupleOf(name, MFnNumericData::kFloat, 3, true);
    auto attribute = graph::fileData(name, name, type);
    attribute->packed = type == "polyFaces";
    return attribute;
}

/// The child's name with the parent's in front exchanged, so that `color`, `colorR` gives `c`, `cR`.
std::string renamedChild(const std::string& child, const std::string& parent, const std::string& newParent) {
    return !parent.empty() && child.starts_with(parent) ? newParent + child.substr(parent.size()) : child;
}

/// An attribute of another name that takes whatever this one gives, and the other way round.
AttrRef likeOther(const Attribute& other, const std::string& longName, const std::string& shortName) {
    auto attribute = makeRef<Attribute>(static_cast<const graph::AttributeSettings&>(other));
    attribute->longName = longName;
    attribute->shortName = shortName;
    attribute->readable = attribute->writable = attribute->connectable = attribute->storable = true;
    attribute->array = attribute->packed = attribute->worldSpace = false;
    attribute->min = attribute->max = std::nullopt;
    for (const auto& child : other.children) {
        auto copy = likeOther(*child, renamedChild(child->longName, other.longName, longName),
                              renamedChild(child->shortName, other.shortName, shortName));
        copy->array = child->array;
        copy->parent = attribute.get();
        attribute->children.push_back(std::move(copy));
    }
    return attribute;
}

void markGuessed(Attribute& attribute) {
    attribute.guessed = true;
    for (const auto& child : attribute.children)
        markGuessed(*child);
}

/// `elements`: how many the whole path names.
AttrRef lastOf(const Segment& segment, const AttributeHint& hint, int elements) {
    if (!hint.type.empty()) return ofType(segment.name, hint.type);
    if (hint.other && !hint.other->isNull()) {
        auto attribute = likeOther(*hint.other->attr, segment.name, segment.name);
        attribute->array = hint.other->isArray();
        return attribute;
    }
    if (hint.numbers > 0) return ofNumbers(segment.name, hint.numbers / elements);
    return graph::message(segment.name, segment.name);
}

} // namespace

Attribute* Placeholder::ensureOne(Attribute* below, const std::string& name, const AttrRef& wanted) {
    markGuessed(*wanted);
    const auto outcome = below ? node_.addDynamicChild(*below, wanted) : node_.addDynamicAttribute(wanted);
    if (!outcome) return nullptr;
    return node_.findAttribute(name);
}

Attribute* Placeholder::ensure(std::string_view path, const AttributeHint& hint) {
    const auto segments = parsePath(path);
    int elements = 1; // only one segment of a path may be a range
    for (const Segment& segment : segments)
        elements = std::max(elements, segment.elements);
    // `a[0:2].b` with more than a number each: lists of index and value.
    const bool isSparse = !segments.empty() && segments.back().elements == 1 && !segments.back().indexed &&
                          hint.type.empty() && !hint.other && elements > 1 && hint.numbers > elements;
    Attribute* at = nullptr;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Segment& segment = segments[i];
        const bool isLast = i + 1 == segments.size();
        Attribute* found = nullptr;
        if (!at) {
            found = node_.findAttribute(segment.name);
        } else {
            for (const auto& child : at->children) {
                if (child->longName == segment.name || child->shortName == segment.name) found = child.get();
            }
        }
        if (!found) {
            AttrRef wanted = isLast ? lastOf(segment, hint, isSparse ? hint.numbers : elements)
                                    : graph::compound(segment.name, segment.name, {});
            if (!wanted) return nullptr;
            const bool takesNext = isLast && hint.nextAvailable;
            wanted->array = wanted->array || segment.indexed || takesNext || (isLast && isSparse);
            wanted->indexMatters = false;
            found = ensureOne(at, segment.name, wanted);
        } else if (segment.indexed && !found->array) {
            return nullptr;
        }
        if (!found) return nullptr;
        at = found;
    }
    return at;
}

PlaceholderKind likelyKind(bool hasParent, std::string_view nodeName) {
    if (!hasParent) return PlaceholderKind::Node;
    return nodeName.find("Shape") != std::string_view::npos ? PlaceholderKind::Shape
                                                            : PlaceholderKind::Transform;
}

const NodeType& placeholderType(graph::TypeRegistry& types, const std::string& name, PlaceholderKind kind) {
    if (const NodeType* there = types.find(name)) return *there;
    switch (kind) {
    case PlaceholderKind::Shape: return declare<PlaceholderShape>(types, name, MFn::kUnknown, "shape");
    case PlaceholderKind::Transform:
        return declare<PlaceholderTransform>(types, name, MFn::kUnknown, "transform");
    case PlaceholderKind::Node: break;
    }
    return declare<PlaceholderNode>(types, name, MFn::kUnknown);
}

} // namespace vesk::nodes
