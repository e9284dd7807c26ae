// tensionMap on a million vertices: the kernel over plain arrays, and the whole node.

#include "bench/bench.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"
#include "nodes/tensionMap/tension.h"
#include "parallel/loops.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

namespace vesk::bench {

namespace {

constexpr int kSide = 1000;
constexpr std::size_t kVertices = kSide * kSide, kGrain = 16384;

/// A grid and the runs of its vertices, the neighbours read.
struct Grid {
    std::vector<int> vertices;
    std::vector<float> flat, waves;
    std::vector<MFloatVector> flatNormals, waveNormals;
    std::vector<nodes::TensionRun> runs;

    Grid() {
        for (int i = 0; i < static_cast<int>(kVertices); ++i) {
            const auto x = static_cast<float>(i % kSide), z = static_cast<float>(i / kSide);
            vertices.push_back(i);
            flat.insert(flat.end(), {x, 0, z});
            waves.insert(waves.end(), {x, std::sin(0.3F * x), z * 1.01F});
            flatNormals.emplace_back(0.0F, 1.0F, 0.0F);
            const float lean = 0.3F * std::cos(0.3F * x), length = std::sqrt(1 + lean * lean);
            waveNormals.emplace_back(-lean / length, 1 / length, 0.0F);
        }
        for (std::size_t begin = 0; begin < kVertices; begin += kGrain) {
            auto& run = runs.emplace_back();
            run.vertices = std::span(vertices).subspan(begin, std::min(kGrain, kVertices - begin));
            for (const int v : run.vertices) {
                if (v % kSide > 0) run.neighbors.ids.push_back(v - 1);
                if (v >= kSide) run.neighbors.ids.push_back(v - kSide);
                if (v % kSide + 1 < kSide) run.neighbors.ids.push_back(v + 1);
                if (v + kSide < static_cast<int>(kVertices)) run.neighbors.ids.push_back(v + kSide);
                run.neighbors.endList();
            }
            run.restNeighbors = run.neighbors;
            run.isSkipped.resize(run.vertices.size());
        }
    }
};

struct Cost {
    double seconds = 0, processor = 1e9; ///< the latter of all threads together
};

template <class Kernel>
Cost cost(const Grid& grid, Kernel kernel) {
    Cost least;
    least.seconds = best(25, [&] {
        const double processor = processorSeconds([&] {
            parallel::inPieces(grid.runs.size(), 1, [&](std::size_t begin, std::size_t) {
                std::vector<double> tensions = kernel(grid.runs[begin]);
                for (double& tension : tensions)
                    tension = nodes::weightedTension(tension, 1, 1);
                keep(tensions);
            });
        });
        least.processor = std::min(least.processor, processor);
    });
    return least;
}

void kernels() {
    const Grid grid;
    const Cost distances = cost(grid, [&](const nodes::TensionRun& run) {
        return nodes::distanceTensions(run, grid.waves.data(), grid.flat.data());
    });
    reportLimit("tensionMap, \"Distance\", kernel on 1,000,000 vertices", 1e3 * distances.seconds, "ms", 15);
    const nodes::Directions now(grid.waveNormals), rest(grid.flatNormals);
    const Cost angles =
        cost(grid, [&](const nodes::TensionRun& run) { return nodes::angleTensions(run, now, rest); });
    reportLimit("tensionMap, \"In-Between Angle\", the same, normals ready", 1e3 * angles.seconds, "ms", 45);
    std::printf("  processor time of all threads: %.2f and %.2f ms\n", 1e3 * distances.processor,
                1e3 * angles.processor);
}

double pull(Session& session, graph::Cell& output) {
    graph::Cell& alpha = *graph::findPlug(session.scene(), "t.alpha").plug.cell();
    double value = 0;
    return best(15, [&] {
        (void)graph::storeNumber(alpha, ++value);
        keep(graph::pullData(output));
    });
}

void wholeNode() {
    Session session;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    const Outcome loaded = session.plugins().load((folder / "plug-ins" / "Vesk.so").string());
    if (!loaded) std::printf("tensionMap: %s\n", loaded.error.c_str());
    session.run("polyPlane -ch 0 -w 100 -h 100 -sx 999 -sy 999 -n rest; polyPlane -ch 0 -w 110 -h 95 -sx 999 "
                "-sy 999 -n now; createNode tensionMap -n t; connectAttr restShape.outMesh t.restGeometry; "
                "connectAttr nowShape.outMesh t.inGeometry;");
    graph::Cell& output = *graph::findPlug(session.scene(), "t.outTensionPP").plug.cell();
    for (const char* mode : {"Distance", "In-Between Angle"}) {
        for (const char* update : {"arrays", "arrays and colours"}) {
            session.run(std::string("setAttr t.mode ") + (mode[0] == 'D' ? "0" : "1") +
                        "; setAttr t.update " + (update[6] == 0 ? "1" : "0"));
            std::printf("  the node, \"%s\", %s: %.2f ms\n", mode, update, 1e3 * pull(session, output));
        }
    }
}

} // namespace

static void benchTensionMap() {
    kernels();
    wholeNode();
}

static const Benchmark registered("tensionMap", benchTensionMap);

} // namespace vesk::bench
