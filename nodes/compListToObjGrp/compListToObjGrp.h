#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Writes a component list into geometry as an object group: see compListToObjGrp.md.
class compListToObjGrp : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope;
    static MObject groupId;
    static MObject inGeometry;
    static MObject outGeometry;
    static MObject inComponents;
};
