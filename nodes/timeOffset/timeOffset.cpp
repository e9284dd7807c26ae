#include "nodes/timeOffset/timeOffset.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/points.h"
#include "nodes/common/steps.h"
#include "nodes/timeOffset/offsetPoints.h"

#include <maya/MAnimControl.h>

using namespace vesk::nodes;

MObject timeOffset::envelope;
MObject timeOffset::inGeometry;
MObject timeOffset::inWeightPP;
MObject timeOffset::outGeometry;
MObject timeOffset::offset;
MObject timeOffset::coordinateSystem;

MTypeId timeOffset::id(0x115755);

void* timeOffset::creator() { return new timeOffset; }

MStatus timeOffset::initialize() {
    const auto geometry = {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface,
                           MFnData::kVectorArray};
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.generic(inGeometry, "inGeometry", "ig", geometry).notStorable().resets();
    t.typed(inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray);
    t.generic(outGeometry, "outGeometry", "og", geometry).output();
    t.number(offset, "offset", "o", 0).keyable();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.followState();
    return t.finish();
}

MStatus timeOffset::compute(const MPlug& plug, MDataBlock& block) {
    const short behaviour = nodeState(block);
    if (behaviour == kBlocking || plug != outGeometry) return MS::kUnknownParameter;
    MDataHandle in = block.inputValue(inGeometry);
    const MObject geometry = in.data();
    MDataHandle out = block.outputValue(outGeometry);
    if (behaviour == kHasNoEffect || geometry.isNull() || !block.inputValue(envelope).asBool()) {
        out.set(geometry);
        out.setClean();
        return MS::kSuccess;
    }
    const MString name = nodeName(*this, inGeometry);
    const short space = block.inputValue(coordinateSystem).asShort();
    const double now = MAnimControl::currentTime().value();
    const MVectorArray present = pointsIn(geometry, space);
    MVectorArray points(present); // a copy: what the input holds is for reading
    MDoubleArray weights = doublesIn(block.inputValue(inWeightPP).data());
    const bool isWeighted = fitsPoints(name, "inWeightPP", weights.length(), points.length());
    const auto frames =
        offsetFrames(now, block.inputValue(offset).asDouble(),
                     elements(weights).first(isWeighted ? points.length() : 0), points.length());
    const MPlug input(thisMObject(), inGeometry);
    const bool allThere = offsetPoints(frames, now, elements(points), [&](double frame) {
        return pointsIn(dataAtFrame(input, frame), space);
    });
    if (!allThere) warn(name, "The point count changes over time. Points stay where it is another one.");
    setWithPoints(out, in, points, space);
    out.setClean();
    return MS::kSuccess;
}
