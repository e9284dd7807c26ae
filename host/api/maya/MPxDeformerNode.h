#pragma once

#include <maya/MItGeometry.h>
#include <maya/MMatrix.h>
#include <maya/MPxNode.h>

/// Base of deformers that plug-ins add.
///
/// A deformer either overrides `deform` or serves `outputGeom` in a `compute` of its own. In the second case
/// copying the input, the node's state and the envelope are its own business. Geometry comes in object space;
/// a weight that no element of `weights` holds counts as 1.
class MPxDeformerNode : public MPxNode {
  public:
    MPxDeformerNode() = default;
    Type type() const override { return kDeformerNode; }

    /// Moves the points of one geometry, element `multiIndex`: `points` walks those of the deformer's group
    /// on the output, which holds a copy of the input. The matrix takes them to the world. Not called while
    /// the node's state is HasNoEffect; the envelope is left to this function.
    virtual MStatus deform(MDataBlock& block, MItGeometry& points, const MMatrix& toWorld,
                           unsigned int multiIndex);

    static MObject input, inputGeom, groupId, outputGeom, weightList, weights, envelope;
};
