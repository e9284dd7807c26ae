#include "host/graph/selection.h"

#include "host/data/component.h"
#include "host/data/component_text.h"
#include "host/graph/scene.h"

#include <algorithm>

namespace vesk::graph {

bool SelectionItem::sameThing(const SelectionItem& other) const {
    if (node != other.node || !(path == other.path)) return false;
    if (plug.isNull() != other.plug.isNull()) return false;
    if (!plug.isNull()) return plug == other.plug;
    if (!component || !other.component) return !component && !other.component;
    const auto* mine = dynamic_cast<const Component*>(component.get());
    const auto* theirs = dynamic_cast<const Component*>(other.component.get());
    return mine && theirs && mine->apiType() == theirs->apiType() && mine->isEqual(*theirs);
}

std::vector<std::string> SelectionItem::texts() const {
    if (!plug.isNull()) return {plug.name()};
    const std::string name = path.isEmpty() ? node->uniqueName() : path.partialName();
    const auto* elements = dynamic_cast<const Component*>(component.get());
    if (!elements) return {name};
    std::vector<std::string> list;
    for (const auto& text : elements->texts())
        list.push_back(name + '.' + text);
    return list;
}

const std::vector<SelectionItem>& Selection::items() const {
    std::erase_if(items_, [](const SelectionItem& item) { return !item.node->isAlive(); });
    return items_;
}

void Selection::add(SelectionItem item, bool mergeWithExisting) {
    (void)items();
    if (mergeWithExisting) {
        for (auto& present : items_) {
            if (present.sameThing(item)) return;
            auto* into = dynamic_cast<Component*>(present.component.get());
            const auto* more = dynamic_cast<const Component*>(item.component.get());
            if (present.node != item.node || !(present.path == item.path) || !into || !more ||
                into->apiType() != more->apiType()) {
                continue;
            }
            const Ref<Component> joined = into->copy();
            if (!joined->unite(*more)) continue;
            present.component = joined;
            return;
        }
    }
    items_.push_back(std::move(item));
}

void Selection::remove(const SelectionItem& item) {
    std::erase_if(items_, [&](SelectionItem& present) {
        if (present.sameThing(item)) return true;
        const auto* from = dynamic_cast<const Component*>(present.component.get());
        const auto* less = dynamic_cast<const Component*>(item.component.get());
        if (present.node != item.node || !from || !less || from->apiType() != less->apiType()) return false;
        const Ref<Component> rest = from->copy();
        (void)rest->subtract(*less);
        present.component = rest;
        return rest->isEmpty();
    });
}

namespace {

SelectionItem itemOf(Node& node) {
    SelectionItem item;
    item.node = &node;
    if (node.type().isDag) item.path = firstPath(static_cast<DagNode&>(node));
    return item;
}

/// The shape whose components a transform's name stands for.
DagNode* shapeBelow(DagNode& node) {
    if (node.type().isShape) return &node;
    for (DagNode* child : node.children()) {
        if (child->type().isShape && !child->isIntermediate()) return child;
    }
    return nullptr;
}

} // namespace

std::vector<SelectionItem> resolve(Scene& scene, std::string_view text) {
    std::vector<SelectionItem> found;
    const auto dot = text.find('.');
    if (dot == std::string_view::npos) {
        const bool hasPath = text.find('|') != std::string_view::npos;
        for (Node* node : scene.match(text)) {
            SelectionItem item = itemOf(*node);
            if (hasPath && node->type().isDag) {
                // An instance is meant by the path that was named.
                for (auto& path : allPaths(static_cast<DagNode&>(*node))) {
                    const std::string full = path.fullName();
                    if (full == text || full.ends_with('|' + std::string(text))) item.path = std::move(path);
                }
            }
            found.push_back(std::move(item));
        }
        return found;
    }
    const std::string_view rest = text.substr(dot + 1);
    for (Node* node : scene.match(text.substr(0, dot))) {
        SelectionItem item = itemOf(*node);
        const auto components = parseComponentText(rest);
        if (components.error.empty() && node->type().isDag) {
            if (DagNode* shape = shapeBelow(static_cast<DagNode&>(*node))) {
                const Ref<Component> elements = Component::create(components.kind);
                if (elements && addTo(*elements, components)) {
                    item = itemOf(*shape);
                    item.component = elements;
                    found.push_back(std::move(item));
                    continue;
                }
            }
        }
        auto range = findPlug(*node, rest);
        if (!range.error.empty() && node->type().isDag && !node->type().isShape) {
            // A transform answers for the attributes of its shape.
            if (DagNode* shape = shapeBelow(static_cast<DagNode&>(*node))) {
                range = findPlug(*shape, rest);
                if (range.error.empty()) item = itemOf(*shape);
            }
        }
        if (!range.error.empty()) continue;
        item.plug = range.plug;
        found.push_back(std::move(item));
    }
    return found;
}

} // namespace vesk::graph
