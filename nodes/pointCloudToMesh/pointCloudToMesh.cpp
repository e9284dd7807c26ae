#include "nodes/pointCloudToMesh/pointCloudToMesh.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/pointCloudToMesh/cloudMesh.h"

#include <maya/MColorArray.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>

#include <numeric>

using namespace vesk::nodes;
using Self = pointCloudToMesh;

MObject pointCloudToMesh::inPositionPP;
MObject pointCloudToMesh::inNormalPP;
MObject pointCloudToMesh::inRgbaPP;
MObject pointCloudToMesh::inMapPP;
MObject pointCloudToMesh::outMesh;
MObject pointCloudToMesh::meshType;
MObject pointCloudToMesh::cardSize;
MObject pointCloudToMesh::polygonSize;
MObject pointCloudToMesh::columns;

MTypeId pointCloudToMesh::id(0x11578e);

void* pointCloudToMesh::creator() { return new pointCloudToMesh; }

MStatus pointCloudToMesh::initialize() {
    AttributeTable t;
    t.generic(inPositionPP, "inPositionPP", "ippp", {MFnData::kVectorArray, MFnData::kPointArray})
        .notStorable()
        .resets();
    t.typed(inNormalPP, "inNormalPP", "inpp", MFnData::kVectorArray).notStorable().resets();
    t.typed(inRgbaPP, "inRgbaPP", "irgbapp", MFnData::kDoubleArray).notStorable().resets();
    t.typed(inMapPP, "inMapPP", "impp", MFnData::kDoubleArray).notStorable().resets();
    t.typed(outMesh, "outMesh", "om", MFnData::kMesh).output();
    t.enumeration(meshType, "meshType", "mt", {"Cards", "Polygons", "Grid"}).keyable();
    t.number(cardSize, "cardSize", "cz", 1).min(0).softMax(10).keyable();
    t.integer(polygonSize, "polygonSize", "ps", 3).min(3).softMax(10).keyable();
    t.integer(columns, "columns", "col", 2).min(2).softMax(100).keyable();
    return t.finish();
}

namespace {

enum MeshType : short { kCards = 0, kPolygons = 1, kGrid = 2 };

/// Everything that one compute reads. Runs that do not go with the points are empty.
class Cloud {
    MVectorArray positionData_, normalData_;
    MDoubleArray rgbaData_, mapData_;

  public:
    const short type;
    const std::span<const MVector> positions;
    std::span<const MVector> normals;
    std::span<const double> rgba, map;

    Cloud(MDataBlock& block, const MString& name)
        : positionData_(vectorsIn(block.inputValue(Self::inPositionPP).data())),
          normalData_(vectorsIn(block.inputValue(Self::inNormalPP).data())),
          rgbaData_(doublesIn(block.inputValue(Self::inRgbaPP).data())),
          mapData_(doublesIn(block.inputValue(Self::inMapPP).data())),
          type(std::clamp<short>(block.inputValue(Self::meshType).asShort(), kCards, kGrid)),
          positions(elements(positionData_)) {
        const std::size_t count = positions.size();
        if (fitsPoints(name, "inNormalPP", normalData_.length(), count)) normals = elements(normalData_);
        if (fitsPoints(name, "inRgbaPP", rgbaData_.length(), 4 * count)) rgba = elements(rgbaData_);
        if (fitsPoints(name, "inMapPP", mapData_.length(), 2 * count)) map = elements(mapData_);
    }
    const MVectorArray& normalArray() const { return normalData_; }
    /// The point that a vertex stands for.
    unsigned pointOf(unsigned vertex) const { return type == kCards ? vertex / 4 : vertex; }
};

CloudFaces facesOf(MDataBlock& block, const Cloud& cloud) {
    const std::size_t count = cloud.positions.size();
    switch (cloud.type) {
    case kPolygons: return consecutiveFaces(count, block.inputValue(Self::polygonSize).asInt());
    case kGrid: return gridFaces(count, block.inputValue(Self::columns).asInt());
    default: return cardFaces(count);
    }
}

void paint(MFnMesh& mesh, const Cloud& cloud, const MIntArray& vertices) {
    MColorArray colors;
    colors.setLength(vertices.length());
    for (unsigned v = 0; v < vertices.length(); ++v) {
        const auto color = cloud.rgba.subspan(4 * std::size_t{cloud.pointOf(v)}, 4);
        colors[v] = MColor(static_cast<float>(color[0]), static_cast<float>(color[1]),
                           static_cast<float>(color[2]), static_cast<float>(color[3]));
    }
    mesh.setVertexColors(colors, vertices);
}

/// UVs of the points; cards without them show the whole map, grids have it spread over them.
void unwrap(MFnMesh& mesh, const Cloud& cloud, unsigned vertexCount, int columns) {
    MFloatArray us(vertexCount), vs(vertexCount);
    const auto put = [&](unsigned v, double s, double t) {
        us[v] = static_cast<float>(s);
        vs[v] = static_cast<float>(t);
    };
    const auto width = static_cast<unsigned>(std::max(columns, 2));
    for (unsigned v = 0; v < vertexCount; ++v) {
        if (!cloud.map.empty()) {
            const std::size_t point = cloud.pointOf(v);
            put(v, cloud.map[2 * point], cloud.map[2 * point + 1]);
        } else if (cloud.type == kGrid) {
            put(v, v % width / (width - 1.0), v / width / (vertexCount / width - 1.0));
        } else {
            put(v, v % 4 == 1 || v % 4 == 2, v % 4 > 1);
        }
    }
    MIntArray counts, vertices;
    mesh.getVertices(counts, vertices);
    mesh.setUVs(us, vs);
    mesh.assignUVs(counts, vertices);
}

MObject meshOf(MDataBlock& block, const MString& name) {
    const Cloud cloud(block, name);
    const CloudFaces faces = facesOf(block, cloud);
    if (faces.pointsLeft > 0)
        warn(name, "The point count does not fill the last face or row. The last points have no face.");
    if (faces.counts.empty()) return MObject::kNullObj;
    MFloatPointArray points;
    const auto place = [&](const auto& positions) {
        for (const MVector& p : positions)
            points.append(
                MFloatPoint(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)));
    };
    if (cloud.type == kCards) {
        place(cardCorners(cloud.positions, cloud.normals, block.inputValue(Self::cardSize).asDouble()));
    } else {
        place(cloud.positions);
    }
    const auto faceCount = static_cast<unsigned>(faces.counts.size());
    MFnMesh mesh;
    MObject data = mesh.create(static_cast<int>(points.length()), static_cast<int>(faceCount), points,
                               MIntArray(faces.counts.data(), faceCount),
                               MIntArray(faces.connects.data(), static_cast<unsigned>(faces.connects.size())),
                               MFnMeshData().create());
    MIntArray vertices;
    vertices.setLength(points.length());
    std::iota(elements(vertices).begin(), elements(vertices).end(), 0);
    if (!cloud.map.empty() || cloud.type != kPolygons)
        unwrap(mesh, cloud, points.length(), block.inputValue(Self::columns).asInt());
    if (!cloud.rgba.empty()) paint(mesh, cloud, vertices);
    if (cloud.type != kCards && !cloud.normals.empty()) mesh.setVertexNormals(cloud.normalArray(), vertices);
    return data;
}

} // namespace

MStatus pointCloudToMesh::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kSuccess;
    if (plug != outMesh) return MS::kUnknownParameter;
    MDataHandle out = block.outputValue(outMesh);
    out.set(meshOf(block, nodeName(*this, inPositionPP)));
    out.setClean();
    return MS::kSuccess;
}
