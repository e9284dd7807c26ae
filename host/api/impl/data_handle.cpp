#include <maya/MDataHandle.h>

#include "host/api/impl/access.h"
#include "host/api/impl/built_elements.h"
#include "host/api/impl/cell_values.h"
#include "host/data/geometry_data.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"

using vesk::GeometryData;
using vesk::MatrixData;
using vesk::StringData;
using vesk::api::attributeOf;
using vesk::api::dataOf;
using vesk::api::handleOn;
using vesk::graph::Cell;

MFnData::Type MDataHandle::type() const { return cell_ ? vesk::api::dataTypeOf(*cell_) : MFnData::kInvalid; }

bool MDataHandle::isNumeric() const { return type() == MFnData::kNumeric; }

MFnNumericData::Type MDataHandle::numericType() const {
    return cell_ ? vesk::api::numericTypeOf(*cell_) : MFnNumericData::kInvalid;
}

bool MDataHandle::isGeneric(bool& holdsNumber, bool& isNull) const {
    if (!cell_ || cell_->attr.kind != vesk::graph::AttrKind::Generic) return false;
    holdsNumber = isNumeric();
    isNull = type() == MFnData::kInvalid;
    return true;
}

MDataHandle MDataHandle::child(const MObject& attribute) const {
    const auto* attr = attributeOf(attribute);
    if (!cell_ || !attr || !cell_->isCompound() || attr->parent != &cell_->attr) return {};
    return MDataHandle(&cell_->child(*attr), readOnlyData_, owner_);
}

MDataHandle MDataHandle::child(const MPlug& plug) const { return child(plug.attribute()); }

// --- numbers
// ---------------------------------------------------------------------------------------------------------

namespace {

double numberIn(const Cell* cell) {
    if (!cell) return 0;
    return cell->attr.isNumber() ? cell->number : vesk::api::numberOf(*cell);
}

} // namespace

double MDataHandle::number() const { return numberIn(cell_); }

bool MDataHandle::asBool() const { return number() != 0; }
char MDataHandle::asChar() const { return vesk::api::truncatedTo<char>(number()); }
unsigned char MDataHandle::asUChar() const { return vesk::api::truncatedTo<unsigned char>(number()); }
short MDataHandle::asShort() const { return vesk::api::truncatedTo<short>(number()); }
unsigned short MDataHandle::asUShort() const { return vesk::api::truncatedTo<unsigned short>(number()); }
int MDataHandle::asInt() const { return vesk::api::truncatedTo<int>(number()); }
MInt64 MDataHandle::asInt64() const { return vesk::api::truncatedTo<MInt64>(number()); }
float MDataHandle::asFloat() const { return static_cast<float>(number()); }
double MDataHandle::asDouble() const { return numberIn(cell_); }
MDistance MDataHandle::asDistance() const { return MDistance(number(), MDistance::internalUnit()); }
MAngle MDataHandle::asAngle() const { return MAngle(number(), MAngle::internalUnit()); }
MTime MDataHandle::asTime() const { return vesk::api::timeOf(number()); }

template <class T, int N>
const T (&MDataHandle::numbers() const)[N] {
    // The arrays outlive the handle, which is mostly a temporary: each call takes the next slot of a ring.
    constexpr std::size_t kSlots = 1024;
    thread_local std::array<T[N], kSlots> ring;
    thread_local std::size_t next = 0;
    T(&slot)[N] = ring[next];
    next = (next + 1) % kSlots;
    const auto values = cell_ ? vesk::api::numbersOf(*cell_) : vesk::api::Numbers();
    for (std::size_t i = 0; i < N; ++i) {
        if constexpr (std::is_integral_v<T>) {
            slot[i] = vesk::api::truncatedTo<T>(values[i]);
        } else {
            slot[i] = static_cast<T>(values[i]);
        }
    }
    return slot;
}

const short2& MDataHandle::asShort2() const { return numbers<short, 2>(); }
const short3& MDataHandle::asShort3() const { return numbers<short, 3>(); }
const int2& MDataHandle::asInt2() const { return numbers<int, 2>(); }
const int3& MDataHandle::asInt3() const { return numbers<int, 3>(); }
const float2& MDataHandle::asFloat2() const { return numbers<float, 2>(); }
const float3& MDataHandle::asFloat3() const { return numbers<float, 3>(); }
const double2& MDataHandle::asDouble2() const { return numbers<double, 2>(); }
const double3& MDataHandle::asDouble3() const { return numbers<double, 3>(); }
const double4& MDataHandle::asDouble4() const { return numbers<double, 4>(); }

MVector MDataHandle::asVector() const {
    if (!cell_) return {};
    const auto values = vesk::api::numbersOf(*cell_);
    return {values[0], values[1], values[2]};
}

MFloatVector MDataHandle::asFloatVector() const { return MFloatVector(asVector()); }

// --- data
// ------------------------------------------------------------------------------------------------------------

MMatrix MDataHandle::asMatrix() const {
    const auto* data = cell_ ? dynamic_cast<const MatrixData*>(cell_->data.get()) : nullptr;
    return data ? data->matrix() : MMatrix();
}

MFloatMatrix MDataHandle::asFloatMatrix() const { return MFloatMatrix(asMatrix().matrix); }

MString MDataHandle::asString() const {
    const auto* data = cell_ ? dynamic_cast<const StringData*>(cell_->data.get()) : nullptr;
    return data ? data->value : MString();
}

MObject MDataHandle::data() {
    if (!cell_ || vesk::api::flatElements(*cell_)) return {};
    if (vesk::api::isTuple(*cell_)) {
        const auto numbers = vesk::makeRef<vesk::NumericData>(numericType());
        numbers->set(vesk::api::numbersOf(*cell_));
        return handleOn(numbers.get(), true);
    }
    return handleOn(cell_->data.get(), readOnlyData_);
}

MObject MDataHandle::geometry(MFnData::Type type, bool transformed) const {
    vesk::Data* data = cell_ ? cell_->data.get() : nullptr;
    if (!data || data->dataType() != type) return {};
    if (!transformed) return handleOn(data, readOnlyData_);
    auto* shape = dynamic_cast<GeometryData*>(data);
    return shape ? handleOn(shape->transformed().get(), true) : MObject();
}

MObject MDataHandle::asMesh() const { return geometry(MFnData::kMesh, false); }
MObject MDataHandle::asNurbsCurve() const { return geometry(MFnData::kNurbsCurve, false); }
MObject MDataHandle::asNurbsSurface() const { return geometry(MFnData::kNurbsSurface, false); }
MObject MDataHandle::asSubdSurface() const { return geometry(MFnData::kSubdSurface, false); }
MObject MDataHandle::asMeshTransformed() const { return geometry(MFnData::kMesh, true); }
MObject MDataHandle::asNurbsCurveTransformed() const { return geometry(MFnData::kNurbsCurve, true); }
MObject MDataHandle::asNurbsSurfaceTransformed() const { return geometry(MFnData::kNurbsSurface, true); }

MMatrix MDataHandle::geometryTransformMatrix() const {
    const auto* shape = cell_ ? dynamic_cast<const GeometryData*>(cell_->data.get()) : nullptr;
    return shape ? shape->matrix() : MMatrix();
}

// --- writing
// ---------------------------------------------------------------------------------------------------------

void MDataHandle::setNumber(double value) {
    if (cell_) (void)vesk::api::putNumberInto(*cell_, value);
}

template <int N>
void MDataHandle::setNumbers(const double (&values)[N]) {
    vesk::api::Numbers numbers{};
    std::copy(std::begin(values), std::end(values), numbers.begin());
    if (cell_) (void)vesk::api::putNumbersInto(*cell_, numbers, N);
}

void MDataHandle::set(const MDistance& value) { setNumber(value.as(MDistance::internalUnit())); }
void MDataHandle::set(const MAngle& value) { setNumber(value.as(MAngle::internalUnit())); }
void MDataHandle::set(const MTime& value) { setNumber(vesk::api::ticksOf(value)); }
void MDataHandle::set(short a, short b) { setNumbers<2>({double(a), double(b)}); }
void MDataHandle::set(int a, int b) { setNumbers<2>({double(a), double(b)}); }
void MDataHandle::set(float a, float b) { setNumbers<2>({double(a), double(b)}); }
void MDataHandle::set(double a, double b) { setNumbers<2>({a, b}); }
void MDataHandle::set(short a, short b, short c) { setNumbers<3>({double(a), double(b), double(c)}); }
void MDataHandle::set(int a, int b, int c) { setNumbers<3>({double(a), double(b), double(c)}); }
void MDataHandle::set(float a, float b, float c) { setNumbers<3>({double(a), double(b), double(c)}); }
void MDataHandle::set(double a, double b, double c) { setNumbers<3>({a, b, c}); }
void MDataHandle::set4Double(double a, double b, double c, double d) { setNumbers<4>({a, b, c, d}); }
void MDataHandle::set(const MVector& value) { setNumbers<3>({value.x, value.y, value.z}); }
void MDataHandle::set(const MFloatVector& value) { set(MVector(value)); }

void MDataHandle::set(const MMatrix& value) {
    if (cell_) (void)vesk::api::putDataInto(*cell_, vesk::makeRef<MatrixData>(value).get());
}

void MDataHandle::set(const MFloatMatrix& value) { set(MMatrix(value.matrix)); }

void MDataHandle::set(const MString& value) {
    if (cell_) (void)vesk::api::putDataInto(*cell_, vesk::makeRef<StringData>(value).get());
}

MStatus MDataHandle::set(const MObject& data) {
    vesk::Data* object = dataOf(data);
    if (!cell_ || (!object && !data.isNull())) return MStatus::kInvalidParameter;
    return vesk::api::putDataInto(*cell_, object) ? MStatus::kSuccess : MStatus::kFailure;
}

void MDataHandle::setGeneric(double value, bool isNull) {
    if (!cell_) return;
    if (!isNull) return setNumber(value);
    if (cell_->attr.kind != vesk::graph::AttrKind::Generic) return;
    vesk::graph::putData(*cell_, nullptr, false);
    cell_->isSet = false; // a bare number is told from nothing by having been set
}

MStatus MDataHandle::copy(const MDataHandle& source) {
    if (!cell_ || !source.cell_) return MStatus::kInvalidParameter;
    vesk::api::unfold(*cell_);
    vesk::api::unfold(*source.cell_);
    vesk::graph::copyCell(*cell_, *source.cell_);
    return {};
}

void MDataHandle::setClean() {
    if (cell_) vesk::graph::markClean(*cell_);
}

bool MDataHandle::isClean() const { return cell_ && !cell_->dirty; }
