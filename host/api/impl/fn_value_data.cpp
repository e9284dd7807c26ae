#include "host/api/impl/result.h"
#include "host/data/value_data.h"

#include <maya/MFnMatrixData.h>
#include <maya/MFnStringData.h>

using vesk::MatrixData;
using vesk::NumericData;
using vesk::StringData;
using vesk::api::answer;

// Strings.

MFnStringData::MFnStringData(MObject& object, MStatus* status) { attach(object, status); }
MFnStringData::MFnStringData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnStringData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const StringData*>(&object) != nullptr;
}

MString MFnStringData::string(MStatus* status) const {
    if (object_.isNull()) return answer(status, MString(), MStatus::kInvalidParameter);
    return answer(status, static_cast<const StringData*>(object_.hostObject())->value);
}

MStatus MFnStringData::set(const MString& value) {
    const MStatus status = writableStatus();
    if (status) static_cast<StringData*>(object_.hostObject())->value = value;
    return status;
}

MObject MFnStringData::create(MStatus* status) { return create(MString(), status); }

MObject MFnStringData::create(const MString& value, MStatus* status) {
    object_ = MObject(new StringData(value));
    return answer(status, object_);
}

// Matrices.

MFnMatrixData::MFnMatrixData(MObject& object, MStatus* status) { attach(object, status); }
MFnMatrixData::MFnMatrixData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnMatrixData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const MatrixData*>(&object) != nullptr;
}

bool MFnMatrixData::isTransformation(MStatus* status) const {
    if (object_.isNull()) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, static_cast<const MatrixData*>(object_.hostObject())->hasTransformation());
}

MTransformationMatrix MFnMatrixData::transformation(MStatus* status) const {
    if (object_.isNull()) return answer(status, MTransformationMatrix(), MStatus::kInvalidParameter);
    return answer(status, static_cast<const MatrixData*>(object_.hostObject())->transformation());
}

MMatrix MFnMatrixData::matrix(MStatus* status) const {
    if (object_.isNull()) return answer(status, MMatrix(), MStatus::kInvalidParameter);
    return answer(status, static_cast<const MatrixData*>(object_.hostObject())->matrix());
}

MStatus MFnMatrixData::set(const MTransformationMatrix& transformation) {
    const MStatus status = writableStatus();
    if (status) static_cast<MatrixData*>(object_.hostObject())->set(transformation);
    return status;
}

MStatus MFnMatrixData::set(const MMatrix& matrix) {
    const MStatus status = writableStatus();
    if (status) static_cast<MatrixData*>(object_.hostObject())->set(matrix);
    return status;
}

MObject MFnMatrixData::create(MStatus* status) { return create(MMatrix::identity, status); }

MObject MFnMatrixData::create(const MTransformationMatrix& transformation, MStatus* status) {
    create(status);
    set(transformation);
    return object_;
}

MObject MFnMatrixData::create(const MMatrix& matrix, MStatus* status) {
    object_ = MObject(new MatrixData(matrix));
    return answer(status, object_);
}

// Numbers.

namespace {

template <class Number>
constexpr MFnNumericData::Type typeOf() {
    if (std::is_same_v<Number, short>) return MFnNumericData::kShort;
    if (std::is_same_v<Number, int>) return MFnNumericData::kInt;
    return std::is_same_v<Number, float> ? MFnNumericData::kFloat : MFnNumericData::kDouble;
}

template <class... Numbers>
MStatus readNumbers(const MObject& object, Numbers&... numbers) {
    const auto* data = static_cast<const NumericData*>(object.hostObject());
    if (!data || data->count() != sizeof...(numbers)) return MStatus::kInvalidParameter;
    // Rounded as if they were set on data of the asked type, so that no number is out of its range.
    const auto convert = [](double from, auto& to) {
        using Number = std::remove_reference_t<decltype(to)>;
        to = static_cast<Number>(NumericData::rounded(from, typeOf<Number>()));
    };
    std::size_t i = 0;
    (convert(data->numbers()[i++], numbers), ...);
    return {};
}

template <class... Numbers>
MStatus writeNumbers(const MObject& object, MStatus writable, Numbers... numbers) {
    if (!writable) return writable;
    auto* data = static_cast<NumericData*>(object.hostObject());
    if (data->count() != sizeof...(numbers)) return MStatus::kInvalidParameter;
    data->set({static_cast<double>(numbers)...});
    return {};
}

} // namespace

MFnNumericData::MFnNumericData(MObject& object, MStatus* status) { attach(object, status); }
MFnNumericData::MFnNumericData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnNumericData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const NumericData*>(&object) != nullptr;
}

MFnNumericData::Type MFnNumericData::numericType(MStatus* status) const {
    if (object_.isNull()) return answer(status, kInvalid, MStatus::kInvalidParameter);
    return answer(status, static_cast<const NumericData*>(object_.hostObject())->type());
}

MObject MFnNumericData::create(Type type, MStatus* status) {
    const bool valid = NumericData::countOf(type) > 0;
    object_ = valid ? MObject(new NumericData(type)) : MObject();
    return answer(status, object_, valid ? MStatus::kSuccess : MStatus::kInvalidParameter);
}

MStatus MFnNumericData::getData(short& a, short& b) const { return readNumbers(object_, a, b); }
MStatus MFnNumericData::getData(int& a, int& b) const { return readNumbers(object_, a, b); }
MStatus MFnNumericData::getData(float& a, float& b) const { return readNumbers(object_, a, b); }
MStatus MFnNumericData::getData(double& a, double& b) const { return readNumbers(object_, a, b); }
MStatus MFnNumericData::getData(short& a, short& b, short& c) const { return readNumbers(object_, a, b, c); }
MStatus MFnNumericData::getData(int& a, int& b, int& c) const { return readNumbers(object_, a, b, c); }
MStatus MFnNumericData::getData(float& a, float& b, float& c) const { return readNumbers(object_, a, b, c); }
MStatus MFnNumericData::getData(double& a, double& b, double& c) const {
    return readNumbers(object_, a, b, c);
}
MStatus MFnNumericData::getData(double& a, double& b, double& c, double& d) const {
    return readNumbers(object_, a, b, c, d);
}

MStatus MFnNumericData::setData(short a, short b) { return writeNumbers(object_, writableStatus(), a, b); }
MStatus MFnNumericData::setData(int a, int b) { return writeNumbers(object_, writableStatus(), a, b); }
MStatus MFnNumericData::setData(float a, float b) { return writeNumbers(object_, writableStatus(), a, b); }
MStatus MFnNumericData::setData(double a, double b) { return writeNumbers(object_, writableStatus(), a, b); }
MStatus MFnNumericData::setData(short a, short b, short c) {
    return writeNumbers(object_, writableStatus(), a, b, c);
}
MStatus MFnNumericData::setData(int a, int b, int c) {
    return writeNumbers(object_, writableStatus(), a, b, c);
}
MStatus MFnNumericData::setData(float a, float b, float c) {
    return writeNumbers(object_, writableStatus(), a, b, c);
}
MStatus MFnNumericData::setData(double a, double b, double c) {
    return writeNumbers(object_, writableStatus(), a, b, c);
}
MStatus MFnNumericData::setData(double a, double b, double c, double d) {
    return writeNumbers(object_, writableStatus(), a, b, c, d);
}
