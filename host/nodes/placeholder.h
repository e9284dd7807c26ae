#pragma once
// Nodes that do nothing but keep what is set on them and what is wired to them.

#include "host/graph/dag.h"
#include "host/graph/plug.h"
#include "host/graph/scene.h"
#include "host/nodes/transform.h"

#include <string>
#include <string_view>
#include <vector>

namespace vesk::nodes {

/// What is known about an attribute when it is first named.
struct AttributeHint {
    /// Numbers that are given without a type, over all elements of a range.
    int numbers = 0;
    /// The type that a value is given with: `double3`, `string`, `matrix` ...
    std::string type;
    /// The other end of a wire.
    const graph::Plug* other = nullptr;
    /// The wire goes to the next free element.
    bool nextAvailable = false;
};

/// A node whose attributes come to be as they are set or connected. They are dynamic attributes whose long
/// and short name is the name as it was written.
class Placeholder {
  public:
    virtual ~Placeholder() = default;
    Placeholder(const Placeholder&) = delete;
    Placeholder& operator=(const Placeholder&) = delete;

    /// The attribute at a written path (`a`, `a[3]`, `a.b[0:4].c`), with compounds and multis on the way made
    /// as needed. What is there already is kept as it is. Null when the path cannot be understood, or does
    /// not fit what is there.
    graph::Attribute* ensure(std::string_view path, const AttributeHint& hint);
    /// Whether the attribute came to be this way: a file sets it without adding it first.
    static bool made(const graph::Attribute& attribute) { return attribute.guessed; }

  protected:
    explicit Placeholder(graph::Node& node) : node_(node) {}

  private:
    graph::Attribute* ensureOne(graph::Attribute* below, const std::string& name,
                                const graph::AttrRef& wanted);

    graph::Node& node_;
};

template <class Base>
class PlaceholderOf : public Base, public Placeholder {
  public:
    explicit PlaceholderOf(const graph::NodeType& type)
        : Base(type), Placeholder(static_cast<Base&>(*this)) {}
};
using PlaceholderNode = PlaceholderOf<graph::Node>;
using PlaceholderShape = PlaceholderOf<graph::DagNode>;
using PlaceholderTransform = PlaceholderOf<TransformNode>;

enum class PlaceholderKind { Node, Shape, Transform };

/// The kind that an unknown node most likely has: one without a parent is a node outside the DAG, one below a
/// parent a shape if "Shape" is in its name, else a transform.
PlaceholderKind likelyKind(bool hasParent, std::string_view nodeName);

/// The type of that name for nodes that nobody knows, made on demand; its nodes are of kind `kUnknown`. A
/// type of that name that is there already is returned as it is.
const graph::NodeType& placeholderType(graph::TypeRegistry& types, const std::string& name,
                                       PlaceholderKind kind = PlaceholderKind::Node);

} // namespace vesk::nodes
