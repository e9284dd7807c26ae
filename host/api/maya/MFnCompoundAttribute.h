#pragma once

#include <maya/MFnAttribute.h>

/// Function set of attributes that are made of others. A child belongs to one parent and comes in with it.
class MFnCompoundAttribute : public MFnAttribute {
  public:
    MFnCompoundAttribute() = default;
    explicit MFnCompoundAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kCompoundAttribute; }

    MObject create(const MString& longName, const MString& shortName, MStatus* status = nullptr);
    /// `kInvalidParameter` for what is no attribute or is a child already; `kFailure` once this attribute or
    /// the child was added to a node type.
    MStatus addChild(const MObject& child);
    MStatus removeChild(const MObject& child);
    unsigned int numChildren(MStatus* status = nullptr) const;
    MObject child(unsigned int position, MStatus* status = nullptr) const;
};
