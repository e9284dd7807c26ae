#include "nodes/tensionBlendShape/tensionBlendShape.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/deformer_inputs.h"
#include "nodes/common/mesh_edges.h"
#include "nodes/tensionBlendShape/tensionBlend.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MColorArray.h>
#include <maya/MFileIO.h>
#include <maya/MFloatVector.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MPlugArray.h>
#include <maya/MPointArray.h>

#include <algorithm>

namespace {

using namespace vesk::nodes;
using Self = tensionBlendShape;

enum Mode : short { kTension = 0, kDistance = 1 };

constexpr const char* kStretchSet = "stretch";

MPointArray pointsOf(const MObject& mesh, MSpace::Space space = MSpace::kObject) {
    MPointArray points;
    if (mesh.apiType() == MFn::kMeshData) MFnMesh(mesh).getPoints(points, space);
    return points;
}

std::vector<float> worldLengths(const MObject& mesh) {
    MPointArray points = pointsOf(mesh, MSpace::kWorld);
    return meanEdgeLengths(edgesOf(MFnMesh(mesh)), elements(points));
}

// --- binding

/// Stores the lengths and points of the geometry at element 0.
void bind(const MObject& node) {
    MPlug source(node, Self::inputGeom);
    source.selectAncestorLogicalIndex(0, Self::input);
    MObject mesh;
    if (!source.getValue(mesh) || mesh.apiType() != MFn::kMeshData) return;
    const std::vector<float> lengths = worldLengths(mesh);
    const MPointArray points = pointsOf(mesh);
    const MPlug lengthPlug(node, Self::originEdgeLength), pointPlug(node, Self::origPoints);
    for (unsigned k = 0; k < points.length(); ++k) {
        lengthPlug.elementByLogicalIndex(k).setValue(lengths[k]);
        const MPlug point = pointPlug.elementByLogicalIndex(k);
        for (unsigned axis = 0; axis < 3; ++axis)
            point.child(axis).setValue(static_cast<float>(points[k][axis]));
    }
}

/// What was bound, one entry a vertex; what is missing is 0.
struct BindData {
    std::vector<float> lengths;
    std::vector<MPoint> points;
};

BindData readBindData(MDataBlock& block, std::size_t count) {
    BindData data{std::vector<float>(count, 0), std::vector<MPoint>(count)};
    const auto read = [&](const MObject& attribute, auto store) {
        MArrayDataHandle list = block.inputArrayValue(attribute);
        const unsigned entries = list.elementCount();
        for (unsigned i = 0; i < entries; ++i, list.next()) {
            if (list.elementIndex() < count) store(list.elementIndex(), list.inputValue());
        }
    };
    read(Self::originEdgeLength, [&](unsigned k, const MDataHandle& h) { data.lengths[k] = h.asFloat(); });
    read(Self::origPoints,
         [&](unsigned k, const MDataHandle& h) { data.points[k] = MPoint(MVector(h.asFloatVector())); });
    return data;
}

// --- computing

double floatAt(MDataBlock& block, const MObject& attribute) {
    return static_cast<double>(block.inputValue(attribute).asFloat());
}

/// One of the two sides as its attributes say. The points must outlive it.
BlendSide sideOf(MDataBlock& block, const MObject& multiply, const MObject& limitIsOn, const MObject& limit,
                 const MObject& color, MPointArray& target) {
    BlendSide side;
    side.multiplier = floatAt(block, multiply) * floatAt(block, Self::overallMultiply);
    if (block.inputValue(limitIsOn).asBool()) side.limit = floatAt(block, limit);
    side.target = elements(target);
    const MFloatVector rgb = block.inputValue(color).asFloatVector();
    side.color = MColor(rgb.x, rgb.y, rgb.z);
    return side;
}

/// Colours of the output go into the current set, those of the stretch into a set of their own.
void paint(MFnMesh& mesh, const Blended& blended) {
    MString current = mesh.currentColorSetName();
    if (current.length() == 0) current = mesh.createColorSetWithName("colorSet1");
    mesh.setVertexColors(
        MColorArray(blended.outputColors.data(), static_cast<unsigned>(blended.outputColors.size())),
        MIntArray(blended.coloredVertices.data(), static_cast<unsigned>(blended.coloredVertices.size())));
    if (blended.stretchColors.empty()) return;
    MIntArray all(static_cast<unsigned>(blended.stretchColors.size()));
    for (unsigned k = 0; k < all.length(); ++k)
        all[k] = static_cast<int>(k);
    mesh.createColorSetWithName(kStretchSet);
    mesh.setCurrentColorSetName(kStretchSet);
    mesh.setVertexColors(MColorArray(blended.stretchColors.data(), all.length()), all);
    mesh.setCurrentColorSetName(current);
}

void putAmounts(MDataBlock& block, const MObject& attribute, const std::vector<float>& amounts) {
    MArrayDataBuilder builder(&block, attribute, static_cast<unsigned>(amounts.size()));
    for (unsigned k = 0; k < amounts.size(); ++k)
        builder.addElement(k).set(amounts[k]);
    MArrayDataHandle out = block.outputArrayValue(attribute);
    out.set(builder);
    out.setAllClean();
}

Blended blend(MDataBlock& block, const MObject& incoming, const MObject& first) {
    MPointArray stretchTarget = pointsOf(block.inputValue(Self::inStretchMesh).data());
    MPointArray compressionTarget = pointsOf(block.inputValue(Self::inCompressionMesh).data());
    const BlendSide stretch = sideOf(block, Self::stretchMultiply, Self::stretchLimitON, Self::stretchLimit,
                                     Self::stretchColor, stretchTarget);
    const BlendSide compression = sideOf(block, Self::compressionMultiply, Self::compressionLimitON,
                                         Self::compressionLimit, Self::compressionColor, compressionTarget);
    MPointArray points = pointsOf(incoming);
    const std::vector<float> lengths = worldLengths(first);
    const BindData bound = readBindData(block, lengths.size());
    const BlendSource source{elements(points), bound.points, lengths, bound.lengths};
    const short mode = std::clamp<short>(block.inputValue(Self::mode).asShort(), kTension, kDistance);
    return mode == kDistance ? blendByDistance(source, stretch)
                             : blendByTension(source, stretch, compression);
}

} // namespace

MTypeId tensionBlendShape::id(0x11579a);

void* tensionBlendShape::creator() { return new tensionBlendShape; }

MStatus tensionBlendShape::initialize() {
    AttributeTable t;
    t.typed(inStretchMesh, "inStretchMesh", "ism", MFnData::kMesh);
    t.typed(inCompressionMesh, "inCompressionMesh", "icm", MFnData::kMesh);
    t.real(stretchOutputArray, "stretchOutputArray", "stretchOutputArray", 0)
        .builder()
        .notWritable()
        .notStorable();
    t.compound(stretchOutput, "stretchOutput", "stretchOutput", {&stretchOutputArray}).hidden().output();
    t.real(originEdgeLength, "originEdgeLength", "originEdgeLength", 0).array();
    t.point(origPoints, "origPoints", "origPoints", 0, 0, 0).array();
    t.real(compressionOutputArray, "compressionOutputArray", "compressionOutputArray", 0)
        .builder()
        .notWritable()
        .notStorable();
    t.compound(compressionOutput, "compressionOutput", "compressionOutput", {&compressionOutputArray})
        .hidden()
        .output();
    t.real(compressionLimit, "compressionLimit", "compressionLimit", 1);
    t.real(stretchLimit, "stretchLimit", "stretchLimit", 1);
    t.boolean(stretchLimitON, "stretchLimitON", "stretchLimitON", false);
    t.boolean(compressionLimitON, "compressionLimitON", "compressionLimitON", false);
    t.real(compressionMultiply, "compressionMultiply", "cm", 1).keyable();
    t.real(stretchMultiply, "stretchMultiply", "sm", 1).keyable();
    t.real(overallMultiply, "overallMultiply", "om", 1).keyable();
    t.color(stretchColor, "stretchColor", "sc", 1, 0, 0);
    t.color(compressionColor, "compressionColor", "cc", 0, 1, 0).keyable();
    t.enumeration(mode, "Mode", "mo", {"Stretch&Compression", "Distance"});
    MStatus status = t.finish({&outputGeom});
    for (const MObject* array : {&stretchOutput, &compressionOutput}) {
        if (status) status = attributeAffects(inputGeom, *array);
    }
    return status;
}

MStatus tensionBlendShape::connectionMade(const MPlug& plug, const MPlug& otherPlug, bool asSource) {
    if (plug == outputGeom) {
        MPlug first = MPlug(thisMObject(), outputGeom).elementByLogicalIndex(0);
        MItDependencyGraph shapes(first, MFn::kMesh, MItDependencyGraph::kDownstream);
        if (!shapes.isDone()) {
            const MString shape = MFnDagNode(shapes.currentItem()).partialPathName();
            MGlobal::executeCommand("setAttr " + shape + ".displayColors 1;");
        }
    } else if (plug == inputGeom && !MFileIO::isReadingFile()) {
        bind(thisMObject()); // a file brings what was bound
    }
    return MPxDeformerNode::connectionMade(plug, otherPlug, asSource);
}

MStatus tensionBlendShape::setDependentsDirty(const MPlug&, MPlugArray& plugs) {
    const MPlug outputs(thisMObject(), outputGeom);
    plugs.append(MPlug(thisMObject(), inputGeom));
    plugs.append(outputs);
    for (unsigned i = 0; i < outputs.numElements(); ++i)
        plugs.append(outputs.elementByPhysicalIndex(i));
    return MS::kSuccess;
}

MStatus tensionBlendShape::compute(const MPlug& plug, MDataBlock& block) {
    if (plug != outputGeom || !plug.isElement()) {
        // The arrays are filled along with the geometry.
        MObject geometry;
        if (isOneOf(plug, {&stretchOutput, &stretchOutputArray, &compressionOutput, &compressionOutputArray}))
            MPlug(thisMObject(), outputGeom).elementByLogicalIndex(0).getValue(geometry);
        return MS::kSuccess;
    }
    DeformerInput incoming(block, plug.logicalIndex());
    MDataHandle output = block.outputValue(plug);
    if (!output.copy(incoming.geometry)) output.set(MObject::kNullObj); // nothing comes in any more
    if (output.type() != MFnData::kMesh) return MS::kSuccess;
    DeformerInput first(block, 0);
    const MObject walked = first.geometry.data();
    if (walked.apiType() != MFn::kMeshData) return MS::kSuccess;
    const Blended blended = blend(block, incoming.geometry.data(), walked);
    MFnMesh mesh(output.asMesh());
    mesh.setPoints(MPointArray(blended.points.data(), static_cast<unsigned>(blended.points.size())));
    paint(mesh, blended);
    putAmounts(block, stretchOutputArray, blended.stretch);
    putAmounts(block, compressionOutputArray, blended.compression);
    MPlug(thisMObject(), stretchOutputArray).setValue(0.0F);
    return MS::kSuccess;
}
