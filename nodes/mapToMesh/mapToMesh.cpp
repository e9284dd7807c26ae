#include "nodes/mapToMesh/mapToMesh.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/common/uv_sets.h"

#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>

using namespace vesk::nodes;

MObject mapToMesh::inMesh;
MObject mapToMesh::outMesh;
MObject mapToMesh::uvSet;

MTypeId mapToMesh::id(0x115772);

void* mapToMesh::creator() { return new mapToMesh; }

MStatus mapToMesh::initialize() {
    AttributeTable t;
    t.typed(inMesh, "inMesh", "im", MFnData::kMesh).notStorable().resets();
    t.typed(outMesh, "outMesh", "om", MFnData::kMesh).output();
    t.string(uvSet, "uvSet", "uvs").keyable();
    return t.finish();
}

namespace {

/// Null when no face of the mesh is mapped in the set.
MObject layoutOf(const MFnMesh& mesh, const MString& set) {
    const MString* name = set.length() > 0 ? &set : nullptr;
    MFloatArray us, vs;
    MIntArray assigned, ids, counts;
    if (!mesh.getUVs(us, vs, name) || !mesh.getAssignedUVs(assigned, ids, name)) return MObject::kNullObj;
    for (const int corners : elements(assigned)) {
        if (corners > 0) counts.append(corners);
    }
    if (counts.length() == 0) return MObject::kNullObj;
    MFloatPointArray points;
    points.setLength(us.length());
    for (unsigned i = 0; i < us.length(); ++i)
        points[i] = MFloatPoint(us[i], vs[i]);
    MFnMesh layout;
    MObject data = layout.create(static_cast<int>(points.length()), static_cast<int>(counts.length()), points,
                                 counts, ids, MFnMeshData().create());
    // Faces that turn a UV twice may have lost corners: the mesh knows best, and vertex ids are UV ids.
    layout.getVertices(counts, ids);
    layout.setUVs(us, vs);
    layout.assignUVs(counts, ids);
    return data;
}

} // namespace

MStatus mapToMesh::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (plug != outMesh) return MS::kUnknownParameter;
    MObject layout;
    if (const MObject data = block.inputValue(inMesh).asMesh(); !data.isNull()) {
        const MFnMesh mesh(data);
        const MString set = block.inputValue(uvSet).asString();
        if (checkUvSet(mesh, set, nodeName(*this, inMesh))) layout = layoutOf(mesh, set);
    }
    MDataHandle out = block.outputValue(outMesh);
    out.set(layout);
    out.setClean();
    return MS::kSuccess;
}
