#pragma once

#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

namespace vesk {
class Object;
}

/// Base of the function sets: holds the object, checks that it is of the set's kind.
class MFnBase {
  public:
    virtual ~MFnBase() = default;
    virtual MFn::Type type() const { return MFn::kBase; }
    /// Whether the object is of that kind; whether this set could take that object.
    bool hasObj(MFn::Type kind) const;
    bool hasObj(const MObject& object) const;
    /// Null, and `kInvalidParameter`, while the set is empty.
    MObject object(MStatus* status = nullptr) const;
    /// `kInvalidParameter` when the object is null or not of this set's kind; the set is then empty.
    virtual MStatus setObject(MObject& object);
    virtual MStatus setObject(const MObject& object);

  protected:
    /// For the host: whether an object is one that this set can work on. Here, one of the set's kind.
    virtual bool accepts(const vesk::Object& object) const;
    /// For constructors: `setObject`, and its status to those who want it.
    void attach(const MObject& object, MStatus* status);
    /// `kInvalidParameter` while the set is empty, `kFailure` when its object is for reading only.
    MStatus writableStatus() const;

    MObject object_;
};
