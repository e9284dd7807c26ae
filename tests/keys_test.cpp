// Keys as scripts set, ask for and cut them.

#include "tests/session_fixture.h"

namespace vesk {
namespace {

class Keys : public SessionTest {
  protected:
    void SetUp() override {
        SessionTest::SetUp();
        (void)mel("polyCube; currentTime 1");
    }
    double at(double frame, const std::string& plug) {
        return session->run("getAttr -t " + std::to_string(frame) + " " + plug).value.asFloat();
    }
    void refused(const std::string& command, const std::string& sentence) {
        EXPECT_EQ(mel(command), "error: " + sentence) << command;
        (void)complaints();
    }
};

TEST_F(Keys, CurvesFollowTheUnitOfWhatTheyDrive) {
    EXPECT_EQ(mel("setKeyframe -at tx -t 1 -v 2 pCube1; setKeyframe -at tx -t 25 -v 6 pCube1"), "1");
    EXPECT_EQ(mel("setKeyframe -at rotate -t 1 -t 13 -v 0 pCube1"), "6");
    EXPECT_EQ(mel("setKeyframe -t 25 -v 90 -itt linear -ott linear pCube1.rotateY"), "1");
    EXPECT_EQ(mel("setKeyframe -v 1 pCube1.visibility; setKeyframe -t 10 -v 0 pCube1.v"), "1");
    EXPECT_EQ(mel("nodeType pCube1_translateX"), "animCurveTL");
    EXPECT_EQ(mel("nodeType pCube1_rotateY"), "animCurveTA");
    EXPECT_EQ(mel("nodeType pCube1_visibility"), "animCurveTU");
    EXPECT_EQ(mel("isConnected pCube1_rotateY.output pCube1.rotateY"), "1");
    // Automatic tangents are flat at the ends: half way is half the rise.
    EXPECT_NEAR(at(13, "pCube1.tx"), 4, 1e-9);
    EXPECT_NEAR(at(25, "pCube1.ry"), 90, 1e-9);
    EXPECT_EQ(at(9.9, "pCube1.v"), 1) << "a switch is not on its way";
    EXPECT_EQ(at(10, "pCube1.v"), 0);
    EXPECT_EQ(mel("currentTime 25; getAttr pCube1.ry"), "90");
}

TEST_F(Keys, KeysFindTheirPlaceAndReplaceThoseOfTheSameTime) {
    (void)mel("setKeyframe -at ty -t 10 -v 5 -ott linear pCube1; setKeyframe -at ty -t 1 -v 1 pCube1;"
              "setKeyframe -at ty -t 5 -v 3 -ott step pCube1; setKeyframe -at ty -t 10 -v 7 pCube1");
    EXPECT_EQ(mel("keyframe -q -tc pCube1.ty"), "1 5 10");
    EXPECT_EQ(mel("keyframe -q -vc -at ty pCube1"), "1 3 7");
    EXPECT_EQ(mel("getAttr -mi pCube1_translateY.ktv"), "0 1 2");
    // What belonged to a key moved along with it.
    EXPECT_EQ(mel("getAttr -mi pCube1_translateY.kot"), "1 2");
    EXPECT_EQ(at(9, "pCube1.ty"), 3);
    EXPECT_EQ(mel("setKeyframe -at tz -t 3 pCube1; keyframe -q -kc pCube1"), "4");
    EXPECT_EQ(mel("keyframe -q -tc -t \"2:5\" pCube1"), "5 3");
    EXPECT_EQ(mel("keyframe -q -vc -t 10 -t 1 pCube1_translateY"), "1 7");
    EXPECT_EQ(mel("keyframe -q -n pCube1"), "pCube1_translateY pCube1_translateZ");
}

TEST_F(Keys, WhatIsSelectedTakesKeysOnAllItsKeyables) {
    (void)mel(
        "setAttr -l on pCube1.sx; createNode plusMinusAverage -n sum; connectAttr sum.output1D pCube1.sy");
    // Translation, rotation, one scale, visibility.
    EXPECT_EQ(mel("select -r pCube1; setKeyframe"), "8");
    EXPECT_EQ(mel("setAttr pCube1.tx 3"), "error: The attribute 'pCube1.translateX' is locked or connected "
                                          "and cannot be modified.");
    (void)complaints();
    EXPECT_EQ(mel("keyframe -q -kc"), "8");
    refused("setKeyframe pCube1.sx",
            "The attribute 'pCube1.scaleX' is locked or connected and cannot be modified.");
    refused("setKeyframe -at sy", "'pCube1.scaleY' cannot have keys: it is fed by 'sum.output1D'.");
    refused("setKeyframe pCubeShape1.worldMatrix",
            "'pCubeShape1.worldMatrix' cannot have keys: it is no number.");
    refused("setKeyframe -ott wavy pCube1.tx", "'wavy' is no type of outgoing tangents.");
    refused("setKeyframe -itt step pCube1.tx", "'step' is no type of incoming tangents.");
    refused("setKeyframe -v 1e999 pCube1.tx", "The value of a key must be a finite number.");
    refused("select -cl; setKeyframe", "setKeyframe: there is nothing to set keys on.");
    refused("keyframe -q -tc -t soon pCube1", "'soon' is no time and no range of times, such as 1:24.");
    EXPECT_EQ(mel("keyframe -q -kc pCube1.tx"), "1") << "nothing refused left a key";
}

TEST_F(Keys, CuttingTheLastKeyEndsTheAnimation) {
    (void)mel(
        "setKeyframe -at tx -t 1 -v 2 pCube1; setKeyframe -at tx -t 25 -v 6 pCube1; setKeyframe -at tx -t 30 "
        "-v 8 pCube1; currentTime 30");
    EXPECT_EQ(mel("cutKey -t \"20:27\" pCube1"), "1");
    EXPECT_EQ(mel("keyframe -q -tc pCube1.tx; getAttr -mi pCube1_translateX.ktv"), "0 1");
    EXPECT_EQ(mel("cutKey -at tx -cl pCube1"), "2");
    EXPECT_EQ(mel("objExists pCube1_translateX"), "0");
    EXPECT_EQ(mel("getAttr pCube1.tx"), "8");
    EXPECT_EQ(mel("cutKey pCube1"), "0");
}

TEST_F(Keys, StayOverSavingAndOpening) {
    (void)mel("currentUnit -t pal; setKeyframe -at rx -t 1 -v 10 -ott linear pCube1; setKeyframe -at rx -t "
              "26 -v 60 "
              "-itt linear pCube1; select -r pCube1");
    const std::string file = (folder / "keys.ma").string();
    (void)mel("file -rename \"" + file + "\"; file -save; file -f -new; file -o \"" + file + "\"");
    EXPECT_EQ(mel("keyframe -q -tc pCube1.rx"), "1 26");
    EXPECT_NEAR(at(13.5, "pCube1.rx"), 35, 1e-6);
    // A key more goes between those of the file.
    EXPECT_EQ(mel("setKeyframe -t 11 -v 0 pCube1.rx; keyframe -q -vc pCube1.rx"), "10 0 60");
}

class Expressions : public Keys {};

TEST_F(Expressions, AreWiredAndFollowTimeAndPlugs) {
    EXPECT_EQ(
        mel("expression -n wave -s \"pCube1.ty = time * 24 + pCube1.tx;\\npCube1.rx = frame * 2;\" -ae 1"),
        "wave");
    EXPECT_EQ(mel("isConnected wave.output[0] pCube1.ty"), "1");
    EXPECT_EQ(mel("isConnected pCube1.tx wave.input[0]"), "1");
    EXPECT_EQ(mel("isConnected time1.outTime wave.time"), "1");
    EXPECT_EQ(mel("listConnections -scn on -p on pCube1.rx"), "wave.output[1]") << "degrees are converted";
    EXPECT_EQ(mel("currentTime 12; setAttr pCube1.tx 3; getAttr pCube1.ty"), "15");
    EXPECT_NEAR(at(45, "pCube1.rx"), 90, 1e-9);
    EXPECT_EQ(at(6, "pCube1.ty"), 9);
    // Names may change; what is asked for is what they are now.
    (void)mel("rename pCube1 box");
    EXPECT_EQ(mel("getAttr box.ty"), "15");
    EXPECT_EQ(mel("expression -q -s wave"),
              "box.translateY = time * 24 + box.translateX;\nbox.rotateX = frame * 2;");
    EXPECT_EQ(mel("expression -e -s \"tz = 7;\" -o box wave; getAttr box.tz"), "7");
    EXPECT_EQ(mel("isConnected wave.output[1] box.rx; setAttr box.ty 1"), "") << "the old wires are gone";
}

TEST_F(Expressions, LocalsBranchesAndCommandsAreMel) {
    (void)mel(
        "expression -n e -s \"float $h = 2;\\nif (frame > 10) { pCube1.ty = $h; } else pCube1.ty = -$h;\\n"
        "pCube1.sx = size(`ls -type mesh`) + abs(pCube1.ty); pCube1.v = frame % 2;\"");
    EXPECT_EQ(at(4, "pCube1.ty"), -2);
    EXPECT_EQ(at(11, "pCube1.ty"), 2);
    EXPECT_EQ(at(4, "pCube1.sx"), 3);
    EXPECT_EQ(at(5, "pCube1.v"), 1);
    // What is both read and written goes on from its last value.
    (void)mel("expression -n count -s \"pCube1.sz = pCube1.sz + 1\"");
    EXPECT_EQ(mel("currentTime 2; getAttr pCube1.sz; currentTime 3; getAttr pCube1.sz"), "2");
}

TEST_F(Expressions, ErrorsNameNodeAndLineAndLeaveNothing) {
    refused("expression -s \"pCube1.ty = 1;\\npCube1.nope = 2;\"",
            "expression: line 2 of the text: No object matches name: pCube1.nope");
    refused("expression -s \"pCube1.ty = pCubeShape1.outMesh;\"",
            "expression: line 1 of the text: 'pCubeShape1.outMesh' is no number.");
    refused("setKeyframe pCube1.tz; expression -s \"pCube1.tz = 1;\"",
            "expression: line 1 of the text: the attribute 'pCube1.translateZ' is locked or connected and "
            "cannot be "
            "modified.");
    EXPECT_FALSE(session->run("expression -n bad -s \"pCube1.ty = 1;\\npCube1.tx = = 2;\"").ok);
    const Texts syntax = complaints();
    ASSERT_EQ(syntax.size(), 1U);
    EXPECT_EQ(syntax[0].rfind("error: file \"bad\" line 2: ", 0), 0U) << syntax[0];
    EXPECT_EQ(mel("size(`ls -type expression`)"), "0");
    // At run time: once for all outputs, which stay as they were.
    (void)mel(
        "expression -n div -s \"pCube1.ty = 4;\\nint $n = frame - 1;\\npCube1.tx = 6 / $n;\"; currentTime 3");
    EXPECT_EQ(mel("getAttr pCube1.tx"), "3");
    EXPECT_EQ(mel("currentTime 1; getAttr pCube1.t"), "3 4 0");
    const Texts division = complaints();
    ASSERT_EQ(division.size(), 1U);
    EXPECT_EQ(division[0].rfind("error: file \"div\" line 3: Division by zero.", 0), 0U) << division[0];
    (void)mel("expression -n idle -s \"print(time)\"");
    EXPECT_EQ(complaints(),
              Texts{"warning: expression 'idle' writes no attribute: nothing will ask for it."});
}

TEST_F(Expressions, StayOverSavingAndOpening) {
    const auto file =
        write("wave.ma", "//Maya ASCII 2012 scene\nrequires maya \"2012\";\n"
                         "createNode transform -n \"t\";\ncreateNode expression -n \"e\";\n"
                         "\tsetAttr -k on \".nds\";\n\tsetAttr -s 1 \".in\";\n"
                         "\tsetAttr \".ixp\" -type \"string\" \".O[0] = .I[0] * frame\";\n"
                         "connectAttr \"t.tx\" \"e.in[0]\";\nconnectAttr \"e.out[0]\" \"t.ty\";\n"
                         "connectAttr \":time1.o\" \"e.tim\";\n");
    const std::string copy = (folder / "copy.ma").string();
    (void)mel("file -f -o \"" + file.string() + "\"; setAttr t.tx 2; file -rename \"" + copy +
              "\"; file -s; file -f -o \"" + copy + "\"");
    EXPECT_EQ(at(5, "t.ty"), 10);
}

} // namespace
} // namespace vesk
