#pragma once

#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

/// Base of the function sets: holds the object, checks that it is of the set's kind.
class MFnBase {
  public:
    virtual ~MFnBase() = default;
    virtual MFn::Type type() const { return MFn::kBase; }
    bool hasObj(MFn::Type kind) const;
    bool hasObj(const MObject& object) const;
    MObject object(MStatus* status = nullptr) const;
    /// `kInvalidParameter` when the object is null or not of this set's kind; the set is then empty.
    virtual MStatus setObject(MObject& object);
    virtual MStatus setObject(const MObject& object);

  protected:
    MObject object_;
};
