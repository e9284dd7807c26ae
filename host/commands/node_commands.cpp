#include "host/commands/node_commands.h"

#include "host/commands/deformer_chain.h"
#include "host/commands/lookup.h"
#include "host/commands/transform_commands.h"
#include "host/core/log.h"
#include "host/graph/evaluate.h"
#include "host/nodes/placeholder.h"
#include "host/nodes/shape_node.h"

#include <algorithm>
#include <map>

namespace vesk::commands {

using graph::Cell;
using graph::DagNode;
using graph::Node;

namespace {

struct ShapeNames {
    std::string_view type, shape, transform;
};
/// Names that shapes and their transforms get when nobody names them; other types are named after themselves.
constexpr ShapeNames kShapeNames[] = {
    {"mesh", "polySurfaceShape#", "polySurface#"},
    {"nurbsCurve", "curveShape#", "curve#"},
    {"nurbsSurface", "surfaceShape#", "surface#"},
};

/// "pCubeShape3" stands below "pCube3"; a name without "Shape" tells nothing.
std::string transformNameFor(std::string_view shapeName) {
    const auto at = shapeName.rfind("Shape");
    if (at == std::string_view::npos) return "transform#";
    return std::string(shapeName.substr(0, at)) + std::string(shapeName.substr(at + 5));
}

} // namespace

std::string shapeNameFor(std::string_view transformName) {
    std::string name(transformName);
    return name.insert(name.find_last_not_of("0123456789") + 1, "Shape");
}

namespace {

DagNode& makeTransform(CommandContext& context, std::string_view name, DagNode* parent = nullptr) {
    const graph::NodeType* type = context.scene.types().find("transform");
    if (!type) throw mel::Error("There is no node type 'transform'.");
    return static_cast<DagNode&>(*context.scene.create(*type, name, parent));
}

/// Nodes of files that nobody knows the type of are kept as they are.
const graph::NodeType& unknownType(CommandContext& context, std::string_view typeName, std::string_view name,
                                   const DagNode* parent) {
    log().warning("Unknown object type: " + std::string(typeName) +
                  ". Its nodes keep what the file says of them and do nothing.");
    return nodes::placeholderType(context.scene.types(), std::string(typeName),
                                  nodes::likelyKind(parent != nullptr, name));
}

} // namespace

void selectOnly(CommandContext& context, Node& node) {
    context.scene.selection.clear();
    for (auto& item : graph::resolve(context.scene, node.uniqueName()))
        context.scene.selection.add(std::move(item));
}

Node& makeNode(CommandContext& context, std::string_view typeName, std::string_view name, DagNode* parent) {
    const graph::NodeType* type = context.scene.types().find(typeName);
    if (!type && context.scene.readingFile) type = &unknownType(context, typeName, name, parent);
    if (!type) throw mel::Error("Unknown object type: " + std::string(typeName));
    if (type->isAbstract) throw mel::Error("Nodes of type '" + std::string(typeName) + "' cannot be made.");
    std::string wish(name);
    if (type->isShape && !parent) {
        std::string transformName = transformNameFor(wish);
        if (wish.empty()) {
            wish = std::string(typeName) + "Shape#";
            transformName = std::string(typeName) + '#';
            for (const auto& names : kShapeNames) {
                if (names.type != typeName) continue;
                wish = names.shape;
                transformName = names.transform;
            }
        }
        parent = &makeTransform(context, transformName);
    }
    const auto node = context.scene.create(*type, wish, type->isDag ? parent : nullptr);
    if (!node) throw mel::Error("The node type '" + std::string(typeName) + "' could not make a node.");
    return *node;
}

namespace {

mel::Value createNode(CommandContext& context, const Args& args) {
    const std::string typeName = args.word(0);
    const std::string name = args.text("name");
    context.currentNode = nullptr; // lines of a file that mean a node which could not be made fail
    DagNode* parent = args.has("parent") ? &dagNodeNamed(context, args.text("parent")) : nullptr;
    // A file makes some of the session's own nodes (layers, light links) without saying that they are shared.
    const bool shared = args.isOn("shared");
    if ((shared || context.scene.readingFile) && !name.empty()) {
        Node* there = context.scene.find(name);
        if (there && there->type().name() == typeName && (shared || there->isDefault)) {
            context.currentNode = there;
            return mel::Value();
        }
    }
    Node& node = makeNode(context, typeName, name, parent);
    context.currentNode = &node;
    if (!args.isOn("skipSelect")) selectOnly(context, node);
    return mel::Value(node.uniqueName());
}

/// Removes a node that stood in a history, and what stood behind it, as far as nothing else is fed by them.
void removeUnused(CommandContext& context, Node& first) {
    std::vector<Ref<Node>> waiting{Ref<Node>(&first)};
    while (!waiting.empty()) {
        const Ref<Node> node = waiting.back();
        waiting.pop_back();
        if (!node->isAlive()) continue;
        if (isIdleDeformer(*node)) releaseSet(context, *node);
        // Of what is in the hierarchy only the copies go that deformers start from.
        const bool stays = node->type().isDag && !static_cast<DagNode&>(*node).isIntermediate();
        bool isUsed = stays || node->isDefault || node->isLocked;
        std::vector<Ref<Node>> behind;
        node->eachCell([&](const graph::Cell& cell) {
            isUsed = isUsed || !cell.destinations.empty();
            if (cell.source) behind.emplace_back(&cell.source->node);
        });
        if (isUsed) continue;
        context.scene.remove(*node);
        waiting.insert(waiting.end(), behind.begin(), behind.end());
    }
}

/// Ends the history of the node's own geometry, or of the shapes below a transform.
void deleteHistory(CommandContext& context, Node& node) {
    const auto end = [&](Node& one) {
        auto* shape = dynamic_cast<nodes::GeometryShapeNode*>(&one);
        if (graph::Node* upstream = shape ? shape->endHistory() : nullptr) removeUnused(context, *upstream);
    };
    end(node);
    if (node.type().isDag) {
        const auto& children = static_cast<DagNode&>(node).children();
        const std::vector<Ref<DagNode>> all(children.begin(), children.end()); // some of them may go
        for (const auto& child : all) {
            if (child->isAlive()) end(*child);
        }
    }
}

mel::Value deleteNodes(CommandContext& context, const Args& args) {
    std::vector<Ref<Node>> doomed;
    if (args.wordCount() == 0) {
        for (const auto& item : context.scene.selection.items())
            doomed.push_back(item.node);
    }
    for (const auto& name : args.wordTexts()) {
        for (Node* node : nodesNamed(context, name))
            doomed.emplace_back(node);
    }
    if (args.isOn("constructionHistory")) {
        for (const auto& node : doomed)
            deleteHistory(context, *node);
        return mel::Value();
    }
    for (const auto& node : doomed) {
        if (!node->isAlive()) continue; // went with a parent
        if (node->isDefault)
            throw mel::Error("'" + node->uniqueName() + "' is one of the session's own nodes.");
        if (node->isLocked) throw mel::Error("'" + node->uniqueName() + "' is locked and cannot be deleted.");
        if (node->type().isA("geometryFilter")) bypassDeformer(context, *node);
        context.scene.remove(*node);
    }
    return mel::Value();
}

mel::Value rename(CommandContext& context, const Args& args) {
    // Files give nodes their identity back; there is none to keep here.
    if (args.has("uuid")) return mel::Value();
    const bool hasBoth = args.wordCount() > 1;
    Node* node = nullptr;
    if (hasBoth) {
        node = &nodeNamed(context, args.word(0));
    } else {
        const auto& selected = context.scene.selection.items();
        if (selected.empty()) throw mel::Error("rename: nothing is selected.");
        node = selected.front().node.get();
    }
    const std::string oldName = node->name();
    require(context.scene.rename(*node, args.word(hasBoth ? 1 : 0)));
    // A shape that is named after its transform goes on being so.
    if (node->type().isDag && !node->type().isShape && !args.isOn("ignoreShape")) {
        for (DagNode* child : static_cast<DagNode*>(node)->children()) {
            const bool isNamedAfter =
                child->name() == oldName + "Shape" || child->name() == shapeNameFor(oldName);
            if (!child->type().isShape || !isNamedAfter) continue;
            require(context.scene.rename(*child, shapeNameFor(node->name())));
        }
    }
    return mel::Value(node->uniqueName());
}

// --- copies
// ----------------------------------------------------------------------------------------------------------

/// Copies stored values and dynamic attributes; what is fed by a wire is copied as it evaluates.
void copyValues(Node& to, Node& from) {
    std::map<const graph::Attribute*, const graph::Attribute*> twins;
    for (const auto& attribute : from.dynamicAttributes()) {
        if (attribute->parent) continue;
        const auto copy = [&](const auto& self, const graph::Attribute& one) -> graph::AttrRef {
            auto made = makeRef<graph::Attribute>(static_cast<const graph::AttributeSettings&>(one));
            for (const auto& child : one.children) {
                auto below = self(self, *child);
                below->parent = made.get();
                made->children.push_back(std::move(below));
            }
            return made;
        };
        (void)to.addDynamicAttribute(copy(copy, *attribute));
    }
    for (int i = 0; i < from.attributeCount(); ++i) {
        const graph::Attribute* attribute = from.attributeAt(i);
        if (!attribute || attribute->parent || from.isComputed(*attribute)) continue;
        if (attribute->kind == graph::AttrKind::Message ||
            attribute == graph::dagAttributes().instObjGroups.get())
            continue;
        Cell* source = from.cellIfThere(*attribute);
        const graph::Attribute* twin = to.findAttribute(attribute->longName);
        if (!source || !source->isInUse() || !twin) continue;
        graph::copyCell(to.cell(*twin), *source);
    }
}

/// A shape whose geometry comes over a wire keeps what it shows at this moment.
constexpr std::pair<std::string_view, std::string_view> kStoredGeometry[] = {{"outMesh", "cachedInMesh"},
                                                                             {"local", "cached"}};

Node& copyOf(CommandContext& context, Node& from, DagNode* parent, std::map<Node*, Node*>& copies) {
    Node& to = *context.scene.create(from.type(), from.name(), parent);
    copies[&from] = &to;
    copyValues(to, from);
    for (const auto& [shown, stored] : kStoredGeometry) {
        const graph::Attribute* output = from.findAttribute(shown);
        const graph::Attribute* storage = to.findAttribute(stored);
        if (!output || !storage) continue;
        graph::putData(to.cell(*storage), graph::pullData(from.cell(*output)));
        graph::spreadDirt(to.cell(*storage));
    }
    if (!from.type().isDag) return to;
    for (DagNode* child : std::vector<DagNode*>(static_cast<DagNode&>(from).children())) {
        if (child->isIntermediate()) continue;
        copyOf(context, *child, static_cast<DagNode*>(&to), copies);
    }
    return to;
}

mel::Value duplicate(CommandContext& context, const Args& args) {
    for (const char* flag : {"upstreamNodes", "renameChildren"}) {
        if (args.isOn(flag))
            throw mel::Error("duplicate: flag '-" + std::string(flag) + "' is not there yet.");
    }
    std::vector<Node*> sources = operandNodes(context, args);
    std::map<Node*, Node*> copies;
    std::vector<Node*> roots;
    for (Node* source : sources) {
        Node* from = source;
        // A shape is copied with its transform.
        if (from->type().isShape) from = static_cast<DagNode*>(from)->parents().front();
        DagNode* parent = nullptr;
        if (from->type().isDag && !static_cast<DagNode*>(from)->parents().empty()) {
            parent = static_cast<DagNode*>(from)->parents().front();
        }
        Node& root = copyOf(context, *from, parent, copies);
        if (args.has("name") && roots.empty()) require(context.scene.rename(root, args.text("name")));
        roots.push_back(&root);
    }
    // Shapes follow the names of their new transforms.
    for (const auto& [from, to] : copies) {
        if (!to->type().isShape) continue;
        const std::string above = static_cast<DagNode*>(to)->parents().front()->name();
        (void)context.scene.rename(*to, transformNameFor(from->name()) == "transform#" ? to->name()
                                                                                       : above + "Shape");
    }
    if (args.isOn("inputConnections")) {
        for (const auto& [from, to] : copies) {
            std::vector<Cell*> fed;
            from->eachCell([&](Cell& cell) {
                if (cell.source) fed.push_back(&cell);
            });
            for (Cell* cell : fed) {
                graph::Plug plug(*cell);
                plug.node = to;
                if (Cell* twin = plug.cell()) (void)graph::connect(*cell->source, *twin, true);
            }
        }
    }
    context.scene.selection.clear();
    mel::StringArray names;
    for (Node* root : roots) {
        names.push_back(root->uniqueName());
        for (auto& item : graph::resolve(context.scene, root->uniqueName()))
            context.scene.selection.add(std::move(item));
    }
    return mel::Value(std::move(names));
}

mel::Value instance(CommandContext& context, const Args& args) {
    mel::StringArray names;
    for (Node* node : operandNodes(context, args)) {
        if (!node->type().isDag)
            throw mel::Error("'" + node->uniqueName() + "' is no DAG node: it has no instances.");
        auto& from = static_cast<DagNode&>(*node);
        DagNode* parent = from.parents().front();
        DagNode& copy =
            makeTransform(context, args.text("name", from.name()), parent->isWorld() ? nullptr : parent);
        copyValues(copy, from);
        for (DagNode* child : from.children())
            require(context.scene.reparent(*child, &copy, true));
        names.push_back(copy.uniqueName());
    }
    return mel::Value(std::move(names));
}

// --- hierarchy
// -------------------------------------------------------------------------------------------------------

/// Moves a node so that it stays where it is in the world, unless `relative`.
void moveBelow(CommandContext& context, DagNode& node, DagNode* parent, bool relative) {
    const MMatrix before = graph::firstPath(node).inclusiveMatrix();
    require(context.scene.reparent(node, parent));
    if (relative || node.type().isShape) return;
    const MMatrix above = parent ? graph::firstPath(*parent).inclusiveMatrix() : MMatrix();
    setLocalMatrix(node, before * above.inverse());
}

mel::Value parent(CommandContext& context, const Args& args) {
    auto names = args.wordTexts();
    std::vector<DagNode*> nodes;
    DagNode* below = nullptr;
    if (names.empty()) {
        for (const auto& item : context.scene.selection.items())
            names.push_back(item.node->uniqueName());
    }
    if (!args.isOn("world") && !names.empty()) {
        below = &dagNodeNamed(context, names.back());
        names.pop_back();
        if (names.empty()) {
            for (const auto& item : context.scene.selection.items())
                names.push_back(item.node->uniqueName());
        }
    }
    if (names.empty()) throw mel::Error("parent: name what goes below what, or use -world.");
    mel::StringArray moved;
    for (const auto& name : names) {
        DagNode& node = dagNodeNamed(context, name);
        if (node.type().isShape && !args.isOn("shape")) {
            throw mel::Error("parent: '" + name + "' is a shape: use -shape to move it.");
        }
        if (args.isOn("removeObject")) {
            if (node.parents().size() < 2) {
                context.scene.remove(node);
                continue;
            }
            const auto paths = graph::resolve(context.scene, name);
            const auto& path = paths.front().path;
            DagNode& above =
                path.nodes.size() > 1 ? *path.nodes[path.nodes.size() - 2] : context.scene.world();
            require(context.scene.removeInstance(node, above));
        } else if (args.isOn("addObject")) {
            require(context.scene.reparent(node, below, true));
            moved.push_back(node.uniqueName());
        } else {
            moveBelow(context, node, below, args.isOn("relative"));
            moved.push_back(node.uniqueName());
        }
    }
    return mel::Value(std::move(moved));
}

mel::Value group(CommandContext& context, const Args& args) {
    std::vector<Node*> members;
    if (!args.isOn("empty")) {
        members = operandNodes(context, args);
        if (members.empty()) throw mel::Error("group: nothing to group; -empty makes an empty group.");
    }
    DagNode* above = args.has("parent") ? &dagNodeNamed(context, args.text("parent")) : nullptr;
    if (!above && !args.isOn("world") && !members.empty() && members.front()->type().isDag) {
        DagNode* common = static_cast<DagNode*>(members.front())->parents().front();
        if (!common->isWorld()) above = common;
    }
    DagNode& made = makeTransform(context, args.text("name", "group#"), above);
    for (Node* member : members) {
        if (!member->type().isDag) throw mel::Error("group: '" + member->uniqueName() + "' is no DAG node.");
        moveBelow(context, static_cast<DagNode&>(*member), &made, args.isOn("relative"));
    }
    selectOnly(context, made);
    return mel::Value(made.uniqueName());
}

void storePosition(Node& node, const std::array<double, 3>& position) {
    Cell& translate = node.cell(*node.findAttribute("translate"));
    for (int i = 0; i < 3; ++i)
        require(graph::storeNumber(translate.child(i), position[static_cast<std::size_t>(i)]));
}

mel::Value spaceLocator(CommandContext& context, const Args& args) {
    DagNode& transform = makeTransform(context, args.text("name", "locator#"));
    makeNode(context, "locator", transform.name() + "Shape", &transform);
    if (args.has("position")) {
        storePosition(transform, {args.number("position", 0, 0), args.number("position", 0, 1),
                                  args.number("position", 0, 2)});
    }
    selectOnly(context, transform);
    return mel::Value(mel::StringArray{transform.uniqueName()});
}

mel::Value joint(CommandContext& context, const Args& args) {
    // A joint goes below the selected one.
    DagNode* above = nullptr;
    for (const auto& item : context.scene.selection.items()) {
        if (item.node->type().name() == "joint") above = static_cast<DagNode*>(item.node.get());
    }
    Node& node = makeNode(context, "joint", args.text("name", "joint#"), above);
    if (args.has("position")) {
        MPoint position(args.number("position", 0, 0), args.number("position", 0, 1),
                        args.number("position", 0, 2));
        if (above) position = position * graph::firstPath(*above).inclusiveMatrix().inverse();
        storePosition(node, {position.x, position.y, position.z});
    }
    if (args.has("radius"))
        require(graph::storeNumber(node.cell(*node.findAttribute("radius")), args.number("radius")));
    selectOnly(context, node);
    return mel::Value(node.uniqueName());
}

const CommandSpec kCommands[] = {
    {"createNode",
     "type",
     {{"-name", "-n", {ArgKind::Text}},
      {"-parent", "-p", {ArgKind::Text}},
      {"-shared", "-s"},
      {"-skipSelect", "-ss"}},
     createNode},
    {"delete", "[node...]", {{"-constructionHistory", "-ch"}}, deleteNodes},
    {"rename", "[node] name", {{"-uuid", "-uid", {ArgKind::Text}}, {"-ignoreShape", "-is"}}, rename},
    {"duplicate",
     "[node...]",
     {{"-name", "-n", {ArgKind::Text}},
      {"-returnRootsOnly", "-rr"},
      {"-renameChildren", "-rc"},
      {"-inputConnections", "-ic"},
      {"-upstreamNodes", "-un"}},
     duplicate},
    {"instance", "[node...]", {{"-name", "-n", {ArgKind::Text}}}, instance},
    {"parent",
     "[node...] parent",
     {{"-world", "-w"},
      {"-shape", "-s"},
      {"-relative", "-r"},
      {"-absolute", "-a"},
      {"-addObject", "-add"},
      {"-removeObject", "-rm"},
      {"-noConnections", "-nc"}},
     parent},
    {"group",
     "[node...]",
     {{"-name", "-n", {ArgKind::Text}},
      {"-parent", "-p", {ArgKind::Text}},
      {"-empty", "-em"},
      {"-world", "-w"},
      {"-relative", "-r"}},
     group},
    {"spaceLocator",
     "",
     {{"-name", "-n", {ArgKind::Text}},
      {"-position", "-p", {ArgKind::Float, ArgKind::Float, ArgKind::Float}}},
     spaceLocator},
    {"joint",
     "",
     {{"-name", "-n", {ArgKind::Text}},
      {"-position", "-p", {ArgKind::Float, ArgKind::Float, ArgKind::Float}},
      {"-radius", "-rad", {ArgKind::Float}}},
     joint},
};

} // namespace

void addNodeCommands(mel::CommandTable& table, CommandContext& context) {
    addCommands(table, context, kCommands);
}

} // namespace vesk::commands
