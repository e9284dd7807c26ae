#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// A crowd of transforms as arrays: one entry for each element of `inTransforms`, in the order of their
/// indices.
class transformsToArrays : public MPxNode {
  public:
    static MObject inMatrix;
    static MObject inRotateOrder;
    static MObject inWeight;
    static MObject inColor;
    static MObject inAlpha;
    static MObject inRadius;
    static MObject inTransforms;
    static MObject outPositionPP;
    static MObject outRotationPP;
    static MObject outScalePP;
    static MObject outWeightPP;
    static MObject outRgbaPP;
    static MObject outRadiusPP;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
