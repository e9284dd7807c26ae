#include "nodes/pointsOnMeshInfo/meshSurface.h"

namespace vesk::nodes {

MeshSurface::MeshSurface(const MFnMesh& mesh, const MString* uvSet) : mesh_(mesh), uvs_(mesh, uvSet) {
    mesh.getVertexNormals(false, normals_);
}

MVector MeshSurface::normalAt(const Place& place) const {
    const auto vertices = verticesAt(mesh_, place);
    MVector normal;
    for (std::size_t k = 0; k < 3; ++k)
        normal += MVector(normals_[static_cast<unsigned>(vertices[k])]) * place.weights[k];
    normal.normalize();
    return normal;
}

} // namespace vesk::nodes
