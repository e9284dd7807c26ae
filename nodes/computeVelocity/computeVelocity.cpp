#include "nodes/computeVelocity/computeVelocity.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/points.h"
#include "nodes/common/steps.h"
#include "nodes/computeVelocity/velocities.h"

#include <maya/MAnimControl.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MFnVectorArrayData.h>

using namespace vesk::nodes;
using Self = computeVelocity;

MObject computeVelocity::envelope;
MObject computeVelocity::inGeometry;
MObject computeVelocity::inComponents;
MObject computeVelocity::outVelocityPP;
MObject computeVelocity::useComponents;
MObject computeVelocity::groupId;
MObject computeVelocity::coordinateSystem;
MObject computeVelocity::scale;

MTypeId computeVelocity::id(0x115758);

void* computeVelocity::creator() { return new computeVelocity; }

MStatus computeVelocity::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.generic(inGeometry, "inGeometry", "ig",
              {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface, MFnData::kVectorArray})
        .notStorable()
        .resets();
    t.generic(inComponents, "inComponents", "ic", {MFnData::kComponentList, MFnData::kIntArray})
        .notStorable()
        .resets();
    t.typed(outVelocityPP, "outVelocityPP", "ovpp", MFnData::kVectorArray).output();
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Component List", "Input Object Group"})
        .keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.number(scale, "scale", "s", 1).keyable();
    return t.finish();
}

namespace {

/// By the point's place; empty when every point is in.
std::vector<char> chosenPoints(MDataBlock& block, const MObject& geometry, unsigned count,
                               const MString& name) {
    const short mode = block.inputValue(Self::useComponents).asShort();
    if (mode == kAllPoints) return {};
    if (geometry.apiType() == MFn::kVectorArrayData) {
        if (mode == kInputComponentList)
            return maskOf(particleIds(block.inputValue(Self::inComponents).data(), count), count);
        warn(name, kNoParticleGroups);
        return std::vector<char>(count, 0);
    }
    const PointSelection selection =
        chosenBy(block, {Self::useComponents, Self::inComponents, Self::groupId}, geometry);
    switch (geometry.apiType()) {
    case MFn::kNurbsCurveData: return selection.mask(MFn::kCurveCVComponent, count);
    case MFn::kNurbsSurfaceData:
        return selection.mask(MFn::kSurfaceCVComponent, count,
                              static_cast<unsigned>(MFnNurbsSurface(geometry).numCVsInV()));
    default: return selection.mask(MFn::kMeshVertComponent, count);
    }
}

} // namespace

MStatus computeVelocity::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kHasNoEffect || plug != outVelocityPP) return MS::kUnknownParameter;
    ArrayOutput<MFnVectorArrayData, MVectorArray> out;
    if (block.inputValue(envelope).asBool()) {
        const short space = block.inputValue(coordinateSystem).asShort();
        const MObject geometry = block.inputValue(inGeometry).data();
        MVectorArray now = pointsIn(geometry, space);
        const double frame = MAnimControl::currentTime().value();
        MVectorArray before = pointsIn(dataAtFrame(MPlug(thisMObject(), inGeometry), frame - 1), space);
        out.values.setLength(now.length());
        if (before.length() == now.length()) {
            const double framesPerSecond = MTime(1, MTime::kSeconds).as(MTime::uiUnit());
            velocities(elements(now), elements(before), block.inputValue(scale).asDouble() * framesPerSecond,
                       chosenPoints(block, geometry, now.length(), nodeName(*this, inGeometry)),
                       elements(out.values));
        } else {
            warn(nodeName(*this, inGeometry),
                 "The point count is not that of the frame before. Velocities are zero.");
        }
    }
    out.handOver(block, outVelocityPP);
    return MS::kSuccess;
}
