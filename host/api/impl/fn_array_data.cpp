#include "host/api/fn_array_data.h"

#include "host/api/impl/result.h"
#include "host/data/array_data.h"

#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnIntArrayData.h>
#include <maya/MFnPointArrayData.h>
#include <maya/MFnStringArrayData.h>
#include <maya/MFnVectorArrayData.h>

namespace vesk {

using api::answer;
using api::report;

namespace {

constexpr MFnData::Type dataTypeOf(MFn::Type kind) {
    switch (kind) {
    case MFn::kDoubleArrayData: return MFnData::kDoubleArray;
    case MFn::kIntArrayData: return MFnData::kIntArray;
    case MFn::kVectorArrayData: return MFnData::kVectorArray;
    case MFn::kPointArrayData: return MFnData::kPointArray;
    case MFn::kStringArrayData: return MFnData::kStringArray;
    default: return MFnData::kInvalid;
    }
}

template <class T, MFn::Type kind>
using DataOf = ArrayData<T, kind, dataTypeOf(kind)>;

/// The values behind a set's object, which is not null.
template <class T, MFn::Type kind>
SharedValues<T>& valuesOf(const MObject& object) {
    return static_cast<DataOf<T, kind>*>(object.hostObject())->values;
}

} // namespace

template <class Array, MFn::Type kind>
FnArrayData<Array, kind>::FnArrayData(MObject& object, MStatus* status) {
    attach(object, status);
}

template <class Array, MFn::Type kind>
FnArrayData<Array, kind>::FnArrayData(const MObject& object, MStatus* status) {
    attach(object, status);
}

template <class Array, MFn::Type kind>
bool FnArrayData<Array, kind>::accepts(const Object& object) const {
    return dynamic_cast<const DataOf<Element, kind>*>(&object) != nullptr;
}

template <class Array, MFn::Type kind>
unsigned int FnArrayData<Array, kind>::length(MStatus* status) const {
    if (object_.isNull()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(valuesOf<Element, kind>(object_).read().size()));
}

template <class Array, MFn::Type kind>
auto FnArrayData<Array, kind>::operator[](unsigned int index) const -> const Element& {
    static const Element missing{};
    if (object_.isNull()) return missing;
    const auto& values = valuesOf<Element, kind>(object_).read();
    return index < values.size() ? values[index] : missing;
}

template <class Array, MFn::Type kind>
MStatus FnArrayData<Array, kind>::copyTo(Array& array) const {
    if (object_.isNull()) return MStatus::kInvalidParameter;
    const auto& values = valuesOf<Element, kind>(object_).read();
    if (&values != &storage(array)) storage(array) = values;
    return {};
}

template <class Array, MFn::Type kind>
MStatus FnArrayData<Array, kind>::set(const Array& array) {
    const MStatus status = writableStatus();
    if (status) valuesOf<Element, kind>(object_).set(storage(array));
    return status;
}

template <class Array, MFn::Type kind>
Array FnArrayData<Array, kind>::array(MStatus* status) {
    report(status, object_.isNull() ? MStatus::kInvalidParameter : MStatus::kSuccess);
    if (object_.isNull()) return Array();
    auto& values = valuesOf<Element, kind>(object_);
    if (!object_.isReadOnly()) values.write();
    return Array::viewOf(values.view());
}

template <class Array, MFn::Type kind>
const Array FnArrayData<Array, kind>::array(MStatus* status) const {
    report(status, object_.isNull() ? MStatus::kInvalidParameter : MStatus::kSuccess);
    return object_.isNull() ? Array() : Array::viewOf(valuesOf<Element, kind>(object_).view());
}

template <class Array, MFn::Type kind>
MObject FnArrayData<Array, kind>::create(MStatus* status) {
    object_ = MObject(new DataOf<Element, kind>());
    return answer(status, object_);
}

template <class Array, MFn::Type kind>
MObject FnArrayData<Array, kind>::create(const Array& array, MStatus* status) {
    object_ = MObject(new DataOf<Element, kind>(storage(array)));
    return answer(status, object_);
}

template class FnArrayData<MDoubleArray, MFn::kDoubleArrayData>;
template class FnArrayData<MIntArray, MFn::kIntArrayData>;
template class FnArrayData<MVectorArray, MFn::kVectorArrayData>;
template class FnArrayData<MPointArray, MFn::kPointArrayData>;
template class FnArrayData<MStringArray, MFn::kStringArrayData>;

} // namespace vesk
