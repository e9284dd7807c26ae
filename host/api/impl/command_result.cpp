#include <maya/MCommandResult.h>

#include "host/api/impl/result.h"
#include "host/mel/value.h"

#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>
#include <maya/MVectorArray.h>

using vesk::mel::Value;

MCommandResult::MCommandResult(const Value& value) : value_(std::make_shared<const Value>(value)) {}

MCommandResult::Type MCommandResult::resultType(MStatus* status) const {
    using vesk::mel::Type;
    vesk::api::report(status);
    if (!value_) return kInvalid;
    switch (value_->type()) {
    case Type::Int: return kInt;
    case Type::Ints: return kIntArray;
    case Type::Float: return kDouble;
    case Type::Floats: return kDoubleArray;
    case Type::String: return kString;
    case Type::Strings: return kStringArray;
    case Type::Vector: return kVector;
    case Type::Vectors: return kVectorArray;
    case Type::Matrix: return kMatrix;
    case Type::None:
    case Type::Any: return kInvalid;
    }
    return kInvalid;
}

MStatus MCommandResult::getResult(int& result) const {
    const int* number = value_ ? value_->ifInt() : nullptr;
    if (!number) return MStatus::kFailure;
    return result = *number, MStatus();
}

MStatus MCommandResult::getResult(double& result) const {
    if (!value_ || !value_->isNumber()) return MStatus::kFailure;
    return result = value_->ifInt() ? *value_->ifInt() : *value_->ifFloat(), MStatus();
}

MStatus MCommandResult::getResult(MString& result) const {
    const std::string* text = value_ ? value_->ifString() : nullptr;
    result = text ? vesk::toMString(*text) : MString();
    return text ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MCommandResult::getResult(MVector& result) const {
    const MVector* vector = value_ ? value_->ifVector() : nullptr;
    if (!vector) return MStatus::kFailure;
    return result = *vector, MStatus();
}

MStatus MCommandResult::getResult(MIntArray& result) const {
    result.clear();
    if (!value_) return MStatus::kFailure;
    if (const auto* array = value_->ifShared<vesk::mel::IntArray>()) {
        vesk::storage(result) = array->read();
        return {};
    }
    const int* number = value_->ifInt();
    return number ? result.append(*number) : MStatus(MStatus::kFailure);
}

MStatus MCommandResult::getResult(MDoubleArray& result) const {
    result.clear();
    if (!value_) return MStatus::kFailure;
    auto& numbers = vesk::storage(result);
    if (const auto* floats = value_->ifShared<vesk::mel::FloatArray>()) {
        numbers = floats->read();
    } else if (const auto* ints = value_->ifShared<vesk::mel::IntArray>()) {
        numbers.assign(ints->read().begin(), ints->read().end());
    } else if (const MVector* vector = value_->ifVector()) {
        numbers = {vector->x, vector->y, vector->z};
    } else {
        double number = 0;
        if (!getResult(number)) return MStatus::kFailure;
        numbers.push_back(number);
    }
    return {};
}

MStatus MCommandResult::getResult(MStringArray& result) const {
    result.clear();
    if (!value_) return MStatus::kFailure;
    if (const auto* array = value_->ifShared<vesk::mel::StringArray>()) {
        for (const auto& text : array->read())
            result.append(vesk::toMString(text));
        return {};
    }
    const std::string* text = value_->ifString();
    return text ? result.append(vesk::toMString(*text)) : MStatus(MStatus::kFailure);
}

MStatus MCommandResult::getResult(MVectorArray& result) const {
    result.clear();
    if (!value_) return MStatus::kFailure;
    if (const auto* array = value_->ifShared<vesk::mel::VectorArray>()) {
        vesk::storage(result) = array->read();
        return {};
    }
    const MVector* vector = value_->ifVector();
    return vector ? result.append(*vector) : MStatus(MStatus::kFailure);
}

MStatus MCommandResult::getResult(MDoubleArray& result, int& rows, int& columns) const {
    result.clear();
    rows = columns = 0;
    const auto* matrix = value_ ? value_->ifShared<vesk::mel::Matrix>() : nullptr;
    if (!matrix) return MStatus::kFailure;
    vesk::storage(result) = matrix->read().values;
    rows = matrix->read().rows;
    columns = matrix->read().columns;
    return {};
}

MString MCommandResult::stringResult(MStatus* status) const {
    MString result;
    vesk::api::report(status, getResult(result));
    return result;
}
