#include "host/commands/attribute_types.h"

#include "host/api/number_text.h"
#include "host/commands/data_words.h"

#include <algorithm>
#include <array>

namespace vesk::commands {

namespace {

using graph::AttrKind;
using graph::AttrRef;
using graph::UnitKind;
using Num = MFnNumericData;

struct NumberRow {
    std::string_view name;
    Num::Type type;
};
constexpr std::array kNumbers{
    NumberRow{"bool", Num::kBoolean}, NumberRow{"double", Num::kDouble}, NumberRow{"float", Num::kFloat},
    NumberRow{"long", Num::kInt},     NumberRow{"short", Num::kShort},   NumberRow{"byte", Num::kByte},
    NumberRow{"char", Num::kChar},
};

struct UnitRow {
    std::string_view name;
    UnitKind kind;
};
constexpr std::array kUnits{
    UnitRow{"doubleAngle", UnitKind::Angle}, UnitRow{"doubleLinear", UnitKind::Distance},
    UnitRow{"floatAngle", UnitKind::Angle},  UnitRow{"floatLinear", UnitKind::Distance},
    UnitRow{"time", UnitKind::Time},
};

struct DataRow {
    std::string_view name;
    MFnData::Type type;
};
constexpr std::array kData{
    DataRow{"string", MFnData::kString},
    DataRow{"stringArray", MFnData::kStringArray},
    DataRow{"matrix", MFnData::kMatrix},
    DataRow{"doubleArray", MFnData::kDoubleArray},
    DataRow{"Int32Array", MFnData::kIntArray},
    DataRow{"vectorArray", MFnData::kVectorArray},
    DataRow{"pointArray", MFnData::kPointArray},
    DataRow{"componentList", MFnData::kComponentList},
    DataRow{"mesh", MFnData::kMesh},
    DataRow{"nurbsCurve", MFnData::kNurbsCurve},
    DataRow{"nurbsSurface", MFnData::kNurbsSurface},
    DataRow{"lattice", MFnData::kLattice},
    DataRow{"sphere", MFnData::kSphere},
    DataRow{"arrayAttrs", MFnData::kDynArrayAttrs},
    DataRow{"any", MFnData::kAny},
};

/// Types that are kept in files and not looked into.
constexpr std::array<std::string_view, 7> kStorage{"attributeAlias",    "floatArray",         "polyFaces",
                                                   "dataPolyComponent", "dataReferenceEdits", "sceneEdits",
                                                   "newParticles"};

template <class Rows>
auto rowOf(const Rows& rows, std::string_view name) {
    const auto* row =
        std::find_if(rows.begin(), rows.end(), [&](const auto& one) { return one.name == name; });
    return row == rows.end() ? nullptr : row;
}

AttrRef bare(AttrKind kind, std::string longName, std::string shortName) {
    auto attribute = makeRef<graph::Attribute>();
    attribute->kind = kind;
    attribute->longName = std::move(longName);
    attribute->shortName = std::move(shortName);
    return attribute;
}

Outcome unknownType(std::string_view typeName) {
    return Outcome::fail("The type '" + std::string(typeName) + "' of a new attribute is unknown.");
}

} // namespace

Result<AttributeType> attributeOfType(std::string_view typeName, std::string longName,
                                      std::string shortName) {
    if (typeName == "reflectance") typeName = "reflectanceRGB";
    if (typeName == "spectrum") typeName = "spectrumRGB";
    if (const auto* row = rowOf(kNumbers, typeName)) {
        return AttributeType{graph::number(std::move(longName), std::move(shortName), row->type)};
    }
    if (const auto* row = rowOf(kUnits, typeName)) {
        return AttributeType{graph::unit(std::move(longName), std::move(shortName), row->kind)};
    }
    if (const int size = tupleSize(typeName)) {
        auto attribute = bare(AttrKind::Numeric, std::move(longName), std::move(shortName));
        attribute->numericType = tupleType(typeName);
        return AttributeType{std::move(attribute), static_cast<std::size_t>(size)};
    }
    if (typeName == "enum") {
        return AttributeType{graph::enumeration(std::move(longName), std::move(shortName), {})};
    }
    if (typeName == "message") {
        return AttributeType{graph::message(std::move(longName), std::move(shortName))};
    }
    if (typeName == "compound") {
        return AttributeType{bare(AttrKind::Compound, std::move(longName), std::move(shortName)), 1};
    }
    if (typeName == "matrix" || typeName == "fltMatrix") {
        auto attribute = graph::matrix(std::move(longName), std::move(shortName));
        attribute->isFloatMatrix = typeName == "fltMatrix";
        return AttributeType{std::move(attribute)};
    }
    if (typeName == "generic") {
        auto attribute = bare(AttrKind::Generic, std::move(longName), std::move(shortName));
        attribute->acceptedData = {MFnData::kAny};
        attribute->acceptedNumbers = {Num::kDouble};
        return AttributeType{std::move(attribute)};
    }
    return unknownType(typeName);
}

Result<AttributeType> attributeOfData(std::string_view typeName, std::string longName,
                                      std::string shortName) {
    if (const int size = tupleSize(typeName)) {
        std::vector<std::string> suffixes{"0", "1", "2", "3"};
        suffixes.resize(static_cast<std::size_t>(size));
        return AttributeType{graph::tuple(std::move(longName), std::move(shortName), tupleType(typeName),
                                          std::move(suffixes))};
    }
    if (const auto* row = rowOf(kData, typeName)) {
        return AttributeType{graph::typed(std::move(longName), std::move(shortName), row->type)};
    }
    if (std::find(kStorage.begin(), kStorage.end(), typeName) != kStorage.end()) {
        return AttributeType{
            graph::fileData(std::move(longName), std::move(shortName), std::string(typeName))};
    }
    return unknownType(typeName);
}

Result<std::vector<graph::EnumField>> enumFields(std::string_view text) {
    std::vector<graph::EnumField> fields;
    std::int64_t next = 0;
    while (!text.empty()) {
        const std::string_view field = text.substr(0, text.find(':'));
        text.remove_prefix(std::min(field.size() + 1, text.size()));
        const auto equals = field.rfind('=');
        if (equals != std::string_view::npos) {
            const auto value = wholeInteger(field.substr(equals + 1));
            if (!value) {
                return Outcome::fail("'" + std::string(field) +
                                     "' is no field of an enum: a number is wanted.");
            }
            next = *value;
        }
        if (next < -32768 || next > 32767) {
            return Outcome::fail("The value of the enum field '" + std::string(field) + "' is out of range.");
        }
        fields.push_back({std::string(field.substr(0, equals)), static_cast<short>(next++)});
    }
    return fields;
}

std::string enumText(const graph::Attribute& attribute) {
    std::string text;
    int expected = 0;
    for (const auto& field : attribute.fields) {
        if (!text.empty()) text += ':';
        text += field.name;
        if (field.value != expected) text += '=' + std::to_string(field.value);
        expected = field.value + 1;
    }
    return text;
}

} // namespace vesk::commands
