#include "nodes/pointCloudToMultiCurve/pointCloudToMultiCurve.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/pointCloudToCurve/curveThrough.h"
#include "nodes/pointCloudToMultiCurve/groups.h"

#include <maya/MArrayDataBuilder.h>
#include <maya/MArrayDataHandle.h>

using namespace vesk::nodes;

MObject pointCloudToMultiCurve::inPositionPP;
MObject pointCloudToMultiCurve::inGroupPP;
MObject pointCloudToMultiCurve::inIdPP;
MObject pointCloudToMultiCurve::outputCurves;
MObject pointCloudToMultiCurve::degree;
MObject pointCloudToMultiCurve::close;

MTypeId pointCloudToMultiCurve::id(0x115774);

void* pointCloudToMultiCurve::creator() { return new pointCloudToMultiCurve; }

MStatus pointCloudToMultiCurve::initialize() {
    const auto numbers = {MFnData::kIntArray, MFnData::kDoubleArray};
    AttributeTable t;
    t.generic(inPositionPP, "inPositionPP", "ippp", {MFnData::kVectorArray, MFnData::kPointArray})
        .notStorable()
        .resets();
    t.generic(inGroupPP, "inGroupPP", "igpp", numbers).notStorable().resets();
    t.generic(inIdPP, "inIdPP", "iipp", numbers).notStorable().resets();
    t.typed(outputCurves, "outputCurves", "oc", MFnData::kNurbsCurve).builder().output();
    t.integer(degree, "degree", "d", 3).min(kLowestDegree).max(kHighestDegree).keyable();
    t.boolean(close, "close", "cl", false).keyable();
    return t.finish();
}

MStatus pointCloudToMultiCurve::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (plug != outputCurves) return MS::kUnknownParameter;
    const MString name = nodeName(*this, inPositionPP);
    MVectorArray positions = vectorsIn(block.inputValue(inPositionPP).data());
    MDoubleArray groups = doublesIn(block.inputValue(inGroupPP).data());
    MDoubleArray ids = doublesIn(block.inputValue(inIdPP).data());
    const std::size_t count = positions.length();
    const bool hasGroups = fitsPoints(name, "inGroupPP", groups.length(), count);
    const bool hasIds = fitsPoints(name, "inIdPP", ids.length(), count);
    const auto grouped = groupedPoints(count, elements(groups).first(hasGroups ? count : 0),
                                       elements(ids).first(hasIds ? count : 0));
    const int wantedDegree = block.inputValue(degree).asInt();
    const bool isClosed = block.inputValue(close).asBool();
    MArrayDataBuilder curves(&block, outputCurves, static_cast<unsigned>(grouped.size()));
    std::vector<MVector> points;
    for (const auto& [group, places] : grouped) {
        if (places.size() < 2) continue;
        points.clear();
        for (const unsigned place : places)
            points.push_back(positions[place]);
        curves.addElement(static_cast<unsigned>(group)).set(curveThrough(points, wantedDegree, isClosed));
    }
    MArrayDataHandle out = block.outputArrayValue(outputCurves);
    out.set(curves);
    out.setAllClean();
    return MS::kSuccess;
}
