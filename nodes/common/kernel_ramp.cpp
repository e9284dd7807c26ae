#include "nodes/common/kernel_ramp.h"

#include <maya/MFloatArray.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MIntArray.h>
#include <maya/MRampAttribute.h>
#include <maya/MString.h>

namespace vesk::nodes {

namespace {

void addEnd(MRampAttribute& ramp, float value) {
    const float position = 1;
    const int interpolation = MRampAttribute::kLinear;
    ramp.addEntries(MFloatArray(&position, 1), MFloatArray(&value, 1), MIntArray(&interpolation, 1));
}

} // namespace

void startKernel(const MObject& node, const MObject& kernel) {
    MRampAttribute ramp(node, kernel);
    ramp.setValueAtIndex(1, 0);
    ramp.setInterpolationAtIndex(MRampAttribute::kSmooth, 0);
    addEnd(ramp, 0);
}

void startIdentity(const MObject& node, const MObject& ramp) {
    MRampAttribute started(node, ramp);
    started.setValueAtIndex(0, 0);
    addEnd(started, 1);
}

CurveRamp curveRampOf(const MObject& node, const char* name) {
    return readCurveRamp(node, MFnDependencyNode(node).attribute(name));
}

ColorRamp colorRampOf(const MObject& node, const char* name) {
    return readColorRamp(node, MFnDependencyNode(node).attribute(name));
}

} // namespace vesk::nodes
