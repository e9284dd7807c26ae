#include "nodes/compListToObjGrp/compListToObjGrp.h"

#include "nodes/common/attributes.h"
#include "nodes/common/geometry_copy.h"
#include "nodes/common/steps.h"

#include <maya/MFnComponentListData.h>
#include <maya/MFnGeometryData.h>

using namespace vesk::nodes;

namespace {

/// The list's first entry becomes what the group holds, whatever it held before.
void writeGroup(MObject& geometry, unsigned groupId, const MObject& list) {
    MStatus status;
    const MFnComponentListData components(list, &status);
    if (!status || components.length() == 0) return;
    MFnGeometryData data(geometry);
    data.removeObjectGroup(groupId);
    data.addObjectGroup(groupId);
    data.addObjectGroupComponent(groupId, components[0]);
}

} // namespace

MObject compListToObjGrp::envelope;
MObject compListToObjGrp::groupId;
MObject compListToObjGrp::inGeometry;
MObject compListToObjGrp::outGeometry;
MObject compListToObjGrp::inComponents;

MTypeId compListToObjGrp::id(0x115745);

void* compListToObjGrp::creator() { return new compListToObjGrp; }

MStatus compListToObjGrp::initialize() {
    const auto geometry = {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface};
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.generic(inGeometry, "inGeometry", "ig", geometry).notStorable();
    t.generic(outGeometry, "outGeometry", "og", geometry).output();
    t.typed(inComponents, "inComponents", "ic", MFnData::kComponentList).notStorable();
    return t.finish();
}

MStatus compListToObjGrp::compute(const MPlug& plug, MDataBlock& block) {
    const short mode = nodeState(block);
    if (mode == kHasNoEffect) {
        MDataHandle out = block.outputValue(outGeometry);
        out.set(block.inputValue(inGeometry).data());
        out.setClean();
        return MS::kSuccess;
    }
    if (mode == kBlocking || plug != outGeometry) return MS::kUnknownParameter;
    MDataHandle input = block.inputValue(inGeometry);
    MObject geometry = copyOfGeometry(input, kWorldCoordinates);
    const int group = block.inputValue(groupId).asInt();
    if (!geometry.isNull() && block.inputValue(envelope).asBool() && group >= 0) {
        writeGroup(geometry, static_cast<unsigned>(group), block.inputValue(inComponents).data());
    }
    MDataHandle out = block.outputValue(outGeometry);
    out.set(geometry);
    out.setClean();
    return MS::kSuccess;
}
