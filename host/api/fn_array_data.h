#pragma once
// The function sets of array data: one template, from which each class is made.

#include <maya/MFnData.h>

namespace vesk {

/// `array` gives a view: reading and writing it, changes of length included, works on the data itself. When
/// the data shares its values with another object, `array` and `set` first give it values of its own. Data
/// from a node's input is read-only: `array` then views the shared values, for reading only, and `set` fails
/// with `kFailure`. Without an object everything fails with `kInvalidParameter` and gives nothing.
template <class Array, MFn::Type kind>
class FnArrayData : public MFnData {
  public:
    using Element = typename Array::Element;

    FnArrayData() = default;
    explicit FnArrayData(MObject& object, MStatus* status = nullptr);
    explicit FnArrayData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return kind; }

    unsigned int length(MStatus* status = nullptr) const;
    /// Past the end, an element as `Element()` makes it.
    const Element& operator[](unsigned int index) const;
    MStatus copyTo(Array& array) const;
    MStatus set(const Array& array);
    Array array(MStatus* status = nullptr);
    const Array array(MStatus* status = nullptr) const;

    MObject create(MStatus* status = nullptr);
    /// With a copy of the array's elements.
    MObject create(const Array& array, MStatus* status = nullptr);

  private:
    bool accepts(const Object& object) const override;
};

} // namespace vesk
