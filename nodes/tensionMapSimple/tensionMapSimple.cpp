#include "nodes/tensionMapSimple/tensionMapSimple.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/kernel_ramp.h"
#include "nodes/common/mesh_edges.h"
#include "nodes/common/points.h"
#include "nodes/common/ramp.h"
#include "nodes/common/steps.h"
#include "nodes/tensionMapSimple/zoneTension.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MFnMesh.h>
#include <maya/MPointArray.h>

#include <algorithm>
#include <string>

namespace {

using namespace vesk::nodes;
using Self = tensionMapSimple;

/// One zone as it is set on the node.
struct NamedZone {
    unsigned index;
    MString text;
};

/// A mesh now and at rest. Without one there are no points.
struct MeasuredMesh {
    std::vector<std::array<int, 2>> edges;
    EdgeLengths lengths;
    std::size_t vertexCount = 0;
};

MPointArray pointsOf(const MObject& data, short coordinateSystem) {
    MPointArray points;
    MFnMesh(data).getPoints(points, coordinateSystem == kWorldCoordinates ? MSpace::kWorld : MSpace::kObject);
    return points;
}

/// What `warnings` gets belongs behind the node's name.
MeasuredMesh measure(const MPxNode& node, MDataBlock& block, std::vector<std::string>& warnings) {
    MeasuredMesh measured;
    const MObject now = block.inputValue(Self::inMesh).data();
    if (now.apiType() != MFn::kMeshData) return measured;
    const short space = block.inputValue(Self::coordinateSystem).asShort();
    MPointArray points = pointsOf(now, space);
    measured.vertexCount = points.length();
    const MObject then =
        dataAtFrame(MPlug(node.thisMObject(), Self::inMesh), block.inputValue(Self::restFrame).asDouble());
    MPointArray rest;
    if (then.apiType() == MFn::kMeshData) rest = pointsOf(then, space);
    if (rest.length() != points.length()) {
        warnings.emplace_back("The mesh at restFrame has another number of vertices.");
        return measured;
    }
    measured.edges = edgesOf(MFnMesh(now));
    measured.lengths = lengthsOf(measured.edges, elements(points), elements(rest));
    return measured;
}

std::vector<NamedZone> readZones(MDataBlock& block) {
    std::vector<NamedZone> zones;
    MArrayDataHandle list = block.inputArrayValue(Self::zones);
    const unsigned count = list.elementCount();
    for (unsigned i = 0; i < count; ++i) {
        list.jumpToArrayElement(i);
        zones.push_back({list.elementIndex(), list.inputValue().asString()});
    }
    return zones;
}

double zoneTension(const NamedZone& named, const MeasuredMesh& mesh, std::vector<std::string>& warnings) {
    const Zone zone = zoneOf({named.text.asChar(), named.text.length()}, mesh.vertexCount);
    const std::string name = "zones[" + std::to_string(named.index) + "]";
    if (!zone.fault.empty())
        warnings.push_back(name + " is not understood at \"" + std::string(zone.fault) + "\".");
    if (zone.namesMissing) warnings.push_back(name + " names vertices that inMesh does not have.");
    return tensionOf(mesh.edges, mesh.lengths, zone.contains);
}

/// The two numbers of a zone.
struct Driven {
    double stretch = 0, compression = 0;
};

Driven drivenBy(double tension, const CurveRamp& ramp, double stretchMult, double compressionMult) {
    const auto through = [&ramp](double amount) {
        return static_cast<double>(ramp.at(static_cast<float>(amount))[0]);
    };
    return {through(std::max(tension, 0.0) * stretchMult),
            through(std::max(-tension, 0.0) * compressionMult)};
}

} // namespace

MTypeId tensionMapSimple::id(0x11578d);

void* tensionMapSimple::creator() { return new tensionMapSimple; }

MStatus tensionMapSimple::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.typed(inMesh, "inMesh", "inm", MFnData::kMesh).notStorable().resets();
    t.string(zones, "zones", "z").array();
    t.number(restFrame, "restFrame", "rf", 1).keyable();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.number(stretchMult, "stretchMult", "sm", 1).keyable().min(0).softMax(10);
    t.number(compressionMult, "compressionMult", "cm", 1).keyable().min(0).softMax(10);
    t.number(outStretch, "outStretch", "os", 0).builder().output();
    t.number(outCompression, "outCompression", "oc", 0).builder().output();
    for (unsigned i = 0; i < kZoneCount; ++i) {
        const std::string number = std::to_string(i);
        t.curveRamp(zoneRamps[i], ("zoneRamp" + number).c_str(), ("zr" + number).c_str());
    }
    return t.finish();
}

void tensionMapSimple::postConstructor() {
    for (const MObject& ramp : zoneRamps)
        startIdentity(thisMObject(), ramp);
}

MStatus tensionMapSimple::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking || !isOneOf(plug, {&outStretch, &outCompression}))
        return MS::kUnknownParameter;
    const std::vector<NamedZone> named = readZones(block);
    const bool isOn = block.inputValue(envelope).asBool() && !named.empty();
    std::vector<std::string> warnings;
    const MeasuredMesh mesh = isOn ? measure(*this, block, warnings) : MeasuredMesh();
    const double stretch = block.inputValue(stretchMult).asDouble();
    const double compression = block.inputValue(compressionMult).asDouble();
    const auto size = static_cast<unsigned>(named.size());
    MArrayDataBuilder stretches(&block, outStretch, size), compressions(&block, outCompression, size);
    for (const NamedZone& zone : named) {
        Driven driven;
        if (zone.index >= kZoneCount) {
            warnings.push_back("zones[" + std::to_string(zone.index) + "] has no ramp: there are 50.");
        } else if (mesh.vertexCount > 0) {
            driven = drivenBy(zoneTension(zone, mesh, warnings),
                              readCurveRamp(thisMObject(), zoneRamps[zone.index]), stretch, compression);
        }
        stretches.addElement(zone.index).set(driven.stretch);
        compressions.addElement(zone.index).set(driven.compression);
    }
    for (const auto& text : warnings)
        warn(nodeName(*this, inMesh), text.c_str());
    for (const auto& [attribute, builder] :
         {std::pair(&outStretch, &stretches), std::pair(&outCompression, &compressions)}) {
        MArrayDataHandle out = block.outputArrayValue(*attribute);
        out.set(*builder);
        out.setAllClean();
    }
    return MS::kSuccess;
}
