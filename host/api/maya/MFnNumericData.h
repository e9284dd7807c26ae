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
    MFn::Type type() const override { return MFn::kNumericData; }

    Type numericType(MStatus* status = nullptr) const;
    MObject create(Type type, MStatus* status = nullptr);
    MStatus getData(double& a, double& b) const;
    MStatus getData(double& a, double& b, double& c) const;
    MStatus getData(float& a, float& b, float& c) const;
    MStatus getData(int& a, int& b, int& c) const;
    MStatus setData(double a, double b);
    MStatus setData(double a, double b, double c);
    MStatus setData(float a, float b, float c);
    MStatus setData(int a, int b, int c);
};
