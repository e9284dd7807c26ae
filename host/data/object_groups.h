#pragma once
// Numbered groups of components that travel with geometry.

#include "host/core/shared.h"
#include "host/data/component.h"

#include <vector>

namespace vesk {

/// Groups in the order in which they were added. Each holds components of one kind, or nothing yet. Copies
/// share the groups until one writes.
class ObjectGroups {
  public:
    int count() const { return static_cast<int>(groups_->size()); }
    /// Ids of the groups by position, below `count()`.
    unsigned int idAt(int position) const { return (*groups_)[static_cast<std::size_t>(position)].id; }
    bool has(unsigned int id) const { return find(id) != nullptr; }
    /// What a group holds, for reading; null when it is empty or missing.
    const Component* component(unsigned int id) const;

    // All of these return false, and change nothing, when there is no group of that id.

    /// Joins components to those of the group; false as well when it holds another kind.
    bool addComponent(unsigned int id, const Component& component);
    /// Puts components in the place of what the group holds.
    bool setComponent(unsigned int id, const Component& component);
    /// Takes components away; what the group does not hold does no harm.
    bool removeComponent(unsigned int id, const Component& component);
    bool remove(unsigned int id);
    /// False as well when the new id is taken.
    bool changeId(unsigned int id, unsigned int newId);

    /// No effect when there is one of that id.
    void add(unsigned int id);

  private:
    struct Group {
        unsigned int id;
        Ref<Component> component; ///< null when empty
    };
    const Group* find(unsigned int id) const;
    Group* findToWrite(unsigned int id);

    Shared<std::vector<Group>> groups_;
};

} // namespace vesk
