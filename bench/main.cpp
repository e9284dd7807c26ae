// All benchmarks, or those named: points scene chain start

#include "bench/bench.h"

#include <cstring>

int main(int argc, char** argv) {
    struct Row {
        const char* name;
        void (*run)();
    };
    const Row rows[] = {{"points", vesk::bench::benchPointAttributes},
                        {"scene", vesk::bench::benchSceneReading},
                        {"chain", vesk::bench::benchChain},
                        {"start", vesk::bench::benchStart}};
    for (const Row& row : rows) {
        bool wanted = argc < 2;
        for (int i = 1; i < argc; ++i)
            wanted = wanted || std::strcmp(argv[i], row.name) == 0;
        if (wanted) row.run();
    }
    return 0;
}
