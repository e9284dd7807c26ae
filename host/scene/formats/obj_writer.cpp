#include "host/scene/formats/atomic_file.h"
#include "host/scene/formats/mesh_files.h"
#include "host/scene/formats/mesh_layers.h"

namespace vesk::formats {

namespace {

template <class... Numbers>
void putLine(AtomicFile& file, std::string_view word, Numbers... numbers) {
    file.write(word);
    ((file.put(' '), file.putNumber(numbers)), ...);
    file.put('\n');
}

void putPoints(AtomicFile& file, const std::vector<MFloatVector>& points, const std::vector<MColor>& colors) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        const MFloatVector& p = points[i];
        if (colors.empty()) {
            putLine(file, "v", p.x, p.y, p.z);
        } else {
            putLine(file, "v", p.x, p.y, p.z, colors[i].r, colors[i].g, colors[i].b);
        }
    }
}

/// Ids count from 0, -1 for none.
void putCorner(AtomicFile& file, int point, int uv, int normal) {
    file.put(' ');
    file.putNumber(point + 1);
    if (uv < 0 && normal < 0) return;
    file.put('/');
    if (uv >= 0) file.putNumber(uv + 1);
    if (normal < 0) return;
    file.put('/');
    file.putNumber(normal + 1);
}

void putFaces(AtomicFile& file, const geom::MeshTopology& topology, const MeshLayers& layers) {
    const auto idOf = [](const std::vector<int>& ids, int corner) {
        return ids.empty() ? -1 : ids[static_cast<std::size_t>(corner)];
    };
    const std::vector<int>& vertices = topology.faceVertices();
    int corner = 0;
    for (int face = 0; face < topology.faceCount(); ++face) {
        file.put('f');
        for (const int end = corner + topology.faceSize(face); corner < end; ++corner) {
            putCorner(file, vertices[static_cast<std::size_t>(corner)], idOf(layers.uvIds, corner),
                      idOf(layers.normalIds, corner));
        }
        file.put('\n');
    }
}

} // namespace

Outcome writeObj(const std::filesystem::path& path, const geom::Mesh& mesh, const MeshWriteOptions& options) {
    const auto layers = layersToWrite(mesh, options.normals);
    if (!layers) return Outcome::fail(path.string() + ": " + layers.error());
    AtomicFile file(path);
    file.write("# polygon mesh\n");
    putPoints(file, mesh.points(), layers->colors);
    for (std::size_t i = 0; i < layers->u.size(); ++i)
        putLine(file, "vt", layers->u[i], layers->v[i]);
    for (const MFloatVector& normal : layers->normals)
        putLine(file, "vn", normal.x, normal.y, normal.z);
    putFaces(file, mesh.topology(), *layers);
    return file.commit();
}

} // namespace vesk::formats
