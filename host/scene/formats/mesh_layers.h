#pragma once
// What the readers and writers of mesh files have in common: plain layers on one side, a mesh on the other.

#include "host/core/result.h"
#include "host/geometry/mesh.h"

#include <optional>
#include <vector>

namespace vesk::formats {

/// A mesh as files hold it. Each list of ids has one per corner, -1 for none; or is empty: none at all.
struct MeshLayers {
    std::vector<MFloatVector> points;
    std::vector<int> counts;   ///< corners of each face
    std::vector<int> connects; ///< point of each corner, all in range
    std::vector<float> u, v;   ///< same length
    std::vector<int> uvIds;
    std::vector<MFloatVector> normals;
    std::vector<int> normalIds;
    std::vector<MColor> colors;
    std::vector<int> colorIds;
};

/// UVs in the set "map1", normals locked, colours in the set "colorSet1".
Result<geom::Mesh> makeMesh(MeshLayers layers);

/// What a file gets of a mesh beside points and faces, which stay empty here: the current UV set with UVs of
/// wholly mapped faces; normals per corner, if asked for, with equal ones at a vertex listed once; one colour
/// per vertex, the mean of its corners, white where none is set, and no list when none is at all. Fails when
/// any number of them or of the points is not finite, since files cannot hold that.
Result<MeshLayers> layersToWrite(const geom::Mesh& mesh, bool normals);

/// Lists what corners have, equal values at a vertex once.
template <class T>
class ValueLister {
  public:
    explicit ValueLister(std::size_t vertexCount) : latest_(vertexCount, -1) {}

    /// The place of the value in the list; it is appended when the vertex does not have it yet.
    int idOf(int vertex, const T& value) {
        // Only so many are looked at: a vertex of a million corners, each with its own value, must not take
        // their square.
        constexpr int lookedAt = 32;
        int& latest = latest_[static_cast<std::size_t>(vertex)];
        int id = latest;
        for (int i = 0; i < lookedAt && id >= 0; ++i) {
            if (values[static_cast<std::size_t>(id)] == value) return id;
            id = before_[static_cast<std::size_t>(id)];
        }
        values.push_back(value);
        before_.push_back(latest);
        return latest = static_cast<int>(values.size()) - 1;
    }

    std::vector<T> values;

  private:
    std::vector<int> latest_; ///< per vertex its newest value, -1 none
    std::vector<int> before_; ///< per value the one before it at the same vertex, -1 none
};

/// For each vertex the id that all its corners have; nothing when some vertex has corners of different ids or
/// a corner without one. Vertices without corners get -1.
std::optional<std::vector<int>> idsPerVertex(const geom::Mesh& mesh, const std::vector<int>& cornerIds);

} // namespace vesk::formats
