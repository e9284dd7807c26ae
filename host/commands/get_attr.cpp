// getAttr.

#include "host/commands/attribute_commands.h"
#include "host/commands/lookup.h"
#include "host/commands/packed.h"
#include "host/commands/plug_values.h"
#include "host/data/array_data.h"
#include "host/data/component_list_data.h"
#include "host/data/packed_data.h"
#include "host/data/value_data.h"

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::Cell;
using graph::Plug;
using mel::Value;

graph::Cell& existing(const ReadCell& read, const Plug& plug) {
    if (!read.get()) throw mel::Error("The index of an element is missing in '" + plug.name() + "'.");
    return *read.get();
}

int lengthOf(const Data& data) {
    const auto length = [](const auto* array) { return static_cast<int>(array->values.read().size()); };
    if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(&data)) return length(doubles);
    if (const auto* ints = dynamic_cast<const IntArrayData*>(&data)) return length(ints);
    if (const auto* vectors = dynamic_cast<const VectorArrayData*>(&data)) return length(vectors);
    if (const auto* points = dynamic_cast<const PointArrayData*>(&data)) return length(points);
    if (const auto* strings = dynamic_cast<const StringArrayData*>(&data)) return length(strings);
    if (const auto* floats = dynamic_cast<const FloatArrayData*>(&data)) return length(floats);
    if (const auto* list = dynamic_cast<const ComponentListData*>(&data)) {
        return static_cast<int>(list->texts().size());
    }
    return 1;
}

bool isArrayType(const Attribute& attribute) {
    switch (attribute.dataType) {
    case MFnData::kDoubleArray:
    case MFnData::kIntArray:
    case MFnData::kVectorArray:
    case MFnData::kPointArray:
    case MFnData::kStringArray:
    case MFnData::kComponentList: return true;
    default: return attribute.typeName() == "floatArray";
    }
}

/// Elements of a multi, or the length of an array that an attribute holds; 1 for anything else.
Value sizeOf(const Plug& plug) {
    const auto packed = findPacked(plug);
    if (packed && packed->element < 0) return packed->count();
    const ReadCell read(plug);
    Cell& cell = existing(read, plug);
    if (cell.isArray() && !cell.data) return static_cast<int>(elementIndices(cell).size());
    graph::clean(cell);
    if (const auto* faces = dynamic_cast<const PolyFacesData*>(cell.data.get())) return faces->faceCount;
    if (cell.data) return lengthOf(*cell.data);
    return isArrayType(cell.attr) ? 0 : 1;
}

Value multiIndices(const Plug& plug) {
    if (!plug.isArray()) throw mel::Error("'" + plug.name() + "' is not a multi.");
    if (const auto packed = findPacked(plug)) {
        mel::IntArray indices(static_cast<std::size_t>(packed->count()));
        for (std::size_t i = 0; i < indices.size(); ++i)
            indices[i] = static_cast<int>(i);
        return indices;
    }
    const ReadCell read(plug);
    return elementIndices(existing(read, plug));
}

/// For attributes that take data of several types this is the type of what they hold.
std::string typeOf(const Plug& plug) {
    const Attribute& attribute = *plug.attr;
    if (plug.isArray()) return "TdataCompound";
    const bool isOpen = attribute.kind == graph::AttrKind::Generic ||
                        (attribute.kind == graph::AttrKind::Typed && attribute.dataType == MFnData::kAny &&
                         attribute.fileType.empty());
    if (!isOpen) return attribute.typeName();
    const ReadCell read(plug);
    Cell& cell = existing(read, plug);
    graph::clean(cell);
    if (!cell.data) {
        const bool holdsNumber = !attribute.acceptedNumbers.empty() && (cell.isSet || cell.feedingAncestor());
        return holdsNumber ? "double" : "";
    }
    Attribute shown;
    if (const auto* numeric = dynamic_cast<const NumericData*>(cell.data.get())) {
        shown.numericType = numeric->type();
    } else {
        shown.kind = graph::AttrKind::Typed;
        shown.dataType = cell.data->dataType();
    }
    return shown.typeName();
}

Value enumText(graph::Scene& scene, const graph::PlugRange& range) {
    const Value value = plugValue(scene, range);
    if (range.plug.attr->kind != graph::AttrKind::Enum || !value.ifInt()) return value.asString();
    for (const auto& field : range.plug.attr->fields) {
        if (field.value == *value.ifInt()) return field.name;
    }
    return value.asString();
}

/// Questions about a plug rather than for its value; none when there is none.
Value answer(const Args& args, const Plug& plug) {
    if (args.has("size")) return sizeOf(plug);
    if (args.has("multiIndices")) return multiIndices(plug);
    if (args.has("type")) return typeOf(plug);
    const ReadCell read(plug);
    const auto cell = [&]() -> const Cell& { return existing(read, plug); };
    const auto override = [](int own, bool declared) { return own < 0 ? declared : own != 0; };
    if (args.has("lock")) return cell().locked;
    if (args.has("keyable")) return override(cell().keyable, plug.attr->keyable);
    if (args.has("channelBox")) return override(cell().channelBox, plug.attr->channelBox);
    if (args.has("caching")) return plug.attr->cached;
    if (args.has("settable")) return static_cast<bool>(graph::checkWritable(cell()));
    return {};
}

Value read(CommandContext& context, const Args& args) {
    if (args.wordCount() > 1) throw mel::Error("getAttr takes one plug at a time.");
    const auto range = plugsNamed(context, args.word(0));
    if (Value value = answer(args, range.plug); !value.isNone()) return value;
    if (!args.has("time")) {
        return args.isOn("asString") ? enumText(context.scene, range) : plugValue(context.scene, range);
    }
    const graph::Preserve atOtherTime(context.scene);
    context.scene.setFrame(args.number("time"));
    return args.isOn("asString") ? enumText(context.scene, range) : plugValue(context.scene, range);
}

Value run(CommandContext& context, const Args& args) {
    if (!args.isOn("silent")) return read(context, args);
    try {
        return read(context, args);
    } catch (const mel::Error&) {
        return {};
    }
}

} // namespace

std::span<const CommandSpec> getAttrCommands() {
    static const CommandSpec rows[] = {{"getAttr",
                                        "plug",
                                        {{"-size", "-s"},
                                         {"-multiIndices", "-mi"},
                                         {"-type", "-typ"},
                                         {"-lock", "-l"},
                                         {"-keyable", "-k"},
                                         {"-channelBox", "-cb"},
                                         {"-caching", "-ca"},
                                         {"-settable", "-se"},
                                         {"-time", "-t", {ArgKind::Float}},
                                         {"-asString", "-as"},
                                         {"-silent", "-sl"},
                                         {"-expandEnvironmentVariables", "-x"}},
                                        run}};
    return rows;
}

} // namespace vesk::commands
