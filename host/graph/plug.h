#pragma once
// An address: node, attribute, and an index for each multi on the way. Valid whether or not a cell exists
// there.

#include "host/graph/node.h"

#include <array>
#include <string>
#include <string_view>

namespace vesk::graph {

/// Deepest nesting of multis that an address can hold.
inline constexpr int kMaxMultiDepth = 4;

struct Plug {
    Ref<Node> node;
    Ref<Attribute> attr;
    /// Logical indices of the multis from the outside in; -1 stands for "not chosen".
    std::array<int, kMaxMultiDepth> indices{-1, -1, -1, -1};
    /// How many of them count. For a multi attribute: one less than its depth for the whole, its depth for an
    /// element.
    int depth = 0;

    Plug() = default;
    /// The whole attribute; indices of multi ancestors are left open.
    Plug(Ref<Node> owner, Ref<Attribute> attribute);
    explicit Plug(const Cell& cell);

    bool isNull() const { return !node || !attr; }
    bool isElement() const { return attr && attr->array && depth == attr->multiDepth(); }
    bool isArray() const { return attr && attr->array && !isElement(); }
    bool operator==(const Plug& other) const;

    /// The cell at this address; made when missing, unless an index is open (then null).
    Cell* cell() const;
    Cell* cellIfThere() const;

    Plug element(int logicalIndex) const;
    Plug child(const Attribute& attribute) const;
    Plug parent() const; ///< compound parent of a child
    Plug array() const;  ///< multi of an element

    /// `attr`, `attr[3]`, `multi[2].child`: compound ancestors only where they carry an index.
    std::string attributePath() const;
    /// `node.attributePath`, the node by its shortest unique name.
    std::string name() const;
};

/// What a text such as `node.a[3].b`, `node.a[0:4]`, `node.a[*]` names. Long, short and alias names; children
/// by bare name or path.
struct PlugRange {
    Plug plug;      ///< for a range: the whole multi
    int first = -1; ///< range of elements of `plug`, or -1 when the text names one plug
    int last = -1;
    std::string childPath; ///< what stood behind the range, such as `x_Position` in `ramp[0:3].x_Position`
    std::string error;     ///< empty when found
};
PlugRange findPlug(Node& node, std::string_view attributePath);
/// With the node's name in front; names are resolved in the node's scene.
PlugRange findPlug(class Scene& scene, std::string_view plugName);

} // namespace vesk::graph
