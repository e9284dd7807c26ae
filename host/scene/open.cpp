#include "host/scene/open.h"

#include "host/commands/node_commands.h"
#include "host/core/log.h"
#include "host/nodes/default_nodes.h"
#include "host/nodes/mesh_node.h"
#include "host/scene/ascii_reader.h"
#include "host/scene/ascii_writer.h"
#include "host/scene/formats/file_buffer.h"
#include "host/scene/formats/mesh_files.h"

#include <set>

namespace vesk::scene {

namespace fs = std::filesystem;

void newScene(commands::CommandContext& context) {
    context.currentNode = nullptr;
    context.scene.clear();
    nodes::createDefaultNodes(context.scene);
}

Outcome importScene(commands::CommandContext& context, const fs::path& file) {
    const auto buffer = formats::FileBuffer::open(file);
    if (!buffer) return Outcome::fail(buffer.error());
    return readAscii(context, buffer->text(), file.string());
}

Outcome openScene(commands::CommandContext& context, const fs::path& file) {
    const auto buffer = formats::FileBuffer::open(file);
    if (!buffer) return Outcome::fail(buffer.error()); // the scene that is there stays
    newScene(context);
    const Outcome outcome = readAscii(context, buffer->text(), file.string());
    context.scene.fileName = fs::absolute(file).string();
    context.scene.selection.clear();
    return outcome;
}

Outcome importGeometry(commands::CommandContext& context, const fs::path& file) {
    auto mesh = file.extension() == ".obj" ? formats::readObj(file) : formats::readPly(file);
    if (!mesh) return Outcome::fail(mesh.error());
    try {
        const std::string name = file.stem().string();
        auto& transform = static_cast<graph::DagNode&>(commands::makeNode(context, "transform", name));
        auto& shape = commands::makeNode(context, "mesh", transform.name() + "Shape", &transform);
        if (auto outcome = static_cast<nodes::MeshNode&>(shape).setMesh(std::move(*mesh)); !outcome)
            return outcome;
        commands::selectOnly(context, transform);
    } catch (const mel::Error& error) {
        return Outcome::fail("'" + file.string() + "': " + error.message());
    }
    return {};
}

Outcome saveScene(commands::CommandContext& context, const fs::path& file) {
    return writeAscii(context.scene, context.scene.nodes(), file);
}

Outcome exportSelected(commands::CommandContext& context, const fs::path& file) {
    std::set<graph::Node*> chosen;
    for (const auto& item : context.scene.selection.items()) {
        chosen.insert(item.node.get());
        for (const auto& above : item.path.nodes)
            chosen.insert(above.get());
        const auto below = [&](const auto& self, graph::DagNode& node) -> void {
            chosen.insert(&node);
            for (graph::DagNode* child : node.children())
                self(self, *child);
        };
        if (item.node->type().isDag) below(below, static_cast<graph::DagNode&>(*item.node));
    }
    if (chosen.empty()) return Outcome::fail("'" + file.string() + "': nothing is selected to export.");
    return writeAscii(context.scene, {chosen.begin(), chosen.end()}, file);
}

} // namespace vesk::scene
