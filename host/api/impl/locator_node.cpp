#include "host/api/impl/locator_node.h"

#include "host/api/impl/access.h"
#include "host/api/impl/guarded.h"
#include "host/api/impl/plugin_node.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"

#include <maya/MPxLocatorNode.h>

namespace vesk::api {

using graph::AttrRef;
using graph::Cell;
using graph::ComputeResult;
using graph::NodeType;
using graph::UnitKind;

namespace {

constexpr auto kTypeName = "locator";

struct LocatorAttributes {
    AttrRef localPosition, localScale, worldPosition;
};

AttrRef place(const char* longName, const char* shortName) {
    return graph::tuple(longName, shortName, MFnNumericData::k3Double, {"X", "Y", "Z"}, UnitKind::Distance);
}

const LocatorAttributes& locatorAttributes() {
    static const LocatorAttributes attributes = [] {
        LocatorAttributes a;
        a.localPosition = place("localPosition", "lp");
        a.localScale =
            graph::tuple("localScale", "los", MFnNumericData::k3Double, {"X", "Y", "Z"}, UnitKind::None, 1);
        a.worldPosition = place("worldPosition", "wp")->output()->multi()->asWorldSpace();
        return a;
    }();
    return attributes;
}

} // namespace

void registerLocatorType(graph::TypeRegistry& types) {
    auto type = std::make_unique<NodeType>(
        kTypeName, MFn::kLocator, types.find("dagNode"),
        [](const NodeType& self) -> Ref<graph::Node> { return makeRef<LocatorNode>(self); });
    type->isShape = true;
    const auto& a = locatorAttributes();
    for (const auto& attribute : {a.localPosition, a.localScale, a.worldPosition})
        (*type)(attribute);
    type->affectsAll({a.localPosition, graph::dagAttributes().worldMatrix}, {a.worldPosition});
    (void)types.add(std::move(type));
}

ComputeResult LocatorNode::compute(Cell& requested) {
    const auto& a = locatorAttributes();
    Cell* element = &requested;
    while (element && !element->isElement())
        element = element->parent;
    if (!element || &element->attr != a.worldPosition.get()) return DagNode::compute(requested);
    const auto local = graph::pullNumbers(cell(*a.localPosition));
    const auto world =
        graph::pullAs<MatrixData>(cell(*graph::dagAttributes().worldMatrix).element(element->logicalIndex));
    const MPoint at = MPoint(local[0], local[1], local[2]) * (world ? world->matrix() : MMatrix());
    graph::putNumber(element->child(0), at.x);
    graph::putNumber(element->child(1), at.y);
    graph::putNumber(element->child(2), at.z);
    return ComputeResult::Done;
}

namespace {

void bindLocator(const NodeType& type) {
    struct Row {
        MObject& object;
        const char* name;
    };
    const Row rows[] = {
        {MPxLocatorNode::localPosition, "localPosition"},
        {MPxLocatorNode::localPositionX, "localPositionX"},
        {MPxLocatorNode::localPositionY, "localPositionY"},
        {MPxLocatorNode::localPositionZ, "localPositionZ"},
        {MPxLocatorNode::worldPosition, "worldPosition"},
        {MPxLocatorNode::worldPositionX, "worldPositionX"},
        {MPxLocatorNode::worldPositionY, "worldPositionY"},
        {MPxLocatorNode::worldPositionZ, "worldPositionZ"},
        {MPxLocatorNode::localScale, "localScale"},
        {MPxLocatorNode::localScaleX, "localScaleX"},
        {MPxLocatorNode::localScaleY, "localScaleY"},
        {MPxLocatorNode::localScaleZ, "localScaleZ"},
        {MPxLocatorNode::matrix, "matrix"},
        {MPxLocatorNode::inverseMatrix, "inverseMatrix"},
        {MPxLocatorNode::worldMatrix, "worldMatrix"},
        {MPxLocatorNode::worldInverseMatrix, "worldInverseMatrix"},
        {MPxLocatorNode::parentMatrix, "parentMatrix"},
        {MPxLocatorNode::parentInverseMatrix, "parentInverseMatrix"},
        {MPxLocatorNode::visibility, "visibility"},
        {MPxLocatorNode::intermediateObject, "intermediateObject"},
    };
    for (const auto& row : rows)
        row.object = handleOn(type.find(row.name));
}

} // namespace

namespace {

class PluginLocator final : public PluginNodeOf<LocatorNode> {
  public:
    using PluginNodeOf::PluginNodeOf;
    MBoundingBox ownBounds() override {
        const auto* locator = static_cast<const MPxLocatorNode*>(body());
        MBoundingBox box;
        guarded([&] { return "boundingBox of '" + uniqueName() + "'"; },
                [&] {
                    if (locator && locator->isBounded()) box = locator->boundingBox();
                });
        return box;
    }
};

} // namespace

PluginBase pluginLocators() {
    return {kTypeName,
            MFn::kPluginLocatorNode,
            {},
            [](const NodeType& type, std::unique_ptr<MPxNode> body) -> Ref<graph::Node> {
                return makeRef<PluginLocator>(type, std::move(body));
            },
            bindLocator};
}

} // namespace vesk::api
