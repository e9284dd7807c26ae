#include "host/api/impl/result.h"
#include "host/geometry/mesh_index.h"

#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MMeshIsectAccelParams.h>

using vesk::api::answer;
using vesk::geom::MeshHit;
using vesk::geom::Ray;
using vesk::geom::RayQuery;

namespace {

float toFloat(double value) { return static_cast<float>(value); }

Ray rayIn(const MFloatPoint& source, const MFloatVector& direction) {
    return {MVector(MPoint(source)), MVector(direction)};
}

MFloatPoint pointAt(const Ray& ray, double param) {
    return MFloatPoint(MPoint(ray.source + ray.direction * param));
}

template <class T, class U>
void put(T* result, U value) {
    if (result) *result = static_cast<T>(value);
}

template <class Array, class U>
void add(Array* results, U value) {
    if (results) results->append(value);
}

} // namespace

/// What to ask of the mesh's index; false, with the reason in `status`, when nothing can be asked.
bool MFnMesh::rayQuery(const Ray& ray, const MIntArray* faceIds, const MIntArray* triIds, MSpace::Space space,
                       float maxParam, bool testBothDirections, float tolerance, RayQuery& query,
                       MStatus* status) const {
    if (!mesh()) return answer(status, false, MStatus::kInvalidParameter);
    if (faceIds || triIds) return answer(status, false, MStatus::kNotImplemented);
    query = {ray, static_cast<double>(maxParam), testBothDirections, static_cast<double>(tolerance)};
    if (const MMatrix* matrix = matrixFor(space)) {
        const MMatrix toObject = matrix->inverse();
        query.ray = {MVector(MPoint(ray.source) * toObject), ray.direction * toObject};
    }
    return answer(status, true);
}

bool MFnMesh::closestIntersection(const MFloatPoint& raySource, const MFloatVector& rayDirection,
                                  const MIntArray* faceIds, const MIntArray* triIds, bool /*idsSorted*/,
                                  MSpace::Space space, float maxParam, bool testBothDirections,
                                  MMeshIsectAccelParams* /*accelParams*/, MFloatPoint& hitPoint,
                                  float* hitRayParam, int* hitFace, int* hitTriangle, float* hitBary1,
                                  float* hitBary2, float tolerance, MStatus* status) const {
    const Ray ray = rayIn(raySource, rayDirection);
    RayQuery query;
    if (!rayQuery(ray, faceIds, triIds, space, maxParam, testBothDirections, tolerance, query, status))
        return false;
    const auto hit = mesh()->index().firstHit(query);
    if (!hit) return false;
    hitPoint = pointAt(ray, hit->param);
    put(hitRayParam, hit->param);
    put(hitFace, hit->face);
    put(hitTriangle, hit->triangle);
    put(hitBary1, hit->weights[0]);
    put(hitBary2, hit->weights[1]);
    return true;
}

bool MFnMesh::anyIntersection(const MFloatPoint& raySource, const MFloatVector& rayDirection,
                              const MIntArray* faceIds, const MIntArray* triIds, bool idsSorted,
                              MSpace::Space space, float maxParam, bool testBothDirections,
                              MMeshIsectAccelParams* accelParams, MFloatPoint& hitPoint, float* hitRayParam,
                              int* hitFace, int* hitTriangle, float* hitBary1, float* hitBary2,
                              float tolerance, MStatus* status) const {
    // Which one must not depend on how the mesh was sorted, so that only the first will do.
    return closestIntersection(raySource, rayDirection, faceIds, triIds, idsSorted, space, maxParam,
                               testBothDirections, accelParams, hitPoint, hitRayParam, hitFace, hitTriangle,
                               hitBary1, hitBary2, tolerance, status);
}

bool MFnMesh::allIntersections(const MFloatPoint& raySource, const MFloatVector& rayDirection,
                               const MIntArray* faceIds, const MIntArray* triIds, bool /*idsSorted*/,
                               MSpace::Space space, float maxParam, bool testBothDirections,
                               MMeshIsectAccelParams* /*accelParams*/, bool /*sortHits*/,
                               MFloatPointArray& hitPoints, MFloatArray* hitRayParams, MIntArray* hitFaces,
                               MIntArray* hitTriangles, MFloatArray* hitBary1s, MFloatArray* hitBary2s,
                               float tolerance, MStatus* status) const {
    const Ray ray = rayIn(raySource, rayDirection);
    RayQuery query;
    if (!rayQuery(ray, faceIds, triIds, space, maxParam, testBothDirections, tolerance, query, status))
        return false;
    const std::vector<MeshHit> hits = mesh()->index().allHits(query);
    if (hits.empty()) return false;
    hitPoints.clear();
    for (auto* floats : {hitRayParams, hitBary1s, hitBary2s}) {
        if (floats) floats->clear();
    }
    for (auto* ids : {hitFaces, hitTriangles}) {
        if (ids) ids->clear();
    }
    for (const MeshHit& hit : hits) {
        hitPoints.append(pointAt(ray, hit.param));
        add(hitRayParams, toFloat(hit.param));
        add(hitFaces, hit.face);
        add(hitTriangles, hit.triangle);
        add(hitBary1s, toFloat(hit.weights[0]));
        add(hitBary2s, toFloat(hit.weights[1]));
    }
    return true;
}

MMeshIsectAccelParams MFnMesh::autoUniformGridParams() { return {}; }
