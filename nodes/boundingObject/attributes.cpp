// The attributes of boundingObject, and what its ramps start with.

#include "nodes/common/attributes.h"
#include "nodes/boundingObject/boundingObject.h"

#include <maya/MRampAttribute.h>

namespace {

using namespace vesk::nodes;
using Self = boundingObject;

constexpr const char* kNone = "None";
constexpr const char* kList = "Input Component List";
constexpr const char* kGroup = "Input Object Group";

void declareControls(AttributeTable& t) {
    t.matrix(Self::outParentMatrix, "outParentMatrix", "opm").output().aside();
    t.boolean(Self::envelope, "envelope", "en", true).keyable();
    t.enumeration(Self::type, "type", "tp", {"Sphere", "Cube", "Capsule", "Input Geometry"}).keyable();
    t.boolean(Self::contained, "contained", "cnt", true).keyable();
    t.number(Self::topCapOffset, "topCapOffset", "tso", 1).keyable().min(0);
    t.number(Self::topCapScaleX, "topCapScaleX", "tsx", 1).min(0);
    t.number(Self::topCapScaleY, "topCapScaleY", "tsy", 1).min(0);
    t.number(Self::topCapScaleZ, "topCapScaleZ", "tsz", 1).min(0);
    t.tuple(Self::topCapScale, "topCapScale", "ts",
            {&Self::topCapScaleX, &Self::topCapScaleY, &Self::topCapScaleZ})
        .keyable();
    t.number(Self::bottomCapOffset, "bottomCapOffset", "bso", 1).keyable().min(0);
    t.number(Self::bottomCapScaleX, "bottomCapScaleX", "bsx", 1).min(0);
    t.number(Self::bottomCapScaleY, "bottomCapScaleY", "bsy", 1).min(0);
    t.number(Self::bottomCapScaleZ, "bottomCapScaleZ", "bsz", 1).min(0);
    t.tuple(Self::bottomCapScale, "bottomCapScale", "bs",
            {&Self::bottomCapScaleX, &Self::bottomCapScaleY, &Self::bottomCapScaleZ})
        .keyable();
    t.enumeration(Self::normal, "normal", "nml",
                  {"Along X Axis", "Along Y Axis", "Along Z Axis", "Away From Center"})
        .keyable();
    t.compound(Self::controlData, "controlData", "cd",
               {&Self::envelope, &Self::type, &Self::contained, &Self::topCapOffset, &Self::topCapScale,
                &Self::bottomCapOffset, &Self::bottomCapScale, &Self::normal});
}

void declareData(AttributeTable& t) {
    t.typed(Self::positionPP, "positionPP", "ppp", MFnData::kPointArray).output().aside();
    t.typed(Self::normalPP, "normalPP", "npp", MFnData::kVectorArray).output().aside();
    t.typed(Self::radiusPP, "radiusPP", "rpp", MFnData::kDoubleArray).output().aside();
    t.typed(Self::weightPP, "weightPP", "wpp", MFnData::kDoubleArray).output().aside();
    t.typed(Self::rgbaPP, "rgbaPP", "rgbapp", MFnData::kDoubleArray).output().aside();
    t.compound(Self::dataPP, "dataPP", "dpp",
               {&Self::positionPP, &Self::normalPP, &Self::radiusPP, &Self::weightPP, &Self::rgbaPP})
        .output()
        .aside();
    t.compound(Self::outData, "outData", "od", {&Self::outParentMatrix, &Self::controlData, &Self::dataPP})
        .aside();
}

void declareDisplay(AttributeTable& t) {
    t.real(Self::displayColorR, "displayColorR", "dcr", 0).keyable();
    t.real(Self::displayColorG, "displayColorG", "dcg", 0.35).keyable();
    t.real(Self::displayColorB, "displayColorB", "dcb", 0.65).keyable();
    t.tuple(Self::displayColor, "displayColor", "dc",
            {&Self::displayColorR, &Self::displayColorG, &Self::displayColorB})
        .keyable()
        .usedAsColor();
    t.boolean(Self::displayPointCloudBoundingVolumes, "displayPointCloudBoundingVolumes", "dpcbv", true);
    t.boolean(Self::colorPointCloudBoundingVolumes, "colorPointCloudBoundingVolumes", "cpcbv", true);
}

void declareOverrides(AttributeTable& t) {
    t.curveRamp(Self::positionFalloff, "positionFalloff", "pgtf");
    t.curveRamp(Self::weightFalloff, "weightFalloff", "wgtf");
    t.colorRamp(Self::colorFalloff, "colorFalloff", "clrf");
    t.curveRamp(Self::alphaFalloff, "alphaFalloff", "af");
    t.curveRamp(Self::normalFalloff, "normalFalloff", "nf");
    t.curveRamp(Self::radiusFalloff, "radiusFalloff", "rf");
    t.number(Self::pointRadius, "pointRadius", "pr", 1).keyable().min(0).softMax(10);
    t.number(Self::pointWeight, "pointWeight", "pw", 1).keyable().min(0).softMax(1);
    t.real(Self::pointColorR, "pointColorR", "pcr", 1).keyable();
    t.real(Self::pointColorG, "pointColorG", "pcg", 1).keyable();
    t.real(Self::pointColorB, "pointColorB", "pcb", 1).keyable();
    t.tuple(Self::pointColor, "pointColor", "pcl",
            {&Self::pointColorR, &Self::pointColorG, &Self::pointColorB})
        .keyable()
        .usedAsColor();
    t.real(Self::pointAlpha, "pointAlpha", "pa", 1).keyable().softMin(0).softMax(1);
    t.compound(Self::overrideData, "overrideData", "ord",
               {&Self::positionFalloff, &Self::weightFalloff, &Self::colorFalloff, &Self::alphaFalloff,
                &Self::radiusFalloff, &Self::normalFalloff, &Self::pointRadius, &Self::pointWeight,
                &Self::pointColor, &Self::pointAlpha});
}

void declareMesh(AttributeTable& t) {
    t.boolean(Self::useInMesh, "useInMesh", "rim", true).keyable();
    t.typed(Self::inMesh, "inMesh", "inm", MFnData::kMesh).notStorable();
    t.enumeration(Self::inMeshUseComponents, "inMeshUseComponents", "umc", {kNone, kList, kGroup}).keyable();
    t.integer(Self::inMeshObjectGroupId, "inMeshObjectGroupId", "imog", -1).keyable();
    t.typed(Self::inMeshComponents, "inMeshComponents", "imc", MFnData::kComponentList).notStorable();
    t.string(Self::inMeshColorSet, "inMeshColorSet", "imcs");
    t.boolean(Self::inMeshUseRadiusPP, "inMeshUseRadiusPP", "umr", true);
    t.typed(Self::inMeshRadiusPP, "inMeshRadiusPP", "imr", MFnData::kDoubleArray).notStorable();
    t.boolean(Self::inMeshUseWeightPP, "inMeshUseWeightPP", "umw", true);
    t.typed(Self::inMeshWeightPP, "inMeshWeightPP", "imw", MFnData::kDoubleArray).keyable().notStorable();
    t.boolean(Self::inMeshUseRgbaPP, "inMeshUseRgbaPP", "umrgba", true);
    t.compound(Self::inMeshData, "inMeshData", "imd",
               {&Self::useInMesh, &Self::inMesh, &Self::inMeshUseComponents, &Self::inMeshObjectGroupId,
                &Self::inMeshComponents, &Self::inMeshColorSet, &Self::inMeshUseRadiusPP,
                &Self::inMeshRadiusPP, &Self::inMeshUseWeightPP, &Self::inMeshWeightPP,
                &Self::inMeshUseRgbaPP});
}

void declareCurve(AttributeTable& t) {
    t.boolean(Self::useInCurve, "useInCurve", "ric", true).keyable();
    t.typed(Self::inCurve, "inCurve", "inc", MFnData::kNurbsCurve).notStorable();
    t.enumeration(Self::inCurveUseComponents, "inCurveUseComponents", "ucc", {kNone, kList, kGroup})
        .keyable();
    t.integer(Self::inCurveObjectGroupId, "inCurveObjectGroupId", "icog", -1).keyable();
    t.typed(Self::inCurveComponents, "inCurveComponents", "icc", MFnData::kComponentList).notStorable();
    t.boolean(Self::inCurveUseRadiusPP, "inCurveUseRadiusPP", "ucr", true);
    t.typed(Self::inCurveRadiusPP, "inCurveRadiusPP", "icr", MFnData::kDoubleArray).notStorable();
    t.boolean(Self::inCurveUseWeightPP, "inCurveUseWeightPP", "ucw", true);
    t.typed(Self::inCurveWeightPP, "inCurveWeightPP", "icw", MFnData::kDoubleArray).notStorable();
    t.boolean(Self::inCurveUseRgbaPP, "inCurveUseRgbaPP", "ucrgba", true);
    t.generic(Self::inCurveRgbaPP, "inCurveRgbaPP", "icrgba",
              {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray});
    t.compound(Self::inCurveData, "inCurveData", "icd",
               {&Self::useInCurve, &Self::inCurve, &Self::inCurveUseComponents, &Self::inCurveObjectGroupId,
                &Self::inCurveComponents, &Self::inCurveUseRadiusPP, &Self::inCurveRadiusPP,
                &Self::inCurveUseWeightPP, &Self::inCurveWeightPP, &Self::inCurveUseRgbaPP,
                &Self::inCurveRgbaPP});
}

void declareSurface(AttributeTable& t) {
    t.boolean(Self::useInSurface, "useInSurface", "ris", true).keyable();
    t.typed(Self::inSurface, "inSurface", "ins", MFnData::kNurbsSurface).notStorable();
    t.enumeration(Self::inSurfaceUseComponents, "inSurfaceUseComponents", "rsc", {kNone, kList, kGroup})
        .keyable();
    t.integer(Self::inSurfaceObjectGroupId, "inSurfaceObjectGroupId", "isog", -1).keyable();
    t.typed(Self::inSurfaceComponents, "inSurfaceComponents", "isfc", MFnData::kComponentList).notStorable();
    t.boolean(Self::inSurfaceUseRadiusPP, "inSurfaceUseRadiusPP", "usr", true);
    t.typed(Self::inSurfaceRadiusPP, "inSurfaceRadiusPP", "isr", MFnData::kDoubleArray).notStorable();
    t.boolean(Self::inSurfaceUseWeightPP, "inSurfaceUseWeightPP", "usw", true);
    t.typed(Self::inSurfaceWeightPP, "inSurfaceWeightPP", "isw", MFnData::kDoubleArray).notStorable();
    t.boolean(Self::inSurfaceUseRgbaPP, "inSurfaceUseRgbaPP", "usrgba", true);
    t.generic(Self::inSurfaceRgbaPP, "inSurfaceRgbaPP", "isrgba",
              {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray});
    t.compound(Self::inSurfaceData, "inSurfaceData", "isd",
               {&Self::useInSurface, &Self::inSurface, &Self::inSurfaceUseComponents,
                &Self::inSurfaceObjectGroupId, &Self::inSurfaceComponents, &Self::inSurfaceUseRadiusPP,
                &Self::inSurfaceRadiusPP, &Self::inSurfaceUseWeightPP, &Self::inSurfaceWeightPP,
                &Self::inSurfaceUseRgbaPP, &Self::inSurfaceRgbaPP});
}

void declareParticles(AttributeTable& t) {
    t.boolean(Self::useInParticle, "useInParticle", "rip", true).keyable();
    t.enumeration(Self::inParticleUseComponents, "inParticleUseComponents", "upc", {kNone, kList}).keyable();
    t.generic(Self::inParticleComponents, "inParticleComponents", "ipc",
              {MFnData::kComponentList, MFnData::kIntArray})
        .notStorable();
    t.typed(Self::inParticlePositionPP, "inParticlePositionPP", "ipp", MFnData::kVectorArray).notStorable();
    t.boolean(Self::inParticleUseVelocityPP, "inParticleUseVelocityPP", "upv", true);
    t.typed(Self::inParticleVelocityPP, "inParticleVelocityPP", "ipv", MFnData::kVectorArray).notStorable();
    t.boolean(Self::inParticleUseRadiusPP, "inParticleUseRadiusPP", "upr", true);
    t.typed(Self::inParticleRadiusPP, "inParticleRadiusPP", "ipr", MFnData::kDoubleArray).notStorable();
    t.boolean(Self::inParticleUseWeightPP, "inParticleUseWeightPP", "upw", true);
    t.typed(Self::inParticleWeightPP, "inParticleWeightPP", "ipw", MFnData::kDoubleArray).notStorable();
    t.boolean(Self::inParticleUseRgbPP, "inParticleUseRgbPP", "uprgb", true);
    t.typed(Self::inParticleRgbPP, "inParticleRgbPP", "iprgb", MFnData::kVectorArray).notStorable();
    t.boolean(Self::inParticleUseOpacityPP, "inParticleUseOpacityPP", "upo", true);
    t.typed(Self::inParticleOpacityPP, "inParticleOpacityPP", "ipo", MFnData::kDoubleArray).notStorable();
    t.compound(Self::inParticleData, "inParticleData", "ipd",
               {&Self::useInParticle, &Self::inParticleUseComponents, &Self::inParticleComponents,
                &Self::inParticlePositionPP, &Self::inParticleUseVelocityPP, &Self::inParticleVelocityPP,
                &Self::inParticleUseRadiusPP, &Self::inParticleRadiusPP, &Self::inParticleUseWeightPP,
                &Self::inParticleWeightPP, &Self::inParticleUseRgbPP, &Self::inParticleRgbPP,
                &Self::inParticleUseOpacityPP, &Self::inParticleOpacityPP});
}

} // namespace

MStatus boundingObject::initialize() {
    AttributeTable t;
    declareControls(t);
    declareData(t);
    declareDisplay(t);
    declareOverrides(t);
    t.matrix(inSkinInfluenceWorldMatrix, "inSkinInfluenceWorldMatrix", "isiwm");
    t.matrix(inParentMatrix, "inParentMatrix", "ipm");
    declareMesh(t);
    declareCurve(t);
    declareSurface(t);
    declareParticles(t);
    if (const MStatus status = t.finish(); !status) return status;
    // Inputs and outputs share compounds, so the table cannot tell who influences whom.
    const MObject* const inputs[] = {&controlData,
                                     &displayColor,
                                     &displayPointCloudBoundingVolumes,
                                     &colorPointCloudBoundingVolumes,
                                     &overrideData,
                                     &inSkinInfluenceWorldMatrix,
                                     &inParentMatrix,
                                     &inMeshData,
                                     &inCurveData,
                                     &inSurfaceData,
                                     &inParticleData};
    const MObject* const outputs[] = {&outData,  &outParentMatrix, &dataPP,   &positionPP,
                                      &normalPP, &radiusPP,        &weightPP, &rgbaPP};
    for (const MObject* in : inputs) {
        for (const MObject* out : outputs) {
            if (const MStatus status = attributeAffects(*in, *out); !status) return status;
        }
    }
    return MS::kSuccess;
}

void boundingObject::postConstructor() {
    // A fresh ramp has one entry at position 0, linear and of value 0.
    const MObject self = thisMObject();
    for (const MObject* ramp : {&positionFalloff, &weightFalloff, &normalFalloff, &radiusFalloff}) {
        MRampAttribute falloff(self, *ramp);
        falloff.setValueAtIndex(1, 0);
        const float position = 1, value = 0;
        const int interpolation = MRampAttribute::kLinear;
        falloff.addEntries(MFloatArray(&position, 1), MFloatArray(&value, 1), MIntArray(&interpolation, 1));
    }
    MRampAttribute(self, colorFalloff).setColorAtIndex(MColor(1, 1, 1), 0);
    MRampAttribute(self, alphaFalloff).setValueAtIndex(1, 0);
}
