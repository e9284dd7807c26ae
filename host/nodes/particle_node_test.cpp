#include "host/data/array_data.h"
#include "host/nodes/particle_node.h"
#include "host/nodes/test_scene.h"

namespace vesk::nodes {
namespace {

using ParticleTest = NodesTest;

TEST_F(ParticleTest, ArraysStartAsTheirTwinsAndReachTheWorld) {
    Node& transform = make("transform", "t");
    auto& node = make<ParticleNode>("nParticle", "p", &transform);
    EXPECT_TRUE(node.hasFn(MFn::kParticle));
    EXPECT_EQ(get("p.count"), 0);
    EXPECT_FALSE(getData<VectorArrayData>("p.worldPosition"));
    setData("p.pos0", makeRef<VectorArrayData>(std::vector<MVector>{{1, 0, 0}, {0, 2, 0}}));
    EXPECT_EQ(get("p.cnt"), 2);
    set("t.translate", {0, 0, 5});
    set("t.scale", {2, 2, 2});
    const auto world = getData<VectorArrayData>("p.wps");
    ASSERT_TRUE(world);
    EXPECT_TRUE(isNear(world->values.read()[1], MVector(0, 4, 5)));
    setData("p.vel", makeRef<VectorArrayData>(std::vector<MVector>{{1, 1, 1}}));
    EXPECT_TRUE(isNear(getData<VectorArrayData>("p.worldVelocity")->values.read()[0], MVector(2, 2, 2)))
        << "directions do not move";
    set("t.tz", 6);
    EXPECT_TRUE(isNear(getData<VectorArrayData>("p.wps")->values.read()[1], MVector(0, 4, 6)));
    EXPECT_TRUE(node.ownBounds().max().isEquivalent(MPoint(1, 2, 0)));
}

TEST_F(ParticleTest, AddedArraysHaveTwinsToo) {
    auto& node = make<ParticleNode>("particle", "p");
    for (const char* name : {"rgbPP", "rgbPP0"})
        ASSERT_TRUE(node.addDynamicAttribute(graph::typed(name, name, MFnData::kVectorArray)));
    ASSERT_TRUE(node.addDynamicAttribute(graph::typed("size0", "size0", MFnData::kDoubleArray)));
    setData("p.rgbPP0", makeRef<VectorArrayData>(std::vector<MVector>{{0, 1, 0}}));
    EXPECT_EQ(getData<VectorArrayData>("p.rgbPP")->values.read().size(), 1U);
    setData("p.size0", makeRef<DoubleArrayData>(std::vector<double>{1}));
}

} // namespace
} // namespace vesk::nodes
