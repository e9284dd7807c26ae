#include "nodes/meshToMap/meshToMap.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/common/geometry_copy.h"
#include "nodes/common/steps.h"
#include "nodes/common/uv_sets.h"

#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFnGeometryData.h>
#include <maya/MFnMesh.h>

#include <algorithm>

using namespace vesk::nodes;

MObject meshToMap::envelope;
MObject meshToMap::inMesh;
MObject meshToMap::inMesh2;
MObject meshToMap::outMesh;
MObject meshToMap::uvSet;

MTypeId meshToMap::id(0x115773);

void* meshToMap::creator() { return new meshToMap; }

MStatus meshToMap::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.typed(inMesh, "inMesh", "im", MFnData::kMesh).notStorable().resets();
    t.typed(inMesh2, "inMesh2", "im2", MFnData::kMesh).notStorable().resets();
    t.typed(outMesh, "outMesh", "om", MFnData::kMesh).output();
    t.string(uvSet, "uvSet", "uvs").keyable();
    t.followState();
    return t.finish();
}

namespace {

/// The mesh with the layout's x and y as its UVs. Null when layout and mesh do not go together.
MObject mapped(MDataHandle& original, const MFnMesh& layout, const MString& set) {
    const MString* name = set.length() > 0 ? &set : nullptr;
    MFloatPointArray points;
    layout.getPoints(points);
    MFloatArray us(points.length()), vs(points.length());
    for (unsigned i = 0; i < points.length(); ++i) {
        us[i] = points[i].x;
        vs[i] = points[i].y;
    }
    MObject copy = copyOfGeometry(original, kObjectCoordinates);
    MFnGeometryData(copy).setMatrix(original.geometryTransformMatrix());
    MFnMesh mesh(copy);
    MFloatArray ownUs, ownVs;
    mesh.getUVs(ownUs, ownVs, name);
    if (ownUs.length() == us.length()) return mesh.setUVs(us, vs, name) ? copy : MObject::kNullObj;
    MIntArray counts, vertices, ownCounts, ownVertices;
    layout.getVertices(counts, vertices);
    mesh.getVertices(ownCounts, ownVertices);
    if (!std::ranges::equal(elements(counts), elements(ownCounts))) return MObject::kNullObj;
    const bool isDone =
        mesh.clearUVs(name) && mesh.setUVs(us, vs, name) && mesh.assignUVs(counts, vertices, name);
    return isDone ? copy : MObject::kNullObj;
}

} // namespace

MStatus meshToMap::compute(const MPlug& plug, MDataBlock& block) {
    const short behaviour = nodeState(block);
    if (behaviour == kBlocking || plug != outMesh) return MS::kUnknownParameter;
    MDataHandle in = block.inputValue(inMesh);
    MObject result = in.data();
    const bool isActive = behaviour != kHasNoEffect && block.inputValue(envelope).asBool();
    const MObject layout = isActive ? block.inputValue(inMesh2).asMesh() : MObject::kNullObj;
    if (!result.isNull() && !layout.isNull()) {
        const MString set = block.inputValue(uvSet).asString(), name = nodeName(*this, inMesh);
        if (checkUvSet(MFnMesh(result), set, name)) {
            const MObject made = mapped(in, MFnMesh(layout), set);
            if (made.isNull()) {
                warn(name, "inMesh2 has neither a vertex for each UV of inMesh nor the same faces.");
            } else {
                result = made;
            }
        }
    }
    MDataHandle out = block.outputValue(outMesh);
    out.set(result);
    out.setClean();
    return MS::kSuccess;
}
