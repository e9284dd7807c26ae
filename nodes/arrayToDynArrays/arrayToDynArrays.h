#pragma once

#include <maya/MPxNode.h>

/// Adds an array under a name to a dynamic arrays object.
class arrayToDynArrays : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope, inArray, inDynamicArrays, outDynamicArrays, name;
};
