#pragma once

#include "host/api/matrix_of.h"

/// 4x4 matrix of doubles for row vectors: `point * matrix`, translation in row 3.
class MMatrix : public vesk::MatrixOf<MMatrix, double> {
  public:
    static constexpr double kTolerance = 1.0e-10;
    using MatrixOf::MatrixOf;
    static const MMatrix identity;
};

inline constexpr MMatrix MMatrix::identity;
