#pragma once

#include "nodes/common/bounding_volumes.h"

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Bounding objects act on the points of a geometry: points inside a volume get a weight, a colour, a radius,
/// a position or a normal from its falloff ramps, into the geometry, into arrays, or both.
class attributeTransfer : public MPxNode {
  public:
    inline static MObject envelope, inGeometry, outGeometry;
    inline static MObject inWeightPP, inRgbaPP, inNormalPP, inRadiusPP;
    inline static MObject outPositionPP, outWeightPP, outRgbaPP, outNormalPP, outRadiusPP;
    inline static MObject update, useComponents, inComponents, groupId, colorSet, maxInfluences;
    inline static MObject position, weight, color, normal, radius;
    inline static MObject merge, blend, kernel, alphaModulate, solidAlpha;
    inline static vesk::nodes::VolumeAttributes volumes;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    void postConstructor() override;
    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
