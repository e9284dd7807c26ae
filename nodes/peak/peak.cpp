#include "nodes/peak/peak.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/deformer_inputs.h"
#include "nodes/common/steps.h"
#include "nodes/peak/displacement.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MFnParticleSystem.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MItGeometry.h>
#include <maya/MItMeshVertex.h>
#include <maya/MVectorArray.h>

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

using namespace vesk::nodes;
using Self = peak;

constexpr const char* kPeriodic = "The geometry on the input is a periodic nurbs surface. Rebuild using "
                                  "\"End Conditions\" / \"Multiple Knots\" options.";
constexpr const char* kWeightLength =
    "The inWeightPP array length does not match the number of points. The result will be unpredictable.";
constexpr const char* kNormalLength =
    "The inNormalPP array length does not match the number of points. The result will be unpredictable.";
constexpr const char* kVelocityLength =
    "The inVelocityPP array length does not match the number of points. The result will be unpredictable.";
constexpr const char* kNoParticles =
    "Cannot find particle shape node on the input. Supply velocity data to the inVelocityPP attribute.";

/// What the steps of one compute have in common.
struct Evaluation {
    const MPxNode& node;
    MDataBlock& block;
    MDataHandle output; ///< holds a copy of the input
    unsigned index;     ///< of the geometry in the deformer
    int groupId;
    double distance;
    double envelope;
    MString name;

    bool isFirst() const { return index == 0; }
    /// What feeds this geometry.
    MPlug source() const {
        MPlug plug(node.thisMObject(), MPxDeformerNode::inputGeom);
        plug.selectAncestorLogicalIndex(index, MPxDeformerNode::input);
        return plug;
    }
};

// --- what scales the motion

/// The array of weights, cut or filled up with ones where its length is another. The view is read in place.
class ArrayWeights {
  public:
    ArrayWeights(const Evaluation& e, unsigned count)
        : view_(e.block.inputValue(Self::inWeightPP).data()), weights_(view_.values()) {
        if (weights_.empty() || weights_.size() == count) return;
        warn(e.name, kWeightLength);
        fitted_.assign(weights_.begin(),
                       weights_.begin() + std::min<std::ptrdiff_t>(count, std::ssize(weights_)));
        fitted_.resize(count, 1.0);
        weights_ = fitted_;
    }
    std::span<const double> values() const { return weights_; }

  private:
    ArrayView<MFnDoubleArrayData> view_;
    std::vector<double> fitted_;
    std::span<const double> weights_;
};

/// Marks the points of the deformer's set; empty when it holds all.
std::vector<char> membersOf(const Evaluation& e, const MObject& geometry, MFn::Type pointKind, unsigned count,
                            unsigned numCVsInV = 0) {
    auto members = PointSelection::ofObjectGroup(geometry, e.groupId).mask(pointKind, count, numCVsInV);
    if (std::memchr(members.data(), 0, members.size()) == nullptr) members.clear();
    return members;
}

// --- points with normals

/// The directions that an array gives, and how the points go along theirs.
class Motion {
  public:
    Motion(const Evaluation& e, unsigned count)
        : isFirst_(e.isFirst()), painted_(paintedWeights(e.block, e.index, count)),
          normals_(isConnected(e.node, Self::inNormalPP) ? e.block.inputValue(Self::inNormalPP).data()
                                                         : MObject()) {
        if (isFirst_) weights_.emplace(e, count);
        if (isConnected(e.node, Self::inNormalPP) && normals_.values().size() != count)
            warn(e.name, kNormalLength);
        by_ = {e.distance, e.envelope, painted_, weights_ ? weights_->values() : std::span<const double>()};
    }
    const Displacement& by() const { return by_; }
    /// Of the first points, as far as the array goes.
    std::span<const MVector> given(unsigned count) const {
        const auto all = normals_.values();
        return isFirst_ ? all.first(std::min<std::size_t>(all.size(), count)) : std::span<const MVector>();
    }

  private:
    bool isFirst_;
    std::vector<float> painted_;
    ArrayView<MFnVectorArrayData> normals_;
    std::optional<ArrayWeights> weights_;
    Displacement by_;
};

void moveMesh(Evaluation& e) {
    MObject geometry = e.output.data();
    MFnMesh mesh(geometry);
    const auto count = static_cast<unsigned>(mesh.numVertices());
    if (count == 0) return;
    const std::vector<char> members = membersOf(e, geometry, MFn::kMeshVertComponent, count);
    const Motion motion(e, count);
    const auto given = motion.given(count);
    MFloatVectorArray normals;
    if (given.size() < count) mesh.getVertexNormals(false, normals, MSpace::kObject);
    MFloatPointArray moved;
    moved.setLength(count);
    displace(std::span(mesh.getRawPoints(nullptr), 3 * std::size_t{count}), {given, elements(normals)},
             motion.by(), members, std::span(&moved[0].x, 4 * std::size_t{count}));
    mesh.setPoints(moved, MSpace::kObject);
}

/// The direction away from a surface at a vertex without a normal, from the tangents of its faces.
MVector rebuiltNormal(const MObject& object, const MFnMesh& mesh, int id) {
    MItMeshVertex vertex(object);
    int previous = 0;
    vertex.setIndex(id, previous);
    MIntArray faces;
    vertex.getConnectedFaces(faces);
    MVector sum;
    for (unsigned k = 0; k < faces.length(); ++k) {
        MVector tangent, binormal;
        mesh.getFaceVertexTangent(faces[k], id, tangent, MSpace::kObject);
        mesh.getFaceVertexBinormal(faces[k], id, binormal, MSpace::kObject);
        sum += -(tangent ^ binormal);
    }
    sum.normalize();
    return sum;
}

/// Moves CVs along the normals of a mesh that stands in for their curve or surface.
void moveCVs(Evaluation& e, bool isSurface) {
    const MObject stand = isSurface ? surfaceAsMesh(e.source(), false)
                                    : curveAsMesh(e.source(), {.rebuild = true, .alongProfileNormal = true});
    if (stand.isNull()) return;
    MObject geometry = e.output.data();
    const MFnMesh mesh(stand);
    unsigned numCVsInV = 0;
    if (isSurface) {
        const MFnNurbsSurface surface(geometry);
        numCVsInV = static_cast<unsigned>(surface.numCVsInV());
        if (mesh.numVertices() != surface.numCVsInV() * surface.numCVsInU()) return warn(e.name, kPeriodic);
    }
    MItGeometry points(e.output, false);
    const auto count = static_cast<unsigned>(points.count());
    const MFn::Type kind = isSurface ? MFn::kSurfaceCVComponent : MFn::kCurveCVComponent;
    const std::vector<char> members = membersOf(e, geometry, kind, count, numCVsInV);
    const Motion motion(e, count);
    const auto given = motion.given(count);
    MFloatVectorArray normals;
    mesh.getVertexNormals(false, normals, MSpace::kObject);
    for (; !points.isDone(); points.next()) {
        const auto i = static_cast<unsigned>(points.index());
        if (!members.empty() && !members[i]) continue;
        const unsigned vertex = isSurface ? i : 2 * i; // a ribbon has two a CV
        MVector direction;
        if (i < given.size()) {
            direction = given[i];
        } else if (vertex < normals.length()) {
            direction = MVector(normals[vertex]);
        }
        if (isSurface) {
            if (direction == MVector::zero) direction = rebuiltNormal(stand, mesh, static_cast<int>(i));
            direction = -direction; // the tessellation's normals run against the surface's
        }
        points.setPosition(points.position(MSpace::kObject) + motion.by()(i, direction), MSpace::kObject);
    }
}

// --- particles

/// Vectors as they are. Of any other array vector k is made of entries k, k + 1 and k + 2, for a third as
/// many vectors as there are entries.
MVectorArray suppliedVelocities(MObject data) {
    MVectorArray velocities;
    if (data.apiType() == MFn::kVectorArrayData) {
        MFnVectorArrayData(data).copyTo(velocities);
        return velocities;
    }
    const ArrayView<MFnDoubleArrayData> numbers(data);
    const auto a = numbers.values();
    velocities.setLength(static_cast<unsigned>(a.size() / 3));
    for (unsigned k = 0; k < velocities.length(); ++k)
        velocities[k] = MVector(a[k], a[k + 1], a[k + 2]);
    return velocities;
}

/// Those of the particle shape that stands behind the deformer. False, with a warning, when there is none.
bool velocitiesUpstream(const Evaluation& e, MVectorArray& velocities) {
    MObject self = e.node.thisMObject();
    MItDependencyGraph upstream(self, MFn::kParticle, MItDependencyGraph::kUpstream);
    if (upstream.isDone()) {
        warn(e.name, kNoParticles);
        return false;
    }
    MObject shape = upstream.currentItem();
    MFnParticleSystem(shape).velocity(velocities);
    return true;
}

void moveParticles(Evaluation& e) {
    MObject data = e.output.data();
    MFnVectorArrayData particles(data);
    const unsigned count = particles.length();
    MVectorArray directions;
    if (isConnected(e.node, Self::inVelocityPP)) {
        directions = suppliedVelocities(e.block.inputValue(Self::inVelocityPP).data());
    } else if (!velocitiesUpstream(e, directions)) {
        return;
    }
    if (directions.length() != 0 && directions.length() != count) warn(e.name, kVelocityLength);
    directions.setLength(count);
    const bool areChosen = isConnected(e.node, Self::inComponents);
    const MIntArray chosen =
        areChosen ? particleIds(e.block.inputValue(Self::inComponents).data(), count) : MIntArray();
    const std::vector<float> painted = paintedWeights(e.block, e.index, count);
    const ArrayWeights weights(e, count);
    const Displacement by{e.distance, e.envelope, painted, weights.values()};
    MVectorArray positions = particles.array();
    const unsigned visits = areChosen ? chosen.length() : count;
    for (unsigned k = 0; k < visits; ++k) {
        const auto i = areChosen ? static_cast<unsigned>(chosen[k]) : k;
        if (i >= count) continue;
        directions[i].normalize();
        positions[i] += by(i, directions[i]);
    }
}

} // namespace

MObject peak::distance;
MObject peak::inComponents;
MObject peak::inWeightPP;
MObject peak::inNormalPP;
MObject peak::inVelocityPP;
MObject peak::forceEvaluateAllInputs;

MTypeId peak::id(0x115746);

void* peak::creator() { return new peak; }

MStatus peak::initialize() {
    AttributeTable t;
    t.number(distance, "distance", "d", 0).keyable();
    t.generic(inComponents, "inComponents", "ic", {MFnData::kComponentList, MFnData::kIntArray})
        .notStorable();
    t.typed(inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray).notStorable();
    t.generic(inNormalPP, "inNormalPP", "inpp", {MFnData::kVectorArray}).notStorable();
    t.generic(inVelocityPP, "inVelocityPP", "ivpp", {MFnData::kVectorArray, MFnData::kDoubleArray})
        .notStorable();
    t.boolean(forceEvaluateAllInputs, "forceEvaluateAllInputs", "feai", false);
    return t.finish({&outputGeom});
}

MStatus peak::compute(const MPlug& plug, MDataBlock& block) {
    if (plug != outputGeom) return MS::kSuccess;
    const unsigned index = plug.logicalIndex();
    MArrayDataHandle inputs = block.inputArrayValue(input);
    if (!inputs.jumpToElement(index)) return MS::kSuccess;
    MDataHandle element = inputs.inputValue();
    MDataHandle output = block.outputValue(plug);
    output.copy(element.child(inputGeom));

    const MFnData::Type type = output.type();
    if (nodeState(block) == kHasNoEffect) return MS::kSuccess;
    const bool isServed =
        index == 0 || (type != MFnData::kVectorArray && block.inputValue(forceEvaluateAllInputs).asBool());
    const float envelopeValue = isServed ? block.inputValue(envelope).asFloat() : 0;
    if (envelopeValue == 0) return MS::kSuccess;
    Evaluation e{*this,
                 block,
                 output,
                 index,
                 element.child(groupId).asInt(),
                 block.inputValue(distance).asDouble(),
                 envelopeValue,
                 nodeName(*this, input)};
    switch (type) {
    case MFnData::kMesh: moveMesh(e); break;
    case MFnData::kNurbsCurve: moveCVs(e, false); break;
    case MFnData::kNurbsSurface: moveCVs(e, true); break;
    case MFnData::kVectorArray: moveParticles(e); break;
    default: break;
    }
    return MS::kSuccess;
}
