// rayProject on large meshes against the library for rays called bare.

#include "bench/bench.h"
#include "host/data/mesh_data.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"
#include "parallel/loops.h"

#include <embree3/rtcore.h>

#include <filesystem>
#include <string>

namespace vesk::bench {

namespace {

/// A ball of 1,000,002 vertices round one of 1,000,000 triangles, pulled onto it towards the middle.
class Scene {
  public:
    Scene() {
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
        if (const Outcome loaded = session_.plugins().load((folder / "plug-ins" / "Vesk.so").string());
            !loaded)
            std::printf("rayProject: %s\n", loaded.error.c_str());
        run("polySphere -ch 0 -r 2 -sx 1000 -sy 1001 -n outer; polySphere -r 1 -sx 1000 -sy 501 -n inner;"
            "createNode rayProject -n p; connectAttr outerShape.worldMesh[0] p.inGeometry;"
            "connectAttr innerShape.worldMesh[0] p.inCollisionMesh; setAttr p.maxAngle 0;"
            "setAttr p.rayDirectionMode 1; setAttr p.reverseRayDirection 1;");
    }
    void run(const std::string& text) {
        const auto result = session_.run(text);
        if (!result.ok) std::printf("rayProject: %s\n", result.error.c_str());
    }
    geom::Mesh mesh(const char* plug) {
        const Ref<Data> data = graph::pullData(*graph::findPlug(session_.scene(), plug).plug.cell());
        return dynamic_cast<const MeshData&>(*data).geometry();
    }

  private:
    Session session_;
};

/// The same rays, cast at the triangles without any of what the node does with them.
void castBare(const geom::Mesh& from, const geom::Mesh& at, std::vector<MFloatVector>& hits) {
    const RTCDevice device = rtcNewDevice(("threads=" + std::to_string(parallel::threads())).c_str());
    const RTCScene scene = rtcNewScene(device);
    const RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
    auto* points = static_cast<MFloatVector*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, sizeof(MFloatVector), at.points().size()));
    std::copy(at.points().begin(), at.points().end(), points);
    auto* ids = static_cast<int*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0,
                                                          RTC_FORMAT_UINT3, 3 * sizeof(int),
                                                          static_cast<std::size_t>(at.triangleCount())));
    for (const auto& triangle : at.triangles()) {
        for (const int corner : triangle)
            *ids++ = at.topology().faceVertices()[static_cast<std::size_t>(corner)];
    }
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene, geometry);
    rtcCommitScene(scene);
    parallel::inPieces(from.points().size(), 4096, [&](std::size_t begin, std::size_t end) {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        for (std::size_t i = begin; i < end; ++i) {
            const MFloatVector source = from.points()[i];
            RTCRayHit ray{};
            ray.ray.org_x = source.x, ray.ray.org_y = source.y, ray.ray.org_z = source.z;
            ray.ray.dir_x = -source.x, ray.ray.dir_y = -source.y, ray.ray.dir_z = -source.z;
            ray.ray.tfar = 1e9F;
            ray.ray.mask = ~0U;
            ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
            rtcIntersect1(scene, &context, &ray);
            const bool isHit = ray.hit.geomID != RTC_INVALID_GEOMETRY_ID;
            hits[i] = source * (isHit ? 1 - ray.ray.tfar : 1.0F);
        }
    });
    rtcReleaseGeometry(geometry);
    rtcReleaseScene(scene);
    rtcReleaseDevice(device);
}

/// Bytes read and written a second by a plain copy.
double copyBandwidth() {
    const std::vector<double> from(1 << 24, 1.0);
    std::vector<double> to(from.size());
    const double seconds = best(5, [&] {
        std::copy(from.begin(), from.end(), to.begin());
        keep(to.front());
    });
    return 2.0 * static_cast<double>(from.size() * sizeof(double)) / seconds;
}

void benchRayProject() {
    Scene scene;
    const geom::Mesh from = scene.mesh("outerShape.worldMesh[0]");
    std::vector<MFloatVector> hits(from.points().size());
    double node = std::numeric_limits<double>::infinity(), bare = node, again = node;
    double nodeWork = node, bareWork = node, againWork = node; // processor time, of all threads
    // In turns, so that both see the machine in the same states.
    for (int turn = 0; turn < 5; ++turn) {
        scene.run("setAttr polySphere1.radius " + std::to_string(1 + 0.01 * turn));
        const geom::Mesh at = scene.mesh("innerShape.worldMesh[0]");
        const auto measure = [](double& seconds, double& work, const auto& call) {
            seconds = std::min(seconds, best(1, [&] { work = std::min(work, processorSeconds(call)); }));
        };
        measure(node, nodeWork, [&] { keep(scene.mesh("p.outGeometry")); });
        measure(bare, bareWork, [&] { castBare(from, at, hits); });
        scene.run("setAttr p.weight " + std::to_string(1 - 0.1 * turn));
        measure(again, againWork, [&] { keep(scene.mesh("p.outGeometry")); });
    }
    report("rayProject, 1,000,000 vertices onto 1,000,000 triangles", node, "bare rays, scene built", bare,
           1.5);
    std::printf("  processor time: %.0f ms against %.0f ms, ratio %.2f; on %d threads\n", 1e3 * nodeWork,
                1e3 * bareWork, nodeWork / bareWork, parallel::threads());
    std::printf("  with the triangles sorted before: %.0f ms, processor time %.0f ms\n", 1e3 * again,
                1e3 * againWork);
    std::printf("  a plain copy moves %.1f GB/s\n", 1e-9 * copyBandwidth());
}

const Benchmark registered("rayProject", benchRayProject);

} // namespace

} // namespace vesk::bench
