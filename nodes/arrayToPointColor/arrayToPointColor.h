#pragma once

#include <maya/MPxNode.h>

/// Paints an array into a mesh's vertex colours.
class arrayToPointColor : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope, inGeometry, inRgbaPP, outGeometry, inComponents, useComponents, groupId, clamp,
        clampMin, clampMax, solidAlpha;
};
