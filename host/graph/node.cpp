#include "host/graph/node.h"

#include "host/graph/evaluate.h"
#include "host/graph/scene.h"

#include <algorithm>

namespace vesk::graph {

Node::Node(const NodeType& type) : type_(&type) {}

Node::~Node() {
    // Children first, so that no cell outlives what it points up to.
    static_.clear();
    tops_.clear();
}

int Node::attributeCount() const { return static_cast<int>(type_->attributes().size() + dynamic_.size()); }

Attribute* Node::attributeAt(int index) const {
    const auto at = static_cast<std::size_t>(index);
    const auto& fixed = type_->attributes();
    if (at < fixed.size()) return fixed[at].get();
    for (const auto& attribute : dynamic_) {
        if (attribute->index == index) return attribute.get();
    }
    return nullptr;
}

Attribute* Node::findAttribute(std::string_view name) const {
    if (Attribute* found = type_->find(name)) return found;
    for (const auto& attribute : dynamic_) {
        if (attribute->longName == name) return attribute.get();
    }
    for (const auto& attribute : dynamic_) {
        if (attribute->shortName == name) return attribute.get();
    }
    return nullptr;
}

Outcome Node::addDynamicAttribute(const AttrRef& attribute) {
    std::string clash;
    const auto check = [&](const auto& self, const Attribute& one) -> void {
        if (findAttribute(one.longName)) clash = one.longName;
        for (const auto& child : one.children)
            self(self, *child);
    };
    check(check, *attribute);
    if (!clash.empty()) {
        return Outcome::fail("Found an existing attribute '" + clash + "' on node '" + uniqueName() + "'.");
    }
    int next = static_cast<int>(type_->attributes().size());
    for (const auto& present : dynamic_)
        next = std::max(next, present->index + 1);
    const auto adopt = [&](const auto& self, const AttrRef& one) -> void {
        one->index = next++;
        one->dynamic = true;
        dynamic_.push_back(one);
        for (const auto& child : one->children)
            self(self, child);
    };
    adopt(adopt, attribute);
    return {};
}

Outcome Node::addDynamicChild(Attribute& parent, const AttrRef& child) {
    if (!parent.dynamic || parent.kind != AttrKind::Compound) {
        return Outcome::fail("Attribute '" + parent.longName + "' of node '" + uniqueName() +
                             "' does not take further children.");
    }
    if (auto outcome = addDynamicAttribute(child); !outcome) return outcome;
    child->parent = &parent;
    parent.children.push_back(child);
    return {};
}

Outcome Node::removeDynamicAttribute(Attribute& attribute) {
    if (!attribute.dynamic || attribute.parent) {
        return Outcome::fail("Attribute '" + attribute.longName + "' of node '" + uniqueName() +
                             "' is not one that can be deleted.");
    }
    if (Cell* top = cellIfThere(attribute)) disconnectAll(*top);
    const AttrRef keep(&attribute);
    std::erase_if(aliases, [&](const Alias& one) {
        return one.attribute == keep || one.attribute->isBelow(attribute);
    });
    std::erase_if(dynamic_, [&](const AttrRef& one) {
        if (one != keep && !one->isBelow(attribute)) return false;
        const auto at = static_cast<std::size_t>(one->index);
        if (at < static_.size()) static_[at] = nullptr;
        return true;
    });
    const auto at = static_cast<std::size_t>(attribute.index);
    if (at < tops_.size()) tops_[at].reset();
    return {};
}

std::string Node::alias(const Attribute& attribute, int logicalIndex) const {
    for (const auto& one : aliases) {
        if (one.attribute.get() == &attribute && one.logicalIndex == logicalIndex) return one.name;
    }
    return {};
}

Cell* Node::cellIfThere(const Attribute& attribute) const {
    const auto at = static_cast<std::size_t>(attribute.index);
    return at < static_.size() ? static_[at] : nullptr;
}

Cell& Node::cell(const Attribute& attribute) {
    if (Cell* there = cellIfThere(attribute)) return *there;
    if (attribute.parent) return cell(*attribute.parent).child(attribute);
    const auto at = static_cast<std::size_t>(attribute.index);
    if (tops_.size() <= at) tops_.resize(at + 1);
    tops_[at] = std::make_unique<Cell>(*this, attribute, nullptr, -1);
    if (static_.size() <= at) static_.resize(at + 1);
    static_[at] = tops_[at].get();
    return *tops_[at];
}

const std::vector<Attribute*>& Node::affectedBy(const Attribute& attribute) const {
    static const std::vector<Attribute*> none;
    return attribute.dynamic ? none : type_->affectedBy(attribute);
}

bool Node::isComputed(const Attribute& attribute) const {
    return !attribute.dynamic && attribute.index >= 0 && type_->isComputed(attribute);
}

short Node::nodeState() const {
    static constexpr std::string_view kName = "nodeState";
    // Declared by the base type of all nodes, so its place is the same everywhere.
    static const int index = type_->find(kName) ? type_->find(kName)->index : -1;
    if (index < 0) return 0;
    const auto at = static_cast<std::size_t>(index);
    return at < static_.size() && static_[at] ? static_cast<short>(static_[at]->number) : short{0};
}

} // namespace vesk::graph
