#include "host/data/value_data.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vesk {

namespace {

template <class Integer>
double cut(double number) {
    constexpr double low = std::numeric_limits<Integer>::min();
    constexpr double high = std::numeric_limits<Integer>::max();
    return std::isnan(number) ? 0.0 : std::clamp(std::trunc(number), low, high);
}

} // namespace

double NumericData::rounded(double number, MFnNumericData::Type leaf) {
    switch (leaf) {
    case MFnNumericData::kBoolean: return number != 0.0;
    case MFnNumericData::kByte: return cut<unsigned char>(number);
    case MFnNumericData::kChar: return cut<signed char>(number);
    case MFnNumericData::kShort: return cut<short>(number);
    case MFnNumericData::kInt: return cut<int>(number);
    case MFnNumericData::kFloat: return static_cast<float>(number);
    default: return number;
    }
}

int NumericData::countOf(MFnNumericData::Type type) {
    switch (type) {
    case MFnNumericData::k2Short:
    case MFnNumericData::k2Int:
    case MFnNumericData::k2Float:
    case MFnNumericData::k2Double: return 2;
    case MFnNumericData::k3Short:
    case MFnNumericData::k3Int:
    case MFnNumericData::k3Float:
    case MFnNumericData::k3Double: return 3;
    case MFnNumericData::k4Double: return 4;
    default: return type > MFnNumericData::kInvalid && type < MFnNumericData::kLast ? 1 : 0;
    }
}

MFnNumericData::Type NumericData::leafOf(MFnNumericData::Type type) {
    switch (type) {
    case MFnNumericData::k2Short:
    case MFnNumericData::k3Short: return MFnNumericData::kShort;
    case MFnNumericData::k2Int:
    case MFnNumericData::k3Int: return MFnNumericData::kInt;
    case MFnNumericData::k2Float:
    case MFnNumericData::k3Float: return MFnNumericData::kFloat;
    case MFnNumericData::k2Double:
    case MFnNumericData::k3Double:
    case MFnNumericData::k4Double: return MFnNumericData::kDouble;
    default: return type;
    }
}

void NumericData::set(const std::array<double, 4>& numbers) {
    const MFnNumericData::Type leaf = leafOf(type_);
    for (int i = 0; i < count(); ++i)
        numbers_[i] = rounded(numbers[i], leaf);
}

MFn::Type NumericData::apiType() const {
    switch (type_) {
    case MFnNumericData::k2Double: return MFn::kData2Double;
    case MFnNumericData::k3Double: return MFn::kData3Double;
    case MFnNumericData::k3Float: return MFn::kData3Float;
    default: return MFn::kNumericData;
    }
}

Ref<Data> NumericData::clone() const {
    auto copy = makeRef<NumericData>(type_);
    copy->numbers_ = numbers_;
    return copy;
}

} // namespace vesk
