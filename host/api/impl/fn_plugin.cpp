#define MNoVersionString
#include <maya/MFnPlugin.h>

#include "host/api/impl/plugin_object.h"
#include "host/api/impl/plugin_type.h"
#include "host/api/impl/result.h"
#include "host/api/impl/session_hooks.h"
#include "host/core/log.h"

using vesk::api::answer;
using vesk::api::PluginObject;

namespace {

PluginObject* pluginOf(const MObject& object) { return dynamic_cast<PluginObject*>(object.hostObject()); }

MString fieldOf(const MObject& object, std::string PluginObject::*field, MStatus* status) {
    const PluginObject* plugin = pluginOf(object);
    if (!plugin) return answer(status, MString(), MStatus::kInvalidParameter);
    return answer(status, vesk::toMString(plugin->*field));
}

MStatus setField(const MObject& object, std::string PluginObject::*field, const MString& value) {
    PluginObject* plugin = pluginOf(object);
    if (!plugin) return MStatus::kInvalidParameter;
    plugin->*field = vesk::text(value);
    return {};
}

MStatus reported(const vesk::Outcome& outcome) {
    if (outcome) return {};
    vesk::log().error(outcome.error);
    return MStatus::kFailure;
}

} // namespace

MFnPlugin::MFnPlugin(MObject& object, const char* vendor, const char* version, const char* requiredApiVersion,
                     MStatus* status) {
    vesk::api::report(status, setObject(object));
    PluginObject* plugin = pluginOf(object_);
    if (!plugin) return;
    plugin->vendor = vendor ? vendor : "";
    plugin->version = version ? version : "";
    plugin->requiredApi = requiredApiVersion ? requiredApiVersion : "";
}

MString MFnPlugin::name(MStatus* status) const { return fieldOf(object_, &PluginObject::name, status); }
MString MFnPlugin::vendor(MStatus* status) const { return fieldOf(object_, &PluginObject::vendor, status); }
MString MFnPlugin::version(MStatus* status) const { return fieldOf(object_, &PluginObject::version, status); }
MString MFnPlugin::apiVersion(MStatus* status) const {
    return fieldOf(object_, &PluginObject::requiredApi, status);
}
MString MFnPlugin::loadPath(MStatus* status) const {
    return fieldOf(object_, &PluginObject::loadPath, status);
}
MStatus MFnPlugin::setName(const MString& name) { return setField(object_, &PluginObject::name, name); }
MStatus MFnPlugin::setVersion(const MString& version) {
    return setField(object_, &PluginObject::version, version);
}

MStatus MFnPlugin::registerNode(const MString& typeName, const MTypeId& typeId, MCreatorFunction creator,
                                MInitializeFunction initialize, MPxNode::Type type,
                                const MString* classification) {
    PluginObject* plugin = pluginOf(object_);
    if (!plugin) return MStatus::kInvalidParameter;
    return reported(vesk::api::registerPluginType(
        plugin->types, {.name = vesk::text(typeName),
                        .typeId = typeId.id(),
                        .creator = creator,
                        .initialize = initialize,
                        .kind = type,
                        .classification = classification ? vesk::text(*classification) : std::string(),
                        .plugin = plugin->name}));
}

MStatus MFnPlugin::deregisterNode(const MTypeId& typeId) {
    PluginObject* plugin = pluginOf(object_);
    if (!plugin) return MStatus::kInvalidParameter;
    auto* session = vesk::api::session();
    auto* scene = session && &session->scene().types() == &plugin->types ? &session->scene() : nullptr;
    return reported(vesk::api::deregisterPluginType(plugin->types, typeId.id(), scene));
}
