#include "host/api/impl/result.h"
#include "host/geometry/mesh.h"

#include <maya/MIntArray.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MMatrix.h>
#include <maya/MPointArray.h>
#include <maya/MVector.h>

using vesk::storage;
using vesk::api::answer;
using vesk::api::report;

unsigned int MItMeshPolygon::polygonVertexCount(MStatus* status) const {
    if (!isHere()) return answer(status, 0U, MStatus::kFailure);
    return answer(status, static_cast<unsigned int>(topology().faceSize(index_)));
}

int MItMeshPolygon::vertexIndex(int place, MStatus* status) const {
    if (!isHere() || place < 0 || place >= topology().faceSize(index_))
        return answer(status, -1, MStatus::kFailure);
    return answer(status, topology().verticesOfFace(index_)[static_cast<std::size_t>(place)]);
}

MPoint MItMeshPolygon::point(int place, MSpace::Space space, MStatus* status) const {
    MPoint point;
    report(status, function_.getPoint(vertexIndex(place), point, space));
    return point;
}

void MItMeshPolygon::getPoints(MPointArray& points, MSpace::Space space, MStatus* status) const {
    points.clear();
    report(status, isHere() ? MStatus::kSuccess : MStatus::kFailure);
    for (int i = 0; i < static_cast<int>(polygonVertexCount()); ++i)
        points.append(point(i, space));
}

MPoint MItMeshPolygon::center(MSpace::Space space, MStatus* status) const {
    MVector sum;
    const auto corners = static_cast<int>(polygonVertexCount(status));
    if (corners == 0) return {};
    for (int i = 0; i < corners; ++i)
        sum += MVector(point(i, space));
    return sum / corners;
}

MStatus MItMeshPolygon::getNormal(MVector& normal, MSpace::Space space) const {
    return function_.getPolygonNormal(index_, normal, space);
}

MStatus MItMeshPolygon::getArea(double& area, MSpace::Space space) const {
    if (!isHere()) return MStatus::kFailure;
    const MMatrix* matrix = matrixFor(space);
    area = matrix ? mesh_->faceArea(index_, *matrix) : mesh_->faceArea(index_);
    return {};
}

bool MItMeshPolygon::onBoundary(MStatus* status) const {
    if (!isHere()) return answer(status, false, MStatus::kFailure);
    return answer(status, topology().isBoundaryFace(index_));
}

MStatus MItMeshPolygon::getVertices(MIntArray& vertices) const {
    if (!isHere()) return MStatus::kFailure;
    const auto ids = topology().verticesOfFace(index_);
    storage(vertices).assign(ids.begin(), ids.end());
    return {};
}

MStatus MItMeshPolygon::getEdges(MIntArray& edges) const {
    if (!isHere()) return MStatus::kFailure;
    const auto ids = topology().edgesOfFace(index_);
    storage(edges).assign(ids.begin(), ids.end());
    return {};
}

MStatus MItMeshPolygon::getConnectedFaces(MIntArray& faces) const {
    if (!isHere()) return MStatus::kFailure;
    topology().facesAcrossEdges(index_, storage(faces));
    return {};
}

MStatus MItMeshPolygon::getConnectedEdges(MIntArray& edges) const {
    if (!isHere()) return MStatus::kFailure;
    topology().edgesTouchingFace(index_, storage(edges));
    return {};
}

MStatus MItMeshPolygon::getConnectedVertices(MIntArray& vertices) const {
    if (!isHere()) return MStatus::kFailure;
    topology().verticesAroundFace(index_, storage(vertices));
    return {};
}
