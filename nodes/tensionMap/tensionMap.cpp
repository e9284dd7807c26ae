#include "nodes/tensionMap/tensionMap.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/kernel_ramp.h"
#include "nodes/common/vertex_walks.h"
#include "nodes/tensionMap/tension.h"

#include <maya/MColorArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>

#include <algorithm>
#include <numeric>
#include <optional>

namespace {

using namespace vesk::nodes;
using Self = tensionMap;

enum Mode : short { kDistance = 0, kAngle = 1 };
enum Update : short { kBoth = 0, kArraysOnly = 1, kColorsOnly = 2 };
/// Here the order of the fields is the other way round than on other nodes.
enum Space : short { kObjectSpace = 0, kWorldSpace = 1 };

constexpr const char* kLengthMismatch =
    "inWeightPP array length does not match current point count. Result will be unpredictable.";

/// What one compute reads.
struct Snapshot {
    MObject current, rest; ///< meshes in the space asked for
    unsigned count = 0;    ///< vertices of each
    short mode = kDistance, update = kBoth;
    double weight = 1, alpha = 1;
    MIntArray vertices; ///< to be visited
    std::vector<double> weights;
    TensionColors colors;

    bool writesArrays() const { return update == kBoth || update == kArraysOnly; }
    bool writesColors() const { return update == kBoth || update == kColorsOnly; }
};

/// Warns of a length that does not fit; surplus weights go, missing ones are 1.
std::vector<double> readWeights(const MPxNode& node, MDataBlock& block, unsigned count) {
    MDoubleArray input = doublesIn(block.inputValue(Self::inWeightPP).data());
    if (isConnected(node, Self::inWeightPP) && input.length() != count)
        warn(nodeName(node, Self::inGeometry), kLengthMismatch);
    const auto given = elements(input);
    std::vector<double> weights(given.begin(), given.begin() + std::min(input.length(), count));
    weights.resize(count, 1);
    return weights;
}

MIntArray readVertices(MDataBlock& block, unsigned count) {
    const PointSelection selection = chosenBy(block, {Self::useComponents, Self::inComponents, Self::groupId},
                                              block.inputValue(Self::inGeometry).data());
    return selection.ids(MFn::kMeshVertComponent, count);
}

TensionColors readColors(const MObject& node, MDataBlock& block) {
    TensionColors colors;
    colors.coding = block.inputValue(Self::colorCoding).asShort();
    colors.defaultMultiplier = block.inputValue(Self::defaultColorMult).asDouble();
    colors.compressionMultiplier = block.inputValue(Self::compressionColorMult).asDouble();
    colors.stretchMultiplier = block.inputValue(Self::stretchColorMult).asDouble();
    colors.compression = readCurveRamp(node, Self::compressionColorRemap);
    colors.stretch = readCurveRamp(node, Self::stretchColorRemap);
    return colors;
}

/// The part of the work that a mode has to itself: what it compares of the meshes.
class Measure {
  public:
    explicit Measure(const Snapshot& s) {
        const MFnMesh current(s.current), rest(s.rest);
        if (s.mode != kAngle) {
            points_ = current.getRawPoints();
            restPoints_ = rest.getRawPoints();
            return;
        }
        current.getVertexNormals(false, normals_);
        rest.getVertexNormals(false, restNormals_);
        directions_.emplace(elements(normals_));
        restDirections_.emplace(elements(restNormals_));
    }
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;

    /// Tensions of some vertices, whose neighbours the walks give; and which of them are skipped.
    std::vector<double> operator()(std::span<MItMeshVertex> walks, TensionRun& run) const {
        MItMeshVertex &current = walks[0], &rest = walks[1];
        run.neighbors = connectedVertices(current, run.vertices);
        if (directions_) run.restNeighbors = connectedVertices(rest, run.vertices);
        run.isSkipped.resize(run.vertices.size());
        for (std::size_t i = 0; i < run.vertices.size(); ++i) {
            const auto count = static_cast<int>(run.neighbors.of(i).size());
            int previous = 0, restCount = 0;
            rest.setIndex(run.vertices[i], previous);
            rest.numConnectedEdges(restCount);
            run.isSkipped[i] = count != 0 && restCount != count;
        }
        return directions_ ? angleTensions(run, *directions_, *restDirections_)
                           : distanceTensions(run, points_, restPoints_);
    }

  private:
    const float *points_ = nullptr, *restPoints_ = nullptr;
    MFloatVectorArray normals_, restNormals_;
    std::optional<Directions> directions_, restDirections_;
};

/// Where one compute writes; arrays that don't go out are empty.
struct Results {
    std::span<double> tensions, rgba; ///< one and four a vertex of the mesh
    std::span<MColor> colors;         ///< one a vertex to be visited
    std::span<int> targets;           ///< whose they are; -1 for one that is skipped
};

void putVertex(const Snapshot& s, std::size_t place, double tension, const Results& out) {
    const int v = elements(s.vertices)[place];
    const auto [r, g, b] = s.colors.of(tension);
    if (s.writesArrays()) {
        const auto at = static_cast<std::size_t>(v);
        out.tensions[at] = tension;
        const double rgba[] = {r, g, b, s.alpha};
        std::copy(std::begin(rgba), std::end(rgba), out.rgba.begin() + static_cast<std::ptrdiff_t>(4 * at));
    }
    if (s.writesColors()) {
        out.colors[place] = MColor(static_cast<float>(r), static_cast<float>(g), static_cast<float>(b),
                                   static_cast<float>(s.alpha));
        out.targets[place] = v;
    }
}

void measure(const Snapshot& s, const Results& out) {
    const Measure measureRun(s);
    const auto vertices = elements(s.vertices);
    inVertexPieces({s.current, s.rest}, vertices.size(),
                   [&](std::span<MItMeshVertex> walks, std::size_t begin, std::size_t end) {
                       TensionRun run{vertices.subspan(begin, end - begin), {}, {}, {}};
                       const std::vector<double> raw = measureRun(walks, run);
                       for (std::size_t i = 0; i < raw.size(); ++i) {
                           const auto v = static_cast<std::size_t>(run.vertices[i]);
                           if (!run.isSkipped[i])
                               putVertex(s, begin + i, weightedTension(raw[i], s.weights[v], s.weight), out);
                           else if (s.writesColors())
                               out.targets[begin + i] = -1;
                       }
                   });
}

/// Brings the colours of skipped vertices out of the lists. The places that fall free at the end hold black
/// for vertex 0.
void closeGaps(std::span<MColor> colors, std::span<int> targets) {
    std::size_t next = 0;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        if (targets[i] < 0) continue;
        colors[next] = colors[i];
        targets[next++] = targets[i];
    }
    std::fill(colors.begin() + static_cast<std::ptrdiff_t>(next), colors.end(), MColor(0, 0, 0, 1));
    std::fill(targets.begin() + static_cast<std::ptrdiff_t>(next), targets.end(), 0);
}

/// Measures, and fills the outputs that `update` asks for; `painted` is the mesh that gets the colours.
void run(const MPxNode& node, MDataBlock& block, const Snapshot& s, MObject painted) {
    DoublesOutput tensions, rgba;
    if (s.writesArrays() && !(tensions.values.setLength(s.count) && rgba.values.setLength(4 * s.count)))
        return warnOfMemory(node, Self::outRgbaPP, 4 * static_cast<std::size_t>(s.count));
    const unsigned visited = s.writesColors() ? s.vertices.length() : 0;
    MColorArray colors(visited, MColor(0, 0, 0, 1));
    MIntArray targets(visited);
    measure(s, {elements(tensions.values), elements(rgba.values), elements(colors), elements(targets)});
    if (s.writesColors()) {
        closeGaps(elements(colors), elements(targets));
        MFnMesh(painted).setVertexColors(colors, targets);
    }
    if (s.writesArrays()) {
        tensions.handOver(block, Self::outTensionPP);
        rgba.handOver(block, Self::outRgbaPP);
    }
}

} // namespace

MObject tensionMap::envelope;
MObject tensionMap::inGeometry;
MObject tensionMap::restGeometry;
MObject tensionMap::outGeometry;
MObject tensionMap::inComponents;
MObject tensionMap::inWeightPP;
MObject tensionMap::outTensionPP;
MObject tensionMap::outRgbaPP;
MObject tensionMap::useComponents;
MObject tensionMap::groupId;
MObject tensionMap::mode;
MObject tensionMap::coordinateSystem;
MObject tensionMap::weight;
MObject tensionMap::update;
MObject tensionMap::colorCoding;
MObject tensionMap::defaultColorMult;
MObject tensionMap::compressionColorMult;
MObject tensionMap::stretchColorMult;
MObject tensionMap::compressionColorRemap;
MObject tensionMap::stretchColorRemap;
MObject tensionMap::alpha;

MTypeId tensionMap::id(0x115741);

void* tensionMap::creator() { return new tensionMap; }

MStatus tensionMap::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.generic(inGeometry, "inGeometry", "ig", {MFnData::kMesh}).notStorable();
    t.generic(restGeometry, "restGeometry", "rg", {MFnData::kMesh}).notStorable();
    t.generic(outGeometry, "outGeometry", "og", {MFnData::kMesh}).output();
    t.typed(inComponents, "inComponents", "ic", MFnData::kComponentList);
    t.typed(inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray);
    t.typed(outTensionPP, "outTensionPP", "otpp", MFnData::kDoubleArray).output();
    t.typed(outRgbaPP, "outRgbaPP", "orgbapp", MFnData::kDoubleArray).output();
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Component List", "Input Object Group"})
        .keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.enumeration(mode, "mode", "m", {"Distance", "In-Between Angle"}).keyable();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"Object", "World"}).keyable();
    t.number(weight, "weight", "w", 1).keyable().min(0).max(1);
    t.enumeration(update, "update", "u", {"Both", "Output Arrays", "Vertex Colors (Mesh Only)"}).keyable();
    t.enumeration(colorCoding, "colorCoding", "cc", {"GRB", "GBR", "BRG", "BGR", "RGB", "RBG", "Grayscale"})
        .keyable();
    t.number(defaultColorMult, "defaultColorMult", "dcm", 0.5).keyable().min(0).max(1);
    t.number(compressionColorMult, "compressionColorMult", "ccm", 1).keyable().min(0).softMax(2);
    t.number(stretchColorMult, "stretchColorMult", "scm", 1).keyable().min(0).softMax(2);
    t.curveRamp(compressionColorRemap, "compressionColorRemap", "ccr");
    t.curveRamp(stretchColorRemap, "stretchColorRemap", "scr");
    t.number(alpha, "alpha", "a", 1).keyable().softMin(0).softMax(1);
    return t.finish();
}

void tensionMap::postConstructor() {
    for (const MObject* attribute : {&compressionColorRemap, &stretchColorRemap})
        startIdentity(thisMObject(), *attribute);
}

MStatus tensionMap::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking || !isOneOf(plug, {&outGeometry, &outTensionPP, &outRgbaPP}))
        return MS::kUnknownParameter;
    MDataHandle output = block.outputValue(outGeometry);
    output.copy(block.inputValue(inGeometry));
    if (!block.inputValue(envelope).asBool()) return MS::kSuccess;
    if (!isConnected(*this, inGeometry) || !isConnected(*this, restGeometry)) return MS::kUnknownParameter;
    MDataHandle rest = block.inputValue(restGeometry);
    const bool isWorld = block.inputValue(coordinateSystem).asShort() == kWorldSpace;
    Snapshot s;
    s.current = isWorld ? output.asMeshTransformed() : output.asMesh();
    s.rest = isWorld ? rest.asMeshTransformed() : rest.asMesh();
    const int vertices = MFnMesh(s.current).numVertices();
    if (vertices != 0 && vertices != MFnMesh(s.rest).numVertices()) return MS::kSuccess;
    s.count = static_cast<unsigned>(vertices);
    s.mode = block.inputValue(mode).asShort();
    s.update = block.inputValue(update).asShort();
    s.weight = block.inputValue(weight).asDouble();
    s.alpha = block.inputValue(alpha).asDouble();
    s.vertices = readVertices(block, s.count);
    s.weights = readWeights(*this, block, s.count);
    s.colors = readColors(thisMObject(), block);
    run(*this, block, s, output.asMesh());
    return MS::kSuccess;
}
