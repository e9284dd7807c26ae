#include "nodes/pointCloudToCurve/pointCloudToCurve.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/pointCloudToCurve/curveThrough.h"

using namespace vesk::nodes;

MObject pointCloudToCurve::inArray;
MObject pointCloudToCurve::outCurve;
MObject pointCloudToCurve::degree;
MObject pointCloudToCurve::close;

MTypeId pointCloudToCurve::id(0x11575c);

void* pointCloudToCurve::creator() { return new pointCloudToCurve; }

MStatus pointCloudToCurve::initialize() {
    AttributeTable t;
    t.generic(inArray, "inArray", "ia", {MFnData::kVectorArray, MFnData::kPointArray}).notStorable().resets();
    t.typed(outCurve, "outCurve", "oc", MFnData::kNurbsCurve).output();
    t.integer(degree, "degree", "d", 3).min(kLowestDegree).max(kHighestDegree).keyable();
    t.boolean(close, "close", "cl", false).keyable();
    return t.finish();
}

MStatus pointCloudToCurve::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (plug != outCurve) return MS::kUnknownParameter;
    MVectorArray points = vectorsIn(block.inputValue(inArray).data());
    MDataHandle out = block.outputValue(outCurve);
    out.set(
        curveThrough(elements(points), block.inputValue(degree).asInt(), block.inputValue(close).asBool()));
    out.setClean();
    return MS::kSuccess;
}
