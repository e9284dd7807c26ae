#pragma once

#include <maya/MFloatPoint.h>

#include "host/api/tuple_array_of.h"

/// Growable array of float points; a new element is (0, 0, 0, 1).
class MFloatPointArray : public vesk::TupleArrayOf<MFloatPointArray, MFloatPoint, 4> {
  public:
    using TupleArrayOf::append;
    using TupleArrayOf::set;
    using TupleArrayOf::TupleArrayOf;
    MStatus append(float x, float y, float z = 0, float w = 1) { return append(MFloatPoint(x, y, z, w)); }
    MStatus set(unsigned int index, float x, float y, float z = 0, float w = 1) {
        return set(MFloatPoint(x, y, z, w), index);
    }
};
