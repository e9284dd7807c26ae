#include "host/api/impl/handles.h"
#include "host/api/impl/result.h"
#include "host/data/geometry_data.h"

#include <maya/MFnGeometryData.h>

using vesk::Component;
using vesk::GeometryData;
using vesk::api::answer;
using vesk::api::behind;

namespace {

MStatus done(bool success) { return success ? MStatus::kSuccess : MStatus::kFailure; }

} // namespace

MFnGeometryData::MFnGeometryData(MObject& object, MStatus* status) { attach(object, status); }
MFnGeometryData::MFnGeometryData(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnGeometryData::accepts(const vesk::Object& object) const {
    return dynamic_cast<const GeometryData*>(&object) != nullptr;
}

GeometryData* MFnGeometryData::geometry() const { return static_cast<GeometryData*>(object_.hostObject()); }

MStatus MFnGeometryData::getMatrix(MMatrix& matrix) const {
    if (!geometry()) return MStatus::kInvalidParameter;
    matrix = geometry()->matrix();
    return {};
}

MStatus MFnGeometryData::setMatrix(const MMatrix& matrix) {
    const MStatus status = writableStatus();
    if (status) geometry()->setMatrix(matrix);
    return status;
}

bool MFnGeometryData::matrixIsIdentity(MStatus* status) const {
    if (!geometry()) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, !geometry()->hasMatrix());
}

bool MFnGeometryData::matrixIsNotIdentity(MStatus* status) const {
    if (!geometry()) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, geometry()->hasMatrix());
}

bool MFnGeometryData::hasObjectGroup(unsigned int groupId, MStatus* status) const {
    if (!geometry()) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, geometry()->groups().has(groupId));
}

unsigned int MFnGeometryData::objectGroupCount(MStatus* status) const {
    if (!geometry()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(geometry()->groups().count()));
}

unsigned int MFnGeometryData::objectGroup(unsigned int position, MStatus* status) const {
    if (position >= objectGroupCount()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, geometry()->groups().idAt(static_cast<int>(position)));
}

MStatus MFnGeometryData::addObjectGroup(unsigned int groupId) {
    const MStatus status = writableStatus();
    if (status && !geometry()->groups().has(groupId)) geometry()->writeGroups().add(groupId);
    return status;
}

MStatus MFnGeometryData::removeObjectGroup(unsigned int groupId) {
    const MStatus status = writableStatus();
    return status ? done(geometry()->writeGroups().remove(groupId)) : status;
}

MStatus MFnGeometryData::changeObjectGroupId(unsigned int groupId, unsigned int newId) {
    const MStatus status = writableStatus();
    return status ? done(geometry()->writeGroups().changeId(groupId, newId)) : status;
}

MStatus MFnGeometryData::copyObjectGroups(const MObject& from) {
    const MStatus status = writableStatus();
    if (!status) return status;
    const auto* source = dynamic_cast<const GeometryData*>(from.hostObject());
    if (!source) return MStatus::kInvalidParameter;
    geometry()->writeGroups() = source->groups();
    return status;
}

MObject MFnGeometryData::objectGroupComponent(unsigned int groupId, MStatus* status) const {
    if (!geometry()) return answer(status, MObject(), MStatus::kInvalidParameter);
    const Component* component = geometry()->groups().component(groupId);
    const MStatus found = done(geometry()->groups().has(groupId));
    return answer(status, component ? MObject(component->copy().get()) : MObject(), found);
}

MFn::Type MFnGeometryData::objectGroupType(unsigned int groupId, MStatus* status) const {
    if (!geometry()) return answer(status, MFn::kInvalid, MStatus::kInvalidParameter);
    const Component* component = geometry()->groups().component(groupId);
    const MStatus found = done(geometry()->groups().has(groupId));
    return answer(status, component ? component->apiType() : MFn::kInvalid, found);
}

MStatus MFnGeometryData::addObjectGroupComponent(unsigned int groupId, const MObject& component) {
    const MStatus status = writableStatus();
    if (!status) return status;
    const Component* added = behind<const Component>(component);
    return added ? done(geometry()->writeGroups().addComponent(groupId, *added)) : MStatus::kInvalidParameter;
}

MStatus MFnGeometryData::setObjectGroupComponent(unsigned int groupId, const MObject& component) {
    const MStatus status = writableStatus();
    if (!status) return status;
    const Component* set = behind<const Component>(component);
    return set ? done(geometry()->writeGroups().setComponent(groupId, *set)) : MStatus::kInvalidParameter;
}

MStatus MFnGeometryData::removeObjectGroupComponent(unsigned int groupId, const MObject& component) {
    const MStatus status = writableStatus();
    if (!status) return status;
    const Component* removed = behind<const Component>(component);
    return removed ? done(geometry()->writeGroups().removeComponent(groupId, *removed))
                   : MStatus::kInvalidParameter;
}
