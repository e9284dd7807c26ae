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
                {"getAttr dustShape.pos0", "0 1 2 3 4 5.5"},
                {"getAttr plaster.c", "0.75 0.5 0.25"},
                {"connectionInfo -sfd plasterSG.ss", "plaster.outColor"},
                {"listConnections -s 0 -d 1 plasterSG.pa", "renderPartition"},
                {"getAttr defaultRenderGlobals.ren", "mayaSoftware"},
            },
            when);
        roundTrip();
    }
    const std::string text = contentOf(folder / "scene.ma");
    EXPECT_EQ(text.find("\".tmp\" 7"), std::string::npos) << "not storable";
    for (const char* geometry :
         {"\"nurbsCurve\"\n\t\t3 1 0 no 3\n\t\t6 0 0 0 1 1 1\n\t\t4\n\t\t0 0 0\n\t\t1 2 0\n",
          "\n\t\t4\n\t\t-0.5 0 0.5\n\t\t-0.5 0 -0.5\n\t\t0.5 0 0.5\n\t\t0.5 0.75 -0.5"}) {
        EXPECT_NE(text.find(geometry), std::string::npos) << geometry;
    }
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

// --- words
// ---------------------------------------------------------------------------------------------------

TEST(TextWords, TellsNumbersTextsAndFlagsApart) {
    using commands::WordKind;
    TextWords words(" -type \"a \\\"q\\\"\\n\" -1.5e2 bare -inf yes \"7\"");
    EXPECT_EQ(words.peek(), WordKind::Flag);
    EXPECT_EQ(words.text(), "-type");
    EXPECT_EQ(words.peek(), WordKind::Text);
    EXPECT_EQ(words.text(), "a \"q\"\n");
    EXPECT_EQ(words.peek(), WordKind::Number);
    EXPECT_EQ(words.asWritten(), "-1.5e2");
    EXPECT_EQ(words.peek(), WordKind::Text);
    EXPECT_EQ(words.text(), "bare");
    EXPECT_EQ(words.peek(), WordKind::Number);
    EXPECT_EQ(words.text(), "-inf");
    double numbers[3] = {};
    EXPECT_EQ(words.numbersAhead(), 2U);
    EXPECT_EQ(words.numbers(numbers, 3), 2U) << "a quoted number counts";
    EXPECT_EQ(numbers[0] + numbers[1], 8);
    EXPECT_EQ(words.peek(), WordKind::End);
    EXPECT_EQ(words.text(), "");
}

TEST(TextWords, TakesListsOfNumbers) {
    TextWords words("1 2,{3}\r\n\t// 9 9\n +4 on x");
    double numbers[8] = {};
    EXPECT_EQ(words.numbersAhead(), 5U);
    EXPECT_EQ(words.numbers(numbers, 8), 5U);
    EXPECT_EQ(Texts({std::to_string(numbers[2]), std::to_string(numbers[3]), std::to_string(numbers[4])}),
              Texts({std::to_string(3.0), std::to_string(4.0), std::to_string(1.0)}));
    EXPECT_EQ(words.text(), "x");
    int whole[4] = {};
    EXPECT_EQ(TextWords("2147483648 -1.9 -1e400 0.5").numbers(whole, 4), 4U);
    EXPECT_EQ(whole[0], std::numeric_limits<int>::max());
    EXPECT_EQ(whole[1], -1);
    EXPECT_EQ(whole[2], std::numeric_limits<int>::min());
    EXPECT_EQ(whole[3], 0);
    float single = 1;
    EXPECT_EQ(TextWords("1e-60").numbers(&single, 1), 1U);
    EXPECT_EQ(single, 0);
    EXPECT_EQ(TextWords("1.2.3").numbers(&single, 1), 0U);
    EXPECT_EQ(TextWords("\"open").text(), "open");
}

// --- damage
// --------------------------------------------------------------------------------------------------

constexpr std::string_view kSmall = "//Maya ASCII 2012 scene\n"
                                    "requires maya \"2012\";\n"
                                    "createNode transform -n \"a\";\n"
                                    "\tsetAttr \".t\" -type \"double3\" 1 2 3 ;\n"
                                    "createNode mesh -n \"aShape\" -p \"a\";\n"
                                    "\tsetAttr -s 3 \".vt[0:2]\"  0 0 0 1 0 0 0 1 0;\n"
                                    "\tsetAttr -s 3 \".ed[0:2]\"  0 1 1 1 2 1 2 0 1;\n"
                                    "\tsetAttr \".fc[0]\" -type \"polyFaces\" f 3 0 1 2;\n"
                                    "createNode network -n \"n\";\n"
                                    "\taddAttr -ln \"w\" -at \"double\";\n"
                                    "connectAttr \"a.tx\" \"n.w\";\n";

TEST_F(SceneTest, LineEndsBordersAndComments) {
    std::string text = "\xEF\xBB\xBF";
    for (const char c : kSmall)
        text += c == '\n' ? "\r\n" : std::string(1, c);
    text +=
        "/* createNode transform -n \"no\";\n */ // setAttr \"a.tx\" 9;\ncreateNode transform -n \"last\";";
    EXPECT_EQ(openText(text), "");
    expectAnswers(
        {{"getAttr n.w", "1"}, {"objExists no", "0"}, {"objExists last", "1"}, {"polyEvaluate -v a", "3"}},
        "CRLF");
    EXPECT_EQ(openText(""), "");
    EXPECT_EQ(mel("objExists a"), "0") << "an empty file is an empty scene";
}

TEST_F(SceneTest, CutOffAnywhere) {
    const std::size_t header = kSmall.find('\n');
    for (std::size_t length = 0; length < kSmall.size(); ++length) {
        const auto text = kSmall.substr(0, length);
        const auto last = text.find_last_not_of(" \n\t");
        const bool isWhole = (length <= header && length != 1) || last == header - 1 || text[last] == ';';
        const std::string error = openText(text);
        EXPECT_EQ(error.empty(), isWhole) << length << ": " << error;
        EXPECT_EQ(error.find("the file ends inside the statement") == std::string::npos, isWhole) << error;
        EXPECT_EQ(complaints(), Texts{}) << length;
    }
    EXPECT_NE(openText("createNode transform; /* open").find("ends inside a comment"), std::string::npos);
    EXPECT_NE(openText("createNode transform -n \"x;").find("line 1"), std::string::npos);
}

TEST_F(SceneTest, JunkBytesNeverHurtTheSession) {
    for (const char junk : {'\0', '"', '{', '9'}) {
        for (std::size_t at = 0; at < kSmall.size(); ++at) {
            std::string text(kSmall);
            text[at] = junk;
            (void)openText(text);
            // Whatever shape came of it can be evaluated and saved.
            mel("polyEvaluate -v `ls -type mesh`;");
            (void)log().take();
        }
    }
    EXPECT_NE(openText(std::string("\x7F"
                                   "ELF\x01\0\0",
                                   7))
                  .find("it is not a text"),
              std::string::npos);
    ASSERT_EQ(openText(kSmall), "");
    roundTrip();
}

TEST_F(SceneTest, LinesThatCannotBeReadAreNamedAndTheRestIsRead) {
    const char* const rows[] = {
        "connectAttr \"a.ty\" \"n.w\";",
        "connectAttr \"n.w\" \"n.w\";",
        "setAttr \"a.nope\" 1;",
        "setAttr \"nobody.tx\" 1;",
        "setAttr \"a.tx\" one;",
        "setAttr \"a.t\" -type \"double3\" 1 2;",
        "setAttr \"a.t\" -type \"double3\" 1 2 3 4;",
        "setAttr \"aShape.vt[0:9]\" 1 2 3;",
        "setAttr \"aShape.vt[0:2000000000]\" 1 2 3;",
        "setAttr \"aShape.vt[2:1]\" 1 2 3;",
        "setAttr \"aShape.fc[1]\" -type \"polyFaces\" f 2000000000 0 1 2;",
        "setAttr \"aShape.fc[1]\" -type \"polyFaces\" g 3 0 1 2;",
        "setAttr \"aShape.fc[1:4]\" -type \"polyFaces\" f 3 0 1 2;",
        "setAttr \"n.w\" -type \"doubleArray\" 4000000000 1;",
        "createNode transform -n \"x\" -p \"nobody\";",
        "createNode;",
        "select -ne :nobody;",
        "frobnicate -x 3;",
    };
    for (const std::string row : rows) {
        EXPECT_NE(openText(std::string(kSmall) + row + "\ncreateNode transform -n \"after\";")
                      .find("1 statement(s)"),
                  std::string::npos)
            << row;
        const Texts told = complaints();
        ASSERT_EQ(told.size(), 1U) << row;
        EXPECT_NE(told[0].find("line 12"), std::string::npos) << told[0];
        expectAnswers({{"objExists after", "1"},
                       {"connectionInfo -sfd n.w", "a.translateX"},
                       {"polyEvaluate -v a", "3"}},
                      row.c_str());
    }
    // A line that means the node before it does not land on another one.
    EXPECT_NE(openText("createNode transform -n \"p\";\ncreateNode transform -n \"x\" -p \"nobody\";\n"
                       "\tsetAttr \".tx\" 5;\n")
                  .find("2 statement(s)"),
              std::string::npos);
    EXPECT_EQ(complaints().size(), 2U);
    EXPECT_EQ(mel("getAttr p.tx"), "0");
    EXPECT_NE(open(folder / "missing.ma"), "");
    EXPECT_EQ(mel("objExists p"), "1") << "the scene that is there stays";
}

// --- writing
// -------------------------------------------------------------------------------------------------

TEST_F(SceneTest, WhatScriptsMadeComesBack) {
    ASSERT_EQ(mel(R"(
        polyCube -n box -ch 0; polyPlane -n live;
        createNode network -n n;
        addAttr -ln whole -sn wh -at long -min -5 -max 5 -dv 2 n;
        addAttr -ln names -dt stringArray n;
        addAttr -ln sparse -at double -multi n;
        addAttr -ln big -at matrix n;
        addAttr -ln pair -at compound -nc 2 n;
        addAttr -ln left -at doubleAngle -parent pair n;
        addAttr -ln right -dt string -parent pair n;
        setAttr n.whole -3; setAttr n.names -type stringArray 2 "a b" "c\"d";
        setAttr n.sparse[7] 0.1; setAttr n.sparse[2] 0;
        setAttr n.left 90; setAttr n.right -type "string" "x\\y";
        setAttr -lock 1 n.pair; aliasAttr seventh n.sparse[7];
        spaceLocator -n here; instance -n again box; parent here box;
        setAttr box.visibility 0; connectAttr n.whole live.ty;
        group -n all box live; 1;)"),
              "1");
    for (const char* when : {"as made", "written and read back"}) {
        expectAnswers(
            {
                {"getAttr n.whole", "-3"},
                {"attributeQuery -n n -min whole", "-5"},
                {"getAttr n.names", "a b c\"d"},
                {"getAttr -mi n.sparse", "2 7"},
                {"getAttr n.seventh", "0.1"},
                {"getAttr n.left", "90"},
                {"getAttr n.right", "x\\y"},
                {"getAttr -lock n.pair", "1"},
                {"getAttr live.ty", "-3"},
                {"listRelatives -ap boxShape", "box again"},
                {"listRelatives -p here", "box"},
                {"polyEvaluate -v boxShape", "8"},
                {"polyEvaluate -f liveShape", "100"},
                {"getAttr box.v", "0"},
            },
            when);
        roundTrip();
    }
    mel("select live; file -es -type mayaAscii \"" + (folder / "part.ma").string() + "\";");
    ASSERT_EQ(open(folder / "part.ma"), "");
    expectAnswers({{"objExists box", "0"}, {"objExists live", "1"}}, "the selected only");
}

TEST_F(SceneTest, AFileThatCannotBeWrittenIsToldOf) {
    const std::string path = (folder / "no/such/folder/x.ma").string();
    EXPECT_NE(mel("file -rename \"" + path + "\"; file -s;").find(path), std::string::npos);
    EXPECT_EQ(complaints().size(), 1U);
    EXPECT_FALSE(fs::exists(folder / "no"));
}

// --- geometry and arrays, out and in
// -------------------------------------------------------------------------

TEST_F(SceneTest, ExportsEachKindAndLeavesNothingBehindOnFailure) {
    ASSERT_EQ(
        mel("polyCube -n box; createNode network -n n; addAttr -ln d -dt doubleArray n; addAttr -ln v -dt "
            "vectorArray n; setAttr n.d -type doubleArray 2 0.5 1; setAttr n.v -type vectorArray 1 1 2 3; "
            "1;"),
        "1");
    const auto exported = [&](const char* file, const char* plugs) {
        return exportPlug(session->scene(), folder / file, plugs).error;
    };
    for (const char* file : {"m.obj", "m.ply", "m.ma", "m.npy"})
        EXPECT_EQ(exported(file, "boxShape.outMesh"), "") << file;
    for (const char* file : {"m.obj", "m.ply"}) {
        mel("file -f -new;");
        EXPECT_EQ(open(folder / file), "") << file;
        EXPECT_EQ(mel("polyEvaluate -v m"), "8") << file;
        EXPECT_EQ(mel("polyEvaluate -f m"), "6") << file;
        EXPECT_EQ(mel("listRelatives -s m"), "mShape") << file;
    }
    EXPECT_EQ(open(folder / "m.ma"), "");
    EXPECT_EQ(mel("polyEvaluate -f m"), "6");

    ASSERT_EQ(
        openText(
            "createNode network -n \"n\";\naddAttr -ln \"d\" -dt \"doubleArray\";\naddAttr -ln \"v\" -dt "
            "\"vectorArray\";\nsetAttr \".d\" -type \"doubleArray\" 2 0.5 1;\nsetAttr \".v\" -type "
            "\"vectorArray\" 1 1 2 3;"),
        "");
    EXPECT_EQ(exported("a.csv", "n.d,n.v"), "");
    EXPECT_EQ(contentOf(folder / "a.csv"), "n.d,n.v.x,n.v.y,n.v.z\n0.5,1,2,3\n1,,,\n");
    EXPECT_EQ(exported("a.json", "n.d,n.v"), "");
    EXPECT_EQ(exported("a.npy", "n.d"), "");
    const std::string npy = contentOf(folder / "a.npy");
    ASSERT_GT(npy.size(), 16U);
    const double expected[] = {0.5, 1};
    EXPECT_EQ(npy.substr(npy.size() - 16), std::string(reinterpret_cast<const char*>(expected), 16));
    EXPECT_EQ(exported("a.ma", "n.v"), "");
    EXPECT_EQ(open(folder / "a.ma"), "");
    EXPECT_EQ(mel("getAttr a.v"), "1 2 3");

    for (const auto& [file, plugs] : std::initializer_list<std::pair<const char*, const char*>>{
             {"bad.obj", "a.v"},
             {"bad.npy", "a.v,a.v"},
             {"bad.csv", "a.nope"},
             {"bad.csv", "nobody.v"},
             {"bad.csv", ""},
             {"bad.xyz", "a.v"},
             {"no/folder.csv", "a.v"},
         }) {
        EXPECT_NE(exported(file, plugs).find(file), std::string::npos) << file << " " << plugs;
        EXPECT_FALSE(fs::exists(folder / file)) << file << " " << plugs;
    }
    for (const auto& entry : fs::directory_iterator(folder)) {
        EXPECT_NE(entry.path().filename().string().front(), '.') << "a temporary stayed";
    }
}

TEST_F(SceneTest, GeometryThatCannotBeReadAddsNothing) {
    const std::size_t before = session->scene().nodeCount();
    EXPECT_NE(open(write("bad.obj", "v 0 0 0\nf 1 2 3\n")).find("bad.obj"), std::string::npos);
    EXPECT_NE(open(write("bad.ply", "ply\nformat ascii 1.0\n")).find("bad.ply"), std::string::npos);
    EXPECT_EQ(session->scene().nodeCount(), before);
}

} // namespace
} // namespace vesk::scene
