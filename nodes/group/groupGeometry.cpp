#include "nodes/group/groupGeometry.h"

#include "nodes/common/arrays.h"
#include "nodes/common/geometry_copy.h"
#include "nodes/common/steps.h"

#include <maya/MDataBlock.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnMeshData.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MFnVectorArrayData.h>
#include <maya/MIntArray.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MVectorArray.h>

#include <algorithm>

namespace vesk::nodes {

namespace {

using Form = GroupGeometry::Form;

constexpr unsigned kFewestParticles = 3;

std::vector<MVector> toVector(const MVectorArray& vectors) {
    std::vector<MVector> all;
    all.reserve(vectors.length());
    for (unsigned i = 0; i < vectors.length(); ++i)
        all.push_back(vectors[i]);
    return all;
}

/// A polygon through all particles, so that they have neighbours.
MObject polygonThrough(const MPointArray& points) {
    const auto count = static_cast<int>(points.length());
    MIntArray order;
    for (int i = 0; i < count; ++i)
        order.append(i);
    MObject data = MFnMeshData().create();
    MFnMesh().create(count, 1, points, MIntArray(1, count), order, data);
    return data;
}

/// Velocities of the particle shape upstream. False when there is none.
bool shapeVelocities(const MObject& node, std::vector<MVector>& velocities) {
    MStatus status;
    MItDependencyGraph upstream(node, MFn::kParticle, MItDependencyGraph::kUpstream,
                                MItDependencyGraph::kBreadthFirst, MItDependencyGraph::kNodeLevel, &status);
    if (!status || upstream.isDone()) return false;
    const MPlug plug = MFnDependencyNode(upstream.currentItem()).findPlug("velocity", &status);
    MObject data;
    if (status && plug.getValue(data)) velocities = toVector(MFnVectorArrayData(data).array());
    return true;
}

std::vector<MVector> inputVelocities(const MObject& data) {
    MStatus status;
    if (const MFnVectorArrayData vectors(data, &status); status) return toVector(vectors.array());
    std::vector<MVector> velocities;
    if (const MFnDoubleArrayData numbers(data, &status); status) {
        const MDoubleArray flat = numbers.array();
        for (unsigned i = 0; i + 2 < flat.length(); i += 3)
            velocities.emplace_back(flat[i], flat[i + 1], flat[i + 2]);
    }
    return velocities;
}

bool readParticles(const MObject& node, MDataBlock& block, const GroupInputAttributes& attributes,
                   GroupGeometry& geometry) {
    geometry.form = Form::kParticles;
    if (MPlug(node, attributes.inVelocityPP).isConnected()) {
        geometry.velocities = inputVelocities(block.inputValue(attributes.inVelocityPP).data());
    } else if (!shapeVelocities(node, geometry.velocities)) {
        return false;
    }
    MPointArray points;
    const MFnVectorArrayData positions(block.inputValue(attributes.inGeometry).data());
    for (unsigned i = 0; i < positions.length(); ++i)
        points.append(MPoint(positions[i]));
    geometry.particleCount = static_cast<int>(points.length());
    if (geometry.particleCount == 0) return true;
    while (points.length() < kFewestParticles)
        points.append(MPoint(points[0]));
    geometry.velocities.resize(static_cast<std::size_t>(geometry.particleCount));
    geometry.velocities.resize(points.length(), MVector(geometry.velocities.front()));
    geometry.setPoints(points);
    geometry.mesh = polygonThrough(points);
    geometry.links = MeshLinks(geometry.mesh);
    return true;
}

} // namespace

MFn::Type componentOf(GroupKind kind) {
    switch (kind) {
    case GroupKind::kEdge: return MFn::kMeshEdgeComponent;
    case GroupKind::kFace: return MFn::kMeshPolygonComponent;
    case GroupKind::kMap: return MFn::kMeshMapComponent;
    case GroupKind::kCurveCV: return MFn::kCurveCVComponent;
    case GroupKind::kSurfaceCV: return MFn::kSurfaceCVComponent;
    default: return MFn::kMeshVertComponent;
    }
}

bool GroupGeometry::fits(GroupKind kind) const {
    switch (kind) {
    case GroupKind::kCurveCV: return form == Form::kCurve;
    case GroupKind::kSurfaceCV: return form == Form::kSurface;
    case GroupKind::kParticle: return form == Form::kParticles;
    default: return form == Form::kMesh || form == Form::kParticles;
    }
}

int GroupGeometry::count(GroupKind kind) const {
    if (!fits(kind)) return 0;
    switch (kind) {
    case GroupKind::kEdge: return links.edgeCount();
    case GroupKind::kFace: return links.faceCount();
    default: return pointCount;
    }
}

int GroupGeometry::uvCount() const {
    const MFnMesh function(mesh);
    MFloatArray us, vs;
    function.getUVs(us, vs, uvSet.length() > 0 ? &uvSet : nullptr);
    return static_cast<int>(us.length());
}

ElementCounts GroupGeometry::wholeCounts(MFn::Type type) const {
    ElementCounts counts;
    counts.u = numCVsInU;
    counts.v = numCVsInV;
    counts.single = type == MFn::kMeshEdgeComponent      ? links.edgeCount()
                    : type == MFn::kMeshPolygonComponent ? links.faceCount()
                    : type == MFn::kMeshMapComponent     ? uvCount()
                                                         : pointCount;
    return counts;
}

ElementSet GroupGeometry::complete(GroupKind kind) const {
    if (kind == GroupKind::kSurfaceCV && fits(kind))
        return ElementSet::completePairs(componentOf(kind), numCVsInU, numCVsInV);
    return ElementSet::complete(componentOf(kind), count(kind));
}

ElementId GroupGeometry::elementAt(GroupKind kind, int index) const {
    return kind == GroupKind::kSurfaceCV ? pairElement(index / numCVsInV, index % numCVsInV) : index;
}

ElementSet GroupGeometry::selection(GroupKind kind, const std::vector<int>& indices) const {
    std::vector<ElementId> elements;
    elements.reserve(indices.size());
    for (const int index : indices)
        elements.push_back(elementAt(kind, index));
    return ElementSet::of(componentOf(kind), std::move(elements));
}

std::vector<int> GroupGeometry::verticesOf(const ElementSet& set) {
    std::vector<int> vertices;
    const auto take = [&](const Links& corners) {
        for (const ElementId element : set.elements) {
            if (element >= static_cast<ElementId>(corners.start.size()) - 1) continue;
            const auto ids = corners.of(static_cast<int>(element));
            vertices.insert(vertices.end(), ids.begin(), ids.end());
        }
    };
    if (set.type == MFn::kMeshEdgeComponent) {
        take(links.edgeVertices());
    } else if (set.type == MFn::kMeshPolygonComponent) {
        take(links.faceVertices());
    } else {
        for (const ElementId element : set.elements) {
            const ElementId index = set.type == MFn::kSurfaceCVComponent
                                        ? ElementId{uOf(element)} * numCVsInV + vOf(element)
                                        : element;
            if (index >= 0 && index < pointCount) vertices.push_back(static_cast<int>(index));
        }
    }
    std::sort(vertices.begin(), vertices.end());
    vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
    return vertices;
}

std::span<const MPoint> GroupGeometry::points() {
    if (points_.length() == 0 && form == Form::kMesh) MFnMesh(mesh).getPoints(points_);
    const MPointArray& all = points_;
    return elements(all);
}

void GroupGeometry::setPoints(const MPointArray& points) {
    points_ = points;
    pointCount = static_cast<int>(points.length());
}

namespace {

/// The sum, over the vertex's faces, of what their UVs say which way the surface looks.
MVector normalByTangents(const MFnMesh& mesh, std::span<const int> faces, int vertex) {
    MVector sum;
    for (const int face : faces) {
        MVector tangent, binormal;
        mesh.getFaceVertexTangent(face, vertex, tangent);
        mesh.getFaceVertexBinormal(face, vertex, binormal);
        sum += -(tangent ^ binormal);
    }
    return sum.normal();
}

} // namespace

std::vector<MVector> GroupGeometry::references(GroupKind kind, const MPlug& input) {
    if (kind == GroupKind::kParticle) return velocities;
    const MObject source = form == Form::kCurve ? curveAsMesh(input) : mesh;
    const MFnMesh function(source);
    MFloatVectorArray normals;
    function.getVertexNormals(false, normals);
    // A ribbon has two vertices a CV.
    const unsigned stride = form == Form::kCurve ? 2 : 1;
    std::vector<MVector> references(static_cast<std::size_t>(pointCount));
    for (unsigned i = 0; i < references.size() && i * stride < normals.length(); ++i)
        references[i] = MVector(normals[i * stride]);
    if (form == Form::kSurface) {
        MeshLinks around(source);
        for (std::size_t i = 0; i < references.size(); ++i) {
            const auto vertex = static_cast<int>(i);
            if (references[i] == MVector())
                references[i] = normalByTangents(function, around.vertexFaces().of(vertex), vertex);
        }
    }
    return references;
}

std::vector<MVector> GroupGeometry::faceNormals() const {
    const MFnMesh function(mesh);
    std::vector<MVector> normals(static_cast<std::size_t>(links.faceCount()));
    for (std::size_t face = 0; face < normals.size(); ++face)
        function.getPolygonNormal(static_cast<int>(face), normals[face]);
    return normals;
}

const Links& GroupGeometry::vertexUvs() {
    if (!hasVertexUvs_) vertexUvs_ = links.vertexUvs(uvSet);
    hasVertexUvs_ = true;
    return vertexUvs_;
}

GroupInput readGroupGeometry(const MObject& node, MDataBlock& block, const GroupInputAttributes& attributes,
                             short coordinateSystem, GroupGeometry& geometry) {
    MDataHandle handle = block.inputValue(attributes.inGeometry);
    const MPlug input(node, attributes.inGeometry);
    if (handle.type() == MFnData::kVectorArray) {
        return readParticles(node, block, attributes, geometry) ? GroupInput::kReady
                                                                : GroupInput::kUnknownVelocities;
    }
    geometry.output = copyOfGeometry(handle, coordinateSystem);
    if (geometry.output.isNull()) return GroupInput::kReady;
    MPointArray points;
    switch (handle.type()) {
    case MFnData::kMesh:
        geometry.form = Form::kMesh;
        geometry.mesh = geometry.output;
        geometry.links = MeshLinks(geometry.mesh);
        geometry.pointCount = geometry.links.vertexCount();
        return GroupInput::kReady;
    case MFnData::kNurbsCurve:
        geometry.form = Form::kCurve;
        MFnNurbsCurve(geometry.output).getCVs(points);
        break;
    default: {
        const MFnNurbsSurface surface(geometry.output);
        geometry.mesh = surfaceAsMesh(input);
        geometry.numCVsInU = surface.numCVsInU();
        geometry.numCVsInV = surface.numCVsInV();
        if (!geometry.mesh.isNull() &&
            MFnMesh(geometry.mesh).numVertices() != geometry.numCVsInU * geometry.numCVsInV) {
            return GroupInput::kPeriodicSurface;
        }
        geometry.form = Form::kSurface;
        // The tessellation has the surface's CVs as its vertices: neighbours and corners go by it.
        geometry.links = MeshLinks(geometry.mesh);
        surface.getCVs(points);
    }
    }
    geometry.setPoints(points);
    return GroupInput::kReady;
}

} // namespace vesk::nodes
