#pragma once
// A host session: everything that lives between start-up and exit, and the interface that drives it.

#include "host/commands/command_spec.h"
#include "host/core/outcome.h"
#include "host/graph/scene.h"
#include "host/mel/interpreter.h"
#include "host/session/plugin_manager.h"
#include "host/session/user_folders.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

struct SessionOptions {
    /// Behave as a session with a user interface does (shelf, paintable), still without a window.
    bool interactive = false;
    /// Holds scripts, preferences and temporary files; empty: a temporary folder that goes with the session.
    std::filesystem::path userDir;
    /// Folders that `loadPlugin NAME` looks in.
    std::vector<std::filesystem::path> pluginPath;
};

/// There is one session in a process at a time: the API's globals answer for it.
class Session {
  public:
    explicit Session(SessionOptions options = {});
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool isInteractive() const { return options_.interactive; }
    graph::TypeRegistry& types() { return types_; }
    graph::Scene& scene() { return *scene_; }
    mel::Machine& mel() { return mel_; }
    PluginManager& plugins() { return *plugins_; }
    const UserFolders& folders() const { return folders_; }

    /// Runs MEL text at top level. Errors are on the log and in the result.
    mel::Result run(std::string_view text, std::string fileName = {});
    /// By the file's extension: `.mel` is run, `.ma` is opened as the scene, `.obj` and `.ply` are imported.
    Outcome runFile(const std::filesystem::path& file);
    /// Python texts wait for an interpreter; until there is one they are refused, once with a warning.
    bool runPython(std::string_view text);

    /// `commandEcho`: every command that the API is given is shown.
    bool echoesCommands() const { return echoesCommands_; }
    void setEchoesCommands(bool echo) { echoesCommands_ = echo; }

  private:
    class Hooks;

    SessionOptions options_;
    UserFolders folders_;
    graph::TypeRegistry types_;
    std::unique_ptr<graph::Scene> scene_;
    mel::Machine mel_;
    std::unique_ptr<commands::CommandContext> context_;
    std::unique_ptr<PluginManager> plugins_;
    std::unique_ptr<Hooks> hooks_;
    bool pythonWasAskedFor_ = false;
    bool echoesCommands_ = false;
};

} // namespace vesk
