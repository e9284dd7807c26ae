#pragma once
// Arrays whose elements are a few numbers: the forms that take and give plain C arrays.

#include "host/api/array_of.h"

namespace vesk {

/// `T` can be made from and written to `width` floats or doubles in a row.
template <class Self, class T, int width>
class TupleArrayOf : public ArrayOf<Self, T> {
  public:
    using ArrayOf<Self, T>::ArrayOf;
    using ArrayOf<Self, T>::get;
    using ArrayOf<Self, T>::set;

    template <class Real>
    TupleArrayOf(const Real source[][width], unsigned int count) {
        std::vector<T>& items = storage(*this);
        items.reserve(count);
        for (unsigned int i = 0; i < count; ++i)
            items.emplace_back(source[i]);
    }
    /// Fills memory that has room for `length()` rows.
    template <class Real>
    MStatus get(Real to[][width]) const {
        for (const T& element : storage(*this))
            element.get(*to++);
        return {};
    }
    template <class Real>
    MStatus set(const Real (&element)[width], unsigned int index) {
        return set(T(element), index);
    }
};

} // namespace vesk
