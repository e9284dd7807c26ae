#pragma once

#include <maya/MFnData.h>

/// Pairs, triples and quadruples of numbers as one data object.
class MFnNumericData : public MFnData {
  public:
    enum Type {
        kInvalid = 0,
        kBoolean,
        kByte,
        kChar,
        kShort,
        k2Short,
        k3Short,
        kInt,
        kLong = kInt,
        k2Int,
        k2Long = k2Int,
        k3Int,
        k3Long = k3Int,
        kFloat,
        k2Float,
        k3Float,
        kDouble,
        k2Double,
        k3Double,
        k4Double,
        kAddr,
        kLast
    };
    MFnNumericData() = default;
    explicit MFnNumericData(MObject& object, MStatus* status = nullptr);
    explicit MFnNumericData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kNumericData; }

    Type numericType(MStatus* status = nullptr) const;
    /// `kInvalidParameter` for types that are not one to four numbers.
    MObject create(Type type, MStatus* status = nullptr);

    // Numbers are converted by value. With another count of numbers than the object has: `kInvalidParameter`.
    MStatus getData(short& a, short& b) const;
    MStatus getData(int& a, int& b) const;
    MStatus getData(float& a, float& b) const;
    MStatus getData(double& a, double& b) const;
    MStatus getData(short& a, short& b, short& c) const;
    MStatus getData(int& a, int& b, int& c) const;
    MStatus getData(float& a, float& b, float& c) const;
    MStatus getData(double& a, double& b, double& c) const;
    MStatus getData(double& a, double& b, double& c, double& d) const;
    MStatus setData(short a, short b);
    MStatus setData(int a, int b);
    MStatus setData(float a, float b);
    MStatus setData(double a, double b);
    MStatus setData(short a, short b, short c);
    MStatus setData(int a, int b, int c);
    MStatus setData(float a, float b, float c);
    MStatus setData(double a, double b, double c);
    MStatus setData(double a, double b, double c, double d);

  private:
    bool accepts(const vesk::Object& object) const override;
};
