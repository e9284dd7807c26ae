#include "host/geometry/nurbs_tessellate.h"

#include <array>
#include <utility>

namespace vesk::geom {

namespace {

/// Vertices and cells along one direction.
struct Side {
    int vertices, cells;

    explicit Side(const NurbsBasis& basis)
        : vertices(basis.distinctCvCount()), cells(basis.isPeriodic() ? vertices : vertices - 1) {}
    int after(int i) const { return (i + 1) % vertices; }
    float fraction(int i) const { return static_cast<float>(i) / static_cast<float>(cells); }
};

void addCell(std::array<int, 4> corners, const ControlNetOptions& options, std::vector<int>& counts,
             std::vector<int>& connects) {
    if (!options.matchNormalDir) std::swap(corners[1], corners[3]);
    const auto& [a, b, c, d] = corners;
    if (options.quads) {
        counts.push_back(4);
        connects.insert(connects.end(), {a, b, c, d});
    } else {
        counts.insert(counts.end(), {3, 3});
        connects.insert(connects.end(), {a, b, c, a, c, d});
    }
}

UvSet uvsOf(const Side& u, const Side& v, const std::vector<int>& cornerVertices) {
    UvSet set;
    set.name = "map1";
    for (int i = 0; i < u.vertices; ++i) {
        for (int j = 0; j < v.vertices; ++j) {
            set.u.push_back(u.fraction(i));
            set.v.push_back(v.fraction(j));
        }
    }
    set.ids = cornerVertices;
    return set;
}

} // namespace

Result<Mesh> controlNet(const NurbsSurface& surface, const ControlNetOptions& options) {
    if (surface.empty()) return Outcome::fail("there is no surface to tessellate");
    const Side u(surface.basisU());
    const Side v(surface.basisV());
    std::vector<MFloatVector> points;
    for (const int cv : surface.distinctCvs())
        points.emplace_back(MVector(surface.cvs()[cv]));
    std::vector<int> counts;
    std::vector<int> connects;
    for (int i = 0; i < u.cells; ++i) {
        for (int j = 0; j < v.cells; ++j) {
            const int row = i * v.vertices;
            const int nextRow = u.after(i) * v.vertices;
            addCell({row + j, nextRow + j, nextRow + v.after(j), row + v.after(j)}, options, counts,
                    connects);
        }
    }
    MeshResult made = Mesh::create(std::move(points), counts, connects);
    if (!made) return made.outcome;
    if (Outcome fault = made.mesh.setUvSets({uvsOf(u, v, connects)}, 0); !fault) return fault;
    return std::move(made.mesh);
}

} // namespace vesk::geom
