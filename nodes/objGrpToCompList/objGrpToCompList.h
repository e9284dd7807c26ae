#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Reads an object group out of geometry as a component list: see objGrpToCompList.md.
class objGrpToCompList : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope;
    static MObject groupId;
    static MObject inGeometry;
    static MObject outComponents;
};
