// Meshes made from others, and face by face.

#include "host/api/impl/result.h"
#include "host/data/mesh_data.h"
#include "host/geometry/subdivision.h"

#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MMeshSmoothOptions.h>
#include <maya/MPointArray.h>

using vesk::api::answer;
using vesk::geom::Mesh;

MObject MFnMesh::addPolygon(const MPointArray& points, bool mergeVertices, double pointTolerance,
                            MObject parentOrOwner, MStatus* status) {
    MStatus code;
    if (object_.isNull()) place(Mesh(), parentOrOwner, &code);
    Mesh* to = code ? editable(code) : nullptr;
    if (!to) return answer(status, MObject(), code);
    std::vector<MFloatVector> loop;
    loop.reserve(points.length());
    for (unsigned int i = 0; i < points.length(); ++i)
        loop.emplace_back(static_cast<float>(points[i].x), static_cast<float>(points[i].y),
                          static_cast<float>(points[i].z));
    if (!to->addPolygon(loop, mergeVertices, pointTolerance))
        return answer(status, MObject(), MStatus::kInvalidParameter);
    return answer(status, object_);
}

MObject MFnMesh::generateSmoothMesh(MObject parentOrOwner, MMeshSmoothOptions* options, MStatus* status) {
    if (!mesh()) return answer(status, MObject(), MStatus::kInvalidParameter);
    const MMeshSmoothOptions chosen = options ? *options : MMeshSmoothOptions();
    const auto smooth = vesk::geom::subdivided(*mesh(), {chosen.divisions(), chosen.keepHardEdge()});
    if (!smooth) return answer(status, MObject(), MStatus::kFailure);
    return MFnMesh().place(smooth.mesh, parentOrOwner.isNull() ? MFnMeshData().create() : parentOrOwner,
                           status);
}
