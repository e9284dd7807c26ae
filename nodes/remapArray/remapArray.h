#pragma once

#include <maya/MPxNode.h>

/// Changes the values of an array, and its kind.
class remapArray : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject inArray, outArray, absolute, shift, shiftValue, remap, remapMin, remapMax, clamp, clampMin,
        clampMax, outArrayType;
};
