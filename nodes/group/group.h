#pragma once

#include "nodes/common/bounding_volumes.h"

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Selects components of geometry by rules, volumes, mirroring and over time: see group.md.
class group : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope, inMessage, outMessage, inGeometry, outGeometry, inComponents, outComponents;
    static MObject inVelocityPP, initStateComponents, componentType, filterInput, combine, operation;
    static MObject coordinateSystem, uvSet, currentTime, startFrames, resetFrames, outputObjectGroup, groupId;
    static MObject pattern, rangeStart, rangeEnd, range, stepA, stepB, step;
    static MObject mode, directionX, directionY, directionZ, direction, spreadAngle, inBetweenAngle;
    static MObject initialComponents, depth, space, lengthThreshold, areaThreshold, perimeterThreshold;
    static MObject mirror, axis, mirrorDirection, precise, radius;
    static MObject gridResolutionX, gridResolutionY, gridResolutionZ, gridResolution, mirrorMatrix, contained;
    static MObject boundary, invert;
    static vesk::nodes::VolumeAttributes volumes;
};
