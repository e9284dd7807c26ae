#pragma once
// Timing and printing that all benchmarks share: the best of several runs, and a ratio against a peer of the
// same run.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <limits>
#include <map>
#include <string>

namespace vesk::bench {

/// Seconds of the fastest of `repeats` calls.
template <class F>
double best(int repeats, F&& call) {
    double fastest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < repeats; ++i) {
        const auto start = std::chrono::steady_clock::now();
        call();
        fastest = std::min(fastest,
                           std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return fastest;
}

/// Processor time of one call, which a busy machine does not lengthen as much as time by the clock.
template <class F>
double processorSeconds(F&& call) {
    const std::clock_t start = std::clock();
    call();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Keeps a value from being optimised away.
template <class T>
void keep(const T& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

/// One line: what, how long, how long the peer, the ratio and its limit.
inline void report(const char* what, double seconds, const char* peer, double peerSeconds, double limit) {
    const double ratio = seconds / peerSeconds;
    std::printf("%-58s %9.2f ms | %-34s %9.2f ms | ratio %6.2f, limit %5.2f %s\n", what, 1e3 * seconds, peer,
                1e3 * peerSeconds, ratio, limit, ratio <= limit ? "" : "  <-- over");
}

/// The same against a limit in its own unit.
inline void reportLimit(const char* what, double value, const char* unit, double limit) {
    std::printf("%-58s %9.3f %s, limit %.3f %s%s\n", what, value, unit, limit, unit,
                value <= limit ? "" : "  <-- over");
}

/// A benchmark enters the list by a static object in its own file: `const Benchmark chain("chain",
/// benchChain);`
class Benchmark {
  public:
    using Run = void (*)();
    Benchmark(const char* name, Run run) { all().emplace(name, run); }
    /// By name.
    static std::map<std::string, Run>& all() {
        static std::map<std::string, Run> benchmarks;
        return benchmarks;
    }
};

} // namespace vesk::bench
