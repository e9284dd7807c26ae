#pragma once

#include <maya/MPxNode.h>

/// How much a deformed mesh is stretched or compressed against a rest mesh of the same topology, per vertex.
class tensionMap : public MPxNode {
  public:
    static void* creator();
    static MStatus initialize();
    void postConstructor() override;
    MStatus compute(const MPlug& plug, MDataBlock& block) override;

    static MTypeId id;

    static MObject envelope, inGeometry, restGeometry, outGeometry, inComponents, inWeightPP, outTensionPP,
        outRgbaPP, useComponents, groupId, mode, coordinateSystem, weight, update, colorCoding,
        defaultColorMult, compressionColorMult, stretchColorMult, compressionColorRemap, stretchColorRemap,
        alpha;
};
