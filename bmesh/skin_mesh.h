#pragma once
// A coarse mesh of quads round a skeleton of spheres.
//
// Square rings are swept from the tips to the roots, as in Ji, Liu and Wang, "B-Mesh: a modeling system for
// base meshes of 3D articulated shapes" (Computer Graphics Forum 29(7), 2010): along bones, turned at bends;
// where children meet, the open ends are stitched with the convex hull of their rings, whose triangles are
// then paired into quads.

#include "bmesh/hull.h"
#include "bmesh/joint_sphere.h"

#include <QHash>
#include <QVector>

#include <array>

namespace vesk::skin {

struct SkinVertex {
    Float3 position, normal;
    QHash<int, float> weights; ///< by sphere
};

struct Corner {
    int vertex = 0;
    float u = 0.0F, v = 0.0F;
};

/// Counter-clockwise seen from outside.
using Triangle = std::array<Corner, 3>;
using Quad = std::array<Corner, 4>;

/// What a joint hands towards the root: the shape of its ring about its own centre, and the four vertices at
/// which the next tube begins. The vertices may stand elsewhere than the shape.
struct SweepRing {
    std::array<Float3, 4> positions;
    std::array<int, 4> indices{};
};

/// v turned about a unit axis by an angle in radians, right-handed.
Float3 rotateAboutAxis(Float3 v, Float3 axis, float angle);

/// The four corners of the square round a joint that has a parent, across the bone between them. Where the
/// two centres are one the bone counts as pointing along y.
std::array<Float3, 4> ringFrame(const JointSphere& sphere, const JointSphere& parent);

class SkinMesh {
  public:
    /// Rings that long tubes get beyond their ends, all tubes together: more would say nothing that these
    /// don't, and joints of next to no radius ask for millions.
    static constexpr int kMaxExtraRings = 100000;

    QVector<JointSphere> spheres;
    QVector<SkinVertex> vertices;
    QVector<Triangle> triangles;
    QVector<Quad> quads;

    /// Fills `children` of the spheres and makes vertices, quads and triangles anew. The spheres must have
    /// none of the faults that `findFault` finds; vertices can still be infinite when coordinates are next to
    /// the largest floats. Costs no native stack however long the chains.
    void build();
    /// Extra rings that were left out by `kMaxExtraRings`; their tubes are whole, only coarser.
    double missingRings() const { return missingRings_; }

    /// Appends the hull's triangles between the vertices behind its points, but for those within one face.
    /// A triangle with a point that is not in `vertexAt` is left out with a line on standard output.
    void appendHull(const Hull& hull, const QHash<Float3, int>& vertexAt,
                    const QVector<std::array<int, 4>>& faces);
    /// Greedy, best score first; what finds no partner stays a triangle. O(t log t).
    void pairTrianglesToQuads();
    /// Unit sums of the unit normals of the faces at each vertex, zero where there is none.
    void computeNormals();

  private:
    friend class SkinSweep;
    double missingRings_ = 0.0;
};

/// Equal vectors, also of zeros with different signs, have equal hashes.
uint qHash(const Float3& key, uint seed = 0);

} // namespace vesk::skin
