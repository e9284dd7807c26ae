#include "nodes/common/attributes.h"

#include <maya/MFnAttribute.h>
#include <maya/MFnCompoundAttribute.h>
#include <maya/MFnEnumAttribute.h>
#include <maya/MFnGenericAttribute.h>
#include <maya/MFnMatrixAttribute.h>
#include <maya/MFnMessageAttribute.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnStringData.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MPxNode.h>
#include <maya/MRampAttribute.h>
#include <maya/MString.h>

#include <algorithm>
#include <vector>

namespace vesk::nodes {

using Row = AttributeTable::Row;

Row& Row::keyable() {
    MFnAttribute(*row_.attribute).setKeyable(true);
    return *this;
}

Row& Row::hidden() {
    MFnAttribute(*row_.attribute).setHidden(true);
    return *this;
}

Row& Row::notStorable() {
    MFnAttribute(*row_.attribute).setStorable(false);
    return *this;
}

Row& Row::notReadable() {
    MFnAttribute(*row_.attribute).setReadable(false);
    return *this;
}

Row& Row::notWritable() {
    MFnAttribute(*row_.attribute).setWritable(false);
    return *this;
}

Row& Row::notConnectable() {
    MFnAttribute(*row_.attribute).setConnectable(false);
    return *this;
}

Row& Row::notCached() {
    MFnAttribute(*row_.attribute).setCached(false);
    return *this;
}

Row& Row::resets() {
    MFnAttribute(*row_.attribute).setDisconnectBehavior(MFnAttribute::kReset);
    return *this;
}

Row& Row::deletes() {
    MFnAttribute(*row_.attribute).setDisconnectBehavior(MFnAttribute::kDelete);
    return *this;
}

Row& Row::array() {
    MFnAttribute(*row_.attribute).setArray(true);
    return *this;
}

Row& Row::builder() {
    MFnAttribute attribute(*row_.attribute);
    attribute.setArray(true);
    attribute.setUsesArrayDataBuilder(true);
    return *this;
}

Row& Row::nextAvailable() {
    MFnAttribute attribute(*row_.attribute);
    attribute.setArray(true);
    attribute.setIndexMatters(false);
    return *this;
}

Row& Row::min(double value) {
    MFnNumericAttribute(*row_.attribute).setMin(value);
    return *this;
}

Row& Row::max(double value) {
    MFnNumericAttribute(*row_.attribute).setMax(value);
    return *this;
}

Row& Row::softMin(double value) {
    MFnNumericAttribute(*row_.attribute).setSoftMin(value);
    return *this;
}

Row& Row::softMax(double value) {
    MFnNumericAttribute(*row_.attribute).setSoftMax(value);
    return *this;
}

Row& Row::usedAsColor() {
    MFnAttribute(*row_.attribute).setUsedAsColor(true);
    return *this;
}

Row& Row::output() {
    MFnAttribute attribute(*row_.attribute);
    attribute.setWritable(false);
    attribute.setStorable(false);
    return influenced();
}

Row& Row::influenced() {
    row_.role = Role::kOutput;
    return *this;
}

Row& Row::stored() {
    MFnAttribute(*row_.attribute).setStorable(true);
    return *this;
}

Row& Row::aside() {
    row_.role = Role::kAside;
    return *this;
}

Row AttributeTable::declare(MObject& attribute, const MObject& made) {
    attribute = made;
    return Row(rows_.emplace_back(Declared{&attribute}));
}

void AttributeTable::adopt(std::initializer_list<MObject*> children) {
    for (Declared& row : rows_)
        row.isChild =
            row.isChild || std::find(children.begin(), children.end(), row.attribute) != children.end();
}

Row AttributeTable::boolean(MObject& attribute, const char* longName, const char* shortName, bool value) {
    return declare(attribute, MFnNumericAttribute().create(longName, shortName, MFnNumericData::kBoolean,
                                                           value, &status_));
}

Row AttributeTable::shortInteger(MObject& attribute, const char* longName, const char* shortName,
                                 short value) {
    return declare(attribute, MFnNumericAttribute().create(longName, shortName, MFnNumericData::kShort, value,
                                                           &status_));
}

Row AttributeTable::integer(MObject& attribute, const char* longName, const char* shortName, int value) {
    return declare(attribute,
                   MFnNumericAttribute().create(longName, shortName, MFnNumericData::kInt, value, &status_));
}

Row AttributeTable::real(MObject& attribute, const char* longName, const char* shortName, double value) {
    return declare(attribute, MFnNumericAttribute().create(longName, shortName, MFnNumericData::kFloat, value,
                                                           &status_));
}

Row AttributeTable::number(MObject& attribute, const char* longName, const char* shortName, double value) {
    return declare(attribute, MFnNumericAttribute().create(longName, shortName, MFnNumericData::kDouble,
                                                           value, &status_));
}

Row AttributeTable::unit(MObject& attribute, const char* longName, const char* shortName,
                         MFnUnitAttribute::Type type, double value) {
    return declare(attribute, MFnUnitAttribute().create(longName, shortName, type, value, &status_));
}

Row AttributeTable::string(MObject& attribute, const char* longName, const char* shortName) {
    return typed(attribute, longName, shortName, MFnData::kString);
}

Row AttributeTable::string(MObject& attribute, const char* longName, const char* shortName,
                           const char* value) {
    return declare(attribute, MFnTypedAttribute().create(longName, shortName, MFnData::kString,
                                                         MFnStringData().create(value), &status_));
}

Row AttributeTable::matrix(MObject& attribute, const char* longName, const char* shortName) {
    return declare(attribute,
                   MFnMatrixAttribute().create(longName, shortName, MFnMatrixAttribute::kDouble, &status_));
}

Row AttributeTable::message(MObject& attribute, const char* longName, const char* shortName) {
    return declare(attribute, MFnMessageAttribute().create(longName, shortName, &status_));
}

Row AttributeTable::typed(MObject& attribute, const char* longName, const char* shortName,
                          MFnData::Type type) {
    return declare(attribute,
                   MFnTypedAttribute().create(longName, shortName, type, MObject::kNullObj, &status_));
}

Row AttributeTable::generic(MObject& attribute, const char* longName, const char* shortName,
                            std::initializer_list<MFnData::Type> accepts) {
    MFnGenericAttribute maker;
    Row row = declare(attribute, maker.create(longName, shortName, &status_));
    for (MFnData::Type type : accepts)
        maker.addDataAccept(type);
    return row;
}

Row AttributeTable::enumeration(MObject& attribute, const char* longName, const char* shortName,
                                std::initializer_list<const char*> fields, short value) {
    MFnEnumAttribute maker;
    Row row = declare(attribute, maker.create(longName, shortName, value, &status_));
    short number = 0;
    for (const char* field : fields)
        maker.addField(field, number++);
    return row;
}

Row AttributeTable::color(MObject& attribute, const char* longName, const char* shortName, double r, double g,
                          double b) {
    MFnNumericAttribute maker;
    Row row = declare(attribute, maker.createColor(longName, shortName, &status_));
    maker.setDefault(r, g, b);
    return row;
}

Row AttributeTable::point(MObject& attribute, const char* longName, const char* shortName, double x, double y,
                          double z) {
    MFnNumericAttribute maker;
    Row row = declare(attribute, maker.createPoint(longName, shortName, &status_));
    maker.setDefault(x, y, z);
    return row;
}

Row AttributeTable::tuple(MObject& attribute, const char* longName, const char* shortName,
                          std::initializer_list<MObject*> children) {
    adopt(children);
    MObject* const* child = children.begin();
    return declare(attribute,
                   MFnNumericAttribute().create(longName, shortName, *child[0], *child[1],
                                                children.size() > 2 ? *child[2] : MObject(), &status_));
}

Row AttributeTable::compound(MObject& attribute, const char* longName, const char* shortName,
                             std::initializer_list<MObject*> children) {
    adopt(children);
    MFnCompoundAttribute maker;
    Row row = declare(attribute, maker.create(longName, shortName, &status_));
    for (const MObject* child : children)
        maker.addChild(*child);
    return row;
}

Row AttributeTable::curveRamp(MObject& attribute, const char* longName, const char* shortName) {
    return declare(attribute, MRampAttribute::createCurveRamp(longName, shortName, &status_));
}

Row AttributeTable::colorRamp(MObject& attribute, const char* longName, const char* shortName) {
    return declare(attribute, MRampAttribute::createColorRamp(longName, shortName, &status_));
}

MStatus AttributeTable::finish(std::initializer_list<const MObject*> outputsOfBase) {
    std::vector<const MObject*> outputs(outputsOfBase);
    for (const Declared& row : rows_) {
        if (row.isChild) continue;
        if (const MStatus status = MPxNode::addAttribute(*row.attribute); !status) return status;
        if (row.role == Role::kOutput) outputs.push_back(row.attribute);
    }
    if (followsState_) {
        for (const MObject* out : outputs) {
            if (const MStatus status = MPxNode::attributeAffects(MPxNode::state, *out); !status)
                return status;
        }
    }
    for (const Declared& in : rows_) {
        if (in.isChild || in.role != Role::kInput) continue;
        for (const MObject* out : outputs) {
            if (const MStatus status = MPxNode::attributeAffects(*in.attribute, *out); !status) return status;
        }
    }
    return MS::kSuccess;
}

} // namespace vesk::nodes
