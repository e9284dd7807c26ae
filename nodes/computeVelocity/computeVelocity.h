#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// How fast each point of moving geometry goes: its way since the frame before. Nothing is remembered between
/// computes, so that any frame may be asked for first.
class computeVelocity : public MPxNode {
  public:
    static MObject envelope;
    static MObject inGeometry;
    static MObject inComponents;
    static MObject outVelocityPP;
    static MObject useComponents;
    static MObject groupId;
    static MObject coordinateSystem;
    static MObject scale;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
