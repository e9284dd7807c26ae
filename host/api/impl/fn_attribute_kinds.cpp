// The function sets of each kind of attribute, apart from numbers and units.

#include "host/api/impl/access.h"
#include "host/data/value_data.h"
#include "host/graph/attribute.h"

#include <maya/MFnCompoundAttribute.h>
#include <maya/MFnEnumAttribute.h>
#include <maya/MFnGenericAttribute.h>
#include <maya/MFnMatrixAttribute.h>
#include <maya/MFnMessageAttribute.h>
#include <maya/MFnTypedAttribute.h>

#include <algorithm>

using vesk::text;
using vesk::api::answer;
using vesk::api::attributeOf;
using vesk::api::dataOf;
using vesk::api::handleOn;
using vesk::graph::Attribute;
using vesk::graph::AttrKind;
using vesk::graph::AttrRef;

namespace {

AttrRef make(AttrKind kind, const MString& longName, const MString& shortName) {
    auto attribute = vesk::makeRef<Attribute>();
    attribute->kind = kind;
    attribute->longName = text(longName);
    attribute->shortName = text(shortName);
    return attribute;
}

/// A default as the attribute keeps it: the caller's object stays the caller's.
vesk::Ref<vesk::Data> keptDefault(const vesk::Data& data) {
    auto copy = data.clone();
    copy->markPlaced();
    return copy;
}

} // namespace

// --- typed
// -----------------------------------------------------------------------------------------------------------

MObject MFnTypedAttribute::create(const MString& longName, const MString& shortName, MFnData::Type dataType,
                                  const MObject& defaultData, MStatus* status) {
    auto attribute = make(AttrKind::Typed, longName, shortName);
    attribute->dataType = dataType;
    MObject made = adopt(attribute.get(), status);
    if (made.isNull() || defaultData.isNull()) return made;
    const MStatus set = setDefault(defaultData);
    if (set) return made;
    object_ = MObject();
    return answer(status, MObject(), set);
}

MFnData::Type MFnTypedAttribute::attrType(MStatus* status) const {
    const Attribute* attribute = attr();
    if (!attribute) return answer(status, MFnData::kInvalid, MStatus::kInvalidParameter);
    return answer(status, attribute->dataType);
}

MStatus MFnTypedAttribute::setDefault(const MObject& data) {
    Attribute* attribute = attr();
    const vesk::Data* value = dataOf(data);
    if (!attribute || (!value && !data.isNull())) return MStatus::kInvalidParameter;
    if (value && !attribute->accepts(value->dataType())) return MStatus::kInvalidParameter;
    attribute->defaultData = value ? keptDefault(*value) : nullptr;
    return {};
}

MStatus MFnTypedAttribute::getDefault(MObject& data) const {
    const Attribute* attribute = attr();
    if (!attribute) return MStatus::kInvalidParameter;
    data = handleOn(attribute->defaultData.get(), true);
    return {};
}

// --- matrix
// ----------------------------------------------------------------------------------------------------------

MObject MFnMatrixAttribute::create(const MString& longName, const MString& shortName, Type matrixType,
                                   MStatus* status) {
    auto attribute = make(AttrKind::Matrix, longName, shortName);
    attribute->isFloatMatrix = matrixType == kFloat;
    attribute->defaultData = keptDefault(vesk::MatrixData());
    return adopt(attribute.get(), status);
}

MStatus MFnMatrixAttribute::setDefault(const MMatrix& value) {
    if (!attr()) return MStatus::kInvalidParameter;
    attr()->defaultData = keptDefault(vesk::MatrixData(value));
    return {};
}

MMatrix MFnMatrixAttribute::getDefault(MStatus* status) const {
    const auto* data = attr() ? dynamic_cast<const vesk::MatrixData*>(attr()->defaultData.get()) : nullptr;
    if (!data) return answer(status, MMatrix(), MStatus::kInvalidParameter);
    return answer(status, data->matrix());
}

// --- generic
// ---------------------------------------------------------------------------------------------------------

MObject MFnGenericAttribute::create(const MString& longName, const MString& shortName, MStatus* status) {
    return adopt(make(AttrKind::Generic, longName, shortName).get(), status);
}

namespace {

template <class Type>
MStatus include(std::vector<Type>& list, Type type, bool isType) {
    if (!isType) return MStatus::kInvalidParameter;
    if (std::find(list.begin(), list.end(), type) == list.end()) list.push_back(type);
    return {};
}

template <class Type>
MStatus exclude(std::vector<Type>& list, Type type) {
    return std::erase(list, type) > 0 ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

} // namespace

MStatus MFnGenericAttribute::addDataAccept(MFnData::Type type) {
    if (!attr()) return MStatus::kInvalidParameter;
    return include(attr()->acceptedData, type, type > MFnData::kInvalid && type < MFnData::kLast);
}
MStatus MFnGenericAttribute::addNumericDataAccept(MFnNumericData::Type type) {
    if (!attr()) return MStatus::kInvalidParameter;
    return include(attr()->acceptedNumbers, type,
                   type > MFnNumericData::kInvalid && type < MFnNumericData::kLast);
}
MStatus MFnGenericAttribute::removeDataAccept(MFnData::Type type) {
    return attr() ? exclude(attr()->acceptedData, type) : MStatus::kInvalidParameter;
}
MStatus MFnGenericAttribute::removeNumericDataAccept(MFnNumericData::Type type) {
    return attr() ? exclude(attr()->acceptedNumbers, type) : MStatus::kInvalidParameter;
}

// --- compound and message
// --------------------------------------------------------------------------------------------

MObject MFnCompoundAttribute::create(const MString& longName, const MString& shortName, MStatus* status) {
    return adopt(make(AttrKind::Compound, longName, shortName).get(), status);
}

MStatus MFnCompoundAttribute::addChild(const MObject& child) {
    Attribute* attribute = attr();
    Attribute* below = attributeOf(child);
    if (!attribute || !below || below == attribute || below->parent || attribute->isBelow(*below)) {
        return MStatus::kInvalidParameter;
    }
    if (attribute->index >= 0 || below->index >= 0) return MStatus::kFailure;
    below->parent = attribute;
    attribute->children.emplace_back(below);
    return {};
}

MStatus MFnCompoundAttribute::removeChild(const MObject& child) {
    Attribute* attribute = attr();
    Attribute* below = attributeOf(child);
    if (!attribute || !below || below->parent != attribute) return MStatus::kInvalidParameter;
    if (attribute->index >= 0) return MStatus::kFailure;
    below->parent = nullptr;
    std::erase(attribute->children, AttrRef(below));
    return {};
}

unsigned int MFnCompoundAttribute::numChildren(MStatus* status) const {
    if (!attr()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(attr()->children.size()));
}

MObject MFnCompoundAttribute::child(unsigned int position, MStatus* status) const {
    if (!attr() || position >= attr()->children.size())
        return answer(status, MObject(), MStatus::kInvalidParameter);
    return answer(status, handleOn(attr()->children[position].get()));
}

MObject MFnMessageAttribute::create(const MString& longName, const MString& shortName, MStatus* status) {
    auto attribute = make(AttrKind::Message, longName, shortName);
    attribute->storable = false;
    return adopt(attribute.get(), status);
}

// --- enum
// ------------------------------------------------------------------------------------------------------------

MObject MFnEnumAttribute::create(const MString& longName, const MString& shortName, short defaultValue,
                                 MStatus* status) {
    auto attribute = make(AttrKind::Enum, longName, shortName);
    attribute->defaultNumber = defaultValue;
    return adopt(attribute.get(), status);
}

MStatus MFnEnumAttribute::addField(const MString& name, short value) {
    if (!attr()) return MStatus::kInvalidParameter;
    auto& fields = attr()->fields;
    const auto same =
        std::find_if(fields.begin(), fields.end(), [&](const auto& one) { return one.value == value; });
    if (same != fields.end()) {
        same->name = text(name);
    } else {
        fields.push_back({text(name), value});
    }
    return {};
}

MString MFnEnumAttribute::fieldName(short value, MStatus* status) const {
    if (attr()) {
        for (const auto& field : attr()->fields) {
            if (field.value == value) return answer(status, vesk::toMString(field.name));
        }
    }
    return answer(status, MString(), MStatus::kInvalidParameter);
}

short MFnEnumAttribute::fieldIndex(const MString& name, MStatus* status) const {
    if (attr()) {
        for (const auto& field : attr()->fields) {
            if (field.name == text(name)) return answer(status, field.value);
        }
    }
    return answer(status, short{0}, MStatus::kInvalidParameter);
}

namespace {

bool lessValue(const vesk::graph::EnumField& a, const vesk::graph::EnumField& b) { return a.value < b.value; }

} // namespace

MStatus MFnEnumAttribute::getMin(short& value) const {
    if (!attr()) return MStatus::kInvalidParameter;
    const auto& fields = attr()->fields;
    if (fields.empty()) return MStatus::kFailure;
    return value = std::min_element(fields.begin(), fields.end(), lessValue)->value, MStatus();
}

MStatus MFnEnumAttribute::getMax(short& value) const {
    if (!attr()) return MStatus::kInvalidParameter;
    const auto& fields = attr()->fields;
    if (fields.empty()) return MStatus::kFailure;
    return value = std::max_element(fields.begin(), fields.end(), lessValue)->value, MStatus();
}

MStatus MFnEnumAttribute::setDefault(short value) {
    if (!attr()) return MStatus::kInvalidParameter;
    attr()->defaultNumber = value;
    return {};
}

MStatus MFnEnumAttribute::setDefault(const MString& name) {
    MStatus status;
    const short value = fieldIndex(name, &status);
    return status ? setDefault(value) : status;
}

MStatus MFnEnumAttribute::getDefault(short& value) const {
    if (!attr()) return MStatus::kInvalidParameter;
    return value = static_cast<short>(attr()->defaultNumber), MStatus();
}

MStatus MFnEnumAttribute::getDefault(MString& name) const {
    short value = 0;
    MStatus status = getDefault(value);
    if (status) name = fieldName(value, &status);
    return status;
}
