#pragma once

#include <maya/MPxDeformerNode.h>
#include <maya/MTypeId.h>

/// Adds one shape where a mesh is stretched and another where it is compressed, measured at the edges of each
/// vertex against their length when the geometry was connected; or one shape by how far a vertex has moved.
class tensionBlendShape : public MPxDeformerNode {
  public:
    inline static MObject inStretchMesh, inCompressionMesh;
    inline static MObject stretchOutput, stretchOutputArray, compressionOutput, compressionOutputArray;
    inline static MObject originEdgeLength, origPoints;
    inline static MObject compressionLimit, stretchLimit, stretchLimitON, compressionLimitON;
    inline static MObject compressionMultiply, stretchMultiply, overallMultiply;
    inline static MObject stretchColor, compressionColor, mode;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
    MStatus setDependentsDirty(const MPlug& plug, MPlugArray& plugs) override;
    MStatus connectionMade(const MPlug& plug, const MPlug& otherPlug, bool asSource) override;
};
