// Wires: what may be connected, and the connecting.

#include "host/graph/evaluate.h"

#include "host/graph/scene.h"

#include <algorithm>

namespace vesk::graph {

namespace {

std::string nameOf(const Cell& cell) { return Plug(cell).name(); }

/// Data kinds that an output of this attribute may carry.
bool dataFits(const Attribute& from, const Attribute& to) {
    if (from.kind == AttrKind::Matrix) return to.accepts(MFnData::kMatrix);
    if (from.kind == AttrKind::Typed) {
        if (!from.fileType.empty() || !to.fileType.empty()) return from.fileType == to.fileType;
        return from.dataType == MFnData::kAny || to.accepts(from.dataType);
    }
    if (from.kind != AttrKind::Generic) return false;
    for (auto type : from.acceptedData) {
        if (type == MFnData::kAny || to.accepts(type)) return true;
    }
    return false;
}

bool numbersFit(const Attribute& from, const Attribute& to) {
    if (from.isNumber() && to.isNumber()) return true;
    return from.isNumber() && to.kind == AttrKind::Generic && !to.acceptedNumbers.empty();
}

bool shapesFit(const Attribute& from, const Attribute& to);

bool childrenFit(const Attribute& from, const Attribute& to) {
    // A compound may have more children at its end than what feeds it: those keep their own values.
    const bool mayHaveMore = from.kind == AttrKind::Compound && to.kind == AttrKind::Compound;
    if (mayHaveMore ? from.children.size() > to.children.size() : from.children.size() != to.children.size())
        return false;
    for (std::size_t i = 0; i < from.children.size(); ++i) {
        const auto& a = *from.children[i];
        const auto& b = *to.children[i];
        if (a.array != b.array || !shapesFit(a, b)) return false;
    }
    return true;
}

bool shapesFit(const Attribute& from, const Attribute& to) {
    if (from.guessed || to.guessed) return true;
    if (to.kind == AttrKind::Message) return true;
    if (from.kind == AttrKind::Message) return false;
    if (to.kind == AttrKind::Typed && to.dataType == MFnData::kAny) return true;
    if (from.isCompound() && to.isCompound()) return childrenFit(from, to);
    if (from.isCompound() || to.isCompound()) return false;
    return numbersFit(from, to) || dataFits(from, to);
}

} // namespace

Outcome checkConnectable(const Cell& source, const Cell& destination) {
    const auto refuse = [&](const std::string& why) {
        return Outcome::fail("Cannot connect '" + nameOf(source) + "' to '" + nameOf(destination) +
                             "': " + why);
    };
    if (&source == &destination) return refuse("a plug cannot feed itself.");
    if (!source.attr.readable) return refuse("'" + nameOf(source) + "' is not readable.");
    if (!source.attr.connectable) return refuse("'" + nameOf(source) + "' is not connectable.");
    if (!destination.attr.connectable) return refuse("'" + nameOf(destination) + "' is not connectable.");
    if (!destination.attr.writable) return refuse("'" + nameOf(destination) + "' is not writable.");
    if (destination.locked) return refuse("'" + nameOf(destination) + "' is locked.");
    const bool isGuessed = source.attr.guessed || destination.attr.guessed;
    if (source.isArray() != destination.isArray() && destination.attr.kind != AttrKind::Message &&
        !isGuessed) {
        return refuse("the data types are not compatible.");
    }
    if (!shapesFit(source.attr, destination.attr)) {
        return refuse("the data types are not compatible (" + source.attr.typeName() + " into " +
                      destination.attr.typeName() + ").");
    }
    return {};
}

Outcome connect(Cell& source, Cell& destination, bool force) {
    if (auto outcome = checkConnectable(source, destination); !outcome) return outcome;
    if (destination.source == &source) {
        return Outcome::fail("'" + nameOf(source) + "' is already connected to '" + nameOf(destination) +
                             "'.");
    }
    if (destination.source) {
        if (!force) {
            return Outcome::fail("'" + nameOf(destination) + "' already has an incoming connection from '" +
                                 nameOf(*destination.source) + "'.");
        }
        if (auto outcome = disconnect(*destination.source, destination); !outcome) return outcome;
    }
    destination.source = &source;
    source.destinations.push_back(&destination);
    markDirty(destination);
    source.node.connectionMade(source, destination, true);
    destination.node.connectionMade(destination, source, false);
    return {};
}

Outcome disconnect(Cell& source, Cell& destination) {
    if (destination.source != &source) {
        return Outcome::fail("There is no connection from '" + nameOf(source) + "' to '" +
                             nameOf(destination) + "' to disconnect.");
    }
    // The last value stays unless the attribute says otherwise; a wire that was never pulled leaves what it
    // would have brought, so nothing is evaluated here.
    destination.source = nullptr;
    std::erase(source.destinations, &destination);
    destination.walk([](Cell& cell) {
        if (cell.attr.onDisconnect == DisconnectBehavior::Reset) cell.resetToDefault();
    });
    markDirty(destination);
    if (!destination.node.isComputed(destination.attr)) {
        destination.walk([](Cell& cell) { cell.dirty = cell.node.isComputed(cell.attr); });
    }
    source.node.connectionBroken(source, destination, true);
    destination.node.connectionBroken(destination, source, false);
    if (destination.attr.onDisconnect == DisconnectBehavior::Delete && destination.isElement()) {
        Cell* array = destination.parent;
        if (!destination.hasWiresBelow(true) && !destination.hasWiresBelow(false)) {
            array->removeElement(destination.logicalIndex);
        }
    }
    return {};
}

void disconnectAll(Cell& cell) {
    std::vector<Cell*> wired;
    cell.walk([&](Cell& one) {
        if (one.source || !one.destinations.empty()) wired.push_back(&one);
    });
    // Deepest first: an element that goes with its last wire is not looked at again.
    for (auto at = wired.rbegin(); at != wired.rend(); ++at) {
        Cell* one = *at;
        while (!one->destinations.empty())
            (void)disconnect(*one, *one->destinations.back());
        if (one->source) (void)disconnect(*one->source, *one);
    }
}

} // namespace vesk::graph
