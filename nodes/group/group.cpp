#include "nodes/group/group.h"

#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/group/groupStages.h"

#include <maya/MDataBlock.h>
#include <maya/MFnComponentListData.h>
#include <maya/MFnGeometryData.h>
#include <maya/MFnIntArrayData.h>
#include <maya/MFnMesh.h>
#include <maya/MFnVectorArrayData.h>
#include <maya/MStringArray.h>
#include <maya/MVectorArray.h>

#include <algorithm>

namespace {

using namespace vesk::nodes;
using Self = group;
using Form = GroupGeometry::Form;

constexpr const char* kNoVelocities = "Cannot find particle shape node on the input. Please supply velocity "
                                      "data to the inVelocityPP attribute.";
constexpr const char* kPeriodic =
    "Geometry at the input is a periodic nurbs surface. Rebuild using the \"End "
    "Conditions\" / \"Multiple Knots\" options.";

// --- reading
// -----------------------------------------------------------------------------------------------------

template <class Enum>
Enum enumIn(MDataBlock& block, const MObject& attribute) {
    return static_cast<Enum>(block.inputValue(attribute).asShort());
}

/// A first step longer than the second is cut, on the node as well.
void readSteps(MDataBlock& block, GroupOperationSettings& s) {
    s.stepB = std::max(1, block.inputValue(Self::stepB).asInt());
    s.stepA = block.inputValue(Self::stepA).asInt();
    if (s.stepA <= s.stepB) return;
    s.stepA = s.stepB;
    block.outputValue(Self::stepA).set(s.stepA);
}

GroupOperationSettings readOperations(MDataBlock& block, const MPxNode& node, GroupKind kind) {
    GroupOperationSettings s;
    s.kind = kind;
    s.pattern = block.inputValue(Self::pattern).asString();
    s.initialComponents = block.inputValue(Self::initialComponents).asString();
    s.rangeStart = block.inputValue(Self::rangeStart).asInt();
    s.rangeEnd = std::min(0, block.inputValue(Self::rangeEnd).asInt());
    readSteps(block, s);
    s.mode = enumIn<GroupAngleMode>(block, Self::mode);
    s.direction = block.inputValue(Self::direction).asVector();
    s.spreadAngle = block.inputValue(Self::spreadAngle).asFloat();
    s.inBetweenAngle = block.inputValue(Self::inBetweenAngle).asFloat();
    s.depth = block.inputValue(Self::depth).asInt();
    s.inUvSpace = block.inputValue(Self::space).asShort() == 1;
    s.lengthThreshold = block.inputValue(Self::lengthThreshold).asDouble();
    s.areaThreshold = block.inputValue(Self::areaThreshold).asDouble();
    s.perimeterThreshold = block.inputValue(Self::perimeterThreshold).asDouble();
    s.input = MPlug(node.thisMObject(), Self::inGeometry);
    return s;
}

void readMirror(MDataBlock& block, const MPxNode& node, GroupSettings& s) {
    s.mirrorMode = enumIn<GroupMirror>(block, Self::mirror);
    if (s.mirrorMode == GroupMirror::kNone) return;
    s.hasMirrorMatrix = isConnected(node, Self::mirrorMatrix);
    const MMatrix matrix = block.inputValue(Self::mirrorMatrix).asMatrix();
    s.mirrorInverse = matrix.inverse();
    s.mirror.origin = MPoint(matrix(3, 0), matrix(3, 1), matrix(3, 2));
    s.mirror.axis = std::clamp<int>(block.inputValue(Self::axis).asShort(), 0, 2);
    s.mirror.direction = enumIn<MirrorDirection>(block, Self::mirrorDirection);
    s.mirror.precise = block.inputValue(Self::precise).asBool();
    s.mirror.radius = std::max(0.001, block.inputValue(Self::radius).asDouble());
    const MObject* const resolutions[] = {&Self::gridResolutionX, &Self::gridResolutionY,
                                          &Self::gridResolutionZ};
    for (int i = 0; i < 3; ++i)
        s.mirror.resolution[i] = std::max(2, block.inputValue(*resolutions[i]).asInt());
    s.contained = block.inputValue(Self::contained).asBool();
}

GroupSettings readSettings(MDataBlock& block, const MPxNode& node) {
    GroupSettings s;
    s.kind = static_cast<GroupKind>(std::clamp<short>(block.inputValue(Self::componentType).asShort(), 0, 6));
    s.combine = enumIn<GroupCombine>(block, Self::combine);
    s.filterInput = block.inputValue(Self::filterInput).asBool();
    s.operation = block.inputValue(Self::operation).asShort();
    s.operations = readOperations(block, node, s.kind);
    readMirror(block, node, s);
    s.boundary = enumIn<GroupBoundary>(block, Self::boundary);
    s.invert = block.inputValue(Self::invert).asBool();
    s.currentTime = block.inputValue(Self::currentTime).asDouble();
    s.resetFrames = block.inputValue(Self::resetFrames).asString();
    s.startFrames = block.inputValue(Self::startFrames).asString();
    return s;
}

/// The set that UVs are asked for in. Without one nothing is told but the warning.
void chooseUvSet(MDataBlock& block, GroupGeometry& geometry, const MString& name) {
    if (geometry.form != Form::kMesh) return;
    const MFnMesh mesh(geometry.mesh);
    geometry.uvSet = block.inputValue(Self::uvSet).asString();
    if (geometry.uvSet.length() == 0) {
        geometry.hasUvs = mesh.currentUVSetName().length() > 0;
        if (!geometry.hasUvs) warn(name, "Cannot find a current uvSet.");
        return;
    }
    MStringArray names;
    mesh.getUVSetNames(names);
    for (unsigned i = 0; i < names.length(); ++i)
        geometry.hasUvs = geometry.hasUvs || names[i] == geometry.uvSet;
    if (!geometry.hasUvs) warn(name, ("Cannot find uvSet named \"" + geometry.uvSet + "\".").asChar());
}

/// The entries of a component list, or of an int array as the ids of `type`.
RunningList readList(const MObject& data, const GroupGeometry& geometry, MFn::Type type) {
    RunningList list;
    MStatus status;
    if (data.apiType() == MFn::kIntArrayData) {
        const MFnIntArrayData ids(data);
        std::vector<ElementId> elements;
        for (unsigned i = 0; i < ids.length(); ++i)
            elements.push_back(ids[i]);
        if (!elements.empty()) list.add(ElementSet::of(type, std::move(elements)));
    } else if (const MFnComponentListData components(data, &status); status) {
        for (unsigned i = 0; i < components.length(); ++i) {
            const MObject component = components[i];
            const ElementSet set = readComponent(component, geometry.wholeCounts(component.apiType()));
            if (set.type != MFn::kInvalid) list.add(set);
        }
    }
    return list;
}

/// For particles whatever has single ids stands for particles.
RunningList readInput(MDataBlock& block, const GroupGeometry& geometry, GroupKind kind) {
    const MFn::Type vertices = MFn::kMeshVertComponent;
    const MObject data = block.inputValue(Self::inComponents).data();
    if (kind != GroupKind::kParticle) {
        return data.apiType() == MFn::kIntArrayData ? RunningList() : readList(data, geometry, vertices);
    }
    RunningList list = readList(data, geometry, vertices);
    if (list.isEmpty() || list.first()->type == vertices) return list;
    RunningList ids;
    if (list.first()->type != MFn::kSurfaceCVComponent) ids.add({vertices, list.first()->elements});
    return ids;
}

// --- the pipeline
// ------------------------------------------------------------------------------------------------

RunningList select(const MPxNode& node, MDataBlock& block, const GroupSettings& s, GroupGeometry& geometry,
                   const RunningList& input, const MString& name) {
    VolumeReadRules rules;
    rules.clouds = {.onlyWholeClouds = true, .boxHoldsBarePoints = true};
    rules.normals = rules.weights = rules.colors = false;
    rules.warnsOfLengths = false;
    rules.needsRamps = false;
    ConnectedVolumes volumes = readVolumes(node, block, Self::volumes, name, rules);
    const RunningList previous =
        readList(block.outputValue(Self::outComponents).data(), geometry, MFn::kMeshVertComponent);
    const RunningList start =
        readList(block.inputValue(Self::initStateComponents).data(), geometry, MFn::kMeshVertComponent);

    RunningList list;
    seedStage(list, input, s, geometry);
    operationStage(list, s, geometry);
    volumeStage(list, s, geometry, volumes.list, volumes.clouds);
    intersectStage(list, input, s);
    mirrorStage(list, s, geometry, [&](const char* text) { warn(name, text); });
    boundaryStage(list, s, geometry);
    invertStage(list, s, geometry);
    nothingStage(list, s, geometry);
    accumulationStage(list, previous, start, s);
    return list;
}

// --- outputs
// -----------------------------------------------------------------------------------------------------

void put(MDataBlock& block, const MObject& attribute, const MObject& data) {
    MDataHandle handle = block.outputValue(attribute);
    handle.set(data);
    handle.setClean();
}

MObject listData(const RunningList& list) {
    MFnComponentListData maker;
    const MObject data = maker.create();
    for (const ElementSet& entry : list.entries())
        maker.add(makeComponent(entry));
    return data;
}

/// Particles as ids; the copies of the first that make three points are none.
MObject particleData(const ElementSet& set, const GroupGeometry& geometry) {
    MFnIntArrayData maker;
    const MObject data = maker.create();
    MIntArray ids = maker.array();
    const auto copies = static_cast<ElementId>(geometry.pointCount);
    for (const ElementId element : set.elements) {
        if (element < geometry.particleCount || element >= copies) ids.append(static_cast<int>(element));
    }
    maker.set(ids);
    return data;
}

void writeObjectGroup(MDataBlock& block, const MObject& geometry, const RunningList& list) {
    const int group = block.inputValue(Self::groupId).asInt();
    if (!block.inputValue(Self::outputObjectGroup).asBool() || group < 0 || list.isEmpty()) return;
    MObject object = geometry;
    MFnGeometryData data(object);
    const auto id = static_cast<unsigned>(group);
    data.removeObjectGroup(id);
    data.addObjectGroup(id);
    data.addObjectGroupComponent(id, makeComponent(*list.first()));
}

void putOutputs(MDataBlock& block, const RunningList& list, const GroupSettings& s,
                const GroupGeometry& geometry, bool writesGroup) {
    const bool areParticles = geometry.form == Form::kParticles;
    if (writesGroup && !geometry.output.isNull()) writeObjectGroup(block, geometry.output, list);
    const bool asIds = areParticles && s.kind == GroupKind::kParticle && !list.isEmpty();
    put(block, Self::outComponents, asIds ? particleData(*list.first(), geometry) : listData(list));
    // The positions of particles go on as they came.
    put(block, Self::outGeometry, areParticles ? block.inputValue(Self::inGeometry).data() : geometry.output);
}

void passThrough(MDataBlock& block) {
    put(block, Self::outGeometry, block.inputValue(Self::inGeometry).data());
    put(block, Self::outComponents, block.inputValue(Self::inComponents).data());
}

} // namespace

MObject group::envelope;
MObject group::inMessage;
MObject group::outMessage;
MObject group::inGeometry;
MObject group::outGeometry;
MObject group::inComponents;
MObject group::outComponents;
MObject group::inVelocityPP;
MObject group::initStateComponents;
MObject group::componentType;
MObject group::filterInput;
MObject group::combine;
MObject group::operation;
MObject group::coordinateSystem;
MObject group::uvSet;
MObject group::currentTime;
MObject group::startFrames;
MObject group::resetFrames;
MObject group::outputObjectGroup;
MObject group::groupId;
MObject group::pattern;
MObject group::rangeStart;
MObject group::rangeEnd;
MObject group::range;
MObject group::stepA;
MObject group::stepB;
MObject group::step;
MObject group::mode;
MObject group::directionX;
MObject group::directionY;
MObject group::directionZ;
MObject group::direction;
MObject group::spreadAngle;
MObject group::inBetweenAngle;
MObject group::initialComponents;
MObject group::depth;
MObject group::space;
MObject group::lengthThreshold;
MObject group::areaThreshold;
MObject group::perimeterThreshold;
MObject group::mirror;
MObject group::axis;
MObject group::mirrorDirection;
MObject group::precise;
MObject group::radius;
MObject group::gridResolutionX;
MObject group::gridResolutionY;
MObject group::gridResolutionZ;
MObject group::gridResolution;
MObject group::mirrorMatrix;
MObject group::contained;
MObject group::boundary;
MObject group::invert;
vesk::nodes::VolumeAttributes group::volumes;

MTypeId group::id(0x115742);

void* group::creator() { return new group; }

MStatus group::initialize() {
    const auto geometry = {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface,
                           MFnData::kVectorArray};
    const auto selection = {MFnData::kComponentList, MFnData::kIntArray};
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.integer(inMessage, "inMessage", "ims", 0);
    t.message(outMessage, "outMessage", "oms").influenced();
    t.generic(inGeometry, "inGeometry", "ig", geometry).notStorable();
    t.generic(outGeometry, "outGeometry", "og", geometry).output();
    t.generic(inComponents, "inComponents", "ic", selection).notStorable();
    t.generic(outComponents, "outComponents", "oc", selection).output();
    t.generic(inVelocityPP, "inVelocityPP", "ivpp", {MFnData::kVectorArray, MFnData::kDoubleArray})
        .notStorable();
    t.typed(initStateComponents, "initStateComponents", "isc", MFnData::kComponentList).notStorable();
    t.enumeration(componentType, "componentType", "ct",
                  {"mesh vertex", "mesh edge", "mesh face", "mesh map", "curve cv", "surface cv", "particle"})
        .keyable();
    t.boolean(filterInput, "filterInput", "fi", false).keyable();
    t.enumeration(combine, "combine", "c", {"None", "Union", "Subtract", "Intersect"}).keyable();
    t.enumeration(
         operation, "operation", "o",
         {"Pattern", "Range", "Normal / Velocity", "Depth", "Edge Length", "Face Area", "Face Perimeter"})
        .keyable();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.string(uvSet, "uvSet", "uvs");
    t.number(currentTime, "currentTime", "ctm", 0);
    t.string(startFrames, "startFrames", "saf");
    t.string(resetFrames, "resetFrames", "raf", "*");
    t.boolean(outputObjectGroup, "outputObjectGroup", "oog", false).keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.string(pattern, "pattern", "p").keyable();
    t.integer(rangeStart, "rangeStart", "rs", 0).min(0);
    t.integer(rangeEnd, "rangeEnd", "re", -1).max(0);
    t.tuple(range, "range", "r", {&rangeStart, &rangeEnd}).keyable();
    t.integer(stepA, "stepA", "sta", 1).min(1);
    t.integer(stepB, "stepB", "stb", 2).min(1);
    t.tuple(step, "step", "st", {&stepA, &stepB}).keyable();
    t.enumeration(mode, "mode", "m", {"Direction", "In-Between Angle"}).keyable();
    t.number(directionX, "directionX", "dx", 0);
    t.number(directionY, "directionY", "dy", 1);
    t.number(directionZ, "directionZ", "dz", 0);
    t.tuple(direction, "direction", "dir", {&directionX, &directionY, &directionZ}).keyable();
    t.real(spreadAngle, "spreadAngle", "sda", 0).min(0).max(180).keyable();
    t.real(inBetweenAngle, "inBetweenAngle", "iba", 0).min(0).max(180).keyable();
    t.string(initialComponents, "initialComponents", "ilc").keyable();
    t.integer(depth, "depth", "dpt", 0).min(0).softMax(10).keyable();
    t.enumeration(space, "space", "sp", {"XYZ", "UV"}).keyable();
    t.number(lengthThreshold, "lengthThreshold", "lt", 0).min(0).softMax(10).keyable();
    t.number(areaThreshold, "areaThreshold", "at", 0).min(0).softMax(10).keyable();
    t.number(perimeterThreshold, "perimeterThreshold", "pt", 0).min(0).softMax(10).keyable();
    t.enumeration(mirror, "mirror", "mr", {"None", "Replace", "Union"}).keyable();
    t.enumeration(axis, "axis", "a", {"X", "Y", "Z"}).keyable();
    t.enumeration(mirrorDirection, "mirrorDirection", "md",
                  {"both ways", "positive to negative", "negative to positive"})
        .keyable();
    t.boolean(precise, "precise", "pr", true).keyable();
    t.number(radius, "radius", "rds", 0.1).min(0.001).softMax(10).keyable();
    t.integer(gridResolutionX, "gridResolutionX", "grx", 10).min(2).keyable();
    t.integer(gridResolutionY, "gridResolutionY", "gry", 10).min(2).keyable();
    t.integer(gridResolutionZ, "gridResolutionZ", "grz", 10).min(2).keyable();
    t.tuple(gridResolution, "gridResolution", "gr", {&gridResolutionX, &gridResolutionY, &gridResolutionZ})
        .keyable();
    t.matrix(mirrorMatrix, "mirrorMatrix", "mm").notStorable();
    t.boolean(contained, "contained", "ctd", false).keyable();
    t.enumeration(boundary, "boundary", "b", {"None", "Replace", "Union", "Subtract", "Intersect"}).keyable();
    t.boolean(invert, "invert", "i", false).keyable();
    declareVolumes(t, volumes, {.cloudsAreStored = false, .hasBoundRadius = false});
    return t.finish();
}

MStatus group::compute(const MPlug& plug, MDataBlock& block) {
    const short nodeMode = nodeState(block);
    if (nodeMode == kHasNoEffect) {
        passThrough(block);
        return MS::kSuccess;
    }
    if (nodeMode == kBlocking) return MS::kUnknownParameter;
    if (plug != outMessage && plug != outGeometry && plug != outComponents) return MS::kUnknownParameter;
    const MString name = nodeName(*this, inGeometry);
    GroupSettings settings = readSettings(block, *this);
    GroupGeometry geometry;
    const GroupInput became = readGroupGeometry(thisMObject(), block, {inGeometry, inVelocityPP},
                                                block.inputValue(coordinateSystem).asShort(), geometry);
    if (became == GroupInput::kUnknownVelocities) {
        warn(name, kNoVelocities);
        put(block, outGeometry, block.inputValue(inGeometry).data());
        return MS::kSuccess;
    }
    RunningList list;
    if (became == GroupInput::kPeriodicSurface) {
        warn(name, kPeriodic);
        list.add({componentOf(settings.kind), {}});
        putOutputs(block, list, settings, geometry, false);
        return MS::kSuccess;
    }
    chooseUvSet(block, geometry, name);
    const RunningList input = readInput(block, geometry, settings.kind);
    const bool isOn = block.inputValue(envelope).asBool();
    if (isOn) {
        list = select(*this, block, settings, geometry, input, name);
    } else if (!input.isEmpty()) {
        list.add(*input.first());
    } else {
        nothingStage(list, settings, geometry);
    }
    putOutputs(block, list, settings, geometry, isOn);
    return MS::kSuccess;
}
