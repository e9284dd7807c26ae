#include "nodes/common/steps.h"

#include <maya/MFnComponentListData.h>
#include <maya/MFnGeometryData.h>
#include <maya/MGlobal.h>
#include <maya/MPlug.h>
#include <maya/MPxNode.h>
#include <maya/MStringArray.h>

namespace vesk::nodes {

short nodeState(MDataBlock& block) { return block.outputValue(MPxNode::state).asShort(); }

short nodeStateAsInput(MDataBlock& block) { return block.inputValue(MPxNode::state).asShort(); }

bool isConnected(const MPxNode& node, const MObject& attribute) {
    return MPlug(node.thisMObject(), attribute).isConnected();
}

MString nodeName(const MPxNode& node, const MObject& anyAttribute) {
    MStringArray tokens;
    MPlug(node.thisMObject(), anyAttribute).name().split('.', tokens);
    return tokens.length() > 0 ? tokens[0] : MString();
}

void warn(const MString& nodeName, const char* text) { MGlobal::displayWarning(nodeName + ": " + text); }

MObject geometryIn(MDataHandle& handle, short coordinateSystem) {
    const bool isWorld = coordinateSystem == kWorldCoordinates;
    switch (handle.type()) {
    case MFnData::kMesh: return isWorld ? handle.asMeshTransformed() : handle.asMesh();
    case MFnData::kNurbsCurve: return isWorld ? handle.asNurbsCurveTransformed() : handle.asNurbsCurve();
    case MFnData::kNurbsSurface:
        return isWorld ? handle.asNurbsSurfaceTransformed() : handle.asNurbsSurface();
    default: return MObject::kNullObj;
    }
}

MObject firstComponent(const MObject& components) {
    MStatus status;
    const MFnComponentListData list(components, &status);
    return status && list.length() > 0 ? list[0] : components;
}

MObject objectGroupIn(const MObject& geometryData, int groupId) {
    MStatus status;
    const MFnGeometryData geometry(geometryData, &status);
    const bool isThere = status && groupId >= 0 && geometry.hasObjectGroup(static_cast<unsigned>(groupId));
    return isThere ? geometry.objectGroupComponent(static_cast<unsigned>(groupId)) : MObject();
}

} // namespace vesk::nodes
