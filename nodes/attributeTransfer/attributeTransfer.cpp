#include "nodes/attributeTransfer/attributeTransfer.h"

#include "nodes/attributeTransfer/transfer.h"
#include "nodes/common/arrays.h"
#include "nodes/common/geometry_copy.h"
#include "nodes/common/kernel_ramp.h"
#include "nodes/common/steps.h"

#include <maya/MColorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MFnNurbsSurface.h>

namespace {

using namespace vesk::nodes;
using Self = attributeTransfer;
using vesk::volume::Vec3;

constexpr const char* kPeriodic = "inGeometry is periodic nurbs surface. Rebuild using \"End Conditions\" / "
                                  "\"Multiple Knots\" options.";

enum Update : short { kGeometryAndArrays = 0, kGeometryOnly = 1, kArraysOnly = 2 };

/// Everything that one compute works on.
struct Work {
    const MPxNode& node;
    MDataBlock& block;
    MString name;
    short update = kGeometryAndArrays;
    TransferSettings settings;
    WorldPoints world;
    TransferPoints points;

    bool isOn(const MObject& attribute) const { return block.inputValue(attribute).asBool(); }
    bool writesGeometry() const { return update != kArraysOnly; }
    bool writesArrays() const { return update != kGeometryOnly; }
    std::size_t count() const { return world.points.length(); }
};

void readSettings(Work& work) {
    TransferSettings& s = work.settings;
    s.maxInfluences = work.block.inputValue(Self::maxInfluences).asInt();
    s.position = work.isOn(Self::position);
    s.weight = work.isOn(Self::weight);
    s.color = work.isOn(Self::color);
    s.normal = work.isOn(Self::normal);
    s.radius = work.isOn(Self::radius);
    s.merge = work.isOn(Self::merge);
    s.blend = work.isOn(Self::blend);
    s.alphaModulate = work.isOn(Self::alphaModulate);
    s.solidAlpha = work.isOn(Self::solidAlpha);
}

// --- what comes in for each point
// ------------------------------------------------------------------------------------

/// Velocities that came as vectors, points or triples of numbers; one for each particle.
std::vector<Vec3> readVelocities(const Work& work) {
    std::vector<Vec3> velocities;
    const InputArray input(work.block, Self::inNormalPP);
    const auto append = [&](const auto& v) { velocities.push_back(toVec3(v)); };
    if (const auto* vectors = std::get_if<std::span<const MVector>>(&input.values())) {
        std::for_each(vectors->begin(), vectors->end(), append);
    } else if (const auto* points = std::get_if<std::span<const MPoint>>(&input.values())) {
        std::for_each(points->begin(), points->end(), append);
    } else if (const auto* numbers = std::get_if<std::span<const double>>(&input.values())) {
        if (numbers->size() % 3 != 0) warn(work.name, "inVelocityPP array length mismatch.");
        for (std::size_t i = 0; numbers->size() % 3 == 0 && i < numbers->size(); i += 3)
            velocities.push_back({(*numbers)[i], (*numbers)[i + 1], (*numbers)[i + 2]});
    }
    if (velocities.size() != work.count()) {
        warn(work.name, "inNormalPP array length does not match the inGeometry point count.");
        velocities.assign(work.count(), {});
    }
    return velocities;
}

std::vector<Vec3> readNormals(Work& work, MDataHandle& geometry) {
    if (work.world.kind == MFnData::kVectorArray) {
        if (isConnected(work.node, Self::inNormalPP)) return readVelocities(work);
        return std::vector<Vec3>(work.count());
    }
    std::vector<Vec3> normals = std::move(work.world.normals);
    if (work.world.kind == MFnData::kMesh) {
        // World normals once more through the matrix, as this node has always done for meshes.
        const MMatrix matrix = geometry.geometryTransformMatrix();
        for (Vec3& normal : normals)
            normal = toVec3(toVector(normal) * matrix);
    }
    return normals;
}

std::vector<double> doublesIn(const Work& work, const MObject& attribute) {
    if (!isConnected(work.node, attribute)) return {};
    const InputArray input(work.block, attribute);
    const auto* numbers = std::get_if<std::span<const double>>(&input.values());
    return numbers ? std::vector<double>(numbers->begin(), numbers->end()) : std::vector<double>();
}

std::vector<double> readRadii(const Work& work) {
    std::vector<double> radii = doublesIn(work, Self::inRadiusPP);
    if (radii.size() == work.count()) return radii;
    if (isConnected(work.node, Self::inRadiusPP))
        warn(work.name, "inRadiusPP array length does not match the inGeometry point count.");
    return std::vector<double>(work.count());
}

/// Read whether or not weights are switched on. A shorter array is fine, and only then filled up.
std::vector<double> readWeights(const Work& work) {
    std::vector<double> weights = doublesIn(work, Self::inWeightPP);
    if (weights.size() > work.count()) {
        warn(work.name, "inWeightPP array length does not match the inGeometry point count.");
        weights.assign(work.count(), 0);
    }
    if (work.settings.weight) weights.resize(work.count());
    return weights;
}

/// The colours of an array input, if it has one of the accepted lengths.
std::vector<Rgba> colorsOf(const AnyElements& values, std::size_t count) {
    std::vector<Rgba> colors;
    const auto append = [&](double r, double g, double b, double a) {
        colors.push_back(
            {static_cast<float>(r), static_cast<float>(g), static_cast<float>(b), static_cast<float>(a)});
    };
    if (const auto* numbers = std::get_if<std::span<const double>>(&values)) {
        const auto& n = *numbers;
        if (n.size() == 4 * count) {
            for (std::size_t i = 0; i < n.size(); i += 4)
                append(n[i], n[i + 1], n[i + 2], n[i + 3]);
        } else if (n.size() == count) {
            for (const double grey : n)
                append(grey, grey, grey, 1);
        }
    } else if (lengthOf(values) == count) {
        const auto appendVector = [&](const auto& v) { append(v.x, v.y, v.z, 1); };
        if (const auto* vectors = std::get_if<std::span<const MVector>>(&values))
            std::for_each(vectors->begin(), vectors->end(), appendVector);
        if (const auto* points = std::get_if<std::span<const MPoint>>(&values))
            std::for_each(points->begin(), points->end(), appendVector);
    }
    return colors;
}

std::vector<Rgba> meshColors(const Work& work) {
    const MString set = work.block.inputValue(Self::colorSet).asString();
    const MColor unset(0, 0, 0, 0);
    MColorArray colors;
    MFnMesh(work.world.geometry).getVertexColors(colors, set.length() > 0 ? &set : nullptr, &unset);
    std::vector<Rgba> result;
    for (const MColor& c : elements(colors))
        result.push_back({c.r, c.g, c.b, c.a});
    return result;
}

/// Colours of the points, and what `outRgbaPP` starts from.
void readColors(Work& work) {
    std::size_t inputLength = 0;
    auto& colors = work.points.colors;
    if (work.world.kind == MFnData::kMesh) {
        colors = meshColors(work);
    } else if (isConnected(work.node, Self::inRgbaPP)) {
        const InputArray input(work.block, Self::inRgbaPP);
        inputLength = lengthOf(input.values());
        colors = colorsOf(input.values(), work.count());
        if (colors.size() != work.count())
            warn(work.name, "inRgbaPP array length does not match the point count.");
    }
    colors.resize(work.count(), defaultRgba(work.settings.solidAlpha));
    if (!work.writesArrays()) return;
    auto& out = work.points.outRgba;
    out.assign(4 * work.count(), 0);
    if (inputLength != work.count()) return;
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<double>(colors[i / 4][i % 4]);
}

void readPoints(Work& work, MDataHandle& geometry) {
    TransferPoints& points = work.points;
    points.positions.reserve(work.count());
    for (const MPoint& p : elements(std::as_const(work.world.points)))
        points.positions.push_back(toVec3(p));
    if (work.settings.normal) points.normals = readNormals(work, geometry);
    if (work.settings.radius) points.radii = readRadii(work);
    points.weights = readWeights(work);
    if (work.settings.color) readColors(work);
}

std::vector<VolumeRamps> readRamps(const std::vector<MObject>& nodes) {
    std::vector<VolumeRamps> ramps;
    for (const MObject& node : nodes) {
        const auto curve = [&](const char* name) { return curveRampOf(node, name); };
        ramps.push_back({curve("positionFalloff"), curve("weightFalloff"), curve("alphaFalloff"),
                         curve("normalFalloff"), curve("radiusFalloff"), colorRampOf(node, "colorFalloff")});
    }
    return ramps;
}

// --- what goes out
// ---------------------------------------------------------------------------------------------------

/// Brings the geometry's own points to where they are now; CVs keep their weights.
const MPointArray& movedPoints(Work& work) {
    const std::vector<Vec3>& positions = work.points.positions;
    std::size_t i = 0;
    for (MPoint& point : elements(work.world.points)) {
        const Vec3& p = positions[i++];
        point = MPoint(p.x, p.y, p.z, point.w);
    }
    return work.world.points;
}

void writeMesh(Work& work, const MObject& copy) {
    MFnMesh mesh(copy);
    const auto count = static_cast<unsigned>(work.count());
    if (work.settings.position) mesh.setPoints(movedPoints(work), MSpace::kWorld);
    MIntArray vertices(count);
    for (unsigned i = 0; i < count; ++i)
        vertices[i] = static_cast<int>(i);
    if (work.settings.color) {
        MColorArray colors(count);
        for (unsigned i = 0; i < count; ++i)
            colors[i] = MColor(work.points.colors[i].data());
        mesh.setVertexColors(colors, vertices);
    }
    if (work.settings.normal) {
        MVectorArray normals(count);
        for (unsigned i = 0; i < count; ++i)
            normals[i] = toVector(work.points.normals[i]);
        mesh.setVertexNormals(normals, vertices, MSpace::kObject);
    }
}

void writeGeometry(Work& work, const MObject& copy) {
    switch (work.world.kind) {
    case MFnData::kMesh: writeMesh(work, copy); break;
    case MFnData::kNurbsCurve:
        if (work.settings.position) MFnNurbsCurve(copy).setCVs(movedPoints(work), MSpace::kWorld);
        break;
    case MFnData::kNurbsSurface:
        if (work.settings.position) MFnNurbsSurface(copy).setCVs(movedPoints(work), MSpace::kWorld);
        break;
    default: break;
    }
}

MObject particlePositions(const Work& work) {
    MFnVectorArrayData maker;
    MVectorArray positions(static_cast<unsigned>(work.count()));
    for (unsigned i = 0; i < positions.length(); ++i)
        positions[i] = toVector(work.points.positions[i]);
    return maker.create(positions);
}

void run(Work& work) {
    const MPlug input(work.node.thisMObject(), Self::inGeometry);
    MDataHandle geometry = work.block.inputValue(Self::inGeometry);
    readSettings(work);
    work.world = worldPoints(geometry, input, work.settings.normal);
    if (work.world.isPeriodicSurface) warn(work.name, kPeriodic);
    readPoints(work, geometry);
    const auto inside =
        chosenPoints(work.block, Self::inGeometry, {Self::useComponents, Self::inComponents, Self::groupId},
                     work.world, work.name);
    MObject out = work.settings.areParticles ? geometry.data() : copyOfGeometry(work.world.geometry);
    const ConnectedVolumes volumes = readVolumes(work.node, work.block, Self::volumes, work.name);
    if (volumes.hasElements) {
        const auto ramps = readRamps(volumes.nodes);
        const CurveRamp kernel = readCurveRamp(work.node.thisMObject(), Self::kernel);
        transfer(work.settings, {volumes.list, volumes.clouds, ramps, kernel}, inside, work.points);
        if (volumes.list.size() > 0 && work.writesGeometry()) writeGeometry(work, out);
    }
    if (work.settings.areParticles && work.writesGeometry()) out = particlePositions(work);
    MDataHandle handle = work.block.outputValue(Self::outGeometry);
    handle.set(out);
    handle.setClean();
}

void writeDoubles(const Work& work, const MObject& attribute, const std::vector<double>& values) {
    putArray<DoublesOutput>(work.node, work.block, attribute, values.size(), [&](std::span<double> out) {
        std::copy(values.begin(), values.end(), out.begin());
    });
}

void writeVectors(const Work& work, const MObject& attribute, const std::vector<Vec3>& values) {
    putArray<VectorsOutput>(work.node, work.block, attribute, values.size(), [&](std::span<MVector> out) {
        std::transform(values.begin(), values.end(), out.begin(), toVector);
    });
}

void writeArrays(const Work& work) {
    const TransferPoints& p = work.points;
    writeDoubles(work, Self::outWeightPP, p.weights);
    writeDoubles(work, Self::outRgbaPP, p.outRgba);
    writeVectors(work, Self::outNormalPP, p.normals);
    writeDoubles(work, Self::outRadiusPP, p.radii);
    // The positions of particles travel as geometry alone, so that nothing downstream takes them twice.
    if (work.settings.areParticles) return;
    writeVectors(work, Self::outPositionPP, p.positions);
}

bool isOutput(const MPlug& plug) {
    const MObject* const outputs[] = {&Self::outGeometry, &Self::outPositionPP, &Self::outWeightPP,
                                      &Self::outRgbaPP,   &Self::outNormalPP,   &Self::outRadiusPP};
    return std::any_of(std::begin(outputs), std::end(outputs),
                       [&](const MObject* attribute) { return plug == *attribute; });
}

} // namespace

MTypeId attributeTransfer::id(0x115750);

void* attributeTransfer::creator() { return new attributeTransfer; }

MStatus attributeTransfer::initialize() {
    AttributeTable t;
    const auto geometry = {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface,
                           MFnData::kVectorArray};
    const auto triples = {MFnData::kDoubleArray, MFnData::kVectorArray, MFnData::kPointArray};
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.generic(inGeometry, "inGeometry", "ig", geometry).notStorable();
    t.generic(outGeometry, "outGeometry", "og", geometry).output();
    t.generic(inWeightPP, "inWeightPP", "iwpp", {MFnData::kDoubleArray}).notStorable();
    t.generic(inRgbaPP, "inRgbaPP", "irgbapp", triples).notStorable();
    t.generic(inNormalPP, "inNormalPP", "inpp", triples).notStorable();
    t.generic(inRadiusPP, "inRadiusPP", "irpp", {MFnData::kDoubleArray}).notStorable();
    t.generic(outPositionPP, "outPositionPP", "oppp", {MFnData::kPointArray, MFnData::kVectorArray}).output();
    t.typed(outWeightPP, "outWeightPP", "owpp", MFnData::kDoubleArray).output();
    t.typed(outRgbaPP, "outRgbaPP", "orgbapp", MFnData::kDoubleArray).output();
    t.typed(outNormalPP, "outNormalPP", "onpp", MFnData::kVectorArray).output();
    t.typed(outRadiusPP, "outRadiusPP", "orpp", MFnData::kDoubleArray).output();
    t.enumeration(update, "update", "u", {"Output Geometry and Arrays", "Output Geometry", "Output Arrays"})
        .keyable();
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Components List", "Input Object Group"})
        .keyable();
    t.generic(inComponents, "inComponents", "ic", {MFnData::kComponentList, MFnData::kIntArray});
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.string(colorSet, "colorSet", "clrs").keyable();
    t.integer(maxInfluences, "maxInfluences", "mi", 5).keyable().min(1).softMax(10);
    t.boolean(position, "position", "pos", false).keyable();
    t.boolean(weight, "weight", "wgt", false).keyable();
    t.boolean(color, "color", "clr", false).keyable();
    t.boolean(normal, "normal", "nml", false).keyable();
    t.boolean(radius, "radius", "rds", false).keyable();
    t.boolean(merge, "merge", "m", true).keyable();
    t.boolean(blend, "blend", "b", true).keyable();
    t.curveRamp(kernel, "kernel", "k");
    t.boolean(alphaModulate, "alphaModulate", "am", true).keyable();
    t.boolean(solidAlpha, "solidAlpha", "sa", false).keyable();
    declareVolumes(t, volumes);
    return t.finish();
}

void attributeTransfer::postConstructor() { startKernel(thisMObject(), kernel); }

MStatus attributeTransfer::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (!isOutput(plug)) return MS::kSuccess;
    Work work{*this, block, nodeName(*this, inGeometry), block.inputValue(update).asShort(), {}, {}, {}};
    if (isConnected(*this, inGeometry)) {
        work.settings.areParticles = block.inputValue(inGeometry).type() == MFnData::kVectorArray;
        if (work.isOn(envelope)) {
            run(work);
        } else {
            MDataHandle handle = block.outputValue(outGeometry);
            handle.set(block.inputValue(inGeometry).data());
            handle.setClean();
        }
    }
    if (work.writesArrays()) writeArrays(work);
    return MS::kSuccess;
}
