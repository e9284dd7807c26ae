// Points, edges' hardness, measures and the mesh as a whole.

#include "host/geometry/mesh.h"

#include "host/geometry/mesh_cache.h"

#include <climits>

namespace vesk::geom {

namespace {

Outcome wrongLength(std::string_view what, std::size_t given, std::size_t needed) {
    return Outcome::fail(std::string(what) + ": " + std::to_string(given) + " given, " +
                         std::to_string(needed) + " needed");
}

double triangleArea(const MVector& a, const MVector& b, const MVector& c) {
    return 0.5 * ((b - a) ^ (c - a)).length();
}

MVector through(const MVector& point, const MMatrix& matrix) { return MVector(MPoint(point) * matrix); }

template <class Point>
double sumOfTriangles(const Mesh& mesh, int face, Point point) {
    double area = 0.0;
    for (int t = 0; t < mesh.triangleCount(face); ++t) {
        const auto [a, b, c] = mesh.triangleVertices(face, t);
        area += triangleArea(point(a), point(b), point(c));
    }
    return area;
}

} // namespace

Mesh::Mesh() : topology_(MeshTopology::empty()), cache_(std::make_shared<MeshCache>()) { addUvSet("map1"); }

MeshResult Mesh::create(MeshTopologyPtr topology, std::vector<MFloatVector> points) {
    MeshResult result;
    const auto needed = static_cast<std::size_t>(topology->vertexCount());
    if (points.size() != needed) {
        result.outcome = wrongLength("points", points.size(), needed);
        return result;
    }
    result.topology.topology = topology;
    result.mesh.topology_ = std::move(topology);
    result.mesh.points_.reset(std::move(points));
    return result;
}

MeshResult Mesh::create(std::vector<MFloatVector> points, std::span<const int> counts,
                        std::span<const int> connects) {
    MeshResult result;
    if (points.size() > static_cast<std::size_t>(INT_MAX)) {
        result.outcome = Outcome::fail("too many points");
        return result;
    }
    MeshTopologyResult topology = MeshTopology::fromFaces(static_cast<int>(points.size()), counts, connects);
    if (!topology) {
        result.outcome = topology.outcome;
        return result;
    }
    result = create(topology.topology, std::move(points));
    result.topology = std::move(topology);
    return result;
}

void Mesh::pointsChanged() {
    appender_.reset();
    // An unused cache of one's own serves on: setting points one at a time stays cheap.
    if (cache_.use_count() > 1 || cache_->holdsAnything()) cache_ = std::make_shared<MeshCache>();
}

Outcome Mesh::setPoints(std::vector<MFloatVector> points) {
    if (points.size() != points_->size()) return wrongLength("points", points.size(), points_->size());
    points_.reset(std::move(points));
    pointsChanged();
    return {};
}

void Mesh::setPoint(int vertex, const MFloatVector& point) { editPoints()[vertex] = point; }

std::vector<MFloatVector>& Mesh::editPoints() {
    pointsChanged();
    return points_.write();
}

void Mesh::setEdgeHard(int edge, bool hard) {
    if (isHardEdge(edge) == hard) return;
    std::vector<std::uint8_t>& flags = hardEdges_.write();
    flags.resize(static_cast<std::size_t>(edgeCount()), 0);
    flags[edge] = hard ? 1 : 0;
    pointsChanged();
}

Outcome Mesh::setHardEdges(std::vector<std::uint8_t> hard) {
    const auto needed = static_cast<std::size_t>(edgeCount());
    if (!hard.empty() && hard.size() != needed) return wrongLength("edge flags", hard.size(), needed);
    hardEdges_.reset(std::move(hard));
    pointsChanged();
    return {};
}

void Mesh::setAllEdgesHard(bool hard) {
    hardEdges_.reset(std::vector<std::uint8_t>(hard ? static_cast<std::size_t>(edgeCount()) : 0, 1));
    pointsChanged();
}

const MeshIndex& Mesh::index() const {
    return *cache_->index.get([this] { return std::make_unique<const MeshIndex>(*this); });
}

double Mesh::edgeLength(int edge) const {
    const MeshEdge ends = topology_->edges()[edge];
    return (point(ends.b) - point(ends.a)).length();
}

double Mesh::edgeLength(int edge, const MMatrix& matrix) const {
    const MeshEdge ends = topology_->edges()[edge];
    return ((point(ends.b) - point(ends.a)) * matrix).length();
}

double Mesh::faceArea(int face) const {
    return sumOfTriangles(*this, face, [this](int v) { return point(v); });
}

double Mesh::faceArea(int face, const MMatrix& matrix) const {
    return sumOfTriangles(*this, face, [&](int v) { return through(point(v), matrix); });
}

MPoint Mesh::faceCenter(int face) const {
    MVector sum;
    const auto vertices = topology_->verticesOfFace(face);
    for (const int v : vertices)
        sum += point(v);
    return MPoint(sum / static_cast<double>(vertices.size()));
}

Mesh Mesh::transformed(const MMatrix& matrix) const {
    Mesh copy = *this;
    copy.points_.reset(transformedPoints(points_.read(), matrix));
    if (!lockedNormals_->locked.empty())
        copy.lockedNormals_.write().values = transformedNormals(lockedNormals_->values, matrix);
    copy.pointsChanged();
    return copy;
}

std::vector<MFloatVector> transformedPoints(std::span<const MFloatVector> points, const MMatrix& matrix) {
    std::vector<MFloatVector> result;
    result.reserve(points.size());
    for (const MFloatVector& p : points)
        result.emplace_back(through(MVector(p), matrix));
    return result;
}

Outcome Mesh::checkInvariants() const {
    if (Outcome topology = topology_->checkInvariants(); !topology) return topology;
    const auto vertices = static_cast<std::size_t>(vertexCount());
    const auto edges = static_cast<std::size_t>(edgeCount());
    const auto corners = static_cast<std::size_t>(cornerCount());
    if (points_->size() != vertices) return wrongLength("points", points_->size(), vertices);
    if (!hardEdges_->empty() && hardEdges_->size() != edges)
        return wrongLength("edge flags", hardEdges_->size(), edges);
    const LockedNormals& normals = lockedNormals_.read();
    if (normals.values.size() != normals.locked.size())
        return wrongLength("locked normals", normals.values.size(), normals.locked.size());
    if (!normals.locked.empty() && normals.locked.size() != corners)
        return wrongLength("normal locks", normals.locked.size(), corners);
    if (Outcome uvs = checkUvSets(); !uvs) return uvs;
    return checkColorSets();
}

std::size_t Mesh::byteSize() const {
    std::size_t bytes = topology_->byteSize() + cache_->byteSize() + hardEdges_->capacity();
    bytes += points_->capacity() * sizeof(MFloatVector);
    bytes += lockedNormals_->values.capacity() * sizeof(MFloatVector) + lockedNormals_->locked.capacity();
    for (const auto& set : uvSets_)
        bytes += (set->u.capacity() + set->v.capacity()) * sizeof(float) + set->ids.capacity() * sizeof(int);
    for (const auto& set : colorSets_)
        bytes += set->colors.capacity() * sizeof(MColor) + set->ids.capacity() * sizeof(int);
    return bytes;
}

} // namespace vesk::geom
