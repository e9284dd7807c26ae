#include "nodes/common/bounding_volumes.h"
#include "nodes/common/choice.h"

#include "nodes/common/arrays.h"
#include "nodes/common/steps.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MPlugArray.h>
#include <maya/MPxNode.h>

namespace vesk::nodes {

void declareVolumes(AttributeTable& t, VolumeAttributes& a, const VolumeAttributeRules& rules) {
    t.matrix(a.boundParentMatrix, "boundParentMatrix", "bpm");
    t.number(a.boundEnvelope, "boundEnvelope", "be", 0);
    t.shortInteger(a.boundType, "boundType", "bt", 0);
    t.boolean(a.boundContained, "boundContained", "bc", false);
    t.number(a.boundTopCapOffset, "boundTopCapOffset", "btso", 0);
    t.number(a.boundTopCapScaleX, "boundTopCapScaleX", "btcsx", 0);
    t.number(a.boundTopCapScaleY, "boundTopCapScaleY", "btcsy", 0);
    t.number(a.boundTopCapScaleZ, "boundTopCapScaleZ", "btcsz", 0);
    t.tuple(a.boundTopCapScale, "boundTopCapScale", "btcs",
            {&a.boundTopCapScaleX, &a.boundTopCapScaleY, &a.boundTopCapScaleZ});
    t.number(a.boundBottomCapOffset, "boundBottomCapOffset", "bso", 0);
    t.number(a.boundBottomCapScaleX, "boundBottomCapScaleX", "bbsx", 0);
    t.number(a.boundBottomCapScaleY, "boundBottomCapScaleY", "bbsy", 0);
    t.number(a.boundBottomCapScaleZ, "boundBottomCapScaleZ", "bbsz", 0);
    t.tuple(a.boundBottomCapScale, "boundBottomCapScale", "bbcs",
            {&a.boundBottomCapScaleX, &a.boundBottomCapScaleY, &a.boundBottomCapScaleZ});
    t.shortInteger(a.boundNormal, "boundNormal", "bn", 0);
    // The order of the children is that of the source's: wires join them by their places.
    t.compound(a.boundControlData, "boundControlData", "bcd",
               {&a.boundEnvelope, &a.boundType, &a.boundContained, &a.boundTopCapOffset, &a.boundTopCapScale,
                &a.boundBottomCapOffset, &a.boundBottomCapScale, &a.boundNormal});
    const auto array = [&](MObject& attribute, const char* longName, const char* shortName,
                           MFnData::Type type) {
        AttributeTable::Row row = t.typed(attribute, longName, shortName, type);
        if (!rules.cloudsAreStored) row.notStorable();
    };
    array(a.boundPositionPP, "boundPositionPP", "bppp", MFnData::kPointArray);
    array(a.boundNormalPP, "boundNormalPP", "bnpp", MFnData::kVectorArray);
    array(a.boundRadiusPP, "boundRadiusPP", "brpp", MFnData::kDoubleArray);
    array(a.boundWeightPP, "boundWeightPP", "bwpp", MFnData::kDoubleArray);
    array(a.boundRgbaPP, "boundRgbaPP", "brgbapp", MFnData::kDoubleArray);
    if (rules.hasBoundRadius) {
        t.number(a.boundRadius, "boundRadius", "br", 0);
        t.compound(a.boundDataPP, "boundDataPP", "bdpp",
                   {&a.boundPositionPP, &a.boundNormalPP, &a.boundRadiusPP, &a.boundWeightPP, &a.boundRgbaPP,
                    &a.boundRadius});
    } else {
        t.compound(
            a.boundDataPP, "boundDataPP", "bdpp",
            {&a.boundPositionPP, &a.boundNormalPP, &a.boundRadiusPP, &a.boundWeightPP, &a.boundRgbaPP});
    }
    t.compound(a.boundingObjects, "boundingObjects", "bos",
               {&a.boundParentMatrix, &a.boundControlData, &a.boundDataPP})
        .array()
        .builder();
}

namespace {

volume::Matrix toMatrix(const MMatrix& from) {
    volume::Matrix to;
    from.get(to.rows);
    return to;
}

volume::Vec3 toVec3(const double3& v) { return {v[0], v[1], v[2]}; }

volume::Placement readPlacement(const MDataHandle& element, const VolumeAttributes& a) {
    const MMatrix matrix = element.child(a.boundParentMatrix).asMatrix();
    return {{matrix(3, 0), matrix(3, 1), matrix(3, 2)}, toMatrix(matrix), toMatrix(matrix.inverse())};
}

volume::Controls readControls(const MDataHandle& element, const VolumeAttributes& a) {
    const MDataHandle control = element.child(a.boundControlData);
    volume::Controls c;
    c.envelope = control.child(a.boundEnvelope).asDouble();
    c.kind = control.child(a.boundType).asShort();
    c.contained = control.child(a.boundContained).asBool();
    c.capsule.topOffset = control.child(a.boundTopCapOffset).asDouble();
    c.capsule.topScale = toVec3(control.child(a.boundTopCapScale).asDouble3());
    c.capsule.bottomOffset = control.child(a.boundBottomCapOffset).asDouble();
    c.capsule.bottomScale = toVec3(control.child(a.boundBottomCapScale).asDouble3());
    c.normal = control.child(a.boundNormal).asShort();
    return c;
}

/// `name` is that of the consumer and the volume, for warnings.
volume::Cloud readCloud(const MDataHandle& element, const VolumeAttributes& a, double envelope,
                        const MString& name, const VolumeReadRules& rules) {
    MDataHandle data = element.child(a.boundDataPP);
    const ArrayView<MFnPointArrayData> positions(data.child(a.boundPositionPP).data());
    const ArrayView<MFnVectorArrayData> normals(data.child(a.boundNormalPP).data());
    const ArrayView<MFnDoubleArrayData> radii(data.child(a.boundRadiusPP).data());
    const ArrayView<MFnDoubleArrayData> weights(data.child(a.boundWeightPP).data());
    const ArrayView<MFnDoubleArrayData> rgba(data.child(a.boundRgbaPP).data());
    const std::size_t count = positions.values().size();
    volume::Cloud cloud;
    cloud.envelope = envelope;
    cloud.radiiMatch = radii.values().size() == count;
    const auto check = [&](bool isRead, std::size_t length, std::size_t wanted, const char* text) {
        if (!isRead || length == wanted) return;
        cloud.allMatch = false;
        if (rules.warnsOfLengths) warn(name, text);
    };
    check(rules.normals, normals.values().size(), count,
          "the normalPP array length does not match the point count.");
    check(rules.radii, radii.values().size(), count,
          "the radiusPP array length does not match the point count.");
    check(rules.weights, weights.values().size(), count,
          "the weightPP array length does not match the point count.");
    check(rules.colors, rgba.values().size(), 4 * count,
          "the rgbaPP array length does not match the point count.");
    cloud.points.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        volume::CloudPoint& point = cloud.points[i];
        point.sphere.center = nodes::toVec3(positions.values()[i]);
        if (i < radii.values().size()) point.sphere.radius = radii.values()[i];
        if (rules.normals && i < normals.values().size()) point.normal = nodes::toVec3(normals.values()[i]);
        if (rules.weights && i < weights.values().size()) point.weight = weights.values()[i];
        if (rules.colors && 4 * i + 3 < rgba.values().size())
            std::copy_n(rgba.values().begin() + static_cast<std::ptrdiff_t>(4 * i), 4, point.rgba.begin());
    }
    return cloud;
}

} // namespace

ConnectedVolumes readVolumes(const MPxNode& node, MDataBlock& block, const VolumeAttributes& a,
                             const MString& name, const VolumeReadRules& rules) {
    ConnectedVolumes volumes{{}, volume::CloudStore(rules.clouds), {}, false};
    MPlug multi(node.thisMObject(), a.boundingObjects);
    MIntArray indices;
    multi.getExistingArrayAttributeIndices(indices);
    volumes.hasElements = indices.length() > 0;
    MArrayDataHandle elements = block.inputArrayValue(a.boundingObjects);
    for (unsigned i = 0; i < indices.length(); ++i) {
        const auto index = static_cast<unsigned>(indices[i]);
        MPlugArray sources;
        multi.elementByLogicalIndex(index).connectedTo(sources, true, false);
        if (sources.length() == 0 || !elements.jumpToElement(index)) continue;
        // Read first, so that a change of what is left out is noticed too.
        const MDataHandle element = elements.inputValue();
        const MFnDependencyNode source(sources[0].node());
        if (rules.needsRamps && !source.hasAttribute("weightFalloff")) {
            warn(name, (MString("boundingObjects[") + static_cast<int>(index) + "] is fed by " +
                        sources[0].name() + ", which is no bounding object. It is left out.")
                           .asChar());
            continue;
        }
        const volume::Controls controls = readControls(element, a);
        volumes.list.add(controls, readPlacement(element, a));
        volumes.nodes.push_back(sources[0].node());
        if (controls.envelope > 0 && controls.kind == volume::kCloud)
            volumes.clouds.add(readCloud(element, a, controls.envelope, name + ":" + source.name(), rules));
    }
    return volumes;
}

std::vector<char> chosenPoints(MDataBlock& block, const MObject& inGeometry, const ChoiceAttributes& a,
                               const WorldPoints& world, const MString& name) {
    const unsigned count = world.points.length();
    const short mode = block.inputValue(a.useComponents).asShort();
    const bool areParticles = world.kind == MFnData::kVectorArray;
    if (areParticles && mode == kInputObjectGroup)
        warn(name, "Object groups are not supported for particles. Use componentList instead.");
    if (mode == kInputComponentList) {
        const MObject components = block.inputValue(a.inComponents).data();
        if (areParticles || components.apiType() == MFn::kIntArrayData)
            return maskOf(particleIds(components, count), count);
    }
    return chosenBy(block, a, block.inputValue(inGeometry).data())
        .mask(world.pointKind(), count, world.numCVsInV);
}

} // namespace vesk::nodes
