#pragma once

#include "host/commands/command_spec.h"
#include "host/core/outcome.h"

#include <filesystem>

namespace vesk::scene {

/// An empty scene with the session's own nodes as they are at the start.
void newScene(commands::CommandContext& context);
/// Empties the scene and reads a Maya ASCII file into it. Lines that fail are told on the log with file and
/// line, and reading goes on; the outcome fails when the file is no scene, is cut off, or had such lines.
Outcome openScene(commands::CommandContext& context, const std::filesystem::path& file);
/// Reads a Maya ASCII file into the scene that is there.
Outcome importScene(commands::CommandContext& context, const std::filesystem::path& file);
/// Adds a mesh from an `.obj` or `.ply` file: a transform named after the file, with the mesh below it. A
/// file that cannot be read whole adds nothing.
Outcome importGeometry(commands::CommandContext& context, const std::filesystem::path& file);
/// Writes the whole scene as Maya ASCII, beside the name first.
Outcome saveScene(commands::CommandContext& context, const std::filesystem::path& file);
/// Writes the selected nodes, what stands below and above them, and the wires among them.
Outcome exportSelected(commands::CommandContext& context, const std::filesystem::path& file);

} // namespace vesk::scene
