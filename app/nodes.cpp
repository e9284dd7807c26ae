// `vesk nodes`: the plug-in's table, and attributes as they are in the running registry.

#include "app/commands.h"
#include "app/talk.h"

#include "host/core/log.h"
#include "host/session/attribute_text.h"
#include "host/session/session.h"

#include <climits>
#include <cstdio>
#include <unistd.h>

namespace vesk::app {

namespace {

struct Row {
    const char* name;
    unsigned typeId;
    const char* classification;
};

/// The 62 rows, in their order.
constexpr Row kRows[] = {
#define NODE(name, typeId, kind, classification, state) {#name, typeId, classification},
#include "plugin/nodes.def"
#undef NODE
};

void listAll(const graph::TypeRegistry& types, bool json) {
    std::size_t there = 0;
    for (const Row& row : kRows) {
        const bool isThere = types.find(row.name) != nullptr;
        there += isThere ? 1 : 0;
        const char* classification = row.classification ? row.classification : "";
        if (json) {
            std::printf("{\"name\": \"%s\", \"typeId\": %u, \"classification\": \"%s\", \"there\": %s}\n",
                        row.name, row.typeId, classification, isThere ? "true" : "false");
        } else {
            std::printf("%-26s 0x%06x  %-18s %s\n", row.name, row.typeId, classification,
                        isThere ? "there" : "not written yet");
        }
    }
    if (!json) std::printf("%zu of %zu types are there\n", there, std::size(kRows));
}

void listOne(const graph::NodeType& type, bool json) {
    if (!json) {
        std::printf("%s  type id 0x%06x  classification \"%s\"\n\n", type.name().c_str(), type.typeId,
                    type.classification.c_str());
        std::printf("%-28s %-10s %-44s %-10s %-22s %s\n", "long name", "short", "type", "default", "limits",
                    "flags");
    }
    for (const auto& attribute : type.attributes()) {
        if (isPartOfRamp(*attribute)) continue;
        const AttributeText text = attributeText(*attribute);
        if (json) {
            std::printf("{\"long\": %s, \"short\": %s, \"type\": %s, \"default\": %s, \"limits\": %s, "
                        "\"flags\": %s}\n",
                        quotedJson(attribute->longName).c_str(), quotedJson(attribute->shortName).c_str(),
                        quotedJson(text.type).c_str(), quotedJson(text.defaultValue).c_str(),
                        quotedJson(text.limits).c_str(), quotedJson(text.flags).c_str());
        } else {
            const std::string name(static_cast<std::size_t>(2 * text.depth), ' ');
            std::printf("%-28s %-10s %-44s %-10s %-22s %s\n", (name + attribute->longName).c_str(),
                        attribute->shortName.c_str(), text.type.c_str(), text.defaultValue.c_str(),
                        text.limits.c_str(), text.flags.c_str());
        }
    }
}

} // namespace

std::string pluginBesideCommand() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    const std::filesystem::path command =
        length > 0 ? std::string(path, static_cast<std::size_t>(length)) : "vesk";
    return (command.parent_path().parent_path() / "plug-ins" / "Vesk.so").string();
}

std::string versionText() { return "vesk " VESK_VERSION " (API 201217)"; }

int listNodes(const NodesOptions& options) {
    const Talk talk(options.json);
    // The plug-in prints its banner and runs its texts, which nobody asked for here: only problems are told.
    log().setSink([](const LogEntry& entry) {
        if (entry.level == LogLevel::Error) std::fprintf(stderr, "%s\n", Log::decorated(entry).c_str());
    });
    Session session;
    if (auto outcome =
            session.plugins().load(options.plugin.empty() ? pluginBesideCommand() : options.plugin);
        !outcome) {
        log().error(outcome.error);
        return kFailed;
    }
    if (options.type.empty()) {
        listAll(session.types(), options.json);
        return kAllDone;
    }
    if (const graph::NodeType* type = session.types().find(options.type)) {
        listOne(*type, options.json);
        return kAllDone;
    }
    for (const Row& row : kRows) {
        if (options.type != row.name) continue;
        std::fprintf(stderr, "vesk: node type '%s' is not written yet\n", row.name);
        return kFailed;
    }
    std::fprintf(stderr, "vesk: there is no node type '%s'\n", options.type.c_str());
    return kFailed;
}

} // namespace vesk::app
