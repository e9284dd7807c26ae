// Points of a mesh by UV, and UVs by point. Nodes ask for each point of a frame: nothing here takes memory.

#include "host/api/impl/access.h"
#include "host/api/impl/result.h"
#include "host/data/mesh_data.h"
#include "host/geometry/mesh_index.h"

#include <maya/MFnMesh.h>

namespace {

int findSet(const vesk::geom::Mesh& mesh, const MString* uvSet) {
    return mesh.findUvSet(uvSet ? vesk::api::view(*uvSet) : std::string_view());
}

} // namespace

MStatus MFnMesh::getUVAtPoint(MPoint& point, float2& uv, MSpace::Space space, const MString* uvSet,
                              int* closestPolygon) const {
    const auto* of = mesh();
    if (!of) return MStatus::kInvalidParameter;
    const int set = findSet(*of, uvSet);
    if (set < 0) return MStatus::kFailure;
    const MMatrix* matrix = matrixFor(space);
    const auto nearest = of->index().closestPoint(MVector(matrix ? point * matrix->inverse() : point));
    if (!nearest) return MStatus::kFailure;
    const auto found = of->uvOnTriangle(set, nearest->face, nearest->triangle, nearest->weights);
    if (!found) return MStatus::kFailure;
    uv[0] = found->u;
    uv[1] = found->v;
    if (closestPolygon) *closestPolygon = nearest->face;
    return {};
}

MStatus MFnMesh::getPointAtUV(int polygon, MPoint& point, const float2& uv, MSpace::Space space,
                              const MString* uvSet, float tolerance) const {
    const auto* of = mesh();
    if (!of) return MStatus::kInvalidParameter;
    const int set = findSet(*of, uvSet);
    if (set < 0 || !of->topology().hasFace(polygon)) return MStatus::kFailure;
    const auto found = of->pointAtUv(set, polygon, {uv[0], uv[1]}, tolerance);
    if (!found) return MStatus::kFailure;
    const MMatrix* matrix = matrixFor(space);
    point = matrix ? *found * *matrix : *found;
    return {};
}
