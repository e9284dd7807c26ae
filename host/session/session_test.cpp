// Sessions and plug-ins: what loads, what is refused and leaves no trace, and what loading the product does.

#include "host/api/impl/session_hooks.h"
#include "host/session/session_fixture.h"

#include <array>
#include <cstdio>
#include <memory>

namespace vesk {
namespace {

namespace fs = std::filesystem;

const fs::path kProbes = fs::path(VESK_BINARY_DIR) / "test-plug-ins";
const fs::path kProduct = fs::path(VESK_BINARY_DIR) / "plug-ins/Vesk.so";

std::string probe(const char* name) { return (kProbes / (std::string(name) + ".so")).string(); }

class PluginTest : public SessionTest {
  protected:
    std::string load(const std::string& path) { return session->plugins().load(path).error; }
    /// Loads the plug-in that works and has it compute.
    void expectWorkingSession() {
        ASSERT_EQ(load(probe("good")), "");
        EXPECT_EQ(mel("createNode tally -n works"), "works");
        EXPECT_EQ(mel("setAttr works.amount 4; getAttr works.twice"), "8");
    }
};

TEST_F(PluginTest, LibrariesThatCannotBeUsedAreRefusedAndTheSessionGoesOn) {
    const std::string text = write("text.so", "just a text\n").string();
    const std::pair<std::string, std::string> rows[] = {
        {probe("noVersion"),
         "Plug-in '" + probe("noVersion") + "' is no plug-in: it has no symbol MApiVersion."},
        {probe("wrongVersion"),
         "Plug-in '" + probe("wrongVersion") + "' was made for API version 201600, not 201217."},
        {probe("throws"), "initializePlugin of plug-in 'throws' failed: it threw \"out of luck\"."},
        {probe("failing"), "initializePlugin of plug-in 'failing' failed: "},
        {text, "Plug-in '" + text + "' cannot be loaded: "},
        {"nowhere", "Plug-in 'nowhere' was not found."},
        {folder.string(), "Plug-in '" + folder.string() + "' was not found."},
        {"", "Plug-in '' was not found."},
    };
    for (const auto& [path, message] : rows) {
        EXPECT_EQ(load(path).substr(0, message.size()), message);
        EXPECT_FALSE(session->plugins().isLoaded(fs::path(path).stem().string())) << path;
    }
    EXPECT_EQ(complaints(),
              Texts{"error: Cannot register node type 'tally': its initialize function failed."});
    EXPECT_EQ(session->types().find("tally"), nullptr);
    EXPECT_EQ(session->plugins().loadedNames(), Texts{});
    expectWorkingSession();
    // Its type's id is taken now.
    EXPECT_NE(load(probe("duplicate")), "");
    EXPECT_EQ(complaints(), Texts{"error: Cannot register node type 'tallyToo': its id is that of 'tally'."});
    EXPECT_EQ(session->types().find("tallyToo"), nullptr);
    EXPECT_EQ(mel("loadPlugin nowhere; print unreached"), "error: Plug-in 'nowhere' was not found.");
    EXPECT_EQ(complaints().size(), 1U);
}

TEST_F(PluginTest, LoadingAndUnloadingTwice) {
    session->plugins().searchPath().push_back(kProbes);
    for (int turn = 0; turn < 2; ++turn) {
        EXPECT_EQ(mel("loadPlugin good"), "good");
        EXPECT_EQ(mel("loadPlugin \"" + probe("good") + "\""), "good") << "once more does nothing";
        EXPECT_EQ(mel("pluginInfo -q -vendor good"), "Probe works");
        EXPECT_EQ(mel("pluginInfo -q -version good"), "2.5");
        EXPECT_EQ(mel("pluginInfo -q -apiVersion good"), "201217");
        EXPECT_EQ(mel("pluginInfo -q -dependNode good"), "tally");
        EXPECT_EQ(mel("pluginInfo -q -listPlugins"), "good");
        EXPECT_EQ(mel("createNode tally -n t; setAttr t.am 3; getAttr t.tw"), "6");
        EXPECT_EQ(mel("delete t; unloadPlugin good"), "good");
        EXPECT_EQ(mel("pluginInfo -q -loaded good"), "0");
        EXPECT_EQ(mel("createNode tally"), "error: Unknown object type: tally");
        EXPECT_EQ(mel("unloadPlugin good"), "error: Plug-in 'good' is not loaded.");
        EXPECT_EQ(complaints().size(), 2U);
    }
}

TEST_F(PluginTest, UnloadingWithNodesInUse) {
    ASSERT_EQ(load(probe("good")), "");
    mel("createNode tally -n a; createNode tally -n b; setAttr a.amount 4; connectAttr a.twice b.amount;");
    EXPECT_EQ(mel("getAttr b.twice"), "16");
    EXPECT_EQ(session->plugins().unload("good").error,
              "Plug-in 'good' is in use by node 'a'. Use -force to unload it all the same.");
    EXPECT_EQ(mel("setAttr a.amount 5; getAttr b.twice"), "20") << "nothing has happened";

    EXPECT_EQ(mel("unloadPlugin -f good"), "good");
    EXPECT_EQ(session->scene().find("a")->apiType(), MFn::kUnknown);
    EXPECT_EQ(mel("getAttr a.amount"), "5");
    EXPECT_EQ(mel("connectionInfo -sfd b.amount"), "a.twice");
    mel("setAttr a.amount 7;");
    EXPECT_EQ(mel("getAttr b.twice"), "20") << "nobody computes it any more";

    // Through a file they come back as nodes of an unknown type, and as themselves when the plug-in is there.
    const std::string path = (folder / "orphans.ma").string();
    mel("file -rename \"" + path + "\"; file -s;");
    const std::string reopen = "file -o \"" + path + "\";";
    mel(reopen);
    EXPECT_EQ(
        complaints(),
        (Texts{"warning: The scene requires \"good\", which is not there: Plug-in 'good' was not found.",
               "warning: Unknown object type: tally. Its nodes keep what the file says of them and do "
               "nothing."}));
    EXPECT_EQ(mel("getAttr a.am"), "7");
    EXPECT_EQ(mel("connectionInfo -sfd b.am"), "a.tw");
    ASSERT_EQ(load(probe("good")), "") << "placeholders do not keep the name";
    mel(reopen);
    EXPECT_EQ(mel("getAttr b.twice"), "28");
}

// --- the product
// ---------------------------------------------------------------------------------------------

/// Stands between the API and the session, and notes what the plug-in asks for.
class Recorder : public api::Session {
  public:
    Recorder() : inner_(*api::session()) { api::setSession(this); }
    ~Recorder() override { api::setSession(&inner_); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    graph::Scene& scene() override { return inner_.scene(); }
    mel::Result runMel(const std::string& text, bool echo) override {
        if (text.starts_with("makePaintable")) paintable.push_back(text);
        return inner_.runMel(text, echo);
    }
    void deferMel(const std::string& text) override { inner_.deferMel(text); }
    mel::Result sourceFile(const std::string& path) override { return inner_.sourceFile(path); }
    PythonResult runPython(const std::string& text, bool echo) override {
        if (text.find("updateShelfMenus()") != std::string::npos && text.size() < 80) ++shelfUpdates;
        return inner_.runPython(text, echo);
    }
    MGlobal::MMayaState state() const override { return inner_.state(); }

    Texts paintable;
    int shelfUpdates = 0;

  private:
    api::Session& inner_;
};

TEST_F(PluginTest, ShelvesAndPaintingAreForInteractiveSessions) {
    for (const bool interactive : {false, true}) {
        restart({.interactive = interactive, .userDir = {}, .pluginPath = {}});
        Recorder recorder;
        ASSERT_EQ(load(kProduct.string()), "");
        EXPECT_EQ(complaints(), Texts{});
        EXPECT_EQ(recorder.paintable.size(), interactive ? 6U : 0U);
        EXPECT_EQ(recorder.shelfUpdates, interactive ? 1 : 0);
        EXPECT_EQ(mel("about -batch"), interactive ? "0" : "1");
    }
}

TEST_F(PluginTest, LoadingShowsTheBannerAndWritesTheSideFiles) {
    restart({.interactive = false, .userDir = folder / "user", .pluginPath = {kProduct.parent_path()}});
    const fs::path scripts = mel("internalVar -userScriptDir");
    EXPECT_EQ(scripts, folder / "user/scripts/");
    std::ofstream(scripts / "icons.cfg") << "an old one";
    ASSERT_EQ(load("Vesk"), "");
    Texts lines;
    for (const auto& entry : log().take()) {
        EXPECT_EQ(entry.level, LogLevel::Info) << entry.text;
        lines.push_back(entry.text);
    }
    ASSERT_EQ(lines.size(), 14U) << "the banner, and that there is no Python";
    for (const std::size_t empty : {0U, 5U, 12U})
        EXPECT_EQ(lines[empty], "");
    EXPECT_TRUE(lines[1].starts_with("Vesk (Jan 20 2013) "));
    EXPECT_EQ(lines[6], "Contributors:");
    for (std::size_t i = 7; i < 12; ++i) {
        EXPECT_TRUE(lines[i].starts_with("    ") && lines[i].size() > 4 && lines[i][4] != ' ') << lines[i];
    }
    for (const char* name : {"iconsDesigner.ui", "iconsDesigner.hlp", "icons.cfg", "slidersManager.hlp",
                             "displayDriverManager.hlp"}) {
        const std::string carried = contentOf(fs::path(VESK_SOURCE_DIR) / "scripts" / name);
        EXPECT_NE(carried, "") << name;
        EXPECT_EQ(contentOf(scripts / name), carried) << name;
    }
    EXPECT_EQ(mel("unloadPlugin Vesk"), "Vesk");
    for (const graph::NodeType* type : session->types().all())
        EXPECT_EQ(type->plugin, "") << type->name();
}

TEST(Product, ExportsItsThreeSymbolsAndNoOthers) {
    const std::string command = "nm -D --defined-only --format=posix '" + kProduct.string() + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    ASSERT_NE(pipe, nullptr);
    Texts names;
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe.get())) {
        const std::string text = line.data();
        names.push_back(text.substr(0, text.find(' ')));
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Texts{"MApiVersion", "initializePlugin", "uninitializePlugin"}));
}

} // namespace
} // namespace vesk
