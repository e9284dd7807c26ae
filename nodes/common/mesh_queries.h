#pragma once
// Many questions to one mesh at a time: hits of rays, nearest points. With vertex_walks.h the one place that
// knows whether the host answers on several threads at once.

#include <maya/MFloatPoint.h>
#include <maya/MFloatVector.h>
#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MPoint.h>
#include <maya/MSpace.h>

#include <cfloat>
#include <functional>
#include <span>
#include <vector>

class MFnMesh;

namespace vesk::nodes {

/// Calls work(begin, end) for pieces of 0 to count - 1 in which a host is asked, on several threads if that
/// may be. The first piece comes alone: it makes what the host keeps for the others.
void inQueryPieces(std::size_t count, const std::function<void(std::size_t begin, std::size_t end)>& work);

struct RayHit {
    MFloatPoint point;
    int face = -1, triangle = -1;
    float u = 0, v = 0; ///< weights of the triangle's first two corners

    explicit operator bool() const { return face >= 0; }
};

struct RayReach {
    float maxParam = 1e9F;
    bool bothDirections = false;
    float tolerance = 1e-6F;
    MSpace::Space space = MSpace::kWorld; ///< of sources, directions and hits
};

/// Of each ray the nearest hit, as `MFnMesh::closestIntersection` gives it. There are as many
/// directions as sources; a direction of no length hits nothing.
std::vector<RayHit> firstHits(const MFnMesh& mesh, std::span<const MFloatPoint> sources,
                              std::span<const MFloatVector> directions, const RayReach& reach);

/// What `MPointOnMesh` holds.
struct NearestPoint {
    MFloatPoint point;
    MFloatVector normal; ///< of the face
    int face = -1, triangle = -1;
    float u = 0, v = 0; ///< weights of the triangle's first two corners

    explicit operator bool() const { return face >= 0; }
};

/// Of each point the nearest of the mesh, as a `MMeshIntersector` made with the matrix gives it: in the
/// mesh's own space. What lies beyond `maxDistance` is not found, and nothing is on an object that is no
/// mesh.
std::vector<NearestPoint> nearestPoints(MObject& mesh, const MMatrix& matrix, std::span<const MPoint> points,
                                        double maxDistance = DBL_MAX);

} // namespace vesk::nodes
