#pragma once

#include <maya/MFnAttribute.h>

/// Function set of attributes that are one of several named numbers, which need not follow each other.
class MFnEnumAttribute : public MFnAttribute {
  public:
    MFnEnumAttribute() = default;
    explicit MFnEnumAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kEnumAttribute; }

    MObject create(const MString& longName, const MString& shortName, short defaultValue = 0,
                   MStatus* status = nullptr);
    /// Names a number; one that had a name gets the new one.
    MStatus addField(const MString& name, short value);
    /// `kInvalidParameter` for a number without a name, or a name that there is not.
    MString fieldName(short value, MStatus* status = nullptr) const;
    short fieldIndex(const MString& name, MStatus* status = nullptr) const;
    MStatus getMin(short& value) const;
    MStatus getMax(short& value) const;

    MStatus setDefault(short value);
    MStatus setDefault(int value) { return setDefault(static_cast<short>(value)); }
    MStatus setDefault(const MString& fieldName);
    MStatus setDefault(const char* fieldName) { return setDefault(MString(fieldName)); }
    MStatus getDefault(short& value) const;
    MStatus getDefault(MString& fieldName) const;
};
