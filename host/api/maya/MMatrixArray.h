#pragma once

#include <maya/MMatrix.h>

#include "host/api/array_of.h"

/// Growable array of matrices; a new element is the identity.
class MMatrixArray : public vesk::ArrayOf<MMatrixArray, MMatrix> {
  public:
    using ArrayOf::ArrayOf;
};
