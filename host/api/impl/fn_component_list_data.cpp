#include "host/api/impl/handles.h"
#include "host/api/impl/result.h"
#include "host/data/component_list_data.h"

#include <maya/MFnComponentListData.h>

using vesk::Component;
using vesk::ComponentListData;
using vesk::api::answer;
using vesk::api::behind;

namespace {

ComponentListData* listOf(const MObject& object) {
    return static_cast<ComponentListData*>(object.hostObject());
}

} // namespace

MFnComponentListData::MFnComponentListData(MObject& object, MStatus* status) { attach(object, status); }
MFnComponentListData::MFnComponentListData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnComponentListData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const ComponentListData*>(&object) != nullptr;
}

unsigned int MFnComponentListData::length(MStatus* status) const {
    if (object_.isNull()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(listOf(object_)->length()));
}

MObject MFnComponentListData::operator[](unsigned int index) const {
    if (index >= length()) return {};
    return MObject(listOf(object_)->entry(static_cast<int>(index)).copy().get());
}

bool MFnComponentListData::has(const MObject& component, MStatus* status) const {
    const Component* asked = behind<const Component>(component);
    if (object_.isNull() || !asked) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, listOf(object_)->has(*asked));
}

MStatus MFnComponentListData::add(const MObject& component) {
    const MStatus status = writableStatus();
    if (!status) return status;
    const Component* added = behind<const Component>(component);
    if (!added) return MStatus::kInvalidParameter;
    return listOf(object_)->add(*added) ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MFnComponentListData::remove(const MObject& component) {
    const MStatus status = writableStatus();
    if (!status) return status;
    const Component* removed = behind<const Component>(component);
    if (!removed) return MStatus::kInvalidParameter;
    return listOf(object_)->remove(*removed) ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MFnComponentListData::remove(unsigned int index) {
    const MStatus status = writableStatus();
    if (!status) return status;
    if (index >= length()) return MStatus::kInvalidParameter;
    listOf(object_)->removeEntry(static_cast<int>(index));
    return status;
}

MStatus MFnComponentListData::clear() {
    const MStatus status = writableStatus();
    if (status) listOf(object_)->clear();
    return status;
}

MObject MFnComponentListData::create(MStatus* status) {
    object_ = MObject(new ComponentListData());
    return answer(status, object_);
}
