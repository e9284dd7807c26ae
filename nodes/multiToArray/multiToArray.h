#pragma once

#include <maya/MPxNode.h>

/// Reads a list of weights into an array.
class multiToArray : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope, inWeightList, weights, outArray;
};
