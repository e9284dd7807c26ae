// attributeQuery and attributeExists.

#include "host/commands/attribute_commands.h"
#include "host/commands/attribute_types.h"
#include "host/commands/lookup.h"
#include "host/commands/ui_units.h"

#include <cctype>

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::AttrKind;
using mel::Error;
using mel::Value;

/// `translateX` as the interface shows it: `Translate X`.
std::string niceName(std::string_view name) {
    std::string nice;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        const bool wasLower = i > 0 && !std::isupper(static_cast<unsigned char>(name[i - 1]));
        if (c == '_') {
            nice += ' ';
        } else if (i == 0 || nice.back() == ' ') {
            nice += static_cast<char>(std::toupper(c));
        } else {
            if (std::isupper(c) && wasLower) nice += ' ';
            nice += name[i];
        }
    }
    return nice;
}

mel::StringArray names(const std::vector<graph::AttrRef>& attributes, const Attribute* without = nullptr) {
    mel::StringArray list;
    for (const auto& one : attributes) {
        if (one.get() != without) list.push_back(one->longName);
    }
    return list;
}

/// Default of each leaf.
void addDefaults(const graph::Scene& scene, const Attribute& attribute, mel::FloatArray& to) {
    if (attribute.isNumber()) to.push_back(toUi(scene, attribute.unit, attribute.defaultNumber));
    for (const auto& child : attribute.children)
        addDefaults(scene, *child, to);
}

struct Question {
    FlagSpec flag;
    Value (*answer)(const graph::Scene& scene, const Attribute& a);
};

Value floats(const graph::Scene& scene, const Attribute& a,
             std::initializer_list<std::optional<double>> limits) {
    mel::FloatArray list;
    for (const auto& limit : limits) {
        if (limit) list.push_back(toUi(scene, a.unit, *limit));
    }
    return list;
}

const std::vector<Question>& questions() {
    using S = const graph::Scene&;
    using A = const Attribute&;
    static const std::vector<Question> list{
        {{"-longName", "-ln"}, [](S, A a) -> Value { return a.longName; }},
        {{"-shortName", "-sn"}, [](S, A a) -> Value { return a.shortName; }},
        {{"-niceName", "-nn"}, [](S, A a) -> Value { return niceName(a.longName); }},
        {{"-attributeType", "-at"}, [](S, A a) -> Value { return a.typeName(); }},
        {{"-channelBox", "-ch"}, [](S, A a) -> Value { return a.channelBox; }},
        {{"-keyable", "-k"}, [](S, A a) -> Value { return a.keyable; }},
        {{"-hidden", "-h"}, [](S, A a) -> Value { return a.hidden; }},
        {{"-multi", "-m"}, [](S, A a) -> Value { return a.array; }},
        {{"-mi", "-mi"}, [](S, A a) -> Value { return a.array; }},
        {{"-readable", "-rd"}, [](S, A a) -> Value { return a.readable; }},
        {{"-writable", "-w"}, [](S, A a) -> Value { return a.writable; }},
        {{"-connectable", "-c"}, [](S, A a) -> Value { return a.connectable; }},
        {{"-storable", "-st"}, [](S, A a) -> Value { return a.storable; }},
        {{"-cachedInternally", "-ci"}, [](S, A a) -> Value { return a.cached; }},
        {{"-internal", "-i"}, [](S, A a) -> Value { return a.internal; }},
        {{"-indexMatters", "-im"}, [](S, A a) -> Value { return a.indexMatters; }},
        {{"-indeterminant", "-idt"}, [](S, A a) -> Value { return a.indeterminant; }},
        {{"-worldSpace", "-ws"}, [](S, A a) -> Value { return a.worldSpace; }},
        {{"-usedAsColor", "-uac"}, [](S, A a) -> Value { return a.usedAsColor; }},
        {{"-message", "-msg"}, [](S, A a) -> Value { return a.kind == AttrKind::Message; }},
        {{"-enum", "-e"}, [](S, A a) -> Value { return a.kind == AttrKind::Enum; }},
        {{"-listEnum", "-le"},
         [](S, A a) -> Value {
             return a.fields.empty() ? mel::StringArray() : mel::StringArray{enumText(a)};
         }},
        {{"-minExists", "-mne"}, [](S, A a) -> Value { return a.min.has_value(); }},
        {{"-maxExists", "-mxe"}, [](S, A a) -> Value { return a.max.has_value(); }},
        {{"-softMinExists", "-sme"}, [](S, A a) -> Value { return a.softMin.has_value(); }},
        {{"-softMaxExists", "-sxe"}, [](S, A a) -> Value { return a.softMax.has_value(); }},
        {{"-rangeExists", "-re"}, [](S, A a) -> Value { return a.min && a.max; }},
        {{"-softRangeExists", "-se"}, [](S, A a) -> Value { return a.softMin && a.softMax; }},
        {{"-minimum", "-min"}, [](S s, A a) -> Value { return floats(s, a, {a.min}); }},
        {{"-maximum", "-max"}, [](S s, A a) -> Value { return floats(s, a, {a.max}); }},
        {{"-softMin", "-smn"}, [](S s, A a) -> Value { return floats(s, a, {a.softMin}); }},
        {{"-softMax", "-smx"}, [](S s, A a) -> Value { return floats(s, a, {a.softMax}); }},
        {{"-range", "-r"},
         [](S s, A a) -> Value {
             return floats(s, a, {a.min, a.max});
         }},
        {{"-softRange", "-s"},
         [](S s, A a) -> Value {
             return floats(s, a, {a.softMin, a.softMax});
         }},
        {{"-listDefault", "-ld"},
         [](S s, A a) -> Value {
             mel::FloatArray defaults;
             addDefaults(s, a, defaults);
             return defaults;
         }},
        {{"-numberOfChildren", "-nc"},
         [](S, A a) -> Value {
             return a.children.empty() ? mel::IntArray() : mel::IntArray{static_cast<int>(a.children.size())};
         }},
        {{"-listChildren", "-lc"}, [](S, A a) -> Value { return names(a.children); }},
        {{"-listSiblings", "-ls"},
         [](S, A a) -> Value { return a.parent ? names(a.parent->children, &a) : mel::StringArray(); }},
        {{"-listParent", "-lp"},
         [](S, A a) -> Value {
             return a.parent ? mel::StringArray{a.parent->longName} : mel::StringArray();
         }},
    };
    return list;
}

/// The attribute on the node or among those of the type that the flags name; null when there is none.
const Attribute* find(CommandContext& context, const Args& args, const std::string& name) {
    if (args.has("type")) {
        const graph::NodeType* type = context.scene.types().find(args.text("type"));
        if (!type) throw Error("Unknown node type '" + args.text("type") + "'.");
        return type->find(name);
    }
    if (!args.has("node")) throw Error("attributeQuery needs a node or a type to look at.");
    const auto range = graph::findPlug(nodeNamed(context, args.text("node")), name);
    return range.error.empty() ? range.plug.attr.get() : nullptr;
}

Value attributeQuery(CommandContext& context, const Args& args) {
    const std::string name = args.word(0);
    const Attribute* attribute = find(context, args, name);
    if (args.has("exists")) return attribute != nullptr;
    if (!attribute) {
        throw Error("No object matches name: " + args.text("node", args.text("type")) + '.' + name);
    }
    for (const auto& question : questions()) {
        if (args.has(question.flag.longName.substr(1))) return question.answer(context.scene, *attribute);
    }
    throw Error("attributeQuery was not told what to answer.");
}

Value attributeExists(CommandContext& context, const Args& args) {
    graph::Node* node = context.scene.find(args.word(1));
    return node && graph::findPlug(*node, args.word(0)).error.empty();
}

std::vector<FlagSpec> queryFlags() {
    std::vector<FlagSpec> flags{
        {"-node", "-n", {ArgKind::Text}}, {"-type", "-typ", {ArgKind::Text}}, {"-exists", "-ex"}};
    for (const auto& question : questions())
        flags.push_back(question.flag);
    return flags;
}

} // namespace

std::span<const CommandSpec> attributeQueryCommands() {
    static const CommandSpec rows[] = {{"attributeQuery", "attribute", queryFlags(), attributeQuery},
                                       {"attributeExists", "attribute node", {}, attributeExists}};
    return rows;
}

} // namespace vesk::commands
