#include "nodes/tensionMapSimple/zoneTension.h"

#include "tests/session_fixture.h"

#include <limits>

namespace vesk::nodes {
namespace {

TEST(ZoneTension, ZonesAreReadFromNumbersAndNames) {
    const auto marked = [](std::string_view text) {
        const Zone zone = zoneOf(text, 6);
        std::string all;
        for (const char one : zone.contains)
            all += one ? 'x' : '.';
        return all + (zone.namesMissing ? " missing" : "") +
               (zone.fault.empty() ? "" : " fault " + std::string(zone.fault));
    };
    EXPECT_EQ(marked(" 0 2:3,\n5"), "x.xx.x");
    EXPECT_EQ(marked("a.vtx[1:2] |b|cShape.vtx[4]"), ".xx.x.");
    EXPECT_EQ(marked(""), "......");
    EXPECT_EQ(marked("4:99999999999999999999999"), "....xx missing");
    EXPECT_EQ(marked("6 1 up 3:2 -1 2:"), ".x.... missing fault up");
}

TEST(ZoneTension, AnEdgeCountsOnceAndMakesNoInfinities) {
    const std::array<int, 2> edges[] = {{0, 1}, {1, 2}};
    const MPoint rest[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, now[] = {{0, 0, 0}, {3, 0, 0}, {3, 1, 0}};
    const char first[] = {1, 0, 0}, both[] = {1, 1, 0}, none[] = {0, 0, 0};
    const EdgeLengths lengths = lengthsOf(edges, now, rest);
    EXPECT_EQ(tensionOf(edges, lengths, first), 2);
    EXPECT_EQ(tensionOf(edges, lengths, both), 1) << "4 for 2";
    EXPECT_EQ(tensionOf(edges, lengths, none), 0);
    EXPECT_EQ(tensionOf(edges, lengthsOf(edges, rest, now), first), -2.0 / 3);
    const MPoint still[] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    EXPECT_EQ(tensionOf(edges, lengthsOf(edges, now, still), both), 0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const MPoint lost[] = {{0, 0, 0}, {1, 0, nan}, {1, 1, 0}};
    EXPECT_EQ(tensionOf(edges, lengthsOf(edges, lost, rest), both), 0);
}

class TensionMapSimple : public tests::PluginTest {
  protected:
    /// One face that grows from one unit to three along x between the frames 1 and 11, and is half as wide at
    /// frame 21. Zone 0 has the edge along x and one along z.
    void SetUp() override {
        PluginTest::SetUp();
        run("polyPlane -w 1 -h 1 -sx 1 -sy 1 -n board; setKeyframe -t 1 -v 1 polyPlane1.width;"
            "setKeyframe -t 11 -v 3 polyPlane1.width; setKeyframe -t 21 -v 0.5 polyPlane1.width;"
            "createNode tensionMapSimple -n t; connectAttr boardShape.worldMesh[0] t.inMesh;"
            "setAttr -type \"string\" t.zones[0] \"0\"; currentTime 11;");
    }
    double value(const std::string& plug) { return run("getAttr t." + plug).asFloat(); }
};

TEST_F(TensionMapSimple, StretchAndCompressionOfAZoneGoThroughItsRamp) {
    EXPECT_NEAR(value("outStretch[0]"), 1, 1e-6) << "4 units of edges for 2";
    EXPECT_EQ(value("outCompression[0]"), 0);
    run("currentTime 21");
    EXPECT_EQ(value("outStretch[0]"), 0);
    EXPECT_NEAR(value("outCompression[0]"), 0.25, 1e-6);
    run("setAttr t.compressionMult 2; setAttr -type \"string\" t.zones[7] \"0:3\"; setAttr t.zoneRamp7[0] 0 "
        "0.5 1;");
    EXPECT_NEAR(value("outCompression[0]"), 0.5, 1e-6);
    // All four edges: 3 units for 4, of half to one the same half of the way.
    EXPECT_NEAR(value("outCompression[7]"), 0.75, 1e-6);
    EXPECT_NEAR(value("outStretch[7]"), 0.5, 1e-6) << "a ramp may say something of the rest";
    run("setAttr t.envelope 0");
    EXPECT_EQ(floats("t.outCompression"), (std::vector<double>{0, 0}));
    run("setAttr t.envelope 1; setAttr t.restFrame 21");
    EXPECT_EQ(value("outCompression[0]"), 0) << "at rest";
}

TEST_F(TensionMapSimple, TheWorldKnowsTheScale) {
    run("currentTime 1; setKeyframe -t 1 -v 1 board.scaleX; setKeyframe -t 2 -v 3 board.scaleX; currentTime "
        "2;"
        "setAttr t.restFrame 1; setKeyframe -t 2 -v 1 polyPlane1.width;");
    EXPECT_NEAR(value("outStretch[0]"), 1, 1e-6);
    run("setAttr t.coordinateSystem 1");
    EXPECT_EQ(value("outStretch[0]"), 0);
}

TEST_F(TensionMapSimple, BadZonesAndMeshesAreNamed) {
    run("setAttr -type \"string\" t.zones[0] \"0 here 9\"; setAttr -type \"string\" t.zones[50] \"1\"");
    EXPECT_NEAR(value("outStretch[0]"), 1, 1e-6) << "what is understood counts";
    EXPECT_EQ(complaints(), (Texts{"warning: t: zones[0] is not understood at \"here\".",
                                   "warning: t: zones[0] names vertices that inMesh does not have.",
                                   "warning: t: zones[50] has no ramp: there are 50."}));
    run("removeMultiInstance t.zones[50]; setAttr -type \"string\" t.zones[0] \"0\";"
        "setKeyframe -t 1 -v 2 -ott step polyPlane1.subdivisionsWidth; setKeyframe -t 5 -v 1 polyPlane1.sw");
    EXPECT_EQ(value("outStretch[0]"), 0);
    EXPECT_EQ(complaints(), Texts{"warning: t: The mesh at restFrame has another number of vertices."});
    run("setAttr t.nodeState 2; setAttr t.restFrame 11; setAttr t.stretchMult 5");
    EXPECT_EQ(value("outStretch[0]"), 0);
    run("setAttr t.nodeState 0; delete board");
    EXPECT_EQ(floats("t.outStretch"), std::vector<double>{0});
}

TEST_F(TensionMapSimple, RampsAndZonesAreSaved) {
    run("setAttr t.zoneRamp49[1] 0.5 0.25 1; setAttr -type \"string\" t.zones[49] \"0\";");
    const std::string file = (folder / "t.ma").string();
    run("file -rename \"" + file + "\"; file -save; file -f -new; file -o \"" + file + "\"; currentTime 11;");
    EXPECT_NEAR(value("outStretch[49]"), 0.25, 1e-6);
    EXPECT_NEAR(value("outStretch[0]"), 1, 1e-6);
    EXPECT_EQ(mel("getAttr -size t.zoneRamp0"), "2");
}

} // namespace
} // namespace vesk::nodes
