#pragma once
// Shorthand of the host's node types: declaring a type, reading its attributes by name.

#include "host/graph/evaluate.h"
#include "host/graph/node_type.h"

#include <maya/MMatrix.h>
#include <maya/MVector.h>

#include <string>
#include <string_view>

namespace vesk::nodes {

using graph::Attribute;
using graph::AttrRef;
using graph::Cell;
using graph::ComputeResult;
using graph::Node;
using graph::NodeType;
using graph::UnitKind;

/// A new type of nodes of class T in the registry, its attributes still to be added. The base type must be
/// complete.
template <class T>
NodeType& declare(graph::TypeRegistry& types, const std::string& name, MFn::Type kind,
                  std::string_view base = "node") {
    (void)types.add(std::make_unique<NodeType>(
        name, kind, types.find(base), [](const NodeType& type) -> Ref<Node> { return makeRef<T>(type); }));
    return *types.find(name);
}

/// A type that only stands above others.
template <class T>
NodeType& declareAbstract(graph::TypeRegistry& types, const std::string& name, MFn::Type kind,
                          std::string_view base) {
    NodeType& type = declare<T>(types, name, kind, base);
    type.isAbstract = true;
    return type;
}

// --- attributes: flags that reach children as well, and the shapes of tuples that are common

AttrRef keyable(AttrRef attribute);
AttrRef output(AttrRef attribute);
AttrRef distance(std::string longName, std::string shortName, double centimetres = 0);
AttrRef angle(std::string longName, std::string shortName, double radians = 0);
AttrRef shortNumber(std::string longName, std::string shortName, int value = 0);
AttrRef floatNumber(std::string longName, std::string shortName, double value = 0);
/// Three doubles with the suffixes X Y Z.
AttrRef triple(std::string longName, std::string shortName, UnitKind unit = UnitKind::None, double value = 0);
/// Three doubles with a default each.
AttrRef direction(std::string longName, std::string shortName, const MVector& value);
/// Any kind of geometry, and the points of particles.
AttrRef geometryPlug(const char* longName, const char* shortName);

// --- reading. Names are long names of the node's type and must exist. All of it pulls.

Cell& plug(Node& node, std::string_view name);
double valueOf(Node& node, std::string_view name);
inline int countOf(Node& node, std::string_view name) { return static_cast<int>(valueOf(node, name)); }
inline bool flagOf(Node& node, std::string_view name) { return valueOf(node, name) != 0; }
/// Of a triple. An attribute that was never touched gives its default and stays untouched.
MVector vectorOf(Node& node, const Attribute& triple);
MVector vectorOf(Node& node, std::string_view name);
MMatrix matrixIn(Cell& cell);
/// Empty when there is no text.
std::string textIn(Cell& cell);
/// Null when there is other data, or none.
template <class T>
Ref<T> dataOf(Node& node, std::string_view name) {
    return graph::pullAs<T>(plug(node, name));
}

} // namespace vesk::nodes
