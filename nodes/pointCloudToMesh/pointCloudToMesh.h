#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// A mesh over a cloud of points, with its normals, colours and UVs.
class pointCloudToMesh : public MPxNode {
  public:
    static MObject inPositionPP;
    static MObject inNormalPP;
    static MObject inRgbaPP;
    static MObject inMapPP;
    static MObject outMesh;
    static MObject meshType;
    static MObject cardSize;
    static MObject polygonSize;
    static MObject columns;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
