#pragma once

#include <maya/MTime.h>

#include "host/api/array_of.h"

/// Growable array of times.
class MTimeArray : public vesk::ArrayOf<MTimeArray, MTime> {
  public:
    using ArrayOf::ArrayOf;
};
