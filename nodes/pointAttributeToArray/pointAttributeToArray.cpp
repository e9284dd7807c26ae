#include "nodes/pointAttributeToArray/pointAttributeToArray.h"

#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/steps.h"
#include "nodes/common/uv_sets.h"
#include "nodes/pointAttributeToArray/pointAttributes.h"

#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnIntArrayData.h>
#include <maya/MFnMesh.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MFnVectorArrayData.h>
#include <maya/MItGeometry.h>
#include <maya/MItMeshVertex.h>

namespace {

using namespace vesk::nodes;
using Self = pointAttributeToArray;

constexpr const char* kNoGroups =
    "Object groups are not supported for vector arrays. Use components list instead.";
constexpr const char* kPeriodic = "The geometry at the input is a periodic nurbs surface. Rebuild using the "
                                  "\"End Conditions\" / \"Multiple Knots\" options.";

/// Everything that one compute reads besides the geometry.
struct Request {
    PointSettings settings;
    short coordinateSystem = kWorldCoordinates;
    short useComponents = kAllPoints;
    MString colorSet, uvSet;
    MString name;
};

Request readRequest(MDataBlock& block, const MPxNode& node) {
    const auto isOn = [&](const MObject& attribute) { return block.inputValue(attribute).asBool(); };
    const auto whole = [&](const MObject& attribute) { return block.inputValue(attribute).asInt(); };
    Request request;
    PointSettings& s = request.settings;
    s.position = isOn(Self::pointPosition);
    s.rotation = isOn(Self::pointRotation);
    s.normal = isOn(Self::pointNormal);
    s.binormal = isOn(Self::pointBinormal);
    s.tangent = isOn(Self::pointTangent);
    s.color = isOn(Self::pointColor);
    s.mapData = isOn(Self::mapData);
    if (!s.any()) return request;
    s.averagedNormals = isOn(Self::averagedNormals);
    s.averagedTangents = isOn(Self::averagedTangents);
    s.averagedBinormals = isOn(Self::averagedBinormals);
    s.normalIdOffset = whole(Self::normalIdOffset);
    s.tangentIdOffset = whole(Self::tangentIdOffset);
    s.binormalIdOffset = whole(Self::binormalIdOffset);
    s.rotationOrder = block.inputValue(Self::rotationOrder).asShort();
    s.prune = isOn(Self::prune);
    request.coordinateSystem = block.inputValue(Self::coordinateSystem).asShort();
    request.useComponents = block.inputValue(Self::useComponents).asShort();
    request.colorSet = block.inputValue(Self::colorSet).asString();
    request.uvSet = block.inputValue(Self::uvSet).asString();
    request.name = nodeName(node, Self::inGeometry);
    return request;
}

/// The thirteen outputs of one compute, but for the two that have no attribute.
struct Outputs {
    ArrayOutput<MFnIntArrayData, MIntArray> ids;
    ArrayOutput<MFnVectorArrayData, MVectorArray> positions, rotations, normals, binormals, tangents;
    ArrayOutput<MFnDoubleArrayData, MDoubleArray> rgba;
    ArrayOutput<MFnIntArrayData, MIntArray> mapCounts, mapIds;
    ArrayOutput<MFnDoubleArrayData, MDoubleArray> maps, sharedMaps;

    PointArrays arrays() {
        return {ids.values,       positions.values, rotations.values, normals.values,
                binormals.values, tangents.values,  rgba.values,      mapCounts.values,
                mapIds.values,    maps.values,      sharedMaps.values};
    }

    void handOver(MDataBlock& block) {
        ids.handOver(block, Self::outIdPP);
        positions.handOver(block, Self::outPositionPP);
        rotations.handOver(block, Self::outRotationPP);
        normals.handOver(block, Self::outNormalPP);
        binormals.handOver(block, Self::outBinormalPP);
        tangents.handOver(block, Self::outTangentPP);
        rgba.handOver(block, Self::outRgbaPP);
        mapCounts.handOver(block, Self::outMapCountPP);
        mapIds.handOver(block, Self::outMapIdPP);
        maps.handOver(block, Self::outMapPP);
        sharedMaps.handOver(block, Self::outSharedMapPP);
    }
};

// --- particles
// -------------------------------------------------------------------------------------------------------

/// Particles yield positions alone, whatever is switched on.
void readParticles(MDataBlock& block, const Request& request, MVectorArray& positions) {
    MObject data = block.inputValue(Self::inGeometry).data();
    const MFnVectorArrayData particles(data);
    if (request.useComponents == kInputObjectGroup) return warn(request.name, kNoParticleGroups);
    if (request.useComponents != kInputComponentList) {
        particles.copyTo(positions);
        return;
    }
    const unsigned count = particles.length();
    const MIntArray ids = particleIds(block.inputValue(Self::inComponents).data(), count);
    for (unsigned i = 0; i < ids.length(); ++i) {
        const int id = ids[i];
        if (id >= 0 && static_cast<unsigned>(id) < count)
            positions.append(particles[static_cast<unsigned>(id)]);
    }
}

// --- geometry with points
// --------------------------------------------------------------------------------------------

/// Corners at each vertex, in the order of the vertex's connected faces.
void readCorners(MObject& mesh, const MFnMesh& faces, PointGeometry& geometry) {
    MIntArray counts, vertices;
    faces.getVertices(counts, vertices);
    std::vector<unsigned> faceStart(counts.length() + 1, 0);
    for (unsigned f = 0; f < counts.length(); ++f)
        faceStart[f + 1] = faceStart[f] + static_cast<unsigned>(counts[f]);
    geometry.cornerStart.reserve(static_cast<std::size_t>(faces.numVertices()) + 1);
    geometry.corners.reserve(vertices.length());
    geometry.cornerStart.push_back(0);
    MIntArray around;
    for (MItMeshVertex vertex(mesh); !vertex.isDone(); vertex.next()) {
        vertex.getConnectedFaces(around);
        const int id = vertex.index();
        for (unsigned i = 0; i < around.length(); ++i) {
            unsigned corner = faceStart[static_cast<unsigned>(around[i])];
            while (vertices[corner] != id)
                ++corner;
            geometry.corners.push_back(corner);
        }
        geometry.cornerStart.push_back(static_cast<unsigned>(geometry.corners.size()));
    }
}

/// UV ids by corner, and the values by id. A set that isn't there leaves all unmapped.
void readMap(const MFnMesh& mesh, const MString* uvSet, PointGeometry& geometry) {
    MIntArray counts, ids;
    if (!mesh.getAssignedUVs(counts, ids, uvSet)) return;
    mesh.getUVs(geometry.us, geometry.vs, uvSet);
    geometry.cornerUvIds.reserve(static_cast<std::size_t>(mesh.numFaceVertices()));
    unsigned next = 0;
    for (unsigned face = 0; face < counts.length(); ++face) {
        const int corners = mesh.polygonVertexCount(static_cast<int>(face));
        for (int i = 0; i < corners; ++i)
            geometry.cornerUvIds.push_back(counts[face] > 0 ? ids[next++] : -1);
    }
}

/// What the settings ask of a mesh. All queries are in the mesh's own space and in world space alike: the
/// geometry was taken from the input in the space of `coordinateSystem`.
void readMesh(MObject& mesh, const Request& request, PointGeometry& geometry) {
    const MSpace::Space space =
        request.coordinateSystem == kWorldCoordinates ? MSpace::kWorld : MSpace::kObject;
    const PointSettings& s = request.settings;
    const MFnMesh function(mesh);
    const MString* uvSet = request.uvSet.length() > 0 ? &request.uvSet : nullptr;
    const MString* colorSet = request.colorSet.length() > 0 ? &request.colorSet : nullptr;
    if (s.position) function.getPoints(geometry.positions, space);
    if (s.rotation || (s.normal && s.averagedNormals))
        function.getVertexNormals(false, geometry.vertexNormals, space);
    if (s.rotation || s.normal || s.binormal || s.tangent || s.mapData) readCorners(mesh, function, geometry);
    if (s.normal && !s.averagedNormals) function.getFaceVertexNormals(geometry.cornerNormals, space);
    if (s.rotation || s.tangent) function.getTangents(geometry.cornerTangents, space, uvSet);
    if (s.rotation || s.binormal) function.getBinormals(geometry.cornerBinormals, space, uvSet);
    if (s.color) function.getVertexColors(geometry.colors, colorSet);
    if (s.mapData) readMap(function, uvSet, geometry);
}

/// Curves and surfaces that nothing feeds have no mesh: positions and ids are all that there is to read.
void readPointsAlone(MDataHandle& handle, const Request& request, Outputs& out, PointGeometry& geometry) {
    const MSpace::Space space =
        request.coordinateSystem == kWorldCoordinates ? MSpace::kWorld : MSpace::kObject;
    geometry.verticesPerPoint = 1;
    for (MItGeometry point(handle); !point.isDone(); point.next())
        geometry.positions.append(point.position(space));
    geometry.pointCount = geometry.positions.length();
    PointSettings positionsOnly;
    positionsOnly.position = request.settings.position;
    PointArrays arrays = out.arrays();
    readPointAttributes(geometry, positionsOnly, std::vector<char>(geometry.pointCount, 1), arrays);
}

void readGeometry(const MPxNode& node, MDataBlock& block, const Request& request, Outputs& out) {
    MDataHandle handle = block.inputValue(Self::inGeometry);
    const MFnData::Type type = handle.type();
    MObject object = geometryIn(handle, request.coordinateSystem);
    if (object.isNull()) return;
    const MPlug input(node.thisMObject(), Self::inGeometry);
    PointGeometry geometry;
    MFn::Type pointKind = MFn::kMeshVertComponent;
    MObject mesh = object;
    if (type == MFnData::kNurbsCurve) {
        pointKind = MFn::kCurveCVComponent;
        geometry.isCurve = true;
        geometry.verticesPerPoint = 2;
        mesh = input.isConnected() ? curveAsMesh(input) : MObject();
    } else if (type == MFnData::kNurbsSurface) {
        pointKind = MFn::kSurfaceCVComponent;
        geometry.numCVsInV = static_cast<unsigned>(MFnNurbsSurface(object).numCVsInV());
        mesh = input.isConnected() ? surfaceAsMesh(input) : MObject();
    }
    if (mesh.isNull()) return readPointsAlone(handle, request, out, geometry);

    MItGeometry points(handle);
    geometry.pointCount = static_cast<unsigned>(points.count());
    const MFnMesh function(mesh);
    const auto vertexCount = static_cast<unsigned>(function.numVertices());
    if (type == MFnData::kNurbsSurface && geometry.pointCount != vertexCount) {
        return warn(request.name, kPeriodic);
    }
    geometry.pointCount = std::min(geometry.pointCount, vertexCount / geometry.verticesPerPoint);

    // A set that cannot be found is used all the same: queries by its name find nothing.
    (void)checkUvSet(function, request.uvSet, request.name);
    PointSelection selection;
    if (request.useComponents == kInputObjectGroup) {
        warn(request.name, kNoGroups);
    } else if (request.useComponents == kInputComponentList) {
        selection = PointSelection::ofComponents(block.inputValue(Self::inComponents).data());
    }
    readMesh(mesh, request, geometry);
    PointArrays arrays = out.arrays();
    readPointAttributes(geometry, request.settings,
                        selection.mask(pointKind, geometry.pointCount, geometry.numCVsInV), arrays);
}

bool isOutput(const MPlug& plug) {
    const MObject* const outputs[] = {&Self::outIdPP,     &Self::outPositionPP, &Self::outRotationPP,
                                      &Self::outNormalPP, &Self::outBinormalPP, &Self::outTangentPP,
                                      &Self::outRgbaPP,   &Self::outMapCountPP, &Self::outMapIdPP,
                                      &Self::outMapPP,    &Self::outSharedMapPP};
    return std::any_of(std::begin(outputs), std::end(outputs),
                       [&](const MObject* attribute) { return plug == *attribute; });
}

} // namespace

MObject pointAttributeToArray::inGeometry;
MObject pointAttributeToArray::inComponents;
MObject pointAttributeToArray::outIdPP;
MObject pointAttributeToArray::outPositionPP;
MObject pointAttributeToArray::outRotationPP;
MObject pointAttributeToArray::outNormalPP;
MObject pointAttributeToArray::outBinormalPP;
MObject pointAttributeToArray::outTangentPP;
MObject pointAttributeToArray::outRgbaPP;
MObject pointAttributeToArray::outMapCountPP;
MObject pointAttributeToArray::outMapIdPP;
MObject pointAttributeToArray::outMapPP;
MObject pointAttributeToArray::outSharedMapPP;
MObject pointAttributeToArray::pointPosition;
MObject pointAttributeToArray::pointRotation;
MObject pointAttributeToArray::pointNormal;
MObject pointAttributeToArray::pointTangent;
MObject pointAttributeToArray::pointBinormal;
MObject pointAttributeToArray::pointColor;
MObject pointAttributeToArray::mapData;
MObject pointAttributeToArray::coordinateSystem;
MObject pointAttributeToArray::colorSet;
MObject pointAttributeToArray::uvSet;
MObject pointAttributeToArray::useComponents;
MObject pointAttributeToArray::groupId;
MObject pointAttributeToArray::prune;
MObject pointAttributeToArray::rotationOrder;
MObject pointAttributeToArray::averagedNormals;
MObject pointAttributeToArray::averagedTangents;
MObject pointAttributeToArray::averagedBinormals;
MObject pointAttributeToArray::normalIdOffset;
MObject pointAttributeToArray::binormalIdOffset;
MObject pointAttributeToArray::tangentIdOffset;

MTypeId pointAttributeToArray::id(0x115754);

void* pointAttributeToArray::creator() { return new pointAttributeToArray; }

MStatus pointAttributeToArray::initialize() {
    AttributeTable t;
    t.generic(inGeometry, "inGeometry", "ig",
              {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface, MFnData::kVectorArray})
        .notStorable()
        .resets();
    t.generic(inComponents, "inComponents", "ic", {MFnData::kComponentList, MFnData::kIntArray})
        .notStorable()
        .resets();
    t.typed(outIdPP, "outIdPP", "oipp", MFnData::kIntArray).output();
    t.typed(outPositionPP, "outPositionPP", "oppp", MFnData::kVectorArray).output();
    t.typed(outRotationPP, "outRotationPP", "orpp", MFnData::kVectorArray).output();
    t.typed(outNormalPP, "outNormalPP", "onpp", MFnData::kVectorArray).output();
    t.typed(outBinormalPP, "outBinormalPP", "obpp", MFnData::kVectorArray).output();
    t.typed(outTangentPP, "outTangentPP", "otpp", MFnData::kVectorArray).output();
    t.typed(outRgbaPP, "outRgbaPP", "orgbapp", MFnData::kDoubleArray).output();
    t.typed(outMapCountPP, "outMapCountPP", "omcpp", MFnData::kIntArray).output();
    t.typed(outMapIdPP, "outMapIdPP", "omipp", MFnData::kIntArray).output();
    t.typed(outMapPP, "outMapPP", "ompp", MFnData::kDoubleArray).output();
    t.typed(outSharedMapPP, "outSharedMapPP", "osmpp", MFnData::kDoubleArray).output();
    t.boolean(pointPosition, "pointPosition", "pp", false).keyable();
    t.boolean(pointRotation, "pointRotation", "pr", false).keyable();
    t.boolean(pointNormal, "pointNormal", "pn", false).keyable();
    t.boolean(pointTangent, "pointTangent", "pt", false).keyable();
    t.boolean(pointBinormal, "pointBinormal", "pb", false).keyable();
    t.boolean(pointColor, "pointColor", "pc", false).keyable();
    t.boolean(mapData, "mapData", "md", false).keyable();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.string(colorSet, "colorSet", "clrs").keyable();
    t.string(uvSet, "uvSet", "uvs").keyable();
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Component List", "Input Object Group"})
        .keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.boolean(prune, "prune", "p", true).keyable();
    t.enumeration(rotationOrder, "rotationOrder", "ro",
                  {"normal, tangent, binormal", "normal, binormal, tangent", "tangent, normal, binormal",
                   "tangent, binormal, normal", "binormal, normal, tangent", "binormal, tangent, normal"});
    t.boolean(averagedNormals, "averagedNormals", "an", true).keyable();
    t.boolean(averagedTangents, "averagedTangents", "at", true).keyable();
    t.boolean(averagedBinormals, "averagedBinormals", "ab", true).keyable();
    t.integer(normalIdOffset, "normalIdOffset", "nio", 0).min(0).softMax(10).keyable();
    t.integer(binormalIdOffset, "binormalIdOffset", "bio", 0).min(0).softMax(10).keyable();
    t.integer(tangentIdOffset, "tangentIdOffset", "tio", 0).min(0).softMax(10).keyable();
    return t.finish();
}

MStatus pointAttributeToArray::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (!isOutput(plug)) return MS::kUnknownParameter;
    const Request request = readRequest(block, *this);
    Outputs out;
    if (request.settings.any()) {
        if (block.inputValue(inGeometry).type() == MFnData::kVectorArray) {
            readParticles(block, request, out.positions.values);
        } else {
            readGeometry(*this, block, request, out);
        }
    }
    out.handOver(block);
    return MS::kSuccess;
}
