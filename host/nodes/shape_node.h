#pragma once
// What geometry shapes have in common: they show what is connected, or else what they keep.

#include "host/core/outcome.h"
#include "host/data/geometry_data.h"
#include "host/graph/dag.h"
#include "host/graph/node_type.h"

namespace vesk::nodes {

/// Abstract node types `shape`, `deformableShape`, `controlPoint`, `curveShape` and `surfaceShape`, with the
/// display and render flags that scene files set on every geometry shape.
void registerShapeBases(graph::TypeRegistry& types);

/// A shape with a geometry input, a copy of its own, a local output and a world output for each instance.
///
/// With the input connected it shows the input. When the wire goes it keeps what it last showed. A value
/// stored on the input without a wire becomes its own as well. Its object groups (`instObjGroups[0]`) are put
/// on both outputs; the world output also carries the matrix of its instance, and shares the geometry.
class GeometryShapeNode : public graph::DagNode {
  public:
    using DagNode::DagNode;

    /// Replaces the shape's own geometry. Refused while the input is connected.
    Outcome setOwn(const Ref<GeometryData>& geometry);
    /// The shape's own geometry, without tweaks and groups; null when there is none. While the input is
    /// connected it is not shown.
    virtual Ref<GeometryData> own();
    /// What the local output carries. Pulls.
    Ref<GeometryData> shown();
    bool hasInput() const;
    /// Lets go of the input and keeps what it shows. Gives back the node that stood there, null for none.
    graph::Node* endHistory();

    graph::ComputeResult compute(graph::Cell& requested) override;
    void connectionBroken(graph::Cell& mine, graph::Cell& other, bool asSource) override;
    void valueStored(graph::Cell& cell) override;

  protected:
    struct Plugs {
        const graph::Attribute *input, *own, *local, *world;
    };
    virtual Plugs plugs() const = 0;
    /// Whether `shape` would change anything.
    virtual bool isShaped() = 0;
    /// Adds the tweaks; `geometry` is the node's alone to write.
    virtual void shape(GeometryData& geometry) = 0;
    /// The shape's own geometry was replaced from outside.
    virtual void ownReplaced() {}

  private:
    Ref<GeometryData> makeLocal();
    void keepInput(graph::Cell& input);
};

/// Declares that the outputs follow the input, the own geometry, `more`, the groups and the world matrix.
void declareShapeInfluences(graph::NodeType& type, const graph::AttrRef& input, const graph::AttrRef& own,
                            const graph::AttrRef& local, const graph::AttrRef& world,
                            const std::vector<graph::AttrRef>& more);

} // namespace vesk::nodes
