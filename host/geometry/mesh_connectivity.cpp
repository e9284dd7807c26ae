// What a topology derives from its loops: faces along edges, fans round vertices, neighbours.

#include "host/geometry/mesh_topology.h"

#include <algorithm>
#include <numeric>

namespace vesk::geom {

namespace {

/// Offsets from counts that stand one place late: `start[i + 1]` holds the count of group i.
void countsToOffsets(std::vector<int>& start) { std::partial_sum(start.begin(), start.end(), start.begin()); }

void sortUnique(std::vector<int>& ids) {
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
}

/// Takes the ids in `own` (any order) out of the ascending `ids`.
void removeIds(std::vector<int>& ids, std::span<const int> own) {
    std::vector<int> sorted(own.begin(), own.end());
    std::sort(sorted.begin(), sorted.end());
    std::erase_if(ids, [&](int id) { return std::binary_search(sorted.begin(), sorted.end(), id); });
}

} // namespace

void MeshTopology::buildUses() const {
    std::call_once(usesOnce_, [this] {
        Uses& u = uses_;
        u.cornerFace.resize(faceVertices_.size());
        for (int f = 0; f < faceCount(); ++f)
            std::fill(u.cornerFace.begin() + faceStart_[f], u.cornerFace.begin() + faceStart_[f + 1], f);
        u.edgeStart.assign(edges_.size() + 1, 0);
        for (const int e : cornerEdges_)
            ++u.edgeStart[e + 1];
        countsToOffsets(u.edgeStart);
        u.edgeCorners.resize(cornerEdges_.size());
        std::vector<int> next(u.edgeStart.begin(), u.edgeStart.end() - 1);
        for (int c = 0; c < cornerCount(); ++c)
            u.edgeCorners[next[cornerEdges_[c]]++] = c;
        usesReady_.store(true, std::memory_order_release);
    });
}

/// Puts the edges and corners round one vertex after another into the order that `edgesOfVertex` promises.
class FanWalker {
  public:
    FanWalker(const MeshTopology& topology, MeshTopology::Fans& fans)
        : topology_(topology), fans_(fans), cornerDone_(static_cast<std::size_t>(topology.cornerCount()), 0),
          edgeDone_(static_cast<std::size_t>(topology.edgeCount()), -1) {}

    void order(int vertex) {
        vertex_ = vertex;
        const auto edges = MeshTopology::slice(fans_.vertexEdges, fans_.edgeStart, vertex);
        ascending_.assign(edges.begin(), edges.end());
        edgeOut_ = fans_.vertexEdges.data() + fans_.edgeStart[vertex];
        cornerOut_ = fans_.vertexCorners.data() + fans_.cornerStart[vertex];
        for (const int edge : ascending_) {
            for (const int use : topology_.cornersOfEdge(edge)) {
                const int corner = cornerAtVertex(use);
                if (!cornerDone_[corner]) emitFan(preferOutgoing(edge, corner));
            }
            emitEdge(edge);
        }
    }

  private:
    /// The corner at the vertex of the face that walks along an edge from corner `use`.
    int cornerAtVertex(int use) const {
        return topology_.faceVertices()[use] == vertex_ ? use : topology_.nextCorner(use);
    }
    int outgoingEdge(int corner) const { return topology_.cornerEdges()[corner]; }
    int incomingEdge(int corner) const { return topology_.cornerEdges()[topology_.previousCorner(corner)]; }

    /// Of the corners at a two-faced edge the one that leaves along it, so that the round is
    /// counter-clockwise.
    int preferOutgoing(int edge, int corner) const {
        const auto uses = topology_.cornersOfEdge(edge);
        if (outgoingEdge(corner) == edge || uses.size() != 2) return corner;
        const int other = acrossEdge(edge, corner);
        return !cornerDone_[other] && outgoingEdge(other) == edge ? other : corner;
    }
    /// The corner on the other side of a two-faced edge, -1 at any other edge.
    int acrossEdge(int edge, int corner) const {
        const auto uses = topology_.cornersOfEdge(edge);
        if (uses.size() != 2) return -1;
        const int own = outgoingEdge(corner) == edge ? corner : topology_.previousCorner(corner);
        return cornerAtVertex(uses[0] == own ? uses[1] : uses[0]);
    }

    void emitFan(int first) {
        // Clockwise until the border, or round to the start.
        backward_.clear();
        int corner = first;
        int edge = outgoingEdge(first);
        for (;;) {
            cornerDone_[corner] = 1;
            backward_.push_back({edge, corner});
            const int other = acrossEdge(edge, corner);
            if (other < 0 || cornerDone_[other]) break;
            edge = outgoingEdge(other) == edge ? incomingEdge(other) : outgoingEdge(other);
            corner = other;
        }
        const bool closed = backward_.size() > 1 && acrossEdge(edge, corner) == first;
        if (closed) {
            // The start stays first; the rest was met the wrong way round.
            std::reverse(backward_.begin() + 1, backward_.end());
        } else {
            std::reverse(backward_.begin(), backward_.end());
        }
        for (const Step& step : backward_) {
            emitEdge(step.edge);
            *cornerOut_++ = step.corner;
        }
        if (!closed) emitForward(first);
    }

    void emitForward(int first) {
        int corner = first;
        int edge = incomingEdge(first);
        for (;;) {
            emitEdge(edge);
            const int other = acrossEdge(edge, corner);
            if (other < 0 || cornerDone_[other]) return;
            cornerDone_[other] = 1;
            *cornerOut_++ = other;
            edge = outgoingEdge(other) == edge ? incomingEdge(other) : outgoingEdge(other);
            corner = other;
        }
    }

    void emitEdge(int edge) {
        if (edgeDone_[edge] == vertex_) return;
        edgeDone_[edge] = vertex_;
        *edgeOut_++ = edge;
    }

    struct Step {
        int edge, corner; ///< the corner and the edge on its clockwise side
    };

    const MeshTopology& topology_;
    MeshTopology::Fans& fans_;
    std::vector<std::uint8_t> cornerDone_;
    std::vector<int> edgeDone_; ///< last vertex round which the edge was put out
    std::vector<int> ascending_;
    std::vector<Step> backward_;
    int vertex_ = -1;
    int* edgeOut_ = nullptr;
    int* cornerOut_ = nullptr;
};

void MeshTopology::buildFans() const {
    buildUses();
    std::call_once(fansOnce_, [this] {
        Fans& f = fans_;
        f.edgeStart.assign(static_cast<std::size_t>(vertexCount_) + 1, 0);
        f.cornerStart.assign(static_cast<std::size_t>(vertexCount_) + 1, 0);
        for (const MeshEdge& edge : edges_) {
            ++f.edgeStart[edge.a + 1];
            if (edge.b != edge.a) ++f.edgeStart[edge.b + 1];
        }
        for (const int v : faceVertices_)
            ++f.cornerStart[v + 1];
        countsToOffsets(f.edgeStart);
        countsToOffsets(f.cornerStart);
        f.vertexEdges.resize(static_cast<std::size_t>(f.edgeStart.back()));
        f.vertexCorners.resize(faceVertices_.size());
        std::vector<int> next(f.edgeStart.begin(), f.edgeStart.end() - 1);
        for (int e = 0; e < edgeCount(); ++e) {
            f.vertexEdges[next[edges_[e].a]++] = e;
            if (edges_[e].b != edges_[e].a) f.vertexEdges[next[edges_[e].b]++] = e;
        }
        FanWalker walker(*this, f);
        for (int v = 0; v < vertexCount_; ++v)
            walker.order(v);
        f.farEnds.resize(f.vertexEdges.size());
        f.onBoundary.assign(static_cast<std::size_t>(vertexCount_), 0);
        for (int v = 0; v < vertexCount_; ++v) {
            for (int i = f.edgeStart[v]; i < f.edgeStart[v + 1]; ++i) {
                f.farEnds[i] = otherEnd(f.vertexEdges[i], v);
                if (isBoundaryEdge(f.vertexEdges[i])) f.onBoundary[v] = 1;
            }
        }
        fansReady_.store(true, std::memory_order_release);
    });
}

void MeshTopology::facesOfVertex(int vertex, std::vector<int>& out) const {
    out.clear();
    for (const int corner : cornersOfVertex(vertex)) {
        const int face = faceOfCorner(corner);
        if (!repeatedVertex_ || std::find(out.begin(), out.end(), face) == out.end()) out.push_back(face);
    }
}

void MeshTopology::facesOfEdge(int edge, std::vector<int>& out) const {
    out.clear();
    for (const int corner : cornersOfEdge(edge)) {
        const int face = faceOfCorner(corner);
        if (out.empty() || out.back() != face) out.push_back(face);
    }
}

void MeshTopology::edgesTouchingEdge(int edge, std::vector<int>& out) const {
    out.clear();
    for (const int end : {edges_[edge].a, edges_[edge].b}) {
        const auto ids = edgesOfVertex(end);
        out.insert(out.end(), ids.begin(), ids.end());
    }
    sortUnique(out);
    std::erase(out, edge);
}

void MeshTopology::facesAcrossEdges(int face, std::vector<int>& out) const {
    out.clear();
    for (const int edge : edgesOfFace(face)) {
        for (const int corner : cornersOfEdge(edge))
            out.push_back(faceOfCorner(corner));
    }
    sortUnique(out);
    std::erase(out, face);
}

void MeshTopology::edgesTouchingFace(int face, std::vector<int>& out) const {
    out.clear();
    for (const int vertex : verticesOfFace(face)) {
        const auto ids = edgesOfVertex(vertex);
        out.insert(out.end(), ids.begin(), ids.end());
    }
    sortUnique(out);
    removeIds(out, edgesOfFace(face));
}

void MeshTopology::verticesAroundFace(int face, std::vector<int>& out) const {
    out.clear();
    for (const int vertex : verticesOfFace(face)) {
        for (const int edge : edgesOfVertex(vertex))
            out.push_back(otherEnd(edge, vertex));
    }
    sortUnique(out);
    removeIds(out, verticesOfFace(face));
}

int MeshTopology::faceCountOfEdge(int edge) const {
    int count = 0;
    int last = -1;
    for (const int corner : cornersOfEdge(edge)) {
        const int face = faceOfCorner(corner);
        count += face != last ? 1 : 0;
        last = face;
    }
    return count;
}

int MeshTopology::faceCountOfVertex(int vertex) const {
    if (!repeatedVertex_) return static_cast<int>(cornersOfVertex(vertex).size());
    std::vector<int> faces;
    facesOfVertex(vertex, faces);
    return static_cast<int>(faces.size());
}

bool MeshTopology::isBoundaryFace(int face) const {
    const auto ids = edgesOfFace(face);
    return std::any_of(ids.begin(), ids.end(), [this](int e) { return isBoundaryEdge(e); });
}

int MeshTopology::findCorner(int face, int vertex) const {
    const auto atVertex = cornersOfVertex(vertex);
    int found = -1;
    if (static_cast<int>(atVertex.size()) < faceSize(face)) {
        for (const int corner : atVertex) {
            if (faceOfCorner(corner) == face && (found < 0 || corner < found)) found = corner;
        }
        return found;
    }
    const auto loop = verticesOfFace(face);
    const auto place = std::find(loop.begin(), loop.end(), vertex);
    return place == loop.end() ? -1 : faceStart_[face] + static_cast<int>(place - loop.begin());
}

int MeshTopology::findEdge(int vertexA, int vertexB) const {
    const bool shorterAtA = edgesOfVertex(vertexA).size() <= edgesOfVertex(vertexB).size();
    const int from = shorterAtA ? vertexA : vertexB;
    const int to = shorterAtA ? vertexB : vertexA;
    int found = -1;
    for (const int edge : edgesOfVertex(from)) {
        if (otherEnd(edge, from) == to && (found < 0 || edge < found)) found = edge;
    }
    return found;
}

} // namespace vesk::geom
