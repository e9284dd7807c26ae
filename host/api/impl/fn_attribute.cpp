#include <maya/MFnAttribute.h>

#include "host/api/impl/access.h"
#include "host/api/impl/plugin_type.h"
#include "host/graph/attribute.h"

using vesk::api::answer;
using vesk::api::attributeOf;
using vesk::graph::Attribute;

Attribute* MFnAttribute::attr() const { return attributeOf(object_); }

void MFnAttribute::take(const MObject& object, MStatus* status) {
    vesk::api::report(status, setObject(object));
}

MObject MFnAttribute::adopt(Attribute* made, MStatus* status) {
    const bool isNamed = !made->longName.empty();
    object_ = isNamed ? MObject(made) : MObject();
    return answer(status, object_, isNamed ? MStatus::kSuccess : MStatus::kInvalidParameter);
}

namespace {

template <class T, class Owner>
T read(const Attribute* attribute, T Owner::*member, MStatus* status) {
    if (!attribute) return answer(status, T(), MStatus::kInvalidParameter);
    return answer(status, attribute->*member);
}

template <class T, class Owner>
MStatus write(Attribute* attribute, T Owner::*member, T value) {
    if (!attribute) return MStatus::kInvalidParameter;
    attribute->*member = value;
    return {};
}

/// A flag that a numeric tuple hands on to its children.
MStatus writeDown(Attribute* attribute, bool Attribute::*flag, bool value) {
    if (!attribute) return MStatus::kInvalidParameter;
    attribute->*flag = value;
    if (attribute->kind == vesk::graph::AttrKind::Numeric) {
        for (const auto& child : attribute->children)
            child.get()->*flag = value;
    }
    return {};
}

} // namespace

MString MFnAttribute::name(MStatus* status) const {
    return vesk::toMString(read(attr(), &Attribute::longName, status));
}
MString MFnAttribute::shortName(MStatus* status) const {
    return vesk::toMString(read(attr(), &Attribute::shortName, status));
}
MObject MFnAttribute::parent(MStatus* status) const {
    const Attribute* attribute = attr();
    if (!attribute) return answer(status, MObject(), MStatus::kInvalidParameter);
    if (!attribute->parent) return answer(status, MObject(), MStatus::kNotFound);
    return answer(status, MObject(attribute->parent));
}
bool MFnAttribute::isDynamic(MStatus* status) const { return read(attr(), &Attribute::dynamic, status); }

bool MFnAttribute::accepts(MFnData::Type data, MStatus* status) const {
    const Attribute* attribute = attr();
    if (!attribute) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, attribute->accepts(data));
}

bool MFnAttribute::accepts(MFnNumericData::Type number, MStatus* status) const {
    const Attribute* attribute = attr();
    if (!attribute) return answer(status, false, MStatus::kInvalidParameter);
    for (auto accepted : attribute->acceptedNumbers) {
        if (accepted == number) return answer(status, true);
    }
    return answer(status,
                  attribute->kind == vesk::graph::AttrKind::Numeric && attribute->numericType == number);
}

bool MFnAttribute::isReadable(MStatus* status) const { return read(attr(), &Attribute::readable, status); }
bool MFnAttribute::isWritable(MStatus* status) const { return read(attr(), &Attribute::writable, status); }
bool MFnAttribute::isConnectable(MStatus* status) const {
    return read(attr(), &Attribute::connectable, status);
}
bool MFnAttribute::isStorable(MStatus* status) const { return read(attr(), &Attribute::storable, status); }
bool MFnAttribute::isCached(MStatus* status) const { return read(attr(), &Attribute::cached, status); }
bool MFnAttribute::isArray(MStatus* status) const { return read(attr(), &Attribute::array, status); }
bool MFnAttribute::indexMatters(MStatus* status) const {
    return read(attr(), &Attribute::indexMatters, status);
}
bool MFnAttribute::isKeyable(MStatus* status) const { return read(attr(), &Attribute::keyable, status); }
bool MFnAttribute::isChannelBoxFlagSet(MStatus* status) const {
    return read(attr(), &Attribute::channelBox, status);
}
bool MFnAttribute::isHidden(MStatus* status) const { return read(attr(), &Attribute::hidden, status); }
bool MFnAttribute::isUsedAsColor(MStatus* status) const {
    return read(attr(), &Attribute::usedAsColor, status);
}
bool MFnAttribute::isIndeterminant(MStatus* status) const {
    return read(attr(), &Attribute::indeterminant, status);
}
bool MFnAttribute::isWorldSpace(MStatus* status) const {
    return read(attr(), &Attribute::worldSpace, status);
}
bool MFnAttribute::usesArrayDataBuilder(MStatus* status) const {
    return read(attr(), &Attribute::usesArrayDataBuilder, status);
}
bool MFnAttribute::internal(MStatus* status) const { return read(attr(), &Attribute::internal, status); }

MFnAttribute::DisconnectBehavior MFnAttribute::disconnectBehavior(MStatus* status) const {
    const Attribute* attribute = attr();
    if (!attribute) return answer(status, kNothing, MStatus::kInvalidParameter);
    return answer(status, static_cast<DisconnectBehavior>(attribute->onDisconnect));
}

MStatus MFnAttribute::setReadable(bool state) { return writeDown(attr(), &Attribute::readable, state); }
MStatus MFnAttribute::setWritable(bool state) { return writeDown(attr(), &Attribute::writable, state); }
MStatus MFnAttribute::setConnectable(bool state) { return writeDown(attr(), &Attribute::connectable, state); }
MStatus MFnAttribute::setStorable(bool state) { return writeDown(attr(), &Attribute::storable, state); }
MStatus MFnAttribute::setCached(bool state) { return writeDown(attr(), &Attribute::cached, state); }
MStatus MFnAttribute::setKeyable(bool state) { return writeDown(attr(), &Attribute::keyable, state); }
MStatus MFnAttribute::setChannelBox(bool state) { return writeDown(attr(), &Attribute::channelBox, state); }
MStatus MFnAttribute::setHidden(bool state) { return writeDown(attr(), &Attribute::hidden, state); }
MStatus MFnAttribute::setInternal(bool state) { return writeDown(attr(), &Attribute::internal, state); }
MStatus MFnAttribute::setWorldSpace(bool state) { return write(attr(), &Attribute::worldSpace, state); }
MStatus MFnAttribute::setUsedAsColor(bool state) { return write(attr(), &Attribute::usedAsColor, state); }
MStatus MFnAttribute::setIndeterminant(bool state) { return write(attr(), &Attribute::indeterminant, state); }
MStatus MFnAttribute::setIndexMatters(bool state) { return write(attr(), &Attribute::indexMatters, state); }

MStatus MFnAttribute::setArray(bool state) {
    // Nodes of a finished type have cells of the old shape.
    const Attribute* attribute = attr();
    if (attribute && attribute->index >= 0 && !vesk::api::typeInTheMaking()) return MStatus::kFailure;
    return write(attr(), &Attribute::array, state);
}
MStatus MFnAttribute::setUsesArrayDataBuilder(bool state) {
    return write(attr(), &Attribute::usesArrayDataBuilder, state);
}
MStatus MFnAttribute::setDisconnectBehavior(DisconnectBehavior behavior) {
    return write(attr(), &Attribute::onDisconnect, static_cast<vesk::graph::DisconnectBehavior>(behavior));
}
