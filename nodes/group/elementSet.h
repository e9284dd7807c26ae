#pragma once
// Selections as plain sorted ids, and the running list that the stages of `group` hand on.

#include <maya/MFn.h>
#include <maya/MObject.h>

#include <cstdint>
#include <vector>

namespace vesk::nodes {

/// An id; of a surface's CV its u above 32 bits and its v below, so that ids ascend as pairs do.
using ElementId = std::int64_t;
inline ElementId pairElement(std::int64_t u, std::int64_t v) { return u << 32 | v; }
inline int uOf(ElementId element) { return static_cast<int>(element >> 32); }
inline int vOf(ElementId element) { return static_cast<int>(element & 0xffffffff); }

/// Elements of one kind of component, ascending, each once.
struct ElementSet {
    MFn::Type type = MFn::kInvalid;
    std::vector<ElementId> elements;

    /// Of elements in any order, with repetitions.
    static ElementSet of(MFn::Type type, std::vector<ElementId> elements);
    /// All of 0 up to `count` - 1.
    static ElementSet complete(MFn::Type type, ElementId count);
    /// All CVs of a surface.
    static ElementSet completePairs(MFn::Type type, int countU, int countV);

    bool holds(ElementId element) const;
    /// What both hold; of different kinds nothing.
    ElementSet common(const ElementSet& other) const;
};

/// A list of components as the host keeps them: an entry a kind, in the order of arrival. Adding joins with
/// the entry of the same kind, removing takes from it, and an entry left without elements goes.
class RunningList {
  public:
    bool isEmpty() const { return entries_.empty(); }
    const std::vector<ElementSet>& entries() const { return entries_; }
    /// Null when the list is empty: of a list only the first entry counts.
    const ElementSet* first() const { return entries_.empty() ? nullptr : entries_.data(); }
    bool holds(MFn::Type type, ElementId element) const;

    /// An empty set makes an entry without elements if there is none of its kind.
    void add(const ElementSet& set);
    void remove(const ElementSet& set);
    void clear() { entries_.clear(); }

  private:
    std::vector<ElementSet> entries_;
};

/// How many elements of a component's kind there are, where the component stands for all without saying how
/// many.
struct ElementCounts {
    int single = 0;
    int u = 0, v = 0;
};

/// An empty set of kind `kInvalid` for what is no component with one or two indices.
ElementSet readComponent(const MObject& component, const ElementCounts& whole);
/// A component of the set's kind; null for a set without a kind.
MObject makeComponent(const ElementSet& set);

} // namespace vesk::nodes
