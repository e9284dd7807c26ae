#include "host/api/impl/deformer_node.h"

#include "host/api/impl/access.h"
#include "host/api/impl/plugin_node.h"
#include "host/data/geometry_data.h"
#include "host/graph/evaluate.h"

#include <maya/MPxDeformerNode.h>

namespace vesk::api {

using graph::Cell;
using graph::ComputeResult;
using graph::NodeType;

namespace {

constexpr short kHasNoEffect = 1;

void bindDeformer(const NodeType& type) {
    const std::pair<MObject&, const char*> rows[] = {
        {MPxDeformerNode::input, "input"},           {MPxDeformerNode::inputGeom, "inputGeometry"},
        {MPxDeformerNode::groupId, "groupId"},       {MPxDeformerNode::outputGeom, "outputGeometry"},
        {MPxDeformerNode::weightList, "weightList"}, {MPxDeformerNode::weights, "weights"},
        {MPxDeformerNode::envelope, "envelope"}};
    for (const auto& [object, name] : rows)
        object = handleOn(type.find(name));
}

/// Serves the outputs that the plug-in's own `compute` leaves to its base.
class PluginDeformer final : public PluginNode {
  public:
    using PluginNode::PluginNode;

    ComputeResult compute(Cell& requested) override {
        const auto result = PluginNode::compute(requested);
        const bool isGeometry = requested.attr.longName == "outputGeometry" && requested.isElement();
        if (result == ComputeResult::Done || !isGeometry) return result;
        Cell& input = cell(*type().find("input")).element(requested.logicalIndex);
        const Ref<Data> geometry = graph::pullData(input.child(*type().find("inputGeometry")));
        graph::putData(requested, geometry);
        const bool hasPoints = dynamic_cast<GeometryData*>(geometry.get()) != nullptr;
        if (hasPoints && nodeState() != kHasNoEffect && !isOrphan()) deform(requested, input);
        return ComputeResult::Done;
    }

  private:
    void deform(Cell& requested, Cell& input) {
        const int group = static_cast<int>(graph::pullNumber(input.child(*type().find("groupId"))));
        callBody("deform", requested, [&](MPxNode& body) {
            MDataBlock block(this);
            MDataHandle geometry = block.outputValue(MPlug(requested));
            MItGeometry points(geometry, group, false);
            const MMatrix matrix = static_cast<GeometryData&>(*requested.data).matrix();
            static_cast<MPxDeformerNode&>(body).deform(block, points, matrix,
                                                       static_cast<unsigned int>(requested.logicalIndex));
        });
    }
};

} // namespace

PluginBase pluginDeformers() {
    return {"geometryFilter",
            MFn::kPluginDeformerNode,
            {},
            [](const NodeType& type, std::unique_ptr<MPxNode> body) -> Ref<graph::Node> {
                return makeRef<PluginDeformer>(type, std::move(body));
            },
            bindDeformer};
}

} // namespace vesk::api

MObject MPxDeformerNode::input, MPxDeformerNode::inputGeom, MPxDeformerNode::groupId,
    MPxDeformerNode::outputGeom, MPxDeformerNode::weightList, MPxDeformerNode::weights,
    MPxDeformerNode::envelope;

MStatus MPxDeformerNode::deform(MDataBlock&, MItGeometry&, const MMatrix&, unsigned int) { return {}; }
