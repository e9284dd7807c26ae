#pragma once

#include <maya/MColor.h>
#include <maya/MFnBase.h>
#include <maya/MSpace.h>
#include <maya/MString.h>
#include <maya/MTypes.h>

class MColorArray;
class MDGModifier;
class MDagPath;
class MFloatArray;
class MFloatPoint;
class MFloatPointArray;
class MFloatVector;
class MFloatVectorArray;
class MIntArray;
class MMeshIsectAccelParams;
class MMeshSmoothOptions;
class MPoint;
class MPointArray;
class MStringArray;
class MVector;
class MVectorArray;

namespace vesk::api {
class MeshWalk;
}
namespace vesk::geom {
class Mesh;
struct Ray;
struct RayQuery;
} // namespace vesk::geom
class MMatrix;

inline constexpr double kMFnMeshPointTolerance = 1.0e-10;

/// Function set of polygon meshes: mesh data, or a mesh shape, whose output is read.
///
/// World space applies the matrix that the data carries, or the shape's path. Normals go by its inverse
/// transpose and are then of unit length. Without an object calls fail with `kInvalidParameter`; a bad id or
/// set name, with `kFailure`, leaves results alone or empty. Edits work on data that is not read-only; shapes
/// are edited by commands.
class MFnMesh : public MFnBase {
  public:
    MFnMesh() = default;
    explicit MFnMesh(MObject& object, MStatus* status = nullptr);
    explicit MFnMesh(const MObject& object, MStatus* status = nullptr);
    explicit MFnMesh(const MDagPath& path, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kMesh; }

    // --- building: into mesh data; the set then works on it ---

    MObject create(int numVertices, int numPolygons, const MPointArray& points, const MIntArray& counts,
                   const MIntArray& connects, MObject parentOrOwner = MObject::kNullObj,
                   MStatus* status = nullptr);
    MObject create(int numVertices, int numPolygons, const MFloatPointArray& points, const MIntArray& counts,
                   const MIntArray& connects, MObject parentOrOwner = MObject::kNullObj,
                   MStatus* status = nullptr);
    /// A full copy without the source's matrix and object groups.
    MObject copy(const MObject& source, MObject parentOrOwner = MObject::kNullObj, MStatus* status = nullptr);
    MStatus copyInPlace(const MObject& source);
    /// Appends a face, whose points take the lowest vertex within the tolerance if they may. An empty set
    /// with mesh data as parent begins a mesh there. Answers with the data.
    MObject addPolygon(const MPointArray& points, bool mergeVertices = true,
                       double pointTolerance = kMFnMeshPointTolerance,
                       MObject parentOrOwner = MObject::kNullObj, MStatus* status = nullptr);
    /// The mesh in new data, or in that of the parent, subdivided smoothly; without options, twice. This set
    /// keeps its object. `kFailure` for a mesh that cannot be subdivided.
    MObject generateSmoothMesh(MObject parentOrOwner = MObject::kNullObj,
                               MMeshSmoothOptions* options = nullptr, MStatus* status = nullptr);

    // --- topology ---

    int numVertices(MStatus* status = nullptr) const;
    int numEdges(MStatus* status = nullptr) const;
    int numPolygons(MStatus* status = nullptr) const;
    int numFaceVertices(MStatus* status = nullptr) const;
    int polygonVertexCount(int polygon, MStatus* status = nullptr) const;
    MStatus getPolygonVertices(int polygon, MIntArray& vertices) const;
    MStatus getVertices(MIntArray& counts, MIntArray& vertices) const;
    MStatus getEdgeVertices(int edge, int2& vertices) const;
    bool isEdgeSmooth(int edge, MStatus* status = nullptr) const;
    /// Per face its number of triangles; three vertex ids each.
    MStatus getTriangles(MIntArray& counts, MIntArray& vertices) const;
    MStatus getPolygonTriangleVertices(int polygon, int triangle, int vertices[3]) const;

    // --- points ---

    MStatus getPoints(MPointArray& points, MSpace::Space space = MSpace::kObject) const;
    MStatus getPoints(MFloatPointArray& points, MSpace::Space space = MSpace::kObject) const;
    /// x, y, z of each vertex in object space, in place, until the mesh is edited; null without a mesh.
    const float* getRawPoints(MStatus* status = nullptr) const;
    MStatus getPoint(int vertex, MPoint& point, MSpace::Space space = MSpace::kObject) const;
    MStatus setPoints(const MPointArray& points, MSpace::Space space = MSpace::kObject);
    MStatus setPoints(const MFloatPointArray& points, MSpace::Space space = MSpace::kObject);
    MStatus setPoint(int vertex, const MPoint& point, MSpace::Space space = MSpace::kObject);

    // --- normals ---

    MStatus getPolygonNormal(int polygon, MVector& normal, MSpace::Space space = MSpace::kObject) const;
    MStatus getVertexNormal(int vertex, bool angleWeighted, MVector& normal,
                            MSpace::Space space = MSpace::kObject) const;
    MStatus getVertexNormals(bool angleWeighted, MFloatVectorArray& normals,
                             MSpace::Space space = MSpace::kObject) const;
    MStatus getFaceVertexNormal(int face, int vertex, MVector& normal,
                                MSpace::Space space = MSpace::kObject) const;
    /// One per face-vertex, faces in order.
    MStatus getFaceVertexNormals(MFloatVectorArray& normals, MSpace::Space space = MSpace::kObject) const;
    MStatus setVertexNormals(const MVectorArray& normals, const MIntArray& vertices,
                             MSpace::Space space = MSpace::kObject);

    // --- tangents: `kFailure`, and zero vectors, where there are no UVs to go by ---

    MStatus getFaceVertexTangent(int face, int vertex, MVector& tangent,
                                 MSpace::Space space = MSpace::kObject, const MString* uvSet = nullptr) const;
    MStatus getFaceVertexBinormal(int face, int vertex, MVector& binormal,
                                  MSpace::Space space = MSpace::kObject,
                                  const MString* uvSet = nullptr) const;
    /// One per face-vertex, faces in order; so are the ids of `getTangentId`.
    MStatus getTangents(MFloatVectorArray& tangents, MSpace::Space space = MSpace::kObject,
                        const MString* uvSet = nullptr) const;
    MStatus getBinormals(MFloatVectorArray& binormals, MSpace::Space space = MSpace::kObject,
                         const MString* uvSet = nullptr) const;
    int getTangentId(int face, int vertex, MStatus* status = nullptr) const;

    // --- UVs: a null set name means the current set ---

    int numUVSets(MStatus* status = nullptr) const;
    MStatus getUVSetNames(MStringArray& names) const;
    MString currentUVSetName(MStatus* status = nullptr) const;
    int numUVs(MStatus* status = nullptr) const;
    MStatus getUVs(MFloatArray& us, MFloatArray& vs, const MString* uvSet = nullptr) const;
    MStatus getAssignedUVs(MIntArray& counts, MIntArray& ids, const MString* uvSet = nullptr) const;
    MStatus setUVs(const MFloatArray& us, const MFloatArray& vs, const MString* uvSet = nullptr);
    MStatus assignUVs(const MIntArray& counts, const MIntArray& ids, const MString* uvSet = nullptr);
    /// Empties the set; it stays.
    MStatus clearUVs(const MString* uvSet = nullptr);
    /// The UV at the point of the mesh nearest to `point`, and that point's face. `kFailure`, and the results
    /// left alone, where the face is not mapped.
    MStatus getUVAtPoint(MPoint& point, float2& uv, MSpace::Space space = MSpace::kObject,
                         const MString* uvSet = nullptr, int* closestPolygon = nullptr) const;
    /// The point of a face at a UV, by the face's own triangles; the nearest in UV space where the UV lies
    /// beside the face by the tolerance at most. `kFailure`, and the point left alone, farther out and on a
    /// face that is not mapped.
    MStatus getPointAtUV(int polygon, MPoint& point, const float2& uv, MSpace::Space space = MSpace::kObject,
                         const MString* uvSet = nullptr, float tolerance = 0) const;

    // --- colours: a null set name means the current set ---

    int numColorSets(MStatus* status = nullptr) const;
    MStatus getColorSetNames(MStringArray& names) const;
    MString currentColorSetName(MStatus* status = nullptr) const;
    /// One per vertex, the mean of its face-vertex colours; (-1,-1,-1,-1), or the given default, for a vertex
    /// with none. Empty, and `kFailure`, without such a set.
    MStatus getVertexColors(MColorArray& colors, const MString* colorSet = nullptr,
                            const MColor* defaultUnsetColor = nullptr) const;
    MStatus getFaceVertexColors(MColorArray& colors, const MString* colorSet = nullptr,
                                const MColor* defaultUnsetColor = nullptr) const;
    MStatus setVertexColors(const MColorArray& colors, const MIntArray& vertices);
    /// A new set, all unset; the first one of a mesh becomes current. One of that name that is there already
    /// stays as it is. Answers with the name. `modifier` must be null: edits of data cannot be undone.
    MString createColorSetWithName(const MString& name, MDGModifier* modifier = nullptr,
                                   MStatus* status = nullptr);
    MStatus setCurrentColorSetName(const MString& name, MDGModifier* modifier = nullptr);

    // --- rays ---
    //
    // A face is hit from either side. Params count in lengths of the direction, which need not be of unit
    // length; they reach from 0 to `maxParam`, or from -maxParam when both directions are tested. A hit up to
    // `tolerance` times the length of an edge outside a triangle still counts. Weights are of the triangle's
    // first two corners. A miss leaves every result alone. False, with `kInvalidParameter`, without a mesh,
    // and with `kNotImplemented` when the faces or triangles that count are named: the ids must be null.
    // `idsSorted` and `accelParams` change nothing. Safe from several threads while nothing edits the mesh.

    /// The hit nearest to the source, whose param keeps its sign; of equals the lowest face, then triangle.
    bool closestIntersection(const MFloatPoint& raySource, const MFloatVector& rayDirection,
                             const MIntArray* faceIds, const MIntArray* triIds, bool idsSorted,
                             MSpace::Space space, float maxParam, bool testBothDirections,
                             MMeshIsectAccelParams* accelParams, MFloatPoint& hitPoint, float* hitRayParam,
                             int* hitFace, int* hitTriangle, float* hitBary1, float* hitBary2,
                             float tolerance = 1e-6F, MStatus* status = nullptr) const;
    /// Whether there is a hit, and the nearest one.
    bool anyIntersection(const MFloatPoint& raySource, const MFloatVector& rayDirection,
                         const MIntArray* faceIds, const MIntArray* triIds, bool idsSorted,
                         MSpace::Space space, float maxParam, bool testBothDirections,
                         MMeshIsectAccelParams* accelParams, MFloatPoint& hitPoint, float* hitRayParam,
                         int* hitFace, int* hitTriangle, float* hitBary1, float* hitBary2,
                         float tolerance = 1e-6F, MStatus* status = nullptr) const;
    /// All hits, by ascending param whether or not that is asked for.
    bool allIntersections(const MFloatPoint& raySource, const MFloatVector& rayDirection,
                          const MIntArray* faceIds, const MIntArray* triIds, bool idsSorted,
                          MSpace::Space space, float maxParam, bool testBothDirections,
                          MMeshIsectAccelParams* accelParams, bool sortHits, MFloatPointArray& hitPoints,
                          MFloatArray* hitRayParams, MIntArray* hitFaces, MIntArray* hitTriangles,
                          MFloatArray* hitBary1s, MFloatArray* hitBary2s, float tolerance = 1e-6F,
                          MStatus* status = nullptr) const;
    static MMeshIsectAccelParams autoUniformGridParams();

  protected:
    bool accepts(const vesk::Object& object) const override;

  private:
    friend class vesk::api::MeshWalk;
    const vesk::geom::Mesh* mesh() const;
    /// For writing; null, with the reason in `status`, when there is nothing to write to.
    vesk::geom::Mesh* editable(MStatus& status);
    /// Null when the space is the mesh's own.
    const MMatrix* matrixFor(MSpace::Space space) const;
    bool rayQuery(const vesk::geom::Ray& ray, const MIntArray* faceIds, const MIntArray* triIds,
                  MSpace::Space space, float maxParam, bool testBothDirections, float tolerance,
                  vesk::geom::RayQuery& query, MStatus* status) const;
    MObject place(const vesk::geom::Mesh& mesh, MObject parentOrOwner, MStatus* status);

    MObject shape_; ///< the shape, while `object_` holds the data read from it
};
