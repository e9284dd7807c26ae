#include <maya/MSelectionList.h>

#include "host/api/impl/access.h"
#include "host/api/impl/session_hooks.h"
#include "host/graph/selection.h"

#include <algorithm>

using vesk::api::answer;
using vesk::api::handleOn;
using vesk::graph::Selection;
using vesk::graph::SelectionItem;

MSelectionList::MSelectionList() : selection_(std::make_unique<Selection>()) {}
MSelectionList::MSelectionList(const Selection& selection)
    : selection_(std::make_unique<Selection>(selection)) {}
MSelectionList::MSelectionList(const MSelectionList& other) : MSelectionList(*other.selection_) {}
// NOLINTNEXTLINE(performance-noexcept-move-constructor): what was moved from stays usable, which takes memory
MSelectionList::MSelectionList(MSelectionList&& other) noexcept : MSelectionList() {
    selection_.swap(other.selection_);
}
MSelectionList& MSelectionList::operator=(const MSelectionList& other) {
    return *this = MSelectionList(other);
}
MSelectionList& MSelectionList::operator=(MSelectionList&& other) noexcept {
    selection_.swap(other.selection_);
    return *this;
}
MSelectionList::~MSelectionList() = default;

namespace {

SelectionItem itemOf(vesk::graph::Node& node) {
    SelectionItem item;
    item.node = &node;
    if (node.type().isDag) item.path = vesk::graph::firstPath(static_cast<vesk::graph::DagNode&>(node));
    return item;
}

/// Empty (no node) when the path is broken or the component is none.
SelectionItem itemOf(const MDagPath& path, const MObject& component) {
    SelectionItem item;
    const auto* host = path.hostPath();
    if (!host || (!component.isNull() && !component.hasFn(MFn::kComponent))) return item;
    item.node = host->node();
    item.path = *host;
    item.component = component.hostObject();
    return item;
}

SelectionItem itemOf(const MPlug& plug) {
    SelectionItem item;
    item.plug = plug.hostPlug();
    if (item.plug.isNull()) return item;
    item = itemOf(*item.plug.node);
    item.plug = plug.hostPlug();
    return item;
}

bool has(const Selection& selection, const SelectionItem& item) {
    const auto& items = selection.items();
    return std::any_of(items.begin(), items.end(),
                       [&](const SelectionItem& one) { return one.sameThing(item); });
}

} // namespace

unsigned int MSelectionList::length(MStatus* status) const {
    return answer(status, static_cast<unsigned int>(selection_->items().size()));
}

MStatus MSelectionList::clear() {
    selection_->clear();
    return {};
}

MStatus MSelectionList::add(const MString& matching, bool) {
    auto* session = vesk::api::session();
    if (!session) return MStatus::kFailure;
    auto found = vesk::graph::resolve(session->scene(), vesk::api::view(matching));
    if (found.empty()) return MStatus::kInvalidParameter;
    for (auto& item : found)
        selection_->add(std::move(item), true);
    return {};
}

MStatus MSelectionList::add(const MObject& node, bool mergeWithExisting) {
    auto* host = vesk::api::nodeOf(node);
    if (!host) return MStatus::kInvalidParameter;
    selection_->add(itemOf(*host), mergeWithExisting);
    return {};
}

MStatus MSelectionList::add(const MDagPath& path, const MObject& component, bool mergeWithExisting) {
    SelectionItem item = itemOf(path, component);
    if (!item.node) return MStatus::kInvalidParameter;
    selection_->add(std::move(item), mergeWithExisting);
    return {};
}

MStatus MSelectionList::add(const MPlug& plug, bool mergeWithExisting) {
    SelectionItem item = itemOf(plug);
    if (!item.node) return MStatus::kInvalidParameter;
    selection_->add(std::move(item), mergeWithExisting);
    return {};
}

MStatus MSelectionList::remove(unsigned int position) {
    const auto items = selection_->items();
    if (position >= items.size()) return MStatus::kInvalidParameter;
    selection_->clear();
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i != position) selection_->add(items[i], false);
    }
    return {};
}

MStatus MSelectionList::merge(const MSelectionList& other, MergeStrategy strategy) {
    const auto theirs = other.selection_->items();
    for (const auto& item : theirs) {
        const bool out = strategy == kRemoveFromList || (strategy == kXORWithList && has(*selection_, item));
        if (out) {
            selection_->remove(item);
        } else {
            selection_->add(item, true);
        }
    }
    return {};
}

const SelectionItem* MSelectionList::at(unsigned int position) const {
    const auto& items = selection_->items();
    return position < items.size() ? &items[position] : nullptr;
}

MStatus MSelectionList::getDependNode(unsigned int position, MObject& node) const {
    node = MObject();
    const SelectionItem* item = at(position);
    if (!item) return MStatus::kInvalidParameter;
    node = handleOn(item->node.get());
    return {};
}

MStatus MSelectionList::getDagPath(unsigned int position, MDagPath& path) const {
    MObject component;
    return getDagPath(position, path, component);
}

MStatus MSelectionList::getDagPath(unsigned int position, MDagPath& path, MObject& component) const {
    path = MDagPath();
    component = MObject();
    const SelectionItem* item = at(position);
    if (!item) return MStatus::kInvalidParameter;
    if (item->path.isEmpty()) return MStatus::kFailure;
    path = MDagPath(item->path);
    component = handleOn(item->component.get());
    return {};
}

MStatus MSelectionList::getPlug(unsigned int position, MPlug& plug) const {
    plug = MPlug();
    const SelectionItem* item = at(position);
    if (!item) return MStatus::kInvalidParameter;
    if (item->plug.isNull()) return MStatus::kFailure;
    plug = MPlug(item->plug);
    return {};
}

namespace {

void appendTexts(const SelectionItem& item, MStringArray& names) {
    for (auto& text : item.texts())
        names.append(vesk::toMString(std::move(text)));
}

} // namespace

MStatus MSelectionList::getSelectionStrings(MStringArray& names) const {
    names.clear();
    for (const auto& item : selection_->items())
        appendTexts(item, names);
    return {};
}

MStatus MSelectionList::getSelectionStrings(unsigned int position, MStringArray& names) const {
    names.clear();
    const SelectionItem* item = at(position);
    if (!item) return MStatus::kInvalidParameter;
    appendTexts(*item, names);
    return {};
}

bool MSelectionList::hasItem(const MObject& node, MStatus* status) const {
    auto* host = vesk::api::nodeOf(node);
    if (!host) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, has(*selection_, itemOf(*host)));
}

bool MSelectionList::hasItem(const MPlug& plug, MStatus* status) const {
    const SelectionItem item = itemOf(plug);
    if (!item.node) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, has(*selection_, item));
}

bool MSelectionList::hasItem(const MDagPath& path, const MObject& component, MStatus* status) const {
    const SelectionItem item = itemOf(path, component);
    if (!item.node) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, has(*selection_, item));
}
