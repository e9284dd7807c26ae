#include "host/graph/attribute.h"

#include "host/data/value_data.h"

#include <charconv>
#include <cmath>

namespace vesk::graph {

namespace {

using Num = MFnNumericData;

struct TupleRow {
    Num::Type tuple;
    Num::Type leaf;
    int count;
    MFn::Type api;
    const char* name;
};
constexpr TupleRow kTuples[] = {
    {Num::k2Short, Num::kShort, 2, MFn::kNumericAttribute, "short2"},
    {Num::k3Short, Num::kShort, 3, MFn::kNumericAttribute, "short3"},
    {Num::k2Int, Num::kInt, 2, MFn::kAttribute2Int, "long2"},
    {Num::k3Int, Num::kInt, 3, MFn::kAttribute3Int, "long3"},
    {Num::k2Float, Num::kFloat, 2, MFn::kAttribute2Float, "float2"},
    {Num::k3Float, Num::kFloat, 3, MFn::kAttribute3Float, "float3"},
    {Num::k2Double, Num::kDouble, 2, MFn::kAttribute2Double, "double2"},
    {Num::k3Double, Num::kDouble, 3, MFn::kAttribute3Double, "double3"},
    {Num::k4Double, Num::kDouble, 4, MFn::kNumericAttribute, "double4"},
};

const TupleRow* tupleRow(Num::Type type) {
    for (const auto& row : kTuples) {
        if (row.tuple == type) return &row;
    }
    return nullptr;
}

/// Truncates towards zero and stays inside the type; NaN becomes 0, as there is no integer for it.
double wholeWithin(double value, double low, double high) {
    if (std::isnan(value)) return 0;
    value = std::trunc(value);
    return value < low ? low : value > high ? high : value;
}

AttrRef make(AttrKind kind, std::string longName, std::string shortName) {
    auto attribute = makeRef<Attribute>();
    attribute->kind = kind;
    attribute->longName = std::move(longName);
    attribute->shortName = std::move(shortName);
    return attribute;
}

} // namespace

std::pair<Num::Type, int> numericParts(Num::Type type) {
    const TupleRow* row = tupleRow(type);
    return row ? std::pair{row->leaf, row->count} : std::pair{type, 1};
}

Num::Type numericTuple(Num::Type leaf, int count) {
    if (count == 1) return leaf;
    for (const auto& row : kTuples) {
        if (row.leaf == leaf && row.count == count) return row.tuple;
    }
    return Num::kInvalid;
}

MFn::Type Attribute::apiType() const {
    switch (kind) {
    case AttrKind::Numeric:
        if (const TupleRow* row = tupleRow(numericType)) return row->api;
        return MFn::kNumericAttribute;
    case AttrKind::Unit:
        switch (unit) {
        case UnitKind::Angle: return MFn::kDoubleAngleAttribute;
        case UnitKind::Distance: return MFn::kDoubleLinearAttribute;
        case UnitKind::Time: return MFn::kTimeAttribute;
        case UnitKind::None: return MFn::kUnitAttribute;
        }
        return MFn::kUnitAttribute;
    case AttrKind::Enum: return MFn::kEnumAttribute;
    case AttrKind::Typed: return MFn::kTypedAttribute;
    case AttrKind::Generic: return MFn::kGenericAttribute;
    case AttrKind::Compound: return MFn::kCompoundAttribute;
    case AttrKind::Matrix: return isFloatMatrix ? MFn::kFloatMatrixAttribute : MFn::kMatrixAttribute;
    case AttrKind::Message: return MFn::kMessageAttribute;
    }
    return MFn::kAttribute;
}

bool Attribute::hasFn(MFn::Type type) const {
    if (Object::hasFn(type)) return true;
    if (type == MFn::kNumericAttribute) return kind == AttrKind::Numeric;
    if (type == MFn::kCompoundAttribute) return isCompound();
    if (type == MFn::kUnitAttribute) return kind == AttrKind::Unit;
    return type == MFn::kMatrixAttribute && kind == AttrKind::Matrix;
}

bool Attribute::isInteger() const {
    if (kind == AttrKind::Enum) return true;
    if (kind != AttrKind::Numeric) return false;
    const auto leaf = numericParts(numericType).first;
    return leaf == Num::kBoolean || leaf == Num::kByte || leaf == Num::kChar || leaf == Num::kShort ||
           leaf == Num::kInt || leaf == Num::kAddr;
}

int Attribute::multiDepth() const {
    int depth = 0;
    for (const Attribute* at = this; at; at = at->parent)
        depth += at->array ? 1 : 0;
    return depth;
}

bool Attribute::isBelow(const Attribute& ancestor) const {
    for (const Attribute* at = parent; at; at = at->parent) {
        if (at == &ancestor) return true;
    }
    return false;
}

int Attribute::positionInParent() const {
    if (!parent) return -1;
    for (std::size_t i = 0; i < parent->children.size(); ++i) {
        if (parent->children[i].get() == this) return static_cast<int>(i);
    }
    return -1;
}

bool Attribute::accepts(MFnData::Type type) const {
    switch (kind) {
    case AttrKind::Typed: return dataType == type || dataType == MFnData::kAny;
    case AttrKind::Matrix: return type == MFnData::kMatrix;
    case AttrKind::Generic:
        for (auto accepted : acceptedData) {
            if (accepted == type || accepted == MFnData::kAny) return true;
        }
        return false;
    default: return false;
    }
}

std::optional<short> Attribute::fieldValue(std::string_view name) const {
    for (const auto& field : fields) {
        if (field.name == name) return field.value;
    }
    short value = 0;
    const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), value);
    if (failure == std::errc() && end == name.data() + name.size()) return value;
    return std::nullopt;
}

double Attribute::coerced(double value) const {
    if (kind == AttrKind::Enum) return wholeWithin(value, -32768, 32767);
    if (kind != AttrKind::Numeric) return value;
    switch (numericParts(numericType).first) {
    case Num::kBoolean: return value != 0 ? 1 : 0;
    case Num::kByte: return wholeWithin(value, 0, 255);
    case Num::kChar: return wholeWithin(value, -128, 127);
    case Num::kShort: return wholeWithin(value, -32768, 32767);
    case Num::kInt: return wholeWithin(value, -2147483648.0, 2147483647.0);
    case Num::kFloat:
        if (std::abs(value) > 3.4028234663852886e38) return std::copysign(HUGE_VALF, value);
        return static_cast<float>(value);
    default: return value;
    }
}

std::string Attribute::typeName() const {
    switch (kind) {
    case AttrKind::Numeric:
        if (const TupleRow* row = tupleRow(numericType)) return row->name;
        switch (numericType) {
        case Num::kBoolean: return "bool";
        case Num::kByte: return "byte";
        case Num::kChar: return "char";
        case Num::kShort: return "short";
        case Num::kInt: return "long";
        case Num::kFloat: return "float";
        case Num::kAddr: return "addr";
        default: return "double";
        }
    case AttrKind::Unit:
        return unit == UnitKind::Angle ? "doubleAngle" : unit == UnitKind::Time ? "time" : "doubleLinear";
    case AttrKind::Enum: return "enum";
    case AttrKind::Generic: return "generic";
    case AttrKind::Compound: return "TdataCompound";
    case AttrKind::Matrix: return isFloatMatrix ? "fltMatrix" : "matrix";
    case AttrKind::Message: return "message";
    case AttrKind::Typed: break;
    }
    if (!fileType.empty()) return fileType;
    switch (dataType) {
    case MFnData::kString: return "string";
    case MFnData::kMatrix: return "matrix";
    case MFnData::kStringArray: return "stringArray";
    case MFnData::kDoubleArray: return "doubleArray";
    case MFnData::kIntArray: return "Int32Array";
    case MFnData::kPointArray: return "pointArray";
    case MFnData::kVectorArray: return "vectorArray";
    case MFnData::kComponentList: return "componentList";
    case MFnData::kMesh: return "mesh";
    case MFnData::kLattice: return "lattice";
    case MFnData::kNurbsCurve: return "nurbsCurve";
    case MFnData::kNurbsSurface: return "nurbsSurface";
    case MFnData::kSphere: return "sphere";
    case MFnData::kDynArrayAttrs: return "arrayAttrs";
    case MFnData::kAny: return "any";
    default: return "typed";
    }
}

AttrRef number(std::string longName, std::string shortName, Num::Type type, double value) {
    auto attribute = make(AttrKind::Numeric, std::move(longName), std::move(shortName));
    attribute->numericType = type;
    attribute->defaultNumber = value;
    return attribute;
}

AttrRef boolean(std::string longName, std::string shortName, bool value) {
    return number(std::move(longName), std::move(shortName), Num::kBoolean, value);
}

AttrRef integer(std::string longName, std::string shortName, int value) {
    return number(std::move(longName), std::move(shortName), Num::kInt, value);
}

AttrRef real(std::string longName, std::string shortName, double value) {
    return number(std::move(longName), std::move(shortName), Num::kDouble, value);
}

AttrRef unit(std::string longName, std::string shortName, UnitKind kind, double value) {
    auto attribute = make(AttrKind::Unit, std::move(longName), std::move(shortName));
    attribute->unit = kind;
    attribute->defaultNumber = value;
    return attribute;
}

AttrRef enumeration(std::string longName, std::string shortName, std::vector<std::string> fields,
                    short value) {
    auto attribute = make(AttrKind::Enum, std::move(longName), std::move(shortName));
    short next = 0;
    for (auto& field : fields)
        attribute->fields.push_back({std::move(field), next++});
    attribute->defaultNumber = value;
    return attribute;
}

AttrRef typed(std::string longName, std::string shortName, MFnData::Type type) {
    auto attribute = make(AttrKind::Typed, std::move(longName), std::move(shortName));
    attribute->dataType = type;
    return attribute;
}

// cppcheck-suppress passedByValue
AttrRef text(std::string longName, std::string shortName, std::string value) {
    auto attribute = typed(std::move(longName), std::move(shortName), MFnData::kString);
    if (!value.empty()) attribute->defaultData = makeRef<StringData>(MString(value.c_str()));
    return attribute;
}

AttrRef matrix(std::string longName, std::string shortName) {
    auto attribute = make(AttrKind::Matrix, std::move(longName), std::move(shortName));
    attribute->defaultData = makeRef<MatrixData>();
    attribute->defaultData->markPlaced();
    return attribute;
}

AttrRef message(std::string longName, std::string shortName) {
    auto attribute = make(AttrKind::Message, std::move(longName), std::move(shortName));
    attribute->storable = false;
    return attribute;
}

AttrRef compound(std::string longName, std::string shortName, std::vector<AttrRef> children) {
    auto attribute = make(AttrKind::Compound, std::move(longName), std::move(shortName));
    for (auto& child : children) {
        child->parent = attribute.get();
        attribute->children.push_back(std::move(child));
    }
    return attribute;
}

// cppcheck-suppress passedByValue
AttrRef tuple(std::string longName, std::string shortName, Num::Type type, std::vector<std::string> suffixes,
              UnitKind unitKind, double value) {
    auto attribute = make(AttrKind::Numeric, longName, shortName);
    attribute->numericType = type;
    const auto leaf = numericParts(type).first;
    for (const auto& suffix : suffixes) {
        std::string shortSuffix = suffix;
        for (char& letter : shortSuffix) {
            if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
        }
        auto child = unitKind == UnitKind::None
                         ? number(longName + suffix, shortName + shortSuffix, leaf, value)
                         : unit(longName + suffix, shortName + shortSuffix, unitKind, value);
        child->parent = attribute.get();
        attribute->children.push_back(std::move(child));
    }
    return attribute;
}

AttrRef fileData(std::string longName, std::string shortName, std::string fileType) {
    auto attribute = make(AttrKind::Typed, std::move(longName), std::move(shortName));
    attribute->fileType = std::move(fileType);
    return attribute;
}

AttrRef color(std::string longName, std::string shortName, double red, double green, double blue) {
    auto attribute =
        tuple(std::move(longName), std::move(shortName), Num::k3Float, {"R", "G", "B"})->asColor();
    attribute->children[0]->defaultNumber = red;
    attribute->children[1]->defaultNumber = green;
    attribute->children[2]->defaultNumber = blue;
    return attribute;
}

AttrRef rampAttribute(std::string longName, std::string shortName, RampKind kind) {
    auto position = number(longName + "_Position", shortName + "p", Num::kFloat);
    auto value = kind == RampKind::Color ? color(longName + "_Color", shortName + "c")
                                         : number(longName + "_FloatValue", shortName + "fv", Num::kFloat);
    auto interpolation =
        enumeration(longName + "_Interp", shortName + "i", {"None", "Linear", "Smooth", "Spline"});
    auto attribute = compound(std::move(longName), std::move(shortName), {position, value, interpolation});
    attribute->ramp = kind;
    attribute->array = true;
    attribute->usesArrayDataBuilder = true;
    return attribute;
}

} // namespace vesk::graph
