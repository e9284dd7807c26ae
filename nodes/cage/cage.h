#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// The faces of a mesh that lie outside a second, closed mesh, as a component list.
class cage : public MPxNode {
  public:
    static MObject inMesh;
    static MObject inMeshCage;
    static MObject outComponents;
    static MObject envelope;
    static MObject tolerance;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
