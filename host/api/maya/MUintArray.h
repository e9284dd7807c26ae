#pragma once

#include "host/api/array_of.h"

/// Growable array of unsigned ints.
class MUintArray : public vesk::ArrayOf<MUintArray, unsigned int> {
  public:
    using ArrayOf::ArrayOf;
};
