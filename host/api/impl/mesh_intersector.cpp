#include <maya/MMeshIntersector.h>

#include "host/api/impl/shape_data.h"
#include "host/data/mesh_data.h"
#include "host/geometry/closest_point.h"

MMeshIntersector::MMeshIntersector() = default;
MMeshIntersector::~MMeshIntersector() = default;

MStatus MMeshIntersector::create(MObject& mesh, const MMatrix& matrix) {
    closest_.reset();
    const MObject object = vesk::api::geometryDataOf(mesh, MFn::kMesh);
    const auto* data = dynamic_cast<const vesk::MeshData*>(object.hostObject());
    if (!data) return MStatus::kInvalidParameter;
    closest_ = std::make_unique<vesk::geom::ClosestPoints>(data->geometry());
    inverse_ = matrix.inverse();
    return {};
}

MStatus MMeshIntersector::getClosestPoint(const MPoint& point, MPointOnMesh& found,
                                          double maxDistance) const {
    if (!closest_) return MStatus::kFailure;
    const auto nearest = closest_->find(MVector(point * inverse_), maxDistance);
    if (!nearest) return MStatus::kFailure;
    const auto single = [](double value) { return static_cast<float>(value); };
    found.point_ = MFloatPoint(MPoint(nearest->point));
    found.normal_ = closest_->mesh().faceNormals()[static_cast<std::size_t>(nearest->face)];
    found.face_ = nearest->face;
    found.triangle_ = nearest->triangle;
    found.u_ = single(nearest->weights[0]);
    found.v_ = single(nearest->weights[1]);
    return {};
}
