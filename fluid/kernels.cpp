#include "fluid/kernels.h"

#include <algorithm>
#include <atomic>

#include <omp.h>

namespace vesk::fluid {

extern const Kernels kernels4;
extern const Kernels kernels8;

namespace {

bool hasEightLanes() {
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2");
#else
    return false;
#endif
}

std::atomic<const Kernels*> forced = nullptr;

} // namespace

const Kernels& kernels() {
    static const Kernels* const widest = hasEightLanes() ? &kernels8 : &kernels4;
    const Kernels* chosen = forced;
    return chosen ? *chosen : *widest;
}

bool forceLanes(int lanes) {
    if (lanes != 0 && lanes != 4 && !(lanes == 8 && hasEightLanes())) return false;
    forced = lanes == 0 ? nullptr : lanes == 4 ? &kernels4 : &kernels8;
    return true;
}

int threadsFor(std::size_t cells) {
    constexpr int mostThreads = 8;
    constexpr std::size_t worthwhile = 16384;
    return cells < worthwhile ? 1 : std::clamp(omp_get_max_threads(), 1, mostThreads);
}

} // namespace vesk::fluid
