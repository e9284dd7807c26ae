#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Where per-point data begins: a mesh, curve, surface or particle position array comes in, and the
/// attributes whose switches are on go out as flat arrays in the order of the geometry's points. Downstream
/// nodes work on arrays alone and never see the geometry.
class pointAttributeToArray : public MPxNode {
  public:
    static MObject inGeometry;
    static MObject inComponents;
    static MObject outIdPP;
    static MObject outPositionPP;
    static MObject outRotationPP;
    static MObject outNormalPP;
    static MObject outBinormalPP;
    static MObject outTangentPP;
    static MObject outRgbaPP;
    static MObject outMapCountPP;
    static MObject outMapIdPP;
    static MObject outMapPP;
    static MObject outSharedMapPP;
    static MObject pointPosition;
    static MObject pointRotation;
    static MObject pointNormal;
    static MObject pointTangent;
    static MObject pointBinormal;
    static MObject pointColor;
    static MObject mapData;
    static MObject coordinateSystem;
    static MObject colorSet;
    static MObject uvSet;
    static MObject useComponents;
    static MObject groupId;
    static MObject prune;
    static MObject rotationOrder;
    static MObject averagedNormals;
    static MObject averagedTangents;
    static MObject averagedBinormals;
    static MObject normalIdOffset;
    static MObject binormalIdOffset;
    static MObject tangentIdOffset;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
