#pragma once
// A polygon mesh: topology, points and the layers on them.

#include "host/core/outcome.h"
#include "host/core/shared.h"
#include "host/geometry/mesh_topology.h"

#include <maya/MColor.h>
#include <maya/MFloatVector.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::geom {

class MeshAppender;
class MeshCache;
class MeshIndex;
struct MeshResult;

/// Texture coordinates: a list of (u, v) pairs and, per corner, which pair it has.
struct UvSet {
    std::string name;
    std::vector<float> u, v; ///< same length
    std::vector<int> ids;    ///< one per corner, -1 unmapped; or empty: all unmapped

    int uvCount() const { return static_cast<int>(u.size()); }
    int idOfCorner(int corner) const { return ids.empty() ? -1 : ids[corner]; }
};

/// Colours: a list and, per corner, which entry it has. The list may hold entries that no corner has.
struct ColorSet {
    std::string name;
    std::vector<MColor> colors;
    std::vector<int> ids; ///< one per corner, -1 unset; or empty: all unset

    int idOfCorner(int corner) const { return ids.empty() ? -1 : ids[corner]; }
};

/// Normals that were set by hand and do not follow the points. Both arrays have one entry per corner, or are
/// empty: none locked. The value of an unlocked corner means nothing.
struct LockedNormals {
    std::vector<MFloatVector> values; ///< object space, as given: not always of unit length
    std::vector<std::uint8_t> locked; ///< 1 locked
};

/// Three corners of one face, as ids into the topology's flat corner list.
using TriangleCorners = std::array<int, 3>;

/// The colour that stands for "none set".
inline constexpr MColor unsetColor{-1.0F, -1.0F, -1.0F, -1.0F};

/// Everything a mesh data object holds, in object space. Copies are cheap: layers are shared until one
/// writes.
///
/// A new mesh has one UV set, "map1", that is empty and current, and no colour set. Reading is safe from
/// several threads, also what is derived and cached; writing is not. What was moved from may only be assigned
/// to or destroyed. Ids passed in must exist unless a
/// method's text says what happens otherwise; `topology().hasVertex(id)` and its siblings ask.
class Mesh {
  public:
    Mesh();

    /// Fails when there is not exactly one point per vertex.
    static MeshResult create(MeshTopologyPtr topology, std::vector<MFloatVector> points);
    /// Topology by `MeshTopology::fromFaces`; fails as that does.
    static MeshResult create(std::vector<MFloatVector> points, std::span<const int> counts,
                             std::span<const int> connects);

    const MeshTopology& topology() const { return *topology_; }
    const MeshTopologyPtr& topologyPtr() const { return topology_; }
    int vertexCount() const { return topology_->vertexCount(); }
    int edgeCount() const { return topology_->edgeCount(); }
    int faceCount() const { return topology_->faceCount(); }
    int cornerCount() const { return topology_->cornerCount(); }

    // ---- points ----

    const std::vector<MFloatVector>& points() const { return points_.read(); }
    MVector point(int vertex) const { return MVector(points_.read()[vertex]); }
    /// Replaces all; locked normals, UVs and colours stay. Fails, changing nothing, on another count.
    Outcome setPoints(std::vector<MFloatVector> points);
    void setPoint(int vertex, const MFloatVector& point);
    /// For writing in place; the length must stay. Take it anew after each read of anything derived.
    std::vector<MFloatVector>& editPoints();

    // ---- edges ----

    bool isHardEdge(int edge) const { return !hardEdges_->empty() && (*hardEdges_)[edge] != 0; }
    /// One per edge, 1 hard; or empty: all smooth.
    const std::vector<std::uint8_t>& hardEdges() const { return hardEdges_.read(); }
    void setEdgeHard(int edge, bool hard);
    /// One per edge, or empty. Fails, changing nothing, on another count.
    Outcome setHardEdges(std::vector<std::uint8_t> hard);
    void setAllEdgesHard(bool hard);

    // ---- normals: mesh_normals.cpp ----

    /// Unit Newell normal of each face, counter-clockwise outward; zero for a face without area.
    const std::vector<MFloatVector>& faceNormals() const;
    /// Per vertex the normalised sum of the unit normals of its faces, each weighted by its corner angle when
    /// asked; zero without faces. Hard edges and locked normals make no difference here.
    const std::vector<MFloatVector>& vertexNormals(bool angleWeighted = false) const;
    /// Per corner: the locked normal, or else the normalised sum of the unit normals of the faces that are
    /// reached from this one across smooth edges round the vertex.
    const std::vector<MFloatVector>& cornerNormals() const;

    const LockedNormals& lockedNormals() const { return lockedNormals_.read(); }
    bool isNormalLocked(int corner) const {
        return !lockedNormals_->locked.empty() && lockedNormals_->locked[corner] != 0;
    }
    /// Lengths as `LockedNormals` says, or failure.
    Outcome setLockedNormals(LockedNormals normals);
    /// Locks every corner of each vertex to its normal, stored as given. Fails, changing nothing, on arrays
    /// of different lengths or a vertex that does not exist.
    Outcome setVertexNormals(std::span<const MFloatVector> normals, std::span<const int> vertices);
    void lockCornerNormal(int corner, const MFloatVector& normal);
    void unlockNormals();

    // ---- tangents: mesh_tangents.cpp. `uvSet` is an index from `findUvSet`. ----

    /// Per corner the unit direction of growing u and of growing v, both at right angles to the corner's
    /// normal; computed from the triangles of the face's own triangulation that meet at the corner, so that
    /// nothing is averaged over faces. binormal = ±(normal ^ tangent), minus where the UVs are mirrored.
    /// Without UVs at the triangles, without UV area, or with a zero normal: both zero.
    struct CornerFrames {
        std::vector<MFloatVector> tangents, binormals;
    };
    CornerFrames cornerFrames(int uvSet) const;
    struct CornerFrame {
        MFloatVector tangent, binormal;
        /// False when there is no frame: both vectors are zero.
        bool valid = false;
    };
    CornerFrame cornerFrame(int uvSet, int corner) const;

    // ---- triangles: mesh_triangulation.cpp ----

    /// All triangles, faces in order; `triangleStart(face)` is the first of a face, `triangleCount(face)` is
    /// its size - 2. Quads split into (0,1,2) (0,2,3), or (1,2,3) (1,3,0) where only that diagonal lies
    /// inside; larger faces by clipping ears from corner 0 on, in the plane of the face's normal.
    const std::vector<TriangleCorners>& triangles() const;
    int triangleStart(int face) const { return topology_->faceStart()[face] - 2 * face; }
    int triangleCount(int face) const { return topology_->faceSize(face) - 2; }
    int triangleCount() const { return topology_->cornerCount() - 2 * topology_->faceCount(); }
    /// Mesh vertices of triangle `triangle` of the face.
    std::array<int, 3> triangleVertices(int face, int triangle) const;
    /// The same as places 0.. in the face's own loop.
    std::array<int, 3> triangleLocalCorners(int face, int triangle) const;

    /// For hits of rays and nearest points; made when first asked for, and kept by all copies of the mesh
    /// until their points change.
    const MeshIndex& index() const;

    // ---- measures ----

    /// Newell normal of the face as long as the face's area (for a planar face).
    MVector faceAreaVector(int face) const;
    double edgeLength(int edge) const;
    /// Of the edge taken through the matrix.
    double edgeLength(int edge, const MMatrix& matrix) const;
    /// Sum of the face's triangle areas.
    double faceArea(int face) const;
    double faceArea(int face, const MMatrix& matrix) const;
    /// Mean of the face's vertices.
    MPoint faceCenter(int face) const;

    // ---- UV sets: mesh_uvs.cpp ----

    int uvSetCount() const { return static_cast<int>(uvSets_.size()); }
    const UvSet& uvSet(int set) const { return uvSets_[set].read(); }
    /// Index of a set by name, of the current set for an empty name; -1 when there is none.
    int findUvSet(std::string_view name) const;
    int currentUvSet() const { return currentUvSet_; }
    void setCurrentUvSet(int set) { currentUvSet_ = set; }
    /// Appends an empty set and returns its index; the index of the present one when the name is taken.
    int addUvSet(std::string name);
    /// Replaces names, values and ids of all sets at once. Fails, changing nothing, unless there is a set,
    /// each set's u and v are of one length, and its ids are as `UvSet` says and in range.
    Outcome setUvSets(std::vector<UvSet> sets, int current);
    /// Replaces the (u, v) list. Fails, changing nothing, on a shorter list than the present one or on lists
    /// of different lengths.
    Outcome setUvs(int set, std::vector<float> u, std::vector<float> v);
    /// Per face 0 (unmapped) or its corner count, and that many ids. Fails, changing nothing, on any other
    /// count, too few ids, or an id outside the list (-1 is allowed: unmapped).
    Outcome assignUvs(int set, std::span<const int> counts, std::span<const int> ids);
    /// Empties a set's list and unmaps every corner; the set stays.
    void clearUvs(int set);

    struct Uv {
        float u = 0.0F, v = 0.0F;
    };
    /// The vertex's UV in the first of its faces (in the round's order) that is mapped there.
    std::optional<Uv> vertexUv(int set, int vertex) const;
    std::optional<Uv> cornerUv(int set, int corner) const;
    /// Different UV ids at the vertex.
    int vertexUvCount(int set, int vertex) const;
    /// Per connected face in the round's order its UV id at the vertex, -1 unmapped.
    void vertexUvIds(int set, int vertex, std::vector<int>& out) const;
    /// The point of the face at which its UVs, triangle by triangle, reach (u, v); the nearest in UV space
    /// when that lies outside by no more than `tolerance`. Nothing when it lies farther out or the face is
    /// unmapped.
    std::optional<MPoint> pointAtUv(int set, int face, Uv uv, double tolerance = 0.0) const;
    /// UV on triangle `triangle` of the face at weights b0 b1 b2 of its corners; nothing when unmapped.
    std::optional<Uv> uvOnTriangle(int set, int face, int triangle,
                                   const std::array<double, 3>& weights) const;

    // ---- colour sets: mesh_colors.cpp ----

    int colorSetCount() const { return static_cast<int>(colorSets_.size()); }
    const ColorSet& colorSet(int set) const { return colorSets_[set].read(); }
    /// As `findUvSet`; -1 also for an empty name while there is no set.
    int findColorSet(std::string_view name) const;
    int currentColorSet() const { return currentColorSet_; } ///< -1 without a set
    void setCurrentColorSet(int set) { currentColorSet_ = set; }
    int addColorSet(std::string name); ///< the first one becomes current
    /// Replaces all sets. Fails, changing nothing, unless ids are as `ColorSet` says and in range.
    Outcome setColorSets(std::vector<ColorSet> sets, int current);
    /// Sets every corner of each vertex in the current set; without any set makes "colorSet1". Fails,
    /// changing nothing, on arrays of different lengths or a vertex that does not exist.
    Outcome setVertexColors(std::span<const MColor> colors, std::span<const int> vertices);
    /// The same per corner: `corners[k]` gets `colors[k]`.
    Outcome setCornerColors(std::span<const MColor> colors, std::span<const int> corners);
    /// Every corner back to unset; the set stays.
    void clearColors(int set);
    /// Per vertex the mean of its corners' colours, `unset` for a vertex with none.
    std::vector<MColor> vertexColors(int set, const MColor& unset = unsetColor) const;
    MColor vertexColor(int set, int vertex, const MColor& unset = unsetColor) const;
    MColor cornerColor(int set, int corner, const MColor& unset = unsetColor) const;
    std::vector<MColor> cornerColors(int set, const MColor& unset = unsetColor) const;
    /// The entries that corners have, in the list's order.
    std::vector<MColor> usedColors(int set) const;

    // ---- editing: mesh_edit.cpp. Locked normals go; hard edges, UVs and colours stay with what stays. ----

    /// Adds a face. When merging, each loop point takes the lowest existing vertex within the tolerance;
    /// else, and when there is none, it becomes a new vertex. Points of one call are not merged with each
    /// other. New corners have no UV and no colour. Costs the size of the face, also in a large mesh, as long
    /// as nothing else changes the mesh between the calls. Fails, changing nothing, when fewer than three
    /// corners remain that differ from their neighbours.
    Outcome addPolygon(std::span<const MFloatVector> loop, bool mergeVertices = true,
                       double tolerance = 1e-10);
    /// Removes the vertex from its faces (faces left with fewer than three corners go), and then every vertex
    /// that no face uses. Remaining ids close up in order. Fails when there is no such vertex.
    Outcome deleteVertex(int vertex);
    /// Fails on the last face, or when there is no such face. Vertices and edges that only this face used go;
    /// those that were loose stay.
    Outcome deleteFace(int face);
    /// A mesh of other topology and points that takes its layers from this one: corner i is what corner
    /// `sourceCorners[i]` was here, edge i as hard as `sourceEdges[i]`; -1 for new ones. UV and colour lists
    /// stay whole, locked normals go. Points must be one per vertex.
    Mesh rebuilt(MeshTopologyPtr topology, std::vector<MFloatVector> points,
                 std::span<const int> sourceCorners, std::span<const int> sourceEdges) const;

    // ---- whole mesh ----

    /// Points by the matrix (x, y, z of the homogeneous result), locked normals as `transformedNormal`;
    /// topology, edges, UVs and colours are shared with this mesh.
    Mesh transformed(const MMatrix& matrix) const;
    /// Whether layers fit the topology and the topology itself. The message names the first fault.
    Outcome checkInvariants() const;
    /// Bytes held, shared and derived ones counted in full.
    std::size_t byteSize() const;

  private:
    void pointsChanged();               ///< also for what else normals derive from: hard edges and locks
    LockedNormals& editLockedNormals(); ///< with room for every corner
    ColorSet& colorsForWriting();       ///< the current set, made if need be, with an id per corner
    void growLayers();                  ///< for corners and edges that were appended
    Outcome checkUvSets() const;
    Outcome checkColorSets() const;

    MeshTopologyPtr topology_;
    Shared<std::vector<MFloatVector>> points_;
    Shared<std::vector<std::uint8_t>> hardEdges_;
    Shared<LockedNormals> lockedNormals_;
    std::vector<Shared<UvSet>> uvSets_;
    std::vector<Shared<ColorSet>> colorSets_;
    int currentUvSet_ = 0;
    int currentColorSet_ = -1;
    std::shared_ptr<MeshCache> cache_;
    std::shared_ptr<MeshAppender> appender_; ///< while polygons are being added; else null
};

struct MeshResult {
    Mesh mesh; ///< the empty mesh on failure
    Outcome outcome;
    /// Of `MeshTopologyResult`, for layers that are set afterwards.
    MeshTopologyResult topology;

    explicit operator bool() const { return static_cast<bool>(outcome); }
};

/// Takes normals through a matrix: inverse transpose of its upper 3x3, then unit length; zero stays zero.
/// A matrix that squashes space to a plane still gives the plane's normal.
class NormalTransform {
  public:
    explicit NormalTransform(const MMatrix& matrix);
    MFloatVector operator()(const MFloatVector& normal) const;

  private:
    MVector rows_[3];
};

std::vector<MFloatVector> transformedNormals(std::span<const MFloatVector> normals, const MMatrix& matrix);
/// x, y, z of each point times the matrix.
std::vector<MFloatVector> transformedPoints(std::span<const MFloatVector> points, const MMatrix& matrix);

/// Object-space frames taken through a matrix: directions by its upper 3x3, then unit length.
Mesh::CornerFrames transformedFrames(Mesh::CornerFrames frames, const MMatrix& matrix);
Mesh::CornerFrame transformedFrame(Mesh::CornerFrame frame, const MMatrix& matrix);

} // namespace vesk::geom
