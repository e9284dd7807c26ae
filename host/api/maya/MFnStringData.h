#pragma once

#include <maya/MFnData.h>
#include <maya/MString.h>

/// Function set of one string as data.
class MFnStringData : public MFnData {
  public:
    MFnStringData() = default;
    explicit MFnStringData(MObject& object, MStatus* status = nullptr);
    explicit MFnStringData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kStringData; }

    MString string(MStatus* status = nullptr) const;
    MStatus set(const MString& value);
    MObject create(MStatus* status = nullptr);
    MObject create(const MString& value, MStatus* status = nullptr);

  private:
    bool accepts(const vesk::Object& object) const override;
};
