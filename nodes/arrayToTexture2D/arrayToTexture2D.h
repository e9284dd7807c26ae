#pragma once

#include <maya/MPxNode.h>

/// A 2D texture whose values come from weights at scattered UV positions.
class arrayToTexture2D : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    void postConstructor() override;
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject inMapPP, inWeightPP, uvCoord, uCoord, vCoord, uvFilterSize, uvFilterSizeX, uvFilterSizeY,
        interpolation, power, outColor;
};
