#include "host/session/plugin_manager.h"

#include "host/api/impl/plugin_object.h"
#include "host/core/log.h"
#include "host/graph/scene.h"

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <algorithm>
#include <dlfcn.h>
#include <exception>
#include <system_error>

namespace vesk {

namespace fs = std::filesystem;

namespace {

constexpr const char* kApiVersion = "201217";
constexpr const char* kExtension = ".so";

using EntryPoint = MStatus (*)(MObject);

/// C linkage first, then the name that a C++ compiler gives.
EntryPoint entryPoint(void* library, const char* name, const char* mangledName) {
    void* symbol = dlsym(library, name);
    if (!symbol) symbol = dlsym(library, mangledName);
    return reinterpret_cast<EntryPoint>(symbol);
}

/// Calls into a library; whatever it throws stops here.
Outcome callEntry(EntryPoint entry, api::PluginObject& plugin, const char* what) {
    const auto failed = [&](const std::string& why) {
        return Outcome::fail(std::string(what) + " of plug-in '" + plugin.name + "' failed: " + why);
    };
    try {
        const MStatus status = entry(MObject(&plugin));
        return status ? Outcome() : failed(status.errorString().asChar());
    } catch (const std::exception& fault) {
        return failed(std::string("it threw \"") + fault.what() + "\".");
    } catch (...) {
        return failed("it threw something unknown.");
    }
}

} // namespace

struct PluginManager::Library {
    PluginInfo info;
    void* handle = nullptr;
    Ref<api::PluginObject> object;
};

PluginManager::PluginManager(graph::TypeRegistry& types, graph::Scene& scene,
                             std::vector<fs::path> searchPath)
    : types_(types), scene_(scene), searchPath_(std::move(searchPath)) {}

// Libraries stay mapped: objects made by their code may live until the process ends.
PluginManager::~PluginManager() = default;

PluginManager::Library* PluginManager::library(std::string_view name) const {
    const auto at = std::find_if(libraries_.begin(), libraries_.end(),
                                 [&](const auto& one) { return one->info.name == name; });
    return at == libraries_.end() ? nullptr : at->get();
}

fs::path PluginManager::locate(const std::string& pathOrName) const {
    std::error_code ignored;
    std::vector<fs::path> candidates{pathOrName, pathOrName + kExtension};
    if (pathOrName.find('/') == std::string::npos) {
        for (const auto& folder : searchPath_) {
            candidates.push_back(folder / pathOrName);
            candidates.push_back(folder / (pathOrName + kExtension));
        }
    }
    for (const auto& candidate : candidates) {
        if (fs::is_regular_file(candidate, ignored)) return fs::absolute(candidate, ignored);
    }
    return {};
}

void PluginManager::noteNodeTypes(Library& library) const {
    library.info.nodeTypes.clear();
    for (const graph::NodeType* type : types_.all()) {
        if (type->plugin == library.info.name) library.info.nodeTypes.push_back(type->name());
    }
}

Outcome PluginManager::load(const std::string& pathOrName, std::string* name) {
    const std::string wanted = fs::path(pathOrName).stem().string();
    if (name) *name = wanted;
    if (isLoaded(wanted)) return {};
    const fs::path path = locate(pathOrName);
    if (path.empty()) return Outcome::fail("Plug-in '" + pathOrName + "' was not found.");
    // Lazy and private: what a library lacks shows when it is needed, and nothing of it leaks into others.
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) return Outcome::fail("Plug-in '" + path.string() + "' cannot be loaded: " + dlerror());
    const auto refuse = [&](const std::string& why) {
        dlclose(handle);
        return Outcome::fail("Plug-in '" + path.string() + "' " + why);
    };
    const auto* version = static_cast<const char*>(dlsym(handle, "MApiVersion"));
    const EntryPoint start = entryPoint(handle, "initializePlugin", "_Z16initializePlugin7MObject");
    const EntryPoint stop = entryPoint(handle, "uninitializePlugin", "_Z18uninitializePlugin7MObject");
    if (!version) return refuse("is no plug-in: it has no symbol MApiVersion.");
    if (!start) return refuse("is no plug-in: it has no symbol initializePlugin.");
    if (!stop) return refuse("is no plug-in: it has no symbol uninitializePlugin.");
    if (std::string_view(version) != kApiVersion) {
        return refuse("was made for API version " + std::string(version) + ", not " + kApiVersion + ".");
    }

    Library* entry = library(wanted);
    if (!entry) entry = libraries_.emplace_back(std::make_unique<Library>()).get();
    entry->info.name = wanted;
    entry->info.path = path;
    entry->handle = handle;
    entry->object = makeRef<api::PluginObject>(types_, wanted, path.parent_path().string());
    const Outcome outcome = callEntry(start, *entry->object, "initializePlugin");
    entry->info.vendor = entry->object->vendor;
    entry->info.version = entry->object->version;
    entry->info.apiVersion = version;
    entry->info.isLoaded = bool(outcome);
    noteNodeTypes(*entry);
    // Types that it registered before it failed stay, and so must their code.
    if (!outcome && entry->info.nodeTypes.empty()) {
        entry->object = nullptr;
        dlclose(handle);
        entry->handle = nullptr;
    }
    return outcome;
}

Outcome PluginManager::unload(const std::string& name, bool force) {
    Library* entry = library(fs::path(name).stem().string());
    if (!entry || !entry->info.isLoaded) return Outcome::fail("Plug-in '" + name + "' is not loaded.");
    if (!force) {
        for (const graph::Node* node : scene_.nodes()) {
            if (node->type().plugin == entry->info.name) {
                return Outcome::fail("Plug-in '" + entry->info.name + "' is in use by node '" +
                                     node->uniqueName() + "'. Use -force to unload it all the same.");
            }
        }
    }
    const EntryPoint stop = entryPoint(entry->handle, "uninitializePlugin", "_Z18uninitializePlugin7MObject");
    const Outcome outcome = callEntry(stop, *entry->object, "uninitializePlugin");
    entry->info.isLoaded = false;
    noteNodeTypes(*entry);
    return outcome;
}

bool PluginManager::isLoaded(std::string_view name) const {
    const Library* entry = library(name);
    return entry && entry->info.isLoaded;
}

const PluginInfo* PluginManager::find(std::string_view name) const {
    const Library* entry = library(name);
    return entry ? &entry->info : nullptr;
}

std::vector<std::string> PluginManager::loadedNames() const {
    std::vector<std::string> names;
    for (const auto& entry : libraries_) {
        if (entry->info.isLoaded) names.push_back(entry->info.name);
    }
    return names;
}

} // namespace vesk
