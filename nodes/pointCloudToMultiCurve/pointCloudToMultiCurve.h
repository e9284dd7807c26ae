#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// A curve for each group of points: trails of particles, hairs, strokes.
class pointCloudToMultiCurve : public MPxNode {
  public:
    static MObject inPositionPP;
    static MObject inGroupPP;
    static MObject inIdPP;
    static MObject outputCurves;
    static MObject degree;
    static MObject close;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
