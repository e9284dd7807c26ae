#pragma once

#include <maya/MPxNode.h>

/// Makes an array out of a value or a ramp.
class createArray : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject outArray, outputType, length, defaultValueX, defaultValueY, defaultValueZ, defaultValueW,
        useRamps, rampDefaultValueXYZ, rampDefaultValueW;
};
