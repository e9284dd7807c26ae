#include "nodes/smooth/smooth.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/deformer_inputs.h"
#include "nodes/common/mesh_queries.h"
#include "nodes/common/vertex_walks.h"
#include "nodes/smooth/relax.h"

#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MPointArray.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

using namespace vesk::nodes;
using Self = smooth;

enum Lookup : int { kEdges = 0, kFaces = 1 };
enum PreserveVolume : int { kOff = 0, kFast = 1, kAccurate = 2 };
enum ProjectionMode : int { kClosestPoint = 0, kModifiedNormal = 1 };

constexpr float kLeastEnvelope = 0.001F;
constexpr double kSearchRadius = 999999999.9;

struct Settings {
    float envelope, maxDistance;
    double blend;
    int iterations, lookup, preserveVolume, mode;
    bool preserveBoundary;
};

Settings readSettings(MDataBlock& block) {
    const auto choice = [&](const MObject& attribute, int last) {
        return std::clamp<int>(block.inputValue(attribute).asShort(), 0, last);
    };
    return {.envelope = std::min(block.inputValue(Self::envelope).asFloat(), 1.0F),
            .maxDistance = std::max(block.inputValue(Self::maxDistance).asFloat(), 0.0F),
            .blend = static_cast<double>(std::clamp(block.inputValue(Self::blend).asFloat(), 0.0F, 1.0F)),
            .iterations = block.inputValue(Self::iterations).asShort(),
            .lookup = choice(Self::lookup, kFaces),
            .preserveVolume = choice(Self::preserveVolume, kAccurate),
            .mode = choice(Self::mode, kModifiedNormal),
            .preserveBoundary = block.inputValue(Self::preserveBoundary).asBool()};
}

/// Shoots points back onto the surface as it came in.
class Projection {
  public:
    /// `mesh` is hit by rays in object space; `transformed`, the input in its world, is asked for closest
    /// points with points of object space, as this node has always done.
    Projection(const MObject& mesh, const MObject& transformed, const Settings& settings)
        : mesh_(mesh), transformed_(transformed), settings_(settings) {
        if (settings.preserveVolume != kOff && settings.mode == kModifiedNormal)
            mesh_.getVertexNormals(false, normals_, MSpace::kObject);
    }

    /// Those points that `isChosen` has and that are finite. What hits nothing stays.
    void operator()(std::span<MPoint> points, std::span<const char> isChosen) {
        std::vector<std::size_t> vertices;
        std::vector<MFloatPoint> sources;
        for (std::size_t v = 0; v < points.size(); ++v) {
            const MPoint& p = points[v];
            if (!isChosen[v] || !std::isfinite(p.x + p.y + p.z)) continue;
            vertices.push_back(v);
            sources.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
        }
        const std::vector<RayHit> hits = firstHits(mesh_, sources, directions(points, vertices, sources),
                                                   {.maxParam = settings_.maxDistance,
                                                    .bothDirections = true,
                                                    .tolerance = 1e-6F,
                                                    .space = MSpace::kObject});
        for (std::size_t i = 0; i < hits.size(); ++i) {
            MPoint& point = points[vertices[i]];
            if (hits[i]) point = towards(point, MPoint(hits[i].point), settings_.blend);
        }
    }

  private:
    std::vector<MFloatVector> directions(std::span<const MPoint> points,
                                         std::span<const std::size_t> vertices,
                                         std::span<const MFloatPoint> sources) {
        std::vector<MFloatVector> result(vertices.size());
        if (settings_.mode == kModifiedNormal) {
            const auto normals = elements(normals_);
            std::ranges::transform(vertices, result.begin(), [&](std::size_t v) { return normals[v]; });
            return result;
        }
        std::vector<MPoint> asked(vertices.size());
        std::ranges::transform(vertices, asked.begin(), [&](std::size_t v) { return points[v]; });
        const auto nearest = nearestPoints(transformed_, MMatrix(), asked, kSearchRadius);
        for (std::size_t i = 0; i < result.size(); ++i) {
            if (nearest[i]) result[i] = sources[i] - nearest[i].point;
        }
        return result;
    }

    MFnMesh mesh_;
    MObject transformed_;
    const Settings& settings_;
    MFloatVectorArray normals_;
};

std::vector<char> boundaryOf(const MObject& mesh, std::size_t count) {
    std::vector<char> isBoundary(count);
    inVertexPieces({mesh}, count, [&](std::span<MItMeshVertex> walks, std::size_t begin, std::size_t end) {
        int previous = 0;
        for (std::size_t v = begin; v < end; ++v)
            isBoundary[v] = walks[0].setIndex(static_cast<int>(v), previous) && walks[0].onBoundary();
    });
    return isBoundary;
}

/// The points after all passes and projections. `isChosen` marks the deformer's set.
void relax(MPointArray& points, const Links& neighbors, const MObject& mesh, const MObject& transformed,
           const Settings& s, const std::vector<char>& isChosen) {
    std::vector<char> moves = isChosen;
    if (s.preserveBoundary) {
        const std::vector<char> isBoundary = boundaryOf(mesh, moves.size());
        std::transform(moves.begin(), moves.end(), isBoundary.begin(), moves.begin(),
                       [](char chosen, char boundary) { return chosen && !boundary; });
    }
    Projection project(mesh, transformed, s);
    MPointArray relaxed(points.length());
    for (int pass = 0; pass < s.iterations; ++pass) {
        averagePass(neighbors, moves, elements(points), elements(relaxed));
        std::swap(points, relaxed);
        // Only the mesh that came in is asked, so all vertices may go at once.
        if (s.preserveVolume == kAccurate) project(elements(points), moves);
    }
    if (s.preserveVolume == kFast) project(elements(points), std::vector<char>(moves.size(), 1));
}

} // namespace

MObject smooth::iterations;
MObject smooth::lookup;
MObject smooth::preserveBoundary;
MObject smooth::preserveVolume;
MObject smooth::maxDistance;
MObject smooth::blend;
MObject smooth::mode;
MObject smooth::clearConnectivityCache;

MTypeId smooth::id(0x115770);

void* smooth::creator() { return new smooth; }

MStatus smooth::initialize() {
    AttributeTable t;
    t.shortInteger(iterations, "iterations", "it", 0).keyable().min(0).softMax(5);
    t.enumeration(lookup, "lookup", "lm", {"edges", "faces"}).keyable();
    t.boolean(preserveBoundary, "preserveBoundary", "pb", true).keyable();
    t.enumeration(preserveVolume, "preserveVolume", "pv", {"off", "fast", "accurate"}).keyable();
    t.real(maxDistance, "maxDistance", "md", 1).keyable().min(0).softMax(10);
    t.real(blend, "blend", "vpb", 1).keyable().min(0).max(1);
    t.enumeration(mode, "mode", "vpm", {"closest point", "modified normal"}).keyable();
    t.boolean(clearConnectivityCache, "clearConnectivityCache", "ccc", false).keyable();
    return t.finish({&outputGeom});
}

void smooth::keepNeighbors(const MObject& mesh, int lookupNow, bool clear) {
    if (clear) {
        neighbors_ = {};
        MPlug(thisMObject(), clearConnectivityCache).setValue(false);
    }
    if (lookupNow != cachedLookup_) {
        neighbors_ = {};
        cachedLookup_ = lookupNow;
    }
    const auto count = static_cast<std::size_t>(MFnMesh(mesh).numVertices());
    if (neighbors_.count() == count) return;
    if (lookupNow == kFaces) {
        MeshLinks links(mesh);
        neighbors_ = verticesOfFacesAround(links);
    } else {
        std::vector<int> vertices(count);
        std::iota(vertices.begin(), vertices.end(), 0);
        MItMeshVertex walk(mesh);
        neighbors_ = connectedVertices(walk, vertices);
    }
}

MStatus smooth::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (plug != outputGeom || !plug.isElement()) return MS::kSuccess;
    const unsigned element = plug.logicalIndex();
    DeformerInput incoming(block, element);
    MDataHandle output = block.outputValue(plug);
    if (!output.copy(incoming.geometry)) output.set(MObject::kNullObj); // nothing comes in any more
    if (output.type() != MFnData::kMesh) return MS::kSuccess;
    const Settings s = readSettings(block);
    if (s.envelope < kLeastEnvelope || s.iterations < 1) return MS::kSuccess;
    MObject geometry = output.asMesh();
    MFnMesh mesh(geometry);
    const auto count = static_cast<unsigned>(mesh.numVertices());
    if (count == 0) return MS::kSuccess;
    keepNeighbors(geometry, s.lookup, block.inputValue(clearConnectivityCache).asBool());
    const std::vector<char> isChosen =
        PointSelection::ofObjectGroup(geometry, incoming.groupId).mask(MFn::kMeshVertComponent, count);
    MPointArray points;
    mesh.getPoints(points);
    relax(points, neighbors_, geometry, incoming.geometry.asMeshTransformed(), s, isChosen);
    blendWithOriginal(elements(points), mesh.getRawPoints(), isChosen, s.envelope,
                      paintedWeights(block, element, count));
    mesh.setPoints(points);
    return MS::kSuccess;
}
