#include "fluid/kernels.h"

#include <algorithm>
#include <atomic>

#include <omp.h>

namespace vesk::fluid {

extern const Kernels kernels4;
extern const Kernels kernels8;
extern const AdvectionKernels advection16;

namespace {

/// Null if this processor has no such vectors.
const Kernels* kernelsFor(int lanes) {
#if defined(__x86_64__)
    static const Kernels kernels16 = {16, advection16, kernels8.synthesize, kernels8.measureWarp};
    static const bool eight = __builtin_cpu_supports("avx2");
    static const bool sixteen =
        eight && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq");
    if (lanes == 16) return sixteen ? &kernels16 : nullptr;
    if (lanes == 8) return eight ? &kernels8 : nullptr;
#endif
    return lanes == 4 ? &kernels4 : nullptr;
}

const Kernels* widest() {
    for (const int lanes : {16, 8}) {
        if (const Kernels* found = kernelsFor(lanes)) return found;
    }
    return &kernels4;
}

std::atomic<const Kernels*> forced = nullptr;

} // namespace

const Kernels& kernels() {
    static const Kernels* const usual = widest();
    const Kernels* chosen = forced;
    return chosen ? *chosen : *usual;
}

bool forceLanes(int lanes) {
    const Kernels* chosen = lanes == 0 ? nullptr : kernelsFor(lanes);
    if (lanes != 0 && !chosen) return false;
    forced = chosen;
    return true;
}

int threadsFor(std::size_t cells) {
    constexpr int mostThreads = 8;
    constexpr std::size_t worthwhile = 16384;
    return cells < worthwhile ? 1 : std::clamp(omp_get_max_threads(), 1, mostThreads);
}

} // namespace vesk::fluid
