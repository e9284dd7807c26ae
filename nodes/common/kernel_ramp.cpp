#include "nodes/common/kernel_ramp.h"

#include <maya/MFloatArray.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MIntArray.h>
#include <maya/MRampAttribute.h>
#include <maya/MString.h>

namespace vesk::nodes {

void startKernel(const MObject& node, const MObject& kernel) {
    MRampAttribute ramp(node, kernel);
    ramp.setValueAtIndex(1, 0);
    ramp.setInterpolationAtIndex(MRampAttribute::kSmooth, 0);
    const float position = 1, value = 0;
    const int interpolation = MRampAttribute::kLinear;
    ramp.addEntries(MFloatArray(&position, 1), MFloatArray(&value, 1), MIntArray(&interpolation, 1));
}

CurveRamp curveRampOf(const MObject& node, const char* name) {
    return readCurveRamp(node, MFnDependencyNode(node).attribute(name));
}

ColorRamp colorRampOf(const MObject& node, const char* name) {
    return readColorRamp(node, MFnDependencyNode(node).attribute(name));
}

} // namespace vesk::nodes
