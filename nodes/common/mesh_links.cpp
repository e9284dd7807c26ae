#include "nodes/common/mesh_links.h"

#include <maya/MIntArray.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MString.h>

#include <algorithm>
#include <numeric>

namespace vesk::nodes {

namespace {

/// Where the lists begin of which each id's is as long as the id occurs often.
std::vector<std::uint32_t> startsOf(const std::vector<int>& ids, int count) {
    std::vector<std::uint32_t> start(static_cast<std::size_t>(count) + 1, 0);
    for (const int id : ids)
        ++start[static_cast<std::size_t>(id) + 1];
    std::partial_sum(start.begin(), start.end(), start.begin());
    return start;
}

} // namespace

Links Links::inverted(int count) const {
    Links result;
    result.start = startsOf(ids, count);
    result.ids.resize(ids.size());
    std::vector<std::uint32_t> next(result.start.begin(), result.start.end() - 1);
    for (std::size_t element = 0; element + 1 < start.size(); ++element) {
        for (std::size_t i = start[element]; i < start[element + 1]; ++i)
            result.ids[next[static_cast<std::size_t>(ids[i])]++] = static_cast<int>(element);
    }
    return result;
}

MeshLinks::MeshLinks(const MObject& mesh) : mesh_(mesh) {
    const MFnMesh function(mesh);
    vertexCount_ = function.numVertices();
    edgeCount_ = function.numEdges();
    faceCount_ = function.numPolygons();
}

const Links& MeshLinks::faceVertices() {
    if (faceVertices_) return *faceVertices_;
    Links links;
    MIntArray counts, vertices;
    MFnMesh(mesh_).getVertices(counts, vertices);
    links.ids.reserve(vertices.length());
    unsigned corner = 0;
    for (unsigned face = 0; face < counts.length(); ++face) {
        for (int i = 0; i < counts[face]; ++i)
            links.ids.push_back(vertices[corner++]);
        links.endList();
    }
    return faceVertices_.emplace(std::move(links));
}

const Links& MeshLinks::faceEdges() {
    if (faceEdges_) return *faceEdges_;
    Links links;
    MIntArray edges;
    for (MItMeshPolygon face(mesh_); !face.isDone(); face.next()) {
        face.getEdges(edges);
        for (unsigned i = 0; i < edges.length(); ++i)
            links.ids.push_back(edges[i]);
        links.endList();
    }
    return faceEdges_.emplace(std::move(links));
}

const Links& MeshLinks::edgeVertices() {
    if (edgeVertices_) return *edgeVertices_;
    Links links;
    const MFnMesh function(mesh_);
    links.ids.reserve(2 * static_cast<std::size_t>(edgeCount_));
    links.start.reserve(static_cast<std::size_t>(edgeCount_) + 1);
    for (int edge = 0; edge < edgeCount_; ++edge) {
        int2 ends;
        function.getEdgeVertices(edge, ends);
        links.ids.insert(links.ids.end(), {ends[0], ends[1]});
        links.endList();
    }
    return edgeVertices_.emplace(std::move(links));
}

const Links& MeshLinks::edgeFaces() {
    if (!edgeFaces_) edgeFaces_ = faceEdges().inverted(edgeCount_);
    return *edgeFaces_;
}

const Links& MeshLinks::vertexFaces() {
    if (!vertexFaces_) vertexFaces_ = faceVertices().inverted(vertexCount_);
    return *vertexFaces_;
}

const Links& MeshLinks::vertexEdges() {
    if (!vertexEdges_) vertexEdges_ = edgeVertices().inverted(vertexCount_);
    return *vertexEdges_;
}

const Links& MeshLinks::vertexVertices() {
    if (vertexVertices_) return *vertexVertices_;
    const auto& ends = edgeVertices().ids;
    Links links;
    links.start = startsOf(ends, vertexCount_);
    links.ids.resize(ends.size());
    std::vector<std::uint32_t> next(links.start.begin(), links.start.end() - 1);
    for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
        links.ids[next[static_cast<std::size_t>(ends[i])]++] = ends[i + 1];
        links.ids[next[static_cast<std::size_t>(ends[i + 1])]++] = ends[i];
    }
    return vertexVertices_.emplace(std::move(links));
}

Links MeshLinks::vertexUvs(const MString& uvSet) const {
    const MFnMesh function(mesh_);
    const MString* name = uvSet.length() > 0 ? &uvSet : nullptr;
    MIntArray uvCounts, uvIds, counts, vertices;
    function.getAssignedUVs(uvCounts, uvIds, name);
    function.getVertices(counts, vertices);
    Links links;
    std::vector<std::vector<int>> found(static_cast<std::size_t>(vertexCount_));
    unsigned corner = 0, next = 0;
    for (unsigned face = 0; face < uvCounts.length(); ++face) {
        for (int i = 0; i < counts[face]; ++i, ++corner) {
            if (uvCounts[face] == 0) continue;
            auto& ids = found[static_cast<std::size_t>(vertices[corner])];
            const int id = uvIds[next++];
            if (id >= 0 && std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
        }
    }
    for (const auto& ids : found) {
        links.ids.insert(links.ids.end(), ids.begin(), ids.end());
        links.endList();
    }
    return links;
}

void MeshLinks::edgesAround(int edge, std::vector<int>& out) {
    out.clear();
    for (const int vertex : edgeVertices().of(edge)) {
        const auto edges = vertexEdges().of(vertex);
        out.insert(out.end(), edges.begin(), edges.end());
    }
}

void MeshLinks::facesAround(int face, std::vector<int>& out) {
    out.clear();
    for (const int edge : faceEdges().of(face)) {
        for (const int other : edgeFaces().of(edge)) {
            if (other != face) out.push_back(other);
        }
    }
}

bool MeshLinks::isBoundaryVertex(int vertex) {
    const auto edges = vertexEdges().of(vertex);
    return std::any_of(edges.begin(), edges.end(), [&](int edge) { return isBoundaryEdge(edge); });
}

bool MeshLinks::isBoundaryFace(int face) {
    const auto edges = faceEdges().of(face);
    return std::any_of(edges.begin(), edges.end(), [&](int edge) { return isBoundaryEdge(edge); });
}

} // namespace vesk::nodes
