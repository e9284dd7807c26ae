// Reading a Maya ASCII mesh of a million vertices, beside a plain pass of the number conversion over the same
// text.

#include "bench/bench.h"
#include "host/nodes/mesh_node.h"
#include "host/scene/formats/file_buffer.h"
#include "host/session/session.h"

#include <charconv>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::bench {

namespace {

/// Every number of a text, blanks and words passed over.
double numberPass(std::string_view text) {
    double sum = 0;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        float value = 0;
        const auto [after, failure] = std::from_chars(at, end, value);
        if (failure == std::errc()) {
            sum += value;
            at = after;
        } else {
            ++at;
        }
    }
    return sum;
}

/// Peak memory of a process that opens the scene and evaluates its mesh, in bytes.
double peakOf(const std::string& vesk, const std::string& scene) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        (void)!freopen("/dev/null", "w", stdout);
        (void)!freopen("/dev/null", "w", stderr);
        execl(vesk.c_str(), "vesk", "run", "--no-plugin", scene.c_str(), "--get", "pPlaneShape1.outMesh",
              nullptr);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

} // namespace

static void benchSceneReading() {
    const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const auto file =
        std::filesystem::temp_directory_path() / ("vesk-bench-" + std::to_string(getpid()) + ".ma");
    std::size_t finalBytes = 0;
    {
        Session session;
        session.run("polyPlane -ch 0 -w 100 -h 100 -sx 999 -sy 999; file -rename \"" + file.string() +
                    "\"; file -save -type \"mayaAscii\";");
        const geom::Mesh mesh = static_cast<nodes::MeshNode*>(session.scene().find("pPlaneShape1"))->mesh();
        finalBytes = mesh.byteSize();
    }
    const double peak = peakOf((here / "vesk").string(), file.string());
    const double read = best(3, [&] {
        Session session;
        if (auto outcome = session.runFile(file); !outcome) std::printf("scene: %s\n", outcome.error.c_str());
        keep(static_cast<nodes::MeshNode*>(session.scene().find("pPlaneShape1"))->mesh());
    });
    const double plain = best(3, [&] {
        const auto buffer = formats::FileBuffer::open(file);
        if (buffer) keep(numberPass(buffer->text()));
    });
    report("read a .ma mesh of 1,000,000 vertices, built", read, "from_chars over the same text", plain, 3);
    reportLimit("  peak memory, of the final arrays", peak / static_cast<double>(finalBytes), "times", 6);
    std::filesystem::remove(file);
}

static const Benchmark registered("scene", benchSceneReading);

} // namespace vesk::bench
