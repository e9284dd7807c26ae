#include <maya/MPlug.h>

#include "host/api/impl/access.h"
#include "host/api/impl/cell_values.h"
#include "host/graph/evaluate.h"

#include <maya/MPlugArray.h>

#include <algorithm>

using vesk::api::answer;
using vesk::api::attributeOf;
using vesk::api::handleOn;
using vesk::api::nodeOf;
using vesk::api::report;
using vesk::graph::Attribute;
using vesk::graph::Cell;
using vesk::graph::Plug;

MDGContext MDGContext::fsNormal;

MPlug::MPlug(const MObject& node, const MObject& attribute) {
    const Attribute* attr = attributeOf(attribute);
    const auto* owner = nodeOf(node);
    if (!attr || !owner || attr->index < 0 || owner->attributeAt(attr->index) != attr) return;
    node_ = node;
    attribute_ = attribute;
    depth_ = attr->multiDepth() - (attr->array ? 1 : 0);
}

MPlug::MPlug(const Plug& plug) : node_(handleOn(plug.node.get())), attribute_(handleOn(plug.attr.get())) {
    static_assert(kMaxDepth == vesk::graph::kMaxMultiDepth);
    std::copy(plug.indices.begin(), plug.indices.end(), indices_);
    depth_ = plug.depth;
}

MPlug::MPlug(const Cell& cell) : MPlug(Plug(cell)) {}

Plug MPlug::hostPlug() const {
    Plug plug;
    plug.node = nodeOf(node_);
    plug.attr = attributeOf(attribute_);
    if (plug.isNull()) return {};
    std::copy(std::begin(indices_), std::end(indices_), plug.indices.begin());
    plug.depth = depth_;
    return plug;
}

bool MPlug::operator==(const MPlug& other) const {
    return node_ == other.node_ && attribute_ == other.attribute_ && depth_ == other.depth_ &&
           std::equal(std::begin(indices_), std::end(indices_), other.indices_);
}

MStatus MPlug::setAttribute(const MObject& attribute) {
    const MPlug whole(node_, attribute);
    if (whole.attribute_.isNull()) return MStatus::kInvalidParameter;
    return *this = whole, MStatus();
}

MObject MPlug::attribute(MStatus* status) const {
    return answer(status, attribute_, attribute_.isNull() ? MStatus::kInvalidParameter : MStatus::kSuccess);
}

MObject MPlug::node(MStatus* status) const {
    if (!nodeOf(node_)) return answer(status, MObject(), MStatus::kInvalidParameter);
    return answer(status, node_);
}

bool MPlug::isNull(MStatus* status) const { return answer(status, hostPlug().isNull()); }

MString MPlug::name(MStatus* status) const {
    const Plug plug = hostPlug();
    if (plug.isNull()) return answer(status, MString(), MStatus::kInvalidParameter);
    return answer(status, vesk::toMString(plug.name()));
}

namespace {

/// The attribute's path, outermost first; ancestors that carry no index only if all are wanted.
std::string pathOf(const Plug& plug, bool longNames, bool allAncestors) {
    std::vector<std::string> parts;
    for (Plug at = plug; at.attr; at = at.parent()) {
        if (!parts.empty() && !allAncestors && !at.isElement()) continue;
        std::string& part = parts.emplace_back(longNames ? at.attr->longName : at.attr->shortName);
        if (!at.isElement()) continue;
        part.append("[")
            .append(std::to_string(at.indices[static_cast<std::size_t>(at.depth - 1)]))
            .append("]");
    }
    std::string path;
    for (auto part = parts.rbegin(); part != parts.rend(); ++part)
        path.append(path.empty() ? "" : ".").append(*part);
    return path;
}

} // namespace

MString MPlug::partialName(bool includeNodeName, bool, bool, bool useAlias, bool useFullAttributePath,
                           bool useLongNames, MStatus* status) const {
    const Plug plug = hostPlug();
    if (plug.isNull()) return answer(status, MString(), MStatus::kInvalidParameter);
    std::string text;
    if (useAlias) text = plug.node->alias(*plug.attr, plug.isElement() ? plug.indices[0] : -1);
    if (text.empty()) text = pathOf(plug, useLongNames, useFullAttributePath);
    if (includeNodeName) text.insert(0, plug.node->uniqueName() + '.');
    return answer(status, vesk::toMString(std::move(text)));
}

// --- shape
// -----------------------------------------------------------------------------------------------------------

namespace {

/// Answers a question about a plug that is there; `kInvalidParameter` and a default answer for one that is
/// not.
template <class Question>
auto ask(const MPlug& plug, MStatus* status, Question question) {
    using Answer = decltype(question(plug.hostPlug()));
    const Plug host = plug.hostPlug();
    if (host.isNull()) return answer(status, Answer(), MStatus::kInvalidParameter);
    return answer(status, question(host));
}

/// A plug made from another, or a null plug and `kInvalidParameter` when there is none.
MPlug derived(const Plug& plug, MStatus* status) {
    if (plug.isNull()) return answer(status, MPlug(), MStatus::kInvalidParameter);
    return answer(status, MPlug(plug));
}

std::vector<int> elementsOf(const Plug& plug) {
    if (!plug.isArray()) return {};
    const Cell* cell = plug.cellIfThere();
    return cell ? vesk::api::existingIndices(*cell) : std::vector<int>();
}

bool hasWires(const Cell& cell) { return cell.hasWiresBelow(true) || cell.hasWiresBelow(false); }

} // namespace

bool MPlug::isArray(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) { return plug.isArray(); });
}
bool MPlug::isElement(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) { return plug.isElement(); });
}
bool MPlug::isCompound(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) { return plug.attr->isCompound(); });
}
bool MPlug::isChild(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) { return plug.attr->parent != nullptr; });
}
bool MPlug::isDynamic(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) { return plug.attr->dynamic; });
}

unsigned int MPlug::numElements(MStatus* status) const {
    const Plug plug = hostPlug();
    if (!plug.isArray()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(elementsOf(plug).size()));
}

unsigned int MPlug::evaluateNumElements(MStatus* status) {
    const Plug plug = hostPlug();
    if (plug.isArray()) {
        if (Cell* cell = plug.cell()) vesk::graph::clean(*cell);
    }
    return numElements(status);
}

unsigned int MPlug::numChildren(MStatus* status) const {
    const Plug plug = hostPlug();
    if (plug.isNull() || !plug.attr->isCompound()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(plug.attr->children.size()));
}

unsigned int MPlug::numConnectedElements(MStatus* status) const {
    const Plug plug = hostPlug();
    if (!plug.isArray()) return answer(status, 0U, MStatus::kInvalidParameter);
    const Cell* cell = plug.cellIfThere();
    unsigned int count = 0;
    for (std::size_t i = 0; cell && i < cell->children.size(); ++i) {
        if (hasWires(*cell->children[i])) ++count;
    }
    return answer(status, count);
}

unsigned int MPlug::numConnectedChildren(MStatus* status) const {
    const Plug plug = hostPlug();
    if (plug.isNull() || !plug.attr->isCompound()) return answer(status, 0U, MStatus::kInvalidParameter);
    const Cell* cell = plug.cellIfThere();
    unsigned int count = 0;
    for (std::size_t i = 0; cell && !plug.isArray() && i < cell->children.size(); ++i) {
        if (cell->children[i] && hasWires(*cell->children[i])) ++count;
    }
    return answer(status, count);
}

unsigned int MPlug::getExistingArrayAttributeIndices(MIntArray& indices, MStatus* status) {
    const Plug plug = hostPlug();
    indices.clear();
    if (!plug.isArray()) return answer(status, 0U, MStatus::kInvalidParameter);
    vesk::storage(indices) = elementsOf(plug);
    return answer(status, indices.length());
}

MPlug MPlug::parent(MStatus* status) const { return derived(hostPlug().parent(), status); }

MPlug MPlug::array(MStatus* status) const {
    const Plug plug = hostPlug();
    return derived(plug.isElement() ? plug.array() : Plug(), status);
}

MPlug MPlug::child(unsigned int position, MStatus* status) const {
    const Plug plug = hostPlug();
    if (plug.isNull() || position >= plug.attr->children.size()) return derived(Plug(), status);
    return derived(plug.child(*plug.attr->children[position]), status);
}

MPlug MPlug::child(const MObject& attribute, MStatus* status) const {
    const Plug plug = hostPlug();
    const Attribute* attr = attributeOf(attribute);
    if (plug.isNull() || !attr || attr->parent != plug.attr.get()) return derived(Plug(), status);
    return derived(plug.child(*attr), status);
}

MPlug MPlug::elementByLogicalIndex(unsigned int index, MStatus* status) const {
    const Plug plug = hostPlug();
    if (!plug.isArray() || static_cast<int>(index) < 0) return derived(Plug(), status);
    return derived(plug.element(static_cast<int>(index)), status);
}

MPlug MPlug::elementByPhysicalIndex(unsigned int position, MStatus* status) const {
    const Plug plug = hostPlug();
    const auto indices = elementsOf(plug);
    if (position >= indices.size()) return derived(Plug(), status);
    return derived(plug.element(indices[position]), status);
}

MPlug MPlug::connectionByPhysicalIndex(unsigned int position, MStatus* status) const {
    const Plug plug = hostPlug();
    const Cell* cell = plug.isArray() ? plug.cellIfThere() : nullptr;
    for (std::size_t i = 0; cell && i < cell->children.size(); ++i) {
        if (!hasWires(*cell->children[i])) continue;
        if (position-- == 0) return derived(plug.element(cell->children[i]->logicalIndex), status);
    }
    return derived(Plug(), status);
}

unsigned int MPlug::logicalIndex(MStatus* status) const {
    const Plug plug = hostPlug();
    if (!plug.isElement()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(plug.indices[static_cast<std::size_t>(plug.depth - 1)]));
}

MStatus MPlug::selectAncestorLogicalIndex(unsigned int index, const MObject& multi) {
    const Plug plug = hostPlug();
    if (plug.isNull()) return MStatus::kInvalidParameter;
    const Attribute* wanted = multi.isNull() ? plug.attr.get() : attributeOf(multi);
    if (!wanted || !wanted->array) return MStatus::kInvalidParameter;
    if (wanted != plug.attr.get() && !plug.attr->isBelow(*wanted)) return MStatus::kInvalidParameter;
    const int level = wanted->multiDepth() - 1;
    if (level >= kMaxDepth) return MStatus::kInvalidParameter;
    depth_ = std::max(depth_, level + 1);
    indices_[level] = static_cast<int>(index);
    return {};
}

// --- wires
// -----------------------------------------------------------------------------------------------------------

bool MPlug::isSource(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) {
        const Cell* cell = plug.cellIfThere();
        return cell && !cell->destinations.empty();
    });
}

bool MPlug::isDestination(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) {
        const Cell* cell = plug.cellIfThere();
        return cell && cell->source;
    });
}

bool MPlug::isConnected(MStatus* status) const { return isSource(status) || isDestination(status); }

bool MPlug::connectedTo(MPlugArray& plugs, bool asDestination, bool asSource, MStatus* status) const {
    plugs.clear();
    const Plug plug = hostPlug();
    if (plug.isNull()) return answer(status, false, MStatus::kInvalidParameter);
    report(status);
    const Cell* cell = plug.cellIfThere();
    if (!cell) return false;
    if (asDestination && cell->source) plugs.append(MPlug(*cell->source));
    for (std::size_t i = 0; asSource && i < cell->destinations.size(); ++i) {
        plugs.append(MPlug(*cell->destinations[i]));
    }
    return cell->source || !cell->destinations.empty();
}

// --- flags
// -----------------------------------------------------------------------------------------------------------

bool MPlug::isLocked(MStatus* status) const {
    return ask(*this, status, [](const Plug& plug) {
        for (const Cell* at = plug.cellIfThere(); at; at = at->parent) {
            if (at->locked) return true;
        }
        return false;
    });
}

namespace {

MStatus changeCell(const MPlug& plug, void (*change)(Cell&, bool), bool value) {
    Cell* cell = plug.hostPlug().cell();
    if (!cell) return MStatus::kInvalidParameter;
    return change(*cell, value), MStatus();
}

bool flagOf(const Plug& plug, std::int8_t Cell::*own, bool Attribute::*common) {
    const Cell* cell = plug.cellIfThere();
    return cell && cell->*own >= 0 ? cell->*own != 0 : plug.attr.get()->*common;
}

} // namespace

MStatus MPlug::setLocked(bool locked) {
    return changeCell(
        *this, [](Cell& cell, bool value) { cell.locked = value; }, locked);
}
bool MPlug::isKeyable(MStatus* status) const {
    return ask(*this, status,
               [](const Plug& plug) { return flagOf(plug, &Cell::keyable, &Attribute::keyable); });
}
MStatus MPlug::setKeyable(bool keyable) {
    return changeCell(
        *this, [](Cell& cell, bool value) { cell.keyable = value ? 1 : 0; }, keyable);
}
bool MPlug::isChannelBoxFlagSet(MStatus* status) const {
    return ask(*this, status,
               [](const Plug& plug) { return flagOf(plug, &Cell::channelBox, &Attribute::channelBox); });
}
MStatus MPlug::setChannelBox(bool shown) {
    return changeCell(
        *this, [](Cell& cell, bool value) { cell.channelBox = value ? 1 : 0; }, shown);
}
