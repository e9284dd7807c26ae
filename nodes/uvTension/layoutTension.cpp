#include "nodes/uvTension/layoutTension.h"

#include <maya/MVector.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vesk::nodes {

namespace {

/// What a vertex has of the surface and of the layout.
struct Share {
    double surface = 0, layout = 0;
};

/// The corners of one face.
class Face {
  public:
    Face(const MappedFaces& mesh, std::size_t first, std::size_t count)
        : mesh_(mesh), first_(first), count_(count) {}

    bool isMapped() const {
        const auto uvs = mesh_.uvs.subspan(first_, count_);
        return count_ > 0 && std::none_of(uvs.begin(), uvs.end(), [](int uv) { return uv < 0; });
    }
    std::size_t vertex(std::size_t corner) const {
        return static_cast<std::size_t>(mesh_.vertices[first_ + corner]);
    }

    Share area() const {
        MVector surface;
        double layout = 0;
        for (std::size_t i = 1; i + 1 < count_; ++i) {
            surface += (point(i) - point(0)) ^ (point(i + 1) - point(0));
            const MVector a = uv(i) - uv(0), b = uv(i + 1) - uv(0);
            layout += a.x * b.y - a.y * b.x;
        }
        return {surface.length() / 2, std::abs(layout) / 2};
    }
    /// The two edges at a corner.
    Share edgesAt(std::size_t corner) const {
        const std::size_t next = (corner + 1) % count_, previous = (corner + count_ - 1) % count_;
        return {(point(next) - point(corner)).length() + (point(previous) - point(corner)).length(),
                (uv(next) - uv(corner)).length() + (uv(previous) - uv(corner)).length()};
    }

  private:
    const MPoint& point(std::size_t corner) const { return mesh_.points[vertex(corner)]; }
    MVector uv(std::size_t corner) const {
        const auto id = static_cast<std::size_t>(mesh_.uvs[first_ + corner]);
        return {static_cast<double>(mesh_.us[id]), static_cast<double>(mesh_.vs[id]), 0};
    }

    const MappedFaces& mesh_;
    std::size_t first_, count_;
};

/// The shares of all vertices, and their sum over the faces that are finite.
Share addShares(const MappedFaces& mesh, LayoutMeasure measure, std::vector<Share>& shares) {
    Share all;
    std::size_t first = 0;
    for (const int count : mesh.counts) {
        const Face face(mesh, first, static_cast<std::size_t>(count));
        first += static_cast<std::size_t>(count);
        if (!face.isMapped()) continue;
        const Share area = face.area();
        for (std::size_t corner = 0; corner < static_cast<std::size_t>(count); ++corner) {
            const Share own = measure == LayoutMeasure::Area ? area : face.edgesAt(corner);
            Share& share = shares[face.vertex(corner)];
            share.surface += own.surface;
            share.layout += own.layout;
            if (!std::isfinite(own.surface + own.layout)) continue;
            all.surface += own.surface;
            all.layout += own.layout;
        }
    }
    return all;
}

} // namespace

std::vector<double> layoutTension(const MappedFaces& mesh, LayoutMeasure measure) {
    std::vector<Share> shares(mesh.points.size());
    const Share all = addShares(mesh, measure, shares);
    std::vector<double> tension(shares.size());
    std::transform(shares.begin(), shares.end(), tension.begin(), [&all](const Share& share) {
        const double surface = all.surface > 0 ? share.surface / all.surface : 0;
        const double layout = all.layout > 0 ? share.layout / all.layout : 0;
        // Infinite shares are no measure.
        return std::isfinite(surface + layout) ? std::log2(surface / layout)
                                               : std::numeric_limits<double>::quiet_NaN();
    });
    return tension;
}

} // namespace vesk::nodes
