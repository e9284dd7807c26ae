// The kernels in vectors of eight. Compiled for AVX2, so nothing here may run before the processor is known
// to have it.

#include "fluid/advect_kernels.h"
#include "fluid/noise_kernels.h"
#include "fluid/warp_kernels.h"

namespace vesk::fluid {

extern const Kernels kernels8;
const Kernels kernels8 = {8, {forwardRow<8>, backwardRow<8>}, synthesizeRow<8>, measureWarpRow<8>};

} // namespace vesk::fluid
