#pragma once
// Arrays on a wire.

#include "host/data/data.h"
#include "host/data/shared_values.h"

#include <maya/MPoint.h>
#include <maya/MString.h>
#include <maya/MVector.h>

namespace vesk {

/// One array. Clones share the values until one of them writes.
template <class T, MFn::Type kind, MFnData::Type type>
class ArrayData : public Data {
  public:
    using Value = T;

    ArrayData() = default;
    explicit ArrayData(std::vector<T> items) : values(std::move(items)) {}
    explicit ArrayData(SharedValues<T> items) : values(std::move(items)) {}

    SharedValues<T> values;

    MFn::Type apiType() const override { return kind; }
    MFnData::Type dataType() const override { return type; }
    Ref<Data> clone() const override { return makeRef<ArrayData>(values); }
    std::size_t byteSize() const override { return values.read().size() * sizeof(T); }
};

using DoubleArrayData = ArrayData<double, MFn::kDoubleArrayData, MFnData::kDoubleArray>;
using IntArrayData = ArrayData<int, MFn::kIntArrayData, MFnData::kIntArray>;
using VectorArrayData = ArrayData<MVector, MFn::kVectorArrayData, MFnData::kVectorArray>;
using PointArrayData = ArrayData<MPoint, MFn::kPointArrayData, MFnData::kPointArray>;
using StringArrayData = ArrayData<MString, MFn::kStringArrayData, MFnData::kStringArray>;
/// Floats occur in scene files only; the API has no kind for them, and a typed attribute for any data takes
/// them.
using FloatArrayData = ArrayData<float, MFn::kData, MFnData::kAny>;

} // namespace vesk
