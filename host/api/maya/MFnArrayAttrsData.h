#pragma once

#include <maya/MDoubleArray.h>
#include <maya/MFnData.h>
#include <maya/MIntArray.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>
#include <maya/MVectorArray.h>

/// Function set of arrays under names, in the order in which they were made.
class MFnArrayAttrsData : public MFnData {
  public:
    enum Type { kInvalid = 0, kVectorArray, kDoubleArray, kIntArray, kStringArray, kLast };

    MFnArrayAttrsData() = default;
    explicit MFnArrayAttrsData(MObject& object, MStatus* status = nullptr);
    explicit MFnArrayAttrsData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kDynArrayAttrsData; }

    /// Empties every array; names and types stay.
    MStatus clear();
    unsigned int count() const;
    MStringArray list(MStatus* status = nullptr) const;
    /// Whether there is an array of that name, and of which type.
    bool checkArrayExist(const MString& name, Type& arrayType, MStatus* status = nullptr) const;

    // Views of the arrays themselves, made when missing. On data from a node's input they are for reading,
    // and a missing one is not made: `kFailure`. `kInvalidParameter` for a name that has another type. A view
    // may be kept while further arrays are made.
    MVectorArray vectorArray(const MString& name, MStatus* status = nullptr);
    MDoubleArray doubleArray(const MString& name, MStatus* status = nullptr);
    MIntArray intArray(const MString& name, MStatus* status = nullptr);
    MStringArray stringArray(const MString& name, MStatus* status = nullptr);

    // Copies; empty, and `kInvalidParameter`, when there is no array of that name and type.
    MVectorArray getVectorData(const MString& name, MStatus* status = nullptr) const;
    MDoubleArray getDoubleData(const MString& name, MStatus* status = nullptr) const;
    MIntArray getIntData(const MString& name, MStatus* status = nullptr) const;
    MStringArray getStringData(const MString& name, MStatus* status = nullptr) const;

    MObject create(MStatus* status = nullptr);

  private:
    bool accepts(const vesk::Object& object) const override;
};
