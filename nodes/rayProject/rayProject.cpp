#include "nodes/rayProject/rayProject.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/geometry_copy.h"
#include "nodes/rayProject/rayKernel.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MPointArray.h>

#include <algorithm>

using namespace vesk::nodes;
using Self = rayProject;

MObject rayProject::inGeometry;
MObject rayProject::inComponents;
MObject rayProject::inWeightPP;
MObject rayProject::inNormalPP;
MObject rayProject::inCollisionMesh;
MObject rayProject::outGeometry;
MObject rayProject::envelope;
MObject rayProject::useComponents;
MObject rayProject::groupId;
MObject rayProject::rayDirectionMode;
MObject rayProject::rayPositionX;
MObject rayProject::rayPositionY;
MObject rayProject::rayPositionZ;
MObject rayProject::rayPosition;
MObject rayProject::rayDirectionX;
MObject rayProject::rayDirectionY;
MObject rayProject::rayDirectionZ;
MObject rayProject::rayDirection;
MObject rayProject::testBothDirections;
MObject rayProject::reverseRayDirection;
MObject rayProject::weight;
MObject rayProject::minDistance;
MObject rayProject::maxDistance;
MObject rayProject::maxAngle;
MObject rayProject::keepHistory;
MObject rayProject::inTime;
MObject rayProject::startTime;
MObject rayProject::endTime;

MTypeId rayProject::id(0x115769);

void* rayProject::creator() { return new rayProject; }

MStatus rayProject::initialize() {
    const auto kinds = {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface, MFnData::kVectorArray};
    AttributeTable t;
    t.generic(inGeometry, "inGeometry", "ig", kinds).notStorable().resets();
    t.typed(inComponents, "inComponents", "ic", MFnData::kComponentList);
    t.typed(inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray);
    t.typed(inNormalPP, "inNormalPP", "inpp", MFnData::kVectorArray);
    t.generic(inCollisionMesh, "inCollisionMesh", "itm", {MFnData::kMesh}).notStorable().resets();
    t.generic(outGeometry, "outGeometry", "og", kinds).output();
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Component List", "Input Object Group"})
        .keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.enumeration(rayDirectionMode, "rayDirectionMode", "rdm",
                  {"per-point normal/velocity vectors", "radial (geometry centroid)",
                   "radial (custom position)", "custom direction"})
        .keyable();
    t.number(rayPositionX, "rayPositionX", "rpx", 0).keyable();
    t.number(rayPositionY, "rayPositionY", "rpy", 0).keyable();
    t.number(rayPositionZ, "rayPositionZ", "rpz", 0).keyable();
    t.tuple(rayPosition, "rayPosition", "rp", {&rayPositionX, &rayPositionY, &rayPositionZ});
    t.real(rayDirectionX, "rayDirectionX", "rdx", 0).keyable();
    t.real(rayDirectionY, "rayDirectionY", "rdy", 0).keyable();
    t.real(rayDirectionZ, "rayDirectionZ", "rdz", 0).keyable();
    t.tuple(rayDirection, "rayDirection", "rd", {&rayDirectionX, &rayDirectionY, &rayDirectionZ});
    t.boolean(testBothDirections, "testBothDirections", "tbd", false).keyable();
    t.boolean(reverseRayDirection, "reverseRayDirection", "rrd", false).keyable();
    t.real(weight, "weight", "w", 1).softMin(0).softMax(1).keyable();
    t.number(minDistance, "minDistance", "mnd", -1).keyable();
    t.number(maxDistance, "maxDistance", "mxd", -1).keyable();
    t.real(maxAngle, "maxAngle", "ma", 80).keyable();
    t.boolean(keepHistory, "keepHistory", "kh", false).keyable();
    t.number(inTime, "inTime", "it", 0).keyable();
    t.number(startTime, "startTime", "st", 0).keyable();
    t.number(endTime, "endTime", "et", 0).keyable();
    return t.finish();
}

namespace {

constexpr const char* kWrongNormals = "inNormalPP array length does not match the inGeometry point count.";
constexpr const char* kPeriodic = "inGeometry is periodic nurbs surface. Rebuild using \"End Conditions\" / "
                                  "\"Multiple Knots\" options.";
constexpr const char* kNoSelection = "Object groups and component lists are not supported for particles.";

RaySettings settingsIn(MDataBlock& block) {
    return {.mode = std::clamp<short>(block.inputValue(Self::rayDirectionMode).asShort(), 0, 3),
            .reverse = block.inputValue(Self::reverseRayDirection).asBool(),
            .bothDirections = block.inputValue(Self::testBothDirections).asBool(),
            .position = block.inputValue(Self::rayPosition).asVector(),
            .direction = block.inputValue(Self::rayDirection).asFloatVector(),
            .weight = block.inputValue(Self::weight).asDouble(),
            .minDistance = block.inputValue(Self::minDistance).asDouble(),
            .maxDistance = block.inputValue(Self::maxDistance).asDouble(),
            .maxAngle = block.inputValue(Self::maxAngle).asDouble() * 0.0174532925};
}

/// Whether this compute goes on from what the output holds.
bool goesOn(MDataBlock& block, MFnData::Type kind) {
    const double time = block.inputValue(Self::inTime).asDouble();
    return block.inputValue(Self::keepHistory).asBool() &&
           block.inputValue(Self::startTime).asDouble() < time &&
           time <= block.inputValue(Self::endTime).asDouble() &&
           block.outputValue(Self::outGeometry).type() == kind;
}

/// What is pulled: a shape that is to become the output, and its points, in world space.
class Shape {
  public:
    MFnData::Type kind = MFnData::kInvalid;
    MPointArray points;
    std::vector<MFloatVector> normals;

    /// `input` feeds the shape. A surface that is periodic has no points.
    Shape(MDataHandle& from, const MPlug& input, bool withNormals, const MString& name);

    bool isParticles() const { return kind == MFnData::kVectorArray; }
    PointSelection selection(MDataBlock& block, const MObject& inputData) const {
        return chosenBy(block, {Self::useComponents, Self::inComponents, Self::groupId}, inputData);
    }
    MIntArray ids(const PointSelection& selection) const {
        const MFn::Type pointKind = kind == MFnData::kNurbsCurve     ? MFn::kCurveCVComponent
                                    : kind == MFnData::kNurbsSurface ? MFn::kSurfaceCVComponent
                                                                     : MFn::kMeshVertComponent;
        return selection.ids(pointKind, points.length(), numCVsInV_);
    }
    /// The shape, with the points as they are now.
    MObject finished();

  private:
    void readParticles(const MVectorArray& positions);
    void readNormals(const MObject& mesh, unsigned stride);

    MObject data_; ///< null for particles
    unsigned numCVsInV_ = 0;
};

void Shape::readParticles(const MVectorArray& positions) {
    points.setLength(positions.length());
    for (unsigned i = 0; i < positions.length(); ++i)
        points[i] = MPoint(positions[i]);
}

void Shape::readNormals(const MObject& mesh, unsigned stride) {
    MFloatVectorArray all;
    MFnMesh(mesh).getVertexNormals(false, all, MSpace::kWorld);
    normals.resize(points.length());
    for (unsigned i = 0; i < points.length() && i * stride < all.length(); ++i)
        normals[i] = all[i * stride];
}

Shape::Shape(MDataHandle& from, const MPlug& input, bool withNormals, const MString& name)
    : kind(from.type()), data_(copyOfGeometry(from, kWorldCoordinates)) {
    switch (kind) {
    case MFnData::kMesh:
        MFnMesh(data_).getPoints(points, MSpace::kWorld);
        if (withNormals) readNormals(data_, 1);
        break;
    case MFnData::kNurbsCurve:
        MFnNurbsCurve(data_).getCVs(points, MSpace::kWorld);
        // Two vertices of the ribbon stand for each CV.
        if (withNormals) readNormals(curveAsMesh(input), 2);
        break;
    case MFnData::kNurbsSurface: {
        const MFnNurbsSurface surface(data_);
        const MObject mesh = surfaceAsMesh(input);
        if (MFnMesh(mesh).numVertices() != surface.numCVsInU() * surface.numCVsInV()) {
            warn(name, kPeriodic);
            break;
        }
        numCVsInV_ = static_cast<unsigned>(surface.numCVsInV());
        surface.getCVs(points, MSpace::kWorld);
        if (withNormals) readNormals(mesh, 1);
        break;
    }
    case MFnData::kVectorArray: readParticles(vectorsIn(from.data())); break;
    default: break;
    }
}

MObject Shape::finished() {
    switch (kind) {
    case MFnData::kMesh: MFnMesh(data_).setPoints(points, MSpace::kWorld); break;
    case MFnData::kNurbsCurve: MFnNurbsCurve(data_).setCVs(points, MSpace::kWorld); break;
    case MFnData::kNurbsSurface:
        if (points.length() > 0) MFnNurbsSurface(data_).setCVs(points, MSpace::kWorld);
        break;
    default: {
        MVectorArray positions(points.length());
        for (unsigned i = 0; i < points.length(); ++i)
            positions[i] = MVector(points[i]);
        return MFnVectorArrayData().create(positions);
    }
    }
    return data_;
}

/// Normals of the faces that were hit, for hits that there are.
std::vector<MVector> normalsAt(const MFnMesh& mesh, std::span<const RayHit> hits) {
    std::vector<MVector> normals(hits.size());
    for (std::size_t i = 0; i < hits.size(); ++i) {
        if (hits[i]) mesh.getPolygonNormal(hits[i].face, normals[i], MSpace::kWorld);
    }
    return normals;
}

void project(MDataBlock& block, Shape& shape, const Chosen& chosen, const RaySettings& settings) {
    MDataHandle handle = block.inputValue(Self::inCollisionMesh);
    const MFnMesh collider(geometryIn(handle, kWorldCoordinates));
    const MDoubleArray weights = doublesIn(block.inputValue(Self::inWeightPP).data());
    const std::span<MPoint> points = elements(shape.points);
    const Rays rays = raysFrom(points, chosen, shape.normals, settings);
    const auto hits =
        firstHits(collider, rays.sources, rays.directions, {.bothDirections = settings.bothDirections});
    const auto hitNormals = settings.testsAngles() ? normalsAt(collider, hits) : std::vector<MVector>();
    pull(points, chosen, rays, hits, hitNormals, elements(weights), settings);
}

} // namespace

MStatus rayProject::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outGeometry) return MS::kSuccess;
    MDataHandle input = block.inputValue(inGeometry), output = block.outputValue(outGeometry);
    if (!block.inputValue(envelope).asBool()) {
        output.set(input.data());
        return MS::kSuccess;
    }
    if (!isConnected(*this, inGeometry) || !isConnected(*this, inCollisionMesh)) return MS::kSuccess;
    const MString name = nodeName(*this, outGeometry);
    const RaySettings settings = settingsIn(block);

    std::vector<MFloatVector> ownNormals;
    if (settings.mode == kAlongNormals && isConnected(*this, inNormalPP)) {
        const MVectorArray given = vectorsIn(block.inputValue(inNormalPP).data());
        for (const MVector& normal : elements(given))
            ownNormals.emplace_back(normal);
    }
    const bool needsNormals = settings.mode == kAlongNormals && ownNormals.empty();
    Shape shape(goesOn(block, input.type()) ? output : input, MPlug(thisMObject(), inGeometry), needsNormals,
                name);
    if (shape.kind == MFnData::kInvalid) return MS::kSuccess;
    if (!ownNormals.empty()) {
        if (ownNormals.size() != shape.points.length()) warn(name, kWrongNormals);
        shape.normals = std::move(ownNormals);
    }
    PointSelection selection;
    if (!shape.isParticles()) {
        selection = shape.selection(block, input.data());
    } else if (block.inputValue(useComponents).asShort() != kAllPoints) {
        warn(name, kNoSelection);
    }
    if (selection.isEverything()) {
        project(block, shape, Chosen(shape.points.length()), settings);
    } else {
        const MIntArray ids = shape.ids(selection);
        project(block, shape, Chosen(std::span<const int>(elements(ids))), settings);
    }
    output.set(shape.finished());
    return MS::kSuccess;
}
