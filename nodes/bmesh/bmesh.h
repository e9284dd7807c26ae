#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// A skeleton of joints becomes a coarse mesh of quads round it, smoothed and subdivided where wanted. The
/// first element of `inJoints` names the root; the hierarchy below it says which joints hang together. All is
/// built anew at each compute.
class bmesh : public MPxNode {
  public:
    static MObject matrix;
    static MObject radius;
    static MObject inJoints;
    static MObject outMesh;
    static MObject subdivisions;
    static MObject smooth;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
