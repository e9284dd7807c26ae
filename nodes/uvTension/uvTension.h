#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// A mesh coloured by how its UV layout differs from its surface.
class uvTension : public MPxNode {
  public:
    inline static MObject envelope, inMesh, outMesh, uvSet, mode, multiplier, defaultColor, stretchColor,
        compressionColor;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
