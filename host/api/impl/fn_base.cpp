#include "host/api/impl/result.h"
#include "host/core/object.h"

#include <maya/MFnBase.h>
#include <maya/MFnData.h>

using vesk::api::answer;
using vesk::api::report;

bool MFnBase::accepts(const vesk::Object& object) const { return object.hasFn(type()); }

bool MFnBase::hasObj(MFn::Type kind) const { return object_.hasFn(kind); }

bool MFnBase::hasObj(const MObject& object) const {
    return !object.isNull() && accepts(*object.hostObject());
}

MObject MFnBase::object(MStatus* status) const {
    return answer(status, object_, object_.isNull() ? MStatus::kInvalidParameter : MStatus::kSuccess);
}

MStatus MFnBase::setObject(MObject& object) { return setObject(std::as_const(object)); }

MStatus MFnBase::setObject(const MObject& object) {
    const bool accepted = hasObj(object);
    object_ = accepted ? object : MObject();
    return accepted ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

void MFnBase::attach(const MObject& object, MStatus* status) { report(status, setObject(object)); }

MStatus MFnBase::writableStatus() const {
    if (object_.isNull()) return MStatus::kInvalidParameter;
    return object_.isReadOnly() ? MStatus::kFailure : MStatus::kSuccess;
}

MFnData::MFnData(MObject& object, MStatus* status) { attach(object, status); }
MFnData::MFnData(const MObject& object, MStatus* status) { attach(object, status); }
