#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Points of a geometry or of particles, pulled along rays onto a mesh; over time, if asked, from where the
/// last frame left them.
class rayProject : public MPxNode {
  public:
    static MObject inGeometry;
    static MObject inComponents;
    static MObject inWeightPP;
    static MObject inNormalPP;
    static MObject inCollisionMesh;
    static MObject outGeometry;
    static MObject envelope;
    static MObject useComponents;
    static MObject groupId;
    static MObject rayDirectionMode;
    static MObject rayPositionX, rayPositionY, rayPositionZ, rayPosition;
    static MObject rayDirectionX, rayDirectionY, rayDirectionZ, rayDirection;
    static MObject testBothDirections;
    static MObject reverseRayDirection;
    static MObject weight;
    static MObject minDistance;
    static MObject maxDistance;
    static MObject maxAngle;
    static MObject keepHistory;
    static MObject inTime;
    static MObject startTime;
    static MObject endTime;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
