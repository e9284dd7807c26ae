#include "host/geometry/mesh_patches.h"

#include "parallel/loops.h"

namespace vesk::geom {

namespace {

/// Makes patches of a run of faces.
class Patcher {
  public:
    explicit Patcher(const Mesh& mesh)
        : points_(mesh.points()), ids_(mesh.topology().faceVertices()), triangles_(mesh.triangles()),
          mesh_(mesh) {}

    std::vector<Patch> run(int firstFace, int endFace) {
        const int count = mesh_.triangleStart(endFace) - mesh_.triangleStart(firstFace);
        patches_.reserve(static_cast<std::size_t>(count / 2 + 1));
        int triangle = mesh_.triangleStart(firstFace);
        for (int face = firstFace; face < endFace; ++face) {
            for (int k = mesh_.triangleCount(face); k > 0; --k)
                add(triangle++, face);
        }
        return std::move(patches_);
    }

  private:
    using Ids = std::array<int, 3>;

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
        for (std::size_t k = 0; k < 4; ++k)
            put(patch, k, ids[k % 3]);
        first_ = ids;
        patches_.push_back(patch);
    }
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
    void put(Patch& patch, std::size_t place, int vertex) const {
        const MFloatVector& point = at(vertex);
        patch.x[place] = point.x, patch.y[place] = point.y, patch.z[place] = point.z;
    }
    const MFloatVector& at(int vertex) const { return points_[static_cast<std::size_t>(vertex)]; }

    const std::vector<MFloatVector>& points_;
    const std::vector<int>& ids_;
    const std::vector<TriangleCorners>& triangles_;
    const Mesh& mesh_;
    std::vector<Patch> patches_;
    Ids first_{}; ///< vertices of the last patch's first triangle
};

} // namespace

std::vector<Patch> patchesOf(const Mesh& mesh) {
    const auto faces = static_cast<std::size_t>(mesh.faceCount());
    constexpr std::size_t grain = 16384;
    std::vector<std::vector<Patch>> pieces(faces / grain + 1);
    parallel::inPieces(faces, grain, [&](std::size_t begin, std::size_t end) {
        pieces[begin / grain] = Patcher(mesh).run(static_cast<int>(begin), static_cast<int>(end));
    });
    if (pieces.size() == 1) return std::move(pieces.front());
    std::vector<std::size_t> start(1, 0);
    for (const auto& piece : pieces)
        start.push_back(start.back() + piece.size());
    std::vector<Patch> patches(start.back());
    parallel::inPieces(pieces.size(), 1, [&](std::size_t piece, std::size_t) {
        std::copy(pieces[piece].begin(), pieces[piece].end(),
                  patches.begin() + static_cast<std::ptrdiff_t>(start[piece]));
        pieces[piece] = {};
    });
    return patches;
}

void Box::add(const MVector& point) {
    for (unsigned axis = 0; axis < 3; ++axis) {
        least[axis] = std::min(least[axis], point[axis]);
        most[axis] = std::max(most[axis], point[axis]);
    }
}

double widthOf(const Patch& patch) {
    double squared = 0;
    for (std::size_t i = 1; i < 4; ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            const MVector line = patch.point(i) - patch.point(k);
            squared = std::max(squared, line * line);
        }
    }
    return std::sqrt(squared);
}

PassesBy::PassesBy(const MVector& source, const MVector& direction, double reach, double size) {
    const double along[] = {std::abs(direction.x), std::abs(direction.y), std::abs(direction.z)};
    const int main = static_cast<int>(std::max_element(along, along + 3) - along);
    axes_ = {(main + 1) % 3, (main + 2) % 3, main};
    for (std::size_t k = 0; k < 3; ++k)
        source_[k] = static_cast<float>(source[static_cast<unsigned>(axes_[k])]);
    for (std::size_t k = 0; k < 2; ++k)
        slope_[k] = static_cast<float>(direction[static_cast<unsigned>(axes_[k])] /
                                       direction[static_cast<unsigned>(main)]);
    // A hit lies no farther than twice the reach outside its triangle, and that much again through the depth,
    // since slopes are at most 1; single precision adds some parts in ten million of what it works with.
    const double largest = std::max({size, std::abs(source.x), std::abs(source.y), std::abs(source.z)});
    const double slack = 4 * reach + 2e-6 * largest + 1e-36;
    slack_ = largest < 1e37 ? static_cast<float>(slack) : std::numeric_limits<float>::infinity();
}

UnitCube::UnitCube(const std::vector<Patch>& patches) {
    if (patches.empty()) return;
    Box box(patches.front().point(0));
    for (const Patch& patch : patches) {
        for (std::size_t k = 0; k < 4; ++k)
            box.add(patch.point(k));
    }
    center = (box.least + box.most) * 0.5;
    half = (box.most - box.least) * 0.5;
    const double size = std::max({half.x, half.y, half.z});
    if (size > 0) scale = std::ldexp(1.0, -std::ilogb(size) - 1);
    half *= scale;
    for (unsigned axis = 0; axis < 3; ++axis)
        largest = std::max({largest, std::abs(box.least[axis]), std::abs(box.most[axis])});
}

} // namespace vesk::geom
