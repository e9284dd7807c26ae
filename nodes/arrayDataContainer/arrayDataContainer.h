#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

class MPlug;

/// Keeps what an array was at the whole frames of a range, in the scene, and plays it again without what made
/// it.
class arrayDataContainer : public MPxNode {
  public:
    static MObject inArray;
    static MObject outArray;
    static MObject inTime;
    static MObject startTime;
    static MObject endTime;
    static MObject record;
    static MObject heldTime;
    static MObject heldArray;
    static MObject held;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
