#include "host/data/component_list_data.h"

#include "host/data/component_text.h"

#include <algorithm>

namespace vesk {

std::vector<Ref<Component>>::iterator ComponentListData::place(MFn::Type kind) {
    return std::find_if(entries_.begin(), entries_.end(),
                        [kind](const Ref<Component>& entry) { return entry->apiType() == kind; });
}

const Component* ComponentListData::find(MFn::Type kind) const {
    for (const Ref<Component>& entry : entries_) {
        if (entry->apiType() == kind) return entry.get();
    }
    return nullptr;
}

bool ComponentListData::add(const Component& component) {
    const auto entry = place(component.apiType());
    if (entry != entries_.end()) return (*entry)->unite(component);
    entries_.push_back(component.copy());
    return true;
}

bool ComponentListData::remove(const Component& component) {
    const auto entry = place(component.apiType());
    if (entry == entries_.end() || !(*entry)->subtract(component)) return false;
    if ((*entry)->isEmpty()) entries_.erase(entry);
    return true;
}

bool ComponentListData::removeEntry(int index) {
    if (index < 0 || index >= length()) return false;
    entries_.erase(entries_.begin() + index);
    return true;
}

bool ComponentListData::has(const Component& component) const {
    const Component* entry = find(component.apiType());
    return entry && entry->contains(component);
}

Ref<ComponentListData> ComponentListData::fromTexts(std::span<const std::string> texts, std::string& error) {
    auto list = makeRef<ComponentListData>();
    for (const std::string& written : texts) {
        const ComponentText text = parseComponentText(written);
        error = text.error;
        if (!error.empty()) return nullptr;
        auto entry = list->place(text.kind);
        if (entry == list->entries_.end()) {
            entry = list->entries_.insert(entry, Component::create(text.kind));
        }
        error = addTo(**entry, text).error;
        if (!error.empty()) return nullptr;
    }
    return list;
}

std::vector<std::string> ComponentListData::texts() const {
    std::vector<std::string> texts;
    for (const Ref<Component>& entry : entries_) {
        for (std::string& text : entry->texts())
            texts.push_back(std::move(text));
    }
    return texts;
}

Ref<Data> ComponentListData::clone() const {
    auto list = makeRef<ComponentListData>();
    for (const Ref<Component>& entry : entries_)
        list->entries_.push_back(entry->copy());
    return list;
}

std::size_t ComponentListData::byteSize() const {
    std::size_t size = 0;
    for (const Ref<Component>& entry : entries_)
        size += entry->byteSize();
    return size;
}

} // namespace vesk
