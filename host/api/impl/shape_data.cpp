#include "host/api/impl/shape_data.h"

#include "host/api/impl/access.h"
#include "host/data/mesh_data.h"
#include "host/graph/evaluate.h"

#include <maya/MDagPath.h>

namespace vesk::api {

namespace {

/// What a shape's world-space output of that name carries for an instance; null for other nodes.
MObject worldOutput(graph::DagNode& shape, std::string_view attributeName, int instance) {
    const graph::Attribute* attribute = shape.findAttribute(attributeName);
    if (!attribute || !attribute->array) return MObject();
    const Ref<Data> data = graph::pullData(shape.cell(*attribute).element(instance));
    return MObject(data.get(), true);
}

/// The shape itself, or the first one below a transform that is no intermediate.
graph::DagNode* shapeOf(graph::DagNode& node) {
    if (node.type().isShape) return &node;
    for (graph::DagNode* child : node.children()) {
        if (child->type().isShape && !child->isIntermediate()) return child;
    }
    return nullptr;
}

/// The output of a shape that carries world space.
std::string_view worldOutputName(MFn::Type shapeKind) {
    return shapeKind == MFn::kMesh ? "worldMesh" : "worldSpace";
}

} // namespace

MObject geometryDataOf(const MObject& object, MFn::Type shapeKind) {
    if (graph::DagNode* node = dagNodeOf(object)) {
        return node->hasFn(shapeKind) ? worldOutput(*node, worldOutputName(shapeKind), 0) : MObject();
    }
    return dataOf(object) ? object : MObject();
}

MObject geometryDataOf(const MDagPath& path, MFn::Type shapeKind) {
    const graph::DagPath* here = path.hostPath();
    if (!here || !here->isValid()) return MObject();
    graph::DagPath full = *here;
    graph::DagNode* shape = shapeOf(*full.node());
    if (!shape || !shape->hasFn(shapeKind)) return MObject();
    if (shape != full.node()) full.nodes.emplace_back(shape);
    return worldOutput(*shape, worldOutputName(shapeKind), full.instanceNumber());
}

} // namespace vesk::api
