// attributeTransfer with all five switches on a mesh of 100,000 vertices: with five primitive volumes and
// with a cloud, beside plain loops over arrays and ramps that are already read; and how clouds of any size
// cost.

#include "bench/bench.h"
#include "bench/plain_transfer.h"
#include "host/data/mesh_data.h"
#include "host/graph/evaluate.h"
#include "host/nodes/mesh_node.h"
#include "host/session/session.h"
#include "nodes/common/bounding_volumes_test.h"

#include <maya/MMatrix.h>

#include <filesystem>
#include <random>

namespace vesk::bench {

namespace {

using nodes::plain::Volume;
using volume::Vec3;

constexpr int kVertices = 100000;

/// What the plain loops start from, and the settings of both.
struct Plain {
    nodes::TransferSettings settings;
    nodes::CurveRamp kernel{{{0, {1}, 2}, {1, {0}, 1}}};
    nodes::TransferPoints points;
    std::vector<char> inside;
    std::vector<Volume> volumes;

    nodes::TransferPoints run() const {
        nodes::TransferPoints result = points;
        nodes::plain::transfer(settings, volumes, kernel, inside, result);
        return result;
    }
    nodes::TransferPoints runFast() const {
        volume::VolumeList list;
        volume::CloudStore clouds;
        std::vector<nodes::VolumeRamps> ramps;
        for (const Volume& v : volumes) {
            list.add(v.controls, v.placement);
            ramps.push_back(v.ramps);
            if (v.controls.kind == volume::kCloud) clouds.add(v.cloud);
        }
        nodes::TransferPoints result = points;
        nodes::transfer(settings, {list, clouds, ramps, kernel}, inside, result);
        return result;
    }
};

/// A session with the node `t` on a coloured plane from -50 to 50.
class Scene {
  public:
    Scene() {
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
        if (const Outcome loaded = session.plugins().load((folder / "plug-ins" / "Vesk.so").string());
            !loaded)
            std::printf("volumes: %s\n", loaded.error.c_str());
        run("polyPlane -ch 0 -w 100 -h 100 -sx 399 -sy 249; polyColorPerVertex -rgb 0.2 0.4 0.6 pPlane1;"
            "createNode attributeTransfer -n t; connectAttr pPlaneShape1.worldMesh[0] t.inGeometry;"
            "string $s; for ($s in {\"position\", \"weight\", \"color\", \"normal\", \"radius\"})"
            "setAttr (\"t.\" + $s) 1;");
        readPlane();
    }

    void run(const std::string& text) {
        const auto result = session.run(text);
        if (!result.ok) std::printf("volumes: %s\n", result.error.c_str());
    }

    void addVolume(int kind, const std::string& placing) {
        const std::string name = "v" + std::to_string(plain.volumes.size());
        run(nodes::volumeText(name, kind, "t", plain.volumes.size()) + placing);
        Volume v;
        v.controls = {1, kind, true, {1, 1, {1, 1, 1}, {1, 1, 1}}, volume::kAlongX};
        const nodes::CurveRamp falloff({{0, {1}, 1}, {1, {0}, 1}}), one({{0, {1}, 1}});
        v.ramps = {falloff, falloff, one, falloff, falloff, nodes::ColorRamp({{0, {1, 1, 1}, 1}})};
        const auto numbers = *session.run("getAttr " + name + "T.matrix").value.asFloatArray();
        MMatrix matrix;
        for (unsigned i = 0; i < 16; ++i)
            matrix(i / 4, i % 4) = numbers[i];
        matrix.get(v.placement.matrix.rows);
        matrix.inverse().get(v.placement.inverse.rows);
        v.placement.translation = {numbers[12], numbers[13], numbers[14]};
        plain.volumes.push_back(v);
    }

    /// Seconds of one evaluation.
    double evaluation() {
        graph::Cell& output = *graph::findPlug(session.scene(), "t.outGeometry").plug.cell();
        graph::Cell& input = *graph::findPlug(session.scene(), "t.groupId").plug.cell();
        (void)graph::pullData(output);
        int groupId = 0;
        return best(5, [&] {
            (void)graph::storeNumber(input, ++groupId); // dirties the outputs and changes nothing
            keep(graph::pullData(output));
        });
    }

    bool gives(const nodes::TransferPoints& expected) {
        const auto same = [&](const char* plug, const std::vector<double>& values) {
            const bool equal = *session.run(std::string("getAttr t.") + plug).value.asFloatArray() == values;
            if (!equal) std::printf("volumes: t.%s differs from the plain loops\n", plug);
            return equal;
        };
        std::vector<double> positions, normals;
        for (const Vec3& p : expected.positions)
            positions.insert(positions.end(), {p.x, p.y, p.z});
        for (const Vec3& n : expected.normals)
            normals.insert(normals.end(), {n.x, n.y, n.z});
        return same("outPositionPP", positions) && same("outWeightPP", expected.weights) &&
               same("outRgbaPP", expected.outRgba) && same("outNormalPP", normals) &&
               same("outRadiusPP", expected.radii);
    }

    Session session;
    Plain plain;

  private:
    void readPlane() {
        const geom::Mesh mesh = static_cast<nodes::MeshNode*>(session.scene().find("pPlaneShape1"))->mesh();
        auto& p = plain.points;
        for (const auto& at : mesh.points())
            p.positions.push_back({double(at.x), double(at.y), double(at.z)});
        for (const auto& n : mesh.vertexNormals())
            p.normals.push_back({double(n.x), double(n.y), double(n.z)});
        for (const auto& c : mesh.vertexColors(0))
            p.colors.push_back({c.r, c.g, c.b, c.a});
        p.radii.assign(p.positions.size(), 0);
        p.weights.assign(p.positions.size(), 0);
        p.outRgba.assign(4 * p.positions.size(), 0);
        plain.inside.assign(p.positions.size(), 1);
        auto& s = plain.settings;
        s.position = s.weight = s.color = s.normal = s.radius = true;
    }
};

void benchPrimitives() {
    Scene scene;
    scene.addVolume(0, "setAttr v0T.scale 20 20 20; setAttr v0T.translate -20 0 0");
    scene.addVolume(1, "setAttr v1T.scale 15 15 15; setAttr v1T.translate 20 0 10; setAttr v1T.rotateY 30");
    scene.addVolume(2, "setAttr v2T.scale 10 10 10; setAttr v2T.translate 0 0 -20; setAttr v2T.rotateZ 90");
    scene.addVolume(0, "setAttr v3T.scale 30 30 30");
    scene.addVolume(1, "setAttr v4T.scale 12 12 12; setAttr v4T.translate -10 0 25");
    const double node = scene.evaluation();
    if (!scene.gives(scene.plain.run())) return;
    const double plain = best(5, [&] { keep(scene.plain.run()); });
    report("attributeTransfer, 5 volumes, 100,000 vertices", node, "plain loops, ramps read", plain, 2);
    std::printf("  of it the points themselves: %.2f ms\n",
                1e3 * best(5, [&] { keep(scene.plain.runFast()); }));
}

/// Spheres that cover about ten vertices each, over as much of the plane as they need.
volume::Cloud cloudOf(std::size_t count) {
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> across(-50, 50), height(-0.1, 0.1);
    volume::Cloud cloud;
    for (std::size_t i = 0; i < count; ++i)
        cloud.points.push_back(
            {{{across(random), height(random), across(random)}, 0.57}, {0, 1, 0}, 1, {1, 1, 1, 1}});
    return cloud;
}

void benchCloud() {
    Scene scene;
    const volume::Cloud cloud = cloudOf(10000);
    std::string positions;
    for (const auto& point : cloud.points) {
        char text[100];
        const Vec3& p = point.sphere.center;
        std::snprintf(text, sizeof text, " %.17g %.17g %.17g", p.x, p.y, p.z);
        positions += text;
    }
    scene.addVolume(3,
                    "setAttr v0.pointRadius 0.57; createNode particle -n seeds; setAttr seeds.position -type "
                    "\"vectorArray\" 10000" +
                        positions + "; connectAttr seeds.position v0.inParticlePositionPP");
    scene.plain.volumes[0].cloud = cloud;
    const double node = scene.evaluation();
    nodes::TransferPoints expected;
    const double plain = best(1, [&] { expected = scene.plain.run(); });
    if (!scene.gives(expected)) return;
    report("attributeTransfer, cloud of 10,000, 100,000 vertices", node, "plain loops, all pairs", plain,
           1.0 / 50);
    for (const std::size_t count : {1000U, 10000U, 100000U}) {
        scene.plain.volumes[0].cloud = cloudOf(count);
        const double seconds = best(3, [&] { keep(scene.plain.runFast()); });
        std::printf("  the points themselves, cloud of %6zu: %8.2f ms\n", count, 1e3 * seconds);
    }
}

void benchVolumes() {
    benchPrimitives();
    benchCloud();
}

} // namespace

static const Benchmark registered("volumes", benchVolumes);

} // namespace vesk::bench
