#pragma once

#include <maya/MFnBase.h>

namespace vesk {
class Component;
}

/// Function set of every component object.
class MFnComponent : public MFnBase {
  public:
    MFnComponent() = default;
    explicit MFnComponent(MObject& object, MStatus* status = nullptr);
    explicit MFnComponent(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kComponent; }

    bool isEmpty(MStatus* status = nullptr) const;
    /// Same kind and same elements.
    bool isEqual(const MObject& other, MStatus* status = nullptr) const;
    bool isComplete(MStatus* status = nullptr) const;
    /// Complete for whatever geometry it meets, or, when complete, no longer so: an unknown size leaves it
    /// empty.
    MStatus setComplete(bool complete);
    /// 0 for a complete component of unknown size.
    int elementCount(MStatus* status = nullptr) const;
    MFn::Type componentType(MStatus* status = nullptr) const;

  protected:
    bool accepts(const vesk::Object& object) const override;
    /// Null while the set is empty.
    vesk::Component* component() const;
};
