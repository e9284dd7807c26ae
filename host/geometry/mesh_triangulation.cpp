// Triangles of a mesh's faces.

#include "host/geometry/mesh_cache.h"
#include "host/geometry/polygon_triangulation.h"
#include "parallel/loops.h"

namespace vesk::geom {

namespace {

/// Part of the quad's area by which a triangle may lie the wrong way round before its diagonal counts as
/// outside: what rounding does to corners on one line.
constexpr double outsideShare = 1e-6;

constexpr std::size_t facesPerPiece = 8192;

/// Whether the diagonal from `a` to `c` runs inside the quad, seen along its normal.
bool diagonalInside(const MVector& a, const MVector& b, const MVector& c, const MVector& d,
                    const MVector& areaVector) {
    const double least = -outsideShare * (areaVector * areaVector);
    return ((b - a) ^ (c - a)) * areaVector >= least && ((c - a) ^ (d - a)) * areaVector >= least;
}

/// Of some of a mesh's faces, on one thread.
class Triangulator {
  public:
    Triangulator(const Mesh& mesh, std::vector<TriangleCorners>& triangles)
        : mesh_(mesh), triangles_(triangles) {}

    void run(int begin, int end) {
        for (int f = begin; f < end; ++f) {
            const int size = mesh_.topology().faceSize(f);
            const int start = mesh_.topology().faceStart()[f];
            TriangleCorners* out = triangles_.data() + mesh_.triangleStart(f);
            if (size == 3) {
                out[0] = {start, start + 1, start + 2};
            } else if (size == 4) {
                splitQuad(f, start, out);
            } else {
                splitPolygon(f, start, {out, static_cast<std::size_t>(size - 2)});
            }
        }
    }

  private:
    void splitQuad(int face, int start, TriangleCorners* out) const {
        const auto v = mesh_.topology().verticesOfFace(face);
        const MVector p0 = mesh_.point(v[0]);
        const MVector p1 = mesh_.point(v[1]);
        const MVector p2 = mesh_.point(v[2]);
        const MVector p3 = mesh_.point(v[3]);
        // Half the cross product of the diagonals is the area vector.
        const MVector area = ((p2 - p0) ^ (p3 - p1)) * 0.5;
        if (!diagonalInside(p0, p1, p2, p3, area) && diagonalInside(p1, p2, p3, p0, area)) {
            out[0] = {start + 1, start + 2, start + 3};
            out[1] = {start + 1, start + 3, start};
        } else {
            out[0] = {start, start + 1, start + 2};
            out[1] = {start, start + 2, start + 3};
        }
    }

    void splitPolygon(int face, int start, std::span<TriangleCorners> out) {
        loop_.clear();
        for (const int v : mesh_.topology().verticesOfFace(face))
            loop_.push_back(mesh_.point(v));
        clipper_.split(loop_, mesh_.faceAreaVector(face), out);
        for (TriangleCorners& triangle : out) {
            for (int& corner : triangle)
                corner += start;
        }
    }

    const Mesh& mesh_;
    std::vector<TriangleCorners>& triangles_;
    std::vector<MVector> loop_;
    EarClipper clipper_;
};

} // namespace

const std::vector<TriangleCorners>& Mesh::triangles() const {
    return cache_->triangles.get([this] {
        std::vector<TriangleCorners> triangles(static_cast<std::size_t>(triangleCount()));
        parallel::inPieces(
            static_cast<std::size_t>(faceCount()), facesPerPiece, [&](std::size_t begin, std::size_t end) {
                Triangulator(*this, triangles).run(static_cast<int>(begin), static_cast<int>(end));
            });
        return triangles;
    });
}

std::array<int, 3> Mesh::triangleVertices(int face, int triangle) const {
    const TriangleCorners& corners = triangles()[triangleStart(face) + triangle];
    const auto& vertices = topology_->faceVertices();
    return {vertices[corners[0]], vertices[corners[1]], vertices[corners[2]]};
}

std::array<int, 3> Mesh::triangleLocalCorners(int face, int triangle) const {
    const TriangleCorners& corners = triangles()[triangleStart(face) + triangle];
    const int start = topology_->faceStart()[face];
    return {corners[0] - start, corners[1] - start, corners[2] - start};
}

} // namespace vesk::geom
