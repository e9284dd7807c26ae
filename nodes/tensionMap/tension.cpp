#include "nodes/tensionMap/tension.h"

#include "nodes/common/arrays.h"
#include "parallel/loops.h"

#include <algorithm>
#include <cmath>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vesk::nodes {

namespace {

/// A number of the current mesh and the same of the rest mesh.
using Pair [[gnu::vector_size(16)]] = double;

Pair squareRoots(Pair squares) {
#ifdef __SSE2__
    return _mm_sqrt_pd(squares); // without the library's look at the sign, which keeps the two apart
#else
    return Pair{std::sqrt(squares[0]), std::sqrt(squares[1])};
#endif
}

/// A vertex of both meshes, in double precision.
struct Place {
    Pair x, y, z;
    Place(const float* points, const float* restPoints, std::size_t v)
        : x(pair(points[3 * v], restPoints[3 * v])), y(pair(points[3 * v + 1], restPoints[3 * v + 1])),
          z(pair(points[3 * v + 2], restPoints[3 * v + 2])) {}
    static Pair pair(float now, float rest) {
        return Pair{static_cast<double>(now), static_cast<double>(rest)};
    }
};

Pair distances(const Place& a, const Place& b) {
    const Pair x = a.x - b.x, y = a.y - b.y, z = a.z - b.z;
    return squareRoots(x * x + y * y + z * z);
}

/// As `MVector::angle` has it, to the bit.
inline double angleBetween(const Directions& d, std::size_t a, std::size_t b) {
    const double sizes = d.lengths[a] * d.lengths[b];
    if (!(sizes > 0)) return 0;
    const double cosine = MVector(d.directions[a]) * MVector(d.directions[b]) / sizes;
    if (cosine >= 1) return 0; // flat places need no function
    return std::acos(std::max(cosine, -1.0));
}

/// Per vertex of a run the sum of the angles between its direction and those of its neighbours.
std::vector<double> angleSums(std::span<const int> vertices, const Links& neighbors,
                              const Directions& directions) {
    std::vector<double> sums(vertices.size());
    std::vector<double> angles(neighbors.ids.size());
    const int first = vertices.empty() ? 0 : vertices.front();
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const int v = vertices[i];
        double sum = 0;
        for (std::size_t k = neighbors.start[i]; k < neighbors.start[i + 1]; ++k) {
            const int j = neighbors.ids[k];
            // The angle is the same from both sides: where the neighbour came before, it is there already.
            const auto before = static_cast<std::size_t>(j - first);
            std::size_t known = 0;
            if (j >= first && before < i && vertices[before] == j) {
                const auto others = neighbors.of(before);
                known = static_cast<std::size_t>(std::find(others.begin(), others.end(), v) - others.begin());
                known = known < others.size() ? neighbors.start[before] + known + 1 : 0;
            }
            angles[k] = known > 0 ? angles[known - 1]
                                  : angleBetween(directions, static_cast<std::size_t>(v),
                                                 static_cast<std::size_t>(j));
            sum += angles[k];
        }
        sums[i] = sum;
    }
    return sums;
}

} // namespace

std::vector<double> distanceTensions(const TensionRun& run, const float* points, const float* restPoints) {
    std::vector<double> tensions(run.vertices.size());
    for (std::size_t i = 0; i < tensions.size(); ++i) {
        if (run.isSkipped[i]) continue;
        const Place here(points, restPoints, static_cast<std::size_t>(run.vertices[i]));
        const auto neighbors = run.neighbors.of(i);
        Pair sums{0, 0};
        for (const int neighbor : neighbors)
            sums += distances(here, Place(points, restPoints, static_cast<std::size_t>(neighbor)));
        const double current = sums[0], rest = sums[1];
        if (current == 0 || rest == 0) continue;
        tensions[i] = (current - rest) / rest * static_cast<double>(neighbors.size());
    }
    return tensions;
}

Directions::Directions(std::span<const MFloatVector> d) : directions(d), lengths(d.size()) {
    parallel::inPieces(d.size(), 16384, [this](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            lengths[i] = MVector(directions[i]).length();
    });
}

std::vector<double> angleTensions(const TensionRun& run, const Directions& normals,
                                  const Directions& restNormals) {
    std::vector<double> tensions = angleSums(run.vertices, run.neighbors, normals);
    const std::vector<double> rest = angleSums(run.vertices, run.restNeighbors, restNormals);
    for (std::size_t i = 0; i < tensions.size(); ++i) {
        const bool isMeasured = !run.isSkipped[i] && !run.neighbors.of(i).empty();
        tensions[i] = isMeasured ? (tensions[i] - rest[i]) / 3.14159265 : 0;
    }
    return tensions;
}

double weightedTension(double raw, double weight, double mix) {
    const double quantised = truncated(raw * 1000) * 0.001;
    return quantised * weight * mix + (1 - mix) * weight;
}

TensionColors::Rgb TensionColors::of(double tension) const {
    constexpr double kLeast = 0.001;
    constexpr short kGrayscale = 6;
    /// Per coding the channel of the default, of compression and of stretch.
    constexpr std::array<std::array<std::size_t, 3>, kGrayscale> kChannels = {
        {{1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}, {0, 1, 2}, {0, 2, 1}}};
    const auto valueOf = [](const CurveRamp& ramp, double position) {
        return static_cast<double>(ramp.at(static_cast<float>(position))[0]);
    };
    const double stretched = tension * stretchMultiplier, compressed = tension * compressionMultiplier;
    if (coding < 0 || coding >= kGrayscale) {
        double grey = defaultMultiplier;
        if (tension >= kLeast) grey = valueOf(stretch, defaultMultiplier - stretched * 0.5);
        if (tension <= -kLeast) grey = valueOf(compression, defaultMultiplier - compressed * 0.5);
        return {grey, grey, grey};
    }
    const auto& [unmoved, shorter, longer] = kChannels[static_cast<std::size_t>(coding)];
    Rgb rgb{};
    rgb[unmoved] = defaultMultiplier;
    if (tension >= kLeast) {
        rgb[unmoved] = (1 - stretched) * defaultMultiplier;
        rgb[longer] = valueOf(stretch, stretched);
    } else if (tension <= -kLeast) {
        rgb[unmoved] = (1 + compressed) * defaultMultiplier;
        rgb[shorter] = valueOf(compression, -compressed);
    }
    return rgb;
}

} // namespace vesk::nodes
