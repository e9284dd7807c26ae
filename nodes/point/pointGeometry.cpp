#include "nodes/point/pointGeometry.h"

#include "nodes/common/choice.h"
#include "nodes/common/geometry_copy.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MItMeshVertex.h>

namespace vesk::nodes {

namespace {

/// An empty name means the current set.
const MString* setNamed(const MString& name) { return name.length() > 0 ? &name : nullptr; }

} // namespace

EditedGeometry::EditedGeometry(MDataHandle& handle, const MPlug& input, short coordinateSystem)
    : type_(handle.type()), space_(coordinateSystem == kWorldCoordinates ? MSpace::kWorld : MSpace::kObject),
      object_(geometryIn(handle, coordinateSystem)) {
    if (object_.isNull()) return;
    switch (type_) {
    case MFnData::kMesh:
        count_ = static_cast<unsigned>(MFnMesh(object_).numVertices());
        tessellation_ = object_;
        return;
    case MFnData::kNurbsCurve:
        count_ = static_cast<unsigned>(MFnNurbsCurve(object_).numCVs());
        stride_ = 2;
        tessellation_ = curveAsMesh(input, {.rebuild = false, .alongProfileNormal = true});
        break;
    default: {
        const MFnNurbsSurface surface(object_);
        numCVsInV_ = static_cast<unsigned>(surface.numCVsInV());
        count_ = static_cast<unsigned>(surface.numCVsInU()) * numCVsInV_;
        tessellation_ = surfaceAsMesh(input);
    }
    }
    const unsigned vertices = static_cast<unsigned>(MFnMesh(tessellation_).numVertices());
    isPeriodic_ = input.isConnected() && vertices != count_ * stride_;
    // The tessellation stands in world space: in object space its normals are turned back.
    if (coordinateSystem == kObjectCoordinates) {
        const MMatrix matrix = handle.geometryTransformMatrix();
        turnsNormals_ = !matrix.isEquivalent(MMatrix());
        toSpace_ = matrix.inverse();
    }
}

void EditedGeometry::makeCopy() {
    if (object_.isNull()) return;
    object_ = copyOfGeometry(object_);
    if (isMesh()) tessellation_ = object_;
}

MPointArray EditedGeometry::points() const {
    MPointArray points;
    switch (type_) {
    case MFnData::kMesh: MFnMesh(object_).getPoints(points, space_); break;
    case MFnData::kNurbsCurve: MFnNurbsCurve(object_).getCVs(points, space_); break;
    default: MFnNurbsSurface(object_).getCVs(points, space_);
    }
    return points;
}

MDoubleArray EditedGeometry::meshColors(const MString& colorSet) const {
    MDoubleArray rgba;
    if (!isMesh()) return rgba;
    MColorArray colors;
    const MColor unset(0, 0, 0, 1);
    MFnMesh(object_).getVertexColors(colors, setNamed(colorSet), &unset);
    rgba.setLength(4 * colors.length());
    for (unsigned i = 0; i < colors.length(); ++i) {
        const MColor& color = colors[i];
        rgba[4 * i] = static_cast<double>(color.r);
        rgba[4 * i + 1] = static_cast<double>(color.g);
        rgba[4 * i + 2] = static_cast<double>(color.b);
        rgba[4 * i + 3] = static_cast<double>(color.a);
    }
    return rgba;
}

MVectorArray EditedGeometry::normals() const {
    MFloatVectorArray ofVertices;
    MFnMesh(tessellation_).getVertexNormals(false, ofVertices, space_);
    MVectorArray normals(count_);
    for (unsigned i = 0; i < count_; ++i) {
        normals[i] = MVector(ofVertices[i * stride_]);
        if (turnsNormals_) normals[i] = normals[i].transformAsNormal(toSpace_).normal();
    }
    return normals;
}

MDoubleArray EditedGeometry::sharedMap(const MString& uvSet) const {
    MDoubleArray map(2 * count_);
    const MString* const set = setNamed(uvSet);
    MItMeshVertex vertex(tessellation_);
    for (unsigned point = 0; point < count_ && !vertex.isDone(); ++point) {
        if (float2 uv; vertex.getUV(uv, set)) {
            map[2 * point] = static_cast<double>(uv[0]);
            map[2 * point + 1] = static_cast<double>(uv[1]);
        }
        for (unsigned step = 0; step < stride_; ++step)
            vertex.next();
    }
    return map;
}

void EditedGeometry::uvs(const MString& uvSet, MFloatArray& us, MFloatArray& vs) const {
    MFnMesh(tessellation_).getUVs(us, vs, setNamed(uvSet));
}

MIntArray EditedGeometry::idsOf(const PointSelection& selection) const {
    const MFn::Type kind = isMesh()                        ? MFn::kMeshVertComponent
                           : type_ == MFnData::kNurbsCurve ? MFn::kCurveCVComponent
                                                           : MFn::kSurfaceCVComponent;
    return selection.ids(kind, count_, numCVsInV_);
}

UvSelection EditedGeometry::uvsAt(const MIntArray& vertices, const MString& uvSet) const {
    UvSelection chosen;
    if (!isMesh()) return chosen;
    const MString* const set = setNamed(uvSet);
    MFloatArray us, vs;
    uvs(uvSet, us, vs);
    std::vector<char> isTaken(us.length(), 0);
    MItMeshVertex at(object_);
    MIntArray ids;
    int previous = 0;
    for (unsigned i = 0; i < vertices.length(); ++i) {
        at.setIndex(vertices[i], previous);
        at.getUVIndices(ids, set);
        for (unsigned k = 0; k < ids.length(); ++k) {
            if (ids[k] < 0 || isTaken[static_cast<unsigned>(ids[k])]) continue;
            isTaken[static_cast<unsigned>(ids[k])] = 1;
            chosen.ids.append(ids[k]);
            chosen.vertices.append(vertices[i]);
        }
    }
    return chosen;
}

void EditedGeometry::setPoints(const MPointArray& points) {
    switch (type_) {
    case MFnData::kMesh: MFnMesh(object_).setPoints(points, space_); break;
    case MFnData::kNurbsCurve: MFnNurbsCurve(object_).setCVs(points, space_); break;
    default: MFnNurbsSurface(object_).setCVs(points, space_);
    }
}

void EditedGeometry::setColors(const MColorArray& colors, const MIntArray& vertices) {
    if (isMesh()) MFnMesh(object_).setVertexColors(colors, vertices);
}

void EditedGeometry::setNormals(const MVectorArray& normals, const MIntArray& vertices) {
    if (isMesh()) MFnMesh(object_).setVertexNormals(normals, vertices, space_);
}

void EditedGeometry::setUvs(const MFloatArray& us, const MFloatArray& vs, const MString& uvSet) {
    if (isMesh()) MFnMesh(object_).setUVs(us, vs, setNamed(uvSet));
}

} // namespace vesk::nodes
