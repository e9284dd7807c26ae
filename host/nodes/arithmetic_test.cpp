#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

using ArithmeticTest = NodesTest;

TEST_F(ArithmeticTest, OneNumber) {
    make("unitConversion", "u");
    set("u.cf", 57.5);
    set("u.i", 2);
    EXPECT_EQ(get("u.o"), 115);
    make("addDoubleLinear", "sum");
    set("sum.i1", 2);
    set("sum.i2", 5);
    EXPECT_EQ(get("sum.o"), 7);
    connect("u.o", "sum.i1");
    EXPECT_EQ(get("sum.o"), 120);
    make("multDoubleLinear", "product");
    set("product.i1", 3);
    connect("sum.o", "product.i2");
    EXPECT_EQ(get("product.o"), 360);
}

TEST_F(ArithmeticTest, Triples) {
    make("multiplyDivide", "m");
    set("m.i1", {6, -8, 9});
    set("m.i2", {2, 0, 0.5});
    const double expected[4][3] = {{6, -8, 9}, {12, 0, 4.5}, {3, 0, 18}, {36, 1, 3}};
    for (int operation = 0; operation < 4; ++operation) {
        set("m.op", operation);
        EXPECT_EQ(graph::pullNumbers(at("m.o")),
                  std::vector<double>(expected[operation], expected[operation] + 3))
            << operation;
    }
    make("reverse", "r");
    connect("m.oy", "r.ix");
    EXPECT_EQ(get("r.ox"), 0);
    make("clamp", "c");
    set("c.mx", {1, 1, 1});
    set("c.ip", {-1, 0.5, 2});
    EXPECT_EQ(graph::pullNumbers(at("c.op")), (std::vector<double>{0, 0.5, 1}));
}

TEST_F(ArithmeticTest, ConditionsAndLists) {
    make("condition", "c");
    set("c.ct", {1, 2, 3});
    set("c.cf", {4, 5, 6});
    set("c.ft", 1);
    // Equal, not equal, greater, at least, less, at most.
    for (const auto& [second, results] : {std::pair(1.0, "100101"), {2.0, "010011"}, {0.0, "011100"}}) {
        set("c.st", second);
        for (int operation = 0; operation < 6; ++operation) {
            set("c.op", operation);
            EXPECT_EQ(get("c.ocg"), results[operation] == '1' ? 2 : 5) << second << " " << operation;
        }
    }
    make("plusMinusAverage", "p");
    for (int i = 0; i < 3; ++i) {
        set("p.i1[" + std::to_string(2 * i) + "]", 4 - i);
        set("p.i3[" + std::to_string(i) + "].input3Dy", i);
    }
    const double expected[] = {4, 9, -1, 3};
    for (int operation = 0; operation < 4; ++operation) {
        set("p.op", operation);
        EXPECT_EQ(get("p.o1"), expected[operation]) << operation;
    }
    EXPECT_EQ(get("p.output3Dy"), 1);
    EXPECT_EQ(get("p.output2Dx"), 0) << "no elements";
}

} // namespace
} // namespace vesk::nodes
