#include "host/data/geometry_data.h"

#include <maya/MPoint.h>

#include <gtest/gtest.h>

namespace vesk {
namespace {

int transforms = 0;

/// One point, to see what is done to geometry and how often.
struct Dot {
    MPoint point{1, 0, 0};
    Dot transformed(const MMatrix& matrix) const { return ++transforms, Dot{point * matrix}; }
    std::size_t byteSize() const { return sizeof(point); }
};
using DotData = GeometryDataOf<Dot, MFn::kMeshData, MFnData::kMesh>;

MMatrix translation(double x) {
    MMatrix matrix;
    matrix[3][0] = x;
    return matrix;
}

double xOf(const Ref<GeometryData>& data) { return static_cast<DotData&>(*data).geometry().point.x; }

Ref<Component> vertices(std::initializer_list<int> indices) {
    auto component = makeRef<SingleComponent>(MFn::kMeshVertComponent);
    for (const int index : indices)
        component->add({index});
    return component;
}

TEST(GeometryData, MatrixIsAppliedOnce) {
    transforms = 0;
    auto data = makeRef<DotData>();
    EXPECT_EQ(data->transformed(), Ref<GeometryData>(data)) << "nothing to apply";
    data->setMatrix(translation(5));
    data->writeGroups().add(3);
    const auto world = data->transformed();
    EXPECT_EQ(data->transformed(), world);
    EXPECT_EQ(transforms, 1);
    EXPECT_EQ(xOf(world), 6.0);
    EXPECT_FALSE(world->hasMatrix());
    EXPECT_TRUE(world->groups().has(3));
    EXPECT_TRUE(world->isPlaced()) << "setting it on a plug must not hand out the kept one";
    EXPECT_EQ(data->geometry().point.x, 1.0);
    EXPECT_EQ(static_cast<GeometryData&>(*data->clone()).transformed(), world);
}

TEST(GeometryData, WritingDropsWhatWasDerived) {
    auto data = makeRef<DotData>();
    data->setMatrix(translation(5));
    const auto before = data->transformed();
    const auto clone = data->clone();
    data->write().point.x = 2;
    EXPECT_EQ(xOf(data->transformed()), 7.0);
    data->setMatrix(translation(-2));
    EXPECT_EQ(xOf(data->transformed()), 0.0);
    data->writeGroups().add(1);
    EXPECT_TRUE(data->transformed()->groups().has(1));
    EXPECT_EQ(xOf(before), 6.0);
    EXPECT_EQ(xOf(static_cast<GeometryData&>(*clone).transformed()), 6.0);
}

TEST(ObjectGroups, JoinReplaceTakeAway) {
    ObjectGroups groups;
    groups.add(7);
    groups.add(4);
    groups.add(7);
    EXPECT_EQ(groups.count(), 2);
    EXPECT_EQ(groups.idAt(0), 7u);
    EXPECT_EQ(groups.component(7), nullptr);
    EXPECT_TRUE(groups.addComponent(7, *vertices({})));
    EXPECT_EQ(groups.component(7), nullptr);

    EXPECT_TRUE(groups.addComponent(7, *vertices({2})));
    EXPECT_TRUE(groups.addComponent(7, *vertices({0, 1})));
    EXPECT_EQ(groups.component(7)->count(), 3u);
    EXPECT_FALSE(groups.addComponent(7, *Component::create(MFn::kMeshEdgeComponent)));
    EXPECT_FALSE(groups.addComponent(9, *vertices({0})));
    EXPECT_TRUE(groups.removeComponent(7, *vertices({1, 8})));
    EXPECT_TRUE(groups.component(7)->isEqual(*vertices({0, 2})));
    EXPECT_TRUE(groups.setComponent(7, *vertices({5})));
    EXPECT_TRUE(groups.component(7)->isEqual(*vertices({5})));
    EXPECT_TRUE(groups.removeComponent(7, *vertices({5})));
    EXPECT_EQ(groups.component(7), nullptr);

    EXPECT_FALSE(groups.changeId(7, 4)) << "taken";
    EXPECT_TRUE(groups.changeId(7, 8));
    EXPECT_TRUE(groups.remove(4));
    EXPECT_FALSE(groups.remove(4));
    EXPECT_EQ(groups.idAt(0), 8u);
}

TEST(ObjectGroups, CopiesKeepTheirOwn) {
    ObjectGroups first;
    first.add(1);
    first.addComponent(1, *vertices({0}));
    ObjectGroups second = first;
    second.addComponent(1, *vertices({1}));
    second.add(2);
    EXPECT_EQ(first.count(), 1);
    EXPECT_EQ(first.component(1)->count(), 1u);
    EXPECT_EQ(second.component(1)->count(), 2u);
}

} // namespace
} // namespace vesk
