#pragma once

#include <maya/MPoint.h>

#include "host/api/tuple_array_of.h"

/// Growable array of points; a new element is (0, 0, 0, 1).
class MPointArray : public vesk::TupleArrayOf<MPointArray, MPoint, 4> {
  public:
    using TupleArrayOf::append;
    using TupleArrayOf::set;
    using TupleArrayOf::TupleArrayOf;
    MStatus append(double x, double y, double z = 0, double w = 1) { return append(MPoint(x, y, z, w)); }
    MStatus set(unsigned int index, double x, double y, double z = 0, double w = 1) {
        return set(MPoint(x, y, z, w), index);
    }
};
