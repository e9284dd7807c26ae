#include "nodes/group/groupOperations.h"

#include <maya/MItMeshPolygon.h>
#include <maya/MItMeshVertex.h>
#include <maya/MStringArray.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <numbers>
#include <optional>
#include <string_view>
#include <utility>

namespace vesk::nodes {

namespace {

using Settings = GroupOperationSettings;
using Form = GroupGeometry::Form;

void append(std::vector<int>& to, std::span<const int> ids) { to.insert(to.end(), ids.begin(), ids.end()); }

std::optional<long long> unsignedNumber(std::string_view text) {
    long long number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = fault == std::errc() && end == text.data() + text.size() && text[0] != '-';
    return isNumber ? std::optional(number) : std::nullopt;
}

/// Degrees to radians as the contract has them: in single precision, by this number and not the full one.
double radians(float degrees) { return degrees * 0.01746F; }

/// Whether two directions are within an angle. Almost nothing counts as nothing, so that an angle of 0 finds
/// what is parallel; a zero vector is at no angle to anything.
class AngleLimit {
  public:
    explicit AngleLimit(double angle)
        : angle_(angle), cosine_(std::cos(std::clamp(angle, kNothing, std::numbers::pi))) {}

    bool holds(const MVector& a, const MVector& b) const {
        // The arc cosine decides only where the cosine is too near to tell.
        const double sizes = a.length() * b.length(), product = a * b;
        if (product > (cosine_ + kNear) * sizes && sizes > 0) return true;
        if (product < (cosine_ - kNear) * sizes) return false;
        const double angle = a.angle(b);
        return (angle < kNothing ? 0 : angle) <= angle_;
    }

  private:
    static constexpr double kNothing = 0.0001, kNear = 1e-9;
    double angle_, cosine_;
};

/// Indices that count in "Pattern" and "Range": there alone UVs count as UVs.
int patternCount(const Settings& settings, const GroupGeometry& geometry) {
    return settings.kind == GroupKind::kMap && geometry.hasUvs ? geometry.uvCount()
                                                               : geometry.count(settings.kind);
}

std::vector<int> pattern(const Settings& settings, GroupGeometry& geometry) {
    return patternIndices(settings.pattern, patternCount(settings, geometry));
}

std::vector<int> range(const Settings& settings, GroupGeometry& geometry) {
    return rangeIndices(settings.rangeStart, settings.rangeEnd, settings.stepA, settings.stepB,
                        patternCount(settings, geometry));
}

/// What a vertex that passes stands for in the chosen kind.
void takeVertex(const Settings& settings, GroupGeometry& geometry, int vertex, std::vector<int>& taken) {
    switch (settings.kind) {
    case GroupKind::kEdge: return append(taken, geometry.links.vertexEdges().of(vertex));
    case GroupKind::kFace: return append(taken, geometry.links.vertexFaces().of(vertex));
    case GroupKind::kMap: return append(taken, geometry.vertexUvs().of(vertex));
    default: return taken.push_back(vertex);
    }
}

std::vector<int> byDirection(const Settings& settings, GroupGeometry& geometry) {
    std::vector<int> taken;
    if (settings.direction.length() < 0.0001) return taken;
    const bool isFaces = settings.kind == GroupKind::kFace;
    const auto references =
        isFaces ? geometry.faceNormals() : geometry.references(settings.kind, settings.input);
    const AngleLimit limit(radians(settings.spreadAngle));
    for (std::size_t i = 0; i < references.size(); ++i) {
        if (!limit.holds(references[i], settings.direction)) continue;
        const auto index = static_cast<int>(i);
        if (isFaces) {
            taken.push_back(index);
        } else {
            takeVertex(settings, geometry, index, taken);
        }
    }
    return taken;
}

std::vector<int> facesInBetween(const Settings& settings, GroupGeometry& geometry) {
    std::vector<int> taken, around;
    const auto normals = geometry.faceNormals();
    const AngleLimit limit(radians(settings.inBetweenAngle));
    for (int face = 0; face < geometry.links.faceCount(); ++face) {
        bool isFound = false;
        geometry.links.facesAround(face, around);
        for (const int other : around) {
            if (!limit.holds(normals[static_cast<std::size_t>(face)],
                             normals[static_cast<std::size_t>(other)]))
                continue;
            taken.push_back(other);
            isFound = true;
        }
        if (isFound) taken.push_back(face);
    }
    return taken;
}

/// A pass brings in the neighbour, and for points half the index of the vertex itself. The half belongs to
/// curves, whose ribbon has two vertices a CV, but is taken on meshes and surfaces too: scenes are built on
/// the groups that come of it.
std::vector<int> pointsInBetween(const Settings& settings, GroupGeometry& geometry) {
    std::vector<int> taken;
    const auto references = geometry.references(settings.kind, settings.input);
    const AngleLimit limit(radians(settings.inBetweenAngle));
    const auto passes = [&](int a, int b) {
        return limit.holds(references[static_cast<std::size_t>(a)], references[static_cast<std::size_t>(b)]);
    };
    const auto count = static_cast<int>(references.size());
    if (geometry.form == Form::kCurve) {
        for (int cv = 0; cv + 1 < count; ++cv) {
            if (passes(cv, cv + 1)) taken.insert(taken.end(), {cv, cv + 1});
        }
        return taken;
    }
    const bool isPoints = settings.kind != GroupKind::kEdge && settings.kind != GroupKind::kMap;
    for (int vertex = 0; vertex < count; ++vertex) {
        bool isFound = false;
        for (const int other : geometry.links.vertexVertices().of(vertex)) {
            if (!passes(vertex, other)) continue;
            takeVertex(settings, geometry, other, taken);
            isFound = true;
        }
        if (isFound && isPoints) taken.push_back(vertex / 2);
    }
    return taken;
}

std::vector<int> normalOrVelocity(const Settings& settings, GroupGeometry& geometry) {
    if (settings.mode == GroupAngleMode::kDirection) return byDirection(settings, geometry);
    return settings.kind == GroupKind::kFace ? facesInBetween(settings, geometry)
                                             : pointsInBetween(settings, geometry);
}

void neighbours(const Settings& settings, GroupGeometry& geometry, int element, std::vector<int>& out) {
    out.clear();
    switch (settings.kind) {
    case GroupKind::kEdge: return geometry.links.edgesAround(element, out);
    case GroupKind::kFace: return geometry.links.facesAround(element, out);
    case GroupKind::kCurveCV:
        if (element > 0) out.push_back(element - 1);
        if (element + 1 < geometry.count(settings.kind)) out.push_back(element + 1);
        return;
    case GroupKind::kMap:
        if (!geometry.hasUvs) return;
        [[fallthrough]];
    default: return append(out, geometry.links.vertexVertices().of(element));
    }
}

std::vector<int> depth(const Settings& settings, GroupGeometry& geometry) {
    const int count = geometry.count(settings.kind);
    std::vector<int> list = patternIndices(settings.initialComponents, count);
    if (settings.depth <= 0) return list;
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
    list.reserve(static_cast<std::size_t>(count));
    std::vector<char> isThere(static_cast<std::size_t>(count), 0);
    for (const int element : list)
        isThere[static_cast<std::size_t>(element)] = 1;
    std::vector<int> near;
    // What was found in the round before stands behind `done`: each element's neighbours are looked at once.
    std::size_t done = 0;
    for (int round = 0; round < settings.depth && done < list.size() && static_cast<int>(list.size()) < count;
         ++round) {
        const std::size_t end = list.size();
        for (; done < end; ++done) {
            neighbours(settings, geometry, list[done], near);
            for (const int element : near) {
                if (std::exchange(isThere[static_cast<std::size_t>(element)], 1) == 0)
                    list.push_back(element);
            }
        }
    }
    if (settings.kind != GroupKind::kMap || !geometry.hasUvs) {
        // The flags hold them in order.
        list.clear();
        for (int element = 0; element < count; ++element) {
            if (isThere[static_cast<std::size_t>(element)] != 0) list.push_back(element);
        }
        return list;
    }
    std::vector<int> uvs;
    for (const int vertex : list) {
        for (const int uv : geometry.vertexUvs().of(vertex)) {
            if (uv < count) uvs.push_back(uv);
        }
    }
    return uvs;
}

/// UVs of all vertices as points; a vertex without one lies at the origin.
std::vector<MPoint> uvPoints(const GroupGeometry& geometry) {
    std::vector<MPoint> points;
    const MString* set = geometry.uvSet.length() > 0 ? &geometry.uvSet : nullptr;
    for (MItMeshVertex vertex(geometry.mesh); !vertex.isDone(); vertex.next()) {
        float2 uv = {0, 0};
        vertex.getUV(uv, set);
        points.emplace_back(uv[0], uv[1], 0);
    }
    return points;
}

std::vector<int> edgeLength(const Settings& settings, GroupGeometry& geometry) {
    std::vector<int> taken;
    const bool inUvSpace = settings.inUvSpace && geometry.form == Form::kMesh;
    const auto uvs = inUvSpace ? uvPoints(geometry) : std::vector<MPoint>();
    const std::span<const MPoint> points = inUvSpace ? uvs : geometry.points();
    const auto isShort = [&](int a, int b) {
        return points[static_cast<std::size_t>(a)].distanceTo(points[static_cast<std::size_t>(b)]) <=
               settings.lengthThreshold;
    };
    const auto count = static_cast<int>(points.size());
    if (geometry.form == Form::kCurve) {
        for (int cv = 0; cv + 1 < count; ++cv) {
            if (isShort(cv, cv + 1)) taken.insert(taken.end(), {cv, cv + 1});
        }
        return taken;
    }
    for (int vertex = 0; vertex < geometry.links.vertexCount(); ++vertex) {
        for (const int other : geometry.links.vertexVertices().of(vertex)) {
            if (!isShort(vertex, other)) continue;
            takeVertex(settings, geometry, settings.kind == GroupKind::kMap ? vertex : other, taken);
        }
    }
    return taken;
}

/// Faces whose measure is at most the threshold, as what they stand for in the chosen kind.
template <class Measure>
std::vector<int> smallFaces(const Settings& settings, GroupGeometry& geometry, double threshold,
                            Measure measure) {
    std::vector<int> taken;
    if (geometry.form == Form::kParticles) return taken;
    for (MItMeshPolygon face(geometry.mesh); !face.isDone(); face.next()) {
        if (measure(face) > threshold) continue;
        const int index = face.index();
        switch (settings.kind) {
        case GroupKind::kEdge: append(taken, geometry.links.faceEdges().of(index)); break;
        case GroupKind::kFace: taken.push_back(index); break;
        case GroupKind::kMap:
            for (const int vertex : geometry.links.faceVertices().of(index))
                append(taken, geometry.vertexUvs().of(vertex));
            break;
        default: append(taken, geometry.links.faceVertices().of(index));
        }
    }
    return taken;
}

std::vector<int> faceArea(const Settings& settings, GroupGeometry& geometry) {
    return smallFaces(settings, geometry, settings.areaThreshold, [](MItMeshPolygon& face) {
        double area = 0;
        face.getArea(area);
        return area;
    });
}

std::vector<int> facePerimeter(const Settings& settings, GroupGeometry& geometry) {
    const auto& ends = geometry.links.edgeVertices();
    const auto points = geometry.points();
    return smallFaces(settings, geometry, settings.perimeterThreshold, [&](MItMeshPolygon& face) {
        double sum = 0;
        for (const int edge : geometry.links.faceEdges().of(face.index())) {
            const auto vertices = ends.of(edge);
            sum += points[static_cast<std::size_t>(vertices[0])].distanceTo(
                points[static_cast<std::size_t>(vertices[1])]);
        }
        return sum;
    });
}

/// By the values of `operation`.
constexpr std::vector<int> (*kOperations[])(const Settings&, GroupGeometry&) = {
    pattern, range, normalOrVelocity, depth, edgeLength, faceArea, facePerimeter};

} // namespace

std::vector<int> patternIndices(const MString& pattern, int count) {
    std::vector<int> indices;
    const auto take = [&](long long first, long long last) {
        for (long long i = first; i <= last && i < count; ++i)
            indices.push_back(static_cast<int>(i));
    };
    if (pattern == MString("*")) {
        take(0, count);
        return indices;
    }
    MStringArray tokens;
    pattern.split(' ', tokens);
    for (unsigned i = 0; i < tokens.length(); ++i) {
        const std::string_view token = tokens[i].asChar();
        const auto colon = token.find(':');
        const auto first = unsignedNumber(token.substr(0, colon));
        const auto last = colon == std::string_view::npos ? first : unsignedNumber(token.substr(colon + 1));
        if (first && last) take(std::min(*first, *last), std::max(*first, *last));
    }
    return indices;
}

std::vector<int> rangeIndices(int start, int end, int stepA, int stepB, int count) {
    std::vector<int> indices;
    const int behind = -end < count ? count + end : 0;
    int inRow = 0;
    for (int i = start; i < behind; ++i) {
        const bool isFirst = i % stepB == 0;
        inRow = isFirst ? 0 : inRow + 1;
        if (isFirst || inRow < stepA) indices.push_back(i);
    }
    return indices;
}

std::vector<int> operationIndices(short operation, const Settings& settings, GroupGeometry& geometry) {
    const bool isThere = operation >= 0 && operation < static_cast<short>(std::size(kOperations));
    if (!isThere || !geometry.fits(settings.kind) || geometry.pointCount == 0) return {};
    // A surface that nothing feeds has no tessellation: its CVs can be counted, and that is all.
    const bool needsNeighbours = operation > 1 && geometry.form != Form::kCurve;
    if (needsNeighbours && geometry.links.vertexCount() != geometry.pointCount) return {};
    return kOperations[operation](settings, geometry);
}

} // namespace vesk::nodes
