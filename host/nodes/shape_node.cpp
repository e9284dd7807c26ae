#include "host/nodes/shape_node.h"

#include "host/data/component_list_data.h"
#include "host/nodes/declare.h"

namespace vesk::nodes {

using graph::boolean;
using graph::dagAttributes;

void registerShapeBases(graph::TypeRegistry& types) {
    using graph::DagNode;
    NodeType& shape = declareAbstract<DagNode>(types, "shape", MFn::kShape, "dagNode");
    shape.isShape = true;
    for (const auto& [name, shortName, value] :
         {std::tuple("castsShadows", "csh", true), std::tuple("receiveShadows", "rcsh", true),
          std::tuple("holdOut", "hot", false), std::tuple("motionBlur", "mb", true),
          std::tuple("primaryVisibility", "vis", true), std::tuple("smoothShading", "smo", true),
          std::tuple("visibleInReflections", "vir", false), std::tuple("visibleInRefractions", "vif", false),
          std::tuple("geometryAntialiasingOverride", "gao", false),
          std::tuple("shadingSamplesOverride", "sso", false),
          std::tuple("maxVisibilitySamplesOverride", "mvo", false),
          std::tuple("volumeSamplesOverride", "vso", false), std::tuple("depthJitter", "dej", false),
          std::tuple("ignoreSelfShadowing", "iss", false), std::tuple("asBackground", "asbg", false)}) {
        shape(boolean(name, shortName, value));
    }
    shape(shortNumber("antialiasingLevel", "al", 1));
    shape(shortNumber("shadingSamples", "ss", 1));
    shape(shortNumber("maxVisibilitySamples", "mvs", 1));
    shape(shortNumber("maxShadingSamples", "msss", 1));
    shape(shortNumber("volumeSamples", "vs", 1));
    shape(graph::tuple("boundingBoxScale", "bscl", MFnNumericData::k3Float, {"X", "Y", "Z"}, UnitKind::None,
                       1.5));
    shape(boolean("featureDisplacement", "fbda", true));
    shape(graph::integer("initialSampleRate", "isr", 6));
    shape(graph::integer("extraSampleRate", "esr", 5));
    shape(boolean("ignoreHwShader", "ihs"));

    (void)declareAbstract<DagNode>(types, "deformableShape", MFn::kShape, "shape");
    NodeType& points = declareAbstract<DagNode>(types, "controlPoint", MFn::kShape, "deformableShape");
    // A tweak node hangs here; the wire says only that it does.
    points(graph::typed("tweakLocation", "twl", MFnData::kAny));
    points(boolean("relativeTweak", "rtw", true));
    (void)declareAbstract<DagNode>(types, "curveShape", MFn::kCurve, "controlPoint");
    NodeType& surface = declareAbstract<DagNode>(types, "surfaceShape", MFn::kSurface, "controlPoint");
    surface(boolean("doubleSided", "ds", true));
    surface(boolean("opposite", "op"));
}

void declareShapeInfluences(NodeType& type, const AttrRef& input, const AttrRef& own, const AttrRef& local,
                            const AttrRef& world, const std::vector<AttrRef>& more) {
    type.affectsAll({input, own, dagAttributes().instObjGroups}, {local, world});
    type.affectsAll(more, {local, world});
    type.affectsAll({dagAttributes().worldMatrix}, {world});
}

namespace {

/// The groups that the shape itself keeps, added to those that came with the geometry.
struct OwnGroup {
    unsigned int id;
    Ref<ComponentListData> components;
};

std::vector<OwnGroup> ownGroups(graph::DagNode& shape) {
    const auto& a = dagAttributes();
    std::vector<OwnGroup> groups;
    Cell* instances = shape.cellIfThere(*a.instObjGroups);
    Cell* first = instances ? instances->elementIfThere(0) : nullptr;
    Cell* list = first ? first->childIfThere(a.objectGroups->positionInParent()) : nullptr;
    if (!list) return groups;
    for (const int index : list->existingIndices()) {
        Cell& group = list->element(index);
        auto components = graph::pullAs<ComponentListData>(group.child(*a.objectGrpCompList));
        if (!components || components->length() == 0) continue;
        const double id = graph::pullNumber(group.child(*a.objectGroupId));
        if (id >= 0) groups.push_back({static_cast<unsigned int>(id), std::move(components)});
    }
    return groups;
}

void addGroups(ObjectGroups& groups, const std::vector<OwnGroup>& own) {
    for (const auto& group : own) {
        if (groups.has(group.id)) continue; // made upstream, and maybe changed since
        groups.add(group.id);
        groups.setComponent(group.id, group.components->entry(0));
    }
}

} // namespace

bool GeometryShapeNode::hasInput() const {
    const Cell* input = cellIfThere(*plugs().input);
    return input && input->source;
}

graph::Node* GeometryShapeNode::endHistory() {
    if (!hasInput()) return nullptr;
    Cell& input = cell(*plugs().input);
    graph::Node& upstream = input.source->node;
    (void)graph::pullData(input);
    (void)graph::disconnect(*input.source, input);
    return &upstream;
}

Outcome GeometryShapeNode::setOwn(const Ref<GeometryData>& geometry) {
    if (hasInput()) {
        return Outcome::fail("'" + uniqueName() + "' has construction history: its geometry cannot be set.");
    }
    return graph::storeData(cell(*plugs().own), geometry);
}

Ref<GeometryData> GeometryShapeNode::own() { return graph::pullAs<GeometryData>(cell(*plugs().own)); }

Ref<GeometryData> GeometryShapeNode::shown() { return graph::pullAs<GeometryData>(cell(*plugs().local)); }

Ref<GeometryData> GeometryShapeNode::makeLocal() {
    auto data = hasInput() ? graph::pullAs<GeometryData>(cell(*plugs().input)) : own();
    const auto groups = ownGroups(*this);
    const bool shaped = isShaped();
    if (!data || (groups.empty() && !shaped && !data->hasMatrix())) return data;
    const Ref<Data> copy = data->clone();
    Ref<GeometryData> mine(static_cast<GeometryData*>(copy.get()));
    if (mine->hasMatrix()) mine->setMatrix(MMatrix());
    if (shaped) shape(*mine);
    if (!groups.empty()) addGroups(mine->writeGroups(), groups);
    return mine;
}

ComputeResult GeometryShapeNode::compute(Cell& requested) {
    const auto [input, ownAttribute, local, world] = plugs();
    if (&requested.attr == local) {
        graph::putData(requested, makeLocal());
        return ComputeResult::Done;
    }
    if (&requested.attr != world || !requested.isElement()) return DagNode::compute(requested);
    Ref<Data> result;
    if (const auto data = shown()) {
        result = data->clone();
        static_cast<GeometryData&>(*result).setMatrix(
            matrixIn(cell(*dagAttributes().worldMatrix).element(requested.logicalIndex)));
    }
    graph::putData(requested, std::move(result));
    return ComputeResult::Done;
}

void GeometryShapeNode::keepInput(Cell& input) {
    if (!dynamic_cast<GeometryData*>(input.data.get())) return;
    (void)graph::storeData(cell(*plugs().own), input.data->clone());
    graph::putData(input, nullptr);
}

void GeometryShapeNode::connectionBroken(Cell& mine, Cell& /*other*/, bool asSource) {
    if (!asSource && &mine.attr == plugs().input) keepInput(mine);
}

void GeometryShapeNode::valueStored(Cell& stored) {
    if (&stored.attr == plugs().input) keepInput(stored);
    if (&stored.attr == plugs().own) ownReplaced();
}

} // namespace vesk::nodes
