#pragma once
// How a polygon mesh hangs together: faces, edges and who touches whom. No positions.

#include "host/core/outcome.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace vesk::geom {

/// An edge in its stored direction, from vertex `a` to vertex `b`.
struct MeshEdge {
    int a = 0;
    int b = 0;
    friend bool operator==(const MeshEdge&, const MeshEdge&) = default;
};

class MeshTopology;
using MeshTopologyPtr = std::shared_ptr<const MeshTopology>;

/// What a builder made, or why it could not.
///
/// Corners that repeat their neighbour and faces with fewer than three corners are left out. Then `dropped`
/// is true, and `sourceCorners[i]` is the corner of the input (counted over all given faces) that became
/// corner i, `sourceFaces[i]` the given face that became face i, so that layers per corner can follow
/// (`followCorners`). Both are empty when nothing was dropped.
struct MeshTopologyResult {
    MeshTopologyPtr topology; ///< null on failure
    Outcome outcome;
    bool dropped = false;
    std::vector<int> sourceFaces;
    std::vector<int> sourceCorners;

    explicit operator bool() const { return topology != nullptr; }
    /// Values per given corner, brought to the corners that were kept. `values` has one entry per given
    /// corner.
    template <class T>
    std::vector<T> followCorners(std::span<const T> values) const;
};

/// Faces, corners and edges of a mesh; never changes once built, so that any number of meshes can share it.
///
/// A *corner* (face-vertex) is a place in the flat list of all faces' vertices: face f owns the corners
/// `faceStart()[f]` up to `faceStart()[f + 1]`, counter-clockwise seen from outside. Faces may be any n-gons;
/// edges may carry any number of faces; windings may disagree. Nothing is ever split.
///
/// What is derived (faces of an edge, fans round a vertex) is made once when first asked for. All reading is
/// safe from several threads.
class MeshTopology {
  public:
    /// Faces as vertex loops. `counts` holds the corners of each face, `connects` all their vertices in turn.
    /// Edges get ids in the order in which the loops first meet them, in the direction of that meeting.
    /// Fails on a negative count, counts that do not add up to the length of `connects`, a vertex id out of
    /// range.
    static MeshTopologyResult fromFaces(int vertexCount, std::span<const int> counts,
                                        std::span<const int> connects);
    /// The same with the first edges' ids and directions given. Edges that the loops use beyond them are
    /// appended as in `fromFaces`; given ones that no loop uses stay as loose edges.
    static MeshTopologyResult fromFacesAndEdges(int vertexCount, std::vector<MeshEdge> edges,
                                                std::span<const int> counts, std::span<const int> connects);
    /// Faces as loops of signed edge ids, as scene files hold them: e walks edge e from a to b, -e-1 from b
    /// to a. Fails also when an edge does not begin where the one before ends.
    static MeshTopologyResult fromEdgeLoops(int vertexCount, std::vector<MeshEdge> edges,
                                            std::span<const int> counts, std::span<const int> signedEdges);
    /// No vertex, no face; one object for all.
    static const MeshTopologyPtr& empty();

    /// `base` with one face more; its arrays are taken over when nobody else holds it. `newEdges` follow the
    /// present ones. The loop has three corners or more, none equal to the next, `edges` the edge after each.
    static MeshTopologyPtr withFace(MeshTopologyPtr&& base, int newVertices,
                                    std::span<const MeshEdge> newEdges, std::span<const int> vertices,
                                    std::span<const int> edges);

    MeshTopology(const MeshTopology&) = delete;
    MeshTopology& operator=(const MeshTopology&) = delete;

    int vertexCount() const { return vertexCount_; }
    int edgeCount() const { return static_cast<int>(edges_.size()); }
    int faceCount() const { return static_cast<int>(faceStart_.size()) - 1; }
    int cornerCount() const { return static_cast<int>(faceVertices_.size()); }

    const std::vector<int>& faceStart() const { return faceStart_; }       ///< faceCount + 1 corner ids
    const std::vector<int>& faceVertices() const { return faceVertices_; } ///< vertex of each corner
    /// Edge of each corner: the one that joins it to the next corner of its face.
    const std::vector<int>& cornerEdges() const { return cornerEdges_; }
    const std::vector<MeshEdge>& edges() const { return edges_; }

    /// Whether any face visits a vertex twice (or an edge, which needs two such visits).
    bool hasFaceWithRepeatedVertex() const { return repeatedVertex_; }
    bool hasVertex(int id) const { return id >= 0 && id < vertexCount(); }
    bool hasEdge(int id) const { return id >= 0 && id < edgeCount(); }
    bool hasFace(int id) const { return id >= 0 && id < faceCount(); }

    // Ids passed to what follows must exist.

    int faceSize(int face) const { return faceStart_[face + 1] - faceStart_[face]; }
    std::span<const int> verticesOfFace(int face) const { return slice(faceVertices_, faceStart_, face); }
    /// Edge k joins corner k and k + 1 of the face.
    std::span<const int> edgesOfFace(int face) const { return slice(cornerEdges_, faceStart_, face); }
    int otherEnd(int edge, int vertex) const {
        return edges_[edge].a == vertex ? edges_[edge].b : edges_[edge].a;
    }

    int faceOfCorner(int corner) const { return uses().cornerFace[corner]; }
    /// The next and previous corner of the same face.
    int nextCorner(int corner) const {
        const int face = faceOfCorner(corner);
        return corner + 1 == faceStart_[face + 1] ? faceStart_[face] : corner + 1;
    }
    int previousCorner(int corner) const {
        const int face = faceOfCorner(corner);
        return corner == faceStart_[face] ? faceStart_[face + 1] - 1 : corner - 1;
    }

    /// The corners whose edge this is, ascending: one per face along the edge.
    std::span<const int> cornersOfEdge(int edge) const {
        return slice(uses().edgeCorners, uses().edgeStart, edge);
    }
    /// Edges at a vertex, counter-clockwise as seen from outside. The round starts at the lowest edge, or at
    /// the border of the fan that holds it; fans that hang on by the vertex alone, or by an edge with more
    /// than two faces, follow by their lowest edge; each edge once. In an unbroken fan, corner k of
    /// `cornersOfVertex` lies between edge k and the edge after it. Where windings disagree, the face by
    /// which the round begins decides its direction.
    std::span<const int> edgesOfVertex(int vertex) const {
        return slice(fans().vertexEdges, fans().edgeStart, vertex);
    }
    /// The far end of each of `edgesOfVertex`.
    std::span<const int> verticesOfVertex(int vertex) const {
        return slice(fans().farEnds, fans().edgeStart, vertex);
    }
    /// Corners at a vertex in the same round.
    std::span<const int> cornersOfVertex(int vertex) const {
        return slice(fans().vertexCorners, fans().cornerStart, vertex);
    }

    // The lists below replace what `out` holds.

    void facesOfVertex(int vertex, std::vector<int>& out) const;   ///< in the round's order, each face once
    void facesOfEdge(int edge, std::vector<int>& out) const;       ///< ascending, each once
    void edgesTouchingEdge(int edge, std::vector<int>& out) const; ///< ascending, without itself
    void facesAcrossEdges(int face, std::vector<int>& out) const;  ///< sharing an edge; ascending
    void edgesTouchingFace(int face,
                           std::vector<int>& out) const; ///< at its vertices, not its own; ascending
    void verticesAroundFace(int face, std::vector<int>& out) const; ///< one edge away; ascending

    int faceCountOfEdge(int edge) const; ///< different faces along it
    int faceCountOfVertex(int vertex) const;
    bool isBoundaryEdge(int edge) const { return faceCountOfEdge(edge) == 1; }
    /// Whether any edge at it is a boundary edge.
    bool isBoundaryVertex(int vertex) const { return fans().onBoundary[vertex] != 0; }
    bool isBoundaryFace(int face) const; ///< any of its edges is a boundary edge

    /// The first corner of the face at this vertex, or -1. Searches the shorter of the face's and the
    /// vertex's corners.
    int findCorner(int face, int vertex) const;
    /// The lowest edge between the two vertices, whatever its direction, or -1.
    int findEdge(int vertexA, int vertexB) const;

    /// Every array's length, every id's range, every edge's ends. The message names the first fault.
    Outcome checkInvariants() const;

    /// Bytes held, derived arrays included.
    std::size_t byteSize() const;

  private:
    friend class MeshTopologyBuilder;
    MeshTopology() = default;

    struct Uses {
        std::vector<int> cornerFace;  ///< per corner
        std::vector<int> edgeStart;   ///< edgeCount + 1 offsets
        std::vector<int> edgeCorners; ///< grouped by edge
    };
    struct Fans {
        std::vector<int> edgeStart, vertexEdges;     ///< vertexCount + 1 offsets; edges round each vertex
        std::vector<int> farEnds;                    ///< in step with `vertexEdges`
        std::vector<int> cornerStart, vertexCorners; ///< the same for corners
        std::vector<std::uint8_t> onBoundary;        ///< 1 for a vertex on the boundary
    };
    friend class FanWalker;

    static std::span<const int> slice(const std::vector<int>& values, const std::vector<int>& start, int i) {
        return {values.data() + start[i], static_cast<std::size_t>(start[i + 1] - start[i])};
    }
    const Uses& uses() const {
        if (!usesReady_.load(std::memory_order_acquire)) buildUses();
        return uses_;
    }
    const Fans& fans() const {
        if (!fansReady_.load(std::memory_order_acquire)) buildFans();
        return fans_;
    }
    void buildUses() const;
    void buildFans() const;

    int vertexCount_ = 0;
    std::vector<int> faceStart_{0};
    std::vector<int> faceVertices_;
    std::vector<int> cornerEdges_;
    std::vector<MeshEdge> edges_;
    bool repeatedVertex_ = false;

    mutable std::once_flag usesOnce_, fansOnce_;
    mutable std::atomic<bool> usesReady_{false}, fansReady_{false};
    mutable Uses uses_;
    mutable Fans fans_;
};

template <class T>
std::vector<T> MeshTopologyResult::followCorners(std::span<const T> values) const {
    if (!dropped) return {values.begin(), values.end()};
    std::vector<T> kept;
    kept.reserve(sourceCorners.size());
    for (const int corner : sourceCorners)
        kept.push_back(values[corner]);
    return kept;
}

} // namespace vesk::geom
