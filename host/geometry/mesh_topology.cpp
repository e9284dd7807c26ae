// Building a topology from loops of vertices or of edges, and checking one.

#include "host/geometry/mesh_topology.h"

#include <algorithm>
#include <climits>
#include <string>

namespace vesk::geom {

namespace {

std::string text(int number) { return std::to_string(number); }

/// The message for counts that cannot describe `available` loop entries, or success.
Outcome checkCounts(int vertexCount, std::span<const int> counts, std::size_t available) {
    if (vertexCount < 0) return Outcome::fail("negative vertex count " + text(vertexCount));
    if (available > INT_MAX || counts.size() >= INT_MAX) return Outcome::fail("too many face corners");
    std::size_t total = 0;
    for (std::size_t f = 0; f < counts.size(); ++f) {
        const std::string place = "face " + std::to_string(f);
        if (counts[f] < 0) return Outcome::fail(place + ": negative corner count " + text(counts[f]));
        total += static_cast<std::size_t>(counts[f]);
        if (total > available)
            return Outcome::fail(place + ": only " + std::to_string(available) +
                                 " corners are given for all faces, more are counted");
    }
    if (total < available)
        return Outcome::fail(std::to_string(available) + " corners are given, the faces count " +
                             std::to_string(total));
    return {};
}

Outcome checkEdgeEnds(int vertexCount, std::span<const MeshEdge> edges) {
    if (edges.size() > INT_MAX) return Outcome::fail("too many edges");
    for (std::size_t e = 0; e < edges.size(); ++e) {
        for (const int end : {edges[e].a, edges[e].b}) {
            if (end < 0 || end >= vertexCount)
                return Outcome::fail("edge " + std::to_string(e) + ": vertex " + text(end) +
                                     " does not exist");
        }
    }
    return {};
}

/// Finds the edge between two vertices, or gives it the next id.
///
/// The table is cut into one stretch per vertex, long enough for every edge of which it is the lower end, so
/// that neighbours in the mesh lie near each other in memory and a vertex with very many edges costs no more
/// per edge than any other.
class EdgeTable {
  public:
    EdgeTable(int vertexCount, std::vector<MeshEdge>& edges, std::span<const int> starts,
              std::span<const int> loops)
        : edges_(edges), offset_(static_cast<std::size_t>(vertexCount) + 1, 0) {
        for (const MeshEdge& edge : edges_)
            ++offset_[std::min(edge.a, edge.b) + 1];
        for (std::size_t f = 0; f + 1 < starts.size(); ++f) {
            for (int c = starts[f], previous = loops[starts[f + 1] - 1]; c < starts[f + 1]; ++c) {
                ++offset_[std::min(previous, loops[c]) + 1];
                previous = loops[c];
            }
        }
        // Half as many places again as there can be entries keep the search short.
        for (int v = 0; v < vertexCount; ++v)
            offset_[v + 1] = offset_[v] + offset_[v + 1] + offset_[v + 1] / 2 + 1;
        slots_.assign(static_cast<std::size_t>(offset_.back()), -1);
        for (std::size_t e = 0; e < edges_.size(); ++e) {
            int& slot = find(edges_[e].a, edges_[e].b);
            if (slot < 0) slot = static_cast<int>(e);
        }
    }

    int idOf(int from, int to) {
        int& slot = find(from, to);
        if (slot < 0) {
            slot = static_cast<int>(edges_.size());
            edges_.push_back({from, to});
        }
        return slot;
    }

  private:
    int& find(int from, int to) {
        const int low = std::min(from, to);
        const int high = std::max(from, to);
        const std::int64_t begin = offset_[low];
        const std::uint64_t length = static_cast<std::uint64_t>(offset_[low + 1] - begin);
        const std::uint32_t hash = static_cast<std::uint32_t>(high) * 2654435769U;
        std::uint64_t place = hash * length >> 32;
        for (;;) {
            int& slot = slots_[begin + static_cast<std::int64_t>(place)];
            if (slot < 0) return slot;
            const MeshEdge& edge = edges_[slot];
            if (std::max(edge.a, edge.b) == high && std::min(edge.a, edge.b) == low) return slot;
            if (++place == length) place = 0;
        }
    }

    std::vector<MeshEdge>& edges_;
    std::vector<std::int64_t> offset_; ///< stretch of each vertex in `slots_`
    std::vector<int> slots_;
};

} // namespace

/// Collects kept faces corner by corner and remembers which of the given ones they were.
class MeshTopologyBuilder {
  public:
    explicit MeshTopologyBuilder(int vertexCount, std::size_t faces, std::size_t corners)
        : topology_(new MeshTopology()), given_(corners) {
        topology_->vertexCount_ = vertexCount;
        topology_->faceStart_.reserve(faces + 1);
        topology_->faceVertices_.reserve(corners);
    }

    /// Adds the face unless too few different neighbours remain. `edges` is empty, or runs along `vertices`.
    void addFace(std::span<const int> vertices, std::span<const int> edges) {
        const int size = static_cast<int>(vertices.size());
        const std::size_t before = topology_->faceVertices_.size();
        bool collapsed = size < 3;
        for (int k = 0; k < size; ++k) {
            // Of a run of one vertex the last corner's edge leads on, the first corner is the one that stays.
            const int next = k + 1 == size ? 0 : k + 1;
            collapsed = collapsed || vertices[k] == vertices[next];
        }
        if (collapsed) {
            addCollapsed(vertices, edges);
        } else {
            topology_->faceVertices_.insert(topology_->faceVertices_.end(), vertices.begin(), vertices.end());
            topology_->cornerEdges_.insert(topology_->cornerEdges_.end(), edges.begin(), edges.end());
            if (dropped_) {
                for (int k = 0; k < size; ++k)
                    sourceCorners_.push_back(givenCorner_ + k);
            }
        }
        if (topology_->faceVertices_.size() > before) {
            topology_->faceStart_.push_back(static_cast<int>(topology_->faceVertices_.size()));
            if (dropped_) sourceFaces_.push_back(givenFace_);
        }
        ++givenFace_;
        givenCorner_ += size;
    }

    /// Numbers the edges when the faces were added without them.
    void numberEdges(std::vector<MeshEdge> edges) {
        MeshTopology& t = *topology_;
        t.edges_ = std::move(edges);
        t.edges_.reserve(t.edges_.size() + t.faceVertices_.size() / 2);
        t.cornerEdges_.resize(t.faceVertices_.size());
        EdgeTable table(t.vertexCount_, t.edges_, t.faceStart_, t.faceVertices_);
        for (int f = 0; f < t.faceCount(); ++f) {
            const int end = t.faceStart_[f + 1];
            for (int c = t.faceStart_[f]; c < end; ++c) {
                const int next = c + 1 == end ? t.faceStart_[f] : c + 1;
                t.cornerEdges_[c] = table.idOf(t.faceVertices_[c], t.faceVertices_[next]);
            }
        }
        t.edges_.shrink_to_fit();
    }
    void useEdges(std::vector<MeshEdge> edges) { topology_->edges_ = std::move(edges); }

    MeshTopologyResult finish() {
        markRepeatedVertices();
        topology_->faceStart_.shrink_to_fit();
        return {std::move(topology_), {}, dropped_, std::move(sourceFaces_), std::move(sourceCorners_)};
    }

  private:
    void addCollapsed(std::span<const int> vertices, std::span<const int> edges) {
        rememberSources();
        const int size = static_cast<int>(vertices.size());
        std::vector<int>& kept = topology_->faceVertices_;
        const std::size_t before = kept.size();
        // A run over the end of the loop belongs to its first corner.
        int end = size;
        while (end > 1 && vertices[end - 1] == vertices[0])
            --end;
        for (int k = 0; k < end; ++k) {
            if (k > 0 && vertices[k] == vertices[k - 1]) {
                if (!edges.empty()) topology_->cornerEdges_.back() = edges[k];
                continue;
            }
            kept.push_back(vertices[k]);
            if (!edges.empty()) topology_->cornerEdges_.push_back(edges[k]);
            sourceCorners_.push_back(givenCorner_ + k);
        }
        if (kept.size() - before >= 3) return;
        kept.resize(before);
        sourceCorners_.resize(before);
        if (!edges.empty()) topology_->cornerEdges_.resize(before);
    }

    /// From the first dropped corner on every kept one is written down; all before it kept their places.
    void rememberSources() {
        if (dropped_) return;
        dropped_ = true;
        sourceCorners_.reserve(given_);
        for (int c = 0; c < givenCorner_; ++c)
            sourceCorners_.push_back(c);
        for (int f = 0; f < givenFace_; ++f)
            sourceFaces_.push_back(f);
    }

    void markRepeatedVertices() {
        MeshTopology& t = *topology_;
        std::vector<int> lastFace(static_cast<std::size_t>(t.vertexCount_), -1);
        for (int f = 0; f < t.faceCount() && !t.repeatedVertex_; ++f) {
            for (const int v : t.verticesOfFace(f)) {
                t.repeatedVertex_ = t.repeatedVertex_ || lastFace[v] == f;
                lastFace[v] = f;
            }
        }
    }

    std::shared_ptr<MeshTopology> topology_;
    std::size_t given_ = 0;
    bool dropped_ = false;
    int givenFace_ = 0, givenCorner_ = 0;
    std::vector<int> sourceFaces_, sourceCorners_;
};

namespace {

MeshTopologyResult failed(Outcome outcome) { return {nullptr, std::move(outcome), false, {}, {}}; }

/// Writes the vertices that the loop of signed edges passes; the message for a loop that does not close.
Outcome walkLoop(std::span<const MeshEdge> edges, std::span<const int> loop, const std::string& face,
                 std::vector<int>& vertices, std::vector<int>& ids) {
    vertices.clear(), ids.clear();
    const auto edgeCount = static_cast<int>(edges.size());
    for (const int code : loop) {
        const int id = code < 0 ? -1 - code : code;
        if (id >= edgeCount) return Outcome::fail(face + ": edge " + text(id) + " does not exist");
        ids.push_back(id);
        vertices.push_back(code < 0 ? edges[id].b : edges[id].a);
    }
    for (std::size_t k = 0; k < loop.size(); ++k) {
        const int end = loop[k] < 0 ? edges[ids[k]].a : edges[ids[k]].b;
        const std::size_t next = k + 1 == loop.size() ? 0 : k + 1;
        if (end != vertices[next])
            return Outcome::fail(face + ": edge " + text(ids[next]) + " does not begin where edge " +
                                 text(ids[k]) + " ends");
    }
    return {};
}

} // namespace

MeshTopologyResult MeshTopology::fromFaces(int vertexCount, std::span<const int> counts,
                                           std::span<const int> connects) {
    return fromFacesAndEdges(vertexCount, {}, counts, connects);
}

MeshTopologyResult MeshTopology::fromFacesAndEdges(int vertexCount, std::vector<MeshEdge> edges,
                                                   std::span<const int> counts,
                                                   std::span<const int> connects) {
    Outcome outcome = checkCounts(vertexCount, counts, connects.size());
    if (outcome) outcome = checkEdgeEnds(vertexCount, edges);
    if (!outcome) return failed(std::move(outcome));
    MeshTopologyBuilder builder(vertexCount, counts.size(), connects.size());
    std::size_t begin = 0;
    for (std::size_t f = 0; f < counts.size(); ++f) {
        const auto loop = connects.subspan(begin, static_cast<std::size_t>(counts[f]));
        for (const int v : loop) {
            if (v < 0 || v >= vertexCount)
                return failed(
                    Outcome::fail("face " + std::to_string(f) + ": vertex " + text(v) + " does not exist"));
        }
        builder.addFace(loop, {});
        begin += loop.size();
    }
    builder.numberEdges(std::move(edges));
    return builder.finish();
}

MeshTopologyResult MeshTopology::fromEdgeLoops(int vertexCount, std::vector<MeshEdge> edges,
                                               std::span<const int> counts,
                                               std::span<const int> signedEdges) {
    Outcome outcome = checkCounts(vertexCount, counts, signedEdges.size());
    if (outcome) outcome = checkEdgeEnds(vertexCount, edges);
    if (!outcome) return failed(std::move(outcome));
    MeshTopologyBuilder builder(vertexCount, counts.size(), signedEdges.size());
    std::vector<int> vertices, ids;
    std::size_t begin = 0;
    for (std::size_t f = 0; f < counts.size(); ++f) {
        const auto loop = signedEdges.subspan(begin, static_cast<std::size_t>(counts[f]));
        outcome = walkLoop(edges, loop, "face " + std::to_string(f), vertices, ids);
        if (!outcome) return failed(std::move(outcome));
        builder.addFace(vertices, ids);
        begin += loop.size();
    }
    builder.useEdges(std::move(edges));
    return builder.finish();
}

const MeshTopologyPtr& MeshTopology::empty() {
    static const MeshTopologyPtr none = fromFaces(0, {}, {}).topology;
    return none;
}

MeshTopologyPtr MeshTopology::withFace(MeshTopologyPtr&& base, int newVertices,
                                       std::span<const MeshEdge> newEdges, std::span<const int> vertices,
                                       std::span<const int> edges) {
    const MeshTopologyPtr held = std::move(base);
    const std::shared_ptr<MeshTopology> grown(new MeshTopology());
    if (held.use_count() == 1) {
        // Every topology is made without const; only sharing makes it constant.
        auto& own = const_cast<MeshTopology&>(*held);
        grown->faceStart_ = std::move(own.faceStart_);
        grown->faceVertices_ = std::move(own.faceVertices_);
        grown->cornerEdges_ = std::move(own.cornerEdges_);
        grown->edges_ = std::move(own.edges_);
    } else {
        grown->faceStart_ = held->faceStart_;
        grown->faceVertices_ = held->faceVertices_;
        grown->cornerEdges_ = held->cornerEdges_;
        grown->edges_ = held->edges_;
    }
    grown->vertexCount_ = held->vertexCount_ + newVertices;
    grown->edges_.insert(grown->edges_.end(), newEdges.begin(), newEdges.end());
    grown->faceVertices_.insert(grown->faceVertices_.end(), vertices.begin(), vertices.end());
    grown->cornerEdges_.insert(grown->cornerEdges_.end(), edges.begin(), edges.end());
    grown->faceStart_.push_back(grown->cornerCount());
    std::vector<int> sorted(vertices.begin(), vertices.end());
    std::sort(sorted.begin(), sorted.end());
    grown->repeatedVertex_ =
        held->repeatedVertex_ || std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
    return grown;
}

Outcome MeshTopology::checkInvariants() const {
    if (faceStart_.empty() || faceStart_.front() != 0 || faceStart_.back() != cornerCount())
        return Outcome::fail("face offsets do not span the corners");
    if (cornerEdges_.size() != faceVertices_.size())
        return Outcome::fail("corner edges and corner vertices differ in number");
    if (Outcome ends = checkEdgeEnds(vertexCount_, edges_); !ends) return ends;
    for (int f = 0; f < faceCount(); ++f) {
        const std::string face = "face " + text(f);
        if (faceSize(f) < 3) return Outcome::fail(face + " has fewer than three corners");
        const auto vertices = verticesOfFace(f);
        const auto edgeIds = edgesOfFace(f);
        for (std::size_t k = 0; k < vertices.size(); ++k) {
            const int from = vertices[k];
            const int to = vertices[k + 1 == vertices.size() ? 0 : k + 1];
            if (!hasVertex(from)) return Outcome::fail(face + ": vertex " + text(from) + " does not exist");
            if (!hasEdge(edgeIds[k]))
                return Outcome::fail(face + ": edge " + text(edgeIds[k]) + " does not exist");
            const MeshEdge edge = edges_[edgeIds[k]];
            if (from == to || (edge != MeshEdge{from, to} && edge != MeshEdge{to, from}))
                return Outcome::fail(face + ": edge " + text(edgeIds[k]) + " does not join corner " +
                                     std::to_string(k) + " to the next");
        }
    }
    return {};
}

std::size_t MeshTopology::byteSize() const {
    std::size_t bytes = edges_.capacity() * sizeof(MeshEdge);
    for (const auto* ids : {&faceStart_, &faceVertices_, &cornerEdges_})
        bytes += ids->capacity() * sizeof(int);
    if (usesReady_.load(std::memory_order_acquire)) {
        for (const auto* ids : {&uses_.cornerFace, &uses_.edgeStart, &uses_.edgeCorners})
            bytes += ids->capacity() * sizeof(int);
    }
    if (fansReady_.load(std::memory_order_acquire)) {
        for (const auto* ids :
             {&fans_.edgeStart, &fans_.vertexEdges, &fans_.farEnds, &fans_.cornerStart, &fans_.vertexCorners})
            bytes += ids->capacity() * sizeof(int);
        bytes += fans_.onBoundary.capacity();
    }
    return bytes;
}

} // namespace vesk::geom
