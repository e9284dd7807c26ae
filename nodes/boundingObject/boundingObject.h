#pragma once

#include <maya/MPxLocatorNode.h>
#include <maya/MTypeId.h>

/// A volume in space: a sphere, a cube or a capsule that stands where its transform stands, or a cloud of
/// small spheres at the points of a mesh, a curve, a surface and particles. It selects nothing by itself: the
/// nodes that it is connected to test their points against it, and read its falloff ramps where a point is
/// inside.
class boundingObject : public MPxLocatorNode {
  public:
    inline static MObject outData, outParentMatrix;
    inline static MObject controlData, envelope, type, contained, topCapOffset, topCapScale, topCapScaleX,
        topCapScaleY, topCapScaleZ, bottomCapOffset, bottomCapScale, bottomCapScaleX, bottomCapScaleY,
        bottomCapScaleZ, normal;
    inline static MObject dataPP, positionPP, normalPP, radiusPP, weightPP, rgbaPP;
    inline static MObject displayColor, displayColorR, displayColorG, displayColorB,
        displayPointCloudBoundingVolumes, colorPointCloudBoundingVolumes;
    inline static MObject overrideData, positionFalloff, weightFalloff, colorFalloff, alphaFalloff,
        normalFalloff, radiusFalloff, pointRadius, pointWeight, pointColor, pointColorR, pointColorG,
        pointColorB, pointAlpha;
    inline static MObject inSkinInfluenceWorldMatrix, inParentMatrix;
    inline static MObject inMeshData, useInMesh, inMesh, inMeshUseComponents, inMeshObjectGroupId,
        inMeshComponents, inMeshColorSet, inMeshUseRadiusPP, inMeshRadiusPP, inMeshUseWeightPP,
        inMeshWeightPP, inMeshUseRgbaPP;
    inline static MObject inCurveData, useInCurve, inCurve, inCurveUseComponents, inCurveObjectGroupId,
        inCurveComponents, inCurveUseRadiusPP, inCurveRadiusPP, inCurveUseWeightPP, inCurveWeightPP,
        inCurveUseRgbaPP, inCurveRgbaPP;
    inline static MObject inSurfaceData, useInSurface, inSurface, inSurfaceUseComponents,
        inSurfaceObjectGroupId, inSurfaceComponents, inSurfaceUseRadiusPP, inSurfaceRadiusPP,
        inSurfaceUseWeightPP, inSurfaceWeightPP, inSurfaceUseRgbaPP, inSurfaceRgbaPP;
    inline static MObject inParticleData, useInParticle, inParticleUseComponents, inParticleComponents,
        inParticlePositionPP, inParticleUseVelocityPP, inParticleVelocityPP, inParticleUseRadiusPP,
        inParticleRadiusPP, inParticleUseWeightPP, inParticleWeightPP, inParticleUseRgbPP, inParticleRgbPP,
        inParticleUseOpacityPP, inParticleOpacityPP;

    static MTypeId id;
    static void* creator();
    static MStatus initialize();

    void postConstructor() override;
    MStatus compute(const MPlug& plug, MDataBlock& block) override;
    void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle style,
              M3dView::DisplayStatus status) override;
    bool isBounded() const override { return true; }
    MBoundingBox boundingBox() const override;
};
