#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Runs the user's blocks of MEL over the points of a mesh, curve or surface, one procedure for each channel:
/// position, weight, colour, normal, radius and UV map. What the blocks leave in their variables goes into
/// the geometry and into arrays. A second geometry can be read beside the first.
class point : public MPxNode {
  public:
    static MObject inMessage, inMessageList;
    static MObject inGeometry, inGeometry2, outGeometry;
    static MObject inComponents, useComponents, groupId;
    static MObject currentTime, coordinateSystem;
    static MObject colorSet, colorSet2, uvSet, uvSet2;
    static MObject stringStartBlock, stringEndBlock;
    static MObject enablePosition, applyChangesPosition, stringPosition;
    static MObject enableWeight, stringWeight;
    static MObject enableColor, applyChangesColor, stringColor;
    static MObject enableNormal, applyChangesNormal, stringNormal;
    static MObject enableRadius, stringRadius;
    static MObject enableMap, applyChangesMap, stringMap;
    static MObject inWeightPP, inRgbaPP, inNormalPP, inRadiusPP;
    static MObject inWeightPP2, inNormalPP2, inRgbaPP2, inRadiusPP2;
    static MObject outIdPP, outPositionPP, outWeightPP, outRgbaPP, outNormalPP, outMapPP, outSharedMapPP;
    static MObject outIdForMapPP, outIdPM, outRadiusPP;
    static MObject outPositionPP2, outRgbaPP2, outNormalPP2, outMapPP2, outSharedMapPP2;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
