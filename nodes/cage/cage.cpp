#include "nodes/cage/cage.h"

#include "nodes/cage/outsideFaces.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"

#include <maya/MFnComponentListData.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MIntArray.h>

#include <algorithm>

using namespace vesk::nodes;

MObject cage::inMesh;
MObject cage::inMeshCage;
MObject cage::outComponents;
MObject cage::envelope;
MObject cage::tolerance;

MTypeId cage::id(0x11576c);

void* cage::creator() { return new cage; }

MStatus cage::initialize() {
    AttributeTable t;
    t.generic(inMesh, "inMesh", "im", {MFnData::kMesh}).notStorable().resets();
    t.generic(inMeshCage, "inMeshCage", "imc", {MFnData::kMesh}).notStorable().resets();
    t.generic(outComponents, "outComponents", "oc", {MFnData::kComponentList}).output();
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.real(tolerance, "tolerance", "tl", 90).min(0).max(90).keyable();
    return t.finish();
}

MStatus cage::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outComponents) return MS::kSuccess;
    MIntArray faces;
    if (block.inputValue(envelope).asBool() && isConnected(*this, inMesh) && isConnected(*this, inMeshCage)) {
        const MObject mesh = block.inputValue(inMesh).asMeshTransformed();
        MObject around = block.inputValue(inMeshCage).asMeshTransformed();
        const double degrees = std::clamp(block.inputValue(tolerance).asDouble(), 0.0, 90.0);
        faces = outsideFaces(mesh, around, degrees * 0.0174532925);
    }
    MFnSingleIndexedComponent component;
    const MObject outside = component.create(MFn::kMeshPolygonComponent);
    component.addElements(faces);
    MFnComponentListData list;
    MObject data = list.create();
    list.add(outside);
    block.outputValue(outComponents).set(data);
    return MS::kSuccess;
}
