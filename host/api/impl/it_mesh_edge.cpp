#include "host/api/impl/result.h"
#include "host/geometry/mesh.h"

#include <maya/MIntArray.h>
#include <maya/MItMeshEdge.h>

using vesk::storage;
using vesk::api::answer;
using vesk::api::report;

int MItMeshEdge::index(int end, MStatus* status) const {
    if (!isHere() || end < 0 || end > 1) return answer(status, -1, MStatus::kFailure);
    const auto& edge = topology().edges()[static_cast<std::size_t>(index_)];
    return answer(status, end == 0 ? edge.a : edge.b);
}

MPoint MItMeshEdge::point(int end, MSpace::Space space, MStatus* status) const {
    MPoint point;
    report(status, function_.getPoint(index(end), point, space));
    return point;
}

bool MItMeshEdge::onBoundary(MStatus* status) const {
    if (!isHere()) return answer(status, false, MStatus::kFailure);
    return answer(status, topology().isBoundaryEdge(index_));
}

int MItMeshEdge::getConnectedFaces(MIntArray& faces, MStatus* status) const {
    if (!isHere()) return answer(status, 0, MStatus::kFailure);
    topology().facesOfEdge(index_, storage(faces));
    return answer(status, static_cast<int>(faces.length()));
}

MStatus MItMeshEdge::getConnectedEdges(MIntArray& edges) const {
    if (!isHere()) return MStatus::kFailure;
    topology().edgesTouchingEdge(index_, storage(edges));
    return {};
}
