#pragma once

#include <maya/MPxNode.h>

/// Writes an array as a list of weights.
class arrayToMulti : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope, inWeightPP, outWeightList, weight;
};
