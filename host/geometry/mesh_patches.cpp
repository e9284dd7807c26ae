#include "host/geometry/mesh_patches.h"

namespace vesk::geom {

namespace {

class Patcher {
  public:
    explicit Patcher(const Mesh& mesh)
        : points_(mesh.points()), ids_(mesh.topology().faceVertices()), triangles_(mesh.triangles()) {
        patches_.reserve(triangles_.size() / 2 + 1);
    }

    /// Triangles come in order.
    void add(int triangle, int face) {
        Ids ids;
        for (std::size_t k = 0; k < 3; ++k) {
            ids[k] = ids_[static_cast<std::size_t>(triangles_[static_cast<std::size_t>(triangle)][k])];
            if (!isFinite(MVector(at(ids[k])))) return;
        }
        if (!patches_.empty() && join(patches_.back(), ids, triangle, face)) return;
        Patch patch{};
        patch.triangle = triangle;
        patch.faces[0] = patch.faces[1] = face;
        patch.count = 1;
        patch.use[0] = 0 | 1 << 2 | 2 << 4;
        for (int k = 0; k < 3; ++k)
            put(patch, k, ids[static_cast<std::size_t>(k)]);
        first_ = ids;
        patches_.push_back(patch);
    }
    std::vector<Patch> take() { return std::move(patches_); }

  private:
    using Ids = std::array<int, 3>;

    /// As the second triangle of the last patch, if that shares an edge.
    bool join(Patch& patch, const Ids& ids, int triangle, int face) const {
        if (patch.count != 1 || patch.triangle + 1 != triangle) return false;
        int use = 0, added = -1;
        for (int k = 0; k < 3; ++k) {
            const int id = ids[static_cast<std::size_t>(k)];
            const auto found = std::find(first_.begin(), first_.end(), id);
            if (found == first_.end() && added >= 0 && added != id) return false;
            if (found == first_.end()) added = id;
            use |= static_cast<int>(found - first_.begin()) << (2 * k);
        }
        put(patch, 3, added >= 0 ? added : ids[0]);
        patch.use[1] = static_cast<std::uint8_t>(use);
        patch.faces[1] = face;
        patch.count = 2;
        return true;
    }
    void put(Patch& patch, int place, int vertex) const {
        const MFloatVector& point = at(vertex);
        patch.points[place][0] = point.x, patch.points[place][1] = point.y, patch.points[place][2] = point.z;
    }
    const MFloatVector& at(int vertex) const { return points_[static_cast<std::size_t>(vertex)]; }

    const std::vector<MFloatVector>& points_;
    const std::vector<int>& ids_;
    const std::vector<TriangleCorners>& triangles_;
    std::vector<Patch> patches_;
    Ids first_{}; ///< vertices of the last patch's first triangle
};

} // namespace

std::vector<Patch> patchesOf(const Mesh& mesh) {
    Patcher patcher(mesh);
    int triangle = 0;
    for (int face = 0; face < mesh.faceCount(); ++face) {
        for (int k = mesh.triangleCount(face); k > 0; --k)
            patcher.add(triangle++, face);
    }
    return patcher.take();
}

void Box::add(const MVector& point) {
    for (unsigned axis = 0; axis < 3; ++axis) {
        least[axis] = std::min(least[axis], point[axis]);
        most[axis] = std::max(most[axis], point[axis]);
    }
}

double widthOf(const Patch& patch) {
    double squared = 0;
    for (int i = 1; i < patch.pointCount(); ++i) {
        for (int k = 0; k < i; ++k) {
            const MVector line = patch.point(i) - patch.point(k);
            squared = std::max(squared, line * line);
        }
    }
    return std::sqrt(squared);
}

UnitCube::UnitCube(const std::vector<Patch>& patches) {
    if (patches.empty()) return;
    Box box(patches.front().point(0));
    for (const Patch& patch : patches) {
        for (int k = 0; k < patch.pointCount(); ++k)
            box.add(patch.point(k));
    }
    center = (box.least + box.most) * 0.5;
    half = (box.most - box.least) * 0.5;
    const double size = std::max({half.x, half.y, half.z});
    if (size > 0) scale = std::ldexp(1.0, -std::ilogb(size) - 1);
    half *= scale;
}

} // namespace vesk::geom
