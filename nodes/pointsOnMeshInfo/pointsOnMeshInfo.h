#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Where points lie on a mesh: for each the nearest point of the mesh, with its normal, UV, face and
/// triangle.
class pointsOnMeshInfo : public MPxNode {
  public:
    static MObject inMesh;
    static MObject inPositionPP;
    static MObject outPositionPP;
    static MObject outNormalPP;
    static MObject outUvPP;
    static MObject outFaceIdPP;
    static MObject outTriangleIdPP;
    static MObject coordinateSystem;
    static MObject uvSet;
    static MObject averagedNormals;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
