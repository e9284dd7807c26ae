#include "nodes/vertexConstraint/vertexConstraint.h"

#include "nodes/common/array_inputs.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/steps.h"
#include "nodes/vertexConstraint/surfaceFrame.h"

#include <maya/MArrayDataHandle.h>
#include <maya/MEulerRotation.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshVertex.h>
#include <maya/MPoint.h>
#include <maya/MTransformationMatrix.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace {

using namespace vesk::nodes;
using Self = vertexConstraint;

/// Which vertex an element follows.
struct Choice {
    std::map<unsigned, int> named; ///< by element
    bool hasList = false;
    MIntArray list;

    /// -1 when there is none.
    int vertexOf(unsigned element) const {
        const auto own = named.find(element);
        if (own != named.end() && own->second >= 0) return own->second;
        if (!hasList) return static_cast<int>(element);
        return element < list.length() ? list[element] : -1;
    }
};

Choice readChoice(const MPxNode& node, MDataBlock& block, unsigned vertexCount) {
    Choice choice;
    MArrayDataHandle ids = block.inputArrayValue(Self::vertexId);
    const unsigned count = ids.elementCount();
    for (unsigned i = 0; i < count; ++i, ids.next())
        choice.named[ids.elementIndex()] = ids.inputValue().asInt();
    choice.hasList = isConnected(node, Self::inComponents);
    const MObject components = block.inputValue(Self::inComponents).data();
    choice.list = components.apiType() == MFn::kIntArrayData
                      ? particleIds(components, vertexCount)
                      : PointSelection::ofComponents(components).ids(MFn::kMeshVertComponent, vertexCount);
    return choice;
}

struct Settings {
    MSpace::Space space;
    unsigned axis;
    double offset;
    MEulerRotation::RotationOrder order;
};

Settings readSettings(MDataBlock& block) {
    const auto choice = [&](const MObject& attribute, int last) {
        return std::clamp<int>(block.inputValue(attribute).asShort(), 0, last);
    };
    return {choice(Self::coordinateSystem, 1) == kWorldCoordinates ? MSpace::kWorld : MSpace::kObject,
            static_cast<unsigned>(choice(Self::axis, 2)), block.inputValue(Self::offset).asDouble(),
            static_cast<MEulerRotation::RotationOrder>(choice(Self::rotateOrder, 5))};
}

/// Where a vertex is and how it is turned.
struct Pin {
    MPoint place;
    MEulerRotation turn;

    bool isFinite() const {
        return std::isfinite(place.x + place.y + place.z) && std::isfinite(turn.x + turn.y + turn.z);
    }
};

Pin pinAt(MItMeshVertex& vertices, int vertex, const MFnMesh& mesh, const Settings& s) {
    int previous = 0;
    vertices.setIndex(vertex, previous);
    Pin pin;
    pin.place = vertices.position(s.space);
    MVector normal, side;
    vertices.getNormal(normal, s.space);
    MIntArray neighbors;
    vertices.getConnectedVertices(neighbors);
    if (neighbors.length() > 0) {
        const auto around = elements(neighbors);
        MPoint lowest;
        mesh.getPoint(*std::min_element(around.begin(), around.end()), lowest, s.space);
        side = lowest - pin.place;
    }
    const MMatrix frame = surfaceFrame(normal, side, s.axis);
    const MVector up(frame[s.axis][0], frame[s.axis][1], frame[s.axis][2]);
    pin.place += up * s.offset;
    pin.turn = MTransformationMatrix(frame).eulerRotation();
    pin.turn.reorderIt(s.order);
    return pin;
}

/// Elements that are connected, and the one that is asked for.
std::set<unsigned> wantedElements(const MPlug& plug, MArrayDataHandle& outputs) {
    std::set<unsigned> wanted;
    const unsigned count = outputs.elementCount();
    for (unsigned i = 0; i < count; ++i) {
        outputs.jumpToArrayElement(i);
        wanted.insert(outputs.elementIndex());
    }
    MPlug asked = plug;
    while (asked.isChild() && !asked.isElement())
        asked = asked.parent();
    if (asked.isElement()) wanted.insert(asked.logicalIndex());
    return wanted;
}

void tellMissing(const MPxNode& node, unsigned element, int vertexCount) {
    MString text = "outTransforms[";
    text += static_cast<int>(element);
    text += "] has no vertex to follow: inMesh has ";
    text += vertexCount;
    warn(nodeName(node, Self::inMesh), (text + ".").asChar());
}

} // namespace

MTypeId vertexConstraint::id(0x11575e);

void* vertexConstraint::creator() { return new vertexConstraint; }

MStatus vertexConstraint::initialize() {
    AttributeTable t;
    t.typed(inMesh, "inMesh", "im", MFnData::kMesh).notStorable().resets();
    t.generic(inComponents, "inComponents", "ic", {MFnData::kComponentList, MFnData::kIntArray})
        .notStorable()
        .resets();
    t.integer(vertexId, "vertexId", "vi", -1).array().keyable();
    t.enumeration(coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.enumeration(axis, "axis", "ax", {"X", "Y", "Z"}, 1).keyable();
    t.number(offset, "offset", "of", 0).keyable();
    t.enumeration(rotateOrder, "rotateOrder", "ro", {"xyz", "yzx", "zxy", "xzy", "yxz", "zyx"}).keyable();
    const auto triple = [&](MObject& whole, const char* longName, const char* shortName,
                            std::initializer_list<MObject*> children, MFnUnitAttribute::Type type) {
        const char* letter = "X\0Y\0Z";
        for (MObject* child : children) {
            const MString longChild = MString(longName) + letter;
            const MString shortChild = MString(shortName) + MString(letter).toLowerCase();
            t.unit(*child, longChild.asChar(), shortChild.asChar(), type).notWritable().notStorable();
            letter += 2;
        }
        t.tuple(whole, longName, shortName, children).notWritable().notStorable();
    };
    triple(translate, "translate", "t", {&translateX, &translateY, &translateZ}, MFnUnitAttribute::kDistance);
    triple(rotate, "rotate", "r", {&rotateX, &rotateY, &rotateZ}, MFnUnitAttribute::kAngle);
    t.compound(outTransforms, "outTransforms", "ot", {&translate, &rotate}).builder().output();
    return t.finish();
}

MStatus vertexConstraint::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeState(block) == kBlocking) return MS::kUnknownParameter;
    if (!isOneOf(plug, {&outTransforms, &translate, &translateX, &translateY, &translateZ, &rotate, &rotateX,
                        &rotateY, &rotateZ}))
        return MS::kUnknownParameter;
    MArrayDataHandle outputs = block.outputArrayValue(outTransforms);
    const std::set<unsigned> wanted = wantedElements(plug, outputs);
    const Settings settings = readSettings(block);
    MDataHandle input = block.inputValue(inMesh);
    if (input.type() != MFnData::kMesh) return MS::kSuccess;
    MObject geometry = input.asMesh();
    const MFnMesh mesh(geometry);
    const int count = mesh.numVertices();
    const Choice choice = readChoice(*this, block, static_cast<unsigned>(count));
    MItMeshVertex vertices(geometry);
    MArrayDataBuilder builder = outputs.builder();
    bool isTold = false;
    for (const unsigned element : wanted) {
        MDataHandle out = builder.addElement(element);
        const int vertex = choice.vertexOf(element);
        if (vertex < 0 || vertex >= count) {
            if (!isTold) tellMissing(*this, element, count);
            isTold = true;
            continue;
        }
        const Pin pin = pinAt(vertices, vertex, mesh, settings);
        if (!pin.isFinite()) continue;
        out.child(translate).set(pin.place.x, pin.place.y, pin.place.z);
        out.child(rotate).set(pin.turn.x, pin.turn.y, pin.turn.z);
    }
    outputs.set(builder);
    outputs.setAllClean();
    return MS::kSuccess;
}
