#include "nodes/objGrpToCompList/objGrpToCompList.h"

#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"

#include <maya/MFnComponentListData.h>

using namespace vesk::nodes;

MObject objGrpToCompList::envelope;
MObject objGrpToCompList::groupId;
MObject objGrpToCompList::inGeometry;
MObject objGrpToCompList::outComponents;

MTypeId objGrpToCompList::id(0x115744);

void* objGrpToCompList::creator() { return new objGrpToCompList; }

MStatus objGrpToCompList::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.generic(inGeometry, "inGeometry", "ig", {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface})
        .notStorable();
    t.typed(outComponents, "outComponents", "oc", MFnData::kComponentList).output();
    return t.finish();
}

MStatus objGrpToCompList::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeStateAsInput(block) == kBlocking || plug != outComponents) return MS::kUnknownParameter;
    MFnComponentListData list;
    const MObject data = list.create();
    const int group = block.inputValue(groupId).asInt();
    if (block.inputValue(envelope).asBool() && group >= 0) {
        // A group that isn't there adds an empty object, which leaves the list without elements.
        list.add(objectGroupIn(block.inputValue(inGeometry).data(), group));
    }
    MDataHandle out = block.outputValue(outComponents);
    out.set(data);
    out.setClean();
    return MS::kSuccess;
}
