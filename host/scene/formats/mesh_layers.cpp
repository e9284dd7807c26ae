#include "host/scene/formats/mesh_layers.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <utility>

namespace vesk::formats {

namespace {

geom::LockedNormals lockedNormals(const std::vector<MFloatVector>& normals, const std::vector<int>& ids) {
    geom::LockedNormals locked;
    locked.values.resize(ids.size());
    locked.locked.resize(ids.size());
    for (std::size_t corner = 0; corner < ids.size(); ++corner) {
        if (ids[corner] < 0) continue;
        locked.values[corner] = normals[static_cast<std::size_t>(ids[corner])];
        locked.locked[corner] = 1;
    }
    return locked;
}

/// Copies the UVs of faces that are mapped at every corner.
void takeUvs(const geom::Mesh& mesh, MeshLayers& layers) {
    const geom::UvSet& set = mesh.uvSet(mesh.currentUvSet());
    const std::vector<int>& start = mesh.topology().faceStart();
    if (set.ids.empty()) return;
    layers.uvIds = set.ids;
    bool any = false;
    for (std::size_t face = 0; face + 1 < start.size(); ++face) {
        const auto first = layers.uvIds.begin() + start[face];
        const auto last = layers.uvIds.begin() + start[face + 1];
        if (std::find(first, last, -1) != last) {
            std::fill(first, last, -1);
        } else {
            any = true;
        }
    }
    if (any) {
        layers.u = set.u;
        layers.v = set.v;
    } else {
        layers.uvIds.clear();
    }
}

void takeNormals(const geom::Mesh& mesh, MeshLayers& layers) {
    const std::vector<MFloatVector>& normals = mesh.cornerNormals();
    const std::vector<int>& vertices = mesh.topology().faceVertices();
    ValueLister<MFloatVector> lister(static_cast<std::size_t>(mesh.vertexCount()));
    layers.normalIds.resize(normals.size());
    for (std::size_t corner = 0; corner < normals.size(); ++corner)
        layers.normalIds[corner] = lister.idOf(vertices[corner], normals[corner]);
    layers.normals = std::move(lister.values);
}

void takeColors(const geom::Mesh& mesh, MeshLayers& layers) {
    const int current = mesh.currentColorSet();
    if (current < 0) return;
    const std::vector<int>& ids = mesh.colorSet(current).ids;
    if (std::all_of(ids.begin(), ids.end(), [](int id) { return id < 0; })) return;
    const MColor white(1.0F, 1.0F, 1.0F);
    layers.colors = mesh.vertexColors(current, white);
}

bool isFinite(float value) { return std::isfinite(value); }
bool isFinite(const MFloatVector& v) { return isFinite(v.x) && isFinite(v.y) && isFinite(v.z); }
bool isFinite(const MColor& c) { return isFinite(c.r) && isFinite(c.g) && isFinite(c.b) && isFinite(c.a); }

template <class T>
Outcome checkFinite(const char* what, const std::vector<T>& values) {
    const auto bad =
        std::find_if(values.begin(), values.end(), [](const T& value) { return !isFinite(value); });
    if (bad == values.end()) return {};
    std::string text = what;
    text += " " + std::to_string(bad - values.begin()) + " is not finite";
    return Outcome::fail(std::move(text));
}

} // namespace

Result<geom::Mesh> makeMesh(MeshLayers layers) {
    geom::MeshResult made = geom::Mesh::create(std::move(layers.points), layers.counts, layers.connects);
    if (!made) return made.outcome;
    const auto kept = [&](const std::vector<int>& ids) {
        return ids.empty() ? ids : made.topology.followCorners(std::span(ids));
    };
    Outcome outcome;
    if (!layers.uvIds.empty()) {
        outcome = made.mesh.setUvSets(
            {geom::UvSet{"map1", std::move(layers.u), std::move(layers.v), kept(layers.uvIds)}}, 0);
    }
    if (outcome && !layers.normalIds.empty())
        outcome = made.mesh.setLockedNormals(lockedNormals(layers.normals, kept(layers.normalIds)));
    if (outcome && !layers.colors.empty()) {
        outcome = made.mesh.setColorSets(
            {geom::ColorSet{"colorSet1", std::move(layers.colors), kept(layers.colorIds)}}, 0);
    }
    if (!outcome) return outcome;
    return std::move(made.mesh);
}

Result<MeshLayers> layersToWrite(const geom::Mesh& mesh, bool normals) {
    MeshLayers layers;
    takeUvs(mesh, layers);
    if (normals) takeNormals(mesh, layers);
    takeColors(mesh, layers);
    for (const Outcome& outcome :
         {checkFinite("point", mesh.points()), checkFinite("u", layers.u), checkFinite("v", layers.v),
          checkFinite("normal", layers.normals), checkFinite("colour of vertex", layers.colors)}) {
        if (!outcome) return outcome;
    }
    return layers;
}

std::optional<std::vector<int>> idsPerVertex(const geom::Mesh& mesh, const std::vector<int>& cornerIds) {
    const std::vector<int>& vertices = mesh.topology().faceVertices();
    std::vector<int> ids(static_cast<std::size_t>(mesh.vertexCount()), -1);
    for (std::size_t corner = 0; corner < cornerIds.size(); ++corner) {
        int& id = ids[static_cast<std::size_t>(vertices[corner])];
        if (cornerIds[corner] < 0 || (id >= 0 && id != cornerIds[corner])) return std::nullopt;
        id = cornerIds[corner];
    }
    return ids;
}

} // namespace vesk::formats
