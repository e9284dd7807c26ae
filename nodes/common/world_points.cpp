#include "nodes/common/world_points.h"

#include "nodes/common/steps.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MFnVectorArrayData.h>

namespace vesk::nodes {

namespace {

/// One for each point; zeros where the mesh has fewer vertices.
std::vector<volume::Vec3> vertexNormals(const MObject& mesh, unsigned pointCount) {
    MFloatVectorArray normals;
    MFnMesh(mesh).getVertexNormals(false, normals, MSpace::kWorld);
    std::vector<volume::Vec3> result(pointCount);
    const unsigned count = std::min(pointCount, normals.length());
    for (unsigned i = 0; i < count; ++i)
        result[i] = toVec3(MVector(normals[i]));
    return result;
}

void readSurface(WorldPoints& read, const MPlug& input, bool withNormals) {
    const MFnNurbsSurface surface(read.geometry);
    const MObject tessellation = surfaceAsMesh(input);
    const int count = surface.numCVsInU() * surface.numCVsInV();
    if (!tessellation.isNull() && MFnMesh(tessellation).numVertices() != count) {
        read.isPeriodicSurface = true;
        return;
    }
    read.numCVsInV = static_cast<unsigned>(surface.numCVsInV());
    surface.getCVs(read.points, MSpace::kWorld);
    if (withNormals) read.normals = vertexNormals(tessellation, read.points.length());
}

void readParticles(WorldPoints& read, const MObject& data) {
    const MFnVectorArrayData positions(data);
    const unsigned count = positions.length();
    read.points.setLength(count);
    for (unsigned i = 0; i < count; ++i)
        read.points[i] = MPoint(positions[i].x, positions[i].y, positions[i].z);
}

} // namespace

MFn::Type WorldPoints::pointKind() const {
    switch (kind) {
    case MFnData::kNurbsCurve: return MFn::kCurveCVComponent;
    case MFnData::kNurbsSurface: return MFn::kSurfaceCVComponent;
    default: return MFn::kMeshVertComponent;
    }
}

WorldPoints worldPoints(MDataHandle& handle, const MPlug& input, bool withNormals) {
    WorldPoints read;
    read.kind = handle.type();
    read.geometry = geometryIn(handle, kWorldCoordinates);
    switch (read.kind) {
    case MFnData::kMesh:
        MFnMesh(read.geometry).getPoints(read.points, MSpace::kWorld);
        if (withNormals) read.normals = vertexNormals(read.geometry, read.points.length());
        break;
    case MFnData::kNurbsCurve:
        MFnNurbsCurve(read.geometry).getCVs(read.points, MSpace::kWorld);
        if (withNormals) read.normals = vertexNormals(curveAsMesh(input), read.points.length());
        break;
    case MFnData::kNurbsSurface: readSurface(read, input, withNormals); break;
    case MFnData::kVectorArray: readParticles(read, handle.data()); break;
    default: break;
    }
    return read;
}

} // namespace vesk::nodes
