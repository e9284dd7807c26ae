#include "host/graph/plug.h"

#include "host/graph/scene.h"

#include <algorithm>
#include <charconv>

namespace vesk::graph {

Plug::Plug(Ref<Node> owner, Ref<Attribute> attribute) : node(std::move(owner)), attr(std::move(attribute)) {
    if (attr) depth = attr->multiDepth() - (attr->array ? 1 : 0);
}

Plug::Plug(const Cell& cell)
    : node(&cell.node), attr(const_cast<Attribute*>(&cell.attr)), depth(attr->multiDepth()) {
    if (cell.isArray()) --depth;
    int level = depth;
    for (const Cell* at = &cell; at; at = at->parent) {
        if (at->isElement() && level > 0) indices[static_cast<std::size_t>(--level)] = at->logicalIndex;
    }
}

bool Plug::operator==(const Plug& other) const {
    return node == other.node && attr == other.attr && depth == other.depth && indices == other.indices;
}

namespace {

/// Walks from the top attribute down to `plug`'s, choosing elements on the way. `make` decides whether
/// missing cells come to be.
Cell* reach(const Plug& plug, bool make) {
    if (plug.isNull()) return nullptr;
    Node& node = *plug.node;
    if (plug.depth == 0) {
        return make ? &node.cell(*plug.attr) : node.cellIfThere(*plug.attr);
    }
    std::array<const Attribute*, 16> chain{};
    std::size_t length = 0;
    for (const Attribute* at = plug.attr.get(); at; at = at->parent) {
        if (length == chain.size()) return nullptr;
        chain[length++] = at;
    }
    Cell* cell = make ? &node.cell(*chain[length - 1]) : node.cellIfThere(*chain[length - 1]);
    int level = 0;
    for (std::size_t i = length; i-- > 0 && cell;) {
        if (i + 1 != length) {
            const int position = chain[i]->positionInParent();
            cell = make ? &cell->child(position) : cell->childIfThere(position);
            if (!cell) return nullptr;
        }
        if (!chain[i]->array) continue;
        if (i == 0 && level == plug.depth) break; // the whole multi was meant
        if (level >= plug.depth) return nullptr;
        const int index = plug.indices[static_cast<std::size_t>(level++)];
        if (index < 0) return nullptr;
        cell = make ? &cell->element(index) : cell->elementIfThere(index);
    }
    return cell;
}

} // namespace

Cell* Plug::cell() const { return reach(*this, true); }
Cell* Plug::cellIfThere() const { return reach(*this, false); }

Plug Plug::element(int logicalIndex) const {
    Plug result = *this;
    if (!isArray() || depth >= kMaxMultiDepth) return result;
    result.indices[static_cast<std::size_t>(depth)] = logicalIndex;
    ++result.depth;
    return result;
}

Plug Plug::child(const Attribute& attribute) const {
    Plug result = *this;
    result.attr = const_cast<Attribute*>(&attribute);
    result.depth = attribute.multiDepth() - (attribute.array ? 1 : 0);
    return result;
}

Plug Plug::parent() const {
    Plug result;
    if (!attr || !attr->parent) return result;
    result = *this;
    result.attr = attr->parent;
    result.depth = attr->parent->multiDepth();
    std::fill(result.indices.begin() + result.depth, result.indices.end(), -1);
    return result;
}

Plug Plug::array() const {
    Plug result = *this;
    if (!isElement()) return result;
    --result.depth;
    result.indices[static_cast<std::size_t>(result.depth)] = -1;
    return result;
}

std::string Plug::attributePath() const {
    if (!attr) return {};
    if (!attr->parent && depth <= 1) {
        const std::string alias = node ? node->alias(*attr, isElement() ? indices[0] : -1) : std::string();
        if (!alias.empty()) return alias;
    }
    std::array<const Attribute*, 16> chain{};
    std::size_t length = 0;
    for (const Attribute* at = attr.get(); at && length < chain.size(); at = at->parent)
        chain[length++] = at;
    std::string path;
    int level = 0;
    for (std::size_t i = length; i-- > 0;) {
        const bool carriesIndex = chain[i]->array && level < depth;
        if (i != 0 && !chain[i]->array) continue;
        if (!path.empty()) path += '.';
        path += chain[i]->longName;
        if (!carriesIndex) continue;
        path += '[' + std::to_string(indices[static_cast<std::size_t>(level++)]) + ']';
    }
    return path;
}

std::string Plug::name() const { return node ? node->uniqueName() + '.' + attributePath() : std::string(); }

namespace {

struct Index {
    bool present = false;
    bool all = false;
    int first = -1, last = -1;
};

/// Reads `[3]`, `[0:4]`, `[*]` or `[]` at the start of `text` and takes it off. False on anything else in
/// brackets.
bool takeIndex(std::string_view& text, Index& index) {
    if (text.empty() || text.front() != '[') return true;
    const auto close = text.find(']');
    if (close == std::string_view::npos) return false;
    std::string_view inside = text.substr(1, close - 1);
    text.remove_prefix(close + 1);
    index.present = true;
    if (inside == "*" || inside.empty() || inside == ":") {
        index.all = true;
        return true;
    }
    const auto readNumber = [](std::string_view digits, int& value) {
        const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        return failure == std::errc() && end == digits.data() + digits.size() && value >= 0;
    };
    const auto colon = inside.find(':');
    if (colon == std::string_view::npos) {
        if (!readNumber(inside, index.first)) return false;
        index.last = index.first;
        return true;
    }
    return readNumber(inside.substr(0, colon), index.first) &&
           readNumber(inside.substr(colon + 1), index.last) && index.first >= 0 && index.first <= index.last;
}

/// `name`'s attribute, as a descendant of `below` where one is given.
Attribute* attributeFor(const Node& node, const Attribute* below, std::string_view name) {
    if (!below) return node.findAttribute(name);
    const auto search = [&](const auto& self, const Attribute& at) -> Attribute* {
        for (const auto& child : at.children) {
            if (child->longName == name || child->shortName == name) return child.get();
        }
        for (const auto& child : at.children) {
            if (child->array) continue;
            if (Attribute* found = self(self, *child)) return found;
        }
        return nullptr;
    };
    return search(search, *below);
}

PlugRange fault(std::string text) {
    PlugRange range;
    range.error = std::move(text);
    return range;
}

} // namespace

PlugRange findPlug(Node& node, std::string_view path) {
    PlugRange range;
    Plug& plug = range.plug;
    plug.node = &node;
    const std::string whole(path);
    const auto unknown = [&] { return fault("No object matches name: " + node.uniqueName() + "." + whole); };
    for (bool first = true;; first = false) {
        const auto stop = path.find_first_of(".[");
        const std::string_view name = path.substr(0, stop);
        path.remove_prefix(name.size());
        bool isAlias = false;
        for (const auto& alias : node.aliases) {
            if (!first || alias.name != name) continue;
            isAlias = true;
            plug.attr = alias.attribute;
            plug.depth = alias.logicalIndex >= 0 ? 1 : 0;
            plug.indices[0] = alias.logicalIndex;
        }
        if (!isAlias) plug.attr = attributeFor(node, plug.attr.get(), name);
        if (!plug.attr) return unknown();
        // Indices that were not written stay open.
        plug.depth = std::max(plug.depth, plug.attr->multiDepth() - (plug.attr->array ? 1 : 0));
        if (plug.depth > kMaxMultiDepth) return fault("Too many indices in plug name: " + whole);
        Index index;
        if (!takeIndex(path, index)) {
            return fault("Bad index in plug name: " + node.uniqueName() + "." + whole);
        }
        if (index.present) {
            if (!plug.attr->array || plug.isElement()) return unknown();
            if (plug.depth >= kMaxMultiDepth) return fault("Too many indices in plug name: " + whole);
            if (!index.all && index.first == index.last) {
                plug.indices[static_cast<std::size_t>(plug.depth++)] = index.first;
            } else {
                range.first = index.first;
                range.last = index.last;
                if (!path.empty() && path.front() == '.') range.childPath = std::string(path.substr(1));
                return range;
            }
        }
        if (path.empty()) return range;
        if (path.front() != '.' || path.size() == 1) return unknown();
        path.remove_prefix(1);
        // A multi that is passed without an index stands for its first element: `iog.og[2]`.
        if (plug.isArray() && plug.depth < kMaxMultiDepth)
            plug.indices[static_cast<std::size_t>(plug.depth++)] = 0;
    }
}

PlugRange findPlug(Scene& scene, std::string_view plugName) {
    const auto dot = plugName.find('.');
    if (dot == std::string_view::npos)
        return fault("No attribute was named in '" + std::string(plugName) + "'.");
    bool ambiguous = false;
    Node* node = scene.find(plugName.substr(0, dot), &ambiguous);
    if (!node) {
        return fault((ambiguous ? "More than one object matches name: " : "No object matches name: ") +
                     std::string(plugName));
    }
    return findPlug(*node, plugName.substr(dot + 1));
}

} // namespace vesk::graph
