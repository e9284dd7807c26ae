#include "host/api/mesh_walk.h"

#include "host/api/impl/result.h"
#include "host/data/component.h"
#include "host/geometry/mesh.h"

namespace vesk::api {

MeshWalk::MeshWalk(const MObject& mesh, MFn::Type element, MStatus* status)
    : function_(mesh, status), mesh_(function_.mesh()), element_(element) {
    if (!mesh_) return;
    count_ = element == MFn::kMeshEdgeComponent      ? mesh_->edgeCount()
             : element == MFn::kMeshPolygonComponent ? mesh_->faceCount()
                                                     : mesh_->vertexCount();
}

const geom::MeshTopology& MeshWalk::topology() const { return mesh_->topology(); }

bool MeshWalk::isDone(MStatus* status) const { return answer(status, !isHere()); }

int MeshWalk::index(MStatus* status) const {
    return answer(status, index_, isHere() ? MStatus::kSuccess : MStatus::kFailure);
}

int MeshWalk::count(MStatus* status) const { return answer(status, count_); }

MObject MeshWalk::currentItem(MStatus* status) const {
    if (!isHere()) return answer(status, MObject(), MStatus::kFailure);
    const auto component = makeRef<SingleComponent>(element_);
    component->add({index_});
    return answer(status, MObject(component.get()));
}

} // namespace vesk::api
