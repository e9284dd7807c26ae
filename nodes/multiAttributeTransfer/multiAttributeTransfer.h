#pragma once

#include "nodes/common/bounding_volumes.h"

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Bounding objects as a table of weights, laid out as a deformer's weight list: one weight for each point,
/// or for each point one under each volume. The geometry passes through.
class multiAttributeTransfer : public MPxNode {
  public:
    inline static MObject envelope, inGeometry, outGeometry;
    inline static MObject weights, outWeightList;
    inline static MObject useComponents, inComponents, groupId, processAllComponents;
    inline static MObject maxInfluences, mode, kernel, weightFreePointsTo;
    inline static vesk::nodes::VolumeAttributes volumes;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    void postConstructor() override;
    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
