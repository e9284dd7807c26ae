#include "nodes/arrayToPointColor/arrayToPointColor.h"

#include "nodes/arrayToPointColor/pointColors.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"

#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>

namespace {

using namespace vesk::nodes;
using Self = arrayToPointColor;

constexpr const char* kLengthMismatch = "inRgbaPP array length does not match the point count.";

/// Colours the selected points of a mesh; the others keep theirs.
void paint(const MPxNode& node, MDataBlock& block, MFnMesh& mesh, const MObject& geometry) {
    const auto count = static_cast<unsigned>(mesh.numVertices());
    const InputArray input(block, Self::inRgbaPP);
    if (!isArray(input.values())) return;
    if (!fitsPoints(input.values(), count)) return warn(nodeName(node, Self::inRgbaPP), kLengthMismatch);
    const ColorSettings settings{.clamp = block.inputValue(Self::clamp).asBool(),
                                 .clampMin = block.inputValue(Self::clampMin).asDouble(),
                                 .clampMax = block.inputValue(Self::clampMax).asDouble(),
                                 .solidAlpha = block.inputValue(Self::solidAlpha).asBool()};
    const PointSelection selection =
        chosenBy(block, {Self::useComponents, Self::inComponents, Self::groupId}, geometry);
    const PointColors painted =
        colorsOf(input.values(), selection.mask(MFn::kMeshVertComponent, count), settings);
    // Nothing selected: no colour set either.
    if (painted.points.length() > 0) mesh.setVertexColors(painted.colors, painted.points);
}

} // namespace

MObject arrayToPointColor::envelope;
MObject arrayToPointColor::inGeometry;
MObject arrayToPointColor::inRgbaPP;
MObject arrayToPointColor::outGeometry;
MObject arrayToPointColor::inComponents;
MObject arrayToPointColor::useComponents;
MObject arrayToPointColor::groupId;
MObject arrayToPointColor::clamp;
MObject arrayToPointColor::clampMin;
MObject arrayToPointColor::clampMax;
MObject arrayToPointColor::solidAlpha;

MTypeId arrayToPointColor::id(0x11575b);

void* arrayToPointColor::creator() { return new arrayToPointColor; }

MStatus arrayToPointColor::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.generic(inGeometry, "inGeometry", "ig", {MFnData::kMesh}).notStorable();
    t.generic(inRgbaPP, "inRgbaPP", "irgbapp",
              {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray})
        .notStorable();
    t.generic(outGeometry, "outGeometry", "og", {MFnData::kMesh}).output();
    t.typed(inComponents, "inComponents", "ic", MFnData::kComponentList).notStorable();
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Component List", "Input Object Group"})
        .keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.boolean(clamp, "clamp", "c", false).keyable();
    t.number(clampMin, "clampMin", "cmn", 0).keyable();
    t.number(clampMax, "clampMax", "cmx", 1).keyable();
    t.boolean(solidAlpha, "solidAlpha", "sa", false).keyable();
    t.followState();
    return t.finish();
}

MStatus arrayToPointColor::compute(const MPlug& plug, MDataBlock& block) {
    const short present = nodeState(block);
    if (present == kHasNoEffect) {
        block.outputValue(outGeometry).set(block.inputValue(inGeometry).data());
        return MS::kSuccess;
    }
    if (present == kBlocking || plug != outGeometry) return MS::kUnknownParameter;
    if (!isConnected(*this, inGeometry)) return MS::kSuccess;
    const MObject geometry = block.inputValue(inGeometry).data();
    MDataHandle output = block.outputValue(outGeometry);
    if (!block.inputValue(envelope).asBool() || geometry.isNull()) {
        output.set(geometry);
        return MS::kSuccess;
    }
    MObject copy = MFnMeshData().create();
    MFnMesh().copy(geometry, copy);
    MFnMesh mesh(copy);
    paint(*this, block, mesh, geometry);
    output.set(copy);
    output.setClean();
    return MS::kSuccess;
}
