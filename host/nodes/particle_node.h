#pragma once
// Particle shapes: their arrays, without a solver.

#include "host/nodes/placeholder.h"

namespace vesk::nodes {

/// Node types `particle` and `nParticle`; after `registerShapeBases`.
///
/// A per-particle array has a twin for the start, whose name ends in "0" (`position`, `position0` [`pos0`]).
/// Storing a twin, as files do, also stores the array. `count` follows `position`; `worldPosition` and
/// `worldVelocity` are taken through the first world matrix.
class ParticleNode : public graph::DagNode {
  public:
    using DagNode::DagNode;
    graph::ComputeResult compute(graph::Cell& requested) override;
    void valueStored(graph::Cell& cell) override;
    MBoundingBox ownBounds() override;
};

void registerParticles(graph::TypeRegistry& types);

} // namespace vesk::nodes
