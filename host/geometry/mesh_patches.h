#pragma once
// The triangles of a mesh as an index keeps them: small packs in one place, in a cube of unit size.

#include "host/geometry/mesh.h"

namespace vesk::geom {

inline bool isFinite(const MVector& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// One triangle, or two that follow each other and share an edge, with all that a query asks of them.
struct alignas(64) Patch {
    float points[4][3];
    int triangle;        ///< the first, in the mesh's list
    int faces[2];        ///< of each triangle
    std::uint8_t count;  ///< of triangles
    std::uint8_t use[2]; ///< which points each triangle has, two bits a corner

    MVector point(int i) const { return {points[i][0], points[i][1], points[i][2]}; }
    MVector corner(int k, int corner) const { return point(use[k] >> (2 * corner) & 3); }
    int pointCount() const { return count + 2; }
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

/// Takes the patches into a cube that reaches from -1 to 1.
struct UnitCube {
    MVector center;
    double scale = 1; ///< a power of two
    MVector half;     ///< how far they reach from the centre, in the cube

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
