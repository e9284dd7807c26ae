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

} // namespace

MObject meshDataOf(const MObject& object) {
    if (graph::DagNode* node = dagNodeOf(object)) {
        return node->hasFn(MFn::kMesh) ? worldOutput(*node, "worldMesh", 0) : MObject();
    }
    return dataOf(object) ? object : MObject();
}

MObject meshDataOf(const MDagPath& path) {
    const graph::DagPath* here = path.hostPath();
    if (!here || !here->isValid()) return MObject();
    graph::DagPath full = *here;
    graph::DagNode* shape = shapeOf(*full.node());
    if (!shape || !shape->hasFn(MFn::kMesh)) return MObject();
    if (shape != full.node()) full.nodes.emplace_back(shape);
    return worldOutput(*shape, "worldMesh", full.instanceNumber());
}

} // namespace vesk::api
