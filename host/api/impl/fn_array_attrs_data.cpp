#include "host/api/impl/result.h"
#include "host/data/array_attrs_data.h"

#include <maya/MFnArrayAttrsData.h>

using vesk::ArrayAttrsData;
using vesk::api::answer;
using vesk::api::report;

namespace {

ArrayAttrsData* dataOf(const MObject& object) { return static_cast<ArrayAttrsData*>(object.hostObject()); }

/// A view of the array under a name.
template <class Array>
Array viewOf(const MObject& object, const MString& name, MStatus* status) {
    using Element = typename Array::Element;
    auto* data = dataOf(object);
    if (!data) return answer(status, Array(), MStatus::kInvalidParameter);
    if (object.isReadOnly()) {
        const auto* values = data->findValues<Element>(vesk::text(name));
        if (!values) return answer(status, Array(), MStatus::kFailure);
        report(status);
        return Array::viewOf(values->view());
    }
    auto* values = data->makeValues<Element>(vesk::text(name));
    if (!values) return answer(status, Array(), MStatus::kInvalidParameter);
    values->write();
    report(status);
    return Array::viewOf(values->view());
}

template <class Array>
Array copyOf(const MObject& object, const MString& name, MStatus* status) {
    using Element = typename Array::Element;
    const auto* data = dataOf(object);
    const auto* values = data ? data->findValues<Element>(vesk::text(name)) : nullptr;
    if (!values) return answer(status, Array(), MStatus::kInvalidParameter);
    report(status);
    return vesk::adopt<Array>(std::vector<Element>(values->read()));
}

/// The variants of `ArrayAttrsData::Values` stand in the order of the API's type codes.
MFnArrayAttrsData::Type typeOf(const ArrayAttrsData::Channel& channel) {
    return static_cast<MFnArrayAttrsData::Type>(channel.values.index() + 1);
}

} // namespace

MFnArrayAttrsData::MFnArrayAttrsData(MObject& object, MStatus* status) { attach(object, status); }
MFnArrayAttrsData::MFnArrayAttrsData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnArrayAttrsData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const ArrayAttrsData*>(&object) != nullptr;
}

MStatus MFnArrayAttrsData::clear() {
    const MStatus status = writableStatus();
    if (status) dataOf(object_)->clear();
    return status;
}

unsigned int MFnArrayAttrsData::count() const {
    return object_.isNull() ? 0 : static_cast<unsigned int>(dataOf(object_)->channels().size());
}

MStringArray MFnArrayAttrsData::list(MStatus* status) const {
    MStringArray names;
    if (object_.isNull()) return answer(status, names, MStatus::kInvalidParameter);
    for (const auto& channel : dataOf(object_)->channels())
        names.append(vesk::toMString(channel.name));
    return answer(status, names);
}

bool MFnArrayAttrsData::checkArrayExist(const MString& name, Type& arrayType, MStatus* status) const {
    arrayType = kInvalid;
    if (object_.isNull()) return answer(status, false, MStatus::kInvalidParameter);
    const auto* channel = dataOf(object_)->find(vesk::text(name));
    if (channel) arrayType = typeOf(*channel);
    return answer(status, channel != nullptr);
}

MVectorArray MFnArrayAttrsData::vectorArray(const MString& name, MStatus* status) {
    return viewOf<MVectorArray>(object_, name, status);
}
MDoubleArray MFnArrayAttrsData::doubleArray(const MString& name, MStatus* status) {
    return viewOf<MDoubleArray>(object_, name, status);
}
MIntArray MFnArrayAttrsData::intArray(const MString& name, MStatus* status) {
    return viewOf<MIntArray>(object_, name, status);
}
MStringArray MFnArrayAttrsData::stringArray(const MString& name, MStatus* status) {
    return viewOf<MStringArray>(object_, name, status);
}

MVectorArray MFnArrayAttrsData::getVectorData(const MString& name, MStatus* status) const {
    return copyOf<MVectorArray>(object_, name, status);
}
MDoubleArray MFnArrayAttrsData::getDoubleData(const MString& name, MStatus* status) const {
    return copyOf<MDoubleArray>(object_, name, status);
}
MIntArray MFnArrayAttrsData::getIntData(const MString& name, MStatus* status) const {
    return copyOf<MIntArray>(object_, name, status);
}
MStringArray MFnArrayAttrsData::getStringData(const MString& name, MStatus* status) const {
    return copyOf<MStringArray>(object_, name, status);
}

MObject MFnArrayAttrsData::create(MStatus* status) {
    object_ = MObject(new ArrayAttrsData());
    return answer(status, object_);
}
