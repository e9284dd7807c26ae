// All benchmarks in the order of their names, or those named on the command line.

#include "bench/bench.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    using vesk::bench::Benchmark;
    for (int i = 1; i < argc; ++i) {
        if (Benchmark::all().contains(argv[i])) continue;
        std::fprintf(stderr, "vesk_bench: no benchmark \"%s\"; there are:", argv[i]);
        for (const auto& [name, run] : Benchmark::all())
            std::fprintf(stderr, " %s", name.c_str());
        std::fprintf(stderr, "\n");
        return 2;
    }
    for (const auto& [name, run] : Benchmark::all()) {
        bool wanted = argc < 2;
        for (int i = 1; i < argc; ++i)
            wanted = wanted || name == argv[i];
        if (wanted) run();
    }
    return 0;
}
