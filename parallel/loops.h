#pragma once
// Loops on several threads.

#include <cstddef>
#include <functional>

namespace vesk::parallel {

/// Threads that a loop may use: as many as OMP_NUM_THREADS says or the machine has, or as set here.
int threads();
/// Counts for the whole process; below 1 counts as 1.
void setThreads(int count);

/// Calls work(begin, end) for pieces of at most `grain` numbers that together cover 0 to count - 1, each
/// once, in any order and on any thread; on this thread alone, in order, when there is but one piece or one
/// thread. The pieces are the same for any number of threads, so a result that depends on nothing but its
/// piece is, too. `work` throws nothing.
void inPieces(std::size_t count, std::size_t grain,
              const std::function<void(std::size_t begin, std::size_t end)>& work);

} // namespace vesk::parallel
