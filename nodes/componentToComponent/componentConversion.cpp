#include "nodes/componentToComponent/componentConversion.h"

#include <maya/MFnMesh.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MItMeshEdge.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MItMeshVertex.h>

#include <algorithm>

namespace vesk::nodes {

namespace {

void append(MIntArray& to, const MIntArray& from) {
    for (unsigned i = 0; i < from.length(); ++i)
        to.append(from[i]);
}

bool contains(const MIntArray& ids, int id) {
    for (unsigned i = 0; i < ids.length(); ++i) {
        if (ids[i] == id) return true;
    }
    return false;
}

/// UVs of a vertex, asked for by id.
class VertexUvs {
  public:
    VertexUvs(const MObject& mesh, const MString& uvSet)
        : vertex_(mesh), uvSet_(uvSet.length() > 0 ? &uvSet : nullptr) {}

    const MIntArray& of(int vertex) {
        int previous = 0;
        vertex_.setIndex(vertex, previous);
        vertex_.getUVIndices(ids_, uvSet_);
        // A corner without a UV counts as -1 there, which is nobody's id.
        unsigned kept = 0;
        for (unsigned i = 0; i < ids_.length(); ++i) {
            if (ids_[i] >= 0) ids_[kept++] = ids_[i];
        }
        ids_.setLength(kept);
        return ids_;
    }

  private:
    MItMeshVertex vertex_;
    const MString* uvSet_;
    MIntArray ids_;
};

/// The vertices of the element at which a walk stands.
void verticesOf(const MItMeshVertex& vertex, MIntArray& ids) {
    ids.setLength(1);
    ids[0] = vertex.index();
}
void verticesOf(const MItMeshEdge& edge, MIntArray& ids) {
    ids.setLength(2);
    ids[0] = edge.index(0);
    ids[1] = edge.index(1);
}
void verticesOf(const MItMeshPolygon& face, MIntArray& ids) { face.getVertices(ids); }

void edgesOf(const MItMeshVertex& vertex, MIntArray& ids) { vertex.getConnectedEdges(ids); }
void edgesOf(const MItMeshEdge&, MIntArray&) {}
void edgesOf(const MItMeshPolygon& face, MIntArray& ids) { face.getEdges(ids); }

void facesOf(const MItMeshVertex& vertex, MIntArray& ids) { vertex.getConnectedFaces(ids); }
void facesOf(const MItMeshEdge& edge, MIntArray& ids) { edge.getConnectedFaces(ids); }
void facesOf(const MItMeshPolygon&, MIntArray&) {}

/// The first `count` elements of the walk.
template <class Walk>
MIntArray convertFirst(Walk walk, unsigned count, MeshElement to, VertexUvs uvs) {
    MIntArray found, near;
    for (unsigned i = 0; i < count && !walk.isDone(); ++i, walk.next()) {
        if (to == MeshElement::kEdge) {
            edgesOf(walk, near);
        } else if (to == MeshElement::kFace) {
            facesOf(walk, near);
        } else {
            verticesOf(walk, near);
        }
        if (to != MeshElement::kMap) {
            append(found, near);
            continue;
        }
        for (unsigned corner = 0; corner < near.length(); ++corner)
            append(found, uvs.of(near[corner]));
    }
    return found;
}

/// Elements with a vertex that holds the UV. The walk is not begun anew for each UV, deliberately.
template <class Walk>
MIntArray holdersOf(Walk walk, const MIntArray& elements, VertexUvs uvs) {
    MIntArray found, vertices;
    for (unsigned i = 0; i < elements.length(); ++i) {
        for (; !walk.isDone(); walk.next()) {
            verticesOf(walk, vertices);
            for (unsigned corner = 0; corner < vertices.length(); ++corner) {
                if (!contains(uvs.of(vertices[corner]), elements[i])) continue;
                found.append(walk.index());
                break;
            }
        }
    }
    return found;
}

} // namespace

MIntArray elementsOn(const MObject& mesh, const MObject& component, MeshElement kind) {
    MIntArray ids;
    MStatus status;
    const MFnSingleIndexedComponent elements(component, &status);
    if (!status) return ids;
    elements.getElements(ids);
    if (!elements.isComplete() || ids.length() > 0) return ids;
    const MFnMesh function(mesh);
    const int count = kind == MeshElement::kEdge   ? function.numEdges()
                      : kind == MeshElement::kFace ? function.numPolygons()
                      : kind == MeshElement::kMap  ? function.numUVs()
                                                   : function.numVertices();
    for (int i = 0; i < count; ++i)
        ids.append(i);
    return ids;
}

MIntArray convertElements(const MObject& mesh, const MIntArray& elements, MeshElement from, MeshElement to,
                          const MString& uvSet) {
    const VertexUvs uvs(mesh, uvSet);
    if (from == MeshElement::kMap) {
        switch (to) {
        case MeshElement::kEdge: return holdersOf(MItMeshEdge(mesh), elements, uvs);
        case MeshElement::kFace: return holdersOf(MItMeshPolygon(mesh), elements, uvs);
        default: return holdersOf(MItMeshVertex(mesh), elements, uvs);
        }
    }
    switch (from) {
    case MeshElement::kEdge: return convertFirst(MItMeshEdge(mesh), elements.length(), to, uvs);
    case MeshElement::kFace: return convertFirst(MItMeshPolygon(mesh), elements.length(), to, uvs);
    default: return convertFirst(MItMeshVertex(mesh), elements.length(), to, uvs);
    }
}

} // namespace vesk::nodes
