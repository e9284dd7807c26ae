#include "host/api/impl/result.h"
#include "host/api/impl/shape_data.h"
#include "host/data/nurbs_data.h"

#include <maya/MDoubleArray.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MPointArray.h>

using vesk::NurbsCurveData;
using vesk::NurbsSurfaceData;
using vesk::storage;
using vesk::api::answer;
using vesk::geom::NurbsCurve;
using vesk::geom::NurbsSurface;

namespace {

/// The matrix that data carries, where the space asks for it.
const MMatrix* matrixOf(const MObject& object, MSpace::Space space) {
    const auto* data = dynamic_cast<vesk::GeometryData*>(object.hostObject());
    return space == MSpace::kWorld && data && data->hasMatrix() ? &data->matrix() : nullptr;
}

/// Weights stay as they are.
MPoint moved(const MPoint& cv, const MMatrix& matrix) {
    const MPoint to = MPoint(cv.x, cv.y, cv.z) * matrix;
    return MPoint(to.x, to.y, to.z, cv.w);
}

std::vector<MPoint> moved(std::vector<MPoint> cvs, const MMatrix* matrix) {
    for (MPoint& cv : cvs) {
        if (matrix) cv = moved(cv, *matrix);
    }
    return cvs;
}

template <class DataClass>
MObject placeCopy(const MObject& source, const MObject& owner, MObject& target, MStatus* status) {
    const auto* from = dynamic_cast<DataClass*>(source.hostObject());
    auto* to = dynamic_cast<DataClass*>(owner.hostObject());
    if (!from || !to || owner.isReadOnly()) return answer(status, MObject(), MStatus::kInvalidParameter);
    to->write() = from->geometry();
    target = owner;
    return answer(status, target);
}

template <class DataClass>
MStatus storeCvs(const MObject& object, const MPointArray& cvs, const MMatrix* matrix) {
    const MMatrix back = matrix ? matrix->inverse() : MMatrix();
    auto points = moved(storage(cvs), matrix ? &back : nullptr);
    auto* data = static_cast<DataClass*>(object.hostObject());
    return data->write().setCvs(std::move(points)) ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

} // namespace

// --- curves
// ----------------------------------------------------------------------------------------------------------

MFnNurbsCurve::MFnNurbsCurve(MObject& object, MStatus* status)
    : MFnNurbsCurve(std::as_const(object), status) {}

MFnNurbsCurve::MFnNurbsCurve(const MObject& object, MStatus* status) {
    const MObject data = vesk::api::geometryDataOf(object, MFn::kNurbsCurve);
    attach(data, status);
    if (data != object) shape_ = object;
}

bool MFnNurbsCurve::accepts(const vesk::Object& object) const {
    return dynamic_cast<const NurbsCurveData*>(&object) != nullptr;
}

const NurbsCurve* MFnNurbsCurve::curve() const {
    return object_.isNull() ? nullptr : &static_cast<NurbsCurveData*>(object_.hostObject())->geometry();
}

const MMatrix* MFnNurbsCurve::matrixFor(MSpace::Space space) const { return matrixOf(object_, space); }

MObject MFnNurbsCurve::create(const MPointArray& cvs, const MDoubleArray& knots, unsigned int degree,
                              Form form, bool create2D, bool createRational, MObject parentOrOwner,
                              MStatus* status) {
    auto* owner = dynamic_cast<NurbsCurveData*>(parentOrOwner.hostObject());
    if (!owner || parentOrOwner.isReadOnly() || form <= kInvalid || form >= kLast || degree > 7)
        return answer(status, MObject(), MStatus::kInvalidParameter);
    vesk::geom::NurbsBasis basis;
    basis.degree = static_cast<int>(degree);
    basis.form = static_cast<vesk::geom::NurbsForm>(form);
    basis.knots = storage(knots);
    auto points = storage(cvs);
    for (MPoint& point : points) {
        if (create2D) point.z = 0;
        if (!createRational) point.w = 1;
    }
    const auto made = NurbsCurve::create(std::move(basis), std::move(points), createRational);
    if (!made) return answer(status, MObject(), MStatus::kInvalidParameter);
    owner->write() = *made;
    object_ = parentOrOwner;
    shape_ = MObject();
    return answer(status, object_);
}

MObject MFnNurbsCurve::copy(const MObject& source, MObject parentOrOwner, MStatus* status) {
    shape_ = MObject();
    return placeCopy<NurbsCurveData>(vesk::api::geometryDataOf(source, MFn::kNurbsCurve), parentOrOwner,
                                     object_, status);
}

MFnNurbsCurve::Form MFnNurbsCurve::form(MStatus* status) const {
    if (!curve()) return answer(status, kInvalid, MStatus::kInvalidParameter);
    return answer(status, static_cast<Form>(curve()->form()));
}

int MFnNurbsCurve::degree(MStatus* status) const {
    return curve() ? answer(status, curve()->degree()) : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnNurbsCurve::numSpans(MStatus* status) const {
    return curve() ? answer(status, curve()->spanCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnNurbsCurve::numKnots(MStatus* status) const {
    return curve() ? answer(status, curve()->basis().knotCount())
                   : answer(status, 0, MStatus::kInvalidParameter);
}

MStatus MFnNurbsCurve::getKnots(MDoubleArray& knots) const {
    if (!curve()) return MStatus::kInvalidParameter;
    storage(knots) = curve()->knots();
    return {};
}

MStatus MFnNurbsCurve::getKnotDomain(double& start, double& end) const {
    if (!curve()) return MStatus::kInvalidParameter;
    start = curve()->basis().start();
    end = curve()->basis().end();
    return {};
}

int MFnNurbsCurve::numCVs(MStatus* status) const {
    return curve() ? answer(status, curve()->cvCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

MStatus MFnNurbsCurve::getCVs(MPointArray& cvs, MSpace::Space space) const {
    if (!curve()) return MStatus::kInvalidParameter;
    storage(cvs) = moved(curve()->cvs(), matrixFor(space));
    return {};
}

MStatus MFnNurbsCurve::getCV(int index, MPoint& cv, MSpace::Space space) const {
    if (!curve()) return MStatus::kInvalidParameter;
    if (index < 0 || index >= curve()->cvCount()) return MStatus::kFailure;
    cv = curve()->cvs()[static_cast<std::size_t>(index)];
    if (const MMatrix* matrix = matrixFor(space)) cv = moved(cv, *matrix);
    return {};
}

MStatus MFnNurbsCurve::setCVs(const MPointArray& cvs, MSpace::Space space) {
    const MStatus status = shape_.isNull() ? writableStatus() : MStatus(MStatus::kFailure);
    return status ? storeCvs<NurbsCurveData>(object_, cvs, matrixFor(space)) : status;
}

MStatus MFnNurbsCurve::getPointAtParam(double parameter, MPoint& point, MSpace::Space space) const {
    if (!curve()) return MStatus::kInvalidParameter;
    if (!curve()->basis().contains(parameter)) return MStatus::kFailure;
    point = curve()->pointAt(parameter);
    if (const MMatrix* matrix = matrixFor(space)) point = point * *matrix;
    return {};
}

MVector MFnNurbsCurve::tangent(double parameter, MSpace::Space space, MStatus* status) const {
    if (!curve()) return answer(status, MVector(), MStatus::kInvalidParameter);
    MVector direction = curve()->at(parameter).d1;
    if (const MMatrix* matrix = matrixFor(space)) direction = direction * *matrix;
    direction.normalize();
    return answer(status, direction);
}

double MFnNurbsCurve::length(MStatus* status) const {
    return curve() ? answer(status, curve()->length()) : answer(status, 0.0, MStatus::kInvalidParameter);
}

// --- surfaces
// --------------------------------------------------------------------------------------------------------

MFnNurbsSurface::MFnNurbsSurface(MObject& object, MStatus* status)
    : MFnNurbsSurface(std::as_const(object), status) {}

MFnNurbsSurface::MFnNurbsSurface(const MObject& object, MStatus* status) {
    const MObject data = vesk::api::geometryDataOf(object, MFn::kNurbsSurface);
    attach(data, status);
    if (data != object) shape_ = object;
}

bool MFnNurbsSurface::accepts(const vesk::Object& object) const {
    return dynamic_cast<const NurbsSurfaceData*>(&object) != nullptr;
}

const NurbsSurface* MFnNurbsSurface::surface() const {
    return object_.isNull() ? nullptr : &static_cast<NurbsSurfaceData*>(object_.hostObject())->geometry();
}

const MMatrix* MFnNurbsSurface::matrixFor(MSpace::Space space) const { return matrixOf(object_, space); }

MObject MFnNurbsSurface::copy(const MObject& source, MObject parentOrOwner, MStatus* status) {
    shape_ = MObject();
    return placeCopy<NurbsSurfaceData>(vesk::api::geometryDataOf(source, MFn::kNurbsSurface), parentOrOwner,
                                       object_, status);
}

MFnNurbsSurface::Form MFnNurbsSurface::formInU(MStatus* status) const {
    if (!surface()) return answer(status, kInvalid, MStatus::kInvalidParameter);
    return answer(status, static_cast<Form>(surface()->basisU().form));
}

MFnNurbsSurface::Form MFnNurbsSurface::formInV(MStatus* status) const {
    if (!surface()) return answer(status, kInvalid, MStatus::kInvalidParameter);
    return answer(status, static_cast<Form>(surface()->basisV().form));
}

int MFnNurbsSurface::degreeU(MStatus* status) const {
    return surface() ? answer(status, surface()->basisU().degree)
                     : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnNurbsSurface::degreeV(MStatus* status) const {
    return surface() ? answer(status, surface()->basisV().degree)
                     : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnNurbsSurface::numSpansInU(MStatus* status) const {
    return surface() ? answer(status, surface()->basisU().spanCount())
                     : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnNurbsSurface::numSpansInV(MStatus* status) const {
    return surface() ? answer(status, surface()->basisV().spanCount())
                     : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnNurbsSurface::numCVsInU(MStatus* status) const {
    return surface() ? answer(status, surface()->cvCountU()) : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnNurbsSurface::numCVsInV(MStatus* status) const {
    return surface() ? answer(status, surface()->cvCountV()) : answer(status, 0, MStatus::kInvalidParameter);
}

MStatus MFnNurbsSurface::getCVs(MPointArray& cvs, MSpace::Space space) const {
    if (!surface()) return MStatus::kInvalidParameter;
    storage(cvs) = moved(surface()->cvs(), matrixFor(space));
    return {};
}

MStatus MFnNurbsSurface::setCVs(const MPointArray& cvs, MSpace::Space space) {
    const MStatus status = shape_.isNull() ? writableStatus() : MStatus(MStatus::kFailure);
    return status ? storeCvs<NurbsSurfaceData>(object_, cvs, matrixFor(space)) : status;
}

MStatus MFnNurbsSurface::getPointAtParam(double u, double v, MPoint& point, MSpace::Space space) const {
    if (!surface()) return MStatus::kInvalidParameter;
    if (!surface()->basisU().contains(u) || !surface()->basisV().contains(v)) return MStatus::kFailure;
    point = surface()->pointAt(u, v);
    if (const MMatrix* matrix = matrixFor(space)) point = point * *matrix;
    return {};
}

MVector MFnNurbsSurface::normal(double u, double v, MSpace::Space space, MStatus* status) const {
    if (!surface()) return answer(status, MVector(), MStatus::kInvalidParameter);
    MVector normal = surface()->normalAt(u, v);
    if (const MMatrix* matrix = matrixFor(space)) {
        normal = normal.transformAsNormal(*matrix);
        normal.normalize();
    }
    return answer(status, normal);
}
