#include "nodes/retarget/binding.h"

#include "nodes/common/arrays.h"
#include "nodes/common/mesh_places.h"
#include "nodes/common/mesh_queries.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshVertex.h>

#include <algorithm>
#include <cfloat>

namespace vesk::nodes {

namespace {

constexpr double farthest = 999999999.9;
constexpr float longestRay = 1e9F;

/// What "closest uv" goes by: the vertex's own UV and the first of its faces.
struct VertexUv {
    float2 uv = {0, 0};
    int face = -1;
    bool isMapped = false;
};

std::vector<VertexUv> vertexUvs(MObject& mesh, const MString* uvSet) {
    std::vector<VertexUv> vertices;
    MIntArray faces;
    for (MItMeshVertex vertex(mesh); !vertex.isDone(); vertex.next()) {
        VertexUv& read = vertices.emplace_back();
        if (!vertex.getConnectedFaces(faces) || faces.length() == 0) continue;
        read.face = faces[0];
        read.isMapped = vertex.getUV(read.uv, uvSet) == MS::kSuccess;
    }
    return vertices;
}

/// The least of the weights that the corners of the triangle have at `p`, which lies in its plane: below 0
/// outside.
double leastWeight(const MVector& p, const TriangleCorners& corners) {
    const MVector ab = corners[1] - corners[0], ac = corners[2] - corners[0], ap = p - corners[0];
    const MVector across = ab ^ ac;
    const double area = across * across;
    if (!(area > 0)) return -DBL_MAX;
    const double b = ((ap ^ ac) * across) / area, c = ((ab ^ ap) * across) / area;
    return std::min({1 - b - c, b, c});
}

/// The triangle of the face that the point lies on.
int triangleAt(const MFnMesh& mesh, int face, const MVector& point) {
    const float* points = mesh.getRawPoints();
    double most = -DBL_MAX;
    int found = 0, vertices[3];
    for (int triangle = 0; mesh.getPolygonTriangleVertices(face, triangle, vertices); ++triangle) {
        TriangleCorners corners;
        for (std::size_t k = 0; k < 3; ++k)
            corners[k] = MVector(points + 3 * static_cast<std::ptrdiff_t>(vertices[k]));
        const double least = leastWeight(point, corners);
        if (!(least > most)) continue;
        most = least;
        found = triangle;
    }
    return found;
}

class Binder {
  public:
    Binder(std::span<const MPoint> points, MObject& reference, const BindingSettings& settings)
        : settings_(settings), referenceObject_(reference), reference_(reference), points_(points),
          places_(points.size(), Place{-1, -1, {}}), hasUv_(points.size()) {}

    Binding run(MObject& geometry) {
        if (settings_.mode == RetargetMode::kRayProjection) projectRays(geometry);
        if (settings_.mode == RetargetMode::kClosestUv) findUvs(geometry);
        findNearest();
        return record();
    }

  private:
    void projectRays(MObject& geometry) {
        MFloatVectorArray normals;
        MFnMesh(geometry).getVertexNormals(false, normals, MSpace::kWorld);
        for (MFloatVector& normal : elements(normals))
            normal *= settings_.reverseNormals ? -1.0F : 1.0F;
        std::vector<MFloatPoint> sources(points_.begin(), points_.end());
        const auto hits = firstHits(reference_, sources, elements(normals), {longestRay, false, 1e-6F});
        for (std::size_t i = 0; i < hits.size(); ++i) {
            if (hits[i]) places_[i] = placeOf(hits[i]);
        }
    }

    /// The point of the reference that has a vertex's UV lies on the vertex's own face, so that no other is
    /// nearer; others that touch the face there may have other UVs.
    void findUvs(MObject& geometry) {
        vertices_ = vertexUvs(geometry, settings_.uvSet);
        inQueryPieces(vertices_.size(), [&](std::size_t begin, std::size_t end) {
            MPoint point;
            for (std::size_t i = begin; i < end; ++i) {
                const VertexUv& vertex = vertices_[i];
                if (vertex.isMapped && reference_.getPointAtUV(vertex.face, point, vertex.uv, MSpace::kWorld,
                                                               settings_.uvSet, settings_.tolerance)) {
                    places_[i] = {vertex.face, triangleAt(reference_, vertex.face, MVector(point)), {}};
                    hasUv_[i] = 1;
                }
            }
        });
    }

    /// For all points that have no place yet.
    void findNearest() {
        std::vector<std::size_t> open;
        std::vector<MPoint> from;
        for (std::size_t i = 0; i < places_.size(); ++i) {
            if (places_[i].face >= 0) continue;
            open.push_back(i);
            from.push_back(points_[i]);
        }
        const auto nearest = nearestPoints(referenceObject_, MMatrix(), from, farthest);
        for (std::size_t k = 0; k < open.size(); ++k) {
            if (nearest[k]) places_[open[k]] = placeOf(nearest[k]);
        }
    }

    template <class Found>
    static Place placeOf(const Found& found) {
        const double u = static_cast<double>(found.u), v = static_cast<double>(found.v);
        return {found.face, found.triangle, {u, v, 1 - u - v}};
    }

    Binding record() const {
        const PlaceUvs uvs(reference_, settings_.uvSet);
        Binding binding;
        bool isAnyBound = false;
        std::array<double, 2>
            uv{}; // kept from one point to the next: "closest uv" reads that of the one before
        for (std::size_t i = 0; i < places_.size(); ++i) {
            const Place& place = places_[i];
            const bool isBound = place.face >= 0;
            isAnyBound |= isBound;
            if (hasUv_[i]) {
                uv = {static_cast<double>(vertices_[i].uv[0]), static_cast<double>(vertices_[i].uv[1])};
            } else if (isBound && (vertices_.empty() || vertices_[i].face >= 0)) {
                uv = uvs.at(place);
            }
            binding.uvs.insert(binding.uvs.end(), uv.begin(), uv.end());
            binding.faces.push_back(place.face);
            const auto vertices = isBound ? verticesAt(reference_, place) : std::array<int, 3>{-1, -1, -1};
            binding.vertices.insert(binding.vertices.end(), vertices.begin(), vertices.end());
        }
        return isAnyBound ? binding : Binding();
    }

    const BindingSettings& settings_;
    MObject& referenceObject_;
    const MFnMesh reference_;
    const std::span<const MPoint> points_;
    std::vector<Place> places_;
    std::vector<VertexUv> vertices_; ///< in mode "closest uv", else empty
    std::vector<char> hasUv_;        ///< whether the place was found by the vertex's UV
};

} // namespace

Binding bindPoints(MObject& geometry, std::span<const MPoint> points, MObject& reference,
                   const BindingSettings& settings) {
    return Binder(points, reference, settings).run(geometry);
}

} // namespace vesk::nodes
