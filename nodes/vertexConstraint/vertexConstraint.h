#pragma once

#include <maya/MPxNode.h>
#include <maya/MTypeId.h>

/// Places and turns of vertices, for transforms that are to follow them.
class vertexConstraint : public MPxNode {
  public:
    inline static MObject inMesh, inComponents, vertexId, coordinateSystem, axis, offset, rotateOrder;
    inline static MObject outTransforms, translate, translateX, translateY, translateZ, rotate, rotateX,
        rotateY, rotateZ;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    MStatus compute(const MPlug& plug, MDataBlock& block) override;
};
