#pragma once

#include <maya/MPxNode.h>

/// Cuts or pads an array.
class resizeArray : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject inArray, outArray, length;
};
