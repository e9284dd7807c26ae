#pragma once
// The chains of deformers in front of shapes: how they are built, lengthened and taken apart again.

#include "host/commands/command_spec.h"
#include "host/data/component.h"

namespace vesk::commands {

/// One shape and its points that a deformer is to move: components of the points' kind.
struct DeformTarget {
    Ref<graph::DagNode> shape;
    Ref<Component> points;
};

/// Whether deformers can move the points of a node's type: meshes, curves, surfaces and particles.
bool isDeformable(const graph::Node& node);
/// All points of a deformable shape.
Ref<Component> allPoints(const graph::DagNode& shape);

/// Where in a shape's chain a deformer goes.
enum class ChainPlace : std::uint8_t {
    End,   ///< just before the shape
    Front, ///< before the deformers that are there, behind the shape's tweaks
};

/// Puts a new deformer into the chains of the shapes, target i at its element i.
///
/// A shape without history gets an intermediate copy, `<shape>Orig`, which starts its chain; one without a
/// tweak node gets that as well, and the tweaks that were on the shape. For each shape there are a `groupId`
/// and a `groupParts` node with the points, for the deformer one set.
void applyDeformer(CommandContext& context, graph::Node& filter, const std::vector<DeformTarget>& targets,
                   ChainPlace place);

/// Takes a deformer out of its chains, so that what it fed is fed by what fed it, and removes the groups and
/// the set that it alone used. When that leaves a shape with nothing but an idle tweak node and its
/// intermediate copy, these go as well and the shape keeps its geometry. The deformer itself stays.
void bypassDeformer(CommandContext& context, graph::Node& filter);

/// Whether a node is a deformer that feeds nothing.
bool isIdleDeformer(graph::Node& node);

/// Removes the set that a deformer alone uses and its entries on the shapes; a tweak node lets go of its
/// shape as well. For deformers that feed no shape any more.
void releaseSet(CommandContext& context, graph::Node& filter);

} // namespace vesk::commands
