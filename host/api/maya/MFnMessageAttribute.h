#pragma once

#include <maya/MFnAttribute.h>

/// Function set of attributes that carry no data: a wire between them only says that nodes belong together.
class MFnMessageAttribute : public MFnAttribute {
  public:
    MFnMessageAttribute() = default;
    explicit MFnMessageAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kMessageAttribute; }

    MObject create(const MString& longName, const MString& shortName, MStatus* status = nullptr);
};
