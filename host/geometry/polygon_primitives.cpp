// The flat-sided shapes, and what all shapes share.

#include "host/geometry/polygon_primitives.h"

#include "host/geometry/polygon_parts.h"

#include <maya/MQuaternion.h>

#include <algorithm>

namespace vesk::geom {

namespace {

/// Points turned by the shortest rotation from y to `axis`.
std::vector<MFloatVector> turned(const std::vector<MVector>& points, const MVector& axis) {
    const MVector up = axis.normal();
    std::vector<MFloatVector> result;
    result.reserve(points.size());
    if (up == MVector::yAxis || up == MVector::zero) {
        for (const MVector& p : points)
            result.emplace_back(p);
    } else if (up == MVector::yNegAxis) {
        for (const MVector& p : points)
            result.emplace_back(MVector(p.x, -p.y, -p.z));
    } else {
        const MQuaternion rotation = MVector::yAxis.rotateTo(up);
        for (const MVector& p : points)
            result.emplace_back(p.rotateBy(rotation));
    }
    return result;
}

} // namespace

MeshResult refused(Outcome outcome) {
    MeshResult result;
    result.outcome = std::move(outcome);
    return result;
}

Outcome checkFaceCount(const char* shape, double faces) {
    if (faces <= maxPrimitiveFaces) return {};
    return Outcome::fail(std::string(shape) + ": too many subdivisions, the limit is " +
                         std::to_string(maxPrimitiveFaces) + " faces");
}

MeshResult PolygonParts::finish(const MVector& axis, bool restHard) const {
    MeshTopologyResult topology = MeshTopology::fromFacesAndEdges(vertexCount(), edges, counts, connects);
    if (!topology) return refused(topology.outcome);
    MeshResult result = Mesh::create(topology.topology, turned(points, axis));
    std::vector<std::uint8_t> flags = hard;
    flags.resize(static_cast<std::size_t>(result.mesh.edgeCount()), restHard ? 1 : 0);
    Outcome& outcome = result.outcome;
    if (outcome) outcome = result.mesh.setHardEdges(std::move(flags));
    if (outcome) outcome = result.mesh.setUvs(0, u, v);
    if (outcome) outcome = result.mesh.assignUvs(0, counts, uvIds);
    return result;
}

MeshResult makePlane(const PlaneShape& shape) {
    const int across = std::max(shape.subdivisionsWidth, 1);
    const int along = std::max(shape.subdivisionsHeight, 1);
    if (Outcome fits = checkFaceCount("plane", double(across) * along); !fits)
        return refused(std::move(fits));
    PolygonParts parts;
    const int row = across + 1;
    for (int j = 0; j <= along; ++j) {
        for (int i = 0; i <= across; ++i) {
            const double s = double(i) / across;
            const double t = double(j) / along;
            const int vertex = parts.vertexCount();
            parts.points.emplace_back((s - 0.5) * shape.width, 0.0, (0.5 - t) * shape.height);
            parts.addUv(s, t);
            if (i < across) parts.addEdge(vertex, vertex + 1, true);
            if (j < along) parts.addEdge(vertex, vertex + row, true);
        }
    }
    for (int j = 0; j < along; ++j) {
        for (int i = 0; i < across; ++i) {
            const int v = j * row + i;
            const int loop[] = {v, v + 1, v + row + 1, v + row};
            parts.addFace(loop, loop);
        }
    }
    return parts.finish(shape.axis, true);
}

namespace {

/// Builds a cube side by side; see `CubeShape` for the order of everything.
class CubeMaker {
  public:
    explicit CubeMaker(const CubeShape& shape)
        : width_(std::max(shape.subdivisionsWidth, 1)), height_(std::max(shape.subdivisionsHeight, 1)),
          depth_(std::max(shape.subdivisionsDepth, 1)), rows_(2.0 * (double(height_) + depth_)),
          shape_(shape) {}

    MeshResult make() {
        const double faces = rows_ * width_ + 2.0 * height_ * double(depth_);
        if (Outcome fits = checkFaceCount("cube", faces); !fits) return refused(std::move(fits));
        addStrip();
        addSide(width_, 1.0, 0.625, 0.875);
        addSide(0, -1.0, 0.125, 0.375);
        return parts_.finish(shape_.axis, true);
    }

  private:
    int rows() const { return static_cast<int>(rows_); }
    int rowVertex(int row, int place) const { return row % rows() * (width_ + 1) + place; }
    int rowUv(int row, int place) const { return row * (width_ + 1) + place; }

    /// Where a row lies: share of the height from below and of the depth from the back, and its v.
    struct RowPlace {
        double up, front, v;
    };
    RowPlace placeOf(int row) const {
        if (row <= height_) return {share(row, height_), 1.0, 0.25 * share(row, height_)};
        row -= height_;
        if (row <= depth_) return {1.0, 1.0 - share(row, depth_), 0.25 + 0.25 * share(row, depth_)};
        row -= depth_;
        if (row <= height_) return {1.0 - share(row, height_), 0.0, 0.5 + 0.25 * share(row, height_)};
        row -= height_;
        return {0.0, share(row, depth_), 0.75 + 0.25 * share(row, depth_)};
    }
    static double share(int step, int steps) { return double(step) / steps; }
    MVector pointAt(double right, double up, double front) const {
        return {(right - 0.5) * shape_.width, (up - 0.5) * shape_.height, (front - 0.5) * shape_.depth};
    }

    void addStrip() {
        for (int r = 0; r <= rows(); ++r) {
            const RowPlace place = placeOf(r);
            for (int i = 0; i <= width_; ++i) {
                parts_.addUv(0.375 + 0.25 * share(i, width_), place.v);
                if (r < rows()) parts_.points.push_back(pointAt(share(i, width_), place.up, place.front));
            }
        }
        for (int r = 0; r < rows(); ++r) {
            for (int i = 0; i < width_; ++i)
                parts_.addEdge(rowVertex(r, i), rowVertex(r, i + 1), true);
        }
        for (int r = 0; r < rows(); ++r) {
            for (int i = 0; i <= width_; ++i)
                parts_.addEdge(rowVertex(r, i), rowVertex(r + 1, i), true);
        }
        for (int r = 0; r < rows(); ++r) {
            for (int i = 0; i < width_; ++i) {
                const int vertices[] = {rowVertex(r, i), rowVertex(r, i + 1), rowVertex(r + 1, i + 1),
                                        rowVertex(r + 1, i)};
                const int uvs[] = {rowUv(r, i), rowUv(r, i + 1), rowUv(r + 1, i + 1), rowUv(r + 1, i)};
                parts_.addFace(vertices, uvs);
            }
        }
    }

    /// The row of the strip that meets a side's border: `front` and `up` count steps from the back and from
    /// below.
    int borderRow(int up, int front) const {
        if (front == depth_) return up;
        if (up == height_) return height_ + depth_ - front;
        if (front == 0) return 2 * height_ + depth_ - up;
        return 2 * height_ + depth_ + front;
    }

    /// The side at the strip's column `place`, +x or -x by `sign`, as a grid: columns to the right as seen
    /// from outside, rows upwards.
    void addSide(int place, double sign, double u0, double u1) {
        const int firstVertex = parts_.vertexCount();
        const int firstUv = parts_.uvCount();
        // Seen from outside, the right side has the front on its left.
        const auto frontSteps = [&](int column) { return sign > 0 ? depth_ - column : column; };
        const int seam = sign > 0 ? 0 : depth_;
        for (int j = 1; j < height_; ++j) {
            for (int c = 1; c < depth_; ++c)
                parts_.points.push_back(
                    pointAt(sign > 0 ? 1.0 : 0.0, share(j, height_), share(frontSteps(c), depth_)));
        }
        for (int j = 0; j <= height_; ++j) {
            for (int c = 0; c <= depth_; ++c) {
                if (c != seam) parts_.addUv(u0 + (u1 - u0) * share(c, depth_), 0.25 * share(j, height_));
            }
        }
        const auto vertexAt = [&](int j, int c) {
            const bool inside = j > 0 && j < height_ && c > 0 && c < depth_;
            if (inside) return firstVertex + (j - 1) * (depth_ - 1) + c - 1;
            return rowVertex(borderRow(j, frontSteps(c)), place);
        };
        const auto uvAt = [&](int j, int c) {
            if (c == seam) return rowUv(j, place);
            return firstUv + j * depth_ + c - (c > seam ? 1 : 0);
        };
        for (int j = 0; j < height_; ++j) {
            for (int c = 0; c < depth_; ++c) {
                const int vertices[] = {vertexAt(j, c), vertexAt(j, c + 1), vertexAt(j + 1, c + 1),
                                        vertexAt(j + 1, c)};
                const int uvs[] = {uvAt(j, c), uvAt(j, c + 1), uvAt(j + 1, c + 1), uvAt(j + 1, c)};
                parts_.addFace(vertices, uvs);
            }
        }
    }

    int width_, height_, depth_; ///< subdivisions
    double rows_;                ///< of the strip; a double until it is known to be small enough
    const CubeShape& shape_;
    PolygonParts parts_;
};

} // namespace

MeshResult makeCube(const CubeShape& shape) { return CubeMaker(shape).make(); }

} // namespace vesk::geom
