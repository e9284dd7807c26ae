#pragma once
// The work of arrayBlend over plain arrays.

#include "nodes/common/arrays.h"

namespace vesk::nodes {

/// Values of `operation`.
enum class BlendOperation : short { kBlend = 0, kAdd, kMinus, kMultiply, kDivide };

/// What two arrays give together: vectors when either holds vectors, else doubles when either holds doubles,
/// else ints. None when one is of another kind.
enum class BlendResult { kNone, kInts, kDoubles, kVectors };
BlendResult blendResult(const AnyElements& a, const AnyElements& b);

/// out[i] = a[i] op b[i]; a scalar acts on each component of a vector. "Blend" is blend * a + (1 - blend) *
/// b, of ints truncated towards zero. Ints wrap round at the ends of their range, and divided by zero give
/// zero. `Element` is that of `blendResult`; both inputs are as long as `out`.
template <class Element>
void blendArrays(BlendOperation operation, double blend, const AnyElements& a, const AnyElements& b,
                 std::span<Element> out);

extern template void blendArrays(BlendOperation, double, const AnyElements&, const AnyElements&,
                                 std::span<int>);
extern template void blendArrays(BlendOperation, double, const AnyElements&, const AnyElements&,
                                 std::span<double>);
extern template void blendArrays(BlendOperation, double, const AnyElements&, const AnyElements&,
                                 std::span<MVector>);

} // namespace vesk::nodes
