#pragma once
// A list of components, one entry a kind, as a value on a wire.

#include "host/data/component.h"
#include "host/data/data.h"

#include <span>

namespace vesk {

/// Entries are the list's own: components that go in or come out are copies, whose elements are shared with
/// the list's until either changes.
class ComponentListData : public Data {
  public:
    int length() const { return static_cast<int>(entries_.size()); }
    /// The entry at an index below `length()`, for reading.
    const Component& entry(int index) const { return *entries_[static_cast<std::size_t>(index)]; }
    /// The entry of a kind, for reading; null when there is none.
    const Component* find(MFn::Type kind) const;

    /// Joins the elements with the entry of the same kind, or appends an entry, also for an empty component.
    /// False when the joined entry would be too large.
    bool add(const Component& component);
    /// Takes the elements away from the entry of the same kind; an entry left empty disappears. False when
    /// the list has no such entry, or when what remains cannot be told (see `Component::subtract`).
    bool remove(const Component& component);
    bool removeEntry(int index);
    void clear() { entries_.clear(); }
    /// Whether the entry of the same kind contains the component.
    bool has(const Component& component) const;

    /// The list that such texts name: one entry a kind, in order of first appearance. Null when one of them
    /// cannot be understood; `error` then tells which and why.
    static Ref<ComponentListData> fromTexts(std::span<const std::string> texts, std::string& error);
    /// The texts of all entries.
    std::vector<std::string> texts() const;

    MFn::Type apiType() const override { return MFn::kComponentListData; }
    MFnData::Type dataType() const override { return MFnData::kComponentList; }
    Ref<Data> clone() const override;
    std::size_t byteSize() const override;

  private:
    std::vector<Ref<Component>>::iterator place(MFn::Type kind);

    std::vector<Ref<Component>> entries_;
};

} // namespace vesk
