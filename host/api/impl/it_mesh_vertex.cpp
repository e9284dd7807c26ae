#include "host/api/impl/result.h"
#include "host/geometry/mesh.h"

#include <maya/MFloatArray.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshVertex.h>

#include <string_view>

using vesk::storage;
using vesk::api::answer;
using vesk::api::report;

namespace {

std::string_view nameOf(const MString* set) {
    return set ? std::string_view(set->asChar(), set->length()) : std::string_view();
}

} // namespace

MPoint MItMeshVertex::position(MSpace::Space space, MStatus* status) const {
    MPoint point;
    report(status, function_.getPoint(index_, point, space));
    return point;
}

MStatus MItMeshVertex::getNormal(MVector& normal, MSpace::Space space) const {
    return function_.getVertexNormal(index_, false, normal, space);
}

bool MItMeshVertex::onBoundary(MStatus* status) const {
    if (!isHere()) return answer(status, false, MStatus::kFailure);
    return answer(status, topology().isBoundaryVertex(index_));
}

MStatus MItMeshVertex::getConnectedFaces(MIntArray& faces) const {
    if (!isHere()) return MStatus::kFailure;
    topology().facesOfVertex(index_, storage(faces));
    return {};
}

MStatus MItMeshVertex::getConnectedEdges(MIntArray& edges) const {
    if (!isHere()) return MStatus::kFailure;
    const auto round = topology().edgesOfVertex(index_);
    storage(edges).assign(round.begin(), round.end());
    return {};
}

MStatus MItMeshVertex::getConnectedVertices(MIntArray& vertices) const {
    if (!isHere()) return MStatus::kFailure;
    const auto round = topology().verticesOfVertex(index_);
    storage(vertices).assign(round.begin(), round.end());
    return {};
}

MStatus MItMeshVertex::numConnectedEdges(int& count) const {
    if (!isHere()) return MStatus::kFailure;
    count = static_cast<int>(topology().edgesOfVertex(index_).size());
    return {};
}

MStatus MItMeshVertex::getColor(MColor& color, const MString* colorSet) const {
    if (!isHere()) return MStatus::kFailure;
    const int set = mesh_->findColorSet(nameOf(colorSet));
    color = set < 0 ? vesk::geom::unsetColor : mesh_->vertexColor(set, index_);
    return {};
}

MStatus MItMeshVertex::numUVs(int& count, const MString* uvSet) const {
    count = 0;
    if (!isHere()) return MStatus::kFailure;
    const int set = mesh_->findUvSet(nameOf(uvSet));
    if (set < 0) return MStatus::kFailure;
    count = mesh_->vertexUvCount(set, index_);
    return {};
}

MStatus MItMeshVertex::getUVIndices(MIntArray& ids, const MString* uvSet) const {
    ids.clear();
    if (!isHere()) return MStatus::kFailure;
    const int set = mesh_->findUvSet(nameOf(uvSet));
    if (set < 0) return MStatus::kFailure;
    mesh_->vertexUvIds(set, index_, storage(ids));
    return {};
}

MStatus MItMeshVertex::getUVs(MFloatArray& us, MFloatArray& vs, MIntArray& faces,
                              const MString* uvSet) const {
    us.clear();
    vs.clear();
    faces.clear();
    if (!isHere()) return MStatus::kFailure;
    const int set = mesh_->findUvSet(nameOf(uvSet));
    if (set < 0) return MStatus::kFailure;
    topology().facesOfVertex(index_, scratch_);
    for (const int face : scratch_) {
        const auto uv = mesh_->cornerUv(set, topology().findCorner(face, index_));
        if (!uv) continue;
        us.append(uv->u);
        vs.append(uv->v);
        faces.append(face);
    }
    return faces.length() > 0 ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MItMeshVertex::getUV(float2& uv, const MString* uvSet) const {
    if (!isHere()) return MStatus::kFailure;
    const int set = mesh_->findUvSet(nameOf(uvSet));
    const auto found = set < 0 ? std::nullopt : mesh_->vertexUv(set, index_);
    if (!found) return MStatus::kFailure;
    uv[0] = found->u;
    uv[1] = found->v;
    return {};
}
