#pragma once
// Transforms and joints.

#include "host/graph/dag.h"
#include "host/graph/node_type.h"

namespace vesk::nodes {

/// Node types `transform` and `joint`.
void registerTransforms(graph::TypeRegistry& types);

/// First to last: scale and shear about the scale pivot, rotate axis and rotation about the rotate pivot,
/// translation. With `inheritsTransform` off the world matrix is the local one.
class TransformNode : public graph::DagNode {
  public:
    using DagNode::DagNode;
    MMatrix localMatrix() override;
    graph::ComputeResult compute(graph::Cell& requested) override;
};

/// First to last: scale and shear, rotate axis, rotation, joint orient, the inverse of the parent's scale
/// while `segmentScaleCompensate` is on, translation. Pivots count for nothing.
class JointNode : public TransformNode {
  public:
    using TransformNode::TransformNode;
    MMatrix localMatrix() override;
};

} // namespace vesk::nodes
