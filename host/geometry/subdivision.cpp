#include "host/geometry/subdivision.h"

#include <opensubdiv/far/primvarRefiner.h>
#include <opensubdiv/far/topologyDescriptor.h>

#include <mutex>
#include <unordered_map>

namespace vesk::geom {

namespace {

namespace Far = OpenSubdiv::Far;
namespace Sdc = OpenSubdiv::Sdc;

/// A point as the refiner sums it up.
struct PointSum {
    MVector point;
    void Clear() { point = MVector(); }
    void AddWithWeight(const PointSum& other, double weight) { point += other.point * weight; }
};

constexpr int kMaxValence = 65535; // the library's own limit

/// One level: the cage without what has no face, its refinement, and the mesh made of that.
class Level {
  public:
    Level(const Mesh& cage, bool keepHardEdges)
        : cage_(cage), topology_(cage.topology()), keepHardEdges_(keepHardEdges) {
        usedVertex_.assign(static_cast<std::size_t>(cage.vertexCount()), -1);
        for (const int v : topology_.faceVertices())
            usedVertex_[v] = 0;
        for (int v = 0; v < cage.vertexCount(); ++v) {
            if (usedVertex_[v] == 0) usedVertex_[v] = usedVertices_++;
        }
        usedEdge_.assign(static_cast<std::size_t>(cage.edgeCount()), -1);
        for (const int e : topology_.cornerEdges())
            usedEdge_[e] = 0;
        for (int e = 0; e < cage.edgeCount(); ++e) {
            if (usedEdge_[e] == 0) usedEdge_[e] = usedEdges_++;
        }
    }

    MeshResult refined() {
        std::vector<MFloatVector> points = cage_.points();
        if (cage_.faceCount() > 0) {
            if (Outcome outcome = placePoints(points); !outcome) return {Mesh(), outcome, {}};
        }
        MeshTopologyResult topology = makeTopology();
        if (!topology) return {Mesh(), topology.outcome, {}};
        MeshResult result = Mesh::create(std::move(topology.topology), std::move(points));
        if (result) result.outcome = addLayers(result.mesh);
        return result;
    }

  private:
    int edgePoint(int edge) const { return cage_.vertexCount() + usedEdge_[edge]; }
    int facePoint(int face) const { return cage_.vertexCount() + usedEdges_ + face; }

    // ---- positions ----

    std::unique_ptr<Far::TopologyRefiner> makeRefiner() const {
        std::vector<int> counts, connects, creases;
        for (int face = 0; face < cage_.faceCount(); ++face)
            counts.push_back(topology_.faceSize(face));
        for (const int v : topology_.faceVertices())
            connects.push_back(usedVertex_[v]);
        for (int e = 0; keepHardEdges_ && e < cage_.edgeCount(); ++e) {
            if (usedEdge_[e] < 0 || !cage_.isHardEdge(e)) continue;
            creases.push_back(usedVertex_[topology_.edges()[e].a]);
            creases.push_back(usedVertex_[topology_.edges()[e].b]);
        }
        const std::vector<float> sharpness(creases.size() / 2, Sdc::Crease::SHARPNESS_INFINITE);

        Far::TopologyDescriptor descriptor;
        descriptor.numVertices = usedVertices_;
        descriptor.numFaces = cage_.faceCount();
        descriptor.numVertsPerFace = counts.data();
        descriptor.vertIndicesPerFace = connects.data();
        descriptor.numCreases = static_cast<int>(sharpness.size());
        descriptor.creaseVertexIndexPairs = creases.data();
        descriptor.creaseWeights = sharpness.data();
        Sdc::Options options;
        options.SetVtxBoundaryInterpolation(Sdc::Options::VTX_BOUNDARY_EDGE_AND_CORNER);
        using Factory = Far::TopologyRefinerFactory<Far::TopologyDescriptor>;
        return std::unique_ptr<Far::TopologyRefiner>(
            Factory::Create(descriptor, Factory::Options(Sdc::SCHEME_CATMARK, options)));
    }

    /// Moves the cage's points and appends those of edges and faces.
    Outcome placePoints(std::vector<MFloatVector>& points) const {
        static std::once_flag quiet; // what the library prints would get into the data on standard output
        std::call_once(quiet, [] {
            Far::SetErrorCallback([](Far::ErrorType, const char*) {});
            Far::SetWarningCallback([](const char*) {});
        });
        const auto refiner = makeRefiner();
        if (!refiner)
            return Outcome::fail("subdivision: the mesh hangs together in a way that has no smooth form");
        refiner->RefineUniform(Far::TopologyRefiner::UniformOptions(1));
        const Far::TopologyLevel base = refiner->GetLevel(0);

        std::vector<PointSum> cage(static_cast<std::size_t>(usedVertices_));
        for (int v = 0; v < cage_.vertexCount(); ++v) {
            if (usedVertex_[v] >= 0) cage[usedVertex_[v]].point = cage_.point(v);
        }
        std::vector<PointSum> fine(static_cast<std::size_t>(refiner->GetLevel(1).GetNumVertices()));
        Far::PrimvarRefinerReal<double>(*refiner).Interpolate(1, cage, fine);

        const auto at = [&](int child) { return MFloatVector(fine[child].point); };
        points.resize(points.size() + static_cast<std::size_t>(usedEdges_ + cage_.faceCount()));
        for (int v = 0; v < cage_.vertexCount(); ++v) {
            if (usedVertex_[v] >= 0) points[v] = at(base.GetVertexChildVertex(usedVertex_[v]));
        }
        for (int e = 0; e < cage_.edgeCount(); ++e) {
            if (usedEdge_[e] < 0) continue;
            const MeshEdge ends = topology_.edges()[e];
            const int edge = base.FindEdge(usedVertex_[ends.a], usedVertex_[ends.b]);
            points[edgePoint(e)] = at(base.GetEdgeChildVertex(edge));
        }
        for (int f = 0; f < cage_.faceCount(); ++f)
            points[facePoint(f)] = at(base.GetFaceChildVertex(f));
        return {};
    }

    // ---- faces and edges ----

    MeshTopologyResult makeTopology() const {
        std::vector<MeshEdge> halves;
        for (int e = 0; e < cage_.edgeCount(); ++e) {
            if (usedEdge_[e] < 0) continue;
            halves.push_back({topology_.edges()[e].a, edgePoint(e)});
            halves.push_back({edgePoint(e), topology_.edges()[e].b});
        }
        const std::vector<int> counts(static_cast<std::size_t>(cage_.cornerCount()), 4);
        std::vector<int> connects;
        connects.reserve(counts.size() * 4);
        for (int f = 0; f < cage_.faceCount(); ++f) {
            const auto vertices = topology_.verticesOfFace(f);
            const auto edges = topology_.edgesOfFace(f);
            int before = edges.back();
            for (std::size_t k = 0; k < vertices.size(); ++k) {
                connects.insert(connects.end(),
                                {vertices[k], edgePoint(edges[k]), facePoint(f), edgePoint(before)});
                before = edges[k];
            }
        }
        const int vertices = cage_.vertexCount() + usedEdges_ + cage_.faceCount();
        return MeshTopology::fromFacesAndEdges(vertices, std::move(halves), counts, connects);
    }

    // ---- layers ----

    /// Ids of the new corners, four a corner of the cage, where `between` gives the id of a mean of ids.
    template <class Between>
    std::vector<int> cornerIds(const std::vector<int>& ids, Between&& between) const {
        std::vector<int> fine;
        if (ids.empty()) return fine;
        fine.reserve(ids.size() * 4);
        for (int f = 0; f < cage_.faceCount(); ++f) {
            const int begin = topology_.faceStart()[f];
            const auto count = static_cast<std::size_t>(topology_.faceSize(f));
            const std::span<const int> corners(ids.data() + begin, count);
            const bool isMapped = std::find(corners.begin(), corners.end(), -1) == corners.end();
            const int middle = isMapped ? between(corners) : -1;
            for (std::size_t k = 0; k < count; ++k) {
                const int after[] = {corners[k], corners[(k + 1) % count]};
                const int before[] = {corners[(k + count - 1) % count], corners[k]};
                // A partly mapped face has nothing to interpolate: only its own corners keep what they had.
                fine.insert(fine.end(), {corners[k], isMapped ? between(after) : -1, middle,
                                         isMapped ? between(before) : -1});
            }
        }
        return fine;
    }

    /// Makes an entry for the mean of some entries of a layer; the same one again for the same two.
    template <class Append>
    static auto meansBy(Append append) {
        return [append, made = std::unordered_map<std::uint64_t, int>()](std::span<const int> of) mutable {
            if (of.size() != 2) return append(of);
            if (of[0] == of[1]) return of[0];
            const auto [low, high] = std::minmax(of[0], of[1]);
            const std::uint64_t key = static_cast<std::uint64_t>(low) << 32U | static_cast<unsigned>(high);
            const auto [place, isNew] = made.try_emplace(key, -1);
            if (isNew) place->second = append(of);
            return place->second;
        };
    }

    UvSet fineUvs(UvSet set) const {
        set.ids = cornerIds(set.ids, meansBy([&set](std::span<const int> of) {
                                double u = 0.0, v = 0.0;
                                for (const int id : of) {
                                    u += set.u[id];
                                    v += set.v[id];
                                }
                                const auto count = static_cast<double>(of.size());
                                set.u.push_back(static_cast<float>(u / count));
                                set.v.push_back(static_cast<float>(v / count));
                                return set.uvCount() - 1;
                            }));
        return set;
    }

    ColorSet fineColors(ColorSet set) const {
        set.ids = cornerIds(set.ids, meansBy([&set](std::span<const int> of) {
                                MColor sum(0, 0, 0, 0);
                                for (const int id : of)
                                    sum += set.colors[id];
                                set.colors.push_back(sum / static_cast<float>(of.size()));
                                return static_cast<int>(set.colors.size()) - 1;
                            }));
        return set;
    }

    Outcome addLayers(Mesh& fine) const {
        if (keepHardEdges_) {
            std::vector<std::uint8_t> hard(static_cast<std::size_t>(fine.edgeCount()), 0);
            for (int e = 0; e < cage_.edgeCount(); ++e) {
                if (usedEdge_[e] < 0 || !cage_.isHardEdge(e)) continue;
                hard[2 * usedEdge_[e]] = hard[2 * usedEdge_[e] + 1] = 1;
            }
            if (Outcome outcome = fine.setHardEdges(std::move(hard)); !outcome) return outcome;
        }
        std::vector<UvSet> uvs;
        for (int i = 0; i < cage_.uvSetCount(); ++i)
            uvs.push_back(fineUvs(cage_.uvSet(i)));
        if (Outcome outcome = fine.setUvSets(std::move(uvs), cage_.currentUvSet()); !outcome) return outcome;
        std::vector<ColorSet> colors;
        for (int i = 0; i < cage_.colorSetCount(); ++i)
            colors.push_back(fineColors(cage_.colorSet(i)));
        return fine.setColorSets(std::move(colors), cage_.currentColorSet());
    }

    const Mesh& cage_;
    const MeshTopology& topology_;
    bool keepHardEdges_;
    std::vector<int> usedVertex_, usedEdge_; ///< place among those with a face, or -1
    int usedVertices_ = 0, usedEdges_ = 0;
};

Outcome check(const Mesh& mesh, int divisions) {
    const MeshTopology& topology = mesh.topology();
    if (topology.hasFaceWithRepeatedVertex())
        return Outcome::fail("subdivision: a face visits a vertex twice");
    double faces = mesh.faceCount();
    if (divisions > 0) faces = mesh.cornerCount();
    for (int level = 1; level < divisions && faces <= maxSubdividedFaces; ++level)
        faces *= 4;
    if (faces > maxSubdividedFaces)
        return Outcome::fail("subdivision: more than " + std::to_string(maxSubdividedFaces) + " faces");
    std::vector<int> valence(static_cast<std::size_t>(mesh.vertexCount()), 0);
    for (const MeshEdge& edge : topology.edges()) {
        if (++valence[edge.a] > kMaxValence || ++valence[edge.b] > kMaxValence)
            return Outcome::fail("subdivision: a vertex has too many edges");
    }
    for (int face = 0; face < mesh.faceCount(); ++face) {
        if (topology.faceSize(face) > kMaxValence)
            return Outcome::fail("subdivision: face " + std::to_string(face) + " has too many corners");
    }
    return {};
}

} // namespace

MeshResult subdivided(const Mesh& mesh, const SubdivisionOptions& options) {
    if (Outcome outcome = check(mesh, options.divisions); !outcome) return {Mesh(), outcome, {}};
    MeshResult result{mesh, {}, {}};
    for (int level = 0; level < options.divisions && result; ++level)
        result = Level(result.mesh, options.keepHardEdges).refined();
    return result;
}

} // namespace vesk::geom
