#include "host/commands/probe_scene.h"

#include "host/data/array_data.h"
#include "host/data/packed_data.h"

#include <numbers>

namespace vesk::commands {

namespace {

class SetAndGet : public ProbeScene {};

} // namespace

TEST_F(SetAndGet, NumbersOfEveryKind) {
    check({
        {"setAttr n.flag on", "-"},
        {"getAttr n.flag", "int 1"},
        {"setAttr n.fl 0; getAttr n.flag", "int 0"},
        {"setAttr n.small 7; getAttr n.small", "int 7"},
        {"setAttr n.shorty \"12\"; getAttr n.shorty", "int 12"},
        {"setAttr n.whole -4.9; getAttr n.whole", "int -4"},
        {"setAttr n.amount 0.1; getAttr n.amount", "float 0.1"},
        {"getAttr n.sum", "float -3.8"},
        {"setAttr n.ratio 0.1; getAttr n.ratio", "float 0.1000000015"},
        {"setAttr n.mode 2; getAttr n.mode", "int 2"},
        {"getAttr -asString n.mode", "string Auto"},
        {"setAttr n.pos 1 2 3; getAttr n.pos", "float[] 1 2 3"},
        {"setAttr -type double3 n.pos 4 5 6; getAttr n.posY", "float 5"},
        {"setAttr n.pos.posX 9 ; getAttr n.psx", "float 9"},
        {"setAttr n.pos -type \"double3\" 7 8 9; getAttr n.ps", "float[] 7 8 9"},
        {"vector $v = <<1, 2, 3>>; setAttr n.pos $v; getAttr n.pos", "float[] 1 2 3"},
        {"setAttr n.size2 3 4; getAttr n.size2", "int[] 3 4"},
        {"getAttr n.tint", "float[] 1 0.5 0.25"},
        {"setAttr -type \"float3\" n.tint 0 1 0; getAttr n.tintG", "float 1"},
    });
}

TEST_F(SetAndGet, CommandsSpeakTheUnitsOfTheInterface) {
    check({
        {"setAttr n.turn 180; getAttr n.turn", "float 180"},
        {"setAttr n.rot 90 0 -90; getAttr n.rot", "float[] 90 0 -90"},
        {"setAttr n.moment 10; getAttr n.moment", "float 10"},
        {"setAttr n.reach 2; getAttr n.reach", "float 2"},
    });
    const auto number = [&](const char* name) { return n->cell(*n->findAttribute(name)).number; };
    EXPECT_DOUBLE_EQ(number("turn"), std::numbers::pi);
    EXPECT_DOUBLE_EQ(number("rotX"), std::numbers::pi / 2);
    EXPECT_DOUBLE_EQ(number("moment"), 2500); // 24 frames a second, 6000 ticks
    EXPECT_DOUBLE_EQ(number("reach"), 2);
}

TEST_F(SetAndGet, DataOfEveryType) {
    check({
        {"getAttr n.label", "string none"},
        {"setAttr -type \"string\" n.label \"a b\"; getAttr n.label", "string a b"},
        {"setAttr n.label -type \"string\" \"-dash\"; getAttr n.label", "string -dash"},
        {"setAttr n.label \"behind\" -type string; getAttr n.label", "string behind"},
        {"setAttr -type string n.label 5; getAttr n.label", "string 5"},
        {"setAttr -type string n.label \"\"; getAttr n.label", "string"},
        {"setAttr -type \"matrix\" n.mat 1 0 0 0 0 1 0 0 0 0 1 0 7 8 9 1; getAttr n.mat",
         "float[] 1 0 0 0 0 1 0 0 0 0 1 0 7 8 9 1"},
        {"setAttr -type stringArray n.names 2 \"a\" \"b c\"; getAttr -size n.names", "int 2"},
        {"getAttr n.names", "string[] a b c"},
        {"setAttr -type doubleArray n.doubles 3 1 2.5 -1e3; getAttr n.doubles", "float[] 1 2.5 -1000"},
        {"setAttr -type doubleArray n.doubles 0; getAttr n.doubles", "float[]"},
        {"setAttr -type Int32Array n.ints 2 4 -5; getAttr n.ints", "int[] 4 -5"},
        {"setAttr -type vectorArray n.vectors 2 1 2 3 4 5 6; getAttr n.vectors", "float[] 1 2 3 4 5 6"},
        {"vector $w[] = {<<1, 2, 3>>, <<4, 5, 6>>, <<7, 8, 9>>};"
         "setAttr -type vectorArray n.vectors (size($w)) $w; getAttr -size n.vectors",
         "int 3"},
        {"setAttr -type pointArray n.points 1 1 2 3 0.5; getAttr n.points", "float[] 1 2 3 0.5"},
        {"setAttr -type componentList n.parts 2 \"vtx[0:2]\" \"vtx[5]\"; getAttr n.parts",
         "string[] vtx[0:2] vtx[5]"},
        {"setAttr -type floatArray n.anything 2 0.5 1.5; getAttr n.anything", "float[] 0.5 1.5"},
        // Without data: empty, or nothing where it could be anything.
        {"getAttr m.doubles", "float[]"},
        {"getAttr m.names", "string[]"},
        {"getAttr m.ints", "int[]"},
        {"getAttr -size m.parts", "int 0"},
        {"getAttr m.open", "-"},
    });
}

TEST_F(SetAndGet, ArraysThatWereReadAreTheReadersOwn) {
    const auto bare = [&](const char* call) { return machine.run(call).value; };
    check({{"setAttr -type doubleArray n.doubles 3 1 2 3; float $a[] = `getAttr n.doubles`;"
            "float $b[] = $a; $a[0] = 9; getAttr n.doubles",
            "float[] 1 2 3"},
           {"size($b) + $b[0] * 10 + $a[0] * 100", "float 913"},
           {"setAttr -type Int32Array n.ints 2 4 -5; int $i[] = `getAttr n.ints`; $i[5] = 1; getAttr n.ints",
            "int[] 4 -5"}});
    // Nor do they follow what is written in place behind them.
    const mel::Value read = bare("getAttr n.doubles");
    auto* data = dynamic_cast<DoubleArrayData*>(n->cell(*n->findAttribute("doubles")).data.get());
    ASSERT_NE(data, nullptr);
    data->values.write()[1] = 7;
    EXPECT_EQ(show(read), "float[] 1 2 3");
    EXPECT_EQ(run("getAttr n.doubles"), "float[] 1 7 3");
}

TEST_F(SetAndGet, MatricesInTheirComponents) {
    check({
        // Scale 2, a quarter turn about z, then a move; the joint turns back by a quarter.
        {"setAttr -type matrix n.mat xform 2 2 2 0 0 1.5707963267948966 0 1 2 3 0 0 0"
         " 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1 0 0 -0.70710678118654752 0.70710678118654752 1 1 1 yes;"
         "float $f[] = `getAttr n.mat`; int $i; int $r[]; for ($i = 0; $i < 16; $i++)"
         " $r[$i] = floor($f[$i] + 0.5); int $out[] = $r; $out = $out",
         "int[] 2 0 0 0 0 2 0 0 0 0 2 0 1 2 3 1"},
        // The parent's scale is taken out, but not from the place.
        {"setAttr -type matrix n.mat xform 2 2 2 0 0 0 0 1 2 3 0 0 0"
         " 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1 0 0 0 1 0.5 1 1 yes; getAttr n.mat",
         "float[] 1 0 0 0 0 2 0 0 0 0 2 0 1 2 3 1"},
        {"setAttr -type matrix n.mat xform 2 2 2 0 0 0 6 1 2 3 0 0 0"
         " 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1 0 0 0 1 1 1 1 yes",
         "! The rotation order of a matrix is from 0 to 5."},
        {"setAttr -type matrix n.mat xform 2 2 2", "! Error reading data element number 4."},
        {"setAttr -type matrix n.mat form", "! A matrix begins with a number or 'xform', not 'form'."},
    });
}

TEST_F(SetAndGet, AttributesOfSeveralTypes) {
    check({
        {"getAttr -type m.open", "string"},
        {"setAttr m.open 4; getAttr m.open", "float 4"},
        {"getAttr -type m.open", "string double"},
        {"setAttr -type double3 m.open 1 2 3; getAttr m.open", "float[] 1 2 3"},
        {"getAttr -type m.open", "string double3"},
        {"setAttr -type doubleArray m.open 1 7; getAttr m.open", "float[] 7"},
        {"getAttr -type m.open", "string doubleArray"},
        {"setAttr -type pointArray m.open 0",
         "! The attribute 'm.open' cannot be set to data of type 'pointArray'."},
    });
}

TEST_F(SetAndGet, MultisAndRanges) {
    check({
        {"setAttr n.weight[2] 5; setAttr n.w[4] 6; getAttr n.weight", "float[] 5 6"},
        {"getAttr n.weight[3]", "float 0"},
        {"getAttr -size n.weight", "int 2"},
        {"getAttr -multiIndices n.weight", "int[] 2 4"},
        {"setAttr -s 3 \"n.weight[0:2]\" 1 2 3; getAttr n.weight[1:2]", "float[] 2 3"},
        {"setAttr -s 2 \"n.entry[0:1]\" 0 0.5 1 1 0.25 0; getAttr n.entry[1]", "float[] 1 0.25 0"},
        {"getAttr n.entry[0].entryMode", "int 1"},
        {"setAttr \"n.entry[0:1].entryValue\" 7 8; getAttr \"n.en[0:1].ev\"", "float[] 7 8"},
        {"setAttr n.list[1].inner[0:1] 3 4; getAttr n.list[1].inner", "float[] 3 4"},
        {"getAttr \"n.list[*].inner[1]\"", "float[] 4"},
        {"setAttr -type string n.lines[0:1] \"x\" \"y z\"; getAttr n.lines", "string[] x y z"},
        {"getAttr m.weight", "float[]"},
    });
}

TEST_F(SetAndGet, LocksLimitsAndFlags) {
    check({
        {"setAttr n.ratio 2", "! Cannot set the attribute 'n.ratio' past its maximum value of 1."},
        {"setAttr n.ratio -1", "! Cannot set the attribute 'n.ratio' past its minimum value of 0."},
        {"getAttr n.ratio", "float 0.5"},
        {"setAttr -clamp n.ratio 2; getAttr n.ratio", "float 1"},
        {"setAttr -lock on n.amount", "-"},
        {"setAttr n.amount 2", "! The attribute 'n.amount' is locked or connected and cannot be modified."},
        {"getAttr -lock n.amount", "int 1"},
        {"getAttr -settable n.amount", "int 0"},
        {"setAttr -l off n.amount 2; getAttr n.amount", "float 2"},
        {"setAttr -l on n.amount 3; getAttr n.amount", "float 3"},
        {"setAttr -lock on n.posY; setAttr n.pos 7 7 7",
         "! The attribute 'n.posY' is locked or connected and cannot be modified."},
        {"getAttr n.pos", "float[] 0 0 0"},
        {"connectAttr n.whole m.amount; setAttr m.amount 1",
         "! The attribute 'm.amount' is locked or connected and cannot be modified."},
        {"setAttr n.sum 4", "! The attribute 'n.sum' is not writable."},
        {"getAttr -settable n.sum", "int 0"},
        {"getAttr -keyable n.ratio", "int 1"},
        {"setAttr -k off -cb on n.ratio; getAttr -k n.ratio", "int 0"},
        {"getAttr -cb n.ratio", "int 1"},
    });
}

TEST_F(SetAndGet, WrongValuesChangeNothing) {
    check({
        {"setAttr n.nope 1", "! No object matches name: n.nope"},
        {"setAttr q.whole 1", "! No object matches name: q.whole"},
        {"setAttr n 1", "! No attribute was named in 'n'."},
        {"setAttr n.whole", "! No value was given for 'n.whole'."},
        {"setAttr n.whole 1 2", "! There are more values than the attribute takes, from 2 on."},
        {"getAttr n.whole", "int 3"},
        {"setAttr n.pos 1 2", "! Error reading data element number 3."},
        {"setAttr n.pos 1 \"x\" 2", "! Error reading data element number 2: x."},
        {"setAttr n.label 5", "! The data is not a numeric value, so the -type flag must be used for "
                              "'n.label'. Type: string."},
        {"setAttr n.link 1", "! Message attributes such as 'n.link' have no data values."},
        {"setAttr n.weight 1", "! 'n.weight' is a multi: name the elements that are to be set."},
        {"setAttr n.list[0] 1", "! The compound attribute 'n.list[0]' does not hold numbers alone."},
        {"setAttr n.tag -type string x", "! The index of an element is missing in 'n.list[-1].tag'."},
        {"setAttr -type double2 n.pos 1 2",
         "! The attribute 'n.pos' cannot be set to data of type 'double2'."},
        {"setAttr -type doubleArray n.names 1 2",
         "! The attribute 'n.names' cannot be set to data of type 'doubleArray'."},
        {"setAttr -type noSuch n.doubles 1", "! The attribute 'n.doubles' cannot be set to data of type "
                                             "'noSuch'."},
        {"setAttr -bogus n.whole 1", "! Invalid flag '-bogus'."},
        {"setAttr n.weight[-1] 1", "! Bad index in plug name: n.weight[-1]"},
        {"setAttr n.weight[0:2000000000] 1",
         "! 'n.weight'[0:2000000000] names more elements than there can be values."},
        {"getAttr n.weight[0:2000000000]", "! 'n.weight[0:2000000000]' names too many elements."},
        {"getAttr -size n.weight", "int 0"},
    });
}

TEST_F(SetAndGet, CountsAreChecked) {
    check({
        {"setAttr -type doubleArray n.doubles 1 5", "-"},
        {"setAttr -type doubleArray n.doubles -1", "! There cannot be -1 values."},
        {"setAttr -type doubleArray n.doubles 1.5 1", "! There cannot be 1.5 values."},
        {"setAttr -type doubleArray n.doubles", "! No value was given for 'n.doubles'."},
        {"setAttr -type doubleArray n.doubles x", "! The number of values is missing."},
        {"setAttr -type doubleArray n.doubles 3 1 2",
         "! 3 values are announced, but the values end before that."},
        {"setAttr -type doubleArray n.doubles 1e15 1",
         "! 1000000000000000 values are announced, but the values end before that."},
        {"setAttr -type doubleArray n.doubles 2 1 y", "! Error reading data element number 2: y."},
        {"setAttr -type vectorArray n.vectors 2 1 2 3 4 5",
         "! 2 vectors are announced, but the values end before that."},
        {"setAttr -type stringArray n.names 4e9 a",
         "! 4000000000 strings are announced, but the values end before that."},
        {"getAttr n.doubles", "float[] 5"},
    });
}

TEST_F(SetAndGet, OtherQuestions) {
    check({
        {"getAttr -type n.pos", "string double3"},
        {"getAttr -type n.turn", "string doubleAngle"},
        {"getAttr -type n.mode", "string enum"},
        {"getAttr -type n.doubles", "string doubleArray"},
        {"getAttr -type n.weight", "string TdataCompound"},
        {"getAttr -mi n.whole", "! 'n.whole' is not a multi."},
        {"getAttr n.link", "! Message attributes have no data values."},
        {"getAttr n.list[0]", "! The data of 'n.list[0]' (TdataCompound) cannot be returned by a command."},
        {"getAttr -silent n.nope", "-"},
        {"getAttr n.whole n.amount", "! getAttr takes one plug at a time."},
        {"getAttr -time 12 time1.outTime", "float 12"},
        {"getAttr time1.outTime", "float 1"},
    });
}

TEST_F(SetAndGet, NamesThatStandForOthers) {
    const auto group = scene.create(*types.find("group"), "g");
    (void)scene.create(*types.find("probeShape"), "gShape", static_cast<graph::DagNode*>(group.get()));
    check({
        {"setAttr g.roundness 4; getAttr gShape.roundness", "float 4"},
        {"setAttr .whole 8", "! No node is current that '.whole' could belong to."},
    });
    context.currentNode = m;
    check({{"setAttr .whole 8; getAttr m.whole", "int 8"}, {"getAttr .wh", "int 8"}});
}

TEST_F(SetAndGet, KeepsTypesThatNobodyReads) {
    check({{"setAttr -type dataPolyComponent n.crease Index_Data Edge 0", "-"},
           {"setAttr -type sceneEdits n.crease 0",
            "! The attribute 'n.crease' cannot be set to data of type 'sceneEdits'."}});
    const auto& data = n->cell(*n->findAttribute("crease")).data;
    const auto* kept = dynamic_cast<const OpaqueData*>(data.get());
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->words, (std::vector<std::string>{"\"Index_Data\"", "\"Edge\"", "0"}));
}

} // namespace vesk::commands
