#include "nodes/multiAttributeTransfer/multiAttributeTransfer.h"

#include "nodes/common/choice.h"
#include "nodes/common/geometry_copy.h"
#include "nodes/common/kernel_ramp.h"
#include "nodes/common/steps.h"
#include "nodes/multiAttributeTransfer/weights.h"

#include <maya/MArrayDataBuilder.h>
#include <maya/MArrayDataHandle.h>

namespace {

using namespace vesk::nodes;
using Self = multiAttributeTransfer;

constexpr const char* kPeriodic = "inGeometry is periodic nurbs surface. Rebuild using \"End Conditions\" / "
                                  "\"Multiple Knots\" options.";

enum Mode : short { kPerComponent = 0, kPerInfluence = 1 };

void passThrough(MDataBlock& block) {
    MDataHandle out = block.outputValue(Self::outGeometry);
    out.set(block.inputValue(Self::inGeometry).data());
    out.setClean();
}

/// The weights below one element of the list, in the making.
class ElementWeights {
  public:
    ElementWeights(MArrayDataBuilder& list, unsigned index)
        : weights_(list.addElement(index).child(Self::weights)), builder_(weights_.builder()) {}
    void set(unsigned index, float weight) { builder_.addElement(index).setFloat(weight); }
    void finish() { weights_.set(builder_); }

  private:
    MArrayDataHandle weights_;
    MArrayDataBuilder builder_;
};

/// Element 0 of the list: a weight for each point, and 0 for those left out, unless they get none.
void fillPerComponent(MArrayDataBuilder& list, PointWeights& weights, std::span<const char> inside,
                      bool processesAll) {
    ElementWeights element(list, 0);
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (inside[i] != 0) {
            element.set(static_cast<unsigned>(i), weights.ofPoint(i));
        } else if (processesAll) {
            element.set(static_cast<unsigned>(i), 0);
        }
    }
    element.finish();
}

/// An element of the list for each point that is not left out: its weights by volume.
void fillPerInfluence(MArrayDataBuilder& list, PointWeights& weights, std::span<const char> inside) {
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (inside[i] == 0) continue;
        const auto index = static_cast<unsigned>(i);
        list.removeElement(index); // nothing of an earlier result stays
        ElementWeights element(list, index);
        for (const VolumeWeight& one : weights.ofVolumes(i))
            element.set(static_cast<unsigned>(one.volume), one.weight);
        element.finish();
    }
}

/// The list to fill. Points that are left out keep the weights that they have when all are processed; nothing
/// else stays.
MArrayDataBuilder startList(MDataBlock& block, MArrayDataHandle& present, std::size_t pointCount,
                            bool keepsOthers) {
    if (!keepsOthers) return {&block, Self::outWeightList, static_cast<unsigned>(pointCount)};
    MArrayDataBuilder list = present.builder();
    for (unsigned i = present.elementCount(); i-- > 0;) {
        present.jumpToArrayElement(i);
        if (present.elementIndex() >= pointCount) list.removeElement(present.elementIndex());
    }
    return list;
}

void writeWeights(const MPxNode& node, MDataBlock& block, const WorldPoints& world, const MString& name) {
    const auto isOn = [&](const MObject& attribute) { return block.inputValue(attribute).asBool(); };
    const auto choice = [&](const MObject& attribute) { return block.inputValue(attribute).asShort(); };
    const auto inside = chosenPoints(block, Self::inGeometry,
                                     {Self::useComponents, Self::inComponents, Self::groupId}, world, name);
    const ConnectedVolumes volumes =
        readVolumes(node, block, Self::volumes, name, {.normals = false, .colors = false});
    std::vector<CurveRamp> falloffs;
    for (const MObject& source : volumes.nodes)
        falloffs.push_back(curveRampOf(source, "weightFalloff"));
    const CurveRamp kernel = readCurveRamp(node.thisMObject(), Self::kernel);
    std::vector<vesk::volume::Vec3> points(world.points.length());
    for (unsigned i = 0; i < world.points.length(); ++i)
        points[i] = toVec3(world.points[i]);
    PointWeights weights({volumes.list, volumes.clouds, falloffs, kernel},
                         block.inputValue(Self::maxInfluences).asInt(),
                         static_cast<FreePoints>(choice(Self::weightFreePointsTo)), points, inside);

    const bool processesAll = isOn(Self::processAllComponents);
    const bool isFiltered = choice(Self::useComponents) != kAllPoints;
    const bool perInfluence = choice(Self::mode) == kPerInfluence;
    MArrayDataHandle list = block.outputArrayValue(Self::outWeightList);
    MArrayDataBuilder builder =
        startList(block, list, points.size(), perInfluence && isFiltered && processesAll);
    if (perInfluence) {
        fillPerInfluence(builder, weights, inside);
    } else {
        fillPerComponent(builder, weights, inside, processesAll);
    }
    list.set(builder);
    list.setAllClean();
}

} // namespace

MTypeId multiAttributeTransfer::id(0x115751);

void* multiAttributeTransfer::creator() { return new multiAttributeTransfer; }

MStatus multiAttributeTransfer::initialize() {
    AttributeTable t;
    const auto geometry = {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface,
                           MFnData::kVectorArray};
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.generic(inGeometry, "inGeometry", "ig", geometry).notStorable();
    t.generic(outGeometry, "outGeometry", "og", geometry).output();
    t.real(weights, "weights", "w", 0).keyable().builder().notStorable();
    t.compound(outWeightList, "outWeightList", "owl", {&weights}).builder().output();
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Components List", "Input Object Group"})
        .keyable();
    t.generic(inComponents, "inComponents", "ic", {MFnData::kComponentList, MFnData::kIntArray})
        .notStorable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.boolean(processAllComponents, "processAllComponents", "pac", true).keyable();
    t.integer(maxInfluences, "maxInfluences", "mi", 5).keyable().min(1).softMax(10);
    t.enumeration(mode, "mode", "m", {"Weights Per Component", "Weight Per Influence Per Component"})
        .keyable();
    t.curveRamp(kernel, "kernel", "k");
    t.enumeration(weightFreePointsTo, "weightFreePointsTo", "wfpt",
                  {"None", "First Influence", "Closest Influence"})
        .keyable();
    declareVolumes(t, volumes, {.cloudsAreStored = false, .hasBoundRadius = true});
    return t.finish();
}

void multiAttributeTransfer::postConstructor() { startKernel(thisMObject(), kernel); }

MStatus multiAttributeTransfer::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kHasNoEffect) {
        passThrough(block);
        return MS::kSuccess;
    }
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outGeometry && plug != weights && plug != outWeightList) return MS::kSuccess;
    if (!block.inputValue(envelope).asBool()) {
        passThrough(block);
        return MS::kSuccess;
    }
    const MString name = nodeName(*this, inGeometry);
    MDataHandle geometry = block.inputValue(inGeometry);
    const WorldPoints world = worldPoints(geometry, MPlug(thisMObject(), inGeometry), false);
    if (world.isPeriodicSurface) warn(name, kPeriodic);
    writeWeights(*this, block, world, name);
    MDataHandle out = block.outputValue(outGeometry);
    out.set(world.kind == MFnData::kVectorArray ? geometry.data() : copyOfGeometry(world.geometry));
    out.setClean();
    return MS::kSuccess;
}
