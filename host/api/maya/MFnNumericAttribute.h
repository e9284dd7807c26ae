#pragma once

#include <maya/MFnAttribute.h>

/// Function set of numbers, pairs, triples and quadruples of numbers, colours and points.
class MFnNumericAttribute : public MFnAttribute {
  public:
    MFnNumericAttribute() = default;
    explicit MFnNumericAttribute(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kNumericAttribute; }

    /// The children of a pair, triple or quadruple are named by the suffixes 0, 1, 2, 3; the default is
    /// theirs.
    MObject create(const MString& longName, const MString& shortName, MFnNumericData::Type type,
                   double defaultValue = 0, MStatus* status = nullptr);
    /// A pair or triple with ready-made children, all of the same kind.
    MObject create(const MString& longName, const MString& shortName, const MObject& child1,
                   const MObject& child2, const MObject& child3 = MObject::kNullObj,
                   MStatus* status = nullptr);
    MObject createColor(const MString& longName, const MString& shortName, MStatus* status = nullptr);
    MObject createPoint(const MString& longName, const MString& shortName, MStatus* status = nullptr);
    MObject createAddr(const MString& longName, const MString& shortName, MStatus* status = nullptr);

    MFnNumericData::Type unitType(MStatus* status = nullptr) const;
    /// Child by position; `kInvalidParameter` past the last.
    MObject child(unsigned int position, MStatus* status = nullptr) const;

    // One number goes to a number, several to a tuple of as many: `kInvalidParameter` otherwise.

    MStatus setDefault(bool value) { return setDefaults({value ? 1.0 : 0.0}); }
    MStatus setDefault(char value) { return setDefaults({double(value)}); }
    MStatus setDefault(short value) { return setDefaults({double(value)}); }
    MStatus setDefault(int value) { return setDefaults({double(value)}); }
    MStatus setDefault(float value) { return setDefaults({double(value)}); }
    MStatus setDefault(double value) { return setDefaults({value}); }
    MStatus setDefault(short a, short b) { return setDefaults({double(a), double(b)}); }
    MStatus setDefault(int a, int b) { return setDefaults({double(a), double(b)}); }
    MStatus setDefault(float a, float b) { return setDefaults({double(a), double(b)}); }
    MStatus setDefault(double a, double b) { return setDefaults({a, b}); }
    MStatus setDefault(short a, short b, short c) { return setDefaults({double(a), double(b), double(c)}); }
    MStatus setDefault(int a, int b, int c) { return setDefaults({double(a), double(b), double(c)}); }
    MStatus setDefault(float a, float b, float c) { return setDefaults({double(a), double(b), double(c)}); }
    MStatus setDefault(double a, double b, double c) { return setDefaults({a, b, c}); }
    MStatus setDefault(double a, double b, double c, double d) { return setDefaults({a, b, c, d}); }
    MStatus getDefault(bool& value) const;
    MStatus getDefault(char& value) const;
    MStatus getDefault(short& value) const;
    MStatus getDefault(int& value) const;
    MStatus getDefault(float& value) const;
    MStatus getDefault(double& value) const;
    MStatus getDefault(double& a, double& b) const;
    MStatus getDefault(float& a, float& b, float& c) const;
    MStatus getDefault(double& a, double& b, double& c) const;

    bool hasMin(MStatus* status = nullptr) const;
    bool hasMax(MStatus* status = nullptr) const;
    bool hasSoftMin(MStatus* status = nullptr) const;
    bool hasSoftMax(MStatus* status = nullptr) const;
    /// `kFailure` when there is no such limit.
    MStatus getMin(double& value) const;
    MStatus getMax(double& value) const;
    MStatus getSoftMin(double& value) const;
    MStatus getSoftMax(double& value) const;
    MStatus setMin(double value) { return setLimits(0, {value}); }
    MStatus setMin(double a, double b) { return setLimits(0, {a, b}); }
    MStatus setMin(double a, double b, double c) { return setLimits(0, {a, b, c}); }
    MStatus setMax(double value) { return setLimits(1, {value}); }
    MStatus setMax(double a, double b) { return setLimits(1, {a, b}); }
    MStatus setMax(double a, double b, double c) { return setLimits(1, {a, b, c}); }
    MStatus setSoftMin(double value) { return setLimits(2, {value}); }
    MStatus setSoftMax(double value) { return setLimits(3, {value}); }

  private:
    struct Several {
        double numbers[4];
        unsigned int count;
        template <class... Number>
        Several(Number... values) : numbers{values...}, count(sizeof...(values)) {}
    };
    MStatus setDefaults(const Several& values);
    MStatus setLimits(int which, const Several& values);
    MStatus limit(int which, double& value) const;
    template <class Number>
    MStatus defaults(Number* values, unsigned int count) const;
};
