// Attributes of single nodes, and what commands say about attributes.

#include "host/commands/probe_scene.h"

#include <numbers>

namespace vesk::commands {

namespace {

class Attributes : public ProbeScene {};

} // namespace

TEST_F(Attributes, AddedOnesBehaveLikeOthers) {
    check({
        {"addAttr -ln extra -sn ex -at double -dv 2 -min 0 -max 4 -k on n; getAttr n.extra", "float 2"},
        {"setAttr n.ex 5", "! Cannot set the attribute 'n.extra' past its maximum value of 4."},
        {"setAttr n.ex 3; getAttr n.extra", "float 3"},
        {"getAttr -k n.extra", "int 1"},
        {"addAttr -ln title -dt \"string\" n; setAttr -type string n.title hi; getAttr n.title", "string hi"},
        {"addAttr -ci true -sn many -ln many -m -at \"long\" n; setAttr n.many[3] 1; getAttr -mi n.many",
         "int[] 3"},
        {"addAttr -ln hue -at \"enum\" -en \"Red:Green=5:Blue\" n; setAttr n.hue 6; getAttr -as n.hue",
         "string Blue"},
        {"addAttr -ln lean -at doubleAngle -dv 90 n; getAttr n.lean", "float 90"},
        {"addAttr -ln place -dt double3 n; setAttr n.place -type double3 1 2 3; getAttr n.place1", "float 2"},
        {"addAttr -ln data -dt vectorArray n; setAttr n.data -type vectorArray 1 1 2 3; getAttr n.data",
         "float[] 1 2 3"},
        {"addAttr -ln floats -dt floatArray n; setAttr n.floats -type floatArray 1 0.5; getAttr n.floats",
         "float[] 0.5"},
        {"addAttr -ln both -at bool n m; attributeExists both m", "int 1"},
    });
    EXPECT_DOUBLE_EQ(n->cell(*n->findAttribute("lean")).number, std::numbers::pi / 2);
    context.currentNode = m;
    check({{"addAttr -ln cur -nn \"Current\" -ct x -ct y -at message; attributeExists cur m", "int 1"}});
}

TEST_F(Attributes, CompoundsArriveChildByChild) {
    check({
        {"addAttr -ln col -sn cl -at \"float3\" -uac -nc 3 n; attributeExists col n", "int 0"},
        {"addAttr -ln colR -at \"float\" -p col n; addAttr -ln colG -at \"float\" -p cl n", "-"},
        {"setAttr n.colR 1", "! No object matches name: n.colR"},
        {"addAttr -ln colR -at \"float\" -p col n", "! Found an existing attribute 'colR' on node 'n'."},
        {"addAttr -ln colB -at \"float\" -p col n; getAttr n.col", "float[] 0 0 0"},
        {"setAttr n.col 1 2 3; getAttr n.colG", "float 2"},
        {"getAttr -type n.col", "string float3"},
        {"addAttr -ln colA -at \"float\" -p col n", "! The attribute 'col' has all its children."},
        {"addAttr -ln colA -at \"float\" -p cool n", "! No object matches name: n.cool"},
        // One compound in another, the outer a multi.
        {"addAttr -ln box -at compound -nc 2 -m n; addAttr -ln low -at double3 -p box n;"
         "addAttr -ln lowX -at double -p low n; addAttr -ln lowY -at double -p low n;"
         "addAttr -ln boxName -dt string -p box n; attributeExists box n",
         "int 0"},
        {"addAttr -ln lowZ -at double -p low n; setAttr n.box[2].low 4 5 6; getAttr n.box[2].lowY",
         "float 5"},
        {"setAttr -type string n.box[2].boxName b; getAttr n.box[2].boxName", "string b"},
        {"attributeQuery -n n -lp lowZ", "string[] low"},
    });
}

TEST_F(Attributes, WhatCannotBeAdded) {
    check({
        {"addAttr -ln whole -at double n", "! Found an existing attribute 'whole' on node 'n'."},
        {"addAttr -ln extra -at floof n", "! The type 'floof' of a new attribute is unknown."},
        {"addAttr -ln extra -dt floof n", "! The type 'floof' of a new attribute is unknown."},
        {"addAttr -ln 1x -at double n", "! New attribute needs a name; '1x' is not one."},
        {"addAttr -at double n", "! New attribute needs a name; '' is not one."},
        {"addAttr -ln extra -at enum -en \"A=x\" n", "! 'A=x' is no field of an enum: a number is wanted."},
        {"addAttr -ln extra -at enum -en \"A=40000\" n",
         "! The value of the enum field 'A=40000' is out of range."},
        {"addAttr -ln extra -at compound -nc 0 n", "! A compound attribute needs one child or more."},
        {"addAttr -ln extra -at double -dcb 3 n", "! A disconnect behaviour is 0, 1 or 2."},
        {"addAttr -ln extra -at double", "! No object was named or is selected for the new attribute."},
        {"addAttr -ln extra -at double q", "! No object matches name: q"},
        {"attributeExists extra n", "int 0"},
    });
}

TEST_F(Attributes, QueriedAndChanged) {
    check({
        {"addAttr -ln extra -at double -min 1 -max 4 n; addAttr -q -max n.extra", "float 4"},
        {"addAttr -q -hnv n.extra", "int 1"},
        {"addAttr -q -smx n.extra", "-"},
        {"addAttr -q -at n.extra", "string double"},
        {"addAttr -q -ex n.other", "int 0"},
        {"addAttr -e -max 10 -hnv off n.extra; setAttr n.extra -8; setAttr n.extra 9; getAttr n.extra",
         "float 9"},
        {"addAttr -e -ln other n.extra", "! Flag '-ln' cannot be used in edit mode."},
        {"addAttr -e -max 10 n.ratio", "! 'n.ratio' was not added to its node and cannot be changed."},
        {"renameAttr n.extra more; getAttr n.more", "float 9"},
        {"attributeExists extra n", "int 0"},
        {"renameAttr n.more whole", "! Found an existing attribute 'whole' on node 'n'."},
        {"renameAttr n.whole more", "! 'n.whole' was not added to its node and cannot be renamed."},
        {"deleteAttr n.more; attributeExists more n", "int 0"},
        {"addAttr -ln extra -at double n; deleteAttr -at extra n; objExists n.extra", "int 0"},
        {"deleteAttr n.whole", "! Attribute 'whole' of node 'n' is not one that can be deleted."},
    });
}

TEST_F(Attributes, Aliases) {
    check({
        {"aliasAttr left n.weight[0] right n.weight[1]; setAttr n.left 4; getAttr n.weight[0]", "float 4"},
        {"aliasAttr -q n", "string[] left weight[0] right weight[1]"},
        {"aliasAttr -q n.weight[1]", "string right"},
        {"aliasAttr -q n.amount", "string"},
        {"aliasAttr left n.amount", "! The name 'left' is taken on node 'n'."},
        {"aliasAttr whole n.amount", "! The name 'whole' is taken on node 'n'."},
        {"aliasAttr \"a b\" n.amount", "! 'a b' cannot be an alias."},
        {"aliasAttr x n.list[0].inner[2]", "! 'n.list[0].inner[2]' cannot have an alias."},
        {"aliasAttr middle n.weight[0]; aliasAttr -q n.weight[0]", "string middle"},
        {"aliasAttr -rm n.weight[0]; aliasAttr -q n", "string[] right weight[1]"},
        {"aliasAttr -rm n.weight[0]", "! 'n.weight[0]' has no alias."},
        {"aliasAttr x", "! aliasAttr takes names and plugs in turn."},
        {"setAttr m.aal -type attributeAlias \"up\" \"posY\" \"down\" \"weight[3]\"; setAttr m.up 2;"
         "getAttr m.posY",
         "float 2"},
        {"aliasAttr -q m", "string[] up posY down weight[3]"},
        // Files declare the attribute first.
        {"addAttr -h true -sn aal -ln attributeAliasList -dt attributeAlias n;"
         "setAttr n.aal -type attributeAlias {\"top\", \"posZ\"}; objExists n.top",
         "int 1"},
        {"setAttr m.aal -type attributeAlias odd", "! The alias 'odd' comes without its attribute."},
    });
}

TEST_F(Attributes, AttributeQuery) {
    check({
        {"attributeQuery -node n -exists posY", "int 1"},
        {"attributeQuery -n n -ex nope", "int 0"},
        {"attributeQuery -typ probe -ex posY", "int 1"},
        {"attributeQuery -n n -ln ra", "string ratio"},
        {"attributeQuery -n n -sn ratio", "string ra"},
        {"attributeQuery -n n -nn entryMode", "string Entry Mode"},
        {"attributeQuery -n n -at rot", "string double3"},
        {"attributeQuery -n n -min ratio", "float[] 0"},
        {"attributeQuery -n n -max ratio", "float[] 1"},
        {"attributeQuery -n n -max amount", "float[]"},
        {"attributeQuery -n n -mxe ratio", "int 1"},
        {"attributeQuery -n n -r ratio", "float[] 0 1"},
        {"attributeQuery -n n -k ratio", "int 1"},
        {"attributeQuery -n n -m weight", "int 1"},
        {"attributeQuery -n n -mi whole", "int 0"},
        {"attributeQuery -n n -le mode", "string[] Off:On:Auto"},
        {"attributeQuery -n n -ld tint", "float[] 1 0.5 0.25"},
        {"attributeQuery -n n -nc pos", "int[] 3"},
        {"attributeQuery -n n -lc pos", "string[] posX posY posZ"},
        {"attributeQuery -n n -ls posY", "string[] posX posZ"},
        {"attributeQuery -n n -w sum", "int 0"},
        {"attributeQuery -n n -msg link", "int 1"},
        {"attributeQuery -n n -k nope", "! No object matches name: n.nope"},
        {"attributeQuery -ex posY", "! attributeQuery needs a node or a type to look at."},
        {"attributeExists posY q", "int 0"},
    });
}

TEST_F(Attributes, ListAttr) {
    check({
        {"addAttr -ln extra -sn ex -at double n; listAttr -ud n", "string[] extra"},
        {"listAttr -ud -sn n", "string[] ex"},
        {"listAttr -k n", "string[] ratio amount"},
        {"setAttr -k on n.posX; setAttr -k off n.ratio; listAttr -k n", "string[] amount posX"},
        {"listAttr -st \"pos*\" -st size2? n", "string[] pos posX posY posZ size2W size2H"},
        {"listAttr n.pos", "string[] pos posX posY posZ"},
        {"listAttr -lf n.pos", "string[] posX posY posZ"},
        {"setAttr -l on n.posY; listAttr -l n", "string[] posY"},
        {"setAttr n.weight[2] 1; setAttr n.weight[0] 1; listAttr -m n.weight",
         "string[] weight weight[0] weight[2]"},
        {"listAttr n.entry", "string[] entry entry.entryPosition entry.entryValue entry.entryMode"},
        {"setAttr n.list[1].inner[4] 1; listAttr -m n.list",
         "string[] list list[1] list[1].inner list[1].inner[4] list[1].tag"},
        {"listAttr -o -st \"s*\" n", "string[] sum"},
        {"size(`listAttr -v -st secret n`)", "int 0"},
        {"listAttr -a n", "string[] names doubles ints vectors points"},
        {"listAttr q", "! No object matches name: q"},
    });
}

} // namespace vesk::commands
