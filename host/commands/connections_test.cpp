#include "host/commands/probe_scene.h"

namespace vesk::commands {

namespace {

class Connecting : public ProbeScene {};

} // namespace

TEST_F(Connecting, ValuesFollowTheWire) {
    check({
        {"connectAttr n.amount m.amount", "string Connected n.amount to m.amount."},
        {"setAttr n.amount 6; getAttr m.amount", "float 6"},
        {"connectAttr n.pos m.pos; setAttr n.posY 4; getAttr m.pos", "float[] 0 4 0"},
        {"setAttr m.posY 1", "! The attribute 'm.posY' is locked or connected and cannot be modified."},
        {"connectAttr n.weight m.weight; setAttr n.weight[3] 8; getAttr m.weight[3]", "float 8"},
        {"getAttr m.weight", "float[] 8"},
        {"connectAttr n.ratio m.doubles", "! Cannot connect 'n.ratio' to 'm.doubles': the data types are not "
                                          "compatible (float into doubleArray)."},
        {"connectAttr n.doubles m.open; setAttr -type doubleArray n.doubles 1 3; getAttr m.open",
         "float[] 3"},
        {"disconnectAttr n.amount m.amount", "string Disconnect n.amount from m.amount."},
        {"setAttr m.amount 1; getAttr m.amount", "float 1"},
        {"disconnectAttr n.amount m.amount",
         "! There is no connection from 'n.amount' to 'm.amount' to disconnect."},
    });
    context.currentNode = m;
    check({{"connectAttr n.whole .whole", "string Connected n.whole to m.whole."}});
}

TEST_F(Connecting, OneSourceUnlessForced) {
    log().keepEntries(true);
    check({
        {"connectAttr n.amount m.amount", "string Connected n.amount to m.amount."},
        {"connectAttr n.reach m.amount", "! 'm.amount' already has an incoming connection from 'n.amount'."},
        {"connectAttr n.amount m.amount", "! 'n.amount' is already connected to 'm.amount'."},
        {"connectAttr -f n.reach m.amount", "string Connected n.reach to m.amount."},
        {"listConnections -p on m.amount", "string[] n.reach"},
    });
    (void)log().take();
    check({{"connectAttr -f n.reach m.amount", "string Connected n.reach to m.amount."}});
    const auto entries = log().take();
    log().keepEntries(false);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].text, "'n.reach' is already connected to 'm.amount'.");
}

TEST_F(Connecting, FlagsOfTheEnds) {
    check({
        {"connectAttr n.amount m.sum", "! Cannot connect 'n.amount' to 'm.sum': 'm.sum' is not writable."},
        {"connectAttr n.secret m.amount",
         "! Cannot connect 'n.secret' to 'm.amount': 'n.secret' is not readable."},
        {"connectAttr n.amount m.fixed",
         "! Cannot connect 'n.amount' to 'm.fixed': 'm.fixed' is not connectable."},
        {"setAttr -l on m.amount; connectAttr n.amount m.amount",
         "! Cannot connect 'n.amount' to 'm.amount': 'm.amount' is locked."},
        {"connectAttr n.nope m.whole", "! No object matches name: n.nope"},
        {"connectAttr n.weight[0:1] m.whole", "! 'n.weight[0:1]' names several plugs where one is wanted."},
        {"connectAttr -l on n.whole m.whole; getAttr -l m.whole", "int 1"},
        {"disconnectAttr n.whole m.whole", "! 'm.whole' is locked and cannot be disconnected."},
        {"size(`listConnections m`)", "int 1"},
    });
}

TEST_F(Connecting, UnitsAreConvertedOnTheWay) {
    check({
        {"connectAttr n.turn m.amount; setAttr n.turn 90; getAttr m.amount", "float 90"},
        {"connectAttr n.amount m.turn; setAttr n.amount 45; getAttr m.turn", "float 45"},
        {"connectAttr time1.outTime m.shorty; getAttr -time 7 m.shorty", "int 7"},
        {"nodeType unitConversion1", "string unitConversion"},
        {"objExists unitConversion4", "int 0"},
        {"isConnected n.turn m.amount", "int 0"},
        {"isConnected -iuc n.turn m.amount", "int 1"},
        {"listConnections m.amount", "string[] unitConversion1"},
        {"listConnections -scn on -p on m.amount", "string[] n.turn"},
        {"listConnections -scn on -s off -p on n.turn", "string[] m.amount"},
        // Equal units, and lengths, need none.
        {"connectAttr n.turn m.rotX; connectAttr n.reach m.small; objExists unitConversion4", "int 0"},
        {"setAttr n.turn 30; getAttr m.rotX", "float 30"},
        {"connectAttr n.turn m.amount", "! 'm.amount' already has an incoming connection from "
                                        "'unitConversion1.output'."},
        {"objExists unitConversion4", "int 0"},
    });
}

TEST_F(Connecting, NextAvailableElement) {
    check({
        {"connectAttr -na n.message m.members", "string Connected n.message to m.members[0]."},
        {"connectAttr -nextAvailable n.link m.members", "string Connected n.link to m.members[1]."},
        {"connectAttr time1.message m.members[3]", "string Connected time1.message to m.members[3]."},
        {"disconnectAttr -na n.message m.members", "string Disconnect n.message from m.members[0]."},
        {"connectAttr -na m.link m.members", "string Connected m.link to m.members[0]."},
        {"connectAttr -na n.message m.members", "string Connected n.message to m.members[2]."},
        {"connectAttr -na n.flag m.members", "string Connected n.flag to m.members[4]."},
        {"connectAttr -na n.amount m.weight",
         "! The next element of 'm.weight' cannot be chosen: its indices matter."},
        {"connectAttr -na n.amount m.whole", "! 'm.whole' is not a multi: it has no next element."},
        {"disconnectAttr -na n.amount m.members",
         "! There is no connection from 'n.amount' to 'm.members' to disconnect."},
    });
}

TEST_F(Connecting, WhatIsConnected) {
    const auto group = scene.create(*types.find("group"), "g");
    (void)scene.create(*types.find("probeShape"), "gShape", static_cast<graph::DagNode*>(group.get()));
    check({
        {"connectAttr n.pos m.pos; connectAttr n.amount m.weight[2]; connectAttr n.amount gShape.roundness;"
         "connectAttr m.whole n.whole",
         "string Connected m.whole to n.whole."},
        {"listConnections n", "string[] m m g m"},
        {"listConnections -s off n", "string[] m g m"},
        {"listConnections -d off n", "string[] m"},
        {"listConnections -sh on -s off n.amount", "string[] m gShape"},
        {"listConnections -type probeShape n", "string[] g"},
        {"listConnections -type dagNode n", "string[] g"},
        {"size(`listConnections -type dagNode -et on n`)", "int 0"},
        {"listConnections -c on -p on -d off n", "string[] n.whole m.whole"},
        {"listConnections m.weight", "string[] n"},
        {"listConnections \"m.weight[0:2]\"", "string[] n"},
        {"size(`listConnections m.weight[1]`)", "int 0"},
        {"isConnected n.pos m.pos", "int 1"},
        {"isConnected n.posX m.posX", "int 0"},
        {"connectionInfo -sfd m.pos", "string n.pos"},
        {"connectionInfo -sfd n.pos", "string"},
        {"connectionInfo -dfs n.amount", "string[] m.weight[2] gShape.roundness"},
        {"connectionInfo -id m.posY", "int 1"},
        {"connectionInfo -ied m.posY", "int 0"},
        {"connectionInfo -ged m.posY", "string m.pos"},
        {"connectionInfo -is n.posY", "int 1"},
        {"connectionInfo -ies n.posY", "int 0"},
        {"connectionInfo n.posY", "! connectionInfo was not told what to answer."},
        {"setAttr -l on m.entry; connectionInfo -gla m.entry[1].entryMode", "string m.entry"},
    });
}

TEST_F(Connecting, ElementsOfMultis) {
    check({
        {"getNextFreeMultiIndex n.entry 0", "int 0"},
        {"connectAttr m.ratio n.entry[0].entryValue; connectAttr m.ratio n.entry[1].entryValue;"
         "connectAttr m.ratio n.entry[3].entryValue; setAttr n.entry[2].entryValue 1;"
         "getNextFreeMultiIndex n.entry 0",
         "int 2"},
        {"getNextFreeMultiIndex(\"n.entry\", 3)", "int 4"},
        {"getNextFreeMultiIndex n.entry -7", "int 2"},
        {"getNextFreeMultiIndex n.entry x", "! The index to start from is not a number: 'x'."},
        {"getNextFreeMultiIndex n.whole 0", "! 'n.whole' is not a multi."},
        {"removeMultiInstance n.entry[2]; getAttr -mi n.entry", "int[] 0 1 3"},
        {"removeMultiInstance n.entry[1]",
         "! 'n.entry[1]' is connected and cannot be removed unless its connections are broken."},
        {"removeMultiInstance -b 1 n.entry[1]; getAttr -mi n.entry", "int[] 0 3"},
        {"removeMultiInstance n.entry[9]", "-"},
        {"removeMultiInstance n.entry", "! 'n.entry' is not an element of a multi."},
        {"listConnections -p on m.ratio", "string[] n.entry[0].entryValue n.entry[3].entryValue"},
    });
}

TEST_F(Connecting, KindsOfNodes) {
    (void)scene.create(*types.find("probeShape"), "s");
    check({
        {"objExists n", "int 1"},
        {"objExists q", "int 0"},
        {"objExists \"?\"", "int 1"},
        {"objExists n.posY", "int 1"},
        {"objExists n.nope", "int 0"},
        {"nodeType s", "string probeShape"},
        {"nodeType s.roundness", "string probeShape"},
        {"nodeType -i s", "string[] node dagNode probeShape"},
        {"nodeType -d -itn dagNode", "string[] dagNode group probeShape"},
        {"nodeType -api s", "string kMesh"},
        {"nodeType q", "! No object matches name: q"},
        {"nodeType -itn nope", "! 'nope' is not a type of node."},
        {"objectType s", "string probeShape"},
        {"objectType -isa dagNode s", "int 1"},
        {"objectType -isType dagNode s", "int 0"},
    });
}

} // namespace vesk::commands
