#include "host/session/attribute_text.h"

#include "host/api/number_text.h"
#include "host/data/value_data.h"
#include "host/graph/attribute.h"

namespace vesk {

namespace {

/// A multi `x` of `x_Position`, `x_FloatValue` or `x_Color`, and `x_Interp`.
bool isRamp(const graph::Attribute& attribute) {
    return attribute.array && attribute.kind == graph::AttrKind::Compound && attribute.children.size() == 3 &&
           attribute.children[0]->longName == attribute.longName + "_Position" &&
           attribute.children[2]->longName == attribute.longName + "_Interp";
}

/// People's words where the type names of files differ.
std::string plainName(const graph::Attribute& attribute) {
    const std::string name = attribute.typeName();
    if (name == "long") return "int";
    if (name == "Int32Array") return "intArray";
    return attribute.kind == graph::AttrKind::Compound ? "compound" : name;
}

std::string typeText(const graph::Attribute& attribute) {
    if (isRamp(attribute)) {
        return attribute.children[1]->longName.ends_with("_Color") ? "colour ramp" : "curve ramp";
    }
    std::string text = plainName(attribute);
    if (attribute.kind == graph::AttrKind::Enum) {
        text += ':';
        for (const auto& field : attribute.fields) {
            text += (&field == attribute.fields.data() ? " \"" : ", \"") + field.name +
                    "\"=" + std::to_string(field.value);
        }
    } else if (attribute.kind == graph::AttrKind::Generic) {
        text += ':';
        for (const auto type : attribute.acceptedData) {
            graph::Attribute named;
            named.kind = graph::AttrKind::Typed;
            named.dataType = type;
            text += (type == attribute.acceptedData.front() ? " " : ", ") + plainName(named);
        }
    }
    return attribute.array ? text + "[]" : text;
}

/// As a script would write it, on one line.
std::string quoted(const MString& text) {
    std::string line = "\"";
    for (const char* at = text.asChar(); *at; ++at) {
        switch (*at) {
        case '\n': line += "\\n"; break;
        case '\t': line += "\\t"; break;
        case '"':
        case '\\': line += '\\'; [[fallthrough]];
        default: line += *at;
        }
    }
    return line + '"';
}

std::string defaultText(const graph::Attribute& attribute) {
    if (attribute.isNumber()) {
        if (attribute.kind == graph::AttrKind::Numeric && attribute.numericType == MFnNumericData::kBoolean) {
            return attribute.defaultNumber != 0 ? "true" : "false";
        }
        return formatDouble(attribute.defaultNumber);
    }
    if (const auto* text = dynamic_cast<const StringData*>(attribute.defaultData.get())) {
        return quoted(text->value);
    }
    return attribute.kind == graph::AttrKind::Matrix ? "identity" : "";
}

std::string limitsText(const graph::Attribute& attribute) {
    std::string text;
    const auto put = [&](const char* name, const std::optional<double>& value) {
        if (!value) return;
        if (!text.empty()) text += ", ";
        text += name + formatDouble(*value);
    };
    put("min ", attribute.min);
    put("max ", attribute.max);
    put("soft min ", attribute.softMin);
    put("soft max ", attribute.softMax);
    return text;
}

std::string flagsText(const graph::Attribute& attribute) {
    std::string text;
    const auto put = [&](bool isSet, const char* name) {
        if (!isSet) return;
        if (!text.empty()) text += ", ";
        text += name;
    };
    put(attribute.keyable, "keyable");
    put(!attribute.writable, "not writable");
    put(!attribute.readable, "not readable");
    put(!attribute.storable, "not storable");
    put(!attribute.connectable, "not connectable");
    put(attribute.hidden, "hidden");
    put(attribute.channelBox, "channel box");
    put(attribute.usedAsColor, "used as colour");
    put(!attribute.indexMatters, "index does not matter");
    put(attribute.usesArrayDataBuilder, "array data builder");
    put(attribute.onDisconnect == graph::DisconnectBehavior::Reset, "disconnect resets");
    put(attribute.onDisconnect == graph::DisconnectBehavior::Delete, "disconnect deletes");
    return text;
}

} // namespace

bool isPartOfRamp(const graph::Attribute& attribute) {
    for (const graph::Attribute* up = attribute.parent; up; up = up->parent) {
        if (isRamp(*up)) return true;
    }
    return false;
}

AttributeText attributeText(const graph::Attribute& attribute) {
    int depth = 0;
    for (const graph::Attribute* up = attribute.parent; up; up = up->parent)
        ++depth;
    return {depth, typeText(attribute), defaultText(attribute), limitsText(attribute), flagsText(attribute)};
}

} // namespace vesk
