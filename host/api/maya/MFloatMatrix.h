#pragma once

#include "host/api/matrix_of.h"

/// 4x4 matrix of floats for row vectors. `MFloatMatrix(m.matrix)` takes the values of an `MMatrix`.
class MFloatMatrix : public vesk::MatrixOf<MFloatMatrix, float> {
  public:
    static constexpr float kTolerance = 1.0e-5F;
    using MatrixOf::MatrixOf;
};
