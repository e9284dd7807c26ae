#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Geometry of which each point lags behind, or runs ahead, by a time of its own. Nothing is remembered
/// between computes, so that any frame may be asked for first.
class timeOffset : public MPxNode {
  public:
    static MObject envelope;
    static MObject inGeometry;
    static MObject inWeightPP;
    static MObject outGeometry;
    static MObject offset;
    static MObject coordinateSystem;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
