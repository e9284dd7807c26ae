#include "nodes/common/steps.h"

#include <maya/MFnComponentListData.h>
#include <maya/MFnDoubleIndexedComponent.h>
#include <maya/MFnGeometryData.h>
#include <maya/MFnIntArrayData.h>
#include <maya/MFnSingleIndexedComponent.h>
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

PointSelection PointSelection::ofComponents(MObject components) {
    PointSelection selection;
    selection.everything_ = false;
    selection.component_ = firstComponent(components);
    return selection;
}

PointSelection PointSelection::ofObjectGroup(const MObject& geometryData, int groupId) {
    PointSelection selection;
    selection.everything_ = false;
    selection.component_ = objectGroupIn(geometryData, groupId);
    return selection;
}

std::vector<char> PointSelection::mask(MFn::Type pointKind, unsigned pointCount, unsigned numCVsInV) const {
    std::vector<char> inside(pointCount, everything_ ? 1 : 0);
    if (everything_ || component_.apiType() != pointKind) return inside;
    const auto choose = [&](unsigned index) {
        if (index < pointCount) inside[index] = 1;
    };
    MObject component = component_;
    MStatus status;
    if (const MFnSingleIndexedComponent single(component, &status); status) {
        if (single.isComplete()) return std::vector<char>(pointCount, 1);
        MIntArray ids;
        single.getElements(ids);
        for (unsigned i = 0; i < ids.length(); ++i)
            choose(static_cast<unsigned>(ids[i]));
    } else if (const MFnDoubleIndexedComponent pairs(component, &status); status) {
        if (pairs.isComplete()) return std::vector<char>(pointCount, 1);
        MIntArray us, vs;
        pairs.getElements(us, vs);
        for (unsigned i = 0; i < us.length(); ++i) {
            if (static_cast<unsigned>(vs[i]) < numCVsInV) {
                choose(static_cast<unsigned>(us[i]) * numCVsInV + static_cast<unsigned>(vs[i]));
            }
        }
    }
    return inside;
}

MIntArray particleIds(MObject components) {
    MIntArray ids;
    if (components.apiType() == MFn::kIntArrayData) {
        MFnIntArrayData(components).copyTo(ids);
        return ids;
    }
    MObject component = firstComponent(components);
    MStatus status;
    if (const MFnSingleIndexedComponent single(component, &status); status) single.getElements(ids);
    return ids;
}

} // namespace vesk::nodes
