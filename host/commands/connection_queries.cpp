// isConnected, connectionInfo and listConnections.

#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"

#include <algorithm>
#include <array>

namespace vesk::commands {

namespace {

using graph::Cell;
using graph::Plug;
using mel::Error;
using mel::Value;

std::string nameOf(const Cell& cell) { return Plug(cell).name(); }

bool isConversion(const graph::Node& node) {
    static constexpr std::array<std::string_view, 3> kTypes{"unitConversion", "unitToTimeConversion",
                                                            "timeToUnitConversion"};
    return std::find(kTypes.begin(), kTypes.end(), node.type().name()) != kTypes.end();
}

/// The one cell on a conversion node that has wires on the given side.
Cell* conversionEnd(graph::Node& node, bool asDestination) {
    Cell* found = nullptr;
    node.eachCell([&](Cell& cell) {
        if (asDestination ? cell.source != nullptr : !cell.destinations.empty()) found = &cell;
    });
    return found;
}

/// The cell that feeds this one, conversions looked through when asked.
Cell* sourceOf(const Cell& cell, bool skipConversions) {
    Cell* source = cell.source;
    while (skipConversions && source && isConversion(source->node)) {
        const Cell* input = conversionEnd(source->node, true);
        source = input ? input->source : nullptr;
    }
    return source;
}

void addDestinations(const Cell& cell, bool skipConversions, std::vector<Cell*>& to) {
    for (Cell* destination : cell.destinations) {
        if (skipConversions && isConversion(destination->node)) {
            if (const Cell* output = conversionEnd(destination->node, false))
                addDestinations(*output, true, to);
        } else {
            to.push_back(destination);
        }
    }
}

// --- isConnected, connectionInfo -------------------------------------------------------------------------

Value isConnected(CommandContext& context, const Args& args) {
    const Cell* source = plugNamed(context, args.word(0)).cellIfThere();
    const Cell* destination = plugNamed(context, args.word(1)).cellIfThere();
    if (!source || !destination) return false;
    return destination->source == source ||
           sourceOf(*destination, args.isOn("ignoreUnitConversion")) == source;
}

bool feedsSomething(const Cell& cell) {
    for (const Cell* at = &cell; at; at = at->parent) {
        if (!at->destinations.empty()) return true;
    }
    return false;
}

const Cell* lockedAncestor(const Cell& cell) {
    for (const Cell* at = &cell; at; at = at->parent) {
        if (at->locked) return at;
    }
    return nullptr;
}

std::string nameOrNothing(const Cell* cell) { return cell ? nameOf(*cell) : std::string(); }

Value connectionInfo(CommandContext& context, const Args& args) {
    const Cell& cell = cellNamed(context, args.word(0));
    if (args.has("sourceFromDestination")) return nameOrNothing(cell.source);
    if (args.has("destinationFromSource")) {
        mel::StringArray names;
        for (const Cell* destination : cell.destinations)
            names.push_back(nameOf(*destination));
        return names;
    }
    if (args.has("isSource")) return feedsSomething(cell);
    if (args.has("isDestination")) return cell.feedingAncestor() != nullptr;
    if (args.has("isExactSource")) return !cell.destinations.empty();
    if (args.has("isExactDestination")) return cell.source != nullptr;
    if (args.has("getExactDestination")) return nameOrNothing(cell.feedingAncestor());
    if (args.has("isLocked")) return lockedAncestor(cell) != nullptr;
    if (args.has("getLockedAncestor")) return nameOrNothing(lockedAncestor(cell));
    throw Error("connectionInfo was not told what to answer.");
}

// --- listConnections -------------------------------------------------------------------------------------

class Connections {
  public:
    explicit Connections(const Args& args)
        : wantsSources_(args.boolean("source", true)), wantsDestinations_(args.boolean("destination", true)),
          asPlugs_(args.isOn("plugs")), withOwn_(args.isOn("connections")), asShapes_(args.isOn("shapes")),
          skipConversions_(args.isOn("skipConversionNodes")), type_(args.text("type")),
          exactType_(args.isOn("exactType")) {}

    void addNode(graph::Node& node) {
        for (int i = 0; i < node.attributeCount(); ++i) {
            const graph::Attribute* attribute = node.attributeAt(i);
            if (!attribute || attribute->parent) continue;
            if (Cell* cell = node.cellIfThere(*attribute)) addCell(*cell);
        }
    }
    /// The cell's wires and those below it.
    void addCell(Cell& cell) {
        cell.walk([this](Cell& one) { addWires(one); });
    }
    mel::StringArray take() { return std::move(names_); }

  private:
    void addWires(const Cell& cell) {
        if (wantsSources_) {
            if (const Cell* source = sourceOf(cell, skipConversions_)) add(cell, *source);
        }
        if (!wantsDestinations_) return;
        std::vector<Cell*> destinations;
        addDestinations(cell, skipConversions_, destinations);
        for (const Cell* destination : destinations)
            add(cell, *destination);
    }

    void add(const Cell& own, const Cell& other) {
        const auto& type = other.node.type();
        if (!type_.empty() && !(exactType_ ? type.name() == type_ : type.isA(type_))) return;
        if (withOwn_) names_.push_back(nameOf(own));
        names_.push_back(asPlugs_ ? nameOf(other) : nodeName(other.node));
    }

    std::string nodeName(const graph::Node& node) const {
        if (asShapes_ || !node.type().isShape) return node.uniqueName();
        const auto& parents = static_cast<const graph::DagNode&>(node).parents();
        return parents.empty() || parents[0]->isWorld() ? node.uniqueName() : parents[0]->uniqueName();
    }

    bool wantsSources_, wantsDestinations_, asPlugs_, withOwn_, asShapes_, skipConversions_;
    std::string type_;
    bool exactType_;
    mel::StringArray names_;
};

Value listConnections(CommandContext& context, const Args& args) {
    Connections connections(args);
    if (args.wordCount() == 0) {
        for (graph::Node* node : operandNodes(context, args))
            connections.addNode(*node);
    }
    for (const auto& word : args.wordTexts()) {
        if (word.find('.') == std::string::npos) {
            for (graph::Node* node : nodesNamed(context, word))
                connections.addNode(*node);
            continue;
        }
        const auto range = plugsNamed(context, word);
        if (range.first < 0 && range.childPath.empty()) {
            if (Cell* cell = range.plug.cellIfThere()) connections.addCell(*cell);
            continue;
        }
        if (!range.childPath.empty()) throw Error("'" + word + "' names more than one plug can answer for.");
        const Cell* array = range.plug.cellIfThere();
        for (int i = 0; array && i < static_cast<int>(array->children.size()); ++i) {
            Cell& element = *array->children[static_cast<std::size_t>(i)];
            if (element.logicalIndex >= range.first && element.logicalIndex <= range.last) {
                connections.addCell(element);
            }
        }
    }
    return connections.take();
}

} // namespace

std::span<const CommandSpec> connectionQueryCommands() {
    constexpr auto kBool = ArgKind::Bool;
    static const CommandSpec rows[] = {
        {"isConnected", "source destination", {{"-ignoreUnitConversion", "-iuc"}}, isConnected},
        {"connectionInfo",
         "plug",
         {{"-sourceFromDestination", "-sfd"},
          {"-destinationFromSource", "-dfs"},
          {"-isSource", "-is"},
          {"-isDestination", "-id"},
          {"-isExactSource", "-ies"},
          {"-isExactDestination", "-ied"},
          {"-getExactDestination", "-ged"},
          {"-isLocked", "-il"},
          {"-getLockedAncestor", "-gla"}},
         connectionInfo},
        {"listConnections",
         "[node | plug]...",
         {{"-source", "-s", {kBool}},
          {"-destination", "-d", {kBool}},
          {"-connections", "-c", {kBool}},
          {"-plugs", "-p", {kBool}},
          {"-type", "-t", {ArgKind::Text}},
          {"-exactType", "-et", {kBool}},
          {"-shapes", "-sh", {kBool}},
          {"-skipConversionNodes", "-scn", {kBool}}},
         listConnections}};
    return rows;
}

} // namespace vesk::commands
