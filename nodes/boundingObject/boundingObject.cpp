#include "nodes/boundingObject/boundingObject.h"

#include "nodes/boundingObject/cloud.h"
#include "nodes/common/arrays.h"
#include "nodes/common/choice.h"
#include "nodes/common/steps.h"
#include "nodes/common/world_points.h"
#include "volume/shapes.h"

#include <maya/MColorArray.h>
#include <maya/MFnMesh.h>

#include <numeric>

namespace {

using namespace vesk::nodes;
using Self = boundingObject;
using vesk::volume::Vec3;

constexpr const char* kPeriodic =
    "The geometry at the \"inSurface\" input is a periodic nurbs surface. Rebuild using the \"End "
    "Conditions\" / \"Multiple Knots\" options.";

/// What one compute gathers, and from where.
struct Gathering {
    const MPxNode& node;
    MDataBlock& block;
    MString name;
    CloudDefaults defaults;
    CloudArrays cloud;

    bool isOn(const MObject& attribute) const { return block.inputValue(attribute).asBool(); }
    bool takesPart(const MObject& use, const MObject& geometry) const {
        return isOn(use) && isConnected(node, geometry);
    }
};

/// Warns of an array whose length is wrong, if anything feeds it.
void checkLength(const Gathering& g, const MObject& attribute, const char* attributeName,
                 const char* sourceName, std::size_t length, std::size_t wanted) {
    if (length == wanted || !isConnected(g.node, attribute)) return;
    warn(g.name, (MString(attributeName) + " array length does not match the " + sourceName +
                  " point count. Result will be unpredictable.")
                     .asChar());
}

/// An array input with its switch: read when that is on, and checked.
class SwitchedArray {
  public:
    SwitchedArray(const Gathering& g, const MObject& use, const MObject& attribute, const char* attributeName,
                  const char* sourceName, std::size_t pointCount, std::size_t valuesPerPoint = 1) {
        if (!g.isOn(use)) return;
        array_.emplace(g.block, attribute);
        std::size_t length = lengthOf(array_->values());
        // Of the attributes with four values a point, only the doubles come in four.
        if (valuesPerPoint > 1 && !std::holds_alternative<std::span<const double>>(array_->values()))
            length *= valuesPerPoint;
        checkLength(g, attribute, attributeName, sourceName, length, valuesPerPoint * pointCount);
    }

    std::span<const double> numbers() const {
        const auto* values = array_ ? std::get_if<std::span<const double>>(&array_->values()) : nullptr;
        return values ? *values : std::span<const double>();
    }
    std::vector<Vec3> vectors() const {
        std::vector<Vec3> result;
        eachVector([&](const auto& v) { result.push_back(toVec3(v)); });
        return result;
    }
    /// Four numbers a point: doubles as they stand, vectors and points with an alpha of 1.
    std::vector<double> rgba() const {
        std::vector<double> result(numbers().begin(), numbers().end());
        eachVector([&](const auto& v) { result.insert(result.end(), {v.x, v.y, v.z, 1.0}); });
        return result;
    }

  private:
    template <class Visit>
    void eachVector(Visit visit) const {
        if (!array_) return;
        if (const auto* vectors = std::get_if<std::span<const MVector>>(&array_->values()))
            std::for_each(vectors->begin(), vectors->end(), visit);
        if (const auto* points = std::get_if<std::span<const MPoint>>(&array_->values()))
            std::for_each(points->begin(), points->end(), visit);
    }

    std::optional<InputArray> array_;
};

/// The attributes that a mesh, a curve and a surface have alike.
struct SourceAttributes {
    const char* name;
    const MObject &use, &geometry, &useComponents, &groupId, &components, &useRadius, &radius, &useWeight,
        &weight;
    const char *radiusName, *weightName;
};

std::vector<char> chosenPoints(const Gathering& g, const SourceAttributes& a, const WorldPoints& world) {
    const PointSelection selection =
        chosenBy(g.block, {a.useComponents, a.components, a.groupId}, g.block.inputValue(a.geometry).data());
    return selection.mask(world.pointKind(), world.points.length(), world.numCVsInV);
}

/// `rgba` is read for a source that has points.
template <class ReadRgba>
void addPoints(Gathering& g, const SourceAttributes& a, ReadRgba readRgba) {
    if (!g.takesPart(a.use, a.geometry)) return;
    MDataHandle handle = g.block.inputValue(a.geometry);
    const WorldPoints world = worldPoints(handle, MPlug(g.node.thisMObject(), a.geometry), true);
    if (world.isPeriodicSurface) return warn(g.name, kPeriodic);
    const std::size_t count = world.points.length();
    if (count == 0) return;
    const SwitchedArray radii(g, a.useRadius, a.radius, a.radiusName, a.name, count);
    const SwitchedArray weights(g, a.useWeight, a.weight, a.weightName, a.name, count);
    const std::vector<double> rgba = readRgba(world);
    std::vector<Vec3> positions(count);
    for (unsigned i = 0; i < count; ++i)
        positions[i] = toVec3(world.points[i]);
    append(
        g.cloud,
        PointSource{
            positions, world.normals, chosenPoints(g, a, world), {radii.numbers(), weights.numbers()}, rgba},
        g.defaults);
}

void addMesh(Gathering& g) {
    const SourceAttributes a = {"inMesh",
                                Self::useInMesh,
                                Self::inMesh,
                                Self::inMeshUseComponents,
                                Self::inMeshObjectGroupId,
                                Self::inMeshComponents,
                                Self::inMeshUseRadiusPP,
                                Self::inMeshRadiusPP,
                                Self::inMeshUseWeightPP,
                                Self::inMeshWeightPP,
                                "inMeshRadiusPP",
                                "inMeshWeightPP"};
    addPoints(g, a, [&](const WorldPoints& world) {
        std::vector<double> rgba;
        if (!g.isOn(Self::inMeshUseRgbaPP)) return rgba;
        const MString set = g.block.inputValue(Self::inMeshColorSet).asString();
        const MColor unset(0, 0, 0, 0);
        MColorArray colors;
        MFnMesh(world.geometry).getVertexColors(colors, set.length() > 0 ? &set : nullptr, &unset);
        for (const MColor& c : elements(colors)) {
            for (unsigned channel = 0; channel < 4; ++channel)
                rgba.push_back(static_cast<double>(c[channel]));
        }
        return rgba;
    });
}

void addCurve(Gathering& g) {
    const SourceAttributes a = {"inCurve",
                                Self::useInCurve,
                                Self::inCurve,
                                Self::inCurveUseComponents,
                                Self::inCurveObjectGroupId,
                                Self::inCurveComponents,
                                Self::inCurveUseRadiusPP,
                                Self::inCurveRadiusPP,
                                Self::inCurveUseWeightPP,
                                Self::inCurveWeightPP,
                                "inCurveRadiusPP",
                                "inCurveWeightPP"};
    addPoints(g, a, [&](const WorldPoints& world) {
        return SwitchedArray(g, Self::inCurveUseRgbaPP, Self::inCurveRgbaPP, "inCurveRgbaPP", a.name,
                             world.points.length(), 4)
            .rgba();
    });
}

void addSurface(Gathering& g) {
    const SourceAttributes a = {"inSurface",
                                Self::useInSurface,
                                Self::inSurface,
                                Self::inSurfaceUseComponents,
                                Self::inSurfaceObjectGroupId,
                                Self::inSurfaceComponents,
                                Self::inSurfaceUseRadiusPP,
                                Self::inSurfaceRadiusPP,
                                Self::inSurfaceUseWeightPP,
                                Self::inSurfaceWeightPP,
                                "inSurfaceRadiusPP",
                                "inSurfaceWeightPP"};
    addPoints(g, a, [&](const WorldPoints& world) {
        return SwitchedArray(g, Self::inSurfaceUseRgbaPP, Self::inSurfaceRgbaPP, "inSurfaceRgbaPP", a.name,
                             world.points.length(), 4)
            .rgba();
    });
}

std::vector<int> chosenParticles(const Gathering& g, std::size_t count) {
    std::vector<int> ids;
    if (g.block.inputValue(Self::inParticleUseComponents).asShort() == kInputComponentList) {
        MIntArray chosen =
            particleIds(g.block.inputValue(Self::inParticleComponents).data(), static_cast<unsigned>(count));
        ids.assign(elements(chosen).begin(), elements(chosen).end());
    } else {
        ids.resize(count);
        std::iota(ids.begin(), ids.end(), 0);
    }
    return ids;
}

void addParticles(Gathering& g) {
    if (!g.takesPart(Self::useInParticle, Self::inParticlePositionPP)) return;
    MDataHandle handle = g.block.inputValue(Self::inParticlePositionPP);
    const WorldPoints world = worldPoints(handle, MPlug(), false);
    const std::size_t count = world.points.length();
    if (count == 0) return;
    const std::vector<int> ids = chosenParticles(g, count);
    if (ids.empty()) return;
    const auto array = [&](const MObject& use, const MObject& attribute, const char* name) {
        return SwitchedArray(g, use, attribute, name, "inParticle", count);
    };
    const auto radii = array(Self::inParticleUseRadiusPP, Self::inParticleRadiusPP, "inParticleRadiusPP");
    const auto velocities =
        array(Self::inParticleUseVelocityPP, Self::inParticleVelocityPP, "inParticleVelocityPP").vectors();
    const auto weights = array(Self::inParticleUseWeightPP, Self::inParticleWeightPP, "inParticleWeightPP");
    const auto colors = array(Self::inParticleUseRgbPP, Self::inParticleRgbPP, "inParticleRgbPP").vectors();
    const auto opacities =
        array(Self::inParticleUseOpacityPP, Self::inParticleOpacityPP, "inParticleOpacityPP");
    std::vector<Vec3> positions(count);
    for (unsigned i = 0; i < count; ++i)
        positions[i] = toVec3(world.points[i]);
    const MVector up = MVector(0, 1, 0) * g.block.inputValue(Self::inParentMatrix).asMatrix();
    append(g.cloud,
           ParticleSource{positions,
                          ids,
                          {radii.numbers(), weights.numbers()},
                          velocities,
                          colors,
                          opacities.numbers(),
                          toVec3(up)},
           g.defaults);
}

CloudDefaults readDefaults(MDataBlock& block) {
    CloudDefaults defaults;
    defaults.radius = block.inputValue(Self::pointRadius).asDouble();
    defaults.weight = block.inputValue(Self::pointWeight).asDouble();
    const float3& color = block.inputValue(Self::pointColor).asFloat3();
    for (std::size_t i = 0; i < 3; ++i)
        defaults.color[i] = static_cast<double>(color[i]);
    defaults.alpha = static_cast<double>(block.inputValue(Self::pointAlpha).asFloat());
    return defaults;
}

void handOver(const CloudArrays& cloud, MDataBlock& block) {
    PointsOutput positions;
    VectorsOutput normals;
    DoublesOutput radii, weights, rgba;
    for (const auto& p : cloud.positions)
        positions.values.append(toPoint(p));
    for (const auto& n : cloud.normals)
        normals.values.append(toVector(n));
    const auto fill = [](MDoubleArray& to, const std::vector<double>& from) {
        to = MDoubleArray(from.data(), static_cast<unsigned>(from.size()));
    };
    fill(radii.values, cloud.radii);
    fill(weights.values, cloud.weights);
    fill(rgba.values, cloud.rgba);
    positions.handOver(block, Self::positionPP);
    normals.handOver(block, Self::normalPP);
    radii.handOver(block, Self::radiusPP);
    weights.handOver(block, Self::weightPP);
    rgba.handOver(block, Self::rgbaPP);
}

const MObject* const kOutputs[] = {&Self::outData,    &Self::outParentMatrix, &Self::dataPP,
                                   &Self::positionPP, &Self::normalPP,        &Self::radiusPP,
                                   &Self::weightPP,   &Self::rgbaPP};

} // namespace

MTypeId boundingObject::id(0x115743);

void* boundingObject::creator() { return new boundingObject; }

MStatus boundingObject::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kHasNoEffect) return MS::kSuccess;
    if (std::none_of(std::begin(kOutputs), std::end(kOutputs),
                     [&](const MObject* output) { return plug == *output; }))
        return MS::kSuccess;
    MDataHandle outMatrix = block.outputValue(outParentMatrix);
    outMatrix.set(block.inputValue(inParentMatrix).asMatrix());
    outMatrix.setClean();
    Gathering g{*this, block, nodeName(*this, envelope), {}, {}};
    if (g.isOn(envelope) && block.inputValue(type).asShort() == vesk::volume::kCloud) {
        g.defaults = readDefaults(block);
        addMesh(g);
        addCurve(g);
        addSurface(g);
        addParticles(g);
    }
    handOver(g.cloud, block);
    return MS::kSuccess;
}
