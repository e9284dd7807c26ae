#include "host/nodes/transform.h"

#include "host/data/value_data.h"
#include "host/nodes/declare.h"

#include <maya/MTransformationMatrix.h>

namespace vesk::nodes {

namespace {

using graph::boolean;
using graph::enumeration;
using graph::matrix;
using graph::text;

/// What the local matrix is made of.
struct TransformAttributes {
    AttrRef translate = keyable(triple("translate", "t", UnitKind::Distance));
    AttrRef rotate = keyable(triple("rotate", "r", UnitKind::Angle));
    AttrRef scale = keyable(triple("scale", "s", UnitKind::None, 1));
    AttrRef shear = graph::tuple("shear", "sh", MFnNumericData::k3Double, {"XY", "XZ", "YZ"});
    AttrRef rotatePivot = triple("rotatePivot", "rp", UnitKind::Distance);
    AttrRef rotatePivotTranslate = triple("rotatePivotTranslate", "rpt", UnitKind::Distance);
    AttrRef scalePivot = triple("scalePivot", "sp", UnitKind::Distance);
    AttrRef scalePivotTranslate = triple("scalePivotTranslate", "spt", UnitKind::Distance);
    AttrRef rotateAxis = triple("rotateAxis", "ra", UnitKind::Angle);
    AttrRef rotateOrder = enumeration("rotateOrder", "ro", {"xyz", "yzx", "zxy", "xzy", "yxz", "zyx"});
    AttrRef inheritsTransform = boolean("inheritsTransform", "it", true);
};

const TransformAttributes& transformAttributes() {
    static const TransformAttributes attributes;
    return attributes;
}

struct JointAttributes {
    AttrRef jointOrient = triple("jointOrient", "jo", UnitKind::Angle);
    AttrRef segmentScaleCompensate = boolean("segmentScaleCompensate", "ssc", true);
    AttrRef inverseScale = triple("inverseScale", "is", UnitKind::None, 1);
};

const JointAttributes& jointAttributes() {
    static const JointAttributes attributes;
    return attributes;
}

/// `minTransLimit` and its siblings: a triple of limits and one of flags for each end of translate, rotate
/// and scale. Kept and shown; limits bind manipulators only.
void addLimits(NodeType& type) {
    struct Row {
        const char* what;
        const char* letter;
        UnitKind unit;
        double low, high;
    };
    const Row rows[] = {{"Trans", "t", UnitKind::Distance, -1, 1},
                        {"Rot", "r", UnitKind::Angle, -0.78539816339744830962, 0.78539816339744830962},
                        {"Scale", "s", UnitKind::None, -1, 1}};
    const std::string axes[] = {"X", "Y", "Z"}, axisLetters[] = {"x", "y", "z"};
    for (const auto& row : rows) {
        for (const bool isMin : {true, false}) {
            const std::string end = isMin ? "min" : "max", letter = isMin ? "m" : "x", what = row.what;
            std::vector<AttrRef> limits, flags;
            for (int i = 0; i < 3; ++i) {
                const std::string name = end + what + axes[i] + "Limit";
                const std::string shortName = letter + row.letter + axisLetters[i];
                const double value = isMin ? row.low : row.high;
                limits.push_back(row.unit == UnitKind::None
                                     ? graph::real(name, shortName + "l", value)
                                     : graph::unit(name, shortName + "l", row.unit, value));
                flags.push_back(boolean(name + "Enable", shortName + "e"));
            }
            const std::string shortName = (isMin ? "mn" : "mx") + std::string(row.letter) + "l";
            type(graph::compound(end + what + "Limit", shortName, std::move(limits)));
            type(graph::compound(end + what + "LimitEnable", letter + row.letter + "le", std::move(flags)));
        }
    }
}

void addDisplay(NodeType& type) {
    type(boolean("displayHandle", "dh"));
    type(triple("selectHandle", "hdl", UnitKind::Distance));
    type(boolean("displayLocalAxis", "dla"));
    type(boolean("displayRotatePivot", "drp"));
    type(boolean("displayScalePivot", "dsp"));
    type(graph::integer("showManipDefault", "smd"));
    type(boolean("dynamics", "dyn"));
    type(enumeration("rotationInterpolation", "roi", {"Euler-angle", "Quaternion"}));
    type(boolean("useOutlinerColor", "uocol"));
    type(graph::color("outlinerColor", "oclr"));
}

void registerTransform(graph::TypeRegistry& types) {
    NodeType& type = declare<TransformNode>(types, "transform", MFn::kTransform, "dagNode");
    const auto& a = transformAttributes();
    const auto& dag = graph::dagAttributes();
    for (const auto& attribute :
         {a.translate, a.rotate, a.scale, a.shear, a.rotatePivot, a.rotatePivotTranslate, a.scalePivot,
          a.scalePivotTranslate, a.rotateAxis, a.rotateOrder}) {
        (void)type.affects(type(attribute).get(), dag.matrix.get());
    }
    type.affectsAll({type(a.inheritsTransform)}, {dag.worldMatrix, dag.worldInverseMatrix});
    addLimits(type);
    addDisplay(type);
}

void registerJoint(graph::TypeRegistry& types) {
    NodeType& type = declare<JointNode>(types, "joint", MFn::kJoint, "transform");
    const auto& a = jointAttributes();
    for (const auto& attribute : {a.jointOrient, a.segmentScaleCompensate, a.inverseScale})
        (void)type.affects(type(attribute).get(), graph::dagAttributes().matrix.get());
    type(keyable(distance("radius", "radi", 1)));
    type(matrix("bindPose", "bps"));
    type(triple("preferredAngle", "pa", UnitKind::Angle));
    type(graph::tuple("stiffness", "st", MFnNumericData::k3Float, {"X", "Y", "Z"}));
    type(boolean("drawLabel", "dl"));
    type(enumeration("drawStyle", "ds", {"Bone", "Multi-child as Box", "None", "Joint"}));
    type(enumeration("side", "sd", {"Center", "Left", "Right", "None"}));
    type(enumeration("type", "typ",
                     {"None", "Root", "Hip", "Knee", "Foot", "Toe", "Spine", "Neck", "Head", "Collar",
                      "Shoulder", "Elbow", "Hand", "Finger", "Thumb", "PropA", "PropB", "PropC", "Other"}));
    type(text("otherType", "otp"));
    type(triple("minRotateDampRange", "ndr", UnitKind::Angle));
    type(triple("maxRotateDampRange", "xdr", UnitKind::Angle));
    for (const auto& [name, shortName] :
         {std::pair("jointTypeX", "jtx"), std::pair("jointTypeY", "jty"), std::pair("jointTypeZ", "jtz")}) {
        type(boolean(name, shortName, true));
    }
}

MQuaternion orientation(const MVector& angles) { return MEulerRotation(angles).asQuaternion(); }

/// An attribute's value without making a cell for it.
double numberOf(Node& node, const Attribute& attribute) {
    Cell* there = node.cellIfThere(attribute);
    return there ? graph::pullNumber(*there) : attribute.defaultNumber;
}

/// Scale and shear, without pivots.
void putScale(Node& node, MTransformationMatrix& transform) {
    const auto& a = transformAttributes();
    double three[3];
    vectorOf(node, *a.scale).get(three);
    transform.setScale(three, MSpace::kTransform);
    vectorOf(node, *a.shear).get(three);
    transform.setShear(three, MSpace::kTransform);
}

void putRotation(Node& node, MTransformationMatrix& transform) {
    const auto& a = transformAttributes();
    const int order = static_cast<int>(numberOf(node, *a.rotateOrder));
    const bool isOrder = order >= MEulerRotation::kXYZ && order <= MEulerRotation::kZYX;
    transform.rotateTo(
        MEulerRotation(vectorOf(node, *a.rotate),
                       isOrder ? static_cast<MEulerRotation::RotationOrder>(order) : MEulerRotation::kXYZ));
    transform.setRotationOrientation(orientation(vectorOf(node, *a.rotateAxis)));
}

MMatrix scaling(const MVector& factors) {
    MMatrix matrix;
    for (unsigned int i = 0; i < 3; ++i)
        matrix[i][i] = factors[i];
    return matrix;
}

} // namespace

void registerTransforms(graph::TypeRegistry& types) {
    registerTransform(types);
    registerJoint(types);
}

MMatrix TransformNode::localMatrix() {
    const auto& a = transformAttributes();
    MTransformationMatrix transform;
    putScale(*this, transform);
    putRotation(*this, transform);
    transform.setScalePivot(MPoint(vectorOf(*this, *a.scalePivot)), MSpace::kTransform, false);
    transform.setScalePivotTranslation(vectorOf(*this, *a.scalePivotTranslate), MSpace::kTransform);
    transform.setRotatePivot(MPoint(vectorOf(*this, *a.rotatePivot)), MSpace::kTransform, false);
    transform.setRotatePivotTranslation(vectorOf(*this, *a.rotatePivotTranslate), MSpace::kTransform);
    transform.setTranslation(vectorOf(*this, *a.translate), MSpace::kTransform);
    return transform.asMatrix();
}

ComputeResult TransformNode::compute(Cell& requested) {
    const auto& dag = graph::dagAttributes();
    const bool alone = &requested.attr == dag.worldMatrix.get() && requested.isElement() &&
                       numberOf(*this, *transformAttributes().inheritsTransform) == 0;
    if (!alone) return DagNode::compute(requested);
    graph::putData(requested, makeRef<MatrixData>(matrixIn(cell(*dag.matrix))));
    return ComputeResult::Done;
}

MMatrix JointNode::localMatrix() {
    const auto& a = jointAttributes();
    MTransformationMatrix transform;
    putScale(*this, transform);
    putRotation(*this, transform);
    MMatrix local = transform.asMatrix() * orientation(vectorOf(*this, *a.jointOrient)).asMatrix();
    if (numberOf(*this, *a.segmentScaleCompensate) != 0) {
        MVector factors = vectorOf(*this, *a.inverseScale);
        for (unsigned int i = 0; i < 3; ++i) // a squashed parent cannot be made up for
            factors[i] = factors[i] != 0 ? 1 / factors[i] : 1;
        local *= scaling(factors);
    }
    const MVector place = vectorOf(*this, *transformAttributes().translate);
    place.get(local[3]);
    return local;
}

} // namespace vesk::nodes
