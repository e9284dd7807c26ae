#pragma once

#include "host/api/array_of.h"

/// Growable array of ints.
class MIntArray : public vesk::ArrayOf<MIntArray, int> {
  public:
    using ArrayOf::ArrayOf;
};
