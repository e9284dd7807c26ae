// connectAttr and disconnectAttr.

#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"
#include "host/commands/packed.h"
#include "host/commands/ui_units.h"
#include "host/core/log.h"

namespace vesk::commands {

namespace {

using graph::AttrKind;
using graph::Cell;
using graph::Plug;
using graph::UnitKind;
using mel::Error;
using mel::Value;

std::string nameOf(const Cell& cell) { return Plug(cell).name(); }

/// One end of a wire. Elements in packed storage have no place for one, but for wires that carry nothing.
Cell& endNamed(const CommandContext& context, const std::string& name, bool carriesNothing = false) {
    const Plug plug = plugNamed(context, name);
    if (const auto packed = findPacked(plug); packed && packed->element >= 0 && !carriesNothing) {
        throw Error("Elements of '" + nameOf(*packed->array) + "' cannot be connected.");
    }
    return cellNamed(context, name);
}

/// An output in world space is a multi with an element for each instance; without an index it means the first
/// one.
Cell& firstInstance(Cell& source, const Cell& destination) {
    const bool meansFirst = source.isArray() && source.attr.worldSpace && !destination.isArray();
    return meansFirst ? source.element(0) : source;
}

/// The element of an index-free multi that nothing uses yet.
Cell& nextAvailable(Cell& array) {
    if (!array.isArray()) throw Error("'" + nameOf(array) + "' is not a multi: it has no next element.");
    if (array.attr.indexMatters) {
        throw Error("The next element of '" + nameOf(array) + "' cannot be chosen: its indices matter.");
    }
    int free = 0;
    for (const auto& element : array.children) {
        if (element->logicalIndex > free) break;
        if (element->isInUse()) free = element->logicalIndex + 1;
    }
    return array.element(free);
}

// --- units -----------------------------------------------------------------------------------------------

/// What one internal unit counts in the interface; distances pass as they are.
double uiPerInternal(const graph::Scene& scene, const Cell& cell) {
    const UnitKind kind = cell.attr.kind == AttrKind::Unit ? cell.attr.unit : UnitKind::None;
    return kind == UnitKind::Distance ? 1.0 : toUi(scene, kind, 1.0);
}

/// A conversion's own ends take numbers as they are: it knows what they count.
bool isConversion(const Cell& end) { return end.node.type().name() == "unitConversion"; }

bool needsConversion(const Cell& source, const Cell& destination) {
    if (isConversion(source) || isConversion(destination)) return false;
    const auto kind = [](const Cell& cell) {
        const bool counts = cell.attr.kind == AttrKind::Unit && cell.attr.unit != UnitKind::Distance;
        return counts ? cell.attr.unit : UnitKind::None;
    };
    // A scene file holds the conversions that its wires need.
    if (source.attr.guessed || destination.attr.guessed) return false;
    return source.isLeaf() && destination.isLeaf() && source.attr.isNumber() && destination.attr.isNumber() &&
           kind(source) != kind(destination);
}

/// Puts a node between the ends that turns the one's unit into the other's. Null when the session has no such
/// type of node.
Ref<graph::Node> makeConversion(graph::Scene& scene, const Cell& source, const Cell& destination) {
    const graph::NodeType* type = scene.types().find("unitConversion");
    if (!type) return nullptr;
    Ref<graph::Node> node = scene.create(*type);
    const double factor = uiPerInternal(scene, source) / uiPerInternal(scene, destination);
    require(graph::storeNumber(node->cell(*type->find("conversionFactor")), factor));
    return node;
}

} // namespace

void connectCells(CommandContext& context, Cell& source, Cell& destination, bool force) {
    const bool isPlain = !needsConversion(source, destination);
    require(graph::checkConnectable(source, destination));
    if (destination.source && !force) return require(graph::connect(source, destination, false));
    const Ref<graph::Node> between = isPlain ? nullptr : makeConversion(context.scene, source, destination);
    if (!between) return require(graph::connect(source, destination, force));
    const auto& type = between->type();
    require(graph::connect(source, between->cell(*type.find("input"))));
    require(graph::connect(between->cell(*type.find("output")), destination, force));
}

namespace {

// --- the commands ----------------------------------------------------------------------------------------

/// Ends on placeholders that lack the attribute get one that is like the other end.
void prepareEnds(const CommandContext& context, const Args& args) {
    const std::string names[] = {args.word(0), args.word(1)};
    for (int end = 0; end < 2; ++end) {
        nodes::Placeholder* grows = placeholderNamed(context, names[end]);
        if (!grows || findPlugs(context, names[end]).error.empty()) continue;
        const auto other = findPlugs(context, names[1 - end]);
        nodes::AttributeHint hint;
        if (other.error.empty()) hint.other = &other.plug;
        hint.nextAvailable = end == 1 && args.isOn("nextAvailable");
        (void)grows->ensure(pathPart(names[end]), hint);
    }
}

/// An end that takes a wire of whatever kind and only says that it is there, as a shape's tweaks do.
bool takesNoValue(const Cell& destination) {
    return destination.attr.kind == AttrKind::Typed && destination.attr.dataType == MFnData::kAny;
}

Value connectAttr(CommandContext& context, const Args& args) {
    if (context.scene.readingFile) prepareEnds(context, args);
    const std::string sourceName = args.word(0), destinationName = args.word(1);
    if (args.wordCount() > 2) throw Error("connectAttr takes two plugs.");
    Cell* destination = &endNamed(context, destinationName);
    Cell& named = endNamed(context, sourceName, takesNoValue(*destination));
    if (args.isOn("nextAvailable")) destination = &nextAvailable(*destination);
    Cell& source = firstInstance(named, *destination);
    const bool force = args.isOn("force");
    const std::string names = nameOf(source) + " to " + nameOf(*destination);
    if (force && destination->source == &source) {
        log().warning("'" + nameOf(source) + "' is already connected to '" + nameOf(*destination) + "'.");
    } else {
        connectCells(context, source, *destination, force);
    }
    if (args.has("lock")) destination->locked = args.isOn("lock");
    return "Connected " + names + '.';
}

/// The element of a multi that the source feeds.
Cell& fedElement(const Cell& source, Cell& array) {
    for (const auto& element : array.children) {
        if (element->source == &source) return *element;
    }
    throw Error("There is no connection from '" + nameOf(source) + "' to '" + nameOf(array) +
                "' to disconnect.");
}

Value disconnectAttr(CommandContext& context, const Args& args) {
    Cell* destination = &endNamed(context, args.word(1));
    Cell& named = endNamed(context, args.word(0), takesNoValue(*destination));
    if (args.isOn("nextAvailable")) destination = &fedElement(named, *destination);
    Cell& source = firstInstance(named, *destination);
    const std::string names = nameOf(source) + " from " + nameOf(*destination);
    if (destination->source == &source && destination->locked) {
        throw Error("'" + nameOf(*destination) + "' is locked and cannot be disconnected.");
    }
    require(graph::disconnect(source, *destination));
    return "Disconnect " + names + '.';
}

} // namespace

std::span<const CommandSpec> connectionCommands() {
    static const CommandSpec rows[] = {
        {"connectAttr",
         "source destination",
         {{"-force", "-f"},
          {"-nextAvailable", "-na"},
          {"-lock", "-l", {ArgKind::Bool}},
          {"-referenceDest", "-rd", {ArgKind::Text}}},
         connectAttr},
        {"disconnectAttr", "source destination", {{"-nextAvailable", "-na"}}, disconnectAttr}};
    return rows;
}

} // namespace vesk::commands
