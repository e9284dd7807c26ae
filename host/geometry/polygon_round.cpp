// The shapes that are rings of vertices round an axis.

#include "host/geometry/polygon_parts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vesk::geom {

namespace {

constexpr double pi = std::numbers::pi;

/// A row of UVs along a ring: its first id, and whether it ends in a seam (one more than the ring's places).
struct UvRow {
    int first;
    bool seam;
};

/// Collects rings from the bottom up, then turns them into faces. See `polygon_primitives.h` for the order.
class RingStack {
  public:
    explicit RingStack(int around) : around_(around) {}

    /// A hard ring is a rim.
    void addRing(double radius, double height, bool hard = false) {
        for (int j = 0; j < around_; ++j) {
            const double angle = 2.0 * pi * (j + 1) / around_;
            parts_.points.emplace_back(radius * std::cos(angle), height, -radius * std::sin(angle));
        }
        hardRings_.push_back(hard);
    }
    int addPole(double height) {
        parts_.points.emplace_back(0.0, height, 0.0);
        return parts_.vertexCount() - 1;
    }

    UvRow addSeamRow(double u0, double u1, double v) {
        const UvRow row{parts_.uvCount(), true};
        for (int j = 0; j <= around_; ++j)
            parts_.addUv(u0 + (u1 - u0) * j / around_, v);
        return row;
    }
    /// A circle of the cap's map; the caps are mapped as seen from outside.
    UvRow addCapRow(double centreV, double radius, bool top) {
        const UvRow row{parts_.uvCount(), false};
        for (int j = 0; j < around_; ++j) {
            const double angle = 2.0 * pi * (j + 1) / around_;
            parts_.addUv(0.5 + radius * std::cos(angle),
                         centreV + (top ? radius : -radius) * std::sin(angle));
        }
        return row;
    }
    /// UVs of a pole: one per triangle, between the places of its ring.
    int addPoleUvs(double u0, double u1, double v) {
        const int first = parts_.uvCount();
        for (int j = 0; j < around_; ++j)
            parts_.addUv(u0 + (u1 - u0) * (j + 0.5) / around_, v);
        return first;
    }
    int addUv(double u, double v) {
        parts_.addUv(u, v);
        return parts_.uvCount() - 1;
    }

    void addRingEdges() {
        for (int ring = 0; ring < ringCount(); ++ring) {
            for (int j = 0; j < around_; ++j)
                parts_.addEdge(at(ring, j), at(ring, j + 1), hardRings_[ring]);
        }
    }
    /// Edges from each ring to the next, from the last to the first too if `closed`.
    void addRisingEdges(bool closed) {
        for (int ring = 0; ring + (closed ? 0 : 1) < ringCount(); ++ring) {
            for (int j = 0; j < around_; ++j)
                parts_.addEdge(at(ring, j), at((ring + 1) % ringCount(), j), false);
        }
    }
    void addPoleEdges(int pole, bool top) {
        for (int j = 0; j < around_; ++j) {
            if (top) {
                parts_.addEdge(at(ringCount() - 1, j), pole, false);
            } else {
                parts_.addEdge(pole, at(0, j), false);
            }
        }
    }

    void addStrip(int lower, UvRow lowerUvs, UvRow upperUvs) {
        const int upper = (lower + 1) % ringCount();
        for (int j = 0; j < around_; ++j) {
            const int vertices[] = {at(lower, j), at(lower, j + 1), at(upper, j + 1), at(upper, j)};
            const int uvs[] = {uvAt(lowerUvs, j), uvAt(lowerUvs, j + 1), uvAt(upperUvs, j + 1),
                               uvAt(upperUvs, j)};
            parts_.addFace(vertices, uvs);
        }
    }
    /// Triangles from the first ring down, or from the last ring up, to a pole. `poleUvStep` 1: one UV per
    /// triangle from `poleUv` on; 0: the same for all.
    void addFan(int pole, bool top, UvRow ringUvs, int poleUv, int poleUvStep) {
        const int ring = top ? ringCount() - 1 : 0;
        for (int j = 0; j < around_; ++j) {
            const int left = top ? j : j + 1;
            const int right = top ? j + 1 : j;
            const int vertices[] = {at(ring, left), at(ring, right), pole};
            const int uvs[] = {uvAt(ringUvs, left), uvAt(ringUvs, right), poleUv + poleUvStep * j};
            parts_.addFace(vertices, uvs);
        }
    }
    /// One n-gon; at the bottom it begins at place 0 and runs backwards.
    void addLid(bool top, UvRow ringUvs) {
        const int ring = top ? ringCount() - 1 : 0;
        std::vector<int> vertices;
        std::vector<int> uvs;
        for (int j = 0; j < around_; ++j) {
            const int place = top ? j : around_ - j;
            vertices.push_back(at(ring, place));
            uvs.push_back(uvAt(ringUvs, place));
        }
        parts_.addFace(vertices, uvs);
    }

    int ringCount() const { return static_cast<int>(hardRings_.size()); }
    MeshResult finish(const MVector& axis) const { return parts_.finish(axis, false); }

  private:
    int at(int ring, int place) const { return ring * around_ + place % around_; }
    int uvAt(UvRow row, int place) const { return row.first + (row.seam ? place : place % around_); }

    int around_;
    std::vector<bool> hardRings_;
    PolygonParts parts_;
};

} // namespace

MeshResult makeSphere(const SphereShape& shape) {
    const int around = std::max(shape.subdivisionsAxis, 3);
    const int high = std::max(shape.subdivisionsHeight, 3);
    if (Outcome fits = checkFaceCount("sphere", double(around) * high); !fits)
        return refused(std::move(fits));
    RingStack stack(around);
    std::vector<UvRow> rows;
    for (int k = 1; k < high; ++k) {
        const double angle = pi * k / high;
        stack.addRing(shape.radius * std::sin(angle), -shape.radius * std::cos(angle));
        rows.push_back(stack.addSeamRow(0.0, 1.0, double(k) / high));
    }
    const int bottom = stack.addPole(-shape.radius);
    const int top = stack.addPole(shape.radius);
    const int bottomUv = stack.addPoleUvs(0.0, 1.0, 0.0);
    const int topUv = stack.addPoleUvs(0.0, 1.0, 1.0);
    stack.addRingEdges();
    stack.addRisingEdges(false);
    stack.addPoleEdges(bottom, false);
    stack.addPoleEdges(top, true);
    for (int k = 0; k + 1 < stack.ringCount(); ++k)
        stack.addStrip(k, rows[k], rows[k + 1]);
    stack.addFan(bottom, false, rows.front(), bottomUv, 1);
    stack.addFan(top, true, rows.back(), topUv, 1);
    return stack.finish(shape.axis);
}

namespace {

/// What cylinder and cone have in common: a cap below, walls, and a cap or a point above.
class Column {
  public:
    /// Where the walls and the caps lie in the map.
    struct Map {
        double wallU0, wallU1, wallV0, wallV1;
        double capRadius, bottomV, topV;
    };

    Column(const CylinderShape& shape, const Map& map, bool pointed)
        : shape_(shape), map_(map), pointed_(pointed), around_(std::max(shape.subdivisionsAxis, 3)),
          high_(std::max(shape.subdivisionsHeight, 1)), caps_(std::max(shape.subdivisionsCaps, 0)),
          stack_(around_) {}

    MeshResult make(const char* name) {
        const double faces = double(around_) * (double(high_) + 2.0 * caps_);
        if (Outcome fits = checkFaceCount(name, faces); !fits) return refused(std::move(fits));
        addRings();
        const int bottom = caps_ > 0 ? stack_.addPole(-0.5 * shape_.height) : -1;
        const int top = caps_ > 0 || pointed_ ? stack_.addPole(0.5 * shape_.height) : -1;
        const int bottomUv = caps_ > 0 ? stack_.addUv(0.5, map_.bottomV) : -1;
        stack_.addRingEdges();
        stack_.addRisingEdges(false);
        if (bottom >= 0) stack_.addPoleEdges(bottom, false);
        if (top >= 0) stack_.addPoleEdges(top, true);
        for (int ring = 0; ring + 1 < stack_.ringCount(); ++ring)
            stack_.addStrip(ring, upwards_[ring], downwards_[ring + 1]);
        if (bottom >= 0) {
            stack_.addFan(bottom, false, downwards_.front(), bottomUv, 0);
        } else {
            stack_.addLid(false, downwards_.front());
        }
        if (pointed_) {
            const int first = stack_.addPoleUvs(map_.wallU0, map_.wallU1, map_.wallV1);
            stack_.addFan(top, true, upwards_.back(), first, 1);
        } else if (top >= 0) {
            stack_.addFan(top, true, upwards_.back(), stack_.addUv(0.5, map_.topV), 0);
        } else {
            stack_.addLid(true, upwards_.back());
        }
        return stack_.finish(shape_.axis);
    }

  private:
    /// Every ring has a UV row for the faces below it and one for those above, the same but at the rims.
    void addRing(double radius, double height, bool hard, UvRow below, UvRow above) {
        stack_.addRing(radius, height, hard);
        downwards_.push_back(below);
        upwards_.push_back(above);
    }
    void addCapRing(int step, bool top) {
        const double share = double(step) / caps_;
        const UvRow row = stack_.addCapRow(top ? map_.topV : map_.bottomV, share * map_.capRadius, top);
        addRing(share * shape_.radius, (top ? 0.5 : -0.5) * shape_.height, false, row, row);
    }
    UvRow wallRow(int step) {
        return stack_.addSeamRow(map_.wallU0, map_.wallU1,
                                 map_.wallV0 + (map_.wallV1 - map_.wallV0) * step / high_);
    }

    void addRings() {
        for (int step = 1; step < caps_; ++step)
            addCapRing(step, false);
        const UvRow bottomRim = stack_.addCapRow(map_.bottomV, map_.capRadius, false);
        addRing(shape_.radius, -0.5 * shape_.height, true, bottomRim, wallRow(0));
        for (int step = 1; step < high_; ++step) {
            const double share = double(step) / high_;
            const UvRow row = wallRow(step);
            addRing(pointed_ ? shape_.radius * (1.0 - share) : shape_.radius, (share - 0.5) * shape_.height,
                    false, row, row);
        }
        if (pointed_) return;
        const UvRow topWall = wallRow(high_);
        addRing(shape_.radius, 0.5 * shape_.height, true, topWall,
                stack_.addCapRow(map_.topV, map_.capRadius, true));
        for (int step = caps_ - 1; step > 0; --step)
            addCapRing(step, true);
    }

    const CylinderShape& shape_;
    const Map& map_;
    bool pointed_;
    int around_, high_, caps_;
    RingStack stack_;
    std::vector<UvRow> downwards_, upwards_;
};

constexpr Column::Map cylinderMap{0.375, 0.625, 0.3125, 0.6875, 0.15625, 0.15625, 0.84375};
constexpr Column::Map coneMap{0.25, 0.75, 0.5, 1.0, 0.25, 0.25, 1.0};

} // namespace

MeshResult makeCylinder(const CylinderShape& shape) {
    return Column(shape, cylinderMap, false).make("cylinder");
}

MeshResult makeCone(const ConeShape& shape) {
    const CylinderShape column{shape.radius,           shape.height,
                               shape.subdivisionsAxis, shape.subdivisionsHeight,
                               shape.subdivisionsCaps, shape.axis};
    return Column(column, coneMap, true).make("cone");
}

MeshResult makeTorus(const TorusShape& shape) {
    const int around = std::max(shape.subdivisionsAxis, 3);
    const int section = std::max(shape.subdivisionsHeight, 3);
    if (Outcome fits = checkFaceCount("torus", double(around) * section); !fits)
        return refused(std::move(fits));
    RingStack stack(around);
    std::vector<UvRow> rows;
    for (int k = 0; k <= section; ++k) {
        const double angle = 2.0 * pi * k / section;
        if (k < section)
            stack.addRing(shape.radius - shape.sectionRadius * std::cos(angle),
                          -shape.sectionRadius * std::sin(angle));
        rows.push_back(stack.addSeamRow(0.0, 1.0, double(k) / section));
    }
    stack.addRingEdges();
    stack.addRisingEdges(true);
    for (int k = 0; k < section; ++k)
        stack.addStrip(k, rows[k], rows[k + 1]);
    return stack.finish(shape.axis);
}

} // namespace vesk::geom
