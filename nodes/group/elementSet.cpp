#include "nodes/group/elementSet.h"

#include <maya/MFnDoubleIndexedComponent.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MIntArray.h>

#include <algorithm>
#include <iterator>

namespace vesk::nodes {

ElementSet ElementSet::of(MFn::Type type, std::vector<ElementId> elements) {
    if (!std::is_sorted(elements.begin(), elements.end())) std::sort(elements.begin(), elements.end());
    elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
    return {type, std::move(elements)};
}

ElementSet ElementSet::complete(MFn::Type type, ElementId count) {
    ElementSet set{type, {}};
    set.elements.reserve(static_cast<std::size_t>(std::max<ElementId>(count, 0)));
    for (ElementId i = 0; i < count; ++i)
        set.elements.push_back(i);
    return set;
}

ElementSet ElementSet::completePairs(MFn::Type type, int countU, int countV) {
    ElementSet set{type, {}};
    for (int u = 0; u < countU; ++u) {
        for (int v = 0; v < countV; ++v)
            set.elements.push_back(pairElement(u, v));
    }
    return set;
}

bool ElementSet::holds(ElementId element) const {
    return std::binary_search(elements.begin(), elements.end(), element);
}

ElementSet ElementSet::common(const ElementSet& other) const {
    ElementSet both{type, {}};
    if (type == other.type) {
        std::set_intersection(elements.begin(), elements.end(), other.elements.begin(), other.elements.end(),
                              std::back_inserter(both.elements));
    }
    return both;
}

bool RunningList::holds(MFn::Type type, ElementId element) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const ElementSet& entry) { return entry.type == type && entry.holds(element); });
}

void RunningList::add(const ElementSet& set) {
    for (ElementSet& entry : entries_) {
        if (entry.type != set.type) continue;
        std::vector<ElementId> joined;
        joined.reserve(entry.elements.size() + set.elements.size());
        std::set_union(entry.elements.begin(), entry.elements.end(), set.elements.begin(), set.elements.end(),
                       std::back_inserter(joined));
        entry.elements = std::move(joined);
        return;
    }
    entries_.push_back(set);
}

void RunningList::remove(const ElementSet& set) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (entries_[i].type != set.type) continue;
        std::vector<ElementId> left;
        std::set_difference(entries_[i].elements.begin(), entries_[i].elements.end(), set.elements.begin(),
                            set.elements.end(), std::back_inserter(left));
        entries_[i].elements = std::move(left);
        if (entries_[i].elements.empty()) entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(i));
        return;
    }
}

ElementSet readComponent(const MObject& component, const ElementCounts& whole) {
    MStatus status;
    ElementSet set;
    if (const MFnSingleIndexedComponent single(component, &status); status) {
        set.type = component.apiType();
        MIntArray ids;
        single.getElements(ids);
        if (single.isComplete() && ids.length() == 0) return ElementSet::complete(set.type, whole.single);
        for (unsigned i = 0; i < ids.length(); ++i)
            set.elements.push_back(ids[i]);
    } else if (const MFnDoubleIndexedComponent pairs(component, &status); status) {
        set.type = component.apiType();
        MIntArray us, vs;
        pairs.getElements(us, vs);
        if (pairs.isComplete() && us.length() == 0)
            return ElementSet::completePairs(set.type, whole.u, whole.v);
        for (unsigned i = 0; i < us.length(); ++i)
            set.elements.push_back(pairElement(us[i], vs[i]));
    }
    return set;
}

MObject makeComponent(const ElementSet& set) {
    if (set.type == MFn::kInvalid) return MObject::kNullObj;
    const auto count = static_cast<unsigned>(set.elements.size());
    MStatus status;
    MFnSingleIndexedComponent single;
    if (const MObject component = single.create(set.type, &status); status) {
        MIntArray ids(count);
        for (unsigned i = 0; i < count; ++i)
            ids[i] = static_cast<int>(set.elements[i]);
        single.addElements(ids);
        return component;
    }
    MFnDoubleIndexedComponent pairs;
    const MObject component = pairs.create(set.type);
    MIntArray us(count), vs(count);
    for (unsigned i = 0; i < count; ++i) {
        us[i] = uOf(set.elements[i]);
        vs[i] = vOf(set.elements[i]);
    }
    pairs.addElements(us, vs);
    return component;
}

} // namespace vesk::nodes
