#pragma once

#include <maya/MAngle.h>
#include <maya/MDistance.h>
#include <maya/MFloatMatrix.h>
#include <maya/MFloatVector.h>
#include <maya/MFnData.h>
#include <maya/MFnNumericData.h>
#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MString.h>
#include <maya/MTime.h>
#include <maya/MTypeId.h>
#include <maya/MTypes.h>
#include <maya/MVector.h>

#include <memory>

namespace vesk::graph {
class Cell;
} // namespace vesk::graph

/// One attribute's data in a data block.
///
/// Numbers are read by value and converted: a bool reads as 0 or 1, an int read truncates. What does not fit
/// reads as 0 or a null object, and writing it does nothing. Pairs and triples that the call gives as C
/// arrays stay readable for the next thousand such calls; they are for reading, `set...` writes.
class MDataHandle {
  public:
    /// An empty handle: reads as nothing, ignores what is set.
    MDataHandle() = default;

    // --- kind ---

    /// Of the data present: `kInvalid` for none, `kNumeric` for numbers.
    MFnData::Type type() const;
    bool isNumeric() const;
    /// `kInvalid` unless the handle holds numbers.
    MFnNumericData::Type numericType() const;
    /// Whether a generic attribute holds a number, and whether that number is unset.
    bool isGeneric(bool& isNumeric, bool& isNull) const;
    MTypeId typeId() const { return {}; }

    /// Child of a compound.
    MDataHandle child(const MPlug& plug) const;
    MDataHandle child(const MObject& attribute) const;

    // --- reading ---

    bool asBool() const;
    char asChar() const;
    unsigned char asUChar() const;
    short asShort() const;
    unsigned short asUShort() const;
    int asInt() const;
    int asLong() const { return asInt(); }
    MInt64 asInt64() const;
    float asFloat() const;
    double asDouble() const;
    MDistance asDistance() const;
    MAngle asAngle() const;
    MTime asTime() const;
    const short2& asShort2() const;
    const short3& asShort3() const;
    const int2& asInt2() const;
    const int3& asInt3() const;
    const int2& asLong2() const { return asInt2(); }
    const int3& asLong3() const { return asInt3(); }
    const float2& asFloat2() const;
    const float3& asFloat3() const;
    const double2& asDouble2() const;
    const double3& asDouble3() const;
    const double4& asDouble4() const;
    MVector asVector() const;
    MFloatVector asFloatVector() const;
    MMatrix asMatrix() const;
    MFloatMatrix asFloatMatrix() const;
    MString asString() const;

    /// The data object; null when unset. Read-only when the handle came from an input.
    MObject data();
    /// Geometry in its own space; null when other data is there.
    MObject asMesh() const;
    MObject asNurbsCurve() const;
    MObject asNurbsSurface() const;
    MObject asSubdSurface() const;
    /// The geometry with the matrix that came with it applied; for reading only.
    MObject asMeshTransformed() const;
    MObject asNurbsCurveTransformed() const;
    MObject asNurbsSurfaceTransformed() const;
    /// The matrix that came with the geometry; identity when there is none.
    MMatrix geometryTransformMatrix() const;

    bool asGenericBool() const { return asBool(); }
    char asGenericChar() const { return asChar(); }
    short asGenericShort() const { return asShort(); }
    int asGenericInt() const { return asInt(); }
    MInt64 asGenericInt64() const { return asInt64(); }
    float asGenericFloat() const { return asFloat(); }
    double asGenericDouble() const { return asDouble(); }

    // --- writing: what depends on the data is not dirtied, the handle's own dirt stays ---

    void set(bool value) { setNumber(value ? 1 : 0); }
    void set(char value) { setNumber(value); }
    void set(short value) { setNumber(value); }
    void set(int value) { setNumber(value); }
    void set(MInt64 value) { setNumber(static_cast<double>(value)); }
    void set(float value) { setNumber(static_cast<double>(value)); }
    void set(double value) { setNumber(value); }
    void set(const MDistance& value);
    void set(const MAngle& value);
    void set(const MTime& value);
    void set(short a, short b);
    void set(int a, int b);
    void set(float a, float b);
    void set(double a, double b);
    void set(short a, short b, short c);
    void set(int a, int b, int c);
    void set(float a, float b, float c);
    void set(double a, double b, double c);
    void set(const MVector& value);
    void set(const MFloatVector& value);
    void set(const MMatrix& value);
    void set(const MFloatMatrix& value);
    void set(const MString& value);
    void set(const char* value) { set(MString(value)); }
    /// Places a data object: a fresh one as it is, so that its maker may go on filling it, one that a plug
    /// holds as another object with the same values. Null unsets. `kFailure` for what the attribute does not
    /// take, and on compounds and multis, which `copy` copies.
    MStatus set(const MObject& data);

    void setBool(bool value) { set(value); }
    void setChar(char value) { set(value); }
    void setShort(short value) { set(value); }
    void setInt(int value) { set(value); }
    void setInt64(MInt64 value) { set(value); }
    void setFloat(float value) { set(value); }
    void setDouble(double value) { set(value); }
    void setMDistance(const MDistance& value) { set(value); }
    void setMAngle(const MAngle& value) { set(value); }
    void setMTime(const MTime& value) { set(value); }
    void set2Short(short a, short b) { set(a, b); }
    void set2Int(int a, int b) { set(a, b); }
    void set2Float(float a, float b) { set(a, b); }
    void set2Double(double a, double b) { set(a, b); }
    void set3Short(short a, short b, short c) { set(a, b, c); }
    void set3Int(int a, int b, int c) { set(a, b, c); }
    void set3Float(float a, float b, float c) { set(a, b, c); }
    void set3Double(double a, double b, double c) { set(a, b, c); }
    void set4Double(double a, double b, double c, double d);
    void setMVector(const MVector& value) { set(value); }
    void setMFloatVector(const MFloatVector& value) { set(value); }
    void setMMatrix(const MMatrix& value) { set(value); }
    void setMFloatMatrix(const MFloatMatrix& value) { set(value); }
    void setString(const MString& value) { set(value); }
    MStatus setMObject(const MObject& data) { return set(data); }

    /// On a generic attribute: a number, or with `isNull` nothing.
    void setGenericBool(bool value, bool isNull) { setGeneric(value ? 1 : 0, isNull); }
    void setGenericChar(char value, bool isNull) { setGeneric(value, isNull); }
    void setGenericShort(short value, bool isNull) { setGeneric(value, isNull); }
    void setGenericInt(int value, bool isNull) { setGeneric(value, isNull); }
    void setGenericInt64(MInt64 value, bool isNull) { setGeneric(static_cast<double>(value), isNull); }
    void setGenericFloat(float value, bool isNull) { setGeneric(static_cast<double>(value), isNull); }
    void setGenericDouble(double value, bool isNull) { setGeneric(value, isNull); }

    /// Copies values, those of compounds and multis too, and marks this handle clean.
    MStatus copy(const MDataHandle& source);
    void setClean();
    bool isClean() const;

    /// For the host. `owner` keeps a cell alive that belongs to no node.
    explicit MDataHandle(vesk::graph::Cell* cell, bool readOnlyData = false,
                         std::shared_ptr<const void> owner = nullptr)
        : cell_(cell), owner_(std::move(owner)), readOnlyData_(readOnlyData) {}
    vesk::graph::Cell* hostCell() const { return cell_; }
    const std::shared_ptr<const void>& hostOwner() const { return owner_; }
    bool givesReadOnlyData() const { return readOnlyData_; }

  private:
    double number() const;
    void setNumber(double value);
    void setGeneric(double value, bool isNull);
    template <class T, int N>
    const T (&numbers() const)[N];
    template <int N>
    void setNumbers(const double (&values)[N]);
    MObject geometry(MFnData::Type type, bool transformed) const;

    vesk::graph::Cell* cell_ = nullptr;
    std::shared_ptr<const void> owner_;
    bool readOnlyData_ = false;
};
