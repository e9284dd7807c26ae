#include "host/commands/poly_commands.h"

#include "host/commands/creation.h"
#include "host/commands/lookup.h"
#include "host/commands/point_edits.h"
#include "host/core/log.h"
#include "host/data/component.h"
#include "host/graph/evaluate.h"
#include "host/graph/selection.h"
#include "host/nodes/mesh_node.h"

namespace vesk::commands {

using nodes::MeshNode;

namespace {

CreatorSpec polygons(std::string_view creator, std::string_view transform, std::vector<CreatorFlag> flags) {
    flags.push_back({"axis", {"axisX", "axisY", "axisZ"}});
    return {creator, "output", "mesh", "inMesh", transform, std::move(flags)};
}

mel::Value polyCube(CommandContext& context, const Args& args) {
    static const CreatorSpec spec = polygons("polyCube", "pCube#",
                                             {{"width", {"width"}},
                                              {"height", {"height"}},
                                              {"depth", {"depth"}},
                                              {"subdivisionsX", {"subdivisionsWidth"}},
                                              {"subdivisionsY", {"subdivisionsHeight"}},
                                              {"subdivisionsZ", {"subdivisionsDepth"}}});
    return createGeometry(context, args, spec);
}

mel::Value polySphere(CommandContext& context, const Args& args) {
    static const CreatorSpec spec = polygons("polySphere", "pSphere#",
                                             {{"radius", {"radius"}},
                                              {"subdivisionsX", {"subdivisionsAxis"}},
                                              {"subdivisionsY", {"subdivisionsHeight"}}});
    return createGeometry(context, args, spec);
}

mel::Value polyPlane(CommandContext& context, const Args& args) {
    static const CreatorSpec spec = polygons("polyPlane", "pPlane#",
                                             {{"width", {"width"}},
                                              {"height", {"height"}},
                                              {"subdivisionsX", {"subdivisionsWidth"}},
                                              {"subdivisionsY", {"subdivisionsHeight"}}});
    return createGeometry(context, args, spec);
}

const std::vector<CreatorFlag> kRoundFlags = {{"radius", {"radius"}},
                                              {"height", {"height"}},
                                              {"subdivisionsX", {"subdivisionsAxis"}},
                                              {"subdivisionsY", {"subdivisionsHeight"}},
                                              {"subdivisionsZ", {"subdivisionsCaps"}}};

mel::Value polyCylinder(CommandContext& context, const Args& args) {
    static const CreatorSpec spec = polygons("polyCylinder", "pCylinder#", kRoundFlags);
    return createGeometry(context, args, spec);
}

mel::Value polyCone(CommandContext& context, const Args& args) {
    static const CreatorSpec spec = polygons("polyCone", "pCone#", kRoundFlags);
    return createGeometry(context, args, spec);
}

mel::Value polyTorus(CommandContext& context, const Args& args) {
    static const CreatorSpec spec = polygons("polyTorus", "pTorus#",
                                             {{"radius", {"radius"}},
                                              {"sectionRadius", {"sectionRadius"}},
                                              {"subdivisionsX", {"subdivisionsAxis"}},
                                              {"subdivisionsY", {"subdivisionsHeight"}}});
    return createGeometry(context, args, spec);
}

// --- colours and counts
// ----------------------------------------------------------------------------------------------

/// The mesh shape that an item names, itself or through its transform.
MeshNode& meshOf(const graph::SelectionItem& item) {
    graph::DagNode* shape =
        item.node->type().isDag ? shapeOf(static_cast<graph::DagNode&>(*item.node)) : nullptr;
    auto* mesh = dynamic_cast<MeshNode*>(shape);
    if (!mesh) throw mel::Error("'" + item.node->uniqueName() + "' is no polygon mesh.");
    return *mesh;
}

std::vector<graph::SelectionItem> operandItems(const CommandContext& context, const Args& args) {
    if (args.wordCount() == 0) return context.scene.selection.items();
    std::vector<graph::SelectionItem> items;
    for (const auto& name : args.wordTexts()) {
        auto found = graph::resolve(context.scene, name);
        if (found.empty()) throw mel::Error("No object matches name: " + name);
        items.insert(items.end(), found.begin(), found.end());
    }
    return items;
}

/// A mesh that can be written: history ends here, the shape keeps what it shows.
geom::Mesh ownMesh(MeshNode& node) {
    if (node.endHistory())
        log().warning("The history of '" + node.uniqueName() + "' was baked into its mesh.");
    return node.mesh();
}

std::vector<int> verticesOf(const geom::Mesh& mesh, const Component* component) {
    std::vector<int> vertices;
    const auto* single = dynamic_cast<const SingleComponent*>(component);
    if (!component || component->isUnsized()) {
        for (int i = 0; i < mesh.vertexCount(); ++i)
            vertices.push_back(i);
        return vertices;
    }
    for (std::size_t i = 0; single && i < single->count(); ++i) {
        const int id = single->at(i)[0];
        if (single->apiType() == MFn::kMeshPolygonComponent) {
            if (!mesh.topology().hasFace(id)) continue;
            for (const int vertex : mesh.topology().verticesOfFace(id))
                vertices.push_back(vertex);
        } else if (single->apiType() == MFn::kMeshVertComponent && mesh.topology().hasVertex(id)) {
            vertices.push_back(id);
        }
    }
    return vertices;
}

mel::Value polyColorPerVertex(CommandContext& context, const Args& args) {
    for (const auto& item : operandItems(context, args)) {
        MeshNode& node = meshOf(item);
        geom::Mesh mesh = ownMesh(node);
        if (args.isOn("remove")) {
            mesh.clearColors(mesh.currentColorSet());
            require(node.setMesh(std::move(mesh)));
            continue;
        }
        const auto vertices = verticesOf(mesh, dynamic_cast<const Component*>(item.component.get()));
        std::vector<MColor> colors;
        colors.reserve(vertices.size());
        for (const int vertex : vertices) {
            MColor color(0, 0, 0, 1);
            if (mesh.currentColorSet() >= 0) color = mesh.vertexColor(mesh.currentColorSet(), vertex, color);
            if (args.has("colorRGB")) {
                color.r = static_cast<float>(args.number("colorRGB", 0, 0));
                color.g = static_cast<float>(args.number("colorRGB", 0, 1));
                color.b = static_cast<float>(args.number("colorRGB", 0, 2));
            }
            if (args.has("red")) color.r = static_cast<float>(args.number("red"));
            if (args.has("green")) color.g = static_cast<float>(args.number("green"));
            if (args.has("blue")) color.b = static_cast<float>(args.number("blue"));
            if (args.has("alpha")) color.a = static_cast<float>(args.number("alpha"));
            colors.push_back(color);
        }
        require(mesh.setVertexColors(colors, vertices));
        require(node.setMesh(std::move(mesh)));
    }
    return mel::Value();
}

mel::Value polyEvaluate(CommandContext& context, const Args& args) {
    const auto items = operandItems(context, args);
    if (items.empty()) throw mel::Error("polyEvaluate: nothing is named or selected.");
    const geom::Mesh mesh = meshOf(items.front()).mesh();
    if (args.has("vertex")) return mel::Value(mesh.vertexCount());
    if (args.has("edge")) return mel::Value(mesh.edgeCount());
    if (args.has("face")) return mel::Value(mesh.faceCount());
    if (args.has("triangle")) return mel::Value(mesh.triangleCount());
    const int set = mesh.findUvSet({});
    const int uvs = set < 0 ? 0 : mesh.uvSet(set).uvCount();
    if (args.has("uvcoord")) return mel::Value(uvs);
    return mel::Value(
        mel::IntArray{mesh.vertexCount(), mesh.edgeCount(), mesh.faceCount(), mesh.triangleCount(), uvs});
}

const FlagSpec kSubdivisionsX{"-subdivisionsX", "-sx", {ArgKind::Int}};
const FlagSpec kSubdivisionsY{"-subdivisionsY", "-sy", {ArgKind::Int}};
const FlagSpec kSubdivisionsZ{"-subdivisionsZ", "-sz", {ArgKind::Int}};
const FlagSpec kAxis{"-axis", "-ax", {ArgKind::Float, ArgKind::Float, ArgKind::Float}};
const FlagSpec kRadius{"-radius", "-r", {ArgKind::Float}};
const FlagSpec kHeight{"-height", "-h", {ArgKind::Float}};
const FlagSpec kWidth{"-width", "-w", {ArgKind::Float}};
const FlagSpec kDepth{"-depth", "-d", {ArgKind::Float}};

const CommandSpec kCommands[] = {
    {"polyCube", "",
     creationFlags({kWidth, kHeight, kDepth, kSubdivisionsX, kSubdivisionsY, kSubdivisionsZ, kAxis}),
     polyCube},
    {"polySphere", "", creationFlags({kRadius, kSubdivisionsX, kSubdivisionsY, kAxis}), polySphere},
    {"polyPlane", "", creationFlags({kWidth, kHeight, kSubdivisionsX, kSubdivisionsY, kAxis}), polyPlane},
    {"polyCylinder", "",
     creationFlags({kRadius, kHeight, kSubdivisionsX, kSubdivisionsY, kSubdivisionsZ, kAxis}), polyCylinder},
    {"polyCone", "", creationFlags({kRadius, kHeight, kSubdivisionsX, kSubdivisionsY, kSubdivisionsZ, kAxis}),
     polyCone},
    {"polyTorus", "",
     creationFlags(
         {kRadius, {"-sectionRadius", "-sr", {ArgKind::Float}}, kSubdivisionsX, kSubdivisionsY, kAxis}),
     polyTorus},
    {"polyColorPerVertex",
     "[component...]",
     {{"-colorRGB", "-rgb", {ArgKind::Float, ArgKind::Float, ArgKind::Float}},
      {"-red", "-r", {ArgKind::Float}},
      {"-green", "-g", {ArgKind::Float}},
      {"-blue", "-b", {ArgKind::Float}},
      {"-alpha", "-a", {ArgKind::Float}},
      {"-remove", "-rem"},
      {"-colorDisplayOption", "-cdo"}},
     polyColorPerVertex},
    {"polyEvaluate",
     "[object]",
     {{"-vertex", "-v"}, {"-edge", "-e"}, {"-face", "-f"}, {"-triangle", "-t"}, {"-uvcoord", "-uv"}},
     polyEvaluate},
};

} // namespace

void addPolyCommands(mel::CommandTable& table, CommandContext& context) {
    addCommands(table, context, kCommands);
}

} // namespace vesk::commands
