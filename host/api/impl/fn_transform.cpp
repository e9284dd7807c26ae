#include <maya/MFnTransform.h>

#include "host/api/impl/access.h"
#include "host/api/impl/create_node.h"
#include "host/graph/evaluate.h"

using vesk::api::answer;
using vesk::graph::Cell;
using vesk::graph::DagNode;

namespace {

Cell* cellNamed(DagNode* node, std::string_view name) {
    const auto* attribute = node ? node->findAttribute(name) : nullptr;
    return attribute && !attribute->array ? &node->cell(*attribute) : nullptr;
}

MVector vectorOf(DagNode& node, std::string_view name, const MVector& otherwise = MVector::zero) {
    Cell* cell = cellNamed(&node, name);
    if (!cell || cell->attr.children.size() != 3) return otherwise;
    const auto numbers = vesk::graph::pullNumbers(*cell);
    return {numbers[0], numbers[1], numbers[2]};
}

MStatus storeVector(DagNode* node, std::string_view name, const MVector& value) {
    Cell* cell = cellNamed(node, name);
    if (!cell || cell->attr.children.size() != 3) return MStatus::kInvalidParameter;
    for (int i = 0; i < 3; ++i) {
        if (!vesk::graph::storeNumber(cell->child(i), value[static_cast<unsigned int>(i)]))
            return MStatus::kFailure;
    }
    return {};
}

MTransformationMatrix::RotationOrder orderOf(DagNode& node) {
    Cell* cell = cellNamed(&node, "rotateOrder");
    const int order = cell ? static_cast<int>(vesk::graph::pullNumber(*cell)) : 0;
    const bool isOrder = order >= MEulerRotation::kXYZ && order <= MEulerRotation::kZYX;
    return static_cast<MTransformationMatrix::RotationOrder>(isOrder ? order + 1 : 1);
}

MEulerRotation rotationOf(DagNode& node) {
    return MEulerRotation(vectorOf(node, "rotate"),
                          static_cast<MEulerRotation::RotationOrder>(orderOf(node) - 1));
}

} // namespace

MObject MFnTransform::create(const MObject& parent, MStatus* status) {
    return MFnDagNode::create("transform", parent, status);
}

MTransformationMatrix MFnTransform::transformation(MStatus* status) const {
    DagNode* node = hostDag();
    if (!node) return answer(status, MTransformationMatrix(), MStatus::kInvalidParameter);
    // What has more components than these is known by its matrix alone.
    if (node->hasFn(MFn::kJoint)) return answer(status, MTransformationMatrix(node->localMatrix()));
    MTransformationMatrix result;
    double numbers[3];
    const auto kept = [&](const MVector& vector) -> const double* { return vector.get(numbers), numbers; };
    result.setScale(kept(vectorOf(*node, "scale", MVector::one)), MSpace::kTransform);
    result.setShear(kept(vectorOf(*node, "shear")), MSpace::kTransform);
    result.setScalePivot(vectorOf(*node, "scalePivot"), MSpace::kTransform, false);
    result.setScalePivotTranslation(vectorOf(*node, "scalePivotTranslate"), MSpace::kTransform);
    result.setRotatePivot(vectorOf(*node, "rotatePivot"), MSpace::kTransform, false);
    result.setRotatePivotTranslation(vectorOf(*node, "rotatePivotTranslate"), MSpace::kTransform);
    result.setRotationOrientation(MEulerRotation(vectorOf(*node, "rotateAxis")).asQuaternion());
    result.setRotation(kept(vectorOf(*node, "rotate")), orderOf(*node));
    result.setTranslation(vectorOf(*node, "translate"), MSpace::kTransform);
    return answer(status, result);
}

MStatus MFnTransform::set(const MTransformationMatrix& transformation) {
    DagNode* node = hostDag();
    if (!node) return MStatus::kInvalidParameter;
    constexpr auto space = MSpace::kTransform;
    double scale[3];
    double shear[3];
    transformation.getScale(scale, space);
    transformation.getShear(shear, space);
    const MEulerRotation rotation = transformation.eulerRotation();
    MStatus status;
    const auto store = [&](std::string_view name, const MVector& value) {
        const MStatus stored = storeVector(node, name, value);
        if (!stored) status = stored;
    };
    if (Cell* order = cellNamed(node, "rotateOrder")) {
        if (!vesk::graph::storeNumber(*order, rotation.order)) status = MStatus::kFailure;
    }
    store("scale", MVector(scale));
    store("shear", MVector(shear));
    store("scalePivot", MVector(transformation.scalePivot(space)));
    store("scalePivotTranslate", transformation.scalePivotTranslation(space));
    store("rotatePivot", MVector(transformation.rotatePivot(space)));
    store("rotatePivotTranslate", transformation.rotatePivotTranslation(space));
    store("rotateAxis", transformation.rotationOrientation().asEulerRotation().asVector());
    store("rotate", rotation.asVector());
    store("translate", transformation.translation(space));
    return status;
}

MVector MFnTransform::getTranslation(MSpace::Space space, MStatus* status) const {
    DagNode* node = hostDag();
    if (!node) return answer(status, MVector(), MStatus::kInvalidParameter);
    const MVector local = vectorOf(*node, "translate");
    if (space != MSpace::kWorld) return answer(status, local);
    if (!path_.isValid()) return answer(status, MVector(), MStatus::kInvalidParameter);
    return answer(status, MVector(MPoint(local) * path_.exclusiveMatrix()));
}

MStatus MFnTransform::setTranslation(const MVector& translation, MSpace::Space space) {
    if (space != MSpace::kWorld) return storeVector(hostDag(), "translate", translation);
    if (!path_.isValid()) return MStatus::kInvalidParameter;
    return storeVector(hostDag(), "translate", MVector(MPoint(translation) * path_.exclusiveMatrixInverse()));
}

MStatus MFnTransform::translateBy(const MVector& offset, MSpace::Space space) {
    MStatus status;
    const MVector present = getTranslation(space, &status);
    return status ? setTranslation(present + offset, space) : status;
}

MStatus MFnTransform::getRotation(MEulerRotation& rotation) const {
    DagNode* node = hostDag();
    if (!node) return MStatus::kInvalidParameter;
    return rotation = rotationOf(*node), MStatus();
}

MStatus MFnTransform::getRotation(MQuaternion& rotation, MSpace::Space space) const {
    DagNode* node = hostDag();
    if (!node || (space == MSpace::kWorld && !path_.isValid())) return MStatus::kInvalidParameter;
    rotation = space == MSpace::kWorld ? MTransformationMatrix(path_.inclusiveMatrix()).rotation()
                                       : rotationOf(*node).asQuaternion();
    return {};
}

MStatus MFnTransform::getRotation(double rotation[3], MTransformationMatrix::RotationOrder& order) const {
    DagNode* node = hostDag();
    if (!node) return MStatus::kInvalidParameter;
    order = orderOf(*node);
    return vectorOf(*node, "rotate").get(rotation);
}

MStatus MFnTransform::setRotation(const MEulerRotation& rotation) {
    DagNode* node = hostDag();
    if (!node) return MStatus::kInvalidParameter;
    // The node's own order stays.
    const auto order = static_cast<MEulerRotation::RotationOrder>(orderOf(*node) - 1);
    return storeVector(node, "rotate", rotation.reorder(order).asVector());
}

MStatus MFnTransform::setRotation(const MQuaternion& rotation, MSpace::Space space) {
    DagNode* node = hostDag();
    if (!node || (space == MSpace::kWorld && !path_.isValid())) return MStatus::kInvalidParameter;
    MMatrix local = rotation.asMatrix();
    if (space == MSpace::kWorld) {
        local = local * MTransformationMatrix(path_.exclusiveMatrix()).rotation().asMatrix().transpose();
    }
    const auto order = static_cast<MEulerRotation::RotationOrder>(orderOf(*node) - 1);
    return storeVector(node, "rotate", MEulerRotation::decompose(local, order).asVector());
}

MTransformationMatrix::RotationOrder MFnTransform::rotationOrder(MStatus* status) const {
    DagNode* node = hostDag();
    if (!node) return answer(status, MTransformationMatrix::kInvalid, MStatus::kInvalidParameter);
    return answer(status, orderOf(*node));
}

MStatus MFnTransform::getScale(double scale[3]) const {
    DagNode* node = hostDag();
    if (!node) return MStatus::kInvalidParameter;
    return vectorOf(*node, "scale", MVector::one).get(scale);
}
MStatus MFnTransform::setScale(const double scale[3]) {
    return storeVector(hostDag(), "scale", MVector(scale));
}

MStatus MFnTransform::getShear(double shear[3]) const {
    DagNode* node = hostDag();
    if (!node) return MStatus::kInvalidParameter;
    return vectorOf(*node, "shear").get(shear);
}
MStatus MFnTransform::setShear(const double shear[3]) {
    return storeVector(hostDag(), "shear", MVector(shear));
}

namespace {

MPoint pivotOf(DagNode* node, const MDagPath& path, std::string_view name, MSpace::Space space,
               MStatus* status) {
    const bool inWorld = space == MSpace::kWorld;
    if (!node || (inWorld && !path.isValid())) return answer(status, MPoint(), MStatus::kInvalidParameter);
    const MPoint pivot = vectorOf(*node, name);
    return answer(status, inWorld ? pivot * path.inclusiveMatrix() : pivot);
}

} // namespace

MPoint MFnTransform::rotatePivot(MSpace::Space space, MStatus* status) const {
    return pivotOf(hostDag(), path_, "rotatePivot", space, status);
}
MPoint MFnTransform::scalePivot(MSpace::Space space, MStatus* status) const {
    return pivotOf(hostDag(), path_, "scalePivot", space, status);
}
