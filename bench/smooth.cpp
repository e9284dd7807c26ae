// smooth: ten passes over a million vertices, and what the projection costs beside its rays.

#include "bench/bench.h"
#include "host/data/mesh_data.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"
#include "nodes/common/mesh_queries.h"
#include "nodes/common/vertex_walks.h"
#include "nodes/smooth/relax.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MPointArray.h>

#include <cmath>
#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

namespace vesk::bench {

namespace {

/// A wavy grid with a deformer on it.
class Scene {
  public:
    explicit Scene(int side) {
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
        const Outcome loaded = session_.plugins().load((folder / "plug-ins" / "Vesk.so").string());
        if (!loaded) std::printf("smooth: %s\n", loaded.error.c_str());
        const std::string divisions = std::to_string(side - 1);
        run("polyPlane -ch 0 -w 100 -h 100 -sx " + divisions + " -sy " + divisions +
            " -n p; createNode groupParts -n g; setAttr g.groupId 5; setAttr g.inputComponents -type "
            "componentList 1 \"vtx[*]\"; createNode smooth -n s; connectAttr g.outputGeometry s.ip[0].ig; "
            "setAttr s.ip[0].gi 5;");
        geom::Mesh mesh = static_cast<MeshData&>(*graph::pullData(cell("pShape.outMesh"))).geometry();
        for (MFloatVector& point : mesh.editPoints())
            point.y = 0.3F * std::sin(point.x) * std::cos(1.3F * point.z);
        data_ = Ref<Data>(new MeshData(std::move(mesh)));
        (void)graph::storeData(cell("g.inputGeometry"), data_);
    }
    void run(const std::string& text) { session_.run(text); }
    /// Seconds of a pull of the output, neighbours being known.
    double pull(int repeats) {
        graph::Cell &envelope = cell("s.envelope"), &output = cell("s.outputGeometry[0]");
        double value = 0.5;
        return best(repeats + 1, [&] {
            const double processor = processorSeconds([&] {
                (void)graph::storeNumber(envelope, value = 1.5 - value);
                keep(graph::pullData(output));
            });
            leastProcessor = std::min(leastProcessor, processor);
        });
    }
    double leastProcessor = 1e9; ///< of all threads together
    MObject mesh() const { return MObject(data_.get()); }

  private:
    graph::Cell& cell(const char* plug) { return *graph::findPlug(session_.scene(), plug).plug.cell(); }

    Session session_;
    Ref<Data> data_;
};

void passes() {
    Scene scene(1000);
    scene.run("setAttr s.iterations 10");
    reportLimit("smooth, 10 passes, 1,000,000 vertices", 1e3 * scene.pull(9), "ms", 120);
    std::printf("  processor time of all threads: %.2f ms\n", 1e3 * scene.leastProcessor);
    scene.run("setAttr s.lookup 1");
    std::printf("  the same by faces: %.2f ms\n", 1e3 * scene.pull(5));
}

/// Seconds of the queries alone that "accurate" asks in some passes.
double queriesAlone(Scene& scene, int count, bool byNormal) {
    MObject object = scene.mesh();
    const MFnMesh mesh(object);
    MPointArray start;
    mesh.getPoints(start);
    MFloatVectorArray normals;
    mesh.getVertexNormals(false, normals);
    const std::size_t size = start.length();
    std::vector<int> vertices(size);
    std::iota(vertices.begin(), vertices.end(), 0);
    MItMeshVertex walk(object);
    const nodes::Links neighbors = nodes::connectedVertices(walk, vertices);
    std::vector<char> moves(size);
    int previous = 0;
    for (std::size_t v = 0; v < size; ++v)
        moves[v] = walk.setIndex(static_cast<int>(v), previous) && !walk.onBoundary();
    std::vector<MPoint> points(&start[0], &start[0] + size), relaxed(size);
    double seconds = 0;
    for (int pass = 0; pass < count; ++pass) {
        nodes::averagePass(neighbors, moves, points, relaxed);
        points = relaxed;
        std::vector<MFloatPoint> sources;
        std::vector<MPoint> asked;
        std::vector<MFloatVector> directions;
        std::vector<std::size_t> whose;
        for (std::size_t v = 0; v < size; ++v) {
            if (!moves[v]) continue;
            whose.push_back(v);
            asked.push_back(points[v]);
            sources.emplace_back(MFloatPoint(static_cast<float>(points[v].x), static_cast<float>(points[v].y),
                                             static_cast<float>(points[v].z)));
            directions.push_back(normals[static_cast<unsigned>(v)]);
        }
        std::vector<nodes::RayHit> hits;
        seconds += best(1, [&] {
            if (!byNormal) {
                const auto nearest = nodes::nearestPoints(object, MMatrix(), asked, 999999999.9);
                for (std::size_t i = 0; i < nearest.size(); ++i)
                    directions[i] = sources[i] - nearest[i].point;
            }
            hits = nodes::firstHits(
                mesh, sources, directions,
                {.maxParam = 2, .bothDirections = true, .tolerance = 1e-6F, .space = MSpace::kObject});
        });
        for (std::size_t i = 0; i < hits.size(); ++i) {
            if (hits[i]) points[whose[i]] = nodes::towards(points[whose[i]], MPoint(hits[i].point), 1);
        }
    }
    return seconds;
}

void projections() {
    constexpr int kPasses = 3;
    Scene scene(450);
    scene.run("setAttr s.iterations " + std::to_string(kPasses) +
              "; setAttr s.preserveVolume 2; setAttr s.maxDistance 2;");
    for (const bool byNormal : {true, false}) {
        scene.run(std::string("setAttr s.mode ") + (byNormal ? "1" : "0"));
        double node = scene.pull(3), alone = queriesAlone(scene, kPasses, byNormal);
        for (int again = 0; again < 2; ++again) {
            node = std::min(node, scene.pull(2));
            alone = std::min(alone, queriesAlone(scene, kPasses, byNormal));
        }
        report(byNormal ? "smooth, \"accurate\" by normals, 3 x 200,000 vertices"
                        : "smooth, \"accurate\" by closest points, the same",
               node, byNormal ? "the rays alone" : "the queries alone", alone, 2);
    }
}

} // namespace

static void benchSmooth() {
    passes();
    projections();
}

static const Benchmark registered("smooth", benchSmooth);

} // namespace vesk::bench
