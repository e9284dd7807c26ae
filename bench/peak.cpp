// peak on a mesh of a million vertices: beside a plain copy of the points, and beside reading and writing
// them once through the API, which is what a deformer cannot do without.

#include "bench/bench.h"
#include "host/data/mesh_data.h"
#include "host/graph/scene.h"
#include "host/nodes/mesh_node.h"
#include "host/session/session.h"
#include "nodes/peak/displacement.h"

#include <maya/MFloatPointArray.h>
#include <maya/MFnMesh.h>

#include <filesystem>
#include <vector>

namespace vesk::bench {

namespace {

constexpr int kRepeats = 15;

graph::Cell& cellNamed(Session& session, const char* plug) {
    return *graph::findPlug(session.scene(), plug).plug.cell();
}

/// The points read from one mesh and written to another.
void copyThroughApi(const Ref<MeshData>& mesh) {
    MFloatPointArray points;
    MFnMesh(MObject(mesh.get())).getPoints(points);
    const Ref<Data> copy = mesh->clone();
    MObject object(copy.get());
    MFnMesh(object).setPoints(points);
    keep(copy);
}

void benchPeak() {
    Session session;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    const Outcome loaded = session.plugins().load((folder / "plug-ins" / "Vesk.so").string());
    if (!loaded || !session
                        .run("polyPlane -sx 999 -sy 999 -ch 0 -n p; deformer -type peak -n d p; "
                             "setAttr d.distance 0.5")
                        .ok) {
        std::printf("peak: the scene could not be made. %s\n", loaded.error.c_str());
        return;
    }
    graph::Cell& distance = cellNamed(session, "d.distance");
    graph::Cell& output = cellNamed(session, "d.og[0]");
    auto& original = dynamic_cast<nodes::MeshNode&>(*session.scene().find("pShapeOrig"));
    const auto input = graph::pullAs<MeshData>(cellNamed(session, "dGroupParts.og"));
    const geom::Mesh& mesh = input->geometry();
    const auto& points = mesh.points();

    const double plain = best(kRepeats, [&] {
        const std::vector<MFloatVector> copy(points);
        keep(copy);
    });
    std::printf("peak: a copy of %zu points moves %.1f GB/s\n", points.size(),
                2e-9 * static_cast<double>(points.size() * sizeof(MFloatVector)) / plain);
    const double api = best(kRepeats, [&] { copyThroughApi(input); });

    const auto& normals = mesh.vertexNormals();
    std::vector<float> moved(4 * points.size());
    const double kernel = best(kRepeats, [&] {
        nodes::displace({&points.front().x, 3 * points.size()}, {{}, normals}, {0.3, 1, {}, {}}, {}, moved);
        keep(moved);
    });
    report("peak: the points alone, plain arrays", kernel, "a copy of the points", plain, 2);

    double value = 0;
    const auto pull = [&] {
        (void)graph::storeNumber(distance, ++value);
        keep(graph::pullData(output));
    };
    pull();
    const double warm = best(kRepeats, pull);
    report("peak: another distance, normals known", warm, "a copy of the points", plain, 2);
    report("", warm, "read and written through the API", api, 2);
    graph::Cell& painted = graph::findPlug(session.scene(), "d.wl[0]").plug.cell()->child(0);
    for (std::size_t i = 0; i < points.size(); ++i)
        (void)graph::storeNumber(painted.element(static_cast<int>(i)), 0.5);
    pull();
    report("peak: another distance, all points painted", best(kRepeats, pull), "without paint", warm, 10);
    const double cold = best(5, [&] {
        geom::Mesh fresh = original.mesh();
        (void)fresh.editPoints(); // takes its derived values away
        (void)original.setMesh(std::move(fresh));
        pull();
    });
    const double found = best(5, [&] {
        geom::Mesh fresh = mesh;
        (void)fresh.editPoints();
        keep(fresh.vertexNormals());
    });
    report("peak: another input, normals to be found", cold, "the mesh's own vertex normals", found, 2);
}

const Benchmark registered("peak", benchPeak);

} // namespace

} // namespace vesk::bench
