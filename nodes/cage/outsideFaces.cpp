#include "nodes/cage/outsideFaces.h"

#include "nodes/common/arrays.h"
#include "nodes/common/mesh_queries.h"

#include <maya/MFloatPointArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>

namespace vesk::nodes {

namespace {

constexpr double farthestPoint = 999999999.9;

/// 1 for each vertex that is inside.
std::vector<char> insideVertices(const MFnMesh& mesh, MObject& cage, double tolerance) {
    MFloatPointArray points;
    MFloatVectorArray normals;
    mesh.getPoints(points, MSpace::kWorld);
    mesh.getVertexNormals(false, normals, MSpace::kWorld);
    const auto hits = firstHits(MFnMesh(cage), elements(points), elements(normals), {});
    std::vector<unsigned> leaving; // vertices that hit the cage
    std::vector<MPoint> exits;
    for (unsigned i = 0; i < hits.size(); ++i) {
        if (!hits[i]) continue;
        leaving.push_back(i);
        exits.emplace_back(hits[i].point);
    }
    const auto nearest = nearestPoints(cage, MMatrix::identity, exits, farthestPoint);
    std::vector<char> inside(points.length(), 0);
    for (std::size_t k = 0; k < leaving.size(); ++k) {
        const MVector normal(normals[leaving[k]]);
        inside[leaving[k]] = nearest[k] && MVector(nearest[k].normal).angle(normal) <= tolerance;
    }
    return inside;
}

} // namespace

MIntArray outsideFaces(const MObject& mesh, MObject& cage, double tolerance) {
    const MFnMesh function(mesh);
    const std::vector<char> inside = insideVertices(function, cage, tolerance);
    MIntArray counts, vertices, faces;
    function.getVertices(counts, vertices);
    unsigned next = 0;
    for (unsigned face = 0; face < counts.length(); ++face) {
        bool isOutside = false;
        for (int corner = 0; corner < counts[face]; ++corner)
            isOutside = !inside[static_cast<std::size_t>(vertices[next++])] || isOutside;
        if (isOutside) faces.append(static_cast<int>(face));
    }
    return faces;
}

} // namespace vesk::nodes
