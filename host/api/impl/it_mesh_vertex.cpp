#include "host/api/impl/result.h"
#include "host/data/component.h"
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

MItMeshVertex::MItMeshVertex(const MObject& mesh, MStatus* status)
    : function_(mesh, status), mesh_(function_.mesh()) {}

bool MItMeshVertex::isHere() const { return mesh_ && index_ >= 0 && index_ < mesh_->vertexCount(); }

bool MItMeshVertex::isDone(MStatus* status) const { return answer(status, !isHere()); }

int MItMeshVertex::index(MStatus* status) const {
    return answer(status, index_, isHere() ? MStatus::kSuccess : MStatus::kFailure);
}

MStatus MItMeshVertex::setIndex(int index, int& previous) {
    if (!mesh_ || !mesh_->topology().hasVertex(index)) return MStatus::kFailure;
    previous = std::exchange(index_, index);
    return {};
}

int MItMeshVertex::count(MStatus* status) const { return answer(status, mesh_ ? mesh_->vertexCount() : 0); }

MObject MItMeshVertex::currentItem(MStatus* status) const {
    if (!isHere()) return answer(status, MObject(), MStatus::kFailure);
    const auto component = vesk::makeRef<vesk::SingleComponent>(MFn::kMeshVertComponent);
    component->add({index_});
    return answer(status, MObject(component.get()));
}

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
    return answer(status, mesh_->topology().isBoundaryVertex(index_));
}

MStatus MItMeshVertex::getConnectedFaces(MIntArray& faces) const {
    if (!isHere()) return MStatus::kFailure;
    mesh_->topology().facesOfVertex(index_, storage(faces));
    return {};
}

MStatus MItMeshVertex::getConnectedEdges(MIntArray& edges) const {
    if (!isHere()) return MStatus::kFailure;
    const auto round = mesh_->topology().edgesOfVertex(index_);
    storage(edges).assign(round.begin(), round.end());
    return {};
}

MStatus MItMeshVertex::getConnectedVertices(MIntArray& vertices) const {
    if (!isHere()) return MStatus::kFailure;
    mesh_->topology().verticesOfVertex(index_, storage(vertices));
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
    mesh_->topology().facesOfVertex(index_, scratch_);
    for (const int face : scratch_) {
        const auto uv = mesh_->cornerUv(set, mesh_->topology().findCorner(face, index_));
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
