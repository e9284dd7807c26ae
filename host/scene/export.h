#pragma once

#include "host/core/outcome.h"
#include "host/graph/scene.h"

#include <filesystem>
#include <string_view>

namespace vesk::scene {

/// Pulls a plug and writes what it carries, the kind of file by its extension: meshes as `.obj`, `.ply`,
/// `.ma`; curves and surfaces as `.ma`; arrays and numbers as `.npy`, `.json`, `.csv`, and as `.ma`. Several
/// plugs of one file go into one `.json` or `.csv`, separated by commas. World-space geometry is written in
/// world space. The message of a failure names plug and file.
Outcome exportPlug(graph::Scene& scene, const std::filesystem::path& file, std::string_view plugName);

/// Whether `exportPlug` knows the extension; the message lists those that it does.
Outcome checkExportName(const std::filesystem::path& file);

} // namespace vesk::scene
