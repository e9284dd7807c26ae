#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// One curve along all points of an array, in their order.
class pointCloudToCurve : public MPxNode {
  public:
    static MObject inArray;
    static MObject outCurve;
    static MObject degree;
    static MObject close;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
