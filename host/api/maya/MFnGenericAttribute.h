#pragma once

#include <maya/MFnAttribute.h>

/// Function set of attributes that take several types of data, or numbers. A new one holds nothing.
class MFnGenericAttribute : public MFnAttribute {
  public:
    MFnGenericAttribute() = default;
    explicit MFnGenericAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kGenericAttribute; }

    MObject create(const MString& longName, const MString& shortName, MStatus* status = nullptr);
    MStatus addDataAccept(MFnData::Type type);
    MStatus addNumericDataAccept(MFnNumericData::Type type);
    /// `kInvalidParameter` when the type was not accepted.
    MStatus removeDataAccept(MFnData::Type type);
    MStatus removeNumericDataAccept(MFnNumericData::Type type);
};
