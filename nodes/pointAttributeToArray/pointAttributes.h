#pragma once
// The work of pointAttributeToArray over plain arrays: no graph, no handles.

#include <maya/MColorArray.h>
#include <maya/MDoubleArray.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>
#include <maya/MVectorArray.h>

#include <vector>

namespace vesk::nodes {

/// Geometry as the kernel reads it. A *point* is what the result has an entry for, a *vertex* what the mesh
/// behind it has: a mesh and a tessellated surface have one vertex a point, the ribbon of a curve two, of
/// which the first counts. A *corner* is a vertex of one face, numbered through all faces in face order.
struct PointGeometry {
    unsigned pointCount = 0;
    unsigned verticesPerPoint = 1;
    bool isCurve = false;
    unsigned numCVsInV = 0; ///< of a surface, whose ids are pairs; 0 otherwise

    MPointArray positions;           ///< one a vertex
    MFloatVectorArray vertexNormals; ///< one a vertex; unit length
    /// Corners at each vertex in the order of its connected faces: those of vertex v are
    /// corners[cornerStart[v]] .. corners[cornerStart[v + 1] - 1]. `cornerStart` is one longer than the
    /// vertices.
    std::vector<unsigned> cornerStart;
    std::vector<unsigned> corners;
    MFloatVectorArray cornerNormals; ///< one a corner, like the next two; zero where there is none
    MFloatVectorArray cornerTangents;
    MFloatVectorArray cornerBinormals;
    MColorArray colors;           ///< one a vertex, or empty: no colours
    std::vector<int> cornerUvIds; ///< one a corner, -1 unmapped; empty: no UVs
    MFloatArray us, vs;           ///< by UV id
};

/// Which arrays are wanted, and how.
struct PointSettings {
    bool position = false, rotation = false, normal = false, tangent = false, binormal = false, color = false;
    bool mapData = false;
    bool averagedNormals = true, averagedTangents = true, averagedBinormals = true;
    int normalIdOffset = 0, tangentIdOffset = 0, binormalIdOffset = 0;
    /// Which of normal, tangent and binormal is the first, second and third row of the rotation: 0 to 5.
    int rotationOrder = 0;
    /// Leave points outside the selection out; otherwise they get zeros (no rotation, deliberately).
    bool prune = true;

    bool any() const { return position || rotation || normal || tangent || binormal || color || mapData; }
};

/// Arrays that the kernel appends to.
struct PointArrays {
    MIntArray& ids; ///< one a point; a surface's CV has two, u and v
    MVectorArray& positions;
    MVectorArray& rotations; ///< degrees
    MVectorArray& normals;
    MVectorArray& binormals;
    MVectorArray& tangents;
    MDoubleArray& rgba; ///< four a point
    MIntArray& mapCounts;
    MIntArray& mapIds;
    MDoubleArray& maps;       ///< u, v
    MDoubleArray& sharedMaps; ///< u, v
};

/// Walks the points in order. `inside` has one entry a point: 0 leaves the point out.
///
/// Sums of tangents and binormals start from the previous point's result, and an id offset that a vertex with
/// few faces lowered stays lowered: both are part of the node's contract.
void readPointAttributes(const PointGeometry& geometry, const PointSettings& settings,
                         const std::vector<char>& inside, PointArrays& out);

} // namespace vesk::nodes
