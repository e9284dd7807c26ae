#pragma once
// A mesh as the lists of numbers in which scene files hold it.

#include "host/core/result.h"
#include "host/geometry/mesh.h"

#include <string>
#include <vector>

namespace vesk::nodes {

/// What stands for "not locked" in each number of a file's normal.
inline constexpr float kUnlockedNormal = 1e20F;

/// The storage attributes of a mesh shape.
struct MeshFileArrays {
    struct UvSet {
        int index = 0; ///< of the element of `uvSet`, which faces refer to
        std::string name;
        std::vector<float> uvs; ///< u v of each entry
    };
    struct ColorSet {
        int index = 0; ///< of the element of `colorSet`
        std::string name;
        std::vector<float> colors; ///< red green blue alpha of each entry
    };

    std::vector<float> points;  ///< `vrts`: x y z of each vertex
    std::vector<int> edges;     ///< `edge`: first and second vertex, 1 for smooth or 0 for hard, of each edge
    std::vector<int> faceCodes; ///< `face`: records as in `PolyFacesData`
    int faceCount = 0;          ///< loops among them, holes left out; only written
    std::vector<float> normals; ///< `normals`: x y z of each corner, or nothing: none locked
    std::vector<UvSet> uvSets;
    std::vector<ColorSet> colorSets;
    std::string currentUvSet, currentColorSet; ///< empty: the first

    bool isEmpty() const { return points.empty() && edges.empty() && faceCodes.empty(); }
};

struct MeshFromFile {
    geom::Mesh mesh;
    int holes = 0; ///< loops that were left out: a hole is filled
};

/// The mesh that the lists describe. They are checked in full; a failure names the first fault. What faces
/// are too small to be kept takes its layers along. Consumes the lists, so that they and the mesh do not
/// stand side by side longer than needed.
Result<MeshFromFile> meshFromFileArrays(MeshFileArrays arrays);

/// The lists for a mesh: the way back. Edges keep their ids and directions; sets are numbered from 0.
MeshFileArrays meshFileArrays(const geom::Mesh& mesh);

} // namespace vesk::nodes
