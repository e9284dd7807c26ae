#pragma once
// What a node type declares once: the kind, default, limits and flags of one attribute.

#include "host/core/object.h"
#include "host/data/data.h"

#include <maya/MFnNumericData.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::graph {

class NodeType;

enum class AttrKind : std::uint8_t { Numeric, Unit, Enum, Typed, Generic, Compound, Matrix, Message };
/// Internal units: radians, centimetres, ticks of 1/6000 second (a whole number for every frame rate).
enum class UnitKind : std::uint8_t { None, Angle, Distance, Time };
enum class DisconnectBehavior : std::uint8_t { Delete = 0, Reset = 1, Nothing = 2 };
/// How a ramp's entries are laid out (position, value or colour, interpolation), if the attribute is one.
enum class RampKind : std::uint8_t { None, Curve, Color };

struct EnumField {
    std::string name;
    short value;
};

/// What an attribute is, apart from its place. Plain data: the API's attribute function sets and the host's
/// own tables both fill it.
struct AttributeSettings {
    std::string longName;
    std::string shortName;
    AttrKind kind = AttrKind::Numeric;
    MFnNumericData::Type numericType =
        MFnNumericData::kInvalid; ///< Numeric; also pairs and triples with children
    UnitKind unit = UnitKind::None;
    MFnData::Type dataType = MFnData::kInvalid; ///< Typed
    std::vector<MFnData::Type> acceptedData;    ///< Generic
    std::vector<MFnNumericData::Type> acceptedNumbers;
    std::vector<EnumField> fields; ///< Enum
    bool isFloatMatrix = false;    ///< Matrix
    RampKind ramp = RampKind::None;
    /// A storage type of scene files that has no number in the API (`polyFaces`, `dataPolyComponent` ...).
    std::string fileType;

    double defaultNumber = 0;
    Ref<Data> defaultData;
    std::optional<double> min, max, softMin, softMax;
    DisconnectBehavior onDisconnect = DisconnectBehavior::Nothing;

    bool readable = true, writable = true, connectable = true, storable = true, cached = true;
    bool keyable = false, hidden = false, channelBox = false, internal = false;
    bool array = false, indexMatters = true, usesArrayDataBuilder = false;
    bool usedAsColor = false, indeterminant = false, worldSpace = false;
    /// Elements live in one flat array on the multi itself, not in a cell each (mesh vertices, UVs ...).
    bool packed = false;
    bool dynamic = false; ///< added to one node by `addAttr`
    /// A placeholder's guess at an attribute that it does not know: every wire fits it.
    bool guessed = false;
};

/// One attribute in its place: below a parent, in a node type (or on one node).
class Attribute : public Object, public AttributeSettings {
  public:
    Attribute() = default;
    /// A copy of the settings; no parent, no children, no place yet.
    explicit Attribute(const AttributeSettings& settings) : AttributeSettings(settings) {}
    /// A child that a handle still holds has no parent from then on.
    ~Attribute() override {
        for (const auto& child : children)
            child->parent = nullptr;
    }

    Attribute* parent = nullptr;
    std::vector<Ref<Attribute>> children;

    /// Place in the owner's list of attributes; -1 until a node type (or node) takes it.
    int index = -1;

    MFn::Type apiType() const override;
    bool hasFn(MFn::Type type) const override;

    bool isCompound() const { return !children.empty() || kind == AttrKind::Compound; }
    /// True for kinds whose value is one number.
    bool isNumber() const {
        return !isCompound() &&
               (kind == AttrKind::Numeric || kind == AttrKind::Unit || kind == AttrKind::Enum);
    }
    /// True for kinds whose value is a data object.
    bool isData() const {
        return kind == AttrKind::Typed || kind == AttrKind::Generic || kind == AttrKind::Matrix;
    }
    bool isInteger() const;
    /// How many multi levels lead to an element of this attribute, itself included.
    int multiDepth() const;
    bool isBelow(const Attribute& ancestor) const;
    int positionInParent() const;
    bool accepts(MFnData::Type type) const;
    /// Enum field by name or by written number; empty when there is none.
    std::optional<short> fieldValue(std::string_view name) const;
    /// Rounds and narrows to what this attribute can hold (bool, int, float ...); NaN stays where it can.
    double coerced(double value) const;
    /// The name that commands use: `double3`, `doubleAngle`, `typed`, `enum`, `message` ...
    std::string typeName() const;

    // Settings, so that a table of attributes reads as one.
    Ref<Attribute> notWritable() { return writable = false, self(); }
    Ref<Attribute> notReadable() { return readable = false, self(); }
    Ref<Attribute> notStorable() { return storable = false, self(); }
    Ref<Attribute> notConnectable() { return connectable = false, self(); }
    Ref<Attribute> output() { return writable = false, storable = false, self(); }
    Ref<Attribute> multi(bool builder = false) {
        return array = true, usesArrayDataBuilder = builder, self();
    }
    Ref<Attribute> indexFree() { return indexMatters = false, self(); }
    Ref<Attribute> asKeyable() { return keyable = true, self(); }
    Ref<Attribute> asHidden() { return hidden = true, self(); }
    Ref<Attribute> asWorldSpace() { return worldSpace = true, self(); }
    Ref<Attribute> asPacked() { return array = true, packed = true, self(); }
    Ref<Attribute> asColor() { return usedAsColor = true, self(); }
    Ref<Attribute> resets() { return onDisconnect = DisconnectBehavior::Reset, self(); }
    Ref<Attribute> limits(std::optional<double> low, std::optional<double> high) {
        return min = low, max = high, self();
    }

  private:
    Ref<Attribute> self() { return Ref<Attribute>(this); }
};

using AttrRef = Ref<Attribute>;

AttrRef number(std::string longName, std::string shortName, MFnNumericData::Type type, double value = 0);
AttrRef boolean(std::string longName, std::string shortName, bool value = false);
AttrRef integer(std::string longName, std::string shortName, int value = 0);
AttrRef real(std::string longName, std::string shortName, double value = 0);
/// Default in internal units.
AttrRef unit(std::string longName, std::string shortName, UnitKind kind, double value = 0);
/// Fields numbered from 0.
AttrRef enumeration(std::string longName, std::string shortName, std::vector<std::string> fields,
                    short value = 0);
AttrRef typed(std::string longName, std::string shortName, MFnData::Type type);
AttrRef text(std::string longName, std::string shortName, std::string value = {});
AttrRef matrix(std::string longName, std::string shortName);
AttrRef message(std::string longName, std::string shortName);
AttrRef compound(std::string longName, std::string shortName, std::vector<AttrRef> children);
/// A pair, triple or quadruple; children are named by the suffixes, one each (`{"X","Y","Z"}`, or "0".."3").
AttrRef tuple(std::string longName, std::string shortName, MFnNumericData::Type type,
              std::vector<std::string> suffixes, UnitKind unitKind = UnitKind::None, double value = 0);
/// A storage-only attribute of scene files, its values one opaque data object.
AttrRef fileData(std::string longName, std::string shortName, std::string fileType);
/// A colour: float triple R G B, marked so.
AttrRef color(std::string longName, std::string shortName, double red = 0, double green = 0, double blue = 0);
/// A ramp with the host's child names and order: position, value (or colour), interpolation.
AttrRef rampAttribute(std::string longName, std::string shortName, RampKind kind);

/// Leaf type and count of `k3Double` and its siblings: {kDouble, 3}; {type, 1} for plain numbers.
std::pair<MFnNumericData::Type, int> numericParts(MFnNumericData::Type type);
MFnNumericData::Type numericTuple(MFnNumericData::Type leaf, int count);

} // namespace vesk::graph
