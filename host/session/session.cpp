#include "host/session/session.h"

#include "host/api/impl/deformer_node.h"
#include "host/api/impl/session_hooks.h"
#include "host/commands/attribute_commands.h"
#include "host/commands/deformer_commands.h"
#include "host/commands/key_commands.h"
#include "host/commands/node_commands.h"
#include "host/commands/nurbs_commands.h"
#include "host/commands/poly_commands.h"
#include "host/commands/transform_commands.h"
#include "host/core/log.h"
#include "host/nodes/default_nodes.h"
#include "host/nodes/expression_node.h"
#include "host/nodes/register.h"
#include "host/scene/open.h"
#include "host/session/session_commands.h"

#include <maya/MTime.h>

#include <cstdlib>
#include <cstring>
#include <set>
#include <sstream>
#include <system_error>

namespace vesk {

namespace fs = std::filesystem;

/// The session as the API's globals see it.
class Session::Hooks : public api::Session {
  public:
    explicit Hooks(vesk::Session& session) : session_(session) {}

    graph::Scene& scene() override { return session_.scene(); }
    mel::Result runMel(const std::string& text, bool echo) override {
        if (echo || session_.echoesCommands()) log().info(text);
        auto result = session_.run(text);
        if (echo && result.ok && !result.value.isNone()) log().info("Result: " + result.value.display());
        return result;
    }
    void deferMel(const std::string& text) override { session_.mel().defer(text); }
    mel::Result sourceFile(const std::string& path) override { return session_.mel().source(path); }
    PythonResult runPython(const std::string& text, bool) override { return {session_.runPython(text), {}}; }
    MGlobal::MMayaState state() const override {
        return session_.isInteractive() ? MGlobal::kInteractive : MGlobal::kBatch;
    }

  private:
    vesk::Session& session_;
};

namespace {

/// The user's folder, then those of the list, which colons part; each once.
std::vector<std::string> scriptFolders(const std::string& user, const char* listed) {
    std::vector<std::string> folders;
    std::set<fs::path> known;
    const auto add = [&](const std::string& folder) {
        std::error_code error;
        const fs::path place = fs::weakly_canonical(folder + "/", error);
        if (!folder.empty() && known.insert(place).second) folders.push_back(folder);
    };
    add(user);
    std::istringstream list(listed ? listed : "");
    for (std::string folder; std::getline(list, folder, ':');)
        add(folder);
    return folders;
}

} // namespace

Session::Session(SessionOptions options) : options_(std::move(options)), folders_(options_.userDir) {
    graph::registerBaseTypes(types_);
    nodes::registerHostTypes(types_);
    nodes::registerExpression(types_, mel_);
    api::setPluginBase(MPxNode::kDeformerNode, api::pluginDeformers());
    if (const auto* base = types_.find("node")) api::bindBaseAttributes(*base);
    scene_ = std::make_unique<graph::Scene>(types_);
    nodes::createDefaultNodes(*scene_);
    MTime::setUIUnit(MTime::kFilm);
    plugins_ = std::make_unique<PluginManager>(types_, *scene_, options_.pluginPath);
    context_ =
        std::make_unique<commands::CommandContext>(commands::CommandContext{*scene_, mel_, {}, {}, {}});
    auto& table = mel_.commands();
    commands::addAttributeCommands(table, *context_);
    commands::addNodeCommands(table, *context_);
    commands::addListCommands(table, *context_);
    commands::addTransformCommands(table, *context_);
    commands::addPolyCommands(table, *context_);
    commands::addNurbsCommands(table, *context_);
    commands::addKeyCommands(table, *context_);
    commands::addDeformerCommands(table, *context_);
    addSessionCommands(*this, *context_);
    mel_.scriptPath() = scriptFolders(folders_.scripts(), std::getenv("MAYA_SCRIPT_PATH"));
    mel_.writeFolders() = {".", folders_.app(), folders_.temporary()};
    hooks_ = std::make_unique<Hooks>(*this);
    api::setSession(hooks_.get());
}

Session::~Session() {
    scene_->clear();
    api::setSession(nullptr);
}

mel::Result Session::run(std::string_view text, std::string fileName) {
    return mel_.run(text, std::move(fileName));
}

Outcome Session::runFile(const fs::path& file) {
    const std::string extension = file.extension().string();
    if (extension == ".mel") {
        std::error_code failure;
        if (!fs::exists(file, failure))
            return Outcome::fail("cannot open '" + file.string() + "': No such file or directory");
        const auto result = mel_.source(file.string());
        return result.ok ? Outcome() : Outcome::fail("'" + file.string() + "' stopped at an error.");
    }
    if (extension == ".ma") return scene::openScene(*context_, file);
    if (extension == ".obj" || extension == ".ply") return scene::importGeometry(*context_, file);
    return Outcome::fail("'" + file.string() + "': files end in .ma, .mel, .obj or .ply");
}

bool Session::runPython(std::string_view) {
    // Texts wait for an interpreter; one warning says so for all of them.
    if (!pythonWasAskedFor_) log().info("There is no Python in this build: Python texts are left out.");
    pythonWasAskedFor_ = true;
    return false;
}

} // namespace vesk
