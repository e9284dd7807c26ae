#include "nodes/pointsOnMeshInfo/pointsOnMeshInfo.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/mesh_queries.h"
#include "nodes/common/steps.h"
#include "nodes/common/uv_sets.h"
#include "nodes/pointsOnMeshInfo/meshSurface.h"

#include <maya/MFnMesh.h>

#include <cmath>

using namespace vesk::nodes;
using Self = pointsOnMeshInfo;

MObject pointsOnMeshInfo::inMesh;
MObject pointsOnMeshInfo::inPositionPP;
MObject pointsOnMeshInfo::outPositionPP;
MObject pointsOnMeshInfo::outNormalPP;
MObject pointsOnMeshInfo::outUvPP;
MObject pointsOnMeshInfo::outFaceIdPP;
MObject pointsOnMeshInfo::outTriangleIdPP;
MObject pointsOnMeshInfo::coordinateSystem;
MObject pointsOnMeshInfo::uvSet;
MObject pointsOnMeshInfo::averagedNormals;

MTypeId pointsOnMeshInfo::id(0x11576b);

void* pointsOnMeshInfo::creator() { return new pointsOnMeshInfo; }

MStatus pointsOnMeshInfo::initialize() {
    AttributeTable t;
    t.typed(inMesh, "inMesh", "im", MFnData::kMesh).notStorable().resets();
    t.generic(inPositionPP, "inPositionPP", "ippp", {MFnData::kVectorArray, MFnData::kPointArray})
        .notStorable()
        .resets();
    t.typed(outPositionPP, "outPositionPP", "oppp", MFnData::kVectorArray).output();
    t.typed(outNormalPP, "outNormalPP", "onpp", MFnData::kVectorArray).output();
    t.typed(outUvPP, "outUvPP", "ouvpp", MFnData::kDoubleArray).output();
    t.typed(outFaceIdPP, "outFaceIdPP", "ofipp", MFnData::kIntArray).output();
    t.typed(outTriangleIdPP, "outTriangleIdPP", "otipp", MFnData::kIntArray).output();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.string(uvSet, "uvSet", "uvs").keyable();
    t.boolean(averagedNormals, "averagedNormals", "an", true).keyable();
    return t.finish();
}

namespace {

struct Outputs {
    VectorsOutput positions, normals;
    DoublesOutput uvs;
    IntsOutput faces, triangles;

    /// A point for which there is nothing on the mesh: where it is, with no normal, UV or face.
    void appendNowhere(const MVector& position) { append(position, MVector(), {0, 0}, -1, -1); }
    void append(const MVector& position, const MVector& normal, const std::array<double, 2>& uv, int face,
                int triangle) {
        positions.values.append(position);
        normals.values.append(normal);
        uvs.values.append(uv[0]);
        uvs.values.append(uv[1]);
        faces.values.append(face);
        triangles.values.append(triangle);
    }
    void handOver(MDataBlock& block) {
        positions.handOver(block, Self::outPositionPP);
        normals.handOver(block, Self::outNormalPP);
        uvs.handOver(block, Self::outUvPP);
        faces.handOver(block, Self::outFaceIdPP);
        triangles.handOver(block, Self::outTriangleIdPP);
    }
};

void project(MObject& mesh, const MVectorArray& positions, const MString* set, bool averaged, Outputs& out) {
    const MFnMesh function(mesh);
    const MeshSurface surface(function, set);
    const std::vector<MPoint> points(elements(positions).begin(), elements(positions).end());
    const auto nearest = nearestPoints(mesh, MMatrix::identity, points);
    for (unsigned i = 0; i < positions.length(); ++i) {
        const NearestPoint& found = nearest[i];
        if (!found) {
            out.appendNowhere(positions[i]);
            continue;
        }
        const double u = static_cast<double>(found.u), v = static_cast<double>(found.v);
        const Place place{found.face, found.triangle, {u, v, 1 - u - v}};
        out.append(MVector(found.point), averaged ? surface.normalAt(place) : MVector(found.normal),
                   surface.uvAt(place), place.face, place.triangle);
    }
}

} // namespace

MStatus pointsOnMeshInfo::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (!isOneOf(plug, {&outPositionPP, &outNormalPP, &outUvPP, &outFaceIdPP, &outTriangleIdPP}))
        return MS::kUnknownParameter;
    MDataHandle input = block.inputValue(inMesh);
    MObject mesh = geometryIn(input, block.inputValue(coordinateSystem).asShort());
    const MVectorArray positions = vectorsIn(block.inputValue(inPositionPP).data());
    Outputs out;
    if (!mesh.isNull() && positions.length() > 0) {
        const MString set = block.inputValue(uvSet).asString();
        (void)checkUvSet(MFnMesh(mesh), set, nodeName(*this, inMesh));
        project(mesh, positions, set.length() > 0 ? &set : nullptr,
                block.inputValue(averagedNormals).asBool(), out);
    }
    out.handOver(block);
    return MS::kSuccess;
}
