// Advection in vectors of sixteen. Compiled for AVX-512, so nothing here may run before the processor is
// known to have it.

#include "fluid/advect_kernels.h"

namespace vesk::fluid {

extern const AdvectionKernels advection16;
const AdvectionKernels advection16 = {forwardRow<16>, backwardRow<16>};

} // namespace vesk::fluid
