#include "nodes/common/attributes.h"

#include <maya/MFnAttribute.h>
#include <maya/MFnEnumAttribute.h>
#include <maya/MFnGenericAttribute.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MPxNode.h>
#include <maya/MString.h>

namespace vesk::nodes {

using Row = AttributeTable::Row;

Row& Row::keyable() {
    MFnAttribute(attribute_).setKeyable(true);
    return *this;
}

Row& Row::notStorable() {
    MFnAttribute(attribute_).setStorable(false);
    return *this;
}

Row& Row::resets() {
    MFnAttribute(attribute_).setDisconnectBehavior(MFnAttribute::kReset);
    return *this;
}

Row& Row::min(double value) {
    MFnNumericAttribute(attribute_).setMin(value);
    return *this;
}

Row& Row::softMax(double value) {
    MFnNumericAttribute(attribute_).setSoftMax(value);
    return *this;
}

Row& Row::output() {
    MFnAttribute attribute(attribute_);
    attribute.setWritable(false);
    attribute.setStorable(false);
    isOutput_ = true;
    return *this;
}

Row AttributeTable::declare(MObject& attribute, const MObject& made) {
    attribute = made;
    // Rows are handed out by reference to their entry: there is room for every table before the first one.
    if (rows_.capacity() == 0) rows_.reserve(256);
    rows_.push_back({&attribute, false});
    return Row(attribute, rows_.back().isOutput);
}

Row AttributeTable::boolean(MObject& attribute, const char* longName, const char* shortName, bool value) {
    return declare(attribute, MFnNumericAttribute().create(longName, shortName, MFnNumericData::kBoolean,
                                                           value, &status_));
}

Row AttributeTable::integer(MObject& attribute, const char* longName, const char* shortName, int value) {
    return declare(attribute,
                   MFnNumericAttribute().create(longName, shortName, MFnNumericData::kInt, value, &status_));
}

Row AttributeTable::string(MObject& attribute, const char* longName, const char* shortName) {
    return typed(attribute, longName, shortName, MFnData::kString);
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

MStatus AttributeTable::finish() {
    for (const auto& row : rows_) {
        if (const MStatus status = MPxNode::addAttribute(*row.attribute); !status) return status;
    }
    for (const auto& in : rows_) {
        if (in.isOutput) continue;
        for (const auto& out : rows_) {
            if (!out.isOutput) continue;
            if (const MStatus status = MPxNode::attributeAffects(*in.attribute, *out.attribute); !status)
                return status;
        }
    }
    return MS::kSuccess;
}

} // namespace vesk::nodes
