// Scenes as users' hosts save them: read, written back, damaged; geometry in and out.

#include "host/scene/ascii_reader.h"
#include "host/scene/export.h"
#include "host/scene/text_words.h"
#include "host/session/session_fixture.h"

#include <limits>

namespace vesk::scene {
namespace {

namespace fs = std::filesystem;

const fs::path kScenes = fs::path(VESK_SOURCE_DIR) / "host/scene/test_scenes";

class SceneTest : public SessionTest {
  protected:
    std::string open(const fs::path& path) { return session->runFile(path).error; }
    /// Opens a text as a scene.
    std::string openText(std::string_view text) { return open(write("text.ma", text)); }
    std::string save(const std::string& name) {
        EXPECT_EQ(mel("file -f -rename \"" + (folder / name).string() + "\"; file -s -type mayaAscii;")
                      .substr(0, 5),
                  folder.string().substr(0, 5));
        return contentOf(folder / name);
    }
    /// Writes, reads, writes; the two texts must be the same but for their names. The scene is the one read.
    std::string roundTrip() {
        fs::create_directories(folder / "b");
        const std::string first = save("scene.ma");
        EXPECT_EQ(open(folder / "scene.ma"), "");
        EXPECT_EQ(save("b/scene.ma"), first);
        return first;
    }
    /// Every check by its command and answer.
    void expectAnswers(std::initializer_list<std::pair<const char*, const char*>> rows, const char* when) {
        for (const auto& [command, answer] : rows)
            EXPECT_EQ(mel(command), answer) << command << ", " << when;
    }
};

// --- users' scenes
// -------------------------------------------------------------------------------------------

TEST_F(SceneTest, ShapesOfTheHostsOwnVersion) {
    ASSERT_EQ(open(kScenes / "shapes.ma"), "");
    for (const char* when : {"as read", "written and read back"}) {
        expectAnswers(
            {
                {"getAttr persp.t", "12 9 -4.5"},
                {"getAttr persp.ry", "405"},
                {"getAttr perspShape.fl", "35"},
                {"getAttr topShape.o", "1"},
                {"fileInfo -q osv", "Linux \"x86_64\""},
                {"getAttr house.tall", "4.25"},
                {"getAttr -asString house.kind", "Glass"},
                {"getAttr house.notes", "two\nlines, a \"quote\" and a back\\slash"},
                {"getAttr house.paint", "0.25 0.5 1"},
                {"attributeQuery -n house -max hgt", "10"},
                {"getAttr house.ty", "3"},
                {"getAttr -lock house.tz", "1"},
                {"getAttr -lock house.ty", "0"},
                {"getAttr -lock house.s", "1"},
                {"getAttr house.s", "2 2 2"},
                {"getAttr -keyable house.v", "0"},
                {"getAttr -channelBox house.rx", "1"},
                {"listConnections -s 1 -d 0 house.links", "wire second"},
                {"getAttr -lock house.tx", "1"},
                {"currentTime 12; getAttr house.side", "5"},
                {"currentTime 24; getAttr house.tx", "-1.5"},
                {"listRelatives -ap houseShape", "house second"},
                {"getAttr \"houseShape.iog[0].og[3].gcl\"", "f[2] f[4:5]"},
                {"polyEvaluate -v houseShape", "8"},
                {"getAttr \"houseShape.pt[6]\"", "0.5 0 0"},
                {"polyEvaluate -f houseShape", "6"},
                {"size(`ls -fl \"wireShape.cv[*]\"`)", "4"},
                {"getAttr dustShape.pos0", "0 1 2 3 4 5.5"},
                {"getAttr plaster.c", "0.75 0.5 0.25"},
                {"connectionInfo -sfd plasterSG.ss", "plaster.outColor"},
                {"listConnections -s 0 -d 1 plasterSG.pa", "renderPartition"},
                {"getAttr defaultRenderGlobals.ren", "mayaSoftware"},
            },
            when);
        roundTrip();
    }
    // What is no number of its own in the file is not in there either.
    EXPECT_EQ(contentOf(folder / "scene.ma").find("\".tmp\" 7"), std::string::npos);
}

TEST_F(SceneTest, ScenesOfLaterVersions) {
    ASSERT_EQ(open(kScenes / "later.ma"), "");
    EXPECT_EQ(
        complaints(),
        (Texts{"warning: The scene requires \"marble\", which is not there: Plug-in 'marble' was not found.",
               "warning: Unknown object type: marbleShader. Its nodes keep what the file says of them and do "
               "nothing.",
               "warning: Unknown object type: marbleOptions. Its nodes keep what the file says of them and "
               "do nothing.",
               "warning: Unknown object type: skinCluster. Its nodes keep what the file says of them and do "
               "nothing."}));
    for (const char* when : {"as read", "written and read back"}) {
        expectAnswers(
            {
                {"currentUnit -q -t", "ntsc"},
                {"getAttr rig:root.currentUVSet", "map1"},
                {"lockNode -q rig:root", "1"},
                {"getAttr hip.joz", "90"},
                {"getAttr hip.bps", "0 1 0 0 -1 0 0 0 0 0 1 0 1.5 0 0 1"},
                {"getAttr -lock leg.tx", "1"},
                {"getAttr legShapeOrig.io", "1"},
                {"nodeType veins", "marbleShader"},
                {"getAttr veins.base", "0.25 0.5 0.75"},
                {"getAttr veins.amount", "0"},
                {"getAttr veins.quick", "1"},
                {"getAttr \"veins.ramp[1]\"", "1 0.5 3"},
                {"getAttr \"veins.layer[2].file\"", "C:\\maps\\vein.exr"},
                {"getAttr \"veins.layer[2].weights[1]\"", "0.25"},
                {"getAttr veins.seed", "42"},
                {"getAttr -lock veins.seed", "1"},
                {"getAttr veins.mine", "2.5"},
                {"connectionInfo -sfd veinsSG.ss", "veins.out"},
                {"connectionInfo -sfd veins.bump", "veins2.out"},
                {"connectionInfo -sfd veins2.in", "veins.bumpOut[3]"},
                {"listConnections marbleOptions.list", "veins veins2"},
                {"getAttr \"skinCluster1.wl[0].w[1]\"", "0.75"},
                {"getAttr \"skinCluster1.wl[2].w[1]\"", "1"},
                {"getAttr \"skinCluster1.pm[1]\"", "0 -1 0 0 1 0 0 0 0 0 1 0 -4 1.5 0 1"},
                {"connectionInfo -sfd legShape.i", "skinCluster1.og[0]"},
                {"getAttr hardwareRenderingGlobals.otfna", "NURBS Curves Polygons"},
                {"getAttr \"MayaNodeEditorSavedTabsInfo.tgi[0].ni[1].x\"", "-20"},
            },
            when);
        const std::string text = roundTrip();
        EXPECT_NE(text.find("requires \"marble\" \"3.1.0\";"), std::string::npos);
        EXPECT_NE(text.find("\".blob\" -type \"marbleData\" 3 \"a b\" Edge 1"), std::string::npos);
        EXPECT_EQ(complaints(), (Texts{"warning: The scene requires \"marble\", which is not there: Plug-in "
                                       "'marble' was not found."}))
            << "of each type it was said once";
    }
}

TEST_F(SceneTest, ReferencesAreToldOfAndTheRestIsRead) {
    ASSERT_EQ(open(kScenes / "references.ma"), "");
    const Texts told = complaints();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0], "warning: The reference to 'scenes/tree.ma' was not loaded.");
    expectAnswers({{"nodeType ground", "transform"}, {"nodeType treeRN", "reference"}}, "as read");
    EXPECT_NE(roundTrip().find("2 \"|tree:trunk\" \"translate\" \" -type \\\"double3\\\" 1 2 3\""),
              std::string::npos);
}

} // namespace
} // namespace vesk::scene
