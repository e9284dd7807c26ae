// Function sets and iterators of geometry, on data objects as nodes hold them.

#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/geometry/nurbs_primitives.h"

#include <maya/MColorArray.h>
#include <maya/MDoubleArray.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnComponent.h>
#include <maya/MFnDoubleIndexedComponent.h>
#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsCurveData.h>
#include <maya/MFnNurbsSurface.h>
#include <maya/MFnNurbsSurfaceData.h>
#include <maya/MIntArray.h>
#include <maya/MItGeometry.h>
#include <maya/MItMeshEdge.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MItMeshVertex.h>
#include <maya/MMeshIntersector.h>
#include <maya/MMeshIsectAccelParams.h>
#include <maya/MMeshSmoothOptions.h>
#include <maya/MPointArray.h>
#include <maya/MStringArray.h>
#include <maya/MVectorArray.h>

#include <gtest/gtest.h>

#include <cmath>

namespace vesk {
namespace {

/// Two unit squares side by side in the plane z = 0: vertices 0 1 2 below, 3 4 5 above.
MObject twoSquares() {
    MObject data = MFnMeshData().create();
    MPointArray points;
    for (int i = 0; i < 6; ++i)
        points.append(MPoint(i % 3, i / 3, 0));
    const int counts[] = {4, 4}, connects[] = {0, 1, 4, 3, 1, 2, 5, 4};
    MStatus status;
    MFnMesh().create(6, 2, points, MIntArray(counts, 2), MIntArray(connects, 8), data, &status);
    EXPECT_TRUE(status);
    return data;
}

/// UVs that follow x and y.
void mapByPosition(MFnMesh& mesh) {
    const float us[] = {0, 0.5F, 1, 0, 0.5F, 1}, vs[] = {0, 0, 0, 1, 1, 1};
    EXPECT_TRUE(mesh.setUVs(MFloatArray(us, 6), MFloatArray(vs, 6)));
    const int counts[] = {4, 4}, ids[] = {0, 1, 4, 3, 1, 2, 5, 4};
    EXPECT_TRUE(mesh.assignUVs(MIntArray(counts, 2), MIntArray(ids, 8)));
}

MMatrix scaledAndMoved() {
    MMatrix matrix;
    matrix[0][0] = 2;
    matrix[3][2] = 5;
    return matrix;
}

TEST(FnMesh, BuildsAndAnswersAboutTopology) {
    MObject data = twoSquares();
    const MFnMesh mesh(data);
    EXPECT_EQ(mesh.numVertices(), 6);
    EXPECT_EQ(mesh.numPolygons(), 2);
    EXPECT_EQ(mesh.numEdges(), 7);
    EXPECT_EQ(mesh.numFaceVertices(), 8);
    int2 ends;
    EXPECT_TRUE(mesh.getEdgeVertices(1, ends));
    EXPECT_EQ(ends[0], 1);
    EXPECT_EQ(ends[1], 4);
    int corners[3];
    EXPECT_TRUE(mesh.getPolygonTriangleVertices(1, 1, corners));
    EXPECT_EQ(corners[0], 1);
    EXPECT_EQ(corners[1], 5);
    EXPECT_EQ(corners[2], 4);
    EXPECT_EQ(mesh.getPolygonTriangleVertices(1, 2, corners), MStatus::kFailure);
    EXPECT_EQ(mesh.polygonVertexCount(9), 0);
    MIntArray vertices;
    EXPECT_EQ(mesh.getPolygonVertices(-1, vertices), MStatus::kFailure);
    // What makes no mesh leaves the object alone.
    const int bad[] = {0, 1, 99, 3}, one[] = {4};
    MStatus status;
    MFnMesh().create(6, 1, MPointArray(6, MPoint()), MIntArray(one, 1), MIntArray(bad, 4), data, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(mesh.numPolygons(), 2);
    EXPECT_EQ(MFnMesh(MObject()).numVertices(), 0);
}

TEST(FnMeshBuilding, PolygonsWeldAndMeshesAreSmoothed) {
    MObject data = MFnMeshData().create();
    MFnMesh mesh;
    const auto square = [](double x) {
        MPointArray points;
        for (const auto& [dx, y] : {std::pair(0, 0), std::pair(1, 0), std::pair(1, 1), std::pair(0, 1)})
            points.append(MPoint(x + dx, y, 0));
        return points;
    };
    MStatus status;
    EXPECT_TRUE(mesh.addPolygon(square(0), true, kMFnMeshPointTolerance, MObject(), &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(mesh.addPolygon(square(0), true, kMFnMeshPointTolerance, data, &status), data);
    EXPECT_FALSE(mesh.addPolygon(square(1)).isNull());
    EXPECT_EQ(mesh.numVertices(), 6);
    EXPECT_EQ(mesh.numPolygons(), 2);
    EXPECT_FALSE(mesh.addPolygon(square(1), false).isNull());
    EXPECT_EQ(mesh.numVertices(), 10);
    EXPECT_TRUE(mesh.addPolygon(MPointArray(3, MPoint(0, 0, 0)), true, 1e-10, MObject(), &status).isNull());
    EXPECT_EQ(mesh.numPolygons(), 3);

    MMeshSmoothOptions options;
    EXPECT_TRUE(options.setDivisions(1));
    EXPECT_EQ(options.setDivisions(-1), MStatus::kInvalidParameter);
    const MObject smooth = MFnMesh(twoSquares()).generateSmoothMesh(MObject(), &options, &status);
    ASSERT_TRUE(status);
    EXPECT_EQ(MFnMesh(smooth).numPolygons(), 8);
    MPoint point;
    EXPECT_TRUE(MFnMesh(smooth).getPoint(0, point));
    EXPECT_EQ(point, MPoint(0, 0, 0));
    EXPECT_EQ(MFnMesh(twoSquares()).generateSmoothMesh(data), data);
    EXPECT_EQ(MFnMesh(data).numPolygons(), 32);
    options.setDivisions(100);
    EXPECT_TRUE(MFnMesh(data).generateSmoothMesh(MObject(), &options, &status).isNull());
    EXPECT_EQ(status, MStatus::kFailure);
}

TEST(FnMesh, SpacesOfPointsAndNormals) {
    MObject data = twoSquares();
    MFnMesh mesh(data);
    MFnMeshData(data).setMatrix(scaledAndMoved());
    MPoint point;
    EXPECT_TRUE(mesh.getPoint(2, point, MSpace::kObject));
    EXPECT_EQ(point, MPoint(2, 0, 0));
    EXPECT_TRUE(mesh.getPoint(2, point, MSpace::kWorld));
    EXPECT_EQ(point, MPoint(4, 0, 5));
    EXPECT_TRUE(mesh.setPoint(2, MPoint(6, 0, 7), MSpace::kWorld));
    EXPECT_TRUE(mesh.getPoint(2, point));
    EXPECT_EQ(point, MPoint(3, 0, 2));
    EXPECT_EQ(mesh.getPoint(6, point), MStatus::kFailure);
    EXPECT_EQ(mesh.setPoints(MPointArray(5, MPoint())), MStatus::kInvalidParameter);
    MVector normal;
    EXPECT_TRUE(mesh.getPolygonNormal(0, normal));
    EXPECT_EQ(normal, MVector(0, 0, 1));
    // A slope of 1 along x, stretched to twice its length, has a normal of slope 1/2.
    MPointArray points;
    mesh.getPoints(points);
    for (unsigned i = 0; i < points.length(); ++i)
        points[i].z = points[i].x = i % 3;
    EXPECT_TRUE(mesh.setPoints(points));
    EXPECT_TRUE(mesh.getVertexNormal(4, false, normal, MSpace::kWorld));
    MVector expected(-1, 0, 2);
    expected.normalize();
    EXPECT_TRUE(normal.isEquivalent(expected, 1e-6));
    MFloatVectorArray all;
    EXPECT_TRUE(mesh.getVertexNormals(true, all, MSpace::kWorld));
    EXPECT_NEAR(all[0].x, expected.x, 1e-6);
}

TEST(FnMesh, CopiesShareAndSplit) {
    MObject data = twoSquares();
    MFnMeshData(data).setMatrix(scaledAndMoved());
    MObject other = MFnMeshData().create();
    MFnMesh copy;
    copy.copy(data, other);
    EXPECT_TRUE(MFnMeshData(other).matrixIsIdentity()) << "a copy takes no matrix along";
    EXPECT_TRUE(copy.setPoint(0, MPoint(9, 9, 9)));
    MPoint point;
    MFnMesh(data).getPoint(0, point);
    EXPECT_EQ(point, MPoint(0, 0, 0));
    // Data from an input is for reading.
    MFnMesh readOnly(MObject(data.hostObject(), true));
    EXPECT_EQ(readOnly.setPoint(0, MPoint(1, 1, 1)), MStatus::kFailure);
    EXPECT_EQ(readOnly.numVertices(), 6);
    MStatus status;
    copy.copy(data, MObject(other.hostObject(), true), &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
}

TEST(FnMesh, UvsTangentsAndColours) {
    MObject data = twoSquares();
    MFnMesh mesh(data);
    MVector tangent, binormal;
    EXPECT_EQ(mesh.getFaceVertexTangent(0, 1, tangent), MStatus::kFailure) << "no UVs yet";
    mapByPosition(mesh);
    EXPECT_TRUE(mesh.getFaceVertexTangent(0, 1, tangent));
    EXPECT_TRUE(mesh.getFaceVertexBinormal(1, 4, binormal));
    EXPECT_TRUE(tangent.isEquivalent(MVector(1, 0, 0), 1e-6));
    EXPECT_TRUE(binormal.isEquivalent(MVector(0, 1, 0), 1e-6));
    EXPECT_EQ(mesh.getFaceVertexTangent(0, 5, tangent), MStatus::kFailure) << "vertex 5 is not in face 0";
    EXPECT_EQ(mesh.getTangentId(1, 5), 6);
    MFloatVectorArray tangents;
    EXPECT_TRUE(mesh.getTangents(tangents));
    EXPECT_EQ(tangents.length(), 8U);
    const MString nowhere("nowhere");
    EXPECT_EQ(mesh.getTangents(tangents, MSpace::kObject, &nowhere), MStatus::kFailure);
    EXPECT_EQ(tangents.length(), 0U);
    MIntArray counts, ids;
    EXPECT_EQ(mesh.getAssignedUVs(counts, ids, &nowhere), MStatus::kFailure);
    EXPECT_EQ(mesh.currentUVSetName(), MString("map1"));

    MColorArray colors;
    EXPECT_EQ(mesh.getVertexColors(colors), MStatus::kFailure) << "no set at all";
    EXPECT_EQ(mesh.setVertexColors(MColorArray(1, MColor(1, 0, 0, 1)), MIntArray(1, 9)),
              MStatus::kInvalidParameter);
    EXPECT_TRUE(mesh.setVertexColors(MColorArray(1, MColor(1, 0, 0, 0.5F)), MIntArray(1, 1)));
    EXPECT_EQ(mesh.currentColorSetName(), MString("colorSet1"));
    EXPECT_TRUE(mesh.getVertexColors(colors));
    EXPECT_EQ(colors[1], MColor(1, 0, 0, 0.5F));
    EXPECT_EQ(colors[0], MColor(-1, -1, -1, -1));
    const MColor grey(0.5F, 0.5F, 0.5F, 1);
    EXPECT_TRUE(mesh.getFaceVertexColors(colors, nullptr, &grey));
    EXPECT_EQ(colors.length(), 8U);
    EXPECT_EQ(colors[0], grey);
    EXPECT_EQ(colors[1], MColor(1, 0, 0, 0.5F));
}

TEST(FnMesh, PointsByUvAndUvsByPoint) {
    MObject data = twoSquares();
    MFnMesh mesh(data);
    MPoint point(9, 9, 9);
    float2 uv = {7, 7};
    int face = 7;
    EXPECT_EQ(mesh.getPointAtUV(0, point, {0.25F, 0.5F}), MStatus::kFailure) << "not mapped";
    EXPECT_EQ(mesh.getUVAtPoint(point, uv, MSpace::kObject, nullptr, &face), MStatus::kFailure);
    mapByPosition(mesh);
    const MString other("other"), own("map1");
    EXPECT_EQ(mesh.getPointAtUV(0, point, {0.25F, 0.5F}, MSpace::kObject, &other), MStatus::kFailure);
    EXPECT_EQ(mesh.getUVAtPoint(point, uv, MSpace::kObject, &other, &face), MStatus::kFailure);
    EXPECT_EQ(mesh.getPointAtUV(2, point, {0.25F, 0.5F}), MStatus::kFailure) << "no such face";
    EXPECT_EQ(mesh.getPointAtUV(0, point, {0.625F, 0.5F}, MSpace::kObject, &own, 0.1F), MStatus::kFailure);
    EXPECT_EQ(MFnMesh().getPointAtUV(0, point, {0.25F, 0.5F}), MStatus::kInvalidParameter);
    EXPECT_EQ(point, MPoint(9, 9, 9));
    EXPECT_EQ(std::tuple(uv[0], uv[1], face), std::tuple(7.0F, 7.0F, 7));

    MFnGeometryData(data).setMatrix(scaledAndMoved());
    EXPECT_TRUE(mesh.getPointAtUV(0, point, {0.625F, 0.5F}, MSpace::kObject, &own, 0.125F));
    EXPECT_EQ(point, MPoint(1, 0.5, 0)) << "on the face's side";
    EXPECT_TRUE(mesh.getPointAtUV(1, point, {0.625F, 0.5F}, MSpace::kWorld));
    EXPECT_EQ(point, MPoint(1.25, 0.5, 0) * scaledAndMoved());
    MPoint above = MPoint(1.25, 0.5, 3) * scaledAndMoved();
    EXPECT_TRUE(mesh.getUVAtPoint(above, uv, MSpace::kWorld, nullptr, &face));
    EXPECT_EQ(std::tuple(uv[0], uv[1], face), std::tuple(0.625F, 0.5F, 1));
}

TEST(MItMesh, EdgesAndFacesKnowTheirNeighbours) {
    MObject data = twoSquares();
    MItMeshEdge edge(data);
    EXPECT_EQ(edge.count(), 7);
    while (!edge.isDone() && edge.onBoundary())
        edge.next();
    EXPECT_EQ(edge.index(0) + edge.index(1), 5) << "the one between vertices 1 and 4";
    EXPECT_EQ(edge.point(0).x, 1);
    EXPECT_EQ(edge.index(2), -1);
    MIntArray list;
    EXPECT_EQ(edge.getConnectedFaces(list), 2);
    EXPECT_EQ(list[1], 1);
    EXPECT_TRUE(edge.getConnectedEdges(list));
    EXPECT_EQ(list.length(), 4U);
    EXPECT_EQ(edge.currentItem().apiType(), MFn::kMeshEdgeComponent);

    MItMeshPolygon face(data);
    int previous = 0;
    EXPECT_EQ(face.setIndex(2, previous), MStatus::kFailure);
    EXPECT_TRUE(face.setIndex(1, previous));
    EXPECT_EQ(face.polygonVertexCount(), 4U);
    EXPECT_EQ(face.vertexIndex(2), 5);
    EXPECT_TRUE(face.center() == MPoint(1.5, 0.5, 0));
    MVector normal;
    EXPECT_TRUE(face.getNormal(normal));
    EXPECT_TRUE(normal == MVector(0, 0, 1));
    EXPECT_TRUE(face.getConnectedFaces(list));
    EXPECT_EQ(list.length(), 1U);
    EXPECT_TRUE(face.getConnectedEdges(list));
    EXPECT_EQ(list.length(), 2U) << "those of the other square that leave vertices 1 and 4";
    EXPECT_TRUE(face.getEdges(list));
    EXPECT_EQ(list.length(), 4U);
    EXPECT_TRUE(face.next());
    EXPECT_TRUE(face.isDone());
    EXPECT_EQ(face.getVertices(list), MStatus::kFailure);
}

TEST(MItMeshVertex, WalksWithNeighbours) {
    MObject data = twoSquares();
    MFnMesh mesh(data);
    mapByPosition(mesh);
    mesh.setVertexColors(MColorArray(1, MColor(0, 1, 0, 1)), MIntArray(1, 4));
    MItMeshVertex vertex(data);
    EXPECT_EQ(vertex.count(), 6);
    int visited = 0;
    for (; !vertex.isDone(); vertex.next())
        EXPECT_EQ(vertex.index(), visited++);
    EXPECT_EQ(visited, 6);
    MIntArray list;
    EXPECT_EQ(vertex.getConnectedFaces(list), MStatus::kFailure);
    int previous = 0;
    EXPECT_EQ(vertex.setIndex(6, previous), MStatus::kFailure);
    EXPECT_TRUE(vertex.setIndex(4, previous));
    EXPECT_EQ(previous, 6);
    EXPECT_TRUE(vertex.onBoundary());
    EXPECT_TRUE(vertex.getConnectedFaces(list));
    EXPECT_EQ(list.length(), 2U);
    EXPECT_TRUE(vertex.getConnectedVertices(list));
    EXPECT_EQ(list.length(), 3U);
    MColor color;
    EXPECT_TRUE(vertex.getColor(color));
    EXPECT_EQ(color, MColor(0, 1, 0, 1));
    const MString nowhere("nowhere");
    EXPECT_TRUE(vertex.getColor(color, &nowhere));
    EXPECT_EQ(color, MColor(-1, -1, -1, -1));
    int count = 0;
    EXPECT_TRUE(vertex.numUVs(count));
    EXPECT_EQ(count, 1);
    float2 uv = {7, 7};
    EXPECT_EQ(vertex.getUV(uv, &nowhere), MStatus::kFailure);
    EXPECT_EQ(uv[0], 7);
    EXPECT_TRUE(vertex.getUV(uv));
    EXPECT_FLOAT_EQ(uv[0], 0.5F);
    MFloatArray us, vs;
    EXPECT_TRUE(vertex.getUVs(us, vs, list));
    EXPECT_EQ(us.length(), 2U);
    EXPECT_EQ(vertex.currentItem().apiType(), MFn::kMeshVertComponent);
}

TEST(MItGeometry, OrderOfPoints) {
    MObject mesh = twoSquares();
    MItGeometry points(mesh);
    EXPECT_EQ(points.count(), 6);
    points.next();
    EXPECT_EQ(points.position(), MPoint(1, 0, 0));
    EXPECT_EQ(points.currentItem().apiType(), MFn::kMeshVertComponent);
    EXPECT_EQ(points.setPosition(MPoint()), MStatus::kFailure) << "for reading unless asked otherwise";

    // A plane of degree 1 with two patches along u: u outer, v inner.
    geom::PlaneOptions plane;
    plane.degree = 1;
    plane.patchesU = 2;
    const MObject surface(makeRef<NurbsSurfaceData>(*geom::makePlane(plane)).get());
    MItGeometry cvs(surface);
    EXPECT_EQ(cvs.count(), 6);
    int us[6] = {}, vs[6] = {};
    for (int i = 0; !cvs.isDone(); cvs.next(), ++i) {
        MObject item = cvs.currentItem();
        EXPECT_EQ(item.apiType(), MFn::kSurfaceCVComponent);
        ASSERT_LT(i, 6);
        EXPECT_TRUE(MFnDoubleIndexedComponent(item).getElement(0, us[i], vs[i]));
        EXPECT_EQ(cvs.index(), i);
    }
    EXPECT_EQ(us[3], 1);
    EXPECT_EQ(vs[3], 1);

    // Of a periodic curve the distinct CVs alone are visited.
    const MObject circle(makeRef<NurbsCurveData>(*geom::makeCircle({})).get());
    MItGeometry around(circle);
    EXPECT_EQ(around.count(), 11);
    EXPECT_EQ(around.exactCount(), 8);
    int visited = 0;
    for (; !around.isDone(); around.next())
        ++visited;
    EXPECT_EQ(visited, 8);
    MStatus status;
    const MItGeometry none(MObject(), &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_TRUE(none.isDone());
}

TEST(FnNurbs, CurvesAndSurfaces) {
    MObject data(makeRef<NurbsCurveData>(*geom::makeCircle({})).get());
    MFnNurbsCurve circle(data);
    EXPECT_EQ(circle.form(), MFnNurbsCurve::kPeriodic);
    EXPECT_EQ(circle.degree(), 3);
    EXPECT_EQ(circle.numSpans(), 8);
    EXPECT_EQ(circle.numCVs(), 11);
    EXPECT_EQ(circle.numKnots(), 13);
    EXPECT_NEAR(circle.length(), 2 * M_PI, 1e-2);
    double start = -1, end = -1;
    EXPECT_TRUE(circle.getKnotDomain(start, end));
    EXPECT_EQ(end - start, 8);
    MPoint point;
    EXPECT_EQ(circle.getPointAtParam(end + 1, point), MStatus::kFailure);
    EXPECT_TRUE(circle.getPointAtParam(start, point));
    EXPECT_NEAR(MVector(point).length(), 1, 1e-9);
    EXPECT_NEAR(circle.tangent(start) * MVector(point), 0, 1e-9);
    MPointArray cvs;
    EXPECT_TRUE(circle.getCVs(cvs));
    cvs[10] = MPoint(9, 9, 9); // repeats CV 2 and follows it
    cvs[0].z = 3;
    EXPECT_TRUE(circle.setCVs(cvs));
    EXPECT_TRUE(circle.getCV(8, point));
    EXPECT_EQ(point.z, 3);
    EXPECT_TRUE(circle.getCV(10, point));
    EXPECT_NE(point.x, 9);
    EXPECT_EQ(circle.getCV(11, point), MStatus::kFailure);
    cvs.setLength(4);
    EXPECT_EQ(circle.setCVs(cvs), MStatus::kInvalidParameter);

    geom::PlaneOptions options;
    options.axis = MVector(0, 0, 1);
    MObject flat(makeRef<NurbsSurfaceData>(*geom::makePlane(options)).get());
    const MFnNurbsSurface plane(flat);
    EXPECT_EQ(plane.numCVsInU(), 4);
    EXPECT_EQ(plane.numCVsInV(), 4);
    EXPECT_EQ(plane.formInU(), MFnNurbsSurface::kOpen);
    EXPECT_TRUE(plane.normal(0.3, 0.6).isEquivalent(MVector(0, 0, 1), 1e-9));
    MFnNurbsSurfaceData(flat).setMatrix(scaledAndMoved());
    EXPECT_TRUE(plane.getPointAtParam(0.5, 0.5, point, MSpace::kWorld));
    EXPECT_TRUE(point.isEquivalent(MPoint(0, 0, 5), 1e-9));
    EXPECT_EQ(MFnNurbsSurface(data).numCVsInU(), 0) << "a curve is no surface";
}

TEST(NurbsFunctionSet, CreatesCurvesThatAddUp) {
    const MPoint cvs[] = {{0, 0, 1, 2}, {1, 0, 1, 2}, {2, 0, 1, 2}};
    const double knots[] = {0, 0, 1, 1};
    const MPointArray points(cvs, 3);
    MStatus status;
    const auto made = [&](unsigned degree, unsigned knotCount, const MObject& owner) {
        MFnNurbsCurve curve;
        const MObject data = curve.create(points, MDoubleArray(knots, knotCount), degree,
                                          MFnNurbsCurve::kOpen, true, false, owner, &status);
        EXPECT_EQ(data.isNull(), !status);
        return curve;
    };
    const MFnNurbsCurve curve = made(2, 4, MFnNurbsCurveData().create());
    EXPECT_EQ(curve.numSpans(), 1);
    MPoint cv;
    EXPECT_TRUE(curve.getCV(2, cv));
    EXPECT_EQ(cv, MPoint(2, 0, 0, 1)) << "flat and not rational, as asked";
    (void)made(2, 3, MFnNurbsCurveData().create());
    EXPECT_EQ(status, MStatus::kInvalidParameter) << "too few knots";
    (void)made(0, 2, MFnNurbsCurveData().create());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    (void)made(2, 4, MObject());
    EXPECT_EQ(status, MStatus::kInvalidParameter) << "nowhere to put it";
}

TEST(MeshRays, SpacesResultsAndWhatIsRefused) {
    MObject data = twoSquares();
    MMatrix moved; // twice as large and 10 along x
    moved[0][0] = moved[1][1] = moved[2][2] = 2;
    moved[3][0] = 10;
    MFnGeometryData(data).setMatrix(moved);
    const MFnMesh mesh(data);
    MFloatPoint point(9, 9, 9);
    float param = 7, u = 7, v = 7;
    int face = 7, triangle = 7;
    auto params = MFnMesh::autoUniformGridParams();
    const auto cast = [&](const MFloatPoint& from, const MFloatVector& along, MSpace::Space space, float max,
                          bool both) {
        return mesh.closestIntersection(from, along, nullptr, nullptr, true, space, max, both, &params, point,
                                        &param, &face, &triangle, &u, &v);
    };
    EXPECT_FALSE(cast({13.5F, 1, 6}, {0, 0, -3}, MSpace::kWorld, 1.9F, false));
    EXPECT_EQ(point, MFloatPoint(9, 9, 9));
    EXPECT_EQ(std::tuple(param, face, triangle, u, v), std::tuple(7.0F, 7, 7, 7.0F, 7.0F)) << "a miss";
    // In the mesh's own space at (1.75, 0.5), on the triangle 1 2 5 of the second square.
    ASSERT_TRUE(cast({13.5F, 1, 6}, {0, 0, -3}, MSpace::kWorld, 2, false));
    EXPECT_EQ(point, MFloatPoint(13.5F, 1, 0));
    EXPECT_EQ(std::tuple(param, face, triangle, u, v), std::tuple(2.0F, 1, 0, 0.25F, 0.25F));
    EXPECT_FALSE(cast({13.5F, 1, 6}, {0, 0, 3}, MSpace::kWorld, 2, false));
    EXPECT_TRUE(cast({13.5F, 1, 6}, {0, 0, 3}, MSpace::kWorld, 2, true));
    EXPECT_EQ(param, -2);
    EXPECT_FALSE(cast({13.5F, 1, 6}, {0, 0, -3}, MSpace::kObject, 9, true));
    EXPECT_TRUE(cast({1.75F, 0.5F, 6}, {0, 0, -3}, MSpace::kObject, 9, false));

    MFloatPointArray points;
    MFloatArray at;
    EXPECT_TRUE(mesh.allIntersections({1, 0.5F, 1}, {0, 0, -1}, nullptr, nullptr, false, MSpace::kObject, 9,
                                      false, nullptr, true, points, &at, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(points.length(), 2U) << "on the common edge";
    EXPECT_EQ(at.length(), 2U);
    EXPECT_TRUE(mesh.anyIntersection({1, 0.5F, 1}, {0, 0, -1}, nullptr, nullptr, false, MSpace::kObject, 1,
                                     true, nullptr, point, nullptr, nullptr, nullptr, nullptr, nullptr));
    const MIntArray faces(1, 0);
    MStatus status;
    EXPECT_FALSE(mesh.anyIntersection({1, 0.5F, 1}, {0, 0, -1}, &faces, nullptr, false, MSpace::kObject, 1,
                                      true, nullptr, point, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                                      &status));
    EXPECT_EQ(status, MStatus::kNotImplemented);
    EXPECT_FALSE(MFnMesh().anyIntersection({1, 0.5F, 1}, {0, 0, -1}, nullptr, nullptr, false, MSpace::kObject,
                                           1, true, nullptr, point, nullptr, nullptr, nullptr, nullptr,
                                           nullptr, 0, &status));
    EXPECT_EQ(status, MStatus::kInvalidParameter);
}

TEST(MeshIntersector, QueriesAreTakenThroughTheInverseOfTheMatrix) {
    MObject data = twoSquares();
    MMeshIntersector intersector;
    MPointOnMesh found;
    EXPECT_FALSE(intersector.getClosestPoint(MPoint(), found));
    MMatrix moved;
    moved[3][0] = 10;
    EXPECT_TRUE(intersector.create(data, moved));
    // In the mesh's own space (1.75, 0.5, 3), over the triangle 1 2 5 of the second square.
    ASSERT_TRUE(intersector.getClosestPoint(MPoint(11.75, 0.5, 3), found));
    EXPECT_TRUE(found.getPoint().isEquivalent(MFloatPoint(1.75F, 0.5F, 0)));
    EXPECT_EQ(found.getNormal(), MFloatVector(0, 0, 1));
    EXPECT_EQ(found.faceIndex(), 1);
    EXPECT_EQ(found.triangleIndex(), 0);
    float u = 0, v = 0;
    found.getBarycentricCoords(u, v);
    EXPECT_FLOAT_EQ(u, 0.25F);
    EXPECT_FLOAT_EQ(v, 0.25F);
    EXPECT_FALSE(intersector.getClosestPoint(MPoint(11.75, 0.5, 3), found, 2.5));
    MObject curve = MFnNurbsCurveData().create();
    EXPECT_EQ(intersector.create(curve), MStatus::kInvalidParameter);
    EXPECT_FALSE(intersector.isCreated());
}

} // namespace
} // namespace vesk
