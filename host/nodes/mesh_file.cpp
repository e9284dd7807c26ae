#include "host/nodes/mesh_file.h"

#include "host/data/packed_data.h"

#include <algorithm>
#include <span>
#include <utility>

namespace vesk::nodes {

using geom::Mesh;
using geom::MeshEdge;
using geom::MeshTopology;
using geom::MeshTopologyResult;

namespace {

using Code = PolyFacesData::Code;

/// Frees a list's memory now rather than at the end of the scope.
template <class T>
void release(std::vector<T>& list) {
    std::vector<T>().swap(list);
}

/// Ids per corner of one layer, as faces give them; filled with -1 up to the corners that gave none.
struct LayerIds {
    std::vector<int> ids;

    /// Puts the ids of a loop that starts at `corner`.
    void put(std::size_t corner, std::span<const int> loop, std::size_t cornerCount) {
        if (ids.empty()) ids.reserve(cornerCount);
        ids.resize(corner, -1);
        ids.insert(ids.end(), loop.begin(), loop.end());
    }
    void finish(std::size_t cornerCount) {
        if (!ids.empty()) ids.resize(cornerCount, -1);
    }
};

/// Reads the records of `face` into loops and layers.
class FaceReader {
  public:
    FaceReader(const MeshFileArrays& arrays) : arrays_(arrays), codes_(arrays.faceCodes) {}

    std::vector<int> counts, signedEdges;
    std::vector<LayerIds> uvIds, colorIds; ///< by position of the set
    int holes = 0;

    Outcome read() {
        if (auto outcome = measure(); !outcome) return outcome;
        uvIds.resize(arrays_.uvSets.size());
        colorIds.resize(arrays_.colorSets.size());
        for (std::size_t at = 0; at < codes_.size();) {
            const Record record = recordAt(at);
            if (auto outcome = take(record); !outcome) return outcome;
            at = record.next;
        }
        for (auto* layers : {&uvIds, &colorIds}) {
            for (auto& layer : *layers)
                layer.finish(signedEdges.size());
        }
        return {};
    }

  private:
    struct Record {
        int code = 0;
        int set = 0;
        std::span<const int> ids;
        std::size_t next = 0; ///< 0 when the record does not fit into the list
    };

    Record recordAt(std::size_t at) const {
        Record record;
        record.code = codes_[at++];
        if (PolyFacesData::hasSet(record.code)) {
            if (at == codes_.size()) return record;
            record.set = codes_[at++];
        }
        if (at == codes_.size() || codes_[at] < 0) return record;
        const auto count = static_cast<std::size_t>(codes_[at++]);
        if (count > codes_.size() - at) return record;
        record.ids = std::span(codes_).subspan(at, count);
        record.next = at + count;
        return record;
    }

    /// Finds out whether the records fill the list, and how long the results get.
    Outcome measure() {
        std::size_t faces = 0, corners = 0;
        for (std::size_t at = 0; at < codes_.size();) {
            const Record record = recordAt(at);
            if (record.next == 0)
                return Outcome::fail("the face records end in the middle of face " +
                                     std::to_string(faces == 0 ? 0 : faces - 1) + ".");
            if (record.code == Code::Face) {
                ++faces;
                corners += record.ids.size();
            }
            at = record.next;
        }
        counts.reserve(faces);
        signedEdges.reserve(corners);
        return {};
    }

    Outcome take(const Record& record) {
        switch (record.code) {
        case Code::Face:
            isHole_ = false;
            counts.push_back(static_cast<int>(record.ids.size()));
            signedEdges.insert(signedEdges.end(), record.ids.begin(), record.ids.end());
            return {};
        case Code::Hole: isHole_ = true; return ++holes, Outcome();
        case Code::Uvs: return layer(record, arrays_.uvSets, uvIds, "UV");
        case Code::OldUvs: return layer(record, arrays_.uvSets, uvIds, "UV");
        case Code::Colors: return layer(record, arrays_.colorSets, colorIds, "colour");
        case Code::OldColors: return layer(record, arrays_.colorSets, colorIds, "colour");
        case Code::OldHoleUvs: return {};
        default: return Outcome::fail(here() + "an unknown record.");
        }
    }

    template <class Set>
    Outcome layer(const Record& record, const std::vector<Set>& sets, std::vector<LayerIds>& layers,
                  const char* what) {
        if (isHole_ || record.ids.empty()) return {};
        if (counts.empty()) return Outcome::fail("a face record of ids stands before the first face.");
        const auto set =
            std::find_if(sets.begin(), sets.end(), [&](const Set& one) { return one.index == record.set; });
        if (set == sets.end()) {
            return Outcome::fail(here() + "ids of " + what + " set " + std::to_string(record.set) +
                                 ", which there is not.");
        }
        if (record.ids.size() != static_cast<std::size_t>(counts.back())) {
            return Outcome::fail(here() + std::to_string(record.ids.size()) + " " + what + " ids for " +
                                 std::to_string(counts.back()) + " corners.");
        }
        LayerIds& ids = layers[static_cast<std::size_t>(set - sets.begin())];
        const std::size_t corner = signedEdges.size() - record.ids.size();
        if (ids.ids.size() > corner) {
            return Outcome::fail(here() + what + " ids of set " + std::to_string(record.set) + " twice.");
        }
        ids.put(corner, record.ids, signedEdges.capacity());
        return {};
    }

    std::string here() const { return "face " + std::to_string(counts.size() - 1) + " has "; }

    const MeshFileArrays& arrays_;
    const std::vector<int>& codes_;
    bool isHole_ = false;
};

Outcome wholeElements(std::size_t numbers, std::size_t stride, const char* what) {
    if (numbers % stride == 0) return {};
    return Outcome::fail("the list of " + std::string(what) + " does not hold whole elements.");
}

std::vector<MFloatVector> vectorsOf(const std::vector<float>& numbers) {
    std::vector<MFloatVector> vectors(numbers.size() / 3);
    for (std::size_t i = 0; i < vectors.size(); ++i)
        vectors[i] = MFloatVector(numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]);
    return vectors;
}

MeshTopologyResult buildTopology(MeshFileArrays& arrays, FaceReader& faces) {
    std::vector<MeshEdge> edges(arrays.edges.size() / 3);
    for (std::size_t i = 0; i < edges.size(); ++i)
        edges[i] = {arrays.edges[3 * i], arrays.edges[3 * i + 1]};
    auto built = MeshTopology::fromEdgeLoops(static_cast<int>(arrays.points.size() / 3), std::move(edges),
                                             faces.counts, faces.signedEdges);
    return built;
}

Outcome putHardEdges(Mesh& mesh, const std::vector<int>& edges) {
    std::vector<std::uint8_t> hard(edges.size() / 3);
    bool any = false;
    for (std::size_t i = 0; i < hard.size(); ++i) {
        hard[i] = edges[3 * i + 2] == 0 ? 1 : 0;
        any = any || hard[i];
    }
    return any ? mesh.setHardEdges(std::move(hard)) : Outcome();
}

Outcome putNormals(Mesh& mesh, const MeshTopologyResult& topology, std::vector<float>& numbers,
                   std::size_t givenCorners) {
    if (numbers.empty()) return {};
    if (numbers.size() != 3 * givenCorners) {
        return Outcome::fail("there are " + std::to_string(numbers.size() / 3) + " normals for " +
                             std::to_string(givenCorners) + " corners.");
    }
    geom::LockedNormals normals;
    normals.values = vectorsOf(numbers);
    release(numbers);
    normals.locked.resize(givenCorners);
    bool any = false;
    for (std::size_t i = 0; i < givenCorners; ++i) {
        const bool locked = std::abs(normals.values[i].x) < 0.1F * kUnlockedNormal;
        if (!locked) normals.values[i] = MFloatVector();
        normals.locked[i] = locked ? 1 : 0;
        any = any || locked;
    }
    if (!any) return {};
    if (topology.dropped) {
        normals.values = topology.followCorners(std::span<const MFloatVector>(normals.values));
        normals.locked = topology.followCorners(std::span<const std::uint8_t>(normals.locked));
    }
    return mesh.setLockedNormals(std::move(normals));
}

/// The position of the set of that name, else of the first.
template <class Set>
int positionOf(const std::vector<Set>& sets, const std::string& name) {
    const auto at = std::find_if(sets.begin(), sets.end(), [&](const Set& set) { return set.name == name; });
    return at == sets.end() ? 0 : static_cast<int>(at - sets.begin());
}

std::vector<int> followed(const MeshTopologyResult& topology, LayerIds& layer) {
    if (!topology.dropped || layer.ids.empty()) return std::move(layer.ids);
    return topology.followCorners(std::span<const int>(layer.ids));
}

Outcome putUvSets(Mesh& mesh, const MeshTopologyResult& topology, MeshFileArrays& arrays,
                  std::vector<LayerIds>& ids) {
    if (arrays.uvSets.empty()) return {};
    std::vector<geom::UvSet> sets(arrays.uvSets.size());
    for (std::size_t i = 0; i < sets.size(); ++i) {
        auto& from = arrays.uvSets[i];
        auto& set = sets[i];
        set.name = std::move(from.name);
        if (set.name.empty()) set.name = "map" + std::to_string(i + 1);
        set.u.resize(from.uvs.size() / 2);
        set.v.resize(from.uvs.size() / 2);
        for (std::size_t k = 0; k < set.u.size(); ++k) {
            set.u[k] = from.uvs[2 * k];
            set.v[k] = from.uvs[2 * k + 1];
        }
        release(from.uvs);
        set.ids = followed(topology, ids[i]);
    }
    const int current = positionOf(sets, arrays.currentUvSet);
    return mesh.setUvSets(std::move(sets), current);
}

Outcome putColorSets(Mesh& mesh, const MeshTopologyResult& topology, MeshFileArrays& arrays,
                     std::vector<LayerIds>& ids) {
    if (arrays.colorSets.empty()) return {};
    std::vector<geom::ColorSet> sets(arrays.colorSets.size());
    for (std::size_t i = 0; i < sets.size(); ++i) {
        auto& from = arrays.colorSets[i];
        auto& set = sets[i];
        set.name = std::move(from.name);
        if (set.name.empty()) set.name = "colorSet" + std::to_string(i + 1);
        set.colors.reserve(from.colors.size() / 4);
        for (std::size_t k = 0; k + 4 <= from.colors.size(); k += 4) {
            set.colors.emplace_back(from.colors[k], from.colors[k + 1], from.colors[k + 2],
                                    from.colors[k + 3]);
        }
        release(from.colors);
        set.ids = followed(topology, ids[i]);
    }
    const int current = positionOf(sets, arrays.currentColorSet);
    return mesh.setColorSets(std::move(sets), current);
}

Outcome checkWhole(const MeshFileArrays& arrays) {
    Outcome outcome = wholeElements(arrays.points.size(), 3, "points");
    if (outcome) outcome = wholeElements(arrays.edges.size(), 3, "edges");
    if (outcome) outcome = wholeElements(arrays.normals.size(), 3, "normals");
    for (const auto& set : arrays.uvSets) {
        if (outcome) outcome = wholeElements(set.uvs.size(), 2, "UVs");
    }
    for (const auto& set : arrays.colorSets) {
        if (outcome) outcome = wholeElements(set.colors.size(), 4, "colours");
    }
    return outcome;
}

} // namespace

Result<MeshFromFile> meshFromFileArrays(MeshFileArrays arrays) {
    if (auto outcome = checkWhole(arrays); !outcome) return outcome;
    FaceReader faces(arrays);
    if (auto outcome = faces.read(); !outcome) return outcome;
    const std::size_t givenCorners = faces.signedEdges.size();
    auto topology = buildTopology(arrays, faces);
    if (!topology) return topology.outcome;
    release(arrays.faceCodes);
    release(faces.signedEdges);
    auto points = vectorsOf(arrays.points);
    release(arrays.points);
    auto created = Mesh::create(topology.topology, std::move(points));
    if (!created) return created.outcome;
    MeshFromFile result{std::move(created.mesh), faces.holes};
    Mesh& mesh = result.mesh;
    Outcome outcome = putHardEdges(mesh, arrays.edges);
    release(arrays.edges);
    if (outcome) outcome = putNormals(mesh, topology, arrays.normals, givenCorners);
    if (outcome) outcome = putUvSets(mesh, topology, arrays, faces.uvIds);
    if (outcome) outcome = putColorSets(mesh, topology, arrays, faces.colorIds);
    if (!outcome) return outcome;
    return result;
}

// --- the way back

namespace {

/// Appends a record of ids of a loop's corners, when the set has any there.
template <class Set>
void appendIds(std::vector<int>& codes, Code code, int setIndex, const Set& set, int firstCorner, int count) {
    if (set.ids.empty()) return;
    const auto begin = set.ids.begin() + firstCorner;
    if (std::all_of(begin, begin + count, [](int id) { return id < 0; })) return;
    codes.insert(codes.end(), {code, setIndex, count});
    codes.insert(codes.end(), begin, begin + count);
}

std::vector<int> faceCodesOf(const Mesh& mesh) {
    const MeshTopology& topology = mesh.topology();
    std::vector<int> codes;
    std::size_t room =
        2 * static_cast<std::size_t>(topology.faceCount()) + static_cast<std::size_t>(topology.cornerCount());
    const auto layer = room + static_cast<std::size_t>(topology.faceCount());
    for (int set = 0; set < mesh.uvSetCount(); ++set)
        room += mesh.uvSet(set).ids.empty() ? 0 : layer;
    for (int set = 0; set < mesh.colorSetCount(); ++set)
        room += mesh.colorSet(set).ids.empty() ? 0 : layer;
    codes.reserve(room);
    for (int face = 0; face < topology.faceCount(); ++face) {
        const auto edges = topology.edgesOfFace(face);
        const auto vertices = topology.verticesOfFace(face);
        const int count = static_cast<int>(edges.size());
        codes.insert(codes.end(), {Code::Face, count});
        for (std::size_t k = 0; k < edges.size(); ++k) {
            const MeshEdge& edge = topology.edges()[static_cast<std::size_t>(edges[k])];
            codes.push_back(edge.a == vertices[k] ? edges[k] : -edges[k] - 1);
        }
        const int first = topology.faceStart()[static_cast<std::size_t>(face)];
        for (int set = 0; set < mesh.uvSetCount(); ++set)
            appendIds(codes, Code::Uvs, set, mesh.uvSet(set), first, count);
        for (int set = 0; set < mesh.colorSetCount(); ++set)
            appendIds(codes, Code::Colors, set, mesh.colorSet(set), first, count);
    }
    return codes;
}

void appendVector(std::vector<float>& numbers, const MFloatVector& vector) {
    numbers.insert(numbers.end(), {vector.x, vector.y, vector.z});
}

std::vector<float> normalsOf(const Mesh& mesh) {
    const auto& normals = mesh.lockedNormals();
    std::vector<float> numbers;
    numbers.reserve(3 * normals.values.size());
    static const MFloatVector unlocked(kUnlockedNormal, kUnlockedNormal, kUnlockedNormal);
    for (std::size_t i = 0; i < normals.values.size(); ++i)
        appendVector(numbers, normals.locked[i] ? normals.values[i] : unlocked);
    return numbers;
}

} // namespace

MeshFileArrays meshFileArrays(const Mesh& mesh) {
    MeshFileArrays arrays;
    arrays.points.reserve(3 * mesh.points().size());
    for (const auto& point : mesh.points())
        appendVector(arrays.points, point);
    const auto& edges = mesh.topology().edges();
    arrays.edges.reserve(3 * edges.size());
    for (int i = 0; i < mesh.edgeCount(); ++i) {
        const auto& edge = edges[static_cast<std::size_t>(i)];
        arrays.edges.insert(arrays.edges.end(), {edge.a, edge.b, mesh.isHardEdge(i) ? 0 : 1});
    }
    arrays.faceCodes = faceCodesOf(mesh);
    arrays.faceCount = mesh.faceCount();
    arrays.normals = normalsOf(mesh);
    for (int i = 0; i < mesh.uvSetCount(); ++i) {
        const auto& set = mesh.uvSet(i);
        auto& to = arrays.uvSets.emplace_back(MeshFileArrays::UvSet{i, set.name, {}});
        to.uvs.reserve(2 * set.u.size());
        for (std::size_t k = 0; k < set.u.size(); ++k)
            to.uvs.insert(to.uvs.end(), {set.u[k], set.v[k]});
    }
    for (int i = 0; i < mesh.colorSetCount(); ++i) {
        const auto& set = mesh.colorSet(i);
        auto& to = arrays.colorSets.emplace_back(MeshFileArrays::ColorSet{i, set.name, {}});
        to.colors.reserve(4 * set.colors.size());
        for (const auto& c : set.colors)
            to.colors.insert(to.colors.end(), {c.r, c.g, c.b, c.a});
    }
    if (mesh.uvSetCount() > 0) arrays.currentUvSet = mesh.uvSet(mesh.currentUvSet()).name;
    if (mesh.currentColorSet() >= 0) arrays.currentColorSet = mesh.colorSet(mesh.currentColorSet()).name;
    return arrays;
}

} // namespace vesk::nodes
