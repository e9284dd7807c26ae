#include "host/commands/deformer_chain.h"

#include "host/commands/node_commands.h"
#include "host/data/component_list_data.h"
#include "host/data/packed_data.h"
#include "host/graph/evaluate.h"
#include "host/nodes/shape_node.h"
#include "host/nodes/tweaks.h"

#include <algorithm>

namespace vesk::commands {

using graph::Cell;
using graph::DagNode;
using graph::Node;
using nodes::plug;

namespace {

/// How chains meet the shapes of one type.
struct ShapeKind {
    std::string_view type;
    std::string_view start; ///< what a chain without history begins with
    std::string_view end;   ///< what it feeds
    std::string_view tweaks;
    MFn::Type points;
};
constexpr ShapeKind kKinds[] = {
    {"mesh", "worldMesh", "inMesh", "pnts", MFn::kMeshVertComponent},
    {"nurbsCurve", "worldSpace", "create", "controlPoints", MFn::kCurveCVComponent},
    {"nurbsSurface", "worldSpace", "create", "controlPoints", MFn::kSurfaceCVComponent},
    {"particle", "position", "deformedPosition", "", MFn::kDynParticleSetComponent},
};

const ShapeKind* kindOf(const Node& node) {
    const auto* at = std::find_if(std::begin(kKinds), std::end(kKinds),
                                  [&](const ShapeKind& kind) { return node.type().isA(kind.type); });
    return at == std::end(kKinds) ? nullptr : at;
}

bool isFilter(const Node& node) { return node.type().isA("geometryFilter"); }
bool isTweak(const Node& node) { return node.type().isA("tweak"); }

void wire(Cell& source, Cell& destination, bool force = false) {
    require(graph::connect(source, destination, force));
}

/// The lowest element of a multi that nothing uses.
Cell& nextFree(Cell& array) {
    int index = 0;
    while (array.elementIfThere(index) && array.elementIfThere(index)->isInUse())
        ++index;
    return array.element(index);
}

Cell& inputOf(Node& filter, int index, std::string_view child) {
    return plug(filter, "input").element(index).child(*filter.type().find(child));
}

Cell& ownGroups(Node& shape) {
    const auto& a = graph::dagAttributes();
    return shape.cell(*a.instObjGroups).element(0).child(*a.objectGroups);
}

// --- building
// -----------------------------------------------------------------------------------------------------

/// The intermediate copy that keeps the geometry a shape has by itself.
Node& makeOriginal(CommandContext& context, DagNode& shape) {
    auto& own = dynamic_cast<nodes::GeometryShapeNode&>(shape);
    Node& copy = makeNode(context, shape.type().name(), shape.name() + "Orig", shape.parents().front());
    require(graph::storeNumber(copy.cell(*graph::dagAttributes().intermediateObject), 1));
    if (const auto geometry = own.own()) {
        const Ref<Data> clone = geometry->clone();
        require(dynamic_cast<nodes::GeometryShapeNode&>(copy).setOwn(
            Ref<GeometryData>(static_cast<GeometryData*>(clone.get()))));
    }
    return copy;
}

/// What feeds the shape's end of the chain, made when there is nothing yet.
Cell& sourceOfChain(CommandContext& context, DagNode& shape, const ShapeKind& kind) {
    const Cell& end = plug(shape, kind.end);
    if (end.source) return *end.source;
    if (kind.tweaks.empty()) return plug(shape, kind.start);
    return plug(makeOriginal(context, shape), kind.start).element(0);
}

struct Group {
    Node *id, *parts;
};
Group makeGroup(CommandContext& context) {
    return {&makeNode(context, "groupId"), &makeNode(context, "groupParts")};
}

/// Sends geometry through a group into a filter. Sources first: a filter may look at its input as soon as it
/// has one.
void wireGeometry(const Group& group, Cell& source, Node& filter, int index) {
    wire(source, plug(*group.parts, "inputGeometry"));
    wire(plug(*group.parts, "outputGeometry"), inputOf(filter, index, "inputGeometry"));
}

/// Ties a filter's group to the set and the shape.
void wireGroup(const Group& group, Node& filter, int index, const DeformTarget& target, Node& set) {
    const auto components = makeRef<ComponentListData>();
    (void)components->add(*target.points);
    require(graph::storeData(plug(*group.parts, "inputComponents"), components));
    Cell& id = plug(*group.id, "groupId");
    wire(id, plug(*group.parts, "groupId"));
    wire(id, inputOf(filter, index, "groupId"));
    wire(plug(*group.id, "message"), nextFree(plug(set, "groupNodes")));
    const auto& a = graph::dagAttributes();
    Cell& own = nextFree(ownGroups(*target.shape));
    wire(own, nextFree(plug(set, "dagSetMembers")));
    wire(id, own.child(*a.objectGroupId));
    wire(plug(set, "memberWireframeColor"), own.child(*a.objectGroups->children[2]));
}

Node& makeSet(CommandContext& context, Node& filter, const std::string& name) {
    Node& set = makeNode(context, "objectSet", name);
    wire(plug(filter, "message"), nextFree(plug(set, "usedBy")));
    return set;
}

/// The shape's own tweaks become those of its tweak node, unless wires feed them.
void moveTweaks(DagNode& shape, const ShapeKind& kind, Node& tweak) {
    Cell* from = shape.cellIfThere(*shape.type().find(kind.tweaks));
    if (!nodes::hasTweaks(from) || from->hasWiresBelow(true)) return;
    const auto offsets = makeRef<PackedFloats>(3);
    nodes::eachTweak(*from, [&](std::size_t point, const MVector& offset) {
        auto& numbers = offsets->write();
        numbers.resize(std::max(numbers.size(), 3 * (point + 1)), 0.0F);
        for (unsigned int axis = 0; axis < 3; ++axis)
            numbers[3 * point + axis] = static_cast<float>(offset[axis]);
    });
    require(graph::storeData(plug(tweak, "vlist").element(0).child(*tweak.type().find("vertex")), offsets));
    from->walk([](Cell& cell) { cell.resetToDefault(); });
    graph::spreadDirt(*from);
}

/// Where a chain is cut open: what fed the place, and what was fed there.
struct Gap {
    Cell* source;
    Cell* destination;
};

Gap gapIn(CommandContext& context, DagNode& shape, const ShapeKind& kind, ChainPlace place) {
    Cell* destination = &plug(shape, kind.end);
    Cell* source = &sourceOfChain(context, shape, kind);
    while (place == ChainPlace::Front && isFilter(source->node) && !isTweak(source->node)) {
        Cell* before = inputOf(source->node, source->logicalIndex, "inputGeometry").source;
        if (!before || before->node.type().name() != "groupParts") break;
        Cell& opened = plug(before->node, "inputGeometry");
        if (!opened.source) break;
        destination = &opened;
        source = opened.source;
    }
    return {source, destination};
}

} // namespace

bool isDeformable(const Node& node) { return kindOf(node) != nullptr; }

Ref<Component> allPoints(const DagNode& shape) {
    const auto points = Component::create(kindOf(shape)->points);
    points->setComplete();
    return points;
}

void applyDeformer(CommandContext& context, Node& filter, const std::vector<DeformTarget>& targets,
                   ChainPlace place) {
    Node& set = makeSet(context, filter, filter.name() + "Set");
    for (std::size_t i = 0; i < targets.size(); ++i) {
        DagNode& shape = *targets[i].shape;
        const ShapeKind& kind = *kindOf(shape);
        Gap gap = gapIn(context, shape, kind, place);
        const int index = static_cast<int>(i);
        const Group group = makeGroup(context);
        const bool needsTweak = !kind.tweaks.empty() && !plug(shape, "tweakLocation").source;
        if (!needsTweak) {
            wireGroup(group, filter, index, targets[i], set);
            wireGeometry(group, *gap.source, filter, index);
        } else {
            const Group tweakGroup = makeGroup(context);
            Node& tweak = makeNode(context, "tweak");
            std::string setName = tweak.name();
            setName.insert(setName.find_last_not_of("0123456789") + 1, "Set");
            Cell& tweaked = plug(tweak, "outputGeometry").element(0);
            wireGroup(group, filter, index, targets[i], set);
            wireGroup(tweakGroup, tweak, 0, {targets[i].shape, allPoints(shape)},
                      makeSet(context, tweak, setName));
            moveTweaks(shape, kind, tweak);
            wireGeometry(tweakGroup, *gap.source, tweak, 0);
            wireGeometry(group, tweaked, filter, index);
            Cell& offsets = plug(tweak, "vlist").element(0).child(*tweak.type().find("vertex"));
            wire(offsets.element(0), plug(shape, "tweakLocation"));
        }
        require(context.scene.rename(*group.id, filter.name() + "GroupId"));
        require(context.scene.rename(*group.parts, filter.name() + "GroupParts"));
        wire(plug(filter, "outputGeometry").element(index), *gap.destination, true);
    }
}

// --- taking apart
// ------------------------------------------------------------------------------------------------

namespace {

/// Takes the entries of a group off the shapes that list it.
void forgetGroup(Node& id) {
    const auto wires = plug(id, "groupId").destinations;
    for (Cell* to : wires) {
        if (&to->attr != graph::dagAttributes().objectGroupId.get()) continue;
        Cell* entry = to->parent;
        graph::disconnectAll(*entry);
        if (Cell* there = entry->parent->elementIfThere(entry->logicalIndex))
            there->parent->removeElement(there->logicalIndex);
    }
}

bool feedsSomething(Node& node, std::string_view output) {
    bool feeds = false;
    plug(node, output).walk([&](const Cell& cell) { feeds = feeds || !cell.destinations.empty(); });
    return feeds;
}

bool hasOffsets(Node& tweak) {
    Cell& lists = plug(tweak, "vlist");
    bool has = lists.hasWiresBelow(true);
    for (const auto& list : lists.children) {
        nodes::eachTweak(list->child(*tweak.type().find("vertex")),
                         [&](std::size_t, const MVector& offset) { has = has || offset != MVector(); });
    }
    return has;
}

/// A shape that nothing but its own intermediate copy feeds takes the geometry back.
void dissolveOriginal(CommandContext& context, Cell& end) {
    if (!end.source || !end.source->node.type().isDag) return;
    auto& original = static_cast<DagNode&>(end.source->node);
    auto* shape = dynamic_cast<nodes::GeometryShapeNode*>(&end.node);
    const bool isCopy = shape && original.isIntermediate() && original.name() == shape->name() + "Orig" &&
                        original.parents() == shape->parents();
    if (!isCopy) return;
    (void)shape->endHistory();
    const ShapeKind& kind = *kindOf(original);
    if (!feedsSomething(original, kind.start)) context.scene.remove(original);
}

/// Feeds what an element of a filter feeds with what comes in there. Adds the ends of chains among that.
void bypassElement(Node& filter, Cell& output, std::vector<Cell*>& ends) {
    Cell* source = inputOf(filter, output.logicalIndex, "inputGeometry").source;
    if (source && source->node.type().name() == "groupParts")
        source = plug(source->node, "inputGeometry").source;
    if (!source) return;
    for (Cell* to : std::vector<Cell*>(output.destinations)) {
        wire(*source, *to, true);
        if (to->node.type().isDag) ends.push_back(to);
    }
}

/// What stands before a shape that no deformer moves any more.
void tidyEnd(CommandContext& context, Cell& end) {
    const Ref<Node> before(end.source ? &end.source->node : nullptr);
    if (before.get() == &end.node) { // particles, back at their own positions
        (void)graph::disconnect(*end.source, end);
        end.resetToDefault();
    } else if (before && isTweak(*before) && !hasOffsets(*before)) {
        bypassDeformer(context, *before);
        context.scene.remove(*before);
    } else {
        dissolveOriginal(context, end);
    }
}

} // namespace

bool isIdleDeformer(Node& node) { return isFilter(node) && !feedsSomething(node, "outputGeometry"); }

void releaseSet(CommandContext& context, Node& filter) {
    Cell& inputs = plug(filter, "input");
    for (const int index : inputs.existingIndices()) {
        const Cell* id = inputOf(filter, index, "groupId").source;
        if (id && id->node.type().name() == "groupId") forgetGroup(id->node);
    }
    if (isTweak(filter)) graph::disconnectAll(plug(filter, "vlist"));
    for (const Cell* user : std::vector<Cell*>(plug(filter, "message").destinations)) {
        Node& set = user->node;
        const bool isSet = set.type().isA("objectSet") && user->attr.longName == "usedBy";
        if (isSet && !set.isLocked && plug(set, "usedBy").existingIndices().size() == 1)
            context.scene.remove(set);
    }
}

namespace {

/// Removes the groups that stand before a filter.
void removeGroups(CommandContext& context, Node& filter) {
    std::vector<Ref<Node>> helpers;
    for (const int index : plug(filter, "input").existingIndices()) {
        for (const std::string_view child : {"inputGeometry", "groupId"}) {
            Cell& end = inputOf(filter, index, child);
            if (!end.source) continue;
            const std::string& type = end.source->node.type().name();
            if (type == "groupId" || type == "groupParts") helpers.emplace_back(&end.source->node);
            require(graph::disconnect(*end.source, end));
        }
    }
    // Ids last: those that nothing is left of use.
    const auto removeUnused = [&](std::string_view type, std::string_view output) {
        for (const auto& helper : helpers) {
            const bool isIdle = helper->isAlive() && helper->type().name() == type && !helper->isLocked;
            if (isIdle && !feedsSomething(*helper, output)) context.scene.remove(*helper);
        }
    };
    removeUnused("groupParts", "outputGeometry");
    removeUnused("groupId", "groupId");
}

} // namespace

void bypassDeformer(CommandContext& context, Node& filter) {
    Cell& outputs = plug(filter, "outputGeometry");
    std::vector<Cell*> ends;
    for (const int index : outputs.existingIndices())
        bypassElement(filter, outputs.element(index), ends);
    releaseSet(context, filter);
    removeGroups(context, filter);
    for (Cell* end : ends)
        tidyEnd(context, *end);
}

} // namespace vesk::commands
