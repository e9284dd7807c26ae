#include "host/api/impl/result.h"
#include "host/data/nurbs_data.h"

#include <maya/MFnNurbsCurveData.h>
#include <maya/MFnNurbsSurfaceData.h>

MFnNurbsCurveData::MFnNurbsCurveData(MObject& object, MStatus* status) { attach(object, status); }
MFnNurbsCurveData::MFnNurbsCurveData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnNurbsCurveData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const vesk::NurbsCurveData*>(&object) != nullptr;
}

MObject MFnNurbsCurveData::create(MStatus* status) {
    object_ = MObject(new vesk::NurbsCurveData());
    return vesk::api::answer(status, object_);
}

MFnNurbsSurfaceData::MFnNurbsSurfaceData(MObject& object, MStatus* status) { attach(object, status); }
MFnNurbsSurfaceData::MFnNurbsSurfaceData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnNurbsSurfaceData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const vesk::NurbsSurfaceData*>(&object) != nullptr;
}

MObject MFnNurbsSurfaceData::create(MStatus* status) {
    object_ = MObject(new vesk::NurbsSurfaceData());
    return vesk::api::answer(status, object_);
}
