#include "host/scene/formats/atomic_file.h"
#include "host/scene/formats/mesh_files.h"
#include "host/scene/formats/mesh_layers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace vesk::formats {

namespace {

constexpr int largestByte = std::numeric_limits<std::uint8_t>::max();

class PlyWriter {
  public:
    PlyWriter(AtomicFile& file, const geom::Mesh& mesh, MeshLayers layers, PlyEncoding encoding)
        : file_(file), mesh_(mesh), layers_(std::move(layers)), ascii_(encoding == PlyEncoding::Ascii),
          vertexUvIds_(idsPerVertex(mesh, layers_.uvIds)),
          vertexNormalIds_(idsPerVertex(mesh, layers_.normalIds)) {
        const std::vector<int>& start = mesh.topology().faceStart();
        for (std::size_t face = 0; face + 1 < start.size(); ++face)
            longLists_ = longLists_ || 2 * (start[face + 1] - start[face]) > largestByte;
        hasNormals_ = !layers_.normalIds.empty() && vertexNormalIds_;
        hasVertexUvs_ = !layers_.uvIds.empty() && vertexUvIds_;
        hasCornerUvs_ = !layers_.uvIds.empty() && !vertexUvIds_;
        byteColors_ = std::all_of(layers_.colors.begin(), layers_.colors.end(), [](const MColor& c) {
            return std::min({c.r, c.g, c.b, c.a}) >= 0.0F && std::max({c.r, c.g, c.b, c.a}) <= 1.0F;
        });
    }

    void write() {
        putHeader();
        for (int vertex = 0; vertex < mesh_.vertexCount(); ++vertex)
            putVertex(static_cast<std::size_t>(vertex));
        for (int face = 0; face < mesh_.faceCount(); ++face)
            putFace(face);
    }

  private:
    void putHeader();
    void putVertex(std::size_t vertex);
    void putColor(const MColor& color);
    void putByte(int value);
    void putFace(int face);
    void putLength(int length);
    void putCornerUvs(int first, int last);

    template <class T>
    void put(T value) {
        if (!ascii_) return file_.putRaw(value);
        if (!std::exchange(atLineStart_, false)) file_.put(' ');
        file_.putNumber(value);
    }
    void endRow() {
        if (!ascii_) return;
        file_.put('\n');
        atLineStart_ = true;
    }

    AtomicFile& file_;
    const geom::Mesh& mesh_;
    MeshLayers layers_;
    bool ascii_;
    std::optional<std::vector<int>> vertexUvIds_, vertexNormalIds_;
    bool longLists_ = false; ///< two values a corner of some face are more than a byte counts
    bool hasNormals_ = false, hasVertexUvs_ = false, hasCornerUvs_ = false;
    bool byteColors_ = false;
    bool atLineStart_ = true;
};

void PlyWriter::putHeader() {
    file_.write("ply\nformat ");
    file_.write(ascii_ ? "ascii" : "binary_little_endian");
    file_.write(" 1.0\nelement vertex " + std::to_string(mesh_.vertexCount()) + "\n");
    file_.write("property float x\nproperty float y\nproperty float z\n");
    if (hasNormals_) file_.write("property float nx\nproperty float ny\nproperty float nz\n");
    if (hasVertexUvs_) file_.write("property float s\nproperty float t\n");
    if (!layers_.colors.empty()) {
        for (const char* name : {"red", "green", "blue", "alpha"})
            file_.write(std::string("property ") + (byteColors_ ? "uchar " : "float ") + name + "\n");
    }
    file_.write("element face " + std::to_string(mesh_.faceCount()) + "\n");
    const std::string list = std::string("property list ") + (longLists_ ? "int" : "uchar");
    file_.write(list + " int vertex_indices\n");
    if (hasCornerUvs_) file_.write(list + " float texcoord\n");
    file_.write("end_header\n");
}

void PlyWriter::putVertex(std::size_t vertex) {
    const auto putVector = [&](const MFloatVector& v) { put(v.x), put(v.y), put(v.z); };
    const auto idOf = [&](const std::vector<int>& ids) { return static_cast<std::size_t>(ids[vertex]); };
    putVector(mesh_.points()[vertex]);
    if (hasNormals_) {
        const bool has = (*vertexNormalIds_)[vertex] >= 0;
        putVector(has ? layers_.normals[idOf(*vertexNormalIds_)] : MFloatVector());
    }
    if (hasVertexUvs_) {
        const bool has = (*vertexUvIds_)[vertex] >= 0;
        put(has ? layers_.u[idOf(*vertexUvIds_)] : 0.0F);
        put(has ? layers_.v[idOf(*vertexUvIds_)] : 0.0F);
    }
    if (!layers_.colors.empty()) putColor(layers_.colors[vertex]);
    endRow();
}

void PlyWriter::putColor(const MColor& color) {
    for (const float component : {color.r, color.g, color.b, color.a}) {
        if (!byteColors_) {
            put(component);
            continue;
        }
        putByte(static_cast<int>(std::lround(component * static_cast<float>(largestByte))));
    }
}

/// From 0 to 255.
void PlyWriter::putByte(int value) {
    if (ascii_) {
        put(value);
    } else {
        file_.putRaw(static_cast<std::uint8_t>(value));
    }
}

void PlyWriter::putFace(int face) {
    const int first = mesh_.topology().faceStart()[static_cast<std::size_t>(face)];
    const int last = first + mesh_.topology().faceSize(face);
    putLength(last - first);
    for (const int vertex : mesh_.topology().verticesOfFace(face))
        put(vertex);
    if (hasCornerUvs_) putCornerUvs(first, last);
    endRow();
}

void PlyWriter::putLength(int length) {
    if (longLists_) {
        put(length);
    } else {
        putByte(length);
    }
}

/// A face has UVs at all corners or at none.
void PlyWriter::putCornerUvs(int first, int last) {
    if (layers_.uvIds[static_cast<std::size_t>(first)] < 0) return putLength(0);
    putLength(2 * (last - first));
    for (int corner = first; corner < last; ++corner) {
        const auto id = static_cast<std::size_t>(layers_.uvIds[static_cast<std::size_t>(corner)]);
        put(layers_.u[id]);
        put(layers_.v[id]);
    }
}

} // namespace

Outcome writePly(const std::filesystem::path& path, const geom::Mesh& mesh, PlyEncoding encoding,
                 const MeshWriteOptions& options) {
    static_assert(std::endian::native == std::endian::little, "values are written as they lie in memory");
    auto layers = layersToWrite(mesh, options.normals);
    if (!layers) return Outcome::fail(path.string() + ": " + layers.error());
    AtomicFile file(path);
    PlyWriter(file, mesh, std::move(*layers), encoding).write();
    return file.commit();
}

} // namespace vesk::formats
