#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// One channel of a colour array as an array of its own.
class splitRgba : public MPxNode {
  public:
    static MObject inArray;
    static MObject outArray;
    static MObject channel;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
