#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Colours with alpha, four numbers a point, as the two arrays that particles have for them.
class rgbaToColorAndAlpha : public MPxNode {
  public:
    static MObject inRgbaPP;
    static MObject outRgbPP;
    static MObject outAlphaPP;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
