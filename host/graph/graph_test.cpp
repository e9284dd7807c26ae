// Dirt, evaluation, wires, names and times on small graphs of test nodes.

#include "host/core/log.h"
#include "host/data/value_data.h"
#include "host/graph/glob.h"
#include "host/graph/scene.h"

#include <gtest/gtest.h>

namespace vesk::graph {
namespace {

/// out = in + 1; pair out (sum, product) of a double2; counts its computes.
class Adder : public Node {
  public:
    using Node::Node;
    int computes = 0;
    bool readsBoth = false;

    static inline AttrRef in, second, pairIn, out, pairOut, list, total, matrixIn, stamp;

    ComputeResult compute(Cell& requested) override {
        ++computes;
        if (&requested.attr == out.get()) {
            const double more = readsBoth ? pullNumber(cell(*second)) : 0;
            putNumber(requested, pullNumber(cell(*in)) + 1 + more);
            return ComputeResult::Done;
        }
        if (&requested.attr == pairOut.get() || requested.attr.parent == pairOut.get()) {
            const auto values = pullNumbers(cell(*pairIn));
            putNumber(cell(*pairOut).child(0), values[0] + values[1]);
            putNumber(cell(*pairOut).child(1), values[0] * values[1]);
            return ComputeResult::Done;
        }
        if (&requested.attr == total.get()) {
            clean(cell(*list));
            double sum = 0;
            for (auto& element : cell(*list).children)
                sum += element->number;
            putNumber(requested, sum);
            return ComputeResult::Done;
        }
        return ComputeResult::NotMine;
    }
};

class GraphTest : public ::testing::Test {
  protected:
    void SetUp() override {
        log().keepEntries(true);
        (void)log().take();
        registerBaseTypes(types);
        auto type = std::make_unique<NodeType>("adder", MFn::kPluginDependNode, types.find("node"),
                                               [](const NodeType& t) { return makeRef<Adder>(t); });
        auto& t = *type;
        Adder::in = t(real("in", "i"));
        Adder::second = t(real("second", "s2"));
        Adder::pairIn = t(tuple("pairIn", "pi", MFnNumericData::k2Double, {"A", "B"}));
        Adder::list = t(real("list", "l")->multi());
        Adder::matrixIn = t(matrix("matrixIn", "mi"));
        Adder::stamp = t(integer("stamp", "st", 7)->asKeyable());
        Adder::out = t(real("out", "o")->output());
        Adder::pairOut = t(tuple("pairOut", "po", MFnNumericData::k2Double, {"Sum", "Product"})->output());
        for (auto& child : Adder::pairOut->children)
            child->writable = false;
        Adder::total = t(real("total", "to")->output());
        t.affectsAll({Adder::in, Adder::second}, {Adder::out});
        t.affectsAll({Adder::pairIn}, {Adder::pairOut});
        t.affectsAll({Adder::list}, {Adder::total});
        ASSERT_TRUE(types.add(std::move(type)));
        auto transform = std::make_unique<NodeType>("group", MFn::kTransform, types.find("dagNode"),
                                                    [](const NodeType& nt) { return makeRef<DagNode>(nt); });
        ASSERT_TRUE(types.add(std::move(transform)));
        scene = std::make_unique<Scene>(types);
    }
    void TearDown() override {
        scene.reset();
        for (const auto& entry : log().take())
            ADD_FAILURE() << "unannounced message: " << entry.text;
        log().keepEntries(false);
    }

    Ref<Adder> adder(const char* name = "") {
        return Ref<Adder>(static_cast<Adder*>(scene->create(*types.find("adder"), name).get()));
    }
    Ref<DagNode> group(const char* name, DagNode* parent = nullptr) {
        return Ref<DagNode>(static_cast<DagNode*>(scene->create(*types.find("group"), name, parent).get()));
    }
    static Cell& in(Adder& node) { return node.cell(*Adder::in); }
    static Cell& out(Adder& node) { return node.cell(*Adder::out); }
    std::string only(LogLevel level) {
        const auto entries = log().take();
        if (entries.size() != 1 || entries[0].level != level)
            return "(" + std::to_string(entries.size()) + " messages)";
        return entries[0].text;
    }

    TypeRegistry types;
    std::unique_ptr<Scene> scene;
};

TEST_F(GraphTest, ComputesOncePerDirtyingAndOnlyWhenPulled) {
    const auto a = adder(), b = adder();
    ASSERT_TRUE(connect(out(*a), in(*b)));
    ASSERT_TRUE(storeNumber(in(*a), 5));
    EXPECT_EQ(a->computes, 0);
    EXPECT_EQ(pullNumber(out(*b)), 7);
    EXPECT_EQ(pullNumber(out(*b)), 7);
    EXPECT_EQ(a->computes, 1);
    EXPECT_EQ(b->computes, 1);
    ASSERT_TRUE(storeNumber(in(*a), 6));
    ASSERT_TRUE(storeNumber(in(*a), 7));
    EXPECT_EQ(b->computes, 1);
    EXPECT_EQ(pullNumber(out(*b)), 9);
    EXPECT_EQ(a->computes, 2);
    // An input that affects nothing that is asked for leaves results alone.
    ASSERT_TRUE(storeNumber(a->cell(*Adder::stamp), 3));
    EXPECT_EQ(pullNumber(out(*b)), 9);
    EXPECT_EQ(a->computes, 2);
}

TEST_F(GraphTest, InputNotReadStaysLazyUntilItIs) {
    const auto a = adder(), b = adder(), c = adder();
    ASSERT_TRUE(connect(out(*a), in(*c)));
    ASSERT_TRUE(connect(out(*b), c->cell(*Adder::second)));
    EXPECT_EQ(pullNumber(out(*c)), 2);
    EXPECT_EQ(b->computes, 0);
    c->readsBoth = true;
    ASSERT_TRUE(storeNumber(in(*a), 1));
    ASSERT_TRUE(storeNumber(in(*b), 10));
    EXPECT_EQ(pullNumber(out(*c)), 2 + 1 + 11);
    ASSERT_TRUE(storeNumber(in(*b), 20));
    EXPECT_EQ(pullNumber(out(*c)), 2 + 1 + 21);
}

TEST_F(GraphTest, CompoundsAndMultisCarryDirtBothWays) {
    const auto a = adder(), b = adder();
    Cell& pairIn = a->cell(*Adder::pairIn);
    ASSERT_TRUE(storeNumber(pairIn.child(0), 3));
    ASSERT_TRUE(storeNumber(pairIn.child(1), 4));
    EXPECT_EQ(pullNumber(a->cell(*Adder::pairOut).child(1)), 12);
    EXPECT_EQ(a->computes, 1);
    EXPECT_EQ(pullNumbers(a->cell(*Adder::pairOut)), (std::vector<double>{7, 12}));
    EXPECT_EQ(a->computes, 1) << "the first compute filled both children";
    // Whole pair into whole pair; then one child changes upstream.
    ASSERT_TRUE(connect(a->cell(*Adder::pairOut), b->cell(*Adder::pairIn)));
    EXPECT_EQ(pullNumbers(b->cell(*Adder::pairOut)), (std::vector<double>{19, 84}));
    ASSERT_TRUE(storeNumber(pairIn.child(0), 1));
    EXPECT_EQ(pullNumbers(b->cell(*Adder::pairOut)), (std::vector<double>{9, 20}));
    // Elements of a multi, and an element taken away.
    Cell& list = b->cell(*Adder::list);
    ASSERT_TRUE(connect(out(*a), list.element(5)));
    ASSERT_TRUE(storeNumber(list.element(2), 30));
    EXPECT_EQ(pullNumber(b->cell(*Adder::total)), 31);
    ASSERT_TRUE(storeNumber(in(*a), 9));
    EXPECT_EQ(pullNumber(b->cell(*Adder::total)), 40);
    EXPECT_EQ(list.existingIndices(), (std::vector<int>{2, 5}));
    EXPECT_EQ(Plug(list.element(5)).name(), "adder2.list[5]");
}

TEST_F(GraphTest, FlagsAndTypesAreEnforced) {
    const auto a = adder(), b = adder();
    const auto refused = [](const Outcome& outcome, const char* part) {
        EXPECT_FALSE(outcome);
        EXPECT_NE(outcome.error.find(part), std::string::npos) << outcome.error;
    };
    refused(storeNumber(out(*a), 1), "'adder1.out' is not writable");
    refused(connect(out(*a), out(*b)), "'adder2.out' is not writable");
    refused(connect(out(*a), b->cell(*Adder::matrixIn)), "double into matrix");
    refused(connect(in(*a), in(*a)), "cannot feed itself");
    ASSERT_TRUE(connect(out(*a), in(*b)));
    refused(storeNumber(in(*b), 1), "'adder2.in' is locked or connected");
    refused(connect(b->cell(*Adder::second), in(*b)), "already has an incoming connection from 'adder1.out'");
    EXPECT_TRUE(connect(b->cell(*Adder::second), in(*b), true));
    EXPECT_TRUE(out(*a).destinations.empty());
    refused(disconnect(out(*a), in(*b)), "There is no connection from 'adder1.out' to 'adder2.in'");
    b->cell(*Adder::stamp).locked = true;
    refused(storeNumber(b->cell(*Adder::stamp), 1), "'adder2.stamp' is locked or connected");
    refused(connect(out(*a), b->cell(*Adder::stamp)), "is locked");
    refused(b->addDynamicAttribute(real("in", "x")), "existing attribute 'in'");
}

TEST_F(GraphTest, CyclesAreReportedAndSurvived) {
    const auto a = adder(), b = adder();
    ASSERT_TRUE(connect(out(*a), in(*b)));
    ASSERT_TRUE(connect(out(*b), in(*a)));
    EXPECT_EQ(pullNumber(out(*b)), 2);
    EXPECT_EQ(only(LogLevel::Warning), "Cycle on 'adder2.out' may not evaluate as expected.");
    // Inputs that feed each other, with no compute in between.
    const auto c = adder(), d = adder();
    ASSERT_TRUE(connect(in(*c), in(*d)));
    ASSERT_TRUE(connect(in(*d), in(*c)));
    EXPECT_EQ(pullNumber(out(*d)), 1);
    EXPECT_EQ(only(LogLevel::Warning), "Cycle on 'adder4.in' may not evaluate as expected.");
}

TEST_F(GraphTest, VeryLongChainsEvaluateWithoutDeepRecursion) {
    constexpr int kLength = 100000;
    std::vector<Ref<Adder>> chain;
    for (int i = 0; i < kLength; ++i) {
        chain.push_back(adder());
        if (i == 0) continue;
        ASSERT_TRUE(connect(out(*chain[chain.size() - 2]), in(*chain.back())));
    }
    EXPECT_EQ(pullNumber(out(*chain.back())), kLength);
    ASSERT_TRUE(storeNumber(in(*chain[0]), 0.5));
    EXPECT_EQ(pullNumber(out(*chain.back())), kLength + 0.5);
    EXPECT_EQ(chain[50000]->computes, 2);
    // The same through inputs that feed inputs.
    const auto first = adder();
    Adder* last = first.get();
    for (int i = 0; i < kLength; ++i) {
        const auto next = adder();
        ASSERT_TRUE(connect(in(*last), in(*next)));
        last = next.get();
    }
    ASSERT_TRUE(storeNumber(in(*first), 41));
    EXPECT_EQ(pullNumber(out(*last)), 42);
}

TEST_F(GraphTest, BlockingKeepsTheDestinationsValue) {
    const auto a = adder(), b = adder();
    ASSERT_TRUE(connect(out(*a), in(*b)));
    EXPECT_EQ(pullNumber(out(*b)), 2);
    ASSERT_TRUE(storeNumber(a->cell(*a->findAttribute("nodeState")), 2));
    ASSERT_TRUE(storeNumber(in(*a), 10));
    EXPECT_EQ(pullNumber(out(*b)), 2);
    EXPECT_EQ(a->computes, 1);
    EXPECT_EQ(pullNumber(out(*a)), 11) << "a direct pull still computes";
    ASSERT_TRUE(storeNumber(in(*a), 20));
    ASSERT_TRUE(storeNumber(a->cell(*a->findAttribute("nodeState")), 0));
    EXPECT_EQ(pullNumber(out(*b)), 22) << "another state, another answer";
    ASSERT_TRUE(storeNumber(a->cell(*a->findAttribute("nodeState")), 2));
    ASSERT_TRUE(storeNumber(in(*a), 30));
    EXPECT_EQ(pullNumber(out(*b)), 22) << "its source is dirty still";
    ASSERT_TRUE(storeNumber(a->cell(*a->findAttribute("nodeState")), 0));
    EXPECT_EQ(pullNumber(out(*b)), 32);
}

TEST_F(GraphTest, OtherContextsLeaveNoTrace) {
    const auto a = adder(), b = adder();
    ASSERT_TRUE(connect(out(*a), in(*b)));
    ASSERT_TRUE(storeNumber(in(*a), 1));
    EXPECT_EQ(pullNumber(out(*b)), 3);
    {
        const Preserve other(*scene);
        ASSERT_TRUE(storeNumber(in(*a), 100));
        EXPECT_EQ(pullNumber(out(*b)), 102);
    }
    const int computes = b->computes;
    EXPECT_EQ(in(*a).number, 1);
    EXPECT_EQ(pullNumber(out(*b)), 3);
    EXPECT_EQ(b->computes, computes) << "what was clean before is clean again";
}

TEST_F(GraphTest, PlugNames) {
    const auto a = adder("n");
    const auto found = [&](const char* text) {
        const PlugRange range = findPlug(*scene, text);
        return range.error.empty() ? range.plug.name() : "error: " + range.error;
    };
    EXPECT_EQ(found("n.i"), "n.in");
    EXPECT_EQ(found("n.pairIn.pairInA"), "n.pairInA");
    EXPECT_EQ(found("n.pib"), "n.pairInB");
    EXPECT_EQ(found("n.list[12]"), "n.list[12]");
    EXPECT_EQ(found(":n.l"), "n.list");
    for (const char* bad :
         {"n.nope", "m.in", "n.in[0]", "n.list[x]", "n.list[1", "n.list[1].in", "n.", "n", "n.in."}) {
        EXPECT_EQ(found(bad).substr(0, 6), "error:") << bad;
    }
    const PlugRange range = findPlug(*scene, "n.list[2:5]");
    EXPECT_EQ(range.first, 2);
    EXPECT_EQ(range.last, 5);
    EXPECT_TRUE(range.plug.isArray());
    EXPECT_FALSE(findPlug(*scene, "n.list[5:2]").error.empty());
    a->aliases.push_back({"weight", Adder::list, 3});
    EXPECT_EQ(found("n.weight"), "n.weight");
    EXPECT_EQ(Plug(a->cell(*Adder::list).element(3)).name(), "n.weight");
}

TEST_F(GraphTest, NamesAndPaths) {
    EXPECT_EQ(adder()->name(), "adder1");
    EXPECT_EQ(adder("a1")->name(), "a1");
    EXPECT_EQ(adder("a1")->name(), "a2");
    EXPECT_EQ(adder("b#")->name(), "b1");
    EXPECT_EQ(adder("bad name!")->name(), "bad_name_");
    scene->remove(*scene->find("adder1"));
    EXPECT_EQ(adder()->name(), "adder1") << "the lowest free number";
    const auto top = group("top"), other = group("other");
    const auto leaf = group("leaf", top.get()), second = group("leaf", other.get());
    EXPECT_EQ(second->name(), "leaf") << "siblings only need to differ";
    EXPECT_EQ(leaf->uniqueName(), "top|leaf");
    EXPECT_EQ(scene->find("other|leaf"), second.get());
    EXPECT_EQ(scene->find("|top|leaf"), leaf.get());
    bool ambiguous = false;
    EXPECT_EQ(scene->find("leaf", &ambiguous), nullptr);
    EXPECT_TRUE(ambiguous);
    EXPECT_EQ(scene->match("l*f").size(), 2U);
    EXPECT_EQ(scene->match("top|*").size(), 1U);
    ASSERT_TRUE(scene->rename(*second, "top"));
    EXPECT_EQ(second->name(), "top");
    EXPECT_FALSE(scene->reparent(*top, leaf.get())) << "not below itself";
    // Instances: two paths, and only the last one takes the node along.
    ASSERT_TRUE(scene->reparent(*leaf, other.get(), true));
    ASSERT_EQ(pathCount(*leaf), 2);
    EXPECT_EQ(allPaths(*leaf)[1].fullName(), "|other|leaf");
    scene->remove(*top);
    EXPECT_TRUE(leaf->isAlive());
    EXPECT_EQ(leaf->uniqueName(), "leaf");
    scene->remove(*other);
    EXPECT_FALSE(leaf->isAlive());
    EXPECT_TRUE(globMatches("a*b?d", "axxbcd"));
    EXPECT_FALSE(globMatches("a*b?d", "axxbd"));
}

TEST_F(GraphTest, RemovingNodesCutsWiresAndEmptiesSelections) {
    const auto a = adder(), b = adder();
    ASSERT_TRUE(connect(out(*a), in(*b)));
    EXPECT_EQ(pullNumber(out(*b)), 2);
    SelectionItem item;
    item.node = a;
    scene->selection.add(item);
    scene->remove(*a);
    EXPECT_EQ(in(*b).source, nullptr);
    EXPECT_EQ(pullNumber(out(*b)), 2) << "the last value stays";
    EXPECT_TRUE(scene->selection.items().empty());
    EXPECT_EQ(scene->nodeCount(), 1U);
}

TEST_F(GraphTest, NumbersAreHeldInTheirType) {
    EXPECT_EQ(integer("a", "a")->coerced(2.9), 2);
    EXPECT_EQ(integer("a", "a")->coerced(-1e99), -2147483648.0);
    EXPECT_EQ(integer("a", "a")->coerced(std::nan("")), 0);
    EXPECT_EQ(boolean("a", "a")->coerced(0.5), 1);
    EXPECT_EQ(number("a", "a", MFnNumericData::kByte)->coerced(300), 255);
    EXPECT_EQ(number("a", "a", MFnNumericData::kFloat)->coerced(0.1), static_cast<double>(0.1F));
    EXPECT_EQ(framesPerSecond("pal"), 25);
    EXPECT_EQ(framesPerSecond("29.97fps"), 29.97);
    EXPECT_EQ(framesPerSecond("-3fps"), 0);
}

} // namespace
} // namespace vesk::graph
