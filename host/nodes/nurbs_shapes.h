#pragma once
// The curve and the surface shape.

#include "host/data/nurbs_data.h"
#include "host/nodes/shape_node.h"

namespace vesk::nodes {

/// Node types `nurbsCurve` and `nurbsSurface`; after `registerShapeBases`. They show `create`, or what
/// `cached` keeps, with the offsets of `controlPoints` added to the CVs; degree, spans, form and range can be
/// read.
void registerNurbsShapes(graph::TypeRegistry& types);

class NurbsCurveNode : public GeometryShapeNode {
  public:
    using GeometryShapeNode::GeometryShapeNode;
    graph::ComputeResult compute(graph::Cell& requested) override;
    MBoundingBox ownBounds() override;

  protected:
    Plugs plugs() const override;
    bool isShaped() override;
    void shape(GeometryData& geometry) override;
};

class NurbsSurfaceNode : public GeometryShapeNode {
  public:
    using GeometryShapeNode::GeometryShapeNode;
    graph::ComputeResult compute(graph::Cell& requested) override;
    MBoundingBox ownBounds() override;

  protected:
    Plugs plugs() const override;
    bool isShaped() override;
    void shape(GeometryData& geometry) override;
};

} // namespace vesk::nodes
