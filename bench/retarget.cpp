// Nearest points of a large mesh for many points, beside the library's queries called bare; and `retarget` on
// a mesh of 250,000 points: binding it, and one frame.

#include "bench/bench.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"
#include "nodes/common/mesh_queries.h"
#include "parallel/loops.h"

#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>

#include <embree3/rtcore.h>

#include <cmath>
#include <filesystem>
#include <random>

namespace vesk::bench {

namespace {

/// Milliseconds of processor time that a call costs each thread, least of several calls: what the clock shows
/// on an idle machine, if the threads share the work evenly.
template <class F>
double perThread(int repeats, F&& call) {
    double least = INFINITY;
    for (int i = 0; i < repeats; ++i)
        least = std::min(least, processorSeconds(call));
    return 1e3 * least / parallel::threads();
}

// --- nearest points
// ---------------------------------------------------------------------------------------------------

double height(double x, double y) {
    return std::sin(0.11 * x) * std::cos(0.07 * y) * 8 + std::sin(x + y) * 0.3;
}

/// A mesh of side * side squares over the ground.
MObject hills(int side) {
    MPointArray points;
    MIntArray counts(static_cast<unsigned>(side * side), 4), connects;
    for (int y = 0; y <= side; ++y) {
        for (int x = 0; x <= side; ++x) {
            points.append(MPoint(x, y, height(x, y)));
            if (x == side || y == side) continue;
            const int v = y * (side + 1) + x;
            for (const int corner : {v, v + 1, v + side + 2, v + side + 1})
                connects.append(corner);
        }
    }
    MObject data = MFnMeshData().create();
    MFnMesh().create(static_cast<int>(points.length()), side * side, points, counts, connects, data);
    return data;
}

/// Vertices of a finer mesh that lies about the hills, up to a square away from them.
std::vector<MPoint> pointsNear(int side, int count) {
    std::vector<MPoint> points;
    for (int i = 0; i < count; ++i) {
        for (int k = 0; k < count; ++k) {
            const double x = (k + 0.31) * side / count, y = (i + 0.47) * side / count;
            points.emplace_back(x, y, height(x, y) + std::sin(0.9 * x) * std::sin(1.3 * y));
        }
    }
    return points;
}

/// The library as one would first call it: in the order of the points, distances in single precision.
class BareQueries {
  public:
    explicit BareQueries(const MFnMesh& mesh)
        : device_(rtcNewDevice(("threads=" + std::to_string(parallel::threads())).c_str())),
          scene_(rtcNewScene(device_)), points_(mesh.getRawPoints()) {
        MIntArray counts, vertices;
        mesh.getTriangles(counts, vertices);
        ids_.resize(vertices.length());
        for (unsigned i = 0; i < vertices.length(); ++i)
            ids_[i] = static_cast<unsigned>(vertices[i]);
        RTCGeometry geometry = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_TRIANGLE);
        const std::size_t floats = 3 * static_cast<std::size_t>(mesh.numVertices());
        auto* to = static_cast<float*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, 12, floats / 3));
        std::copy_n(points_, floats, to);
        auto* ids = static_cast<unsigned*>(rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0,
                                                                   RTC_FORMAT_UINT3, 12, ids_.size() / 3));
        std::copy(ids_.begin(), ids_.end(), ids);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene_, geometry);
        rtcReleaseGeometry(geometry);
        rtcCommitScene(scene_);
    }
    BareQueries(const BareQueries&) = delete;
    BareQueries& operator=(const BareQueries&) = delete;
    ~BareQueries() {
        rtcReleaseScene(scene_);
        rtcReleaseDevice(device_);
    }

    std::vector<float> distances(const std::vector<MPoint>& points) const {
        std::vector<float> found(points.size());
        parallel::inPieces(points.size(), 4096, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                RTCPointQuery query{};
                query.x = static_cast<float>(points[i].x), query.y = static_cast<float>(points[i].y);
                query.z = static_cast<float>(points[i].z);
                query.radius = INFINITY;
                RTCPointQueryContext context;
                rtcInitPointQueryContext(&context);
                rtcPointQuery(scene_, &query, &context, visit, const_cast<BareQueries*>(this));
                found[i] = query.radius;
            }
        });
        return found;
    }

  private:
    static bool visit(RTCPointQueryFunctionArguments* arguments) {
        const auto& self = *static_cast<BareQueries*>(arguments->userPtr);
        const unsigned* ids = &self.ids_[3 * static_cast<std::size_t>(arguments->primID)];
        const auto at = [&](int k) {
            return MFloatVector(self.points_ + 3 * static_cast<std::size_t>(ids[k]));
        };
        RTCPointQuery& query = *arguments->query;
        const float distance = distanceTo({query.x, query.y, query.z}, at(0), at(1), at(2));
        if (!(distance < query.radius)) return false;
        query.radius = distance;
        return true;
    }
    /// As Ericson has it.
    static float distanceTo(const MFloatVector& p, const MFloatVector& a, const MFloatVector& b,
                            const MFloatVector& c) {
        const MFloatVector ab = b - a, ac = c - a, ap = p - a, bp = p - b, cp = p - c;
        const float d1 = ab * ap, d2 = ac * ap, d3 = ab * bp, d4 = ac * bp, d5 = ab * cp, d6 = ac * cp;
        const float va = d3 * d6 - d5 * d4, vb = d5 * d2 - d1 * d6, vc = d1 * d4 - d3 * d2;
        MFloatVector q;
        if (d1 <= 0 && d2 <= 0) {
            q = a;
        } else if (d3 >= 0 && d4 <= d3) {
            q = b;
        } else if (d6 >= 0 && d5 <= d6) {
            q = c;
        } else if (vc <= 0 && d1 >= 0 && d3 <= 0) {
            q = a + ab * (d1 / (d1 - d3));
        } else if (vb <= 0 && d2 >= 0 && d6 <= 0) {
            q = a + ac * (d2 / (d2 - d6));
        } else if (va <= 0 && d4 - d3 >= 0 && d5 - d6 >= 0) {
            q = b + (c - b) * ((d4 - d3) / ((d4 - d3) + (d5 - d6)));
        } else {
            q = a + (ab * vb + ac * vc) / (va + vb + vc);
        }
        return (p - q).length();
    }

    RTCDevice device_;
    RTCScene scene_;
    const float* points_;
    std::vector<unsigned> ids_;
};

void benchNearestPoints() {
    constexpr int side = 708, count = 1000; // squares and points along a side
    MObject data = hills(side);
    MFnMesh mesh(data);
    std::vector<MPoint> points = pointsNear(side, count);
    const double built = best(3, [&] {
        mesh.setPoint(0, MPoint(0, 0, 0)); // so that what is kept for queries is made anew
        keep(nodes::nearestPoints(data, MMatrix(), std::span(points).first(1)));
    });
    const double bareBuilt = best(3, [&] { keep(BareQueries(mesh)); });
    const BareQueries bare(mesh);
    const auto compare = [&](const char* what) {
        std::vector<nodes::NearestPoint> nearest;
        std::vector<float> distances;
        const double ours = best(5, [&] { nearest = nodes::nearestPoints(data, MMatrix(), points); });
        const double theirs = best(3, [&] { distances = bare.distances(points); });
        report(what, ours, "the library's queries alone", theirs, 1);
        std::printf("  processor time of a thread: %.0f ms, the library's %.0f ms\n",
                    perThread(3, [&] { keep(nodes::nearestPoints(data, MMatrix(), points)); }),
                    perThread(2, [&] { keep(bare.distances(points)); }));
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double distance = MPoint(nearest[i].point).distanceTo(points[i]);
            if (std::abs(distance - static_cast<double>(distances[i])) < 1e-3) continue;
            std::printf("  nearest points: %zu differs\n", i);
            break;
        }
        return ours;
    };
    std::printf("  %d threads, %d triangles; sorted in %.0f ms, the library's own in %.0f ms\n",
                parallel::threads(), 2 * side * side, 1e3 * built, 1e3 * bareBuilt);
    const double ordered = compare("nearest points of 1,000,000 triangles for 1,000,000 points");
    reportLimit("the same, a million points", ordered, "s", 1);
    reportLimit("the same with the sorting of the triangles", ordered + built, "s", 1);
    std::shuffle(points.begin(), points.end(), std::mt19937(1));
    compare("the same, the points in no order");
    points = pointsNear(side, count / 4);
    for (MPoint& point : points)
        point.z += 30;
    compare("the same, 62,500 points 30 squares above");
}

// --- the node
// ---------------------------------------------------------------------------------------------------------

void benchNode() {
    Session session;
    const auto run = [&](const std::string& text) {
        const auto result = session.run(text);
        if (!result.ok) std::printf("retarget: %s\n", result.error.c_str());
    };
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    if (const Outcome loaded = session.plugins().load((folder / "plug-ins" / "Vesk.so").string()); !loaded)
        std::printf("retarget: %s\n", loaded.error.c_str());
    run("polySphere -ch 0 -r 1.1 -sx 500 -sy 501 -n d; polySphere -ch 0 -r 1 -sx 250 -sy 200 -n a;"
        "polySphere -ch 0 -r 1 -sx 250 -sy 200 -n b; setAttr b.scale 1.5 0.5 1; createNode retarget -n r;"
        "connectAttr dShape.worldMesh[0] r.inGeometry; connectAttr aShape.worldMesh[0] r.inReferenceMesh;"
        "connectAttr bShape.worldMesh[0] r.inReferenceMesh2; setAttr r.useComponents 0;");
    const auto cell = [&](const char* plug) { return graph::findPlug(session.scene(), plug).plug.cell(); };
    graph::Cell& output = *cell("r.outGeometry");
    keep(graph::pullData(output));
    double step = 0;
    const auto move = [&] {
        (void)graph::storeNumber(*cell("b.translateX"), step += 0.01);
        keep(graph::pullData(output));
    };
    const auto bind = [&] {
        (void)graph::storeNumber(*cell("a.translateX"), step += 0.001); // its triangles are sorted anew
        (void)graph::storeNumber(*cell("r.setInitialState"), 1);
        keep(graph::pullData(output));
    };
    const double frame = best(15, move), binding = best(5, bind);
    std::printf("  processor time of a thread: a frame %.1f ms, binding %.0f ms\n", perThread(15, move),
                perThread(5, bind));
    reportLimit("retarget, binding 250,002 points to 50,000 faces", binding, "s", 0.4);
    reportLimit("retarget, one frame of them", frame, "s", 0.02);
}

} // namespace

static const Benchmark nearest("nearest", benchNearestPoints);
static const Benchmark registered("retarget", benchNode);

} // namespace vesk::bench
