#pragma once
// Who touches whom on a mesh, as flat lists that are made when first asked for.

#include <maya/MFnMesh.h>
#include <maya/MObject.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

class MString;

namespace vesk::nodes {

/// A list of ids for each element.
struct Links {
    std::vector<std::uint32_t> start{0};
    std::vector<int> ids;

    std::size_t count() const { return start.size() - 1; }
    std::span<const int> of(std::size_t element) const {
        return {ids.data() + start[element], start[element + 1] - start[element]};
    }
    std::span<const int> of(int element) const { return of(static_cast<std::size_t>(element)); }
    /// What was appended to `ids` since the last list is the next one.
    void endList() { start.push_back(static_cast<std::uint32_t>(ids.size())); }
    /// For each id below `count` the elements whose lists hold it, ascending.
    Links inverted(int count) const;
};

/// The neighbours of a mesh's elements. Without a mesh there are no elements.
class MeshLinks {
  public:
    MeshLinks() = default;
    explicit MeshLinks(const MObject& mesh);

    int vertexCount() const { return vertexCount_; }
    int edgeCount() const { return edgeCount_; }
    int faceCount() const { return faceCount_; }

    const Links& faceVertices();
    const Links& faceEdges();
    const Links& edgeVertices();
    const Links& edgeFaces();
    const Links& vertexFaces();
    const Links& vertexEdges();
    const Links& vertexVertices(); ///< across edges
    /// Different UVs at each vertex; an empty name means the current set.
    Links vertexUvs(const MString& uvSet) const;

    /// Edges that share a vertex with it, with repetitions, itself among them.
    void edgesAround(int edge, std::vector<int>& out);
    /// Faces that share an edge with it, with repetitions.
    void facesAround(int face, std::vector<int>& out);

    bool isBoundaryEdge(int edge) { return edgeFaces().of(edge).size() == 1; }
    bool isBoundaryVertex(int vertex);
    bool isBoundaryFace(int face);

  private:
    MObject mesh_;
    int vertexCount_ = 0, edgeCount_ = 0, faceCount_ = 0;
    std::optional<Links> faceVertices_, faceEdges_, edgeVertices_, edgeFaces_, vertexFaces_, vertexEdges_,
        vertexVertices_;
};

} // namespace vesk::nodes
