#include "host/api/impl/result.h"
#include "host/api/impl/shape_data.h"
#include "host/data/mesh_data.h"

#include <maya/MColorArray.h>
#include <maya/MDagPath.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>
#include <maya/MStringArray.h>
#include <maya/MVectorArray.h>

#include <string_view>

using vesk::MeshData;
using vesk::storage;
using vesk::api::answer;
using vesk::api::report;
using vesk::geom::Mesh;
using vesk::geom::NormalTransform;

namespace {

std::string_view nameOf(const MString* set) {
    return set ? std::string_view(set->asChar(), set->length()) : std::string_view();
}

MStatus statusOf(const vesk::Outcome& outcome) {
    return outcome ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MStatus found(bool there) { return there ? MStatus::kSuccess : MStatus::kFailure; }

MFloatVector toFloat(const MPoint& p) {
    return MFloatVector(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
}
MFloatVector toFloat(const MVector& v) {
    return MFloatVector(static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z));
}

template <class Points>
std::vector<MFloatVector> toStored(const Points& points, const MMatrix* toWorld) {
    const auto& given = storage(points);
    std::vector<MFloatVector> stored;
    if constexpr (std::is_same_v<Points, MFloatPointArray>) {
        stored.assign(given.begin(), given.end());
    } else {
        stored.resize(given.size());
        std::transform(given.begin(), given.end(), stored.begin(), [](const auto& p) { return toFloat(p); });
    }
    if (toWorld) return vesk::geom::transformedPoints(stored, toWorld->inverse());
    return stored;
}

template <class Points, class Point>
void fromStored(std::span<const MFloatVector> stored, const MMatrix* toWorld, Points& points) {
    auto& out = storage(points);
    if constexpr (std::is_same_v<Point, MFloatPoint>) {
        out.assign(stored.begin(), stored.end());
    } else {
        out.resize(stored.size());
        std::transform(stored.begin(), stored.end(), out.begin(),
                       [](const auto& p) { return Point(p.x, p.y, p.z); });
    }
    if (!toWorld) return;
    for (auto& point : out) {
        const MPoint placed = MPoint(point.x, point.y, point.z) * *toWorld;
        if constexpr (std::is_same_v<Point, MPoint>) {
            point = placed;
        } else {
            const MFloatVector single = toFloat(placed);
            point = Point(single.x, single.y, single.z);
        }
    }
}

void putNormals(const std::vector<MFloatVector>& normals, const MMatrix* toWorld, MFloatVectorArray& out) {
    storage(out) = toWorld ? vesk::geom::transformedNormals(normals, *toWorld) : normals;
}

MVector placed(const MFloatVector& normal, const MMatrix* toWorld) {
    return MVector(toWorld ? NormalTransform(*toWorld)(normal) : normal);
}

} // namespace

MFnMesh::MFnMesh(MObject& object, MStatus* status) : MFnMesh(std::as_const(object), status) {}

MFnMesh::MFnMesh(const MObject& object, MStatus* status) {
    MObject data = vesk::api::geometryDataOf(object, MFn::kMesh);
    attach(data, status);
    if (data != object) shape_ = object;
}

MFnMesh::MFnMesh(const MDagPath& path, MStatus* status) {
    attach(vesk::api::geometryDataOf(path, MFn::kMesh), status);
    shape_ = path.node();
}

bool MFnMesh::accepts(const vesk::Object& object) const {
    return dynamic_cast<const MeshData*>(&object) != nullptr;
}

const Mesh* MFnMesh::mesh() const {
    return object_.isNull() ? nullptr : &static_cast<MeshData*>(object_.hostObject())->geometry();
}

Mesh* MFnMesh::editable(MStatus& status) {
    status = writableStatus();
    if (status && !shape_.isNull()) status = MStatus::kFailure;
    return status ? &static_cast<MeshData*>(object_.hostObject())->write() : nullptr;
}

const MMatrix* MFnMesh::matrixFor(MSpace::Space space) const {
    if (space != MSpace::kWorld || object_.isNull()) return nullptr;
    const auto* data = static_cast<MeshData*>(object_.hostObject());
    return data->hasMatrix() ? &data->matrix() : nullptr;
}

// --- building
// --------------------------------------------------------------------------------------------------------

MObject MFnMesh::place(const Mesh& mesh, MObject parentOrOwner, MStatus* status) {
    auto* owner = dynamic_cast<MeshData*>(parentOrOwner.hostObject());
    if (!owner || parentOrOwner.isReadOnly()) return answer(status, MObject(), MStatus::kInvalidParameter);
    owner->write() = mesh;
    object_ = parentOrOwner;
    shape_ = MObject();
    return answer(status, object_);
}

namespace {

template <class Points>
vesk::geom::MeshResult built(int numVertices, int numPolygons, const Points& points, const MIntArray& counts,
                             const MIntArray& connects) {
    vesk::geom::MeshResult result;
    if (numVertices < 0 || numPolygons < 0 || static_cast<unsigned>(numVertices) > points.length() ||
        static_cast<unsigned>(numPolygons) > counts.length()) {
        result.outcome = vesk::Outcome::fail("fewer points or faces than announced");
        return result;
    }
    auto stored = toStored(points, nullptr);
    stored.resize(static_cast<std::size_t>(numVertices));
    return Mesh::create(std::move(stored),
                        std::span(storage(counts)).first(static_cast<std::size_t>(numPolygons)),
                        storage(connects));
}

} // namespace

MObject MFnMesh::create(int numVertices, int numPolygons, const MPointArray& points, const MIntArray& counts,
                        const MIntArray& connects, MObject parentOrOwner, MStatus* status) {
    const auto result = built(numVertices, numPolygons, points, counts, connects);
    if (!result) return answer(status, MObject(), MStatus::kInvalidParameter);
    return place(result.mesh, parentOrOwner, status);
}

MObject MFnMesh::create(int numVertices, int numPolygons, const MFloatPointArray& points,
                        const MIntArray& counts, const MIntArray& connects, MObject parentOrOwner,
                        MStatus* status) {
    const auto result = built(numVertices, numPolygons, points, counts, connects);
    if (!result) return answer(status, MObject(), MStatus::kInvalidParameter);
    return place(result.mesh, parentOrOwner, status);
}

MObject MFnMesh::copy(const MObject& source, MObject parentOrOwner, MStatus* status) {
    const MFnMesh from(source);
    if (!from.mesh()) return answer(status, MObject(), MStatus::kInvalidParameter);
    return place(*from.mesh(), parentOrOwner, status);
}

MStatus MFnMesh::copyInPlace(const MObject& source) {
    const MFnMesh from(source);
    if (!from.mesh()) return MStatus::kInvalidParameter;
    MStatus status;
    if (Mesh* to = editable(status)) *to = *from.mesh();
    return status;
}

// --- topology
// --------------------------------------------------------------------------------------------------------

int MFnMesh::numVertices(MStatus* status) const {
    return mesh() ? answer(status, mesh()->vertexCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnMesh::numEdges(MStatus* status) const {
    return mesh() ? answer(status, mesh()->edgeCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnMesh::numPolygons(MStatus* status) const {
    return mesh() ? answer(status, mesh()->faceCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnMesh::numFaceVertices(MStatus* status) const {
    return mesh() ? answer(status, mesh()->cornerCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

int MFnMesh::polygonVertexCount(int polygon, MStatus* status) const {
    if (!mesh()) return answer(status, 0, MStatus::kInvalidParameter);
    if (!mesh()->topology().hasFace(polygon)) return answer(status, 0, MStatus::kFailure);
    return answer(status, mesh()->topology().faceSize(polygon));
}

MStatus MFnMesh::getPolygonVertices(int polygon, MIntArray& vertices) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    if (!mesh()->topology().hasFace(polygon)) return MStatus::kFailure;
    const auto loop = mesh()->topology().verticesOfFace(polygon);
    storage(vertices).assign(loop.begin(), loop.end());
    return {};
}

MStatus MFnMesh::getVertices(MIntArray& counts, MIntArray& vertices) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    const auto& topology = mesh()->topology();
    auto& sizes = storage(counts);
    sizes.resize(static_cast<std::size_t>(topology.faceCount()));
    for (int face = 0; face < topology.faceCount(); ++face) {
        sizes[static_cast<std::size_t>(face)] = topology.faceSize(face);
    }
    storage(vertices) = topology.faceVertices();
    return {};
}

MStatus MFnMesh::getEdgeVertices(int edge, int2& vertices) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    if (!mesh()->topology().hasEdge(edge)) return MStatus::kFailure;
    const auto& ends = mesh()->topology().edges()[static_cast<std::size_t>(edge)];
    vertices[0] = ends.a;
    vertices[1] = ends.b;
    return {};
}

bool MFnMesh::isEdgeSmooth(int edge, MStatus* status) const {
    if (!mesh()) return answer(status, false, MStatus::kInvalidParameter);
    if (!mesh()->topology().hasEdge(edge)) return answer(status, false, MStatus::kFailure);
    return answer(status, !mesh()->isHardEdge(edge));
}

MStatus MFnMesh::getTriangles(MIntArray& counts, MIntArray& vertices) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    auto& sizes = storage(counts);
    sizes.clear();
    for (int face = 0; face < mesh()->faceCount(); ++face)
        sizes.push_back(mesh()->triangleCount(face));
    auto& ids = storage(vertices);
    ids.clear();
    const auto& ofCorner = mesh()->topology().faceVertices();
    for (const auto& triangle : mesh()->triangles()) {
        for (const int corner : triangle)
            ids.push_back(ofCorner[static_cast<std::size_t>(corner)]);
    }
    return {};
}

MStatus MFnMesh::getPolygonTriangleVertices(int polygon, int triangle, int vertices[3]) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    if (!mesh()->topology().hasFace(polygon) || triangle < 0 || triangle >= mesh()->triangleCount(polygon)) {
        return MStatus::kFailure;
    }
    const auto ids = mesh()->triangleVertices(polygon, triangle);
    std::copy(ids.begin(), ids.end(), vertices);
    return {};
}

// --- points
// ----------------------------------------------------------------------------------------------------------

MStatus MFnMesh::getPoints(MPointArray& points, MSpace::Space space) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    fromStored<MPointArray, MPoint>(mesh()->points(), matrixFor(space), points);
    return {};
}

MStatus MFnMesh::getPoints(MFloatPointArray& points, MSpace::Space space) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    fromStored<MFloatPointArray, MFloatPoint>(mesh()->points(), matrixFor(space), points);
    return {};
}

const float* MFnMesh::getRawPoints(MStatus* status) const {
    if (!mesh()) return answer(status, static_cast<const float*>(nullptr), MStatus::kInvalidParameter);
    const auto& points = mesh()->points();
    return answer(status, points.empty() ? nullptr : &points.front().x);
}

MStatus MFnMesh::getPoint(int vertex, MPoint& point, MSpace::Space space) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    if (!mesh()->topology().hasVertex(vertex)) return MStatus::kFailure;
    point = MPoint(mesh()->point(vertex));
    if (const MMatrix* matrix = matrixFor(space)) point = point * *matrix;
    return {};
}

MStatus MFnMesh::setPoints(const MPointArray& points, MSpace::Space space) {
    MStatus status;
    const MMatrix* matrix = matrixFor(space);
    auto stored = toStored(points, matrix);
    if (Mesh* to = editable(status)) return statusOf(to->setPoints(std::move(stored)));
    return status;
}

MStatus MFnMesh::setPoints(const MFloatPointArray& points, MSpace::Space space) {
    MStatus status;
    auto stored = toStored(points, matrixFor(space));
    if (Mesh* to = editable(status)) return statusOf(to->setPoints(std::move(stored)));
    return status;
}

MStatus MFnMesh::setPoint(int vertex, const MPoint& point, MSpace::Space space) {
    MStatus status = writableStatus();
    if (!status) return status;
    if (!mesh()->topology().hasVertex(vertex)) return MStatus::kFailure;
    const MMatrix* matrix = matrixFor(space);
    const MFloatVector stored = toFloat(matrix ? point * matrix->inverse() : point);
    if (Mesh* to = editable(status)) to->setPoint(vertex, stored);
    return status;
}

// --- normals
// ---------------------------------------------------------------------------------------------------------

MStatus MFnMesh::getPolygonNormal(int polygon, MVector& normal, MSpace::Space space) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    if (!mesh()->topology().hasFace(polygon)) return MStatus::kFailure;
    normal = placed(mesh()->faceNormals()[static_cast<std::size_t>(polygon)], matrixFor(space));
    return {};
}

MStatus MFnMesh::getVertexNormal(int vertex, bool angleWeighted, MVector& normal, MSpace::Space space) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    if (!mesh()->topology().hasVertex(vertex)) return MStatus::kFailure;
    normal = placed(mesh()->vertexNormals(angleWeighted)[static_cast<std::size_t>(vertex)], matrixFor(space));
    return {};
}

MStatus MFnMesh::getVertexNormals(bool angleWeighted, MFloatVectorArray& normals, MSpace::Space space) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    putNormals(mesh()->vertexNormals(angleWeighted), matrixFor(space), normals);
    return {};
}

MStatus MFnMesh::getFaceVertexNormal(int face, int vertex, MVector& normal, MSpace::Space space) const {
    const int corner = getTangentId(face, vertex);
    if (!mesh()) return MStatus::kInvalidParameter;
    if (corner < 0) return MStatus::kFailure;
    normal = placed(mesh()->cornerNormals()[static_cast<std::size_t>(corner)], matrixFor(space));
    return {};
}

MStatus MFnMesh::getFaceVertexNormals(MFloatVectorArray& normals, MSpace::Space space) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    putNormals(mesh()->cornerNormals(), matrixFor(space), normals);
    return {};
}

MStatus MFnMesh::setVertexNormals(const MVectorArray& normals, const MIntArray& vertices,
                                  MSpace::Space space) {
    MStatus status;
    std::vector<MFloatVector> stored;
    stored.reserve(normals.length());
    const MMatrix* matrix = matrixFor(space);
    const MMatrix back = matrix ? matrix->inverse() : MMatrix();
    for (const auto& normal : storage(normals)) {
        stored.push_back(toFloat(matrix ? normal.transformAsNormal(back) : normal));
    }
    if (Mesh* to = editable(status)) return statusOf(to->setVertexNormals(stored, storage(vertices)));
    return status;
}

// --- tangents
// --------------------------------------------------------------------------------------------------------

int MFnMesh::getTangentId(int face, int vertex, MStatus* status) const {
    if (!mesh()) return answer(status, -1, MStatus::kInvalidParameter);
    const auto& topology = mesh()->topology();
    const bool exists = topology.hasFace(face) && topology.hasVertex(vertex);
    const int corner = exists ? topology.findCorner(face, vertex) : -1;
    return answer(status, corner, found(corner >= 0));
}

namespace {

/// The frame of one corner in the space asked for; invalid where there is none.
Mesh::CornerFrame frameAt(const Mesh& mesh, int corner, const MString* uvSet, const MMatrix* matrix) {
    const int set = mesh.findUvSet(nameOf(uvSet));
    if (corner < 0 || set < 0) return {};
    const auto frame = mesh.cornerFrame(set, corner);
    return matrix ? vesk::geom::transformedFrame(frame, *matrix) : frame;
}

/// The frames of all corners; empty without the set.
Mesh::CornerFrames framesOf(const Mesh& mesh, const MString* uvSet, const MMatrix* matrix) {
    const int set = mesh.findUvSet(nameOf(uvSet));
    if (set < 0) return {};
    auto frames = mesh.cornerFrames(set);
    return matrix ? vesk::geom::transformedFrames(std::move(frames), *matrix) : frames;
}

} // namespace

MStatus MFnMesh::getFaceVertexTangent(int face, int vertex, MVector& tangent, MSpace::Space space,
                                      const MString* uvSet) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    const auto frame = frameAt(*mesh(), getTangentId(face, vertex), uvSet, matrixFor(space));
    tangent = MVector(frame.tangent);
    return found(frame.valid);
}

MStatus MFnMesh::getFaceVertexBinormal(int face, int vertex, MVector& binormal, MSpace::Space space,
                                       const MString* uvSet) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    const auto frame = frameAt(*mesh(), getTangentId(face, vertex), uvSet, matrixFor(space));
    binormal = MVector(frame.binormal);
    return found(frame.valid);
}

MStatus MFnMesh::getTangents(MFloatVectorArray& tangents, MSpace::Space space, const MString* uvSet) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    storage(tangents) = framesOf(*mesh(), uvSet, matrixFor(space)).tangents;
    return found(tangents.length() > 0 || mesh()->cornerCount() == 0);
}

MStatus MFnMesh::getBinormals(MFloatVectorArray& binormals, MSpace::Space space, const MString* uvSet) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    storage(binormals) = framesOf(*mesh(), uvSet, matrixFor(space)).binormals;
    return found(binormals.length() > 0 || mesh()->cornerCount() == 0);
}

// --- UVs
// -------------------------------------------------------------------------------------------------------------

int MFnMesh::numUVSets(MStatus* status) const {
    return mesh() ? answer(status, mesh()->uvSetCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

MStatus MFnMesh::getUVSetNames(MStringArray& names) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    names.clear();
    for (int set = 0; set < mesh()->uvSetCount(); ++set)
        names.append(MString(mesh()->uvSet(set).name.c_str()));
    return {};
}

MString MFnMesh::currentUVSetName(MStatus* status) const {
    if (!mesh()) return answer(status, MString(), MStatus::kInvalidParameter);
    const int set = mesh()->findUvSet({});
    return answer(status, set < 0 ? MString() : MString(mesh()->uvSet(set).name.c_str()));
}

int MFnMesh::numUVs(MStatus* status) const {
    if (!mesh()) return answer(status, 0, MStatus::kInvalidParameter);
    const int set = mesh()->findUvSet({});
    return answer(status, set < 0 ? 0 : mesh()->uvSet(set).uvCount());
}

MStatus MFnMesh::getUVs(MFloatArray& us, MFloatArray& vs, const MString* uvSet) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    us.clear();
    vs.clear();
    const int set = mesh()->findUvSet(nameOf(uvSet));
    if (set < 0) return MStatus::kFailure;
    storage(us) = mesh()->uvSet(set).u;
    storage(vs) = mesh()->uvSet(set).v;
    return {};
}

MStatus MFnMesh::getAssignedUVs(MIntArray& counts, MIntArray& ids, const MString* uvSet) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    counts.clear();
    ids.clear();
    const int set = mesh()->findUvSet(nameOf(uvSet));
    if (set < 0) return MStatus::kFailure;
    const auto& uvs = mesh()->uvSet(set);
    const auto& topology = mesh()->topology();
    for (int face = 0; face < topology.faceCount(); ++face) {
        const int first = topology.faceStart()[static_cast<std::size_t>(face)];
        const int size = topology.faceSize(face);
        // A face is mapped as a whole or not at all.
        const bool mapped = size > 0 && uvs.idOfCorner(first) >= 0;
        counts.append(mapped ? size : 0);
        for (int i = 0; mapped && i < size; ++i)
            ids.append(uvs.idOfCorner(first + i));
    }
    return {};
}

MStatus MFnMesh::setUVs(const MFloatArray& us, const MFloatArray& vs, const MString* uvSet) {
    MStatus status;
    Mesh* to = editable(status);
    if (!to) return status;
    const int set = to->findUvSet(nameOf(uvSet));
    return set < 0 ? MStatus(MStatus::kFailure) : statusOf(to->setUvs(set, storage(us), storage(vs)));
}

MStatus MFnMesh::assignUVs(const MIntArray& counts, const MIntArray& ids, const MString* uvSet) {
    MStatus status;
    Mesh* to = editable(status);
    if (!to) return status;
    const int set = to->findUvSet(nameOf(uvSet));
    return set < 0 ? MStatus(MStatus::kFailure) : statusOf(to->assignUvs(set, storage(counts), storage(ids)));
}

MStatus MFnMesh::clearUVs(const MString* uvSet) {
    MStatus status;
    Mesh* to = editable(status);
    if (!to) return status;
    const int set = to->findUvSet(nameOf(uvSet));
    if (set < 0) return MStatus::kFailure;
    to->clearUvs(set);
    return {};
}

// --- colours
// ---------------------------------------------------------------------------------------------------------

int MFnMesh::numColorSets(MStatus* status) const {
    return mesh() ? answer(status, mesh()->colorSetCount()) : answer(status, 0, MStatus::kInvalidParameter);
}

MStatus MFnMesh::getColorSetNames(MStringArray& names) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    names.clear();
    for (int set = 0; set < mesh()->colorSetCount(); ++set) {
        names.append(MString(mesh()->colorSet(set).name.c_str()));
    }
    return {};
}

MString MFnMesh::currentColorSetName(MStatus* status) const {
    if (!mesh()) return answer(status, MString(), MStatus::kInvalidParameter);
    const int set = mesh()->findColorSet({});
    return answer(status, set < 0 ? MString() : MString(mesh()->colorSet(set).name.c_str()));
}

MStatus MFnMesh::getVertexColors(MColorArray& colors, const MString* colorSet,
                                 const MColor* defaultUnsetColor) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    colors.clear();
    const int set = mesh()->findColorSet(nameOf(colorSet));
    if (set < 0) return MStatus::kFailure;
    storage(colors) =
        mesh()->vertexColors(set, defaultUnsetColor ? *defaultUnsetColor : vesk::geom::unsetColor);
    return {};
}

MStatus MFnMesh::getFaceVertexColors(MColorArray& colors, const MString* colorSet,
                                     const MColor* defaultUnsetColor) const {
    if (!mesh()) return MStatus::kInvalidParameter;
    colors.clear();
    const int set = mesh()->findColorSet(nameOf(colorSet));
    if (set < 0) return MStatus::kFailure;
    storage(colors) =
        mesh()->cornerColors(set, defaultUnsetColor ? *defaultUnsetColor : vesk::geom::unsetColor);
    return {};
}

MStatus MFnMesh::setVertexColors(const MColorArray& colors, const MIntArray& vertices) {
    MStatus status;
    if (Mesh* to = editable(status)) return statusOf(to->setVertexColors(storage(colors), storage(vertices)));
    return status;
}

MString MFnMesh::createColorSetWithName(const MString& name, MDGModifier* modifier, MStatus* status) {
    MStatus outcome;
    Mesh* to = modifier ? nullptr : editable(outcome);
    if (!to || name.length() == 0)
        return answer(status, MString(), outcome ? MStatus::kInvalidParameter : outcome);
    to->addColorSet(std::string(nameOf(&name)));
    return answer(status, name);
}

MStatus MFnMesh::setCurrentColorSetName(const MString& name, MDGModifier* modifier) {
    MStatus status;
    Mesh* to = modifier ? nullptr : editable(status);
    if (!to) return status ? MStatus(MStatus::kInvalidParameter) : status;
    const int set = name.length() > 0 ? to->findColorSet(nameOf(&name)) : -1;
    if (set < 0) return MStatus::kFailure;
    to->setCurrentColorSet(set);
    return {};
}
