// Changing what a mesh is made of: faces added and taken away, with layers that follow.

#include "host/geometry/id_table.h"
#include "host/geometry/mesh_cache.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace vesk::geom {

namespace {

std::uint64_t mix(std::uint64_t hash, std::int64_t value) {
    hash ^= static_cast<std::uint64_t>(value);
    hash *= 0x9E3779B97F4A7C15ULL;
    return hash ^ (hash >> 29);
}

/// Per new corner the value of the corner it came from, -1 for one that came from nowhere.
std::vector<int> followCorners(const std::vector<int>& ids, std::span<const int> sourceCorners) {
    if (ids.empty()) return {};
    std::vector<int> followed;
    followed.reserve(sourceCorners.size());
    for (const int source : sourceCorners)
        followed.push_back(source < 0 ? -1 : ids[source]);
    return followed;
}

} // namespace

/// Finds points and edges of a mesh that grows face by face, so that each face costs its own size only. Good
/// for the mesh as it is; any change from elsewhere drops it.
class MeshAppender {
  public:
    MeshAppender(const Mesh& mesh, double tolerance) : tolerance_(std::max(tolerance, 0.0)) {
        cell_ = std::max(8.0 * tolerance_, smallestCell);
        for (const MFloatVector& point : mesh.points())
            addPoint(point);
        int id = 0;
        for (const MeshEdge& edge : mesh.topology().edges())
            edgeIds_.insert(edgeKey(edge.a, edge.b), id++);
    }

    bool fits(double tolerance) const { return tolerance_ == std::max(tolerance, 0.0); }

    /// The lowest vertex within the tolerance, or -1.
    int find(const std::vector<MFloatVector>& points, const MFloatVector& point) const {
        int found = -1;
        std::array<std::int64_t, 3> low{};
        std::array<std::int64_t, 3> high{};
        for (unsigned int axis = 0; axis < 3; ++axis) {
            low[axis] = cellOf(point[axis] - tolerance_);
            high[axis] = cellOf(point[axis] + tolerance_);
        }
        for (std::int64_t x = low[0]; x <= high[0]; ++x) {
            for (std::int64_t y = low[1]; y <= high[1]; ++y) {
                for (std::int64_t z = low[2]; z <= high[2]; ++z)
                    findInCell(points, point, x, y, z, found);
            }
        }
        return found;
    }

    void addPoint(const MFloatVector& point) {
        const auto vertex = static_cast<int>(previousInCell_.size());
        const auto [last, isNew] =
            lastInCell_.insert(cellKey(cellOf(point.x), cellOf(point.y), cellOf(point.z)), vertex);
        previousInCell_.push_back(isNew ? -1 : last);
        last = vertex;
    }

    /// The edge between the two, with `edges` extended when it is new.
    int edgeBetween(int from, int to, int edgeCount, std::vector<MeshEdge>& fresh) {
        const int next = edgeCount + static_cast<int>(fresh.size());
        const auto [id, isNew] = edgeIds_.insert(edgeKey(from, to), next);
        if (isNew) fresh.push_back({from, to});
        return id;
    }

  private:
    /// Below the spacing of floats except next to the origin, and so far above the usual tolerance that a
    /// point is hardly ever near a cell's wall, behind which there would be more cells to search.
    static constexpr double smallestCell = 1e-8;

    std::int64_t cellOf(double coordinate) const {
        constexpr double limit = 4e18;
        const double cell = std::floor(coordinate / cell_);
        return std::isnan(cell) ? 0 : static_cast<std::int64_t>(std::clamp(cell, -limit, limit));
    }
    static std::uint64_t cellKey(std::int64_t x, std::int64_t y, std::int64_t z) {
        return mix(mix(mix(0, x), y), z);
    }
    static std::uint64_t edgeKey(int a, int b) {
        return static_cast<std::uint64_t>(std::min(a, b)) << 32 | static_cast<std::uint64_t>(std::max(a, b));
    }
    void findInCell(const std::vector<MFloatVector>& points, const MFloatVector& point, std::int64_t x,
                    std::int64_t y, std::int64_t z, int& found) const {
        for (int v = lastInCell_.find(cellKey(x, y, z)); v >= 0; v = previousInCell_[v]) {
            const bool near = (MVector(points[v]) - MVector(point)).length() <= tolerance_;
            if (near && (found < 0 || v < found)) found = v;
        }
    }

    double tolerance_;
    double cell_;
    IdTable lastInCell_;              ///< the highest vertex in each cell
    std::vector<int> previousInCell_; ///< per vertex the next lower one in its cell
    IdTable edgeIds_;
};

Outcome Mesh::addPolygon(std::span<const MFloatVector> loop, bool mergeVertices, double tolerance) {
    if (!appender_ || appender_.use_count() > 1 || !appender_->fits(tolerance))
        appender_ = std::make_shared<MeshAppender>(*this, tolerance);
    const std::shared_ptr<MeshAppender> appender = std::move(appender_);

    const int oldVertices = vertexCount();
    std::vector<int> vertices;
    std::vector<MFloatVector> fresh;
    for (const MFloatVector& point : loop) {
        int vertex = mergeVertices ? appender->find(points(), point) : -1;
        if (vertex < 0) {
            vertex = oldVertices + static_cast<int>(fresh.size());
            fresh.push_back(point);
        }
        if (vertices.empty() || vertices.back() != vertex) vertices.push_back(vertex);
    }
    while (vertices.size() > 1 && vertices.back() == vertices.front())
        vertices.pop_back();
    if (vertices.size() < 3) {
        appender_ = appender;
        return Outcome::fail("a polygon needs three corners that differ from their neighbours");
    }

    std::vector<int> edges;
    std::vector<MeshEdge> freshEdges;
    for (std::size_t k = 0; k < vertices.size(); ++k) {
        const int to = vertices[k + 1 == vertices.size() ? 0 : k + 1];
        edges.push_back(appender->edgeBetween(vertices[k], to, edgeCount(), freshEdges));
    }
    topology_ = MeshTopology::withFace(std::move(topology_), static_cast<int>(fresh.size()), freshEdges,
                                       vertices, edges);
    std::vector<MFloatVector>& all = editPoints();
    for (const MFloatVector& point : fresh) {
        all.push_back(point);
        appender->addPoint(point);
    }
    growLayers();
    appender_ = appender;
    return {};
}

void Mesh::growLayers() {
    const auto corners = static_cast<std::size_t>(cornerCount());
    lockedNormals_.reset();
    if (!hardEdges_->empty()) hardEdges_.write().resize(static_cast<std::size_t>(edgeCount()), 0);
    for (Shared<UvSet>& set : uvSets_) {
        if (!set->ids.empty()) set.write().ids.resize(corners, -1);
    }
    for (Shared<ColorSet>& set : colorSets_) {
        if (!set->ids.empty()) set.write().ids.resize(corners, -1);
    }
}

Mesh Mesh::rebuilt(MeshTopologyPtr topology, std::vector<MFloatVector> points,
                   std::span<const int> sourceCorners, std::span<const int> sourceEdges) const {
    Mesh mesh = *this;
    mesh.topology_ = std::move(topology);
    mesh.points_.reset(std::move(points));
    mesh.lockedNormals_.reset();
    if (!hardEdges_->empty()) {
        std::vector<std::uint8_t>& hard = mesh.hardEdges_.reset();
        for (const int source : sourceEdges)
            hard.push_back(source >= 0 && isHardEdge(source) ? 1 : 0);
    }
    for (Shared<UvSet>& set : mesh.uvSets_) {
        if (!set->ids.empty()) set.write().ids = followCorners(set->ids, sourceCorners);
    }
    for (Shared<ColorSet>& set : mesh.colorSets_) {
        if (!set->ids.empty()) set.write().ids = followCorners(set->ids, sourceCorners);
    }
    mesh.pointsChanged();
    return mesh;
}

namespace {

/// What stays of a mesh when its faces become other loops of its own vertices.
class Shrinking {
  public:
    /// `loops` holds old vertex ids, `sources` the old corner of each; `keepLoose` keeps vertices that no
    /// face used before either.
    Shrinking(const Mesh& mesh, std::span<const int> counts, std::span<const int> loops,
              std::span<const int> sources, bool keepLoose)
        : mesh_(mesh), loops_(MeshTopology::fromFaces(mesh.vertexCount(), counts, loops)) {
        sourceCorners_ = loops_.followCorners(sources);
        numberVertices(keepLoose);
        keepEdges();
    }

    Mesh mesh() const {
        const MeshTopology& loops = *loops_.topology;
        std::vector<int> counts;
        counts.reserve(static_cast<std::size_t>(loops.faceCount()));
        for (int f = 0; f < loops.faceCount(); ++f)
            counts.push_back(loops.faceSize(f));
        std::vector<int> connects;
        connects.reserve(loops.faceVertices().size());
        for (const int v : loops.faceVertices())
            connects.push_back(newVertex_[v]);
        MeshTopologyPtr topology =
            MeshTopology::fromFacesAndEdges(static_cast<int>(points_.size()), edges_, counts, connects)
                .topology;
        std::vector<int> sourceEdges = sourceEdges_;
        sourceEdges.resize(static_cast<std::size_t>(topology->edgeCount()), -1);
        return mesh_.rebuilt(std::move(topology), points_, sourceCorners_, sourceEdges);
    }

  private:
    void numberVertices(bool keepLoose) {
        std::vector<char> keep(static_cast<std::size_t>(mesh_.vertexCount()), keepLoose ? 1 : 0);
        for (const int v : mesh_.topology().faceVertices())
            keep[v] = 0;
        for (const int v : loops_.topology->faceVertices())
            keep[v] = 1;
        newVertex_.assign(keep.size(), -1);
        for (std::size_t v = 0; v < keep.size(); ++v) {
            if (keep[v] == 0) continue;
            newVertex_[v] = static_cast<int>(points_.size());
            points_.push_back(mesh_.points()[v]);
        }
    }

    /// Edges that a face still has, and those that none had before, in their old order.
    void keepEdges() {
        const MeshTopology& old = mesh_.topology();
        std::vector<char> keep(static_cast<std::size_t>(old.edgeCount()), 1);
        for (const int e : old.cornerEdges())
            keep[e] = 0;
        const MeshTopology& loops = *loops_.topology;
        for (int f = 0; f < loops.faceCount(); ++f) {
            const int begin = loops.faceStart()[f];
            const int end = loops.faceStart()[f + 1];
            for (int c = begin; c < end; ++c) {
                const int from = loops.faceVertices()[c];
                const int to = loops.faceVertices()[c + 1 == end ? begin : c + 1];
                const int edge = old.cornerEdges()[sourceCorners_[c]];
                const int found = old.otherEnd(edge, from) == to ? edge : old.findEdge(from, to);
                if (found >= 0) keep[found] = 1;
            }
        }
        for (int e = 0; e < old.edgeCount(); ++e) {
            const MeshEdge edge = old.edges()[e];
            if (keep[e] == 0 || newVertex_[edge.a] < 0 || newVertex_[edge.b] < 0) continue;
            edges_.push_back({newVertex_[edge.a], newVertex_[edge.b]});
            sourceEdges_.push_back(e);
        }
    }

    const Mesh& mesh_;
    MeshTopologyResult loops_;
    std::vector<int> sourceCorners_;
    std::vector<int> newVertex_;
    std::vector<MFloatVector> points_;
    std::vector<MeshEdge> edges_;
    std::vector<int> sourceEdges_;
};

/// The mesh with the corners left for which `stays` is true.
template <class Stays>
Mesh withCorners(const Mesh& mesh, bool keepLoose, Stays stays) {
    const MeshTopology& topology = mesh.topology();
    std::vector<int> counts;
    std::vector<int> loops;
    std::vector<int> sources;
    for (int f = 0; f < topology.faceCount(); ++f) {
        const std::size_t before = loops.size();
        for (int c = topology.faceStart()[f]; c < topology.faceStart()[f + 1]; ++c) {
            if (!stays(f, c)) continue;
            loops.push_back(topology.faceVertices()[c]);
            sources.push_back(c);
        }
        counts.push_back(static_cast<int>(loops.size() - before));
    }
    return Shrinking(mesh, counts, loops, sources, keepLoose).mesh();
}

} // namespace

Outcome Mesh::deleteVertex(int vertex) {
    if (!topology_->hasVertex(vertex))
        return Outcome::fail("vertex " + std::to_string(vertex) + " does not exist");
    *this = withCorners(*this, false,
                        [&](int, int corner) { return topology_->faceVertices()[corner] != vertex; });
    return {};
}

Outcome Mesh::deleteFace(int face) {
    if (!topology_->hasFace(face)) return Outcome::fail("face " + std::to_string(face) + " does not exist");
    if (faceCount() == 1) return Outcome::fail("the last face cannot be deleted");
    *this = withCorners(*this, true, [&](int f, int) { return f != face; });
    return {};
}

} // namespace vesk::geom
