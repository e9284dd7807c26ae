#include "nodes/bmesh/bmesh.h"

#include "nodes/bmesh/meshOutput.h"
#include "nodes/bmesh/skeleton.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MGlobal.h>

#include <algorithm>

namespace {

using namespace vesk::nodes;
using vesk::skin::SkinMesh;

constexpr int kMostSmoothPasses = 3;
constexpr int kMostSubdivisions = 3;

/// What is wrong with the skeleton, or null.
MString complaint(const Skeleton& skeleton) {
    const vesk::skin::FoundFault found = vesk::skin::findFault(skeleton.spheres);
    if (found.fault == vesk::skin::SphereFault::NotFinite)
        return "The position or the radius of \"" + skeleton.jointName(found.sphere) +
               "\" is not a finite number.";
    if (found.fault != vesk::skin::SphereFault::None)
        return "The hierarchy above \"" + skeleton.jointName(found.sphere) + "\" does not lead to a root.";
    if (vesk::skin::hasOverlap(skeleton.positions))
        return "Overlapping joints detected. This is a no-no situation.";
    return {};
}

/// The skin as mesh data; an empty mesh, and a warning, when there can be none.
MObject buildSkin(const Skeleton& skeleton, const MString& name) {
    const MString fault = complaint(skeleton);
    if (fault.length() > 0) {
        warn(name, fault.asChar());
        return emptyMesh();
    }
    SkinMesh skin;
    skin.spheres = skeleton.spheres;
    skin.build();
    if (!std::all_of(skin.vertices.cbegin(), skin.vertices.cend(),
                     [](const auto& vertex) { return vesk::skin::isFinite(vertex.position); })) {
        warn(name, "The joints are too far apart or too large.");
        return emptyMesh();
    }
    if (skin.missingRings() > 0) {
        warn(name,
             "Radii are so small next to the distances that some bones get fewer rings than they should.");
    }
    return weldedMesh(skin);
}

/// Smoothing and subdivision on top.
void finish(MObject& mesh, int smoothPasses, int subdivisions, const MString& name) {
    if (smoothPasses > 0) relaxMesh(mesh, smoothPasses);
    if (subdivisions < 1) return;
    const MObject smooth = subdividedMesh(mesh, subdivisions);
    if (smooth.isNull()) return warn(name, "The mesh cannot be subdivided.");
    mesh = smooth;
}

} // namespace

MObject bmesh::matrix;
MObject bmesh::radius;
MObject bmesh::inJoints;
MObject bmesh::outMesh;
MObject bmesh::subdivisions;
MObject bmesh::smooth;

MTypeId bmesh::id(0x11578a);

void* bmesh::creator() {
    // Installs the script job that takes in joints as they are drawn.
    MGlobal::executePythonCommand("bmesh_Vesk().initScriptJob()", false, false);
    return new bmesh;
}

MStatus bmesh::initialize() {
    AttributeTable t;
    t.matrix(matrix, "matrix", "m");
    t.real(radius, "radius", "r", 1);
    t.compound(inJoints, "inJoints", "ij", {&matrix, &radius}).builder();
    t.typed(outMesh, "outMesh", "om", MFnData::kMesh).output();
    t.shortInteger(subdivisions, "subdivisions", "sd", 1).keyable().min(0).max(kMostSubdivisions);
    t.shortInteger(smooth, "smooth", "sm", 0).keyable().min(0).softMax(kMostSmoothPasses);
    return t.finish();
}

MStatus bmesh::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outMesh) return MS::kUnknownParameter;
    const int passes = std::min<int>(block.inputValue(smooth).asShort(), kMostSmoothPasses);
    const int divisions = std::min<int>(block.inputValue(subdivisions).asShort(), kMostSubdivisions);
    // Elements that are left out today are read as well, so that their next change is noticed.
    block.inputArrayValue(inJoints);
    const MString name = nodeName(*this, outMesh);
    const Skeleton skeleton = readSkeleton(MPlug(thisMObject(), inJoints), matrix, radius);

    MObject mesh;
    if (!skeleton.spheres.isEmpty()) {
        mesh = buildSkin(skeleton, name);
        if (!mesh.isNull()) finish(mesh, passes, divisions, name);
    }
    MDataHandle handle = block.outputValue(outMesh);
    handle.set(mesh);
    handle.setClean();
    return MS::kSuccess;
}
