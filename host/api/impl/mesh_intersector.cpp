#include <maya/MMeshIntersector.h>

#include "host/api/impl/shape_data.h"
#include "host/data/mesh_data.h"
#include "host/geometry/mesh_index.h"

MMeshIntersector::MMeshIntersector() = default;
MMeshIntersector::~MMeshIntersector() = default;

MStatus MMeshIntersector::create(MObject& mesh, const MMatrix& matrix) {
    mesh_.reset();
    const MObject object = vesk::api::geometryDataOf(mesh, MFn::kMesh);
    const auto* data = dynamic_cast<const vesk::MeshData*>(object.hostObject());
    if (!data) return MStatus::kInvalidParameter;
    mesh_ = std::make_unique<const vesk::geom::Mesh>(data->geometry());
    inverse_ = matrix.inverse();
    return {};
}

MStatus MMeshIntersector::getClosestPoint(const MPoint& point, MPointOnMesh& found,
                                          double maxDistance) const {
    if (!mesh_) return MStatus::kFailure;
    const auto nearest = mesh_->index().closestPoint(MVector(point * inverse_), maxDistance);
    if (!nearest) return MStatus::kFailure;
    const auto single = [](double value) { return static_cast<float>(value); };
    found.point_ = MFloatPoint(MPoint(nearest->point));
    found.normal_ = mesh_->faceNormals()[static_cast<std::size_t>(nearest->face)];
    found.face_ = nearest->face;
    found.triangle_ = nearest->triangle;
    found.u_ = single(nearest->weights[0]);
    found.v_ = single(nearest->weights[1]);
    return {};
}
