// The function sets of numbers, with and without a unit.

#include "host/api/impl/access.h"
#include "host/api/impl/cell_values.h"
#include "host/graph/attribute.h"

#include <maya/MFnNumericAttribute.h>
#include <maya/MFnUnitAttribute.h>

using vesk::text;
using vesk::api::answer;
using vesk::api::attributeOf;
using vesk::api::handleOn;
using vesk::api::ticksOf;
using vesk::graph::Attribute;
using vesk::graph::AttrKind;
using vesk::graph::AttrRef;
using vesk::graph::UnitKind;

MObject MFnNumericAttribute::create(const MString& longName, const MString& shortName,
                                    MFnNumericData::Type type, double defaultValue, MStatus* status) {
    if (type <= MFnNumericData::kInvalid || type >= MFnNumericData::kLast) {
        return answer(status, MObject(), MStatus::kInvalidParameter);
    }
    const int count = vesk::graph::numericParts(type).second;
    if (count == 1) {
        return adopt(vesk::graph::number(text(longName), text(shortName), type, defaultValue).get(), status);
    }
    std::vector<std::string> suffixes;
    suffixes.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        suffixes.push_back(std::to_string(i));
    return adopt(vesk::graph::tuple(text(longName), text(shortName), type, std::move(suffixes),
                                    UnitKind::None, defaultValue)
                     .get(),
                 status);
}

MObject MFnNumericAttribute::create(const MString& longName, const MString& shortName, const MObject& child1,
                                    const MObject& child2, const MObject& child3, MStatus* status) {
    std::vector<Attribute*> children = {attributeOf(child1), attributeOf(child2)};
    if (!child3.isNull()) children.push_back(attributeOf(child3));
    for (std::size_t i = 0; i < children.size(); ++i) {
        const Attribute* child = children[i];
        const bool fits = child && child->isNumber() && !child->array && !child->parent && child->index < 0 &&
                          std::find(children.begin(), children.begin() + static_cast<std::ptrdiff_t>(i),
                                    child) == children.begin() + static_cast<std::ptrdiff_t>(i);
        if (!fits) return answer(status, MObject(), MStatus::kInvalidParameter);
    }
    const auto leaf =
        children[0]->kind == AttrKind::Numeric ? children[0]->numericType : MFnNumericData::kDouble;
    const auto type = vesk::graph::numericTuple(leaf, static_cast<int>(children.size()));
    if (type == MFnNumericData::kInvalid) return answer(status, MObject(), MStatus::kInvalidParameter);
    auto attribute = vesk::graph::number(text(longName), text(shortName), type);
    for (Attribute* child : children) {
        child->parent = attribute.get();
        attribute->children.emplace_back(child);
    }
    return adopt(attribute.get(), status);
}

MObject MFnNumericAttribute::createColor(const MString& longName, const MString& shortName, MStatus* status) {
    return adopt(vesk::graph::color(text(longName), text(shortName)).get(), status);
}

MObject MFnNumericAttribute::createPoint(const MString& longName, const MString& shortName, MStatus* status) {
    return adopt(
        vesk::graph::tuple(text(longName), text(shortName), MFnNumericData::k3Float, {"X", "Y", "Z"}).get(),
        status);
}

MObject MFnNumericAttribute::createAddr(const MString& longName, const MString& shortName, MStatus* status) {
    return create(longName, shortName, MFnNumericData::kAddr, 0, status);
}

MFnNumericData::Type MFnNumericAttribute::unitType(MStatus* status) const {
    if (!attr()) return answer(status, MFnNumericData::kInvalid, MStatus::kInvalidParameter);
    return answer(status, attr()->numericType);
}

MObject MFnNumericAttribute::child(unsigned int position, MStatus* status) const {
    if (!attr() || position >= attr()->children.size())
        return answer(status, MObject(), MStatus::kInvalidParameter);
    return answer(status, handleOn(attr()->children[position].get()));
}

namespace {

/// The attributes that hold the numbers: the attribute itself, or a tuple's children.
std::vector<Attribute*> leavesOf(Attribute* attribute) {
    std::vector<Attribute*> leaves;
    if (!attribute) return leaves;
    if (attribute->children.empty()) leaves.push_back(attribute);
    for (const auto& child : attribute->children)
        leaves.push_back(child.get());
    return leaves;
}

using Limit = std::optional<double> Attribute::*;
constexpr Limit kLimits[] = {&Attribute::min, &Attribute::max, &Attribute::softMin, &Attribute::softMax};

} // namespace

MStatus MFnNumericAttribute::setDefaults(const Several& values) {
    const auto leaves = leavesOf(attr());
    if (leaves.empty() || leaves.size() != values.count) return MStatus::kInvalidParameter;
    for (std::size_t i = 0; i < leaves.size(); ++i)
        leaves[i]->defaultNumber = leaves[i]->coerced(values.numbers[i]);
    return {};
}

MStatus MFnNumericAttribute::setLimits(int which, const Several& values) {
    const auto leaves = leavesOf(attr());
    if (leaves.empty() || (leaves.size() != values.count && values.count != 1))
        return MStatus::kInvalidParameter;
    for (std::size_t i = 0; i < leaves.size(); ++i)
        leaves[i]->*kLimits[which] = values.numbers[values.count == 1 ? 0 : i];
    return {};
}

MStatus MFnNumericAttribute::limit(int which, double& value) const {
    const auto leaves = leavesOf(attr());
    if (leaves.empty()) return MStatus::kInvalidParameter;
    const auto& found = leaves[0]->*kLimits[which];
    if (!found) return MStatus::kFailure;
    return value = *found, MStatus();
}

MStatus MFnNumericAttribute::getMin(double& value) const { return limit(0, value); }
MStatus MFnNumericAttribute::getMax(double& value) const { return limit(1, value); }
MStatus MFnNumericAttribute::getSoftMin(double& value) const { return limit(2, value); }
MStatus MFnNumericAttribute::getSoftMax(double& value) const { return limit(3, value); }

namespace {

bool hasLimit(Attribute* attribute, Limit limit, MStatus* status) {
    const auto leaves = leavesOf(attribute);
    if (leaves.empty()) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, (leaves[0]->*limit).has_value());
}

} // namespace

bool MFnNumericAttribute::hasMin(MStatus* status) const { return hasLimit(attr(), &Attribute::min, status); }
bool MFnNumericAttribute::hasMax(MStatus* status) const { return hasLimit(attr(), &Attribute::max, status); }
bool MFnNumericAttribute::hasSoftMin(MStatus* status) const {
    return hasLimit(attr(), &Attribute::softMin, status);
}
bool MFnNumericAttribute::hasSoftMax(MStatus* status) const {
    return hasLimit(attr(), &Attribute::softMax, status);
}

template <class Number>
MStatus MFnNumericAttribute::defaults(Number* values, unsigned int count) const {
    const auto leaves = leavesOf(attr());
    if (leaves.empty() || leaves.size() != count) return MStatus::kInvalidParameter;
    for (unsigned int i = 0; i < count; ++i) {
        if constexpr (std::is_same_v<Number, bool>) {
            values[i] = leaves[i]->defaultNumber != 0;
        } else if constexpr (std::is_integral_v<Number>) {
            values[i] = vesk::api::truncatedTo<Number>(leaves[i]->defaultNumber);
        } else {
            values[i] = static_cast<Number>(leaves[i]->defaultNumber);
        }
    }
    return {};
}

MStatus MFnNumericAttribute::getDefault(bool& value) const { return defaults(&value, 1); }
MStatus MFnNumericAttribute::getDefault(char& value) const { return defaults(&value, 1); }
MStatus MFnNumericAttribute::getDefault(short& value) const { return defaults(&value, 1); }
MStatus MFnNumericAttribute::getDefault(int& value) const { return defaults(&value, 1); }
MStatus MFnNumericAttribute::getDefault(float& value) const { return defaults(&value, 1); }
MStatus MFnNumericAttribute::getDefault(double& value) const { return defaults(&value, 1); }

MStatus MFnNumericAttribute::getDefault(double& a, double& b) const {
    double values[2] = {a, b};
    const MStatus status = defaults(values, 2);
    return a = values[0], b = values[1], status;
}

MStatus MFnNumericAttribute::getDefault(float& a, float& b, float& c) const {
    float values[3] = {a, b, c};
    const MStatus status = defaults(values, 3);
    return a = values[0], b = values[1], c = values[2], status;
}

MStatus MFnNumericAttribute::getDefault(double& a, double& b, double& c) const {
    double values[3] = {a, b, c};
    const MStatus status = defaults(values, 3);
    return a = values[0], b = values[1], c = values[2], status;
}

// --- units: the API speaks seconds where cells hold ticks
// ------------------------------------------------------------

namespace {

double internalOf(UnitKind kind, double value) {
    return kind == UnitKind::Time ? ticksOf(MTime(value, MTime::kSeconds)) : value;
}

double apiValueOf(UnitKind kind, double value) {
    return kind == UnitKind::Time ? value / ticksOf(MTime(1, MTime::kSeconds)) : value;
}

MStatus setOf(Attribute* attribute, Limit limit, double value) {
    if (!attribute) return MStatus::kInvalidParameter;
    attribute->*limit = internalOf(attribute->unit, value);
    return {};
}

MStatus getOf(const Attribute* attribute, Limit limit, double& value) {
    if (!attribute) return MStatus::kInvalidParameter;
    if (!(attribute->*limit)) return MStatus::kFailure;
    return value = apiValueOf(attribute->unit, *(attribute->*limit)), MStatus();
}

} // namespace

MObject MFnUnitAttribute::create(const MString& longName, const MString& shortName, Type unitType,
                                 double defaultValue, MStatus* status) {
    if (unitType <= kInvalid || unitType >= kLast)
        return answer(status, MObject(), MStatus::kInvalidParameter);
    const auto kind = static_cast<UnitKind>(unitType);
    return adopt(
        vesk::graph::unit(text(longName), text(shortName), kind, internalOf(kind, defaultValue)).get(),
        status);
}

static_assert(static_cast<int>(UnitKind::Angle) == MFnUnitAttribute::kAngle &&
              static_cast<int>(UnitKind::Distance) == MFnUnitAttribute::kDistance &&
              static_cast<int>(UnitKind::Time) == MFnUnitAttribute::kTime);

MObject MFnUnitAttribute::create(const MString& longName, const MString& shortName,
                                 const MAngle& defaultValue, MStatus* status) {
    return create(longName, shortName, kAngle, defaultValue.as(MAngle::internalUnit()), status);
}
MObject MFnUnitAttribute::create(const MString& longName, const MString& shortName,
                                 const MDistance& defaultValue, MStatus* status) {
    return create(longName, shortName, kDistance, defaultValue.as(MDistance::internalUnit()), status);
}
MObject MFnUnitAttribute::create(const MString& longName, const MString& shortName, const MTime& defaultValue,
                                 MStatus* status) {
    return create(longName, shortName, kTime, defaultValue.as(MTime::kSeconds), status);
}

MFnUnitAttribute::Type MFnUnitAttribute::unitType(MStatus* status) const {
    if (!attr()) return answer(status, kInvalid, MStatus::kInvalidParameter);
    return answer(status, static_cast<Type>(attr()->unit));
}

MStatus MFnUnitAttribute::setDefault(double value) {
    if (!attr()) return MStatus::kInvalidParameter;
    attr()->defaultNumber = internalOf(attr()->unit, value);
    return {};
}
MStatus MFnUnitAttribute::setDefault(const MAngle& value) {
    return setDefault(value.as(MAngle::internalUnit()));
}
MStatus MFnUnitAttribute::setDefault(const MDistance& value) {
    return setDefault(value.as(MDistance::internalUnit()));
}
MStatus MFnUnitAttribute::setDefault(const MTime& value) { return setDefault(value.as(MTime::kSeconds)); }

MStatus MFnUnitAttribute::getDefault(double& value) const {
    if (!attr()) return MStatus::kInvalidParameter;
    return value = apiValueOf(attr()->unit, attr()->defaultNumber), MStatus();
}
MStatus MFnUnitAttribute::getDefault(MAngle& value) const {
    if (!attr()) return MStatus::kInvalidParameter;
    return value = MAngle(attr()->defaultNumber, MAngle::internalUnit()), MStatus();
}
MStatus MFnUnitAttribute::getDefault(MDistance& value) const {
    if (!attr()) return MStatus::kInvalidParameter;
    return value = MDistance(attr()->defaultNumber, MDistance::internalUnit()), MStatus();
}
MStatus MFnUnitAttribute::getDefault(MTime& value) const {
    if (!attr()) return MStatus::kInvalidParameter;
    return value = vesk::api::timeOf(attr()->defaultNumber), MStatus();
}

bool MFnUnitAttribute::hasMin(MStatus* status) const { return hasLimit(attr(), &Attribute::min, status); }
bool MFnUnitAttribute::hasMax(MStatus* status) const { return hasLimit(attr(), &Attribute::max, status); }
MStatus MFnUnitAttribute::getMin(double& value) const { return getOf(attr(), &Attribute::min, value); }
MStatus MFnUnitAttribute::getMax(double& value) const { return getOf(attr(), &Attribute::max, value); }
MStatus MFnUnitAttribute::setMin(double value) { return setOf(attr(), &Attribute::min, value); }
MStatus MFnUnitAttribute::setMax(double value) { return setOf(attr(), &Attribute::max, value); }
MStatus MFnUnitAttribute::setSoftMin(double value) { return setOf(attr(), &Attribute::softMin, value); }
MStatus MFnUnitAttribute::setSoftMax(double value) { return setOf(attr(), &Attribute::softMax, value); }
