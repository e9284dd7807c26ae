// pointAttributeToArray with all seven switches on a million vertices, beside a plain loop that writes the
// same values into arrays of the right length.

#include "bench/bench.h"
#include "host/data/mesh_data.h"
#include "host/graph/evaluate.h"
#include "host/nodes/mesh_node.h"
#include "host/session/session.h"

#include <maya/MMatrix.h>
#include <maya/MTransformationMatrix.h>

#include <filesystem>
#include <vector>

namespace vesk::bench {

namespace {

struct Arrays {
    explicit Arrays(std::size_t count)
        : ids(count), counts(count), mapIds(count), positions(count), rotations(count), normals(count),
          binormals(count), tangents(count), rgba(4 * count), maps(2 * count), shared(2 * count) {}
    std::vector<int> ids, counts, mapIds;
    std::vector<MVector> positions, rotations, normals, binormals, tangents;
    std::vector<double> rgba, maps, shared;
};

MVector summed(MVector& running, const std::vector<MFloatVector>& vectors, std::span<const int> corners) {
    for (const int corner : corners)
        running += MVector(vectors[static_cast<std::size_t>(corner)]);
    if (running.length() < 0.00001) running = MVector(vectors[static_cast<std::size_t>(corners[0])]);
    running.normalize();
    return running;
}

/// For a mesh of which every vertex has one UV.
void plainLoop(const geom::Mesh& mesh, Arrays& out) {
    const auto& topology = mesh.topology();
    const auto& vertexNormals = mesh.vertexNormals();
    const auto frames = mesh.cornerFrames(0);
    const auto colors = mesh.vertexColors(0);
    const auto& uvs = mesh.uvSet(0);
    MVector t, b;
    for (std::size_t i = 0; i < out.ids.size(); ++i) {
        const auto corners = topology.cornersOfVertex(static_cast<int>(i));
        out.ids[i] = static_cast<int>(i);
        out.positions[i] = MVector(mesh.points()[i]);
        const MVector n(vertexNormals[i]);
        summed(t, frames.tangents, corners);
        const double angle = n.angle(t);
        if (angle >= 0.01 && angle <= 3.13) {
            b = n ^ t;
            b.normalize();
            t = n ^ b;
            t.normalize();
        } else {
            summed(b, frames.binormals, corners);
            t = n ^ b;
            t.normalize();
            b = n ^ t;
            b.normalize();
        }
        MMatrix matrix;
        for (unsigned k = 0; k < 3; ++k) {
            matrix[0][k] = n[k];
            matrix[1][k] = t[k];
            matrix[2][k] = b[k];
        }
        double angles[3];
        MTransformationMatrix::RotationOrder order = MTransformationMatrix::kXYZ;
        MTransformationMatrix(matrix).getRotation(angles, order);
        out.rotations[i] = MVector(angles[0], angles[1], angles[2]) * 57.29582;
        out.normals[i] = n;
        out.binormals[i] = summed(b, frames.binormals, corners);
        out.tangents[i] = summed(t, frames.tangents, corners);
        const MColor& c = colors[i];
        double* rgba = &out.rgba[4 * i];
        rgba[0] = c.r;
        rgba[1] = c.g;
        rgba[2] = c.b;
        rgba[3] = c.a;
        const int id = uvs.ids[static_cast<std::size_t>(corners[0])];
        out.counts[i] = 1;
        out.mapIds[i] = id;
        out.maps[2 * i] = out.shared[2 * i] = uvs.u[static_cast<std::size_t>(id)];
        out.maps[2 * i + 1] = out.shared[2 * i + 1] = uvs.v[static_cast<std::size_t>(id)];
    }
}

} // namespace

static void benchPointAttributes() {
    Session session;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    const Outcome loaded = session.plugins().load((folder / "plug-ins" / "Vesk.so").string());
    if (!loaded) {
        std::printf("points: %s\n", loaded.error.c_str());
        return;
    }
    session.run(
        "polyPlane -ch 0 -w 100 -h 100 -sx 999 -sy 999; polyColorPerVertex -rgb 0.2 0.4 0.6 pPlane1;"
        "createNode pointAttributeToArray -n p; connectAttr pPlaneShape1.worldMesh[0] p.inGeometry;"
        "string $s; for ($s in {\"pointPosition\", \"pointRotation\", \"pointNormal\", \"pointTangent\","
        "\"pointBinormal\", \"pointColor\", \"mapData\"}) setAttr (\"p.\" + $s) 1;");
    auto& scene = session.scene();
    graph::Cell& output = *graph::findPlug(scene, "p.outPositionPP").plug.cell();
    graph::Cell& input = *graph::findPlug(scene, "p.groupId").plug.cell();
    const geom::Mesh mesh = static_cast<nodes::MeshNode*>(scene.find("pPlaneShape1"))->mesh();
    (void)graph::pullData(output);
    int groupId = 0;
    const double node = best(5, [&] {
        (void)graph::storeNumber(input, ++groupId); // dirties the outputs and changes nothing
        keep(graph::pullData(output));
    });
    Arrays arrays(static_cast<std::size_t>(mesh.vertexCount()));
    const double plain = best(5, [&] {
        plainLoop(mesh, arrays);
        keep(arrays);
    });
    report("pointAttributeToArray, 7 switches, 1,000,000 vertices", node, "plain loop, arrays ready", plain,
           3);
}

static const Benchmark registered("points", benchPointAttributes);

} // namespace vesk::bench
