#include "host/api/impl/result.h"
#include "host/data/component.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"

#include <maya/MDataHandle.h>
#include <maya/MItGeometry.h>

using vesk::GeometryData;
using vesk::MeshData;
using vesk::NurbsCurveData;
using vesk::NurbsSurfaceData;
using vesk::api::answer;
using vesk::api::report;

namespace {

MObject dataOf(const MDataHandle& handle) { return MDataHandle(handle).data(); }

} // namespace

MItGeometry::MItGeometry(MDataHandle& handle, bool readOnly, MStatus* status)
    : MItGeometry(dataOf(handle), status) {
    readOnly_ = readOnly || object_.isReadOnly();
}

MItGeometry::MItGeometry(MDataHandle& handle, int groupId, bool readOnly, MStatus* status)
    : MItGeometry(handle, readOnly, status) {
    const auto* data = dynamic_cast<const GeometryData*>(object_.hostObject());
    if (data) limitTo(groupId < 0 ? nullptr : data->groups().component(static_cast<unsigned int>(groupId)));
}

/// To the points of a component; to none for null and for components of another kind.
void MItGeometry::limitTo(const vesk::Component* component) {
    const MObject first = currentItem();
    const bool fits = component && component->apiType() == first.apiType();
    if (fits && component->isComplete()) return;
    limited_ = true;
    if (const auto* single = dynamic_cast<const vesk::SingleComponent*>(component); single && fits) {
        for (std::size_t i = 0; i < single->count() && single->at(i)[0] < distinctU_; ++i)
            chosen_.push_back(single->at(i)[0]);
    } else if (const auto* pairs = dynamic_cast<const vesk::DoubleComponent*>(component); pairs && fits) {
        for (std::size_t i = 0; i < pairs->count(); ++i) {
            const auto [u, v] = pairs->at(i);
            if (u < distinctU_ && v < distinctV_) chosen_.push_back(u * numCVsInV_ + v);
        }
    }
    (void)reset();
}

MItGeometry::MItGeometry(const MObject& geometry, MStatus* status) {
    const vesk::Object* what = geometry.hostObject();
    if (const auto* mesh = dynamic_cast<const MeshData*>(what)) {
        count_ = distinctU_ = mesh->geometry().vertexCount();
    } else if (const auto* curve = dynamic_cast<const NurbsCurveData*>(what)) {
        count_ = curve->geometry().cvCount();
        distinctU_ = curve->geometry().distinctCvCount();
    } else if (const auto* surface = dynamic_cast<const NurbsSurfaceData*>(what)) {
        count_ = surface->geometry().cvCount();
        numCVsInV_ = surface->geometry().cvCountV();
        distinctU_ = surface->geometry().distinctCvCountU();
        distinctV_ = surface->geometry().distinctCvCountV();
    } else {
        report(status, MStatus::kInvalidParameter);
        return;
    }
    object_ = geometry;
    report(status);
}

bool MItGeometry::isDone(MStatus* status) const {
    if (limited_) return answer(status, place_ >= chosen_.size());
    return answer(status, index_ >= (numCVsInV_ > 0 ? distinctU_ * numCVsInV_ : distinctU_));
}

MStatus MItGeometry::next() {
    if (isDone()) return MStatus::kFailure;
    if (limited_) {
        ++place_;
        if (place_ < chosen_.size()) index_ = chosen_[place_];
        return {};
    }
    ++index_;
    skipRepeated();
    return {};
}

void MItGeometry::skipRepeated() {
    if (numCVsInV_ > 0 && index_ % numCVsInV_ >= distinctV_) index_ += numCVsInV_ - index_ % numCVsInV_;
}

MStatus MItGeometry::reset() {
    place_ = 0;
    index_ = chosen_.empty() ? 0 : chosen_.front();
    return {};
}

int MItGeometry::index(MStatus* status) const {
    return answer(status, index_, isDone() ? MStatus::kFailure : MStatus::kSuccess);
}

int MItGeometry::count(MStatus* status) const {
    return answer(status, limited_ ? static_cast<int>(chosen_.size()) : count_);
}

int MItGeometry::exactCount(MStatus* status) const {
    if (limited_) return count(status);
    return answer(status, numCVsInV_ > 0 ? distinctU_ * distinctV_ : distinctU_);
}

MObject MItGeometry::currentItem(MStatus* status) const {
    if (isDone()) return answer(status, MObject(), MStatus::kFailure);
    if (numCVsInV_ > 0) {
        const auto pair = vesk::makeRef<vesk::DoubleComponent>(MFn::kSurfaceCVComponent);
        pair->add({index_ / numCVsInV_, index_ % numCVsInV_});
        return answer(status, MObject(pair.get()));
    }
    const bool isMesh = dynamic_cast<MeshData*>(object_.hostObject()) != nullptr;
    const auto single =
        vesk::makeRef<vesk::SingleComponent>(isMesh ? MFn::kMeshVertComponent : MFn::kCurveCVComponent);
    single->add({index_});
    return answer(status, MObject(single.get()));
}

MPoint MItGeometry::position(MSpace::Space space, MStatus* status) const {
    if (isDone()) return answer(status, MPoint(), MStatus::kFailure);
    const auto at = static_cast<std::size_t>(index_);
    MPoint point;
    if (const auto* mesh = dynamic_cast<MeshData*>(object_.hostObject())) {
        point = MPoint(mesh->geometry().point(index_));
    } else if (const auto* curve = dynamic_cast<NurbsCurveData*>(object_.hostObject())) {
        point = curve->geometry().cvs()[at];
    } else if (const auto* surface = dynamic_cast<NurbsSurfaceData*>(object_.hostObject())) {
        point = surface->geometry().cvs()[at];
    }
    point.w = 1;
    const auto* data = static_cast<GeometryData*>(object_.hostObject());
    if (space == MSpace::kWorld && data->hasMatrix()) point = point * data->matrix();
    return answer(status, point);
}

MStatus MItGeometry::setPosition(const MPoint& point, MSpace::Space space) {
    if (isDone() || readOnly_) return MStatus::kFailure;
    const auto* data = static_cast<GeometryData*>(object_.hostObject());
    MPoint own = space == MSpace::kWorld && data->hasMatrix() ? point * data->matrix().inverse() : point;
    if (auto* mesh = dynamic_cast<MeshData*>(object_.hostObject())) {
        mesh->write().setPoint(index_, MFloatVector(static_cast<float>(own.x), static_cast<float>(own.y),
                                                    static_cast<float>(own.z)));
        return {};
    }
    // CVs keep their weights.
    const auto put = [&](auto& geometry) {
        own.w = geometry.cvs()[static_cast<std::size_t>(index_)].w;
        return geometry.setCv(index_, own);
    };
    vesk::Outcome outcome;
    if (auto* curve = dynamic_cast<NurbsCurveData*>(object_.hostObject())) outcome = put(curve->write());
    if (auto* surface = dynamic_cast<NurbsSurfaceData*>(object_.hostObject()))
        outcome = put(surface->write());
    return outcome ? MStatus::kSuccess : MStatus::kFailure;
}
