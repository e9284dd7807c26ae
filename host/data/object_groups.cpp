#include "host/data/object_groups.h"

#include <algorithm>

namespace vesk {

const ObjectGroups::Group* ObjectGroups::find(unsigned int id) const {
    const auto& groups = *groups_;
    const auto found =
        std::find_if(groups.begin(), groups.end(), [id](const Group& group) { return group.id == id; });
    return found == groups.end() ? nullptr : &*found;
}

ObjectGroups::Group* ObjectGroups::findToWrite(unsigned int id) {
    const Group* group = find(id);
    if (!group) return nullptr;
    const auto position = group - groups_->data();
    Group& written = groups_.write()[static_cast<std::size_t>(position)];
    // A copy of these groups may hold the same component.
    if (written.component && written.component->referenceCount() > 1)
        written.component = written.component->copy();
    return &written;
}

const Component* ObjectGroups::component(unsigned int id) const {
    const Group* group = find(id);
    return group ? group->component.get() : nullptr;
}

void ObjectGroups::add(unsigned int id) {
    if (!has(id)) groups_.write().push_back({id, nullptr});
}

bool ObjectGroups::addComponent(unsigned int id, const Component& component) {
    Group* group = findToWrite(id);
    if (!group) return false;
    if (group->component) return group->component->unite(component);
    if (!component.isEmpty()) group->component = component.copy();
    return true;
}

bool ObjectGroups::setComponent(unsigned int id, const Component& component) {
    Group* group = findToWrite(id);
    if (!group) return false;
    group->component = component.isEmpty() ? nullptr : component.copy();
    return true;
}

bool ObjectGroups::removeComponent(unsigned int id, const Component& component) {
    Group* group = findToWrite(id);
    if (!group) return false;
    if (!group->component || group->component->apiType() != component.apiType()) return true;
    if (!group->component->subtract(component)) return false;
    if (group->component->isEmpty()) group->component = nullptr;
    return true;
}

bool ObjectGroups::remove(unsigned int id) {
    const Group* group = find(id);
    if (!group) return false;
    const auto position = group - groups_->data();
    auto& groups = groups_.write();
    groups.erase(groups.begin() + position);
    return true;
}

bool ObjectGroups::changeId(unsigned int id, unsigned int newId) {
    if (!has(id) || has(newId)) return false;
    findToWrite(id)->id = newId;
    return true;
}

} // namespace vesk
