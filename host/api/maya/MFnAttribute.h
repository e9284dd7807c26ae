#pragma once

#include <maya/MFnBase.h>
#include <maya/MFnData.h>
#include <maya/MFnNumericData.h>
#include <maya/MString.h>

namespace vesk::graph {
class Attribute;
} // namespace vesk::graph

/// Function set of every attribute: names and flags. An attribute's flags may be set before and after it is
/// added to a node type. Those of a numeric pair or triple reach its children, except what concerns multis.
class MFnAttribute : public MFnBase {
  public:
    /// What a destination holds after its wire was cut: nothing (a multi's element goes), the default, the
    /// last value.
    enum DisconnectBehavior { kDelete = 0, kReset = 1, kNothing = 2 };

    MFnAttribute() = default;
    explicit MFnAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kAttribute; }

    MString name(MStatus* status = nullptr) const;
    MString shortName(MStatus* status = nullptr) const;
    MObject parent(MStatus* status = nullptr) const;
    bool isDynamic(MStatus* status = nullptr) const;
    /// Whether a plug of this attribute takes such data.
    bool accepts(MFnData::Type data, MStatus* status = nullptr) const;
    bool accepts(MFnNumericData::Type number, MStatus* status = nullptr) const;

    bool isReadable(MStatus* status = nullptr) const;
    bool isWritable(MStatus* status = nullptr) const;
    bool isConnectable(MStatus* status = nullptr) const;
    bool isStorable(MStatus* status = nullptr) const;
    bool isCached(MStatus* status = nullptr) const;
    bool isArray(MStatus* status = nullptr) const;
    bool indexMatters(MStatus* status = nullptr) const;
    bool isKeyable(MStatus* status = nullptr) const;
    bool isChannelBoxFlagSet(MStatus* status = nullptr) const;
    bool isHidden(MStatus* status = nullptr) const;
    bool isUsedAsColor(MStatus* status = nullptr) const;
    bool isIndeterminant(MStatus* status = nullptr) const;
    bool isWorldSpace(MStatus* status = nullptr) const;
    bool usesArrayDataBuilder(MStatus* status = nullptr) const;
    bool internal(MStatus* status = nullptr) const;
    DisconnectBehavior disconnectBehavior(MStatus* status = nullptr) const;

    MStatus setReadable(bool state);
    MStatus setWritable(bool state);
    MStatus setConnectable(bool state);
    MStatus setStorable(bool state);
    MStatus setCached(bool state);
    /// `kFailure` once nodes may have the attribute.
    MStatus setArray(bool state);
    MStatus setIndexMatters(bool state);
    MStatus setKeyable(bool state);
    MStatus setChannelBox(bool state);
    MStatus setHidden(bool state);
    MStatus setUsedAsColor(bool state);
    MStatus setIndeterminant(bool state);
    MStatus setWorldSpace(bool state);
    MStatus setUsesArrayDataBuilder(bool state);
    MStatus setInternal(bool state);
    MStatus setDisconnectBehavior(DisconnectBehavior behavior);
    /// Accepted and without effect: there is no render setting or swatch that looks at them.
    MStatus setRenderSource(bool) { return attr() ? MStatus::kSuccess : MStatus::kInvalidParameter; }
    MStatus setAffectsAppearance(bool) { return attr() ? MStatus::kSuccess : MStatus::kInvalidParameter; }
    MStatus setAffectsWorldSpace(bool) { return attr() ? MStatus::kSuccess : MStatus::kInvalidParameter; }
    MStatus setNiceNameOverride(const MString&) {
        return attr() ? MStatus::kSuccess : MStatus::kInvalidParameter;
    }

  protected:
    using MFnBase::accepts;
    /// Null while the set is empty.
    vesk::graph::Attribute* attr() const;
    void take(const MObject& object, MStatus* status);
    /// Makes the new attribute the set's object. Refuses one without a name.
    MObject adopt(vesk::graph::Attribute* made, MStatus* status);
};
