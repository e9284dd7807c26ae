// Normals of faces, vertices and corners, and those set by hand.

#include "host/geometry/mesh_cache.h"
#include "parallel/loops.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

namespace vesk::geom {

namespace {

using Normals = std::vector<MFloatVector>;

constexpr std::size_t kGrain = 16384;

MFloatVector unit(const MVector& v) {
    const double length = v.length();
    return length > 0.0 ? MFloatVector(v / length) : MFloatVector();
}

Normals unitVectors(const std::vector<MVector>& sums) {
    Normals normals(sums.size());
    parallel::inPieces(sums.size(), kGrain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            normals[i] = unit(sums[i]);
    });
    return normals;
}

Normals makeFaceNormals(const Mesh& mesh) {
    Normals normals(static_cast<std::size_t>(mesh.faceCount()));
    parallel::inPieces(normals.size(), kGrain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t f = begin; f < end; ++f)
            normals[f] = unit(mesh.faceAreaVector(static_cast<int>(f)));
    });
    return normals;
}

Normals makeVertexNormals(const MeshTopology& topology, const Normals& faceNormals) {
    std::vector<MVector> sums(static_cast<std::size_t>(topology.vertexCount()));
    // A face that meets a vertex twice counts once.
    std::vector<int> lastFace(sums.size(), -1);
    for (int f = 0; f < topology.faceCount(); ++f) {
        for (const int v : topology.verticesOfFace(f)) {
            if (std::exchange(lastFace[v], f) != f) sums[v] += MVector(faceNormals[f]);
        }
    }
    return unitVectors(sums);
}

/// Angle between two directions, exact also where they are nearly parallel; 0 when either has no length.
double angleBetween(const MVector& a, const MVector& b) { return std::atan2((a ^ b).length(), a * b); }

Normals makeWeightedVertexNormals(const Mesh& mesh, const Normals& faceNormals) {
    const MeshTopology& topology = mesh.topology();
    std::vector<MVector> sums(static_cast<std::size_t>(topology.vertexCount()));
    for (int f = 0; f < topology.faceCount(); ++f) {
        const auto loop = topology.verticesOfFace(f);
        const MVector normal(faceNormals[f]);
        MVector before = mesh.point(loop.back());
        MVector here = mesh.point(loop.front());
        for (std::size_t k = 0; k < loop.size(); ++k) {
            const MVector after = mesh.point(loop[k + 1 == loop.size() ? 0 : k + 1]);
            sums[loop[k]] += normal * angleBetween(before - here, after - here);
            before = here;
            here = after;
        }
    }
    return unitVectors(sums);
}

/// Groups the corners that share a normal: those round one vertex that smooth edges join.
class SmoothGroups {
  public:
    explicit SmoothGroups(const Mesh& mesh) : group_(static_cast<std::size_t>(mesh.cornerCount())) {
        const MeshTopology& topology = mesh.topology();
        std::iota(group_.begin(), group_.end(), 0);
        // Per edge and end the corner met first; every later one joins it.
        std::vector<std::array<int, 2>> atEnd(static_cast<std::size_t>(mesh.edgeCount()), {-1, -1});
        const auto& start = topology.faceStart();
        for (int f = 0; f < topology.faceCount(); ++f) {
            for (int c = start[f]; c < start[f + 1]; ++c) {
                const int edge = topology.cornerEdges()[c];
                if (mesh.isHardEdge(edge)) continue;
                const int end = topology.edges()[edge].a == topology.faceVertices()[c] ? 0 : 1;
                join(atEnd[edge][end], c);
                join(atEnd[edge][1 - end], c + 1 == start[f + 1] ? start[f] : c + 1);
            }
        }
        numberGroups();
    }

    int count() const { return count_; }
    int of(int corner) const { return group_[corner]; }

  private:
    // Until the groups are numbered, `group_` is a forest: each corner points to a lower one of its group,
    // the lowest to itself.
    int root(int corner) {
        while (group_[corner] != corner) {
            group_[corner] = group_[group_[corner]];
            corner = group_[corner];
        }
        return corner;
    }
    void join(int& first, int corner) {
        if (first < 0) {
            first = corner;
            return;
        }
        const int a = root(first);
        const int b = root(corner);
        group_[std::max(a, b)] = std::min(a, b);
    }
    void numberGroups() {
        for (int c = 0; c < static_cast<int>(group_.size()); ++c)
            group_[c] = group_[c] == c ? count_++ : group_[group_[c]];
    }

    std::vector<int> group_;
    int count_ = 0;
};

Normals makeCornerNormals(const Mesh& mesh, const Normals& faceNormals) {
    const SmoothGroups groups(mesh);
    std::vector<MVector> sums(static_cast<std::size_t>(groups.count()));
    // A face that meets a vertex twice within a group counts once; its corners come one after the other.
    std::vector<int> lastFace(sums.size(), -1);
    const auto& start = mesh.topology().faceStart();
    for (int f = 0; f < mesh.faceCount(); ++f) {
        for (int c = start[f]; c < start[f + 1]; ++c) {
            const int group = groups.of(c);
            if (std::exchange(lastFace[group], f) != f) sums[group] += MVector(faceNormals[f]);
        }
    }
    const Normals units = unitVectors(sums);
    Normals normals(static_cast<std::size_t>(mesh.cornerCount()));
    for (int c = 0; c < mesh.cornerCount(); ++c)
        normals[c] = units[groups.of(c)];
    return normals;
}

void putLockedNormals(const LockedNormals& locked, Normals& normals) {
    for (std::size_t c = 0; c < locked.locked.size(); ++c) {
        if (locked.locked[c] != 0) normals[c] = locked.values[c];
    }
}

} // namespace

MVector Mesh::faceAreaVector(int face) const {
    // Taken from the first corner, so that a face far from the origin keeps its precision.
    const auto loop = topology_->verticesOfFace(face);
    const std::vector<MFloatVector>& points = points_.read();
    const MVector origin(points[loop[0]]);
    MVector sum;
    MVector before = MVector(points[loop[1]]) - origin;
    for (std::size_t k = 2; k < loop.size(); ++k) {
        const MVector here = MVector(points[loop[k]]) - origin;
        sum += before ^ here;
        before = here;
    }
    return sum * 0.5;
}

const Normals& Mesh::faceNormals() const {
    return cache_->faceNormals.get([this] { return makeFaceNormals(*this); });
}

const Normals& Mesh::vertexNormals(bool angleWeighted) const {
    if (angleWeighted)
        return cache_->weightedVertexNormals.get(
            [this] { return makeWeightedVertexNormals(*this, faceNormals()); });
    return cache_->vertexNormals.get([this] { return makeVertexNormals(*topology_, faceNormals()); });
}

const Normals& Mesh::cornerNormals() const {
    return cache_->cornerNormals.get([this] {
        Normals normals = makeCornerNormals(*this, faceNormals());
        putLockedNormals(lockedNormals_.read(), normals);
        return normals;
    });
}

Outcome Mesh::setLockedNormals(LockedNormals normals) {
    const std::size_t given = normals.values.size();
    const auto needed = static_cast<std::size_t>(cornerCount());
    if (given != normals.locked.size() || (given != 0 && given != needed))
        return Outcome::fail("normals: " + std::to_string(given) + " values and " +
                             std::to_string(normals.locked.size()) + " locks given for " +
                             std::to_string(needed) + " corners");
    lockedNormals_.reset(std::move(normals));
    pointsChanged();
    return {};
}

Outcome Mesh::setVertexNormals(std::span<const MFloatVector> normals, std::span<const int> vertices) {
    if (normals.size() != vertices.size())
        return Outcome::fail(std::to_string(normals.size()) + " normals given for " +
                             std::to_string(vertices.size()) + " vertices");
    for (const int v : vertices) {
        if (!topology_->hasVertex(v)) return Outcome::fail("vertex " + std::to_string(v) + " does not exist");
    }
    LockedNormals& locks = editLockedNormals();
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        for (const int corner : topology_->cornersOfVertex(vertices[i])) {
            locks.values[corner] = normals[i];
            locks.locked[corner] = 1;
        }
    }
    return {};
}

void Mesh::lockCornerNormal(int corner, const MFloatVector& normal) {
    LockedNormals& locks = editLockedNormals();
    locks.values[corner] = normal;
    locks.locked[corner] = 1;
}

void Mesh::unlockNormals() {
    if (lockedNormals_->locked.empty()) return;
    lockedNormals_.reset();
    pointsChanged();
}

LockedNormals& Mesh::editLockedNormals() {
    pointsChanged();
    LockedNormals& locks = lockedNormals_.write();
    locks.values.resize(static_cast<std::size_t>(cornerCount()));
    locks.locked.resize(static_cast<std::size_t>(cornerCount()), 0);
    return locks;
}

NormalTransform::NormalTransform(const MMatrix& matrix) {
    const MVector x(matrix.matrix[0]);
    const MVector y(matrix.matrix[1]);
    const MVector z(matrix.matrix[2]);
    // Cofactors are the inverse transpose times the determinant, of which only the sign matters.
    const double sign = matrix.det3x3() < 0.0 ? -1.0 : 1.0;
    rows_[0] = (y ^ z) * sign;
    rows_[1] = (z ^ x) * sign;
    rows_[2] = (x ^ y) * sign;
}

MFloatVector NormalTransform::operator()(const MFloatVector& normal) const {
    return unit(rows_[0] * normal.x + rows_[1] * normal.y + rows_[2] * normal.z);
}

std::vector<MFloatVector> transformedNormals(std::span<const MFloatVector> normals, const MMatrix& matrix) {
    const NormalTransform transform(matrix);
    std::vector<MFloatVector> result;
    result.reserve(normals.size());
    for (const MFloatVector& n : normals)
        result.push_back(transform(n));
    return result;
}

} // namespace vesk::geom
