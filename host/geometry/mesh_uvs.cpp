// UV sets of a mesh.

#include "host/geometry/mesh.h"
#include "host/geometry/mesh_layers.h"

#include <algorithm>

namespace vesk::geom {

namespace {

Outcome checkUvSet(const UvSet& set, int corners) {
    if (set.u.size() != set.v.size())
        return Outcome::fail("UV set " + set.name + ": " + std::to_string(set.u.size()) + " u but " +
                             std::to_string(set.v.size()) + " v values");
    return checkLayerIds("UV set " + set.name, set.ids, corners, set.u.size());
}

} // namespace

int Mesh::findUvSet(std::string_view name) const {
    if (name.empty()) return currentUvSet_;
    for (int set = 0; set < uvSetCount(); ++set) {
        if (uvSets_[set]->name == name) return set;
    }
    return -1;
}

int Mesh::addUvSet(std::string name) {
    if (const int present = name.empty() ? -1 : findUvSet(name); present >= 0) return present;
    UvSet set;
    set.name = std::move(name);
    uvSets_.emplace_back(std::move(set));
    return uvSetCount() - 1;
}

Outcome Mesh::setUvSets(std::vector<UvSet> sets, int current) {
    if (current < 0 || current >= static_cast<int>(sets.size()))
        return Outcome::fail("UV set " + std::to_string(current) + " cannot be current, there are " +
                             std::to_string(sets.size()));
    for (const UvSet& set : sets) {
        if (Outcome outcome = checkUvSet(set, cornerCount()); !outcome) return outcome;
    }
    uvSets_.clear();
    for (UvSet& set : sets)
        uvSets_.emplace_back(std::move(set));
    currentUvSet_ = current;
    return {};
}

Outcome Mesh::setUvs(int set, std::vector<float> u, std::vector<float> v) {
    if (u.size() != v.size())
        return Outcome::fail(std::to_string(u.size()) + " u but " + std::to_string(v.size()) + " v values");
    if (u.size() < uvSets_[set]->u.size())
        return Outcome::fail(std::to_string(u.size()) + " UVs cannot replace " +
                             std::to_string(uvSets_[set]->u.size()));
    UvSet& uvs = uvSets_[set].write();
    uvs.u = std::move(u);
    uvs.v = std::move(v);
    return {};
}

Outcome Mesh::assignUvs(int set, std::span<const int> counts, std::span<const int> ids) {
    if (counts.size() != static_cast<std::size_t>(faceCount()))
        return Outcome::fail(std::to_string(counts.size()) + " UV counts for " + std::to_string(faceCount()) +
                             " faces");
    std::vector<int> assigned(static_cast<std::size_t>(cornerCount()), -1);
    std::size_t next = 0;
    for (int f = 0; f < faceCount(); ++f) {
        if (counts[f] == 0) continue;
        const auto size = static_cast<std::size_t>(topology_->faceSize(f));
        if (counts[f] != topology_->faceSize(f))
            return Outcome::fail("face " + std::to_string(f) + ": " + std::to_string(counts[f]) +
                                 " UV ids for " + std::to_string(size) + " corners");
        if (ids.size() - next < size)
            return Outcome::fail("face " + std::to_string(f) + ": only " + std::to_string(ids.size()) +
                                 " UV ids are given for all faces");
        std::copy_n(ids.begin() + static_cast<std::ptrdiff_t>(next), size,
                    assigned.begin() + topology_->faceStart()[f]);
        next += size;
    }
    const std::string layer = "UV set " + uvSets_[set]->name;
    if (Outcome outcome = checkLayerIds(layer, assigned, cornerCount(), uvSets_[set]->u.size()); !outcome)
        return outcome;
    uvSets_[set].write().ids = std::move(assigned);
    return {};
}

void Mesh::clearUvs(int set) {
    UvSet cleared;
    cleared.name = uvSets_[set]->name;
    uvSets_[set].reset(std::move(cleared));
}

Outcome Mesh::checkUvSets() const {
    if (currentUvSet_ < 0 || currentUvSet_ >= uvSetCount())
        return Outcome::fail("the current UV set does not exist");
    for (const auto& set : uvSets_) {
        if (Outcome outcome = checkUvSet(*set, cornerCount()); !outcome) return outcome;
    }
    return {};
}

std::optional<Mesh::Uv> Mesh::cornerUv(int set, int corner) const {
    const UvSet& uvs = uvSets_[set].read();
    const int id = uvs.idOfCorner(corner);
    if (id < 0) return std::nullopt;
    return Uv{uvs.u[id], uvs.v[id]};
}

std::optional<Mesh::Uv> Mesh::vertexUv(int set, int vertex) const {
    for (const int corner : topology_->cornersOfVertex(vertex)) {
        if (const auto uv = cornerUv(set, corner)) return uv;
    }
    return std::nullopt;
}

void Mesh::vertexUvIds(int set, int vertex, std::vector<int>& out) const {
    out.clear();
    std::vector<int> faces;
    topology_->facesOfVertex(vertex, faces);
    for (const int face : faces)
        out.push_back(uvSets_[set]->idOfCorner(topology_->findCorner(face, vertex)));
}

int Mesh::vertexUvCount(int set, int vertex) const {
    std::vector<int> ids;
    for (const int corner : topology_->cornersOfVertex(vertex)) {
        if (const int id = uvSets_[set]->idOfCorner(corner); id >= 0) ids.push_back(id);
    }
    std::sort(ids.begin(), ids.end());
    return static_cast<int>(std::unique(ids.begin(), ids.end()) - ids.begin());
}

} // namespace vesk::geom
