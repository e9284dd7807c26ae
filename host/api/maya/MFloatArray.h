#pragma once

#include "host/api/array_of.h"

/// Growable array of floats.
class MFloatArray : public vesk::ArrayOf<MFloatArray, float> {
  public:
    using ArrayOf::ArrayOf;
};
