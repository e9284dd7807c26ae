#include "parallel/loops.h"

#include <algorithm>
#include <omp.h>

namespace vesk::parallel {

int threads() { return std::max(1, omp_get_max_threads()); }

void setThreads(int count) { omp_set_num_threads(std::max(1, count)); }

void inPieces(std::size_t count, std::size_t grain,
              const std::function<void(std::size_t, std::size_t)>& work) {
    const std::size_t size = std::max<std::size_t>(grain, 1);
    const std::size_t pieces = count / size + (count % size != 0);
    const bool isAlone = pieces < 2 || threads() == 1 || omp_in_parallel();
#pragma omp parallel for schedule(dynamic, 1) if (!isAlone)
    for (std::size_t piece = 0; piece < pieces; ++piece)
        work(piece * size, std::min(count, (piece + 1) * size));
}

} // namespace vesk::parallel
