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
    FunctionSet().copy(source, data);
    MFnGeometryData(data).copyObjectGroups(source);
    return data;
}

} // namespace

MObject copyOfGeometry(MDataHandle& handle, short coordinateSystem) {
    const MObject source = geometryIn(handle, coordinateSystem);
    if (source.isNull()) return source;
    switch (handle.type()) {
    case MFnData::kMesh: return copied<MFnMesh, MFnMeshData>(source);
    case MFnData::kNurbsCurve: return copied<MFnNurbsCurve, MFnNurbsCurveData>(source);
    default: return copied<MFnNurbsSurface, MFnNurbsSurfaceData>(source);
    }
}

} // namespace vesk::nodes
