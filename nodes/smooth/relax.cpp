#include "nodes/smooth/relax.h"

#include "nodes/common/arrays.h"
#include "parallel/loops.h"

#include <algorithm>
#include <cstring>

namespace vesk::nodes {

namespace {

constexpr std::size_t kGrain = 8192;

/// Half of a point: x and y, or z and w.
using Pair [[gnu::vector_size(16)]] = double;

Pair loaded(const double* numbers) {
    Pair pair;
    std::memcpy(&pair, numbers, sizeof pair);
    return pair;
}

void averageRun(const Links& neighbors, std::span<const char> moves, const double* from, double* to,
                std::size_t begin, std::size_t end) {
    for (std::size_t v = begin; v < end; ++v) {
        const Pair ownXY = loaded(from + 4 * v), ownZW = loaded(from + 4 * v + 2);
        Pair xy = ownXY, zw = ownZW;
        if (moves[v]) {
            const auto around = neighbors.of(v);
            Pair sumXY{0, 0}, sumZW{0, 0};
            for (const int neighbor : around) {
                const double* point = from + 4 * static_cast<std::size_t>(neighbor);
                sumXY += loaded(point);
                sumZW += loaded(point + 2);
            }
            const auto count = static_cast<double>(around.size() + 1);
            sumXY = (sumXY + ownXY) / count;
            sumZW = (sumZW + ownZW) / count;
            // Zero for finite numbers alone.
            const Pair nothing = sumXY - sumXY;
            if (nothing[0] + nothing[1] + (sumZW[0] - sumZW[0]) == 0) {
                xy = sumXY;
                zw = Pair{sumZW[0], ownZW[1]};
            }
        }
        std::memcpy(to + 4 * v, &xy, sizeof xy);
        std::memcpy(to + 4 * v + 2, &zw, sizeof zw);
    }
}

} // namespace

void averagePass(const Links& neighbors, std::span<const char> moves, std::span<const MPoint> from,
                 std::span<MPoint> to) {
    const double* in = flat(from).data();
    double* out = flat(to).data();
    parallel::inPieces(from.size(), kGrain, [&](std::size_t begin, std::size_t end) {
        averageRun(neighbors, moves, in, out, begin, end);
    });
}

void blendWithOriginal(std::span<MPoint> points, const float* originals, std::span<const char> isChosen,
                       float envelope, std::span<const float> weights) {
    parallel::inPieces(points.size(), kGrain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t v = begin; v < end; ++v) {
            if (!isChosen[v]) continue;
            const float share = (v < weights.size() ? weights[v] : 1.0F) * envelope;
            const float* original = originals + 3 * v;
            points[v] = towards(MPoint(static_cast<double>(original[0]), static_cast<double>(original[1]),
                                       static_cast<double>(original[2])),
                                points[v], static_cast<double>(share));
        }
    });
}

MPoint towards(const MPoint& point, const MPoint& hit, double by) {
    const double rest = 1 - by;
    return MPoint(hit.x * by + point.x * rest, hit.y * by + point.y * rest, hit.z * by + point.z * rest,
                  point.w);
}

Links verticesOfFacesAround(MeshLinks& mesh) {
    const Links &faces = mesh.faceVertices(), &facesOfVertex = mesh.vertexFaces();
    Links links;
    links.start.reserve(facesOfVertex.start.size());
    links.ids.reserve(3 * faces.ids.size());
    for (std::size_t v = 0; v < facesOfVertex.count(); ++v) {
        for (const int face : facesOfVertex.of(v)) {
            const auto loop = faces.of(face);
            links.ids.insert(links.ids.end(), loop.begin(), loop.end());
        }
        const auto first = links.ids.begin() + links.start.back();
        std::sort(first, links.ids.end());
        links.ids.erase(std::unique(first, links.ids.end()), links.ids.end());
        links.endList();
    }
    return links;
}

} // namespace vesk::nodes
