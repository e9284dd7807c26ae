// Nodes that only keep what they are given.

#include "host/nodes/placeholder.h"

#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

class PlaceholderTest : public NodesTest {
  protected:
    std::string ensured(const std::string& name, const AttributeHint& hint) {
        const auto dot = name.find('.');
        auto* placeholder = dynamic_cast<Placeholder*>(scene->find(name.substr(0, dot)));
        if (!placeholder || !placeholder->ensure(name.substr(dot + 1), hint)) return "refused";
        const auto range = graph::findPlug(*scene, name);
        return range.plug.attr->typeName() + (range.plug.attr->array ? "[]" : "") + " " + range.plug.name();
    }
};

TEST_F(PlaceholderTest, AttributesComeToBeAsTheyAreWritten) {
    const auto& type = placeholderType(types, "mystery");
    EXPECT_EQ(&placeholderType(types, "mystery"), &type) << "one type a name";
    const auto node = scene->create(type, "x");
    EXPECT_EQ(node->apiType(), MFn::kUnknown);
    AttributeHint one, triple, text;
    one.numbers = 1;
    triple.numbers = 3;
    text.type = "string";
    EXPECT_EQ(ensured("x.amount", one), "double x.amount");
    EXPECT_EQ(ensured("x.place", triple), "double3 x.place");
    EXPECT_EQ(ensured("x.placeY", one), "double x.placeY");
    EXPECT_EQ(ensured("x.title", text), "string x.title");
    EXPECT_EQ(ensured("x.weights[0:2]", triple), "double[] x.weights");
    EXPECT_EQ(ensured("x.a[2].b[0].c", one), "double x.a[2].b[0].c");
    EXPECT_EQ(ensured("x.a[2].b[1].d", text), "string x.a[2].b[1].d") << "a compound grows";
    set("x.a[2].b[0].c", 4);
    EXPECT_EQ(get("x.a[2].b[0].c"), 4);
    EXPECT_TRUE(Placeholder::made(at("x.a[2].b[0].c").attr));
    EXPECT_FALSE(Placeholder::made(at("x.nodeState").attr));
    AttributeHint other;
    for (const char* kind : {"matrix", "doubleArray", "nurbsCurve", "float2", "long3", "someThing"}) {
        other.type = kind;
        EXPECT_EQ(ensured("x." + std::string(kind), other), std::string(kind) + " x." + kind);
    }
    for (const char* bad :
         {"x.amount[3]", "x.amount.deep", "x.", "x.1st", "x.new[", "x.new[4:2]", "x.new[-1]", "x.a b"})
        EXPECT_EQ(ensured(bad, one), "refused") << bad;
    make("mesh", "known");
    EXPECT_EQ(ensured("known.nope", one), "refused") << "only placeholders grow";
}

TEST_F(PlaceholderTest, WiresGiveTheAttributeTheShapeOfTheirOtherEnd) {
    (void)scene->create(placeholderType(types, "mystery"), "x");
    make("lambert", "skin");
    AttributeHint hint;
    const auto other = graph::findPlug(*scene, "skin.color").plug;
    hint.other = &other;
    EXPECT_EQ(ensured("x.oc", hint), "float3 x.oc");
    connect("x.oc", "skin.c");
    set("x.ocR", 0.25);
    EXPECT_EQ(get("skin.cr"), 0.25);
    hint = {};
    hint.nextAvailable = true;
    EXPECT_EQ(ensured("x.list", hint), "message[] x.list");
    connect("skin.msg", "x.list[0]");
}

TEST_F(PlaceholderTest, ShapesBelongToShadingGroups) {
    Node& transform = make("transform", "t");
    make("mesh", "m", &transform);
    make("shadingEngine", "group");
    connect("m.iog", "group.dsm[0]");
    connect("m.iog.og[1]", "group.dsm[1]");
    connect("group.mwc", "m.iog.og[1].gco");
    EXPECT_EQ(at("m.iog[0].og[1]").destinations.size(), 1U);
    make("displayLayer", "layer");
    connect("layer.di", "t.do");
    set("layer.v", 0);
    EXPECT_EQ(get("t.overrideVisibility"), 0);
}

TEST_F(PlaceholderTest, UnknownDagNodesStandInTheHierarchy) {
    EXPECT_EQ(likelyKind(false, "aShape"), PlaceholderKind::Node);
    EXPECT_EQ(likelyKind(true, "aShape1"), PlaceholderKind::Shape);
    EXPECT_EQ(likelyKind(true, "a"), PlaceholderKind::Transform);
    Node& top = make("transform", "top");
    set("top.tx", 2);
    auto& rig =
        static_cast<graph::DagNode&>(*scene->create(placeholderType(types, "rig", PlaceholderKind::Transform),
                                                    "rig", static_cast<graph::DagNode*>(&top)));
    make("mesh", "m", &rig);
    set("rig.tx", 3);
    EXPECT_EQ((MPoint() * matrixIn(at("m.worldMatrix[0]"))).x, 5);
    const auto& shape = placeholderType(types, "thing", PlaceholderKind::Shape);
    EXPECT_TRUE(shape.isShape);
    EXPECT_TRUE(shape.hasFn(MFn::kDagNode));
}

TEST_F(PlaceholderTest, EveryTypeOfTheHostComputesFromItsDefaults) {
    for (const auto* type : types.all()) {
        if (type->isAbstract) continue;
        const auto node = scene->create(*type);
        ASSERT_TRUE(node) << type->name();
        for (const auto& attribute : type->attributes()) {
            if (!node->isComputed(*attribute) || attribute->multiDepth() > (attribute->array ? 1 : 0))
                continue;
            Cell& cell = node->cell(*attribute);
            graph::clean(attribute->array ? cell.element(0) : cell);
            EXPECT_FALSE(cell.dirty) << type->name() << "." << attribute->longName;
        }
    }
    for (const auto& text : messages())
        EXPECT_TRUE(text.ends_with("' are kept, but do nothing here.")) << text;
    make("pointConstraint");
    EXPECT_EQ(messages().size(), 0U) << "said once";
}

} // namespace
} // namespace vesk::nodes
