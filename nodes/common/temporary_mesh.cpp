// Surfaces and curves as meshes, by the host's own nodes: made, wired, read and deleted within one compute.

#include "nodes/common/steps.h"

#include <maya/MDGContext.h>
#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MGlobal.h>
#include <maya/MPlugArray.h>
#include <maya/MSelectionList.h>

namespace vesk::nodes {

QuietCommands::QuietCommands() : echo_(0) {
    MGlobal::executeCommand("commandEcho -q -st", echo_);
    MGlobal::executeCommand("commandEcho -st 0", false, false);
}

QuietCommands::~QuietCommands() {
    MGlobal::executeCommand(MString("commandEcho -st ") + echo_, false, false);
}

namespace {

void run(const MString& command) { MGlobal::executeCommand(command, false, false); }

MString make(const char* nodeType) {
    return MGlobal::executeCommandStringResult(MString("createNode -ss ") + nodeType, false, false);
}

void set(const MString& node, const char* attributeAndValue) { run("setAttr " + node + attributeAndValue); }

void connect(const MString& from, const MString& to) { run("connectAttr " + from + " " + to); }

MString upstreamOf(const MPlug& input) {
    MPlugArray sources;
    input.connectedTo(sources, true, false);
    return sources.length() > 0 ? sources[0].name() : MString();
}

/// A copy of the mesh at a plug, so that it outlives the node.
MObject meshAt(const MString& plugName) {
    MSelectionList list;
    list.add(plugName);
    MPlug plug;
    list.getPlug(0, plug);
    MObject source;
    plug.getValue(source, MDGContext::fsNormal);
    MFnMeshData maker;
    MObject data = maker.create();
    MStatus status;
    MFnMesh().copy(source, data, &status);
    return status ? data : MObject();
}

} // namespace

MObject surfaceAsMesh(const MPlug& input, bool matchNormals) {
    const MString upstream = upstreamOf(input);
    if (upstream.length() == 0) return MObject::kNullObj;
    const QuietCommands quiet;
    const MString tessellate = make("nurbsTessellate");
    set(tessellate, ".polygonType 1");
    set(tessellate, ".format 3");
    if (matchNormals) {
        set(tessellate, ".matchNormalDir 1");
        set(tessellate, ".normalizeTrimmedUVRange 0");
    }
    connect(upstream, tessellate + ".inputSurface");
    const MObject mesh = meshAt(tessellate + ".outputPolygon");
    run("delete " + tessellate);
    return mesh;
}

MObject curveAsMesh(const MPlug& input, const RibbonRecipe& recipe) {
    MString profile = upstreamOf(input);
    if (profile.length() == 0) return MObject::kNullObj;
    const QuietCommands quiet;
    MString rebuild;
    if (recipe.rebuild) {
        rebuild = make("rebuildCurve");
        set(rebuild, ".rebuildType 3");
        set(rebuild, ".endKnots 1");
        connect(profile, rebuild + ".inputCurve");
        profile = rebuild + ".outputCurve ";
    }
    const MString extrude = make("extrude");
    set(extrude, ".extrudeType 0");
    if (recipe.alongProfileNormal) set(extrude, ".useProfileNormal 1");
    const MString tessellate = make("nurbsTessellate");
    set(tessellate, ".polygonType 1");
    set(tessellate, ".format 3");
    set(tessellate, ".matchNormalDir 1");
    connect(extrude + ".outputSurface ", tessellate + ".inputSurface");
    connect(profile, extrude + ".profile");
    const MObject mesh = meshAt(tessellate + ".outputPolygon");
    run("delete " + extrude + " " + tessellate + " " + rebuild);
    return mesh;
}

} // namespace vesk::nodes
