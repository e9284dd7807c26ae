#include "nodes/common/geometry_copy.h"

#include "nodes/common/steps.h"

#include <maya/MFnGeometryData.h>
#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsCurveData.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MFnNurbsSurfaceData.h>

namespace vesk::nodes {

namespace {

template <class FunctionSet, class DataFunctionSet>
MObject copied(const MObject& source) {
    MObject data = DataFunctionSet().create();
    MStatus status;
    FunctionSet().copy(source, data, &status);
    if (!status) return MObject::kNullObj;
    MFnGeometryData(data).copyObjectGroups(source);
    return data;
}

} // namespace

MObject copyOfGeometry(const MObject& geometry) {
    switch (geometry.apiType()) {
    case MFn::kMeshData: return copied<MFnMesh, MFnMeshData>(geometry);
    case MFn::kNurbsCurveData: return copied<MFnNurbsCurve, MFnNurbsCurveData>(geometry);
    case MFn::kNurbsSurfaceData: return copied<MFnNurbsSurface, MFnNurbsSurfaceData>(geometry);
    default: return MObject::kNullObj;
    }
}

MObject copyOfGeometry(MDataHandle& handle, short coordinateSystem) {
    return copyOfGeometry(geometryIn(handle, coordinateSystem));
}

} // namespace vesk::nodes
