// Reading and writing through plugs.

#include "host/api/impl/access.h"
#include "host/api/impl/at_context.h"
#include "host/api/impl/built_elements.h"
#include "host/api/impl/cell_values.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"

#include <maya/MDataBlock.h>
#include <maya/MDataHandle.h>
#include <maya/MPlug.h>

using vesk::api::answer;
using vesk::api::dataOf;
using vesk::api::handleOn;
using vesk::api::toStatus;
using vesk::graph::Cell;
using vesk::graph::Plug;

namespace {

/// Evaluates the plug in the context and gives its cell to `read`, which answers with a status.
template <class Read>
MStatus pulled(const MPlug& plug, const MDGContext& context, Read read) {
    const Plug host = plug.hostPlug();
    Cell* cell = host.cell();
    if (!cell) return host.isNull() ? MStatus::kInvalidParameter : MStatus::kFailure;
    return vesk::api::atContext(context, *host.node->scene(), [&]() -> MStatus {
        vesk::graph::clean(*cell);
        return read(*cell);
    });
}

MStatus pullNumber(const MPlug& plug, const MDGContext& context, double& value) {
    return pulled(plug, context, [&](const Cell& cell) -> MStatus {
        if (vesk::api::isTuple(cell) || vesk::api::numericTypeOf(cell) == MFnNumericData::kInvalid) {
            return MStatus::kFailure;
        }
        value = vesk::api::numberOf(cell);
        return {};
    });
}

/// A number as another type, in its range; not-a-number becomes 0 where the type has none.
template <class T>
T narrowed(double value) {
    if constexpr (std::is_same_v<T, double>) {
        return value;
    } else if constexpr (std::is_same_v<T, float>) {
        return static_cast<float>(value);
    } else if constexpr (std::is_same_v<T, bool>) {
        return value != 0;
    } else {
        return vesk::api::truncatedTo<T>(value);
    }
}

template <class T>
MStatus pullAs(const MPlug& plug, const MDGContext& context, T& value) {
    double number = 0;
    const MStatus status = pullNumber(plug, context, number);
    if (status) value = narrowed<T>(number);
    return status;
}

} // namespace

MStatus MPlug::getValue(double& value, MDGContext& context) const { return pullAs(*this, context, value); }
MStatus MPlug::getValue(float& value, MDGContext& context) const { return pullAs(*this, context, value); }
MStatus MPlug::getValue(MInt64& value, MDGContext& context) const { return pullAs(*this, context, value); }
MStatus MPlug::getValue(int& value, MDGContext& context) const { return pullAs(*this, context, value); }
MStatus MPlug::getValue(short& value, MDGContext& context) const { return pullAs(*this, context, value); }
MStatus MPlug::getValue(bool& value, MDGContext& context) const { return pullAs(*this, context, value); }
MStatus MPlug::getValue(char& value, MDGContext& context) const { return pullAs(*this, context, value); }

MStatus MPlug::getValue(MDistance& value, MDGContext& context) const {
    double number = 0;
    const MStatus status = pullNumber(*this, context, number);
    if (status) value = MDistance(number, MDistance::internalUnit());
    return status;
}

MStatus MPlug::getValue(MAngle& value, MDGContext& context) const {
    double number = 0;
    const MStatus status = pullNumber(*this, context, number);
    if (status) value = MAngle(number, MAngle::internalUnit());
    return status;
}

MStatus MPlug::getValue(MTime& value, MDGContext& context) const {
    double number = 0;
    const MStatus status = pullNumber(*this, context, number);
    if (status) value = vesk::api::timeOf(number);
    return status;
}

MStatus MPlug::getValue(MString& value, MDGContext& context) const {
    return pulled(*this, context, [&](const Cell& cell) -> MStatus {
        const auto* text = dynamic_cast<const vesk::StringData*>(cell.data.get());
        const bool isText = text || (cell.isLeaf() && !cell.data && cell.attr.accepts(MFnData::kString));
        if (isText) value = text ? text->value : MString();
        return isText ? MStatus::kSuccess : MStatus::kFailure;
    });
}

MStatus MPlug::getValue(MObject& value, MDGContext& context) const {
    value = MObject();
    return pulled(*this, context, [&](const Cell& cell) -> MStatus {
        if (vesk::api::isTuple(cell)) {
            auto numbers = vesk::makeRef<vesk::NumericData>(vesk::api::numericTypeOf(cell));
            numbers->set(vesk::api::numbersOf(cell));
            value = handleOn(numbers.get());
            return {};
        }
        if (!cell.isLeaf() || !cell.data) return MStatus::kFailure;
        value = handleOn(cell.data.get(), true);
        return {};
    });
}

namespace {

template <class T>
T valueOf(const MPlug& plug, MDGContext& context, MStatus* status) {
    T value{};
    vesk::api::report(status, plug.getValue(value, context));
    return value;
}

} // namespace

MObject MPlug::asMObject(MDGContext& context, MStatus* status) const {
    return valueOf<MObject>(*this, context, status);
}
double MPlug::asDouble(MDGContext& context, MStatus* status) const {
    return valueOf<double>(*this, context, status);
}
float MPlug::asFloat(MDGContext& context, MStatus* status) const {
    return valueOf<float>(*this, context, status);
}
MInt64 MPlug::asInt64(MDGContext& context, MStatus* status) const {
    return valueOf<MInt64>(*this, context, status);
}
int MPlug::asInt(MDGContext& context, MStatus* status) const { return valueOf<int>(*this, context, status); }
short MPlug::asShort(MDGContext& context, MStatus* status) const {
    return valueOf<short>(*this, context, status);
}
bool MPlug::asBool(MDGContext& context, MStatus* status) const {
    return valueOf<bool>(*this, context, status);
}
char MPlug::asChar(MDGContext& context, MStatus* status) const {
    return valueOf<char>(*this, context, status);
}
MDistance MPlug::asMDistance(MDGContext& context, MStatus* status) const {
    return valueOf<MDistance>(*this, context, status);
}
MAngle MPlug::asMAngle(MDGContext& context, MStatus* status) const {
    return valueOf<MAngle>(*this, context, status);
}
MTime MPlug::asMTime(MDGContext& context, MStatus* status) const {
    return valueOf<MTime>(*this, context, status);
}
MString MPlug::asString(MDGContext& context, MStatus* status) const {
    return valueOf<MString>(*this, context, status);
}

MDataHandle MPlug::asMDataHandle(MDGContext& context, MStatus* status) const {
    MDataHandle handle;
    vesk::api::report(status, pulled(*this, context, [&](const Cell& cell) -> MStatus {
                          std::shared_ptr<Cell> copy = vesk::api::detachedCopy(cell);
                          handle = MDataHandle(copy.get(), false, copy);
                          return {};
                      }));
    return handle;
}

// --- writing
// ---------------------------------------------------------------------------------------------------------

namespace {

MStatus store(const MPlug& plug, double value) {
    Cell* cell = plug.hostPlug().cell();
    if (!cell) return MStatus::kInvalidParameter;
    if (!cell->isLeaf() || !cell->attr.isNumber()) return MStatus::kFailure;
    return toStatus(vesk::graph::storeNumber(*cell, value));
}

MStatus storeNumbers(Cell& tuple, const vesk::NumericData& numbers) {
    if (numbers.count() != static_cast<int>(tuple.attr.children.size())) return MStatus::kFailure;
    for (int i = 0; i < numbers.count(); ++i) {
        const auto stored =
            vesk::graph::storeNumber(tuple.child(i), numbers.numbers()[static_cast<std::size_t>(i)]);
        if (!stored) return MStatus::kFailure;
    }
    return {};
}

MStatus store(const MPlug& plug, vesk::Data* value) {
    Cell* cell = plug.hostPlug().cell();
    if (!cell) return MStatus::kInvalidParameter;
    const auto* numbers = dynamic_cast<vesk::NumericData*>(value);
    if (numbers && vesk::api::isTuple(*cell)) return storeNumbers(*cell, *numbers);
    if (numbers && cell->isLeaf() && cell->attr.isNumber()) return store(plug, numbers->numbers()[0]);
    if (!cell->isLeaf() || !cell->attr.isData()) return MStatus::kFailure;
    return toStatus(vesk::graph::storeData(*cell, vesk::Ref<vesk::Data>(value)));
}

} // namespace

MStatus MPlug::setValue(const MObject& value) {
    vesk::Data* data = dataOf(value);
    if (!data && !value.isNull()) return MStatus::kInvalidParameter;
    return store(*this, data);
}
MStatus MPlug::setValue(double value) { return store(*this, value); }
MStatus MPlug::setValue(float value) { return store(*this, static_cast<double>(value)); }
MStatus MPlug::setValue(MInt64 value) { return store(*this, static_cast<double>(value)); }
MStatus MPlug::setValue(int value) { return store(*this, static_cast<double>(value)); }
MStatus MPlug::setValue(short value) { return store(*this, static_cast<double>(value)); }
MStatus MPlug::setValue(bool value) { return store(*this, value ? 1.0 : 0.0); }
MStatus MPlug::setValue(char value) { return store(*this, static_cast<double>(value)); }
MStatus MPlug::setValue(const MDistance& value) { return store(*this, value.as(MDistance::internalUnit())); }
MStatus MPlug::setValue(const MAngle& value) { return store(*this, value.as(MAngle::internalUnit())); }
MStatus MPlug::setValue(const MTime& value) { return store(*this, vesk::api::ticksOf(value)); }
MStatus MPlug::setValue(const MString& value) {
    const MObject text = handleOn(vesk::makeRef<vesk::StringData>(value).get());
    return setValue(text);
}
MStatus MPlug::setValue(const char* value) { return setValue(MString(value)); }
MStatus MPlug::setValue(MDataHandle& value) { return setMDataHandle(value); }

MStatus MPlug::setMDataHandle(const MDataHandle& value) {
    Cell* cell = hostPlug().cell();
    const Cell* from = value.hostCell();
    if (!cell || !from) return MStatus::kInvalidParameter;
    return toStatus(vesk::api::storeCopy(*cell, *from));
}

MDataHandle MPlug::constructHandle(MDataBlock&) const {
    const Cell* cell = hostPlug().cell();
    if (!cell) return {};
    std::shared_ptr<Cell> copy;
    if (cell->isArray() && cell->attr.isNumber() && !cell->attr.packed) {
        copy = Cell::detached(cell->node, cell->attr);
        copy->data = vesk::api::numbersOfElements(*cell);
    } else {
        copy = vesk::api::detachedCopy(*cell);
    }
    return MDataHandle(copy.get(), false, copy);
}

void MPlug::destructHandle(MDataHandle& handle) const { handle = MDataHandle(); }
