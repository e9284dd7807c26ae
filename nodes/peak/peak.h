#pragma once

#include <maya/MPxDeformerNode.h>
#include <maya/MTypeId.h>

/// Pushes every point of its geometry along a direction of its own: the normal of a vertex or CV, the
/// velocity of a particle.
class peak : public MPxDeformerNode {
  public:
    static MObject distance;
    static MObject inComponents;
    static MObject inWeightPP;
    static MObject inNormalPP;
    static MObject inVelocityPP;
    static MObject forceEvaluateAllInputs;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
