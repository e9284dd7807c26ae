#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// A mesh with the UV layout that another mesh shows: the way back from `mapToMesh`.
class meshToMap : public MPxNode {
  public:
    static MObject envelope;
    static MObject inMesh;
    static MObject inMesh2;
    static MObject outMesh;
    static MObject uvSet;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
