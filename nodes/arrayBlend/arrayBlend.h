#pragma once

#include <maya/MPxNode.h>

/// Combines two arrays, element by element.
class arrayBlend : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject inArray1, inArray2, outArray, operation, blend;
};
