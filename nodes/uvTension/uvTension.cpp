#include "nodes/uvTension/uvTension.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/common/uv_sets.h"
#include "nodes/uvTension/layoutTension.h"

#include <maya/MColorArray.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatVector.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

using namespace vesk::nodes;
using Self = uvTension;

struct Settings {
    LayoutMeasure measure;
    double multiplier;
    MFloatVector usual, stretched, compressed;
};

Settings readSettings(MDataBlock& block) {
    const auto color = [&](const MObject& attribute) { return block.inputValue(attribute).asFloatVector(); };
    return {block.inputValue(Self::mode).asShort() == 1 ? LayoutMeasure::EdgeLength : LayoutMeasure::Area,
            block.inputValue(Self::multiplier).asDouble(), color(Self::defaultColor),
            color(Self::stretchColor), color(Self::compressionColor)};
}

MColor colorOf(double tension, const Settings& s) {
    if (std::isnan(tension)) return {0, 0, 0, 1};
    // Of a multiplier of 0 not even the infinite is left.
    const double shown = s.multiplier > 0 ? std::clamp(tension * s.multiplier, -1.0, 1.0) : 0;
    const auto share = static_cast<float>(std::abs(shown));
    const MFloatVector mixed = s.usual * (1 - share) + (shown > 0 ? s.stretched : s.compressed) * share;
    return {mixed.x, mixed.y, mixed.z, 1};
}

/// The UV ids of all corners; empty when no face is mapped.
std::vector<int> cornerUvs(const MFnMesh& mesh, const MIntArray& faceCounts, const MString* set) {
    MIntArray counts, ids;
    std::vector<int> uvs;
    if (!mesh.getAssignedUVs(counts, ids, set) || ids.length() == 0) return uvs;
    unsigned next = 0;
    for (unsigned face = 0; face < faceCounts.length(); ++face) {
        for (int corner = 0; corner < faceCounts[face]; ++corner)
            uvs.push_back(counts[face] > 0 ? ids[next++] : -1);
    }
    return uvs;
}

/// The tension of each vertex; empty without a layout.
std::vector<double> tensionsOf(const MFnMesh& mesh, const MString& uvSet, LayoutMeasure measure) {
    const MString* set = uvSet.length() > 0 ? &uvSet : nullptr;
    MIntArray counts, vertices;
    mesh.getVertices(counts, vertices);
    const std::vector<int> uvs = cornerUvs(mesh, counts, set);
    if (uvs.empty()) return {};
    MPointArray points;
    mesh.getPoints(points);
    MFloatArray us, vs;
    mesh.getUVs(us, vs, set);
    return layoutTension(
        {elements(points), elements(us), elements(vs), elements(counts), elements(vertices), uvs}, measure);
}

void paint(MFnMesh& mesh, const std::vector<double>& tensions, const Settings& settings) {
    const auto count = static_cast<unsigned>(tensions.size());
    MColorArray colors(count);
    MIntArray all(count);
    std::transform(tensions.begin(), tensions.end(), elements(colors).begin(),
                   [&](double tension) { return colorOf(tension, settings); });
    std::iota(elements(all).begin(), elements(all).end(), 0);
    mesh.setVertexColors(colors, all);
}

} // namespace

MTypeId uvTension::id(0x11579b);

void* uvTension::creator() { return new uvTension; }

MStatus uvTension::initialize() {
    AttributeTable t;
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.typed(inMesh, "inMesh", "im", MFnData::kMesh).notStorable().resets();
    t.typed(outMesh, "outMesh", "om", MFnData::kMesh).output();
    t.string(uvSet, "uvSet", "uvs").keyable();
    t.enumeration(mode, "mode", "m", {"Area", "Edge Length"}).keyable();
    t.number(multiplier, "multiplier", "mlt", 1).keyable().min(0).softMax(10);
    t.color(defaultColor, "defaultColor", "dc", 1, 1, 1).keyable();
    t.color(stretchColor, "stretchColor", "sc", 1, 0, 0).keyable();
    t.color(compressionColor, "compressionColor", "cc", 0, 0, 1).keyable();
    t.followState();
    return t.finish();
}

MStatus uvTension::compute(const MPlug& plug, MDataBlock& block) {
    const short behaviour = nodeState(block);
    if (behaviour == kBlocking || plug != outMesh) return MS::kUnknownParameter;
    MDataHandle in = block.inputValue(inMesh), out = block.outputValue(outMesh);
    if (!out.copy(in)) out.set(MObject::kNullObj); // nothing comes in any more
    out.setClean();
    const bool isActive = behaviour != kHasNoEffect && block.inputValue(envelope).asBool();
    if (!isActive || out.type() != MFnData::kMesh) return MS::kSuccess;
    const MString set = block.inputValue(uvSet).asString(), name = nodeName(*this, inMesh);
    MObject geometry = out.asMesh();
    MFnMesh mesh(geometry);
    if (mesh.numVertices() == 0 || !checkUvSet(mesh, set, name)) return MS::kSuccess;
    const Settings settings = readSettings(block);
    const std::vector<double> tensions = tensionsOf(mesh, set, settings.measure);
    if (tensions.empty()) {
        warn(name, "inMesh has no UVs to compare with.");
    } else {
        paint(mesh, tensions, settings);
    }
    return MS::kSuccess;
}
