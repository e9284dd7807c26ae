#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// The UV layout of a mesh as a flat mesh, one vertex for each UV, to be edited with anything that edits
/// meshes.
class mapToMesh : public MPxNode {
  public:
    static MObject inMesh;
    static MObject outMesh;
    static MObject uvSet;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
