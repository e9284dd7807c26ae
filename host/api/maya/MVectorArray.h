#pragma once

#include <maya/MVector.h>

#include "host/api/tuple_array_of.h"

/// Growable array of vectors.
class MVectorArray : public vesk::TupleArrayOf<MVectorArray, MVector, 3> {
  public:
    using TupleArrayOf::TupleArrayOf;
};
