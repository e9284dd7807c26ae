#pragma once

#include <maya/MTypes.h>

#include "host/api/array_of.h"

/// Growable array of 64-bit ints.
class MInt64Array : public vesk::ArrayOf<MInt64Array, MInt64> {
  public:
    using ArrayOf::ArrayOf;
};
