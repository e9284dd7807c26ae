#pragma once

#include <maya/MFloatVector.h>

#include "host/api/tuple_array_of.h"

/// Growable array of float vectors.
class MFloatVectorArray : public vesk::TupleArrayOf<MFloatVectorArray, MFloatVector, 3> {
  public:
    using TupleArrayOf::TupleArrayOf;
};
