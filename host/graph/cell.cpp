#include "host/graph/cell.h"

#include "host/graph/node.h"

#include <algorithm>

namespace vesk::graph {

Cell::Cell(Node& owner, const Attribute& attribute, Cell* parentCell, int index)
    : Cell(owner, attribute, parentCell, index, parentCell && parentCell->detached_) {}

Cell::Cell(Node& owner, const Attribute& attribute, Cell* parentCell, int index, bool detached)
    : node(owner), attr(attribute), parent(parentCell), logicalIndex(index), number(attribute.defaultNumber),
      detached_(detached) {
    resetToDefault();
    // What a wire into an ancestor brings was not pulled yet.
    dirty = !detached_ && (node.isComputed(attr) || feedingAncestor());
}

std::unique_ptr<Cell> Cell::detached(Node& owner, const Attribute& attribute, int logicalIndex) {
    return std::unique_ptr<Cell>(new Cell(owner, attribute, nullptr, logicalIndex, true));
}

Cell::~Cell() = default;

void Cell::resetToDefault() {
    number = attr.defaultNumber;
    data = isLeaf() ? attr.defaultData : nullptr;
    isSet = false;
    if (parent) parent->settled = false;
}

Cell* Cell::childIfThere(int position) const {
    const auto at = static_cast<std::size_t>(position);
    return at < children.size() ? children[at].get() : nullptr;
}

Cell& Cell::child(int position) {
    const auto at = static_cast<std::size_t>(position);
    if (children.size() <= at) children.resize(attr.children.size());
    auto& slot = children[at];
    if (!slot) {
        slot = std::make_unique<Cell>(node, *attr.children[at], this, -1);
        const auto index = static_cast<std::size_t>(slot->attr.index);
        if (!detached_ && slot->attr.multiDepth() == (slot->attr.array ? 1 : 0)) {
            if (node.static_.size() <= index) node.static_.resize(index + 1);
            node.static_[index] = slot.get();
        }
    }
    return *slot;
}

Cell& Cell::child(const Attribute& attribute) { return child(attribute.positionInParent()); }

namespace {

auto elementPlace(const std::vector<std::unique_ptr<Cell>>& elements, int index) {
    // Elements mostly arrive in ascending order.
    if (elements.empty() || elements.back()->logicalIndex < index) return elements.end();
    return std::lower_bound(
        elements.begin(), elements.end(), index,
        [](const std::unique_ptr<Cell>& one, int wanted) { return one->logicalIndex < wanted; });
}

} // namespace

Cell* Cell::elementIfThere(int index) const {
    const auto at = elementPlace(children, index);
    return at != children.end() && (*at)->logicalIndex == index ? at->get() : nullptr;
}

Cell& Cell::element(int index) {
    const auto at = elementPlace(children, index);
    if (at != children.end() && (*at)->logicalIndex == index) return **at;
    auto made = std::make_unique<Cell>(node, attr, this, index);
    Cell& cell = *made;
    children.insert(at, std::move(made));
    return cell;
}

void Cell::removeElement(int index) {
    const auto at = elementPlace(children, index);
    if (at != children.end() && (*at)->logicalIndex == index) children.erase(at);
}

bool Cell::isInUse() const {
    if (isSet || source || !destinations.empty()) return true;
    for (const auto& below : children) {
        if (below && below->isInUse()) return true;
    }
    return false;
}

std::vector<int> Cell::existingIndices() const {
    std::vector<int> indices;
    for (const auto& element : children) {
        if (element->isInUse()) indices.push_back(element->logicalIndex);
    }
    return indices;
}

bool Cell::hasWiresBelow(bool asDestination) const {
    if (asDestination ? source != nullptr : !destinations.empty()) return true;
    for (const auto& below : children) {
        if (below && below->hasWiresBelow(asDestination)) return true;
    }
    return false;
}

const Cell* Cell::feedingAncestor() const {
    for (const Cell* at = this; at; at = at->parent) {
        if (at->source) return at;
    }
    return nullptr;
}

} // namespace vesk::graph
