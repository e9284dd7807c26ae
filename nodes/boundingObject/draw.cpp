// What a boundingObject looks like, and its box.

#include "nodes/boundingObject/boundingObject.h"
#include "nodes/common/arrays.h"
#include "nodes/common/world_points.h"
#include "volume/shapes.h"

#include <maya/M3dView.h>
#include <maya/MFnMatrixData.h>

#include <GL/gl.h>

#include <cmath>
#include <numbers>
#include <utility>

namespace {

using namespace vesk::nodes;
using Self = boundingObject;
using vesk::volume::Vec3;

/// The node's values, as its plugs give them while nothing computes.
struct Shape {
    int kind = vesk::volume::kSphere;
    vesk::volume::Capsule capsule;
    bool showsCloud = false;
    MMatrix worldToLocal;
    MObject positions, radii;
};

Vec3 tripleAt(const MObject& node, const MObject& x, const MObject& y, const MObject& z) {
    return {MPlug(node, x).asDouble(), MPlug(node, y).asDouble(), MPlug(node, z).asDouble()};
}

Shape readShape(const MObject& node) {
    Shape shape;
    shape.kind = MPlug(node, Self::type).asShort();
    shape.capsule = {MPlug(node, Self::topCapOffset).asDouble(),
                     MPlug(node, Self::bottomCapOffset).asDouble(),
                     tripleAt(node, Self::topCapScaleX, Self::topCapScaleY, Self::topCapScaleZ),
                     tripleAt(node, Self::bottomCapScaleX, Self::bottomCapScaleY, Self::bottomCapScaleZ)};
    shape.showsCloud =
        shape.kind == vesk::volume::kCloud && MPlug(node, Self::displayPointCloudBoundingVolumes).asBool();
    if (!shape.showsCloud) return shape;
    MObject matrix;
    if (MPlug(node, Self::inParentMatrix).getValue(matrix))
        shape.worldToLocal = MFnMatrixData(matrix).matrix().inverse();
    MPlug(node, Self::positionPP).getValue(shape.positions);
    MPlug(node, Self::radiusPP).getValue(shape.radii);
    return shape;
}

/// Calls `visit` with the centre, in local space, and the radius of each point of the cloud.
template <class Visit>
void eachCloudPoint(const Shape& shape, Visit visit) {
    if (!shape.showsCloud) return;
    const ArrayView<MFnPointArrayData> positions(shape.positions);
    const ArrayView<MFnDoubleArrayData> radii(shape.radii);
    const std::size_t count = std::min(positions.values().size(), radii.values().size());
    for (std::size_t i = 0; i < count; ++i)
        visit(positions.values()[i] * shape.worldToLocal, radii.values()[i]);
}

// --- lines
// -----------------------------------------------------------------------------------------------------------

constexpr int kTurn = 36; ///< steps of a circle

void vertex(double x, double y, double z) {
    glVertex3f(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
}

/// Calls `put` with cosine and sine for the steps of an arc, in tens of degrees, both ends included.
template <class Put>
void arc(int from, int to, Put put) {
    glBegin(GL_LINE_STRIP);
    for (int step = from; step <= to; ++step) {
        const double angle = step * std::numbers::pi / (kTurn / 2.0);
        put(std::cos(angle), std::sin(angle));
    }
    glEnd();
}

/// Three unit circles, through a function that places a point of them.
template <class Place>
void drawSphere(Place place) {
    arc(0, kTurn, [&](double c, double s) { place(c, 0, s); });
    arc(0, kTurn, [&](double c, double s) { place(c, s, 0); });
    arc(0, kTurn, [&](double c, double s) { place(0, s, c); });
}

void drawCube(double size) {
    // One strip along all edges: bits x, y, z of the corners, set for the positive side.
    constexpr int kCorners[] = {0b000, 0b100, 0b101, 0b001, 0b000, 0b010, 0b110, 0b111,
                                0b011, 0b010, 0b011, 0b001, 0b101, 0b111, 0b110, 0b100};
    glBegin(GL_LINE_STRIP);
    for (const int corner : kCorners) {
        vertex((corner & 0b100) != 0 ? size : -size, (corner & 0b010) != 0 ? size : -size,
               (corner & 0b001) != 0 ? size : -size);
    }
    glEnd();
}

void drawCap(const Vec3& scale, double offset, bool isTop) {
    arc(0, kTurn, [&](double c, double s) { vertex(c * scale.x, offset, s * scale.z); });
    const int from = isTop ? 0 : kTurn / 2;
    const int to = from + kTurn / 2;
    arc(from, to, [&](double c, double s) { vertex(c * scale.x, s * scale.y + offset, 0); });
    arc(from, to, [&](double c, double s) { vertex(0, s * scale.y + offset, c * scale.z); });
}

void drawCapsule(const vesk::volume::Capsule& c) {
    drawCap(c.topScale, c.topOffset, true);
    drawCap(c.bottomScale, -c.bottomOffset, false);
    constexpr int kSides[][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
    for (const auto& [x, z] : kSides) {
        glBegin(GL_LINE_STRIP);
        vertex(x * c.topScale.x, c.topOffset, z * c.topScale.z);
        vertex(x * c.bottomScale.x, -c.bottomOffset, z * c.bottomScale.z);
        glEnd();
    }
}

/// A closed outline in the XZ plane, moved by (x, z).
void drawOutline(std::span<const std::pair<double, double>> outline, double x, double z) {
    glBegin(GL_LINE_STRIP);
    for (const auto& [a, b] : outline)
        vertex(x + a, 0, z + b);
    vertex(x + outline[0].first, 0, z + outline[0].second);
    glEnd();
}

void drawCloudIcon() {
    constexpr std::pair<double, double> kBar[] = {
        {-0.0666, -0.4666}, {-0.0666, 0.4666}, {0.0666, 0.4666}, {0.0666, -0.4666}};
    constexpr std::pair<double, double> kArrow[] = {{0, -0.0666},  {0, 0.0666},   {0.2, 0.0666},
                                                    {0.2, 0.1333}, {0.3333, 0.0}, {0.2, -0.1333},
                                                    {0.2, -0.0666}};
    drawOutline(kBar, 0, 0);
    for (const auto& [x, z] : {std::pair{0.1333, 0.0}, {-0.4666, -0.3333}, {-0.4666, 0.0}, {-0.4666, 0.3333}})
        drawOutline(kArrow, x, z);
}

/// In the palette of dormant colours; 0 where the shape's own colour is due.
unsigned colorIndex(M3dView::DisplayStatus status) {
    switch (status) {
    case M3dView::kActive: return 15;
    case M3dView::kTemplate: return 2;
    case M3dView::kActiveTemplate: return 19;
    case M3dView::kLead: return 18;
    case M3dView::kActiveAffected: return 8;
    default: return 0;
    }
}

} // namespace

void boundingObject::draw(M3dView& view, const MDagPath&, M3dView::DisplayStyle,
                          M3dView::DisplayStatus status) {
    const MObject self = thisMObject();
    const Shape shape = readShape(self);
    unsigned index = colorIndex(status);
    view.beginGL();
    glPushAttrib(0xFFFFF);
    if (index != 0) {
        view.setDrawColor(index, M3dView::kDormantColors);
    } else {
        glColor4f(MPlug(self, displayColorR).asFloat(), MPlug(self, displayColorG).asFloat(),
                  MPlug(self, displayColorB).asFloat(), 1);
        index = 1;
    }
    switch (shape.kind) {
    case vesk::volume::kSphere: drawSphere(vertex); break;
    case vesk::volume::kCube: drawCube(1); break;
    case vesk::volume::kCapsule: drawCapsule(shape.capsule); break;
    default: drawCube(0.5); drawCloudIcon();
    }
    // The spheres of a cloud have the colour of the palette always, never their own nor the shape's: artists
    // tell a selected cloud by it.
    eachCloudPoint(shape, [&](const MPoint& center, double radius) {
        if (radius == 0) return;
        view.setDrawColor(index, M3dView::kDormantColors);
        drawSphere([&](double x, double y, double z) {
            const MVector arm = MVector(x, y, z) * radius * shape.worldToLocal;
            vertex(center.x + arm.x, center.y + arm.y, center.z + arm.z);
        });
    });
    glPopAttrib();
    view.endGL();
}

MBoundingBox boundingObject::boundingBox() const {
    const Shape shape = readShape(thisMObject());
    const auto& c = shape.capsule;
    switch (shape.kind) {
    case vesk::volume::kSphere:
    case vesk::volume::kCube: return {MPoint(-1, -1, -1), MPoint(1, 1, 1)};
    case vesk::volume::kCapsule: {
        const double x = std::max(c.topScale.x, c.bottomScale.x);
        const double z = std::max(c.topScale.z, c.bottomScale.z);
        return {MPoint(-x, -(c.bottomScale.y + c.bottomOffset), -z),
                MPoint(x, c.topScale.y + c.topOffset, z)};
    }
    default: break;
    }
    MBoundingBox box(MPoint(-0.5, -0.5, -0.5), MPoint(0.5, 0.5, 0.5));
    eachCloudPoint(shape, [&](const MPoint& center, double radius) {
        const MVector reach(radius, radius, radius);
        box.expand(center - reach);
        box.expand(center + reach);
    });
    return box;
}
