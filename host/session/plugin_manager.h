#pragma once
// Loads and unloads plug-ins by their entry points.

#include "host/core/object.h"
#include "host/core/outcome.h"
#include "host/graph/node_type.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

namespace graph {
class Scene;
}

/// What `pluginInfo` tells about a library.
struct PluginInfo {
    std::string name; ///< base name of the file without its extension
    std::filesystem::path path;
    std::string vendor, version, apiVersion;
    bool isLoaded = false;
    std::vector<std::string> nodeTypes; ///< registered now, in order of registration
};

class PluginManager {
  public:
    PluginManager(graph::TypeRegistry& types, graph::Scene& scene,
                  std::vector<std::filesystem::path> searchPath);
    ~PluginManager();
    PluginManager(const PluginManager&) = delete;
    PluginManager& operator=(const PluginManager&) = delete;

    /// A path, or a name that is looked for on the search path with the platform's extension. Loading twice
    /// does nothing. On failure the session goes on; node types registered before the failure stay.
    Outcome load(const std::string& pathOrName, std::string* name = nullptr);
    /// Refused while nodes of its types exist, unless forced: they become placeholders that keep their data.
    Outcome unload(const std::string& name, bool force = false);

    bool isLoaded(std::string_view name) const;
    /// Null for a name that was never loaded.
    const PluginInfo* find(std::string_view name) const;
    std::vector<std::string> loadedNames() const;
    std::vector<std::filesystem::path>& searchPath() { return searchPath_; }

  private:
    struct Library;

    Library* library(std::string_view name) const;
    std::filesystem::path locate(const std::string& pathOrName) const;
    void noteNodeTypes(Library& library) const;

    graph::TypeRegistry& types_;
    graph::Scene& scene_;
    std::vector<std::filesystem::path> searchPath_;
    std::vector<std::unique_ptr<Library>> libraries_;
};

} // namespace vesk
