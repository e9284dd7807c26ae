#pragma once

#include "host/api/array_of.h"

/// Growable array of doubles.
class MDoubleArray : public vesk::ArrayOf<MDoubleArray, double> {
  public:
    using ArrayOf::ArrayOf;
};
