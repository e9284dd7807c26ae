#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Converts a selection on a mesh between vertices, edges, faces and UVs: see componentToComponent.md.
class componentToComponent : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject inMesh;
    static MObject inComponents;
    static MObject outComponents;
    static MObject envelope;
    static MObject useComponents;
    static MObject groupId;
    static MObject outComponentType;
    static MObject uvSet;
};
