// Multis in one flat array, and the faces of a mesh.

#include "host/commands/probe_scene.h"

#include "host/data/packed_data.h"

namespace vesk::commands {

namespace {

class Packed : public ProbeScene {
  protected:
    graph::Cell& cell(const char* name) { return n->cell(*n->findAttribute(name)); }
    const std::vector<int>& codes() {
        static const std::vector<int> none;
        const auto* faces = dynamic_cast<const PolyFacesData*>(cell("face").data.get());
        return faces ? faces->codes : none;
    }
    /// Through the stream that scene files use.
    std::string fromFile(const std::vector<mel::Value>& values) {
        std::vector<const mel::Value*> pointers;
        pointers.reserve(values.size());
        for (const auto& value : values)
            pointers.push_back(&value);
        ValueWords words(pointers);
        return setAttrFrom(context, words).error;
    }
};

using Codes = std::vector<int>;

} // namespace

TEST_F(Packed, ElementsAndTheirNumbersAreAddressed) {
    check({
        {"getAttr n.vrts", "float[]"},
        {"getAttr n.edge", "int[]"},
        {"setAttr -s 3 \"n.vrts[0:1]\" 0 0 0 1 2 3", "-"},
        {"setAttr n.vrts[2] -type \"float3\" 4 5 6; getAttr n.vt", "float[] 0 0 0 1 2 3 4 5 6"},
        {"getAttr -size n.vrts", "int 3"},
        {"getAttr -mi n.vrts", "int[] 0 1 2"},
        {"getAttr n.vrts[1]", "float[] 1 2 3"},
        {"getAttr n.vrts[1].vrtsy", "float 2"},
        {"getAttr n.vrts[1:2].vrtsy", "float[] 2 5"},
        {"setAttr n.vrts[1].vrtsz 9; getAttr n.vrts[0:1]", "float[] 0 0 0 1 2 9"},
        {"setAttr \"n.vrts[1:2].vrtsx\" 7 8; getAttr n.vrts", "float[] 0 0 0 7 2 9 8 5 6"},
        {"getAttr n.vrts[7]", "float[] 0 0 0"},
        {"setAttr n.vrts[4] 1 1 1; getAttr -size n.vrts", "int 5"},
        {"removeMultiInstance n.vrts[4]; getAttr -size n.vrts", "int 4"},
        {"removeMultiInstance n.vrts[1]; getAttr n.vrts[0:2]", "float[] 0 0 0 0 0 0 8 5 6"},
        {"setAttr n.edge[0:1] 0 1 1 1 2 0; getAttr n.edge", "int[] 0 1 1 1 2 0"},
        {"getAttr n.edge[1].edge2", "int 2"},
        {"listAttr -m n.edge[1]", "string[] edge[1] edge[1].edge1 edge[1].edge2 edge[1].edgeh"},
    });
}

TEST_F(Packed, BadStatementsLeaveTheArrayAsItWas) {
    check({
        {"setAttr n.vrts[0:1] 1 2 3 4 5 6", "-"},
        {"setAttr n.vrts[2:3] 1 2 3 4 5",
         "! There are fewer values than the elements [2:3] of 'n.vrts' need."},
        {"setAttr n.vrts[2:3] 1 2 3 4 5 x", "! Error reading data element number 6: x."},
        {"setAttr n.vrts[0:1] 9 9 9 9 9 x", "! Error reading data element number 6: x."},
        {"setAttr n.vrts[0] 9 9 9 9", "! There are more values than the attribute takes, from 9 on."},
        {"setAttr n.vrts[2000000000] 1 2 3", "! The index 2000000000 is out of range for 'n.vrts'."},
        {"setAttr n.vrts[0:2000000000] 1 2 3",
         "! There are fewer values than the elements [0:2000000000] of 'n.vrts' need."},
        {"setAttr -type float2 n.vrts[0] 1 2",
         "! The attribute 'n.vrts' cannot be set to data of type 'float2'."},
        {"setAttr n.vrts 1 2 3", "! 'n.vrts' is a multi: name the elements that are to be set."},
        {"connectAttr m.pos n.vrts[0]", "! Elements of 'n.vrts' cannot be connected."},
        {"setAttr -l on n.vrts; setAttr n.vrts[0] 0 0 0",
         "! The attribute 'n.vrts' is locked or connected and cannot be modified."},
        {"getAttr n.vrts", "float[] 1 2 3 4 5 6"},
    });
}

TEST_F(Packed, AppendingCopiesNothingAndSpareOthers) {
    check({{"setAttr n.vrts[0] 1 2 3", "-"}});
    const auto* object = cell("vrts").data.get();
    check({{"setAttr n.vrts[1] 4 5 6", "-"}});
    EXPECT_EQ(cell("vrts").data.get(), object);
    // Somebody else holds the object now: it is not written.
    const Ref<Data> held = cell("vrts").data;
    check({{"setAttr n.vrts[0] 9 9 9", "-"}, {"getAttr n.vrts", "float[] 9 9 9 4 5 6"}});
    EXPECT_EQ(dynamic_cast<PackedFloats&>(*held).values(), (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

TEST_F(Packed, FacesAppendAndReplace) {
    check({{"setAttr -s 2 n.face[0:1] -type \"polyFaces\" f 4 0 1 2 3 mu 0 4 3 2 1 0 f 3 -1 4 5", "-"}});
    EXPECT_EQ(codes(), (Codes{0, 4, 0, 1, 2, 3, 2, 0, 4, 3, 2, 1, 0, 0, 3, -1, 4, 5}));
    const auto* object = cell("face").data.get();
    check({{"setAttr n.face[2] -type \"polyFaces\" f 3 6 7 8 h 3 9 10 11 mc 1 3 0 0 0", "-"},
           {"getAttr -size n.face", "int 3"}});
    EXPECT_EQ(cell("face").data.get(), object);
    check({{"setAttr n.face[1] -type \"polyFaces\" f 4 1 1 1 1", "-"}});
    EXPECT_EQ(codes(), (Codes{0, 4, 0, 1, 2, 3, 2, 0, 4,  3,  2, 1, 0, 0, 4, 1, 1, 1, 1, //
                              0, 3, 6, 7, 8, 1, 3, 9, 10, 11, 3, 1, 3, 0, 0, 0}));
}

TEST_F(Packed, BadFacesLeaveTheRecordsAsTheyWere) {
    check({
        {"setAttr n.face[0] -type \"polyFaces\" f 3 0 1 2", "-"},
        {"setAttr n.face[2] -type \"polyFaces\" f 3 0 1 2",
         "! Face 2 of 'n.face' cannot be set before the faces in front of it."},
        {"setAttr n.face[1] -type \"polyFaces\" f 3 0 1", "! 3 ids of a face are announced, but the values "
                                                          "end before that."},
        {"setAttr n.face[1] -type \"polyFaces\" f -3 0 1", "! There cannot be -3 ids of a face."},
        {"setAttr n.face[1] -type \"polyFaces\" f 3 0 1 x", "! Error reading data element number 3: x."},
        {"setAttr n.face[1] -type \"polyFaces\" mu 0 3 0 1 2",
         "! PolyFaces data begins with a face, not with 'mu'."},
        {"setAttr n.face[1] -type \"polyFaces\" g 3 0 1 2", "! 'g' is not a record of polyFaces data."},
        {"setAttr n.face[1:2] -type \"polyFaces\" f 3 0 1 2", "! 1 faces are given where 2 are named."},
        {"setAttr n.face[0] -type \"polyFaces\" f 3 0 1 2 f 3 0 1 2",
         "! 2 faces are given where 1 are named."},
        {"setAttr n.face[1:2000000000] -type \"polyFaces\" f 3 0 1 2",
         "! There are fewer faces than the elements [1:2000000000] of 'n.face' need."},
    });
    EXPECT_EQ(codes(), (Codes{0, 3, 0, 1, 2}));
}

TEST_F(Packed, StatementsOfFilesAreReadAsAStream) {
    context.currentNode = n;
    EXPECT_EQ(fromFile({"-s", 2, ".vt[0:1]", 1, 2, 3, 4, 5, 6}), "");
    EXPECT_EQ(fromFile({".la", "-type", "string", "a -k b"}), "");
    EXPECT_EQ(fromFile({"-k", "off", "-l", true, ".am", 7}), "");
    EXPECT_EQ(fromFile({"-av", ".ps", "-type", "double3", -1, -2, -3}), "");
    check({{"getAttr n.vrts", "float[] 1 2 3 4 5 6"},
           {"getAttr n.label", "string a -k b"},
           {"getAttr -lock n.amount", "int 1"},
           {"getAttr n.amount", "float 7"},
           {"getAttr n.pos", "float[] -1 -2 -3"}});
    EXPECT_EQ(fromFile({"-zz", ".am", 7}), "Invalid flag '-zz'.");
    EXPECT_EQ(fromFile({".am", "-type"}), "Flag '-type' must have a string argument.");
    EXPECT_EQ(fromFile({".zz", 7}), "No object matches name: n.zz");
    EXPECT_EQ(fromFile({}), "Too few words: setAttr takes plug value....");
}

} // namespace vesk::commands
