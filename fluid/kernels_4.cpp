// The kernels in vectors of four, which every processor has.

#include "fluid/advect_kernels.h"
#include "fluid/noise_kernels.h"
#include "fluid/warp_kernels.h"

namespace vesk::fluid {

extern const Kernels kernels4;
const Kernels kernels4 = {4, {forwardRow<4>, backwardRow<4>}, synthesizeRow<4>, measureWarpRow<4>};

} // namespace vesk::fluid
