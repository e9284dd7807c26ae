#pragma once

#include <maya/MColor.h>

#include "host/api/tuple_array_of.h"

/// Growable array of colours; a new element is opaque black.
class MColorArray : public vesk::TupleArrayOf<MColorArray, MColor, 4> {
  public:
    using TupleArrayOf::append;
    using TupleArrayOf::set;
    using TupleArrayOf::TupleArrayOf;
    MStatus append(float r, float g, float b = 0, float a = 1) { return append(MColor(r, g, b, a)); }
    MStatus set(unsigned int index, float r, float g, float b = 0, float a = 1) {
        return set(MColor(r, g, b, a), index);
    }
};
