#pragma once

#include <maya/MPxNode.h>

/// Mixes the channels of up to four arrays into one.
class arrayToArray : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope;
    static MObject inArrays[4]; ///< `inArray1` to `inArray4`
    static MObject reads[4][4]; ///< by input, then channel: `readX1`, `readY1` ...
    static MObject outArray, outDataType;
};
