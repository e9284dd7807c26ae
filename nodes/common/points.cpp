#include "nodes/common/points.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/geometry_copy.h"
#include "nodes/common/steps.h"

#include <maya/MDGContext.h>
#include <maya/MFnGeometryData.h>
#include <maya/MFnMesh.h>
#include <maya/MFnVectorArrayData.h>
#include <maya/MItGeometry.h>
#include <maya/MPlug.h>
#include <maya/MPointArray.h>
#include <maya/MTime.h>

#include <algorithm>

namespace vesk::nodes {

namespace {

MSpace::Space spaceOf(short coordinateSystem) {
    return coordinateSystem == kWorldCoordinates ? MSpace::kWorld : MSpace::kObject;
}

MVector withoutWeight(const MPoint& p) { return MVector(p.x, p.y, p.z); }

} // namespace

MVectorArray pointsIn(const MObject& geometry, short coordinateSystem) {
    if (geometry.apiType() == MFn::kVectorArrayData) return vectorsIn(geometry);
    MVectorArray points;
    if (geometry.apiType() == MFn::kMeshData) {
        MPointArray vertices;
        MFnMesh(geometry).getPoints(vertices, spaceOf(coordinateSystem));
        points.setLength(vertices.length());
        std::ranges::transform(elements(vertices), elements(points).begin(), withoutWeight);
    } else {
        for (MItGeometry cv(geometry); !cv.isDone(); cv.next())
            points.append(withoutWeight(cv.position(spaceOf(coordinateSystem))));
    }
    return points;
}

void setWithPoints(MDataHandle& out, MDataHandle& geometry, MVectorArray& points, short coordinateSystem) {
    if (geometry.type() == MFnData::kVectorArray) {
        out.set(MFnVectorArrayData().create(points));
        return;
    }
    MObject copy = copyOfGeometry(geometry, coordinateSystem);
    if (coordinateSystem != kWorldCoordinates)
        MFnGeometryData(copy).setMatrix(geometry.geometryTransformMatrix());
    out.set(copy);
    if (copy.apiType() == MFn::kMeshData) {
        MPointArray vertices(points.length());
        std::ranges::transform(elements(points), elements(vertices).begin(),
                               [](const MVector& v) { return MPoint(v); });
        MFnMesh(copy).setPoints(vertices);
        return;
    }
    unsigned next = 0;
    for (MItGeometry cv(out, false); !cv.isDone(); cv.next()) {
        MPoint moved(points[next++]);
        moved.w = cv.position().w;
        cv.setPosition(moved);
    }
}

MObject dataAtFrame(const MPlug& input, double frame) {
    MDGContext then(MTime(frame, MTime::uiUnit()));
    MObject data;
    return input.getValue(data, then) ? data : MObject::kNullObj;
}

} // namespace vesk::nodes
