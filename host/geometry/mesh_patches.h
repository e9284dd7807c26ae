#pragma once
// The triangles of a mesh as an index keeps them: small packs in one place, in a cube of unit size.

#include "host/geometry/mesh.h"

namespace vesk::geom {

inline bool isFinite(const MVector& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// One triangle, or two that follow each other and share an edge, with all that a query asks of them.
struct alignas(64) Patch {
    std::array<float, 4> x, y, z; ///< of its points; a lone triangle repeats its first
    int triangle;                 ///< the first, in the mesh's list
    int faces[2];                 ///< of each triangle
    std::uint8_t count;           ///< of triangles
    std::uint8_t use[2];          ///< which points each triangle has, two bits a corner

    MVector point(std::size_t i) const { return {x[i], y[i], z[i]}; }
    MVector corner(int k, int corner) const { return point(use[k] >> (2 * corner) & 3); }
};
static_assert(sizeof(Patch) == 64);

/// Those of all triangles whose corners are finite numbers, in the mesh's order.
std::vector<Patch> patchesOf(const Mesh& mesh);

struct Box {
    MVector least, most;

    explicit Box(const MVector& point) : least(point), most(point) {}
    void add(const MVector& point);
};

/// Length of the longest line between two points of the patch.
double widthOf(const Patch& patch);

/// Tells most patches that a line passes by, in single precision and without ever being wrong about one that
/// it meets: a line meets none whose points all lie to one side of it, looked at along an axis. The direction
/// must not be zero.
class PassesBy {
  public:
    /// `reach`: the tolerance times the longest edge. `size`: the largest coordinate of all patches.
    PassesBy(const MVector& source, const MVector& direction, double reach, double size);
    bool operator()(const Patch& patch) const {
        const Four depth = fourOf(patch, axes_[2]) - source_[2];
        const Four u = fourOf(patch, axes_[0]) - source_[0] - slope_[0] * depth;
        const Four v = fourOf(patch, axes_[1]) - source_[1] - slope_[1] * depth;
        return all(u > slack_) || all(u < -slack_) || all(v > slack_) || all(v < -slack_);
    }

  private:
    using Four = float __attribute__((vector_size(16)));
    using Mask = int __attribute__((vector_size(16)));
    static Four fourOf(const Patch& patch, int axis) {
        Four four;
        std::memcpy(&four, (&patch.x + axis)->data(), sizeof four);
        return four;
    }
    static bool all(const Mask& mask) { return (mask[0] & mask[1] & mask[2] & mask[3]) != 0; }

    std::array<int, 3> axes_; ///< the last is the one that the direction follows most
    std::array<float, 3> source_;
    std::array<float, 2> slope_;
    float slack_;
};

/// Takes the patches into a cube that reaches from -1 to 1.
struct UnitCube {
    MVector center;
    double scale = 1;   ///< a power of two
    MVector half;       ///< how far they reach from the centre, in the cube
    double largest = 0; ///< of their coordinates

    double diagonal() const { return 2 * half.length() / scale; } ///< of their box, outside the cube

    explicit UnitCube(const std::vector<Patch>& patches);
    MVector operator()(const MVector& p) const { return (p - center) * scale; }
};

/// What an index searches.
struct PatchSet {
    std::vector<Patch> patches;
    UnitCube cube;

    explicit PatchSet(const Mesh& mesh) : patches(patchesOf(mesh)), cube(patches) {}
};

} // namespace vesk::geom
