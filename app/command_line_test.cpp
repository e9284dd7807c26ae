// The command as a user runs it: what it prints, what it writes, with which code it ends.

#include "app/options.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::app {
namespace {

namespace fs = std::filesystem;

struct Ended {
    int code = -1;
    std::string out, err;
};

class CommandLine : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "vesk-cli-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    fs::path file(const std::string& name, const std::string& content) const {
        std::ofstream(folder / name, std::ios::binary) << content;
        return folder / name;
    }
    std::string content(const std::string& name) const {
        std::ifstream stream(folder / name, std::ios::binary);
        std::stringstream all;
        all << stream.rdbuf();
        return all.str();
    }
    /// Runs the command inside the test's folder.
    Ended vesk(const std::string& arguments) const {
        const std::string err = (folder / "err.txt").string();
        const std::string line = "cd '" + folder.string() + "' && '" VESK_BINARY_DIR "/bin/vesk' " +
                                 arguments + " 2>'" + err + "' </dev/null";
        Ended ended;
        FILE* pipe = popen(line.c_str(), "r");
        std::array<char, 4096> buffer{};
        while (const std::size_t got = fread(buffer.data(), 1, buffer.size(), pipe))
            ended.out.append(buffer.data(), got);
        const int status = pclose(pipe);
        ended.code = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
        ended.err = content("err.txt");
        fs::remove(err);
        return ended;
    }
    void expectFailure(const std::string& arguments, int code, const std::string& message) const {
        const Ended ended = vesk(arguments);
        EXPECT_EQ(ended.code, code) << arguments << "\n" << ended.err;
        EXPECT_NE(ended.err.find(message), std::string::npos) << arguments << "\n" << ended.err;
    }

    fs::path folder;
};

constexpr const char* kCube =
    "polyCube; createNode pointAttributeToArray -n p;"
    "connectAttr pCubeShape1.worldMesh[0] p.inGeometry; setAttr p.pointPosition 1;\n";

TEST_F(CommandLine, GetsSetsAndExports) {
    file("cube.mel", kCube);
    const Ended ended =
        vesk("run cube.mel --set pCube1.translateX=2 --get p.outIdPP --get pCube1.translate --get "
             "p.prune --get pCubeShape1.outMesh --export ids.npy=p.outIdPP --export "
             "all.csv=p.outIdPP,p.outPositionPP");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, "[0, 1, 2, 3, 4, 5, 6, 7]\n[2, 0, 0]\ntrue\n"
                         "{\"mesh\": {\"vertices\": 8, \"edges\": 12, \"faces\": 6}}\n");
    EXPECT_EQ(content("all.csv").substr(0, 71),
              "p.outIdPP,p.outPositionPP.x,p.outPositionPP.y,p.outPositionPP.z\n0,1.5,-");
    EXPECT_EQ(content("ids.npy").substr(1, 5), "NUMPY");
    EXPECT_NE(ended.err.find("2 file(s) written"), std::string::npos);
}

TEST_F(CommandLine, FramesFillTheirNames) {
    file("move.mel", "polyCube; connectAttr time1.outTime pCube1.translateX;");
    const Ended ended = vesk(
        "run move.mel --frames 1-3x2,5 --get pCube1.translateX --export c.##.ply=pCubeShape1.worldMesh[0] "
        "--progress=openjd");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, "1\n3\n5\n");
    for (const char* name : {"c.01.ply", "c.03.ply", "c.05.ply"})
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    EXPECT_NE(ended.err.find("openjd_progress: 100.0\n"), std::string::npos) << ended.err;
    expectFailure("run move.mel --frames 1-2 --export c.ply=pCubeShape1.worldMesh[0]", 1, "need a '#'");
    EXPECT_FALSE(fs::exists(folder / "c.ply"));
}

TEST_F(CommandLine, JsonTalk) {
    file("a.mel", "warning \"careful\"; polyCube;");
    const Ended ended = vesk("run a.mel --no-plugin --json --get pCube1.visibility");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "{\"plug\": \"pCube1.visibility\", \"value\": true}\n");
    EXPECT_NE(ended.err.find("{\"level\": \"warning\", \"text\": \"careful\"}"), std::string::npos)
        << ended.err;
}

TEST_F(CommandLine, BadInputNamesThePlaceAndEndsWithOne) {
    file("cube.mel", kCube);
    expectFailure("run missing.ma", 1, "missing.ma");
    expectFailure("run missing.mel", 1, "missing.mel");
    expectFailure("run cube.mel --get p.nope", 1, "--get 'p.nope'");
    expectFailure("run cube.mel --get nobody.tx", 1, "nobody.tx");
    expectFailure("run cube.mel --export x.ply=p.nope", 1, "p.nope");
    expectFailure("run cube.mel --export x.ply=p.outIdPP", 1, "carries no mesh");
    expectFailure("run cube.mel --export nowhere/x.npy=p.outIdPP", 1, "nowhere/x.npy");
    expectFailure("run cube.mel --export x.abc=p.outIdPP", 1, ".obj .ply .npy .json .csv or .ma");
    expectFailure("run cube.mel --set p.prune=maybe", 1, "p.prune");
    file("bad.mel", "polyCube;\nnoSuchCommand 1 2;\n");
    expectFailure("run bad.mel", 1, "line 2");
    file("flag.mel", "polyCube -zz 3;");
    expectFailure("run flag.mel", 1, "Invalid flag '-zz'");
    file("plugin.so", "this is no library");
    expectFailure("run cube.mel --plugin plugin.so", 1, "plugin.so");
    EXPECT_FALSE(fs::exists(folder / "x.ply"));
    EXPECT_FALSE(fs::exists(folder / "x.npy"));
}

TEST_F(CommandLine, ScriptsAreFoundByNameAndWriteWhereTheyMay) {
    fs::create_directories(folder / "listed");
    fs::create_directories(folder / "user/scripts");
    file("listed/greet.mel", "print(\"run \"); global proc greet() { print(\"listed\"); }");
    file("main.mel", "greet; greet;");
    setenv("MAYA_SCRIPT_PATH", "nowhere::listed:./listed/", 1);
    EXPECT_EQ(vesk("run main.mel --no-plugin --user-dir user").out, "run listedlisted");
    file("user/scripts/greet.mel", "global proc greet() { print(\"user \"); }");
    EXPECT_EQ(vesk("run main.mel --no-plugin --user-dir user").out, "user user ");
    unsetenv("MAYA_SCRIPT_PATH");
    file("write.mel",
         "int $f = `fopen \"out.txt\" \"w\"`; fprint $f \"text\"; fclose $f; fopen \"../out.txt\" \"w\";");
    expectFailure("run write.mel --no-plugin", 1, "not \"../out.txt\"");
    EXPECT_EQ(content("out.txt"), "text");
}

TEST_F(CommandLine, AnInterruptEndsAnEndlessScript) {
    file("endless.mel", "while (1) catchQuiet(eval(\"while (1);\"));");
    const std::string line = "cd '" + folder.string() +
                             "' && timeout --preserve-status -s INT 0.5 '" VESK_BINARY_DIR
                             "/bin/vesk' run endless.mel --no-plugin 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), kInterrupted);
}

TEST_F(CommandLine, LimitsOfScriptsAreSetByName) {
    file("deep.mel", "proc int down(int $n) { return $n ? 1 + down($n - 1) : 0; }\nprint(down(2000));");
    expectFailure("run deep.mel --no-plugin", 1, "more than 1000 deep (--mel-limit recursion=N raises this)");
    EXPECT_EQ(vesk("run deep.mel --no-plugin --mel-limit recursion=2002").out, "2000");
    expectFailure("run deep.mel --mel-limit depth=5", 2, "no limit \"depth\" among recursion nesting array");
    expectFailure("run deep.mel --mel-limit array=0", 2, "a whole number above 0");
    expectFailure("run deep.mel --mel-limit array=3000000000", 2, "can be raised to 2147483647");
    // Each line of an error but the first is a comment of its own.
    file("bad.mel", "proc f() { nope; }\nf;");
    expectFailure("run bad.mel --no-plugin", 1,
                  "//   1:12 | proc f() { nope; }\n//        |            ^\n//   in f, ");
    expectFailure("run bad.mel --no-plugin --json", 1, "\"detail\": \"1:12 | proc f() { nope; }\\n");
}

TEST_F(CommandLine, ScenesThatAreBroken) {
    const std::string head =
        "//Maya ASCII 2012 scene\ncreateNode transform -n \"a\";\n\tsetAttr \".tx\" 3;\n";
    file("good.ma",
         "\xEF\xBB\xBF//Maya ASCII 2012 scene\r\ncreateNode transform -n \"a\";\r\n\tsetAttr \".tx\" 3;\r\n");
    EXPECT_EQ(vesk("run good.ma --get a.tx").out, "3\n") << "CRLF and BOM";
    file("cut.ma", head + "createNode transform -n \"b");
    expectFailure("run cut.ma --get a.tx", 1, "line 4");
    file("junk.ma", std::string("\x7f"
                                "ELF\0\1\2\3",
                                8) +
                        std::string(200, '\xfe'));
    expectFailure("run junk.ma", 1, "no Maya ASCII scene");
    file("twice.ma", head + "createNode transform -n \"b\";\nconnectAttr \"b.tx\" \"a.ty\";\nconnectAttr "
                            "\"b.ty\" \"a.ty\";\n");
    expectFailure("run twice.ma --get a.tx", 1, "line 6");
    file("mesh.ma", head +
                        "createNode mesh -n \"m\" -p \"a\";\n\tsetAttr -s 3 \".vt[0:2]\" 0 0 0 1 0 0 1 1 0;\n"
                        "\tsetAttr -s 3 \".ed[0:2]\" 0 1 0 1 2 0 2 9 0;\n\tsetAttr \".fc[0]\" -type "
                        "\"polyFaces\" f 3 0 1 2;\n");
    const Ended mesh = vesk("run mesh.ma --get m.outMesh");
    EXPECT_NE(mesh.err.find("m"), std::string::npos);
    EXPECT_NE(mesh.err.find("Error"), std::string::npos) << mesh.err;
    file("cycle.mel", "createNode plusMinusAverage -n a; createNode plusMinusAverage -n b;"
                      "connectAttr a.output1D b.input1D[0]; connectAttr b.output1D a.input1D[0];");
    expectFailure("run cycle.mel --get a.output1D", 1, "Cycle on");
}

TEST_F(CommandLine, UsageFaultsEndWithTwo) {
    for (const char* arguments :
         {"", "run", "walk", "run a.mel --frames 3-1", "run a.mel --frames x", "run a.mel --set nothing",
          "run a.mel --export noequals", "run a.mel --nope", "run a.mel --progress=loud"}) {
        EXPECT_EQ(vesk(arguments).code, 2) << arguments;
    }
    EXPECT_EQ(vesk("--version").code, 0);
    EXPECT_EQ(vesk("--version").out.substr(0, 5), "vesk ");
    EXPECT_EQ(vesk("--help").code, 0);
}

TEST_F(CommandLine, NodesListsTheTable) {
    const Ended all = vesk("nodes");
    EXPECT_EQ(all.code, 0);
    EXPECT_EQ(std::count(all.out.begin(), all.out.end(), '\n'), 63);
    EXPECT_NE(all.out.find("pointAttributeToArray      0x115754  Vesk/converters    there\n"),
              std::string::npos);
    EXPECT_NE(all.out.find("displayDriver              0x11576f  Vesk/display       not written yet\n"),
              std::string::npos);
    EXPECT_NE(vesk("nodes pointAttributeToArray").out.find("outSharedMapPP"), std::string::npos);
    expectFailure("nodes displayDriver", 1, "not written yet");
    expectFailure("nodes nobody", 1, "no node type 'nobody'");
}

TEST(Frames, AreReadAsWritten) {
    EXPECT_EQ(parseFrames("1-24x8,30"), (std::vector<double>{1, 9, 17, 30}));
    EXPECT_EQ(parseFrames("-2-1"), (std::vector<double>{-2, -1, 0, 1}));
    EXPECT_EQ(parseFrames("0.5"), (std::vector<double>{0.5}));
    for (const char* bad : {"", "1-", "1x0", "1-2x-1", "5-1", "1,", "1 2", "nan", "1-1e12"}) {
        EXPECT_THROW(parseFrames(bad), std::invalid_argument) << bad;
    }
    EXPECT_EQ(parseAssignment("--set", "a.b=c=d").right, "c=d");
    EXPECT_THROW(parseAssignment("--set", "=x"), std::invalid_argument);
}

TEST_F(CommandLine, IconsAreCheckedAndDrawn) {
    file("icons.cfg",
         "<element> a\n<points> 0 0 10 0 0 10\n<color> 1 0 0.5\n<alpha> 0.5\n<icon> a\n<icon> b<&>\n");
    const Ended ended = vesk("icons icons.cfg --svg sheet.svg");
    EXPECT_EQ(ended.code, kFailed) << "one icon is wrong; the others are drawn";
    EXPECT_EQ(ended.out, "ERROR: line 6: icon definition contains invalid element names.\n"
                         "INFO: 1 element(s) loaded.\nINFO: 1 icon(s) loaded.\n");
    EXPECT_NE(
        content("sheet.svg").find("points=\"0,0 24,0 0,-24\" fill=\"rgb(255,0,128)\" fill-opacity=\"0.5\""),
        std::string::npos)
        << content("sheet.svg");
    EXPECT_EQ(vesk("icons nowhere.cfg").code, kFailed);
    EXPECT_EQ(vesk("icons").code, kBadUsage);
    const std::string defaults = VESK_SOURCE_DIR "/scripts/icons.cfg";
    EXPECT_EQ(vesk("icons '" + defaults + "'").out,
              "INFO: 56 element(s) loaded.\nINFO: 33 icon(s) loaded.\n");
    EXPECT_EQ(vesk("icons '" + defaults + "' --svg nowhere/sheet.svg").code, kFailed);
}

} // namespace
} // namespace vesk::app
