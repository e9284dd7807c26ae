// listAttr.

#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"
#include "host/commands/packed.h"
#include "host/commands/plug_values.h"
#include "host/graph/glob.h"

#include <algorithm>

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::Cell;
using graph::Plug;
using mel::Value;

bool isArrayData(const Attribute& attribute) {
    const auto name = attribute.typeName();
    return attribute.kind == graph::AttrKind::Typed && name.ends_with("Array");
}

/// Which attributes a call wants, and how it wants them written.
class Lister {
  public:
    explicit Lister(const Args& args) : args_(args), patterns_(args.texts("string")) {}

    void addNode(graph::Node& node) {
        for (int i = 0; i < node.attributeCount(); ++i) {
            Attribute* attribute = node.attributeAt(i);
            if (attribute && !attribute->parent) addPlug(Plug(&node, attribute), {});
        }
    }

    /// The plug and what is below it; `front` is the path to write before its name.
    void addPlug(const Plug& plug, const std::string& front) {
        const Attribute& attribute = *plug.attr;
        std::string path = front + (args_.isOn("shortNames") ? attribute.shortName : attribute.longName);
        if (plug.isElement()) {
            path += '[' + std::to_string(plug.indices[static_cast<std::size_t>(plug.depth - 1)]) + ']';
        }
        addBelow(plug, front, path);
    }

    mel::StringArray take() { return std::move(names_); }

  private:
    void addBelow(const Plug& plug, const std::string& front, const std::string& path) {
        if (isWanted(plug, path)) names_.push_back(path);
        const bool showsElements = plug.isArray() && args_.isOn("multi");
        if (showsElements) {
            for (int index : elements(plug))
                addPlug(plug.element(index), front);
            return;
        }
        // Children of a multi are named by way of it; others by their own names.
        const std::string below = plug.attr->array ? path + '.' : front;
        for (const auto& child : plug.attr->children)
            addPlug(plug.child(*child), below);
    }

    static std::vector<int> elements(const Plug& plug) {
        if (const auto packed = findPacked(plug)) {
            std::vector<int> indices(static_cast<std::size_t>(packed->count()));
            for (std::size_t i = 0; i < indices.size(); ++i)
                indices[i] = static_cast<int>(i);
            return indices;
        }
        const ReadCell cell(plug);
        return cell.get() ? elementIndices(*cell.get()) : std::vector<int>{};
    }

    bool isWanted(const Plug& plug, std::string_view path) const {
        return matches(*plug.attr, path) && hasFlags(*plug.attr) && hasState(plug);
    }

    bool matches(const Attribute& attribute, std::string_view path) const {
        return patterns_.empty() ||
               std::any_of(patterns_.begin(), patterns_.end(), [&](const std::string& pattern) {
                   return graph::globMatches(pattern, attribute.longName) ||
                          graph::globMatches(pattern, attribute.shortName) ||
                          graph::globMatches(pattern, path);
               });
    }

    bool hasFlags(const Attribute& a) const {
        const auto asks = [this](std::string_view flag) { return args_.isOn(flag); };
        return (!asks("read") || a.readable) && (!asks("write") || a.writable) &&
               (!asks("connectable") || a.connectable) && (!asks("userDefined") || a.dynamic) &&
               (!asks("visible") || !a.hidden) && (!asks("caching") || a.cached) &&
               (!asks("output") || (a.readable && !a.writable)) && (!asks("leaf") || a.children.empty()) &&
               (!asks("hasData") || a.kind != graph::AttrKind::Message) &&
               (!asks("scalar") || (a.isNumber() && !a.array)) && (!asks("array") || isArrayData(a));
    }

    bool hasState(const Plug& plug) const {
        static constexpr std::string_view kStates[] = {"keyable",  "locked",     "unlocked",
                                                       "settable", "channelBox", "inUse"};
        const bool asks = std::any_of(std::begin(kStates), std::end(kStates),
                                      [this](std::string_view flag) { return args_.isOn(flag); });
        if (!asks) return true;
        const ReadCell read(plug);
        const Cell* cell = read.get();
        const auto own = [&](std::int8_t Cell::*member, bool declared) {
            return cell && cell->*member >= 0 ? cell->*member != 0 : declared;
        };
        const bool isLocked = cell && cell->locked;
        return (!args_.isOn("keyable") || own(&Cell::keyable, plug.attr->keyable)) &&
               (!args_.isOn("channelBox") || own(&Cell::channelBox, plug.attr->channelBox)) &&
               (!args_.isOn("locked") || isLocked) && (!args_.isOn("unlocked") || !isLocked) &&
               (!args_.isOn("inUse") || (cell && cell->isInUse())) &&
               (!args_.isOn("settable") || (cell && graph::checkWritable(*cell)));
    }

    const Args& args_;
    std::vector<std::string> patterns_;
    mel::StringArray names_;
};

Value listAttr(CommandContext& context, const Args& args) {
    Lister lister(args);
    if (args.wordCount() == 0) {
        for (graph::Node* node : operandNodes(context, args))
            lister.addNode(*node);
    }
    for (const auto& word : args.wordTexts()) {
        if (word.find('.') != std::string::npos) {
            lister.addPlug(plugNamed(context, word), {});
            continue;
        }
        for (graph::Node* node : nodesNamed(context, word))
            lister.addNode(*node);
    }
    return lister.take();
}

} // namespace

std::span<const CommandSpec> listAttrCommands() {
    static const CommandSpec rows[] = {{"listAttr",
                                        "[node | plug]...",
                                        {{"-read", "-r"},
                                         {"-write", "-w"},
                                         {"-keyable", "-k"},
                                         {"-multi", "-m"},
                                         {"-scalar", "-s"},
                                         {"-array", "-a"},
                                         {"-unlocked", "-u"},
                                         {"-locked", "-l"},
                                         {"-string", "-st", {ArgKind::Text}, kAllModes, true},
                                         {"-visible", "-v"},
                                         {"-hasData", "-hd"},
                                         {"-shortNames", "-sn"},
                                         {"-connectable", "-c"},
                                         {"-userDefined", "-ud"},
                                         {"-settable", "-se"},
                                         {"-channelBox", "-cb"},
                                         {"-caching", "-ca"},
                                         {"-output", "-o"},
                                         {"-leaf", "-lf"},
                                         {"-inUse", "-iu"}},
                                        listAttr}};
    return rows;
}

} // namespace vesk::commands
