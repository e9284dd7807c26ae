#include "host/core/object.h"

#include <maya/MObject.h>

#include <gtest/gtest.h>

namespace vesk {
namespace {

class Thing : public Object {
  public:
    Thing(MFn::Type kind, int& deaths) : kind_(kind), deaths_(deaths) {}
    ~Thing() override { ++deaths_; }
    MFn::Type apiType() const override { return kind_; }

  private:
    MFn::Type kind_;
    int& deaths_;
};

TEST(Kinds, AnswerForTheirAncestors) {
    for (const MFn::Type kind : {MFn::kMesh, MFn::kSurface, MFn::kShape, MFn::kDagNode, MFn::kDependencyNode,
                                 MFn::kNamedObject, MFn::kBase}) {
        EXPECT_TRUE(isKindOf(MFn::kMesh, kind)) << kind;
    }
    for (const MFn::Type kind : {MFn::kTransform, MFn::kNurbsSurface, MFn::kMeshData, MFn::kInvalid}) {
        EXPECT_FALSE(isKindOf(MFn::kMesh, kind)) << kind;
    }
    const std::pair<MFn::Type, MFn::Type> belows[] = {
        {MFn::kJoint, MFn::kTransform},
        {MFn::kNParticle, MFn::kParticle},
        {MFn::kPluginLocatorNode, MFn::kLocator},
        {MFn::kPluginDeformerNode, MFn::kGeometryFilt},
        {MFn::kPluginFieldNode, MFn::kField},
        {MFn::kPluginEmitterNode, MFn::kEmitter},
        {MFn::kMeshData, MFn::kGeometryData},
        {MFn::kData3Double, MFn::kNumericData},
        {MFn::kTimeAttribute, MFn::kUnitAttribute},
    };
    for (const auto& [kind, ancestor] : belows) {
        EXPECT_TRUE(isKindOf(kind, ancestor)) << kindName(kind);
        EXPECT_FALSE(isKindOf(ancestor, kind)) << kindName(kind);
    }
}

TEST(Kinds, EveryKindLeadsToTheBaseAndHasItsName) {
    int known = 0;
    for (int number = MFn::kInvalid; number <= MFn::kLast; ++number) {
        const auto kind = static_cast<MFn::Type>(number);
        const std::string name = kindName(kind);
        if (name == "kInvalid") continue;
        ++known;
        EXPECT_TRUE(isKindOf(kind, MFn::kBase)) << name;
    }
    EXPECT_GT(known, 120);
    EXPECT_STREQ(kindName(MFn::kNurbsTesselate), "kNurbsTesselate");
    EXPECT_STREQ(kindName(static_cast<MFn::Type>(3)), "kInvalid");
    EXPECT_FALSE(isKindOf(static_cast<MFn::Type>(3), MFn::kBase));
}

TEST(Handle, CountsReferences) {
    int deaths = 0;
    {
        MObject first(new Thing(MFn::kTransform, deaths));
        MObject second = first;
        EXPECT_TRUE(first == second);
        EXPECT_STREQ(second.apiTypeStr(), "kTransform");
        EXPECT_TRUE(second.hasFn(MFn::kDagNode));
        first = MObject::kNullObj;
        EXPECT_EQ(deaths, 0);
        EXPECT_TRUE(first.isNull());
        EXPECT_EQ(first.apiType(), MFn::kInvalid);
        EXPECT_FALSE(first.hasFn(MFn::kBase));
        const MObject moved = std::move(second);
        EXPECT_EQ(moved.hostObject()->referenceCount(), 1u);
    }
    EXPECT_EQ(deaths, 1);
}

} // namespace
} // namespace vesk
