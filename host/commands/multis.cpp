// removeMultiInstance and getNextFreeMultiIndex.

#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"
#include "host/commands/packed.h"

#include <limits>

namespace vesk::commands {

namespace {

using graph::Cell;
using graph::Plug;
using mel::Error;
using mel::Value;

Value removeMultiInstance(CommandContext& context, const Args& args) {
    const Plug plug = plugNamed(context, args.word(0));
    if (const auto packed = findPacked(plug); packed && packed->element >= 0) {
        require(packed->clear(packed->element));
        return {};
    }
    if (!plug.isElement()) throw Error("'" + plug.name() + "' is not an element of a multi.");
    Cell* element = plug.cellIfThere();
    if (!element) return {};
    Cell& array = *element->parent;
    const bool isConnected = element->hasWiresBelow(true) || element->hasWiresBelow(false);
    if (isConnected && !args.isOn("break")) {
        throw Error("'" + plug.name() +
                    "' is connected and cannot be removed unless its connections are broken.");
    }
    graph::disconnectAll(*element);
    graph::spreadDirt(array);
    // An attribute may drop its elements with their last connection.
    array.removeElement(plug.indices[static_cast<std::size_t>(plug.depth - 1)]);
    return {};
}

Value getNextFreeMultiIndex(CommandContext& context, const Args& args) {
    const Plug plug = plugNamed(context, args.word(0));
    if (!plug.isArray()) throw Error("'" + plug.name() + "' is not a multi.");
    const auto start = args.wordCount() > 1 ? args.words()[1]->number() : std::optional<double>(0);
    if (!start) throw Error("The index to start from is not a number: '" + args.word(1) + "'.");
    long long index = std::max(mel::truncated(*start), 0);
    const Cell* array = plug.cellIfThere();
    if (!array) return static_cast<int>(index);
    for (const auto& element : array->children) {
        if (element->logicalIndex < index) continue;
        if (element->logicalIndex > index || !element->hasWiresBelow(true)) break;
        ++index;
    }
    if (index > std::numeric_limits<int>::max()) throw Error("'" + plug.name() + "' has no free index.");
    return static_cast<int>(index);
}

} // namespace

std::span<const CommandSpec> multiCommands() {
    static const CommandSpec rows[] = {
        {"removeMultiInstance", "plug[index]", {{"-break", "-b", {ArgKind::Bool}}}, removeMultiInstance},
        {"getNextFreeMultiIndex", "plug start", {}, getNextFreeMultiIndex}};
    return rows;
}

} // namespace vesk::commands
