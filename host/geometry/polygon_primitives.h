#pragma once
// Ready-made polygon meshes: cube, plane, sphere, cylinder, cone, torus.
//
// All stand round the origin, built about the y axis and then turned by the shortest rotation that takes y to
// `axis` (any length; zero means y; straight down: half a turn about x). Faces are counter-clockwise seen
// from outside. UVs lie in the set "map1". Subdivisions below the least possible count as the least possible;
// a mesh of more than `maxPrimitiveFaces` faces is refused with a message.
//
// Ids of vertices, edges, faces and UVs are part of the promise and told with each shape, because scenes
// refer to them by number.

#include "host/geometry/mesh.h"

namespace vesk::geom {

inline constexpr int maxPrimitiveFaces = 1 << 24;

/// Rows of vertices run from -x to +x; the rows go up the front (+z), over the top to the back, down the back
/// and home underneath: row r, place i is vertex r * (subdivisionsWidth + 1) + i. Vertices inside the right
/// side (+x) follow, row by row upwards from front to back, then those inside the left side, from back to
/// front. Edges: along the rows, then across them (row by row, the last row to row 0), then inside the right
/// and left sides; all are hard. Faces: front, top, back, bottom, right, left. UVs: an unfolded cross, the
/// strip of four sides between u 0.375 and 0.625, the right side beyond it and the left side before it.
struct CubeShape {
    double width = 1.0;  ///< along x
    double height = 1.0; ///< along y
    double depth = 1.0;  ///< along z
    int subdivisionsWidth = 1, subdivisionsHeight = 1, subdivisionsDepth = 1;
    MVector axis = MVector::yAxis;
};

/// Vertex j * (subdivisionsWidth + 1) + i lies i steps from -x and j steps from +z; the normal is +y. UV ids
/// are vertex ids, (i / subdivisionsWidth, j / subdivisionsHeight). Edges: for each vertex the one along x,
/// then the one along z; all hard. Faces row by row.
struct PlaneShape {
    double width = 1.0;  ///< along x
    double height = 1.0; ///< along z
    int subdivisionsWidth = 10, subdivisionsHeight = 10;
    MVector axis = MVector::yAxis;
};

// The round shapes are rings of `subdivisionsAxis` vertices: place j stands at the angle 360° (j + 1) /
// subdivisionsAxis from x towards -z. Ids: vertices ring by ring from the bottom, then the bottom pole, then
// the top pole. Edges: round the rings (place j to j + 1), then up from ring to ring, then from the bottom
// pole to its ring and from the last ring to the top pole. Faces: quads upwards strip by strip, then what
// closes the bottom, then what closes the top: triangles round a pole, or one n-gon. UVs: rows from the
// bottom, one place more than the ring has where the row ends in a seam; then one UV per triangle at each
// pole, or one in the middle of a cap.

/// `subdivisionsHeight` - 1 rings between two poles; all edges smooth.
struct SphereShape {
    double radius = 1.0;
    int subdivisionsAxis = 20, subdivisionsHeight = 20; ///< 3 or more
    MVector axis = MVector::yAxis;
};

/// `subdivisionsCaps` 0 closes both ends with one n-gon, 1 with triangles round a middle vertex, more with
/// that many rings of faces; the cap's inner rings belong to the run of rings. The two rims are hard.
struct CylinderShape {
    double radius = 1.0, height = 2.0;
    int subdivisionsAxis = 20, subdivisionsHeight = 1, subdivisionsCaps = 0;
    MVector axis = MVector::yAxis;
};

/// As the cylinder, with a pole in place of the top. The rim is hard.
struct ConeShape {
    double radius = 1.0, height = 2.0;
    int subdivisionsAxis = 20, subdivisionsHeight = 1, subdivisionsCaps = 0;
    MVector axis = MVector::yAxis;
};

/// Rings from the inside downwards, out, up and home; the last strip leads back to ring 0. All edges smooth.
struct TorusShape {
    double radius = 1.0;                                ///< from the centre to the middle of the tube
    double sectionRadius = 0.5;                         ///< of the tube
    int subdivisionsAxis = 20, subdivisionsHeight = 20; ///< round the axis, round the tube; 3 or more
    MVector axis = MVector::yAxis;
};

MeshResult makeCube(const CubeShape& shape);
MeshResult makePlane(const PlaneShape& shape);
MeshResult makeSphere(const SphereShape& shape);
MeshResult makeCylinder(const CylinderShape& shape);
MeshResult makeCone(const ConeShape& shape);
MeshResult makeTorus(const TorusShape& shape);

} // namespace vesk::geom
