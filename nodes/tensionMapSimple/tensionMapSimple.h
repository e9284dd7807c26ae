#pragma once

#include <maya/MPxLocatorNode.h>
#include <maya/MTypeId.h>

#include <array>

/// How much fifty zones of a mesh are stretched or squeezed, each through a ramp of its own: numbers that
/// drive channels of a rig.
class tensionMapSimple : public MPxLocatorNode {
  public:
    static constexpr unsigned kZoneCount = 50;

    inline static MObject envelope, inMesh, zones, restFrame, coordinateSystem, stretchMult, compressionMult;
    inline static MObject outStretch, outCompression;
    inline static std::array<MObject, kZoneCount> zoneRamps;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    void postConstructor() override;
    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
