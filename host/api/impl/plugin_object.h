#pragma once
// A loaded plug-in, as `initializePlugin` gets it.

#include "host/core/object.h"
#include "host/graph/node_type.h"

#include <string>
#include <utility>

namespace vesk::api {

/// Made by whoever loads the library; the plug-in fills in who made it, and registers its types with `types`.
class PluginObject : public Object {
  public:
    PluginObject(graph::TypeRegistry& registry, std::string pluginName, std::string folder)
        : types(registry), name(std::move(pluginName)), loadPath(std::move(folder)) {}

    graph::TypeRegistry& types;
    std::string name;     ///< the library's base name, without folder and extension
    std::string loadPath; ///< the library's folder
    std::string vendor = "Unknown";
    std::string version = "Unknown";
    std::string requiredApi = "Any";

    MFn::Type apiType() const override { return MFn::kPlugin; }
};

} // namespace vesk::api
