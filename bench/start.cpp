// How long a user waits before anything happens.

#include "bench/bench.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace vesk::bench {

static void benchStart() {
    const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::string vesk = (here / "vesk").string();
    const auto script =
        std::filesystem::temp_directory_path() / ("vesk-bench-" + std::to_string(getpid()) + ".mel");
    std::ofstream(script) << "\n";
    const auto run = [](const std::string& command) {
        if (std::system((command + " >/dev/null 2>&1").c_str()) != 0)
            std::printf("start: '%s' failed\n", command.c_str());
    };
    const double shell = best(10, [&] { run("true"); });
    reportLimit("vesk --version", 1e3 * (best(10, [&] { run(vesk + " --version"); }) - shell), "ms", 20);
    reportLimit("vesk run of an empty script, plug-in loaded",
                1e3 * (best(10, [&] { run(vesk + " run " + script.string()); }) - shell), "ms", 200);
    std::filesystem::remove(script);
}

static const Benchmark registered("start", benchStart);

} // namespace vesk::bench
