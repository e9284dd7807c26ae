#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Carries a mesh or curve from one reference mesh to another of the same topology. Each point is bound once
/// to a triangle of the first; the binding lies in three hidden arrays, and so is saved with the scene.
class retarget : public MPxNode {
  public:
    static MObject inGeometry;
    static MObject inReferenceMesh;
    static MObject inReferenceMesh2;
    static MObject inWeightPP;
    static MObject outGeometry;
    static MObject envelope;
    static MObject inComponents;
    static MObject useComponents;
    static MObject groupId;
    static MObject mode;
    static MObject reverseNormals;
    static MObject setInitialState;
    static MObject uvSet;
    static MObject uvSet2;
    static MObject tolerance;
    static MObject snapToReferenceMesh;
    static MObject cacheUVs;
    static MObject cacheFaceIds;
    static MObject cachePointIds;

    static MTypeId id;

    static void* creator();
    static MStatus initialize();
    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
