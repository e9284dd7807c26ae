#pragma once

#include <maya/MFnAttribute.h>

/// Function set of attributes that hold data of one type.
class MFnTypedAttribute : public MFnAttribute {
  public:
    MFnTypedAttribute() = default;
    explicit MFnTypedAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kTypedAttribute; }

    /// Without a default the attribute starts with no data. A default of another type is `kInvalidParameter`.
    MObject create(const MString& longName, const MString& shortName, MFnData::Type dataType,
                   const MObject& defaultData = MObject::kNullObj, MStatus* status = nullptr);
    MObject create(const MString& longName, const MString& shortName, MFnData::Type dataType,
                   MStatus* status) {
        return create(longName, shortName, dataType, MObject::kNullObj, status);
    }
    MFnData::Type attrType(MStatus* status = nullptr) const;
    MStatus setDefault(const MObject& data);
    MStatus getDefault(MObject& data) const;
};
