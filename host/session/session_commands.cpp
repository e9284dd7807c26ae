#include "host/session/session_commands.h"

#include "host/commands/lookup.h"
#include "host/core/log.h"
#include "host/scene/open.h"
#include "host/session/session.h"

#include <maya/MTime.h>

#include <map>

namespace vesk {

namespace fs = std::filesystem;

using commands::ArgKind;
using commands::Args;
using commands::CommandContext;
using commands::CommandSpec;
using commands::kAllModes;
using commands::require;

namespace {

/// Rows are plain functions; there is one session in a process that they can mean.
Session* running = nullptr;

/// What scripts keep between sessions of one user: here, for this session.
std::map<std::string, mel::Value>& options() {
    static std::map<std::string, mel::Value> values;
    return values;
}

// --- plug-ins
// --------------------------------------------------------------------------------------------------------

mel::Value loadPlugin(CommandContext&, const Args& args) {
    mel::StringArray loaded;
    for (const auto& text : args.wordTexts()) {
        std::string name;
        const Outcome outcome = running->plugins().load(text, &name);
        if (!outcome && !args.isOn("quiet")) throw mel::Error(outcome.error);
        if (outcome) loaded.push_back(name);
    }
    return mel::Value(std::move(loaded));
}

mel::Value unloadPlugin(CommandContext&, const Args& args) {
    mel::StringArray names = args.wordTexts();
    for (const auto& name : names)
        require(running->plugins().unload(name, args.isOn("force")));
    return mel::Value(std::move(names));
}

mel::Value pluginInfo(CommandContext&, const Args& args) {
    PluginManager& plugins = running->plugins();
    if (args.has("listPlugins")) return mel::Value(mel::StringArray(plugins.loadedNames()));
    const std::string name = fs::path(args.word(0)).stem().string();
    if (args.has("loaded")) return mel::Value(plugins.isLoaded(name));
    const PluginInfo* info = plugins.find(name);
    if (!info) throw mel::Error("Plug-in, \"" + name + "\", is not registered.");
    if (args.has("path")) return mel::Value(info->path.string());
    if (args.has("vendor")) return mel::Value(info->vendor);
    if (args.has("version")) return mel::Value(info->version);
    if (args.has("apiVersion")) return mel::Value(info->apiVersion);
    if (args.has("dependNode")) return mel::Value(mel::StringArray(info->nodeTypes));
    return mel::Value(info->name);
}

mel::Value requiresCommand(CommandContext& context, const Args& args) {
    const std::string what = args.word(0);
    if (what == "maya" || running->plugins().isLoaded(what)) return mel::Value();
    if (const auto outcome = running->plugins().load(what); !outcome) {
        log().warning("The scene requires \"" + what + "\", which is not there: " + outcome.error);
        context.scene.missingPlugins[what] = args.wordCount() > 1 ? args.word(1) : std::string();
    }
    return mel::Value();
}

// --- the host
// --------------------------------------------------------------------------------------------------------

mel::Value internalVar(CommandContext&, const Args& args) {
    const UserFolders& folders = running->folders();
    if (args.has("userScriptDir")) return mel::Value(folders.scripts());
    if (args.has("userPrefDir")) return mel::Value(folders.preferences());
    if (args.has("userShelfDir")) return mel::Value(folders.shelves());
    if (args.has("userTmpDir")) return mel::Value(folders.temporary());
    if (args.has("userAppDir")) return mel::Value(folders.app());
    throw mel::Error("internalVar: name a folder, such as -userScriptDir.");
}

mel::Value about(CommandContext&, const Args& args) {
    if (args.has("batch")) return mel::Value(!running->isInteractive());
    if (args.has("version")) return mel::Value("2012");
    if (args.has("apiVersion")) return mel::Value(201217);
    if (args.has("linux") || args.has("linux64")) return mel::Value(true);
    if (args.has("operatingSystem")) return mel::Value("linux");
    if (args.has("ntOS") || args.has("macOS")) return mel::Value(false);
    if (args.has("application") || args.has("product")) return mel::Value("vesk");
    throw mel::Error("about: name what to tell, such as -version.");
}

mel::Value commandEcho(CommandContext&, const Args& args) {
    if (args.isQuery()) return mel::Value(running->echoesCommands());
    if (args.has("state")) running->setEchoesCommands(args.boolean("state", false));
    return mel::Value();
}

mel::Value undoInfo(CommandContext&, const Args& args) {
    if (args.isQuery()) return mel::Value(false);
    if (args.boolean("state", false)) throw mel::Error("There is no undo in this session.");
    return mel::Value();
}

mel::Value makePaintable(CommandContext&, const Args& args) {
    if (!running->isInteractive() || args.isQuery()) return mel::Value();
    return mel::Value(args.word(0) + "." + args.word(1));
}

mel::Value optionVar(CommandContext&, const Args& args) {
    auto& values = options();
    const auto named = [&](std::string_view flag) { return args.text(flag); };
    if (args.isQuery()) {
        const auto at = values.find(args.wordCount() > 0 ? args.word(0) : std::string());
        return at == values.end() ? mel::Value(0) : at->second;
    }
    if (args.has("exists")) return mel::Value(values.contains(named("exists")));
    if (args.has("remove")) values.erase(named("remove"));
    if (args.has("intValue")) values[named("intValue")] = args.integer("intValue", 0, 1);
    if (args.has("floatValue")) values[named("floatValue")] = args.number("floatValue", 0, 1);
    if (args.has("stringValue")) values[named("stringValue")] = args.text("stringValue", "", 1);
    return mel::Value();
}

mel::Value python(CommandContext&, const Args& args) {
    if (!running->runPython(args.word(0))) throw mel::Error("python: there is no Python in this build.");
    return mel::Value();
}

mel::Value help(CommandContext& context, const Args& args) {
    const CommandSpec* spec = commands::findCommand(context, args.word(0));
    if (!spec) throw mel::Error("help: there is no command '" + args.word(0) + "'.");
    return mel::Value(commands::helpText(*spec));
}

// --- time and units
// --------------------------------------------------------------------------------------------------

mel::Value currentTime(CommandContext& context, const Args& args) {
    if (!args.isQuery()) {
        if (args.wordCount() == 0) throw mel::Error("currentTime: name a frame.");
        const auto frame = args.words()[0]->number();
        if (!frame) throw mel::Error("currentTime: '" + args.word(0) + "' is no frame number.");
        context.scene.setFrame(*frame);
    }
    return mel::Value(context.scene.frame());
}

mel::Value playbackOptions(CommandContext& context, const Args& args) {
    auto& range = context.scene.playback;
    struct Row {
        const char* flag;
        double* value;
    };
    const Row rows[] = {{"minTime", &range.min},
                        {"maxTime", &range.max},
                        {"animationStartTime", &range.animationStart},
                        {"animationEndTime", &range.animationEnd}};
    for (const Row& row : rows) {
        if (!args.has(row.flag)) continue;
        if (args.isQuery()) return mel::Value(*row.value);
        *row.value = args.number(row.flag);
    }
    return mel::Value();
}

mel::Value currentUnit(CommandContext& context, const Args& args) {
    static const std::pair<double, const char*> kNames[] = {
        {15, "game"}, {24, "film"}, {25, "pal"}, {30, "ntsc"}, {48, "show"}, {50, "palf"}, {60, "ntscf"}};
    if (args.isQuery()) {
        if (args.has("linear")) return mel::Value("cm");
        if (args.has("angle")) return mel::Value("deg");
        for (const auto& [fps, name] : kNames) {
            if (fps == context.scene.framesPerSecond()) return mel::Value(name);
        }
        return mel::Value(mel::Value(context.scene.framesPerSecond()).asString() + "fps");
    }
    if (args.has("linear")) {
        const std::string unit = args.text("linear");
        if (unit != "cm" && unit != "centimeter") {
            throw mel::Error("currentUnit: lengths are in centimetres here, not in '" + unit + "'.");
        }
    }
    if (args.has("angle")) {
        const std::string unit = args.text("angle");
        if (unit != "deg" && unit != "degree") {
            throw mel::Error("currentUnit: angles are in degrees here, not in '" + unit + "'.");
        }
    }
    if (args.has("time")) {
        const double fps = graph::framesPerSecond(args.text("time"));
        if (fps == 0) throw mel::Error("currentUnit: unknown unit of time '" + args.text("time") + "'.");
        const double frame = context.scene.frame();
        context.scene.setFramesPerSecond(fps);
        context.scene.setFrame(frame);
        static const std::pair<double, MTime::Unit> kUnits[] = {
            {15, MTime::kGames},    {24, MTime::kFilm},     {25, MTime::kPALFrame}, {30, MTime::kNTSCFrame},
            {48, MTime::kShowScan}, {50, MTime::kPALField}, {60, MTime::kNTSCField}};
        for (const auto& [rate, unit] : kUnits) {
            if (rate == fps) MTime::setUIUnit(unit);
        }
    }
    return mel::Value();
}

// --- files
// -----------------------------------------------------------------------------------------------------------

mel::Value queryFile(const CommandContext& context, const Args& args) {
    const std::string& path = context.scene.fileName;
    const std::string shortName = path.empty() ? "untitled" : fs::path(path).filename().string();
    if (args.has("list")) return mel::Value(mel::StringArray{args.has("sceneName") ? shortName : path});
    if (args.has("shortName")) return mel::Value(path.empty() ? std::string() : shortName);
    if (args.has("sceneName") || args.has("expandName")) return mel::Value(path);
    if (args.has("modified")) return mel::Value(false);
    if (args.has("reference")) return mel::Value(mel::StringArray());
    throw mel::Error("file: name what to query.");
}

bool isScene(const fs::path& file) { return file.extension() == ".ma"; }

mel::Value readFile(CommandContext& context, const Args& args, const fs::path& file) {
    if (args.has("reference")) {
        // Only loading is missing: what the reference would bring is not there.
        log().warning("The reference to '" + file.string() + "' was not loaded.");
        return mel::Value(file.string());
    }
    if (args.has("import")) {
        require(isScene(file) ? scene::importScene(context, file) : scene::importGeometry(context, file));
    } else {
        require(scene::openScene(context, file));
    }
    return mel::Value(file.string());
}

mel::Value file(CommandContext& context, const Args& args) {
    if (args.isQuery()) return queryFile(context, args);
    if (args.has("newFile")) {
        scene::newScene(context);
        return mel::Value("untitled");
    }
    if (args.has("rename")) {
        context.scene.fileName = fs::absolute(args.text("rename")).string();
        return mel::Value(context.scene.fileName);
    }
    // Only announces the reference that the next statement makes.
    if (args.has("referenceDepthInfo") && !args.has("reference")) return mel::Value();
    const auto type = args.text("type", "mayaAscii");
    if (args.has("save")) {
        if (context.scene.fileName.empty())
            throw mel::Error("file: the scene has no name yet. Use -rename first.");
        if (type != "mayaAscii")
            throw mel::Error("file: scenes are saved as mayaAscii, not as '" + type + "'.");
        require(scene::saveScene(context, context.scene.fileName));
        return mel::Value(context.scene.fileName);
    }
    const std::string path = args.word(0);
    if (args.has("exportSelected")) {
        require(scene::exportSelected(context, path));
        return mel::Value(path);
    }
    if (args.has("exportAll")) {
        require(scene::saveScene(context, path));
        return mel::Value(path);
    }
    return readFile(context, args, path);
}

mel::Value fileInfo(CommandContext& context, const Args& args) {
    auto& info = context.scene.fileInfo;
    if (args.isQuery()) {
        mel::StringArray values;
        for (const auto& [key, value] : info) {
            if (args.wordCount() > 0 && args.word(0) != key) continue;
            if (args.wordCount() == 0) values.push_back(key);
            values.push_back(value);
        }
        return mel::Value(std::move(values));
    }
    if (args.has("remove")) {
        info.erase(args.text("remove"));
    } else {
        info[args.word(0)] = args.word(1);
    }
    return mel::Value();
}

/// Membership lines of old files: what they say stands in connections as well.
mel::Value relationship(CommandContext&, const Args&) { return mel::Value(); }

mel::Value lockNode(CommandContext& context, const Args& args) {
    mel::IntArray states;
    for (graph::Node* node : commands::operandNodes(context, args)) {
        if (!args.isQuery() && (args.has("lock") || !args.hasFlags()))
            node->isLocked = args.boolean("lock", true);
        states.push_back(node->isLocked ? 1 : 0);
    }
    return mel::Value(std::move(states));
}

const CommandSpec kCommands[] = {
    {"loadPlugin", "name...", {{"-quiet", "-qt"}}, loadPlugin},
    {"unloadPlugin", "name...", {{"-force", "-f"}}, unloadPlugin},
    {"pluginInfo",
     "[name]",
     {{"-loaded", "-l"},
      {"-name", "-n"},
      {"-path", "-p"},
      {"-vendor", "-vd"},
      {"-version", "-v"},
      {"-apiVersion", "-av"},
      {"-dependNode", "-dn"},
      {"-listPlugins", "-ls"}},
     pluginInfo,
     kAllModes},
    {"requires",
     "name version",
     {{"-nodeType", "-nodeType", {ArgKind::Text}, kAllModes, true},
      {"-dataType", "-dataType", {ArgKind::Text}, kAllModes, true}},
     requiresCommand},
    {"internalVar",
     "",
     {{"-userScriptDir", "-usd"},
      {"-userAppDir", "-uad"},
      {"-userPrefDir", "-upd"},
      {"-userShelfDir", "-ush"},
      {"-userTmpDir", "-utd"}},
     internalVar},
    {"about",
     "",
     {{"-batch", "-b"},
      {"-version", "-v"},
      {"-apiVersion", "-api"},
      {"-linux", "-li"},
      {"-linux64", "-l64"},
      {"-ntOS", "-nt"},
      {"-macOS", "-mac"},
      {"-operatingSystem", "-os"},
      {"-application", "-a"},
      {"-product", "-p"}},
     about},
    {"commandEcho", "", {{"-state", "-st", {ArgKind::Bool}}}, commandEcho, kAllModes},
    {"undoInfo", "", {{"-state", "-st", {ArgKind::Bool}}}, undoInfo, kAllModes},
    {"makePaintable",
     "node attribute",
     {{"-attrType", "-at", {ArgKind::Text}}, {"-shapeMode", "-sm", {ArgKind::Text}}},
     makePaintable,
     kAllModes},
    {"optionVar",
     "[name]",
     {{"-intValue", "-iv", {ArgKind::Text, ArgKind::Int}},
      {"-floatValue", "-fv", {ArgKind::Text, ArgKind::Float}},
      {"-stringValue", "-sv", {ArgKind::Text, ArgKind::Text}},
      {"-exists", "-ex", {ArgKind::Text}},
      {"-remove", "-rm", {ArgKind::Text}}},
     optionVar,
     kAllModes},
    {"python", "text", {}, python},
    {"help", "command", {}, help},
    {"currentTime", "[frame]", {{"-update", "-u", {ArgKind::Bool}}}, currentTime, kAllModes},
    {"playbackOptions",
     "",
     {{"-minTime", "-min", {ArgKind::Float}},
      {"-maxTime", "-max", {ArgKind::Float}},
      {"-animationStartTime", "-ast", {ArgKind::Float}},
      {"-animationEndTime", "-aet", {ArgKind::Float}}},
     playbackOptions,
     kAllModes},
    {"currentUnit",
     "",
     {{"-linear", "-l", {ArgKind::Text}},
      {"-angle", "-a", {ArgKind::Text}},
      {"-time", "-t", {ArgKind::Text}}},
     currentUnit,
     kAllModes},
    {"file",
     "[path]",
     {{"-open", "-o"},
      {"-save", "-s"},
      {"-newFile", "-new"},
      {"-force", "-f"},
      {"-import", "-i"},
      {"-exportSelected", "-es"},
      {"-exportAll", "-ea"},
      {"-type", "-typ", {ArgKind::Text}},
      {"-options", "-op", {ArgKind::Text}},
      {"-rename", "-rn", {ArgKind::Text}},
      {"-sceneName", "-sn"},
      {"-shortName", "-shn"},
      {"-list", "-l"},
      {"-expandName", "-exn"},
      {"-modified", "-mf"},
      {"-reference", "-r"},
      {"-referenceDepthInfo", "-rdi", {ArgKind::Int}},
      {"-namespace", "-ns", {ArgKind::Text}},
      {"-referenceNode", "-rfn", {ArgKind::Text}},
      {"-deferReference", "-dr", {ArgKind::Bool}}},
     file,
     kAllModes},
    {"fileInfo", "key value", {{"-remove", "-rm", {ArgKind::Text}}}, fileInfo, kAllModes},
    {"relationship", "kind node...", {{"-break", "-b", {ArgKind::Text}}}, relationship},
    {"lockNode",
     "node...",
     {{"-lock", "-l", {ArgKind::Bool}},
      {"-lockUnpublished", "-lu", {ArgKind::Bool}},
      {"-ignoreComponents", "-ic"}},
     lockNode,
     kAllModes},
};

} // namespace

void addSessionCommands(Session& session, CommandContext& context) {
    running = &session;
    options().clear();
    commands::addCommands(session.mel().commands(), context, kCommands);
}

} // namespace vesk
