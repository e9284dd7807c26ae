#include "host/graph/node_type.h"

#include "host/core/log.h"
#include "host/graph/node.h"

#include <algorithm>

namespace vesk::graph {

NodeType::NodeType(std::string name, MFn::Type apiType, const NodeType* base, Creator create)
    : name_(std::move(name)), apiType_(apiType), base_(base), create_(std::move(create)) {
    if (!base_) return;
    isDag = base_->isDag;
    isShape = base_->isShape;
    attributes_ = base_->attributes_;
    longNames_ = base_->longNames_;
    shortNames_ = base_->shortNames_;
    influences_ = base_->influences_;
    uninfluenced_ = base_->uninfluenced_;
}

bool NodeType::isA(std::string_view typeName) const {
    for (const NodeType* type = this; type; type = type->base_) {
        if (type->name_ == typeName) return true;
    }
    return false;
}

bool NodeType::hasFn(MFn::Type type) const {
    if (isKindOf(apiType_, type)) return true;
    for (auto also : alsoKinds_) {
        if (isKindOf(also, type)) return true;
    }
    return base_ && base_->hasFn(type);
}

Attribute* NodeType::find(std::string_view name) const {
    const std::string key(name);
    if (auto at = longNames_.find(key); at != longNames_.end()) return at->second;
    if (auto at = shortNames_.find(key); at != shortNames_.end()) return at->second;
    return nullptr;
}

Outcome NodeType::add(const AttrRef& attribute) {
    // A child that is also added by itself came in with its parent.
    if (attribute->index >= 0 && static_cast<std::size_t>(attribute->index) < attributes_.size() &&
        attributes_[static_cast<std::size_t>(attribute->index)] == attribute) {
        return {};
    }
    // Shared base attributes come again in every registry, each time at the same place.
    if (attribute->index >= 0 && static_cast<std::size_t>(attribute->index) != attributes_.size()) {
        return Outcome::fail("Attribute '" + attribute->longName + "' belongs elsewhere.");
    }
    if (attribute->parent) return {}; // comes in when its parent is added
    std::string clash;
    const auto check = [&](const auto& self, const Attribute& one) -> void {
        if (longNames_.contains(one.longName)) clash = one.longName;
        for (const auto& child : one.children)
            self(self, *child);
    };
    check(check, *attribute);
    if (!clash.empty()) {
        return Outcome::fail("Attribute name '" + clash + "' is taken in node type '" + name_ + "'.");
    }
    adopt(attribute);
    return {};
}

AttrRef NodeType::operator()(const AttrRef& attribute) {
    // A table of the host's own is wrong then.
    if (auto outcome = add(attribute); !outcome) log().error(outcome.error);
    return attribute;
}

void NodeType::adopt(const AttrRef& attribute) {
    attribute->index = static_cast<int>(attributes_.size());
    attributes_.push_back(attribute);
    influences_.emplace_back();
    longNames_.emplace(attribute->longName, attribute.get());
    // Two attributes of one node may share a short name: the first keeps it, the other is found by its long
    // one.
    if (!attribute->shortName.empty()) shortNames_.emplace(attribute->shortName, attribute.get());
    for (const auto& child : attribute->children)
        adopt(child);
    closed_ = false;
}

Outcome NodeType::affects(Attribute* in, Attribute* out) {
    const auto isMine = [this](const Attribute* attribute) {
        return attribute && attribute->index >= 0 &&
               static_cast<std::size_t>(attribute->index) < attributes_.size() &&
               attributes_[static_cast<std::size_t>(attribute->index)].get() == attribute;
    };
    if (!isMine(in) || !isMine(out)) {
        return Outcome::fail("An influence in node type '" + name_ +
                             "' names an attribute that was not added.");
    }
    if (out->keyable)
        return Outcome::fail("Attribute '" + out->longName + "' is keyable and so cannot be affected.");
    auto& list = influences_[static_cast<std::size_t>(in->index)];
    if (std::find(list.begin(), list.end(), out) == list.end()) list.push_back(out);
    closed_ = false;
    return {};
}

void NodeType::affectsAll(const std::vector<AttrRef>& ins, const std::vector<AttrRef>& outs) {
    for (const auto& in : ins) {
        for (const auto& out : outs)
            (void)affects(in.get(), out.get());
    }
}

void NodeType::computes(const AttrRef& output) {
    uninfluenced_.push_back(output.get());
    closed_ = false;
}

void NodeType::closeInfluences() const {
    closure_.assign(attributes_.size(), {});
    computed_.assign(attributes_.size(), false);
    const auto include = [this](std::size_t at, const Attribute& from) {
        for (Attribute* out : influences_[static_cast<std::size_t>(from.index)]) {
            auto& list = closure_[at];
            if (std::find(list.begin(), list.end(), out) == list.end()) list.push_back(out);
        }
    };
    const auto below = [&](const auto& self, std::size_t at, const Attribute& one) -> void {
        include(at, one);
        for (const auto& child : one.children)
            self(self, at, *child);
    };
    for (std::size_t i = 0; i < attributes_.size(); ++i) {
        for (const Attribute* up = attributes_[i]->parent; up; up = up->parent)
            include(i, *up);
        below(below, i, *attributes_[i]);
    }
    const auto markBelow = [&](const auto& self, const Attribute& one) -> void {
        computed_[static_cast<std::size_t>(one.index)] = true;
        for (const auto& child : one.children)
            self(self, *child);
    };
    const auto markComputed = [&](const Attribute& out) {
        markBelow(markBelow, out);
        for (const Attribute* up = out.parent; up; up = up->parent)
            computed_[static_cast<std::size_t>(up->index)] = true;
    };
    for (const auto& outs : influences_) {
        for (const Attribute* out : outs)
            markComputed(*out);
    }
    for (const Attribute* out : uninfluenced_)
        markComputed(*out);
    // In another state a node answers otherwise, whatever its inputs: what it refused while blocked is asked
    // for anew.
    if (const Attribute* state = find("nodeState")) {
        auto& all = closure_[static_cast<std::size_t>(state->index)];
        const auto take = [&](const std::vector<Attribute*>& outs) {
            for (Attribute* out : outs) {
                if (std::find(all.begin(), all.end(), out) == all.end()) all.push_back(out);
            }
        };
        for (const auto& outs : influences_)
            take(outs);
        take(uninfluenced_);
    }
    closed_ = true;
}

const std::vector<Attribute*>& NodeType::affectedBy(const Attribute& attribute) const {
    if (!closed_) closeInfluences();
    return closure_[static_cast<std::size_t>(attribute.index)];
}

bool NodeType::isComputed(const Attribute& attribute) const {
    if (!closed_) closeInfluences();
    return computed_[static_cast<std::size_t>(attribute.index)];
}

Outcome TypeRegistry::add(std::unique_ptr<NodeType> type) {
    if (byName_.contains(type->name())) {
        return Outcome::fail("Node type name '" + type->name() + "' is taken.");
    }
    if (type->typeId != 0) {
        if (const NodeType* other = findId(type->typeId)) {
            return Outcome::fail("Node type id of '" + type->name() + "' is taken by '" + other->name() +
                                 "'.");
        }
    }
    byName_.emplace(type->name(), type.get());
    types_.push_back(std::move(type));
    return {};
}

std::unique_ptr<NodeType> TypeRegistry::remove(std::string_view name) {
    for (auto at = types_.begin(); at != types_.end(); ++at) {
        if ((*at)->name() != name) continue;
        auto type = std::move(*at);
        types_.erase(at);
        byName_.erase(type->name());
        return type;
    }
    return nullptr;
}

NodeType* TypeRegistry::find(std::string_view name) const {
    const auto at = byName_.find(std::string(name));
    return at == byName_.end() ? nullptr : at->second;
}

NodeType* TypeRegistry::findId(unsigned typeId) const {
    for (const auto& type : types_) {
        if (type->typeId == typeId) return type.get();
    }
    return nullptr;
}

std::vector<const NodeType*> TypeRegistry::all() const {
    std::vector<const NodeType*> list;
    list.reserve(types_.size());
    for (const auto& type : types_)
        list.push_back(type.get());
    return list;
}

void TypeRegistry::clear() {
    byName_.clear();
    while (!types_.empty())
        types_.pop_back(); // derived types stand behind their bases
}

} // namespace vesk::graph
