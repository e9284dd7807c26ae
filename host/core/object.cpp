#include "host/core/object.h"

#include <maya/MObject.h>

#include <array>

namespace vesk {

namespace {

struct Kind {
    MFn::Type type;
    MFn::Type parent;
    const char* name;
};

#define KIND(type, parent)                                                                                   \
    Kind { MFn::type, MFn::parent, #type }
/// Every kind with its direct ancestor, in any order.
constexpr Kind kinds[] = {
    KIND(kBase, kInvalid),
    KIND(kNamedObject, kBase),
    KIND(kDependencyNode, kNamedObject),

    // DAG nodes
    KIND(kDagNode, kDependencyNode),
    KIND(kTransform, kDagNode),
    KIND(kJoint, kTransform),
    KIND(kIkEffector, kTransform),
    KIND(kIkHandle, kTransform),
    KIND(kPointConstraint, kTransform),
    KIND(kParentConstraint, kTransform),
    KIND(kScaleConstraint, kTransform),
    KIND(kWorld, kDagNode),
    KIND(kShape, kDagNode),
    KIND(kCamera, kShape),
    KIND(kLocator, kShape),
    KIND(kPointLight, kShape),

    // geometry nodes
    KIND(kCurve, kShape),
    KIND(kNurbsCurve, kCurve),
    KIND(kLattice, kShape),
    KIND(kSurface, kShape),
    KIND(kNurbsSurface, kSurface),
    KIND(kMesh, kSurface),
    KIND(kSubdiv, kSurface),
    KIND(kPfxGeometry, kShape),
    KIND(kStroke, kPfxGeometry),
    KIND(kNurbsCurveGeom, kBase),
    KIND(kNurbsSurfaceGeom, kBase),
    KIND(kMeshGeom, kBase),

    // graph nodes
    KIND(kUnknown, kDependencyNode),
    KIND(kAnimCurve, kDependencyNode),
    KIND(kDistance, kDependencyNode),
    KIND(kExtrude, kDependencyNode),
    KIND(kNurbsTesselate, kDependencyNode),
    KIND(kRebuildCurve, kDependencyNode),
    KIND(kGroupId, kDependencyNode),
    KIND(kGroupParts, kDependencyNode),
    KIND(kLambert, kDependencyNode),
    KIND(kPolyCube, kDependencyNode),
    KIND(kPolyCut, kDependencyNode),
    KIND(kScript, kDependencyNode),
    KIND(kTime, kDependencyNode),
    KIND(kSet, kDependencyNode),
    KIND(kShadingEngine, kSet),
    KIND(kGeometryFilt, kDependencyNode),
    KIND(kBlendShape, kGeometryFilt),
    KIND(kTweak, kGeometryFilt),
    KIND(kSoftMod, kGeometryFilt),

    // textures
    KIND(kPlace2dTexture, kDependencyNode),
    KIND(kPlace3dTexture, kTransform),
    KIND(kProjection, kDependencyNode),
    KIND(kChecker, kDependencyNode),
    KIND(kFileTexture, kDependencyNode),
    KIND(kRamp, kDependencyNode),
    KIND(kNoise, kDependencyNode),
    KIND(kFluidTexture2D, kDependencyNode),

    // dynamics
    KIND(kEmitter, kTransform),
    KIND(kFluidEmitter, kEmitter),
    KIND(kField, kTransform),
    KIND(kInstancer, kTransform),
    KIND(kParticle, kShape),
    KIND(kNParticle, kParticle),
    KIND(kFluid, kShape),
    KIND(kFollicle, kShape),
    KIND(kNCloth, kShape),
    KIND(kFluidGeom, kBase),

    // components
    KIND(kComponent, kBase),
    KIND(kCurveCVComponent, kComponent),
    KIND(kCurveEPComponent, kComponent),
    KIND(kSurfaceCVComponent, kComponent),
    KIND(kLatticeComponent, kComponent),
    KIND(kMeshEdgeComponent, kComponent),
    KIND(kMeshPolygonComponent, kComponent),
    KIND(kMeshVertComponent, kComponent),
    KIND(kMeshFaceVertComponent, kComponent),
    KIND(kMeshVtxFaceComponent, kComponent),
    KIND(kMeshMapComponent, kComponent),
    KIND(kDynParticleSetComponent, kComponent),

    // attributes
    KIND(kAttribute, kBase),
    KIND(kNumericAttribute, kAttribute),
    KIND(kAttribute2Double, kNumericAttribute),
    KIND(kAttribute2Float, kNumericAttribute),
    KIND(kAttribute2Int, kNumericAttribute),
    KIND(kAttribute3Double, kNumericAttribute),
    KIND(kAttribute3Float, kNumericAttribute),
    KIND(kAttribute3Int, kNumericAttribute),
    KIND(kUnitAttribute, kAttribute),
    KIND(kDoubleAngleAttribute, kUnitAttribute),
    KIND(kFloatAngleAttribute, kUnitAttribute),
    KIND(kDoubleLinearAttribute, kUnitAttribute),
    KIND(kFloatLinearAttribute, kUnitAttribute),
    KIND(kTimeAttribute, kUnitAttribute),
    KIND(kEnumAttribute, kAttribute),
    KIND(kTypedAttribute, kAttribute),
    KIND(kCompoundAttribute, kAttribute),
    KIND(kGenericAttribute, kAttribute),
    KIND(kMatrixAttribute, kAttribute),
    KIND(kFloatMatrixAttribute, kMatrixAttribute),
    KIND(kMessageAttribute, kAttribute),

    // data
    KIND(kData, kBase),
    KIND(kNumericData, kData),
    KIND(kData2Double, kNumericData),
    KIND(kData3Double, kNumericData),
    KIND(kData3Float, kNumericData),
    KIND(kComponentListData, kData),
    KIND(kDoubleArrayData, kData),
    KIND(kIntArrayData, kData),
    KIND(kVectorArrayData, kData),
    KIND(kPointArrayData, kData),
    KIND(kStringData, kData),
    KIND(kStringArrayData, kData),
    KIND(kMatrixData, kData),
    KIND(kMatrixFloatData, kData),
    KIND(kPluginData, kData),
    KIND(kDynArrayAttrsData, kData),
    KIND(kNObjectData, kData),
    KIND(kNIdData, kData),
    KIND(kGeometryData, kData),
    KIND(kMeshData, kGeometryData),
    KIND(kNurbsCurveData, kGeometryData),
    KIND(kNurbsSurfaceData, kGeometryData),
    KIND(kLatticeData, kGeometryData),
    KIND(kSphereData, kGeometryData),
    KIND(kSubdivData, kGeometryData),
    KIND(kDynSweptGeometryData, kGeometryData),
    KIND(kFluidData, kGeometryData),
    KIND(kSelectionList, kBase),

    // plug-ins and the nodes that they add
    KIND(kPlugin, kBase),
    KIND(kPluginDependNode, kDependencyNode),
    KIND(kPluginLocatorNode, kLocator),
    KIND(kPluginDeformerNode, kGeometryFilt),
    KIND(kPluginManipContainer, kTransform),
    KIND(kPluginManipulatorNode, kTransform),
    KIND(kPluginShape, kShape),
    KIND(kPluginFieldNode, kField),
    KIND(kPluginEmitterNode, kEmitter),
    KIND(kPluginTransformNode, kTransform),
};
#undef KIND

/// The table by number, for one step an ancestor.
struct KindsByNumber {
    std::array<const Kind*, MFn::kLast> at{};
    KindsByNumber() {
        for (const Kind& kind : kinds)
            at[kind.type] = &kind;
    }
};

const Kind* findKind(MFn::Type type) {
    static const KindsByNumber table;
    return type > MFn::kInvalid && type < MFn::kLast ? table.at[type] : nullptr;
}

} // namespace

bool isKindOf(MFn::Type type, MFn::Type ancestor) {
    if (ancestor == MFn::kInvalid) return false;
    for (const Kind* kind = findKind(type); kind; kind = findKind(kind->parent)) {
        if (kind->type == ancestor) return true;
    }
    return false;
}

const char* kindName(MFn::Type type) {
    const Kind* kind = findKind(type);
    return kind ? kind->name : "kInvalid";
}

bool Object::hasFn(MFn::Type type) const { return isKindOf(apiType(), type); }

void Object::destroy() const { delete this; }

void retainObject(Object* object) { object->retain(); }
void releaseObject(Object* object) { object->release(); }

} // namespace vesk

MObject MObject::kNullObj;

MFn::Type MObject::apiType() const { return object_ ? object_->apiType() : MFn::kInvalid; }
const char* MObject::apiTypeStr() const { return vesk::kindName(apiType()); }
bool MObject::hasFn(MFn::Type type) const { return object_ && object_->hasFn(type); }
