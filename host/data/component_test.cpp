#include "host/data/component.h"
#include "host/data/component_list_data.h"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using Ints = std::vector<int>;

Ref<SingleComponent> vertices(const Ints& indices) {
    auto component = makeRef<SingleComponent>(MFn::kMeshVertComponent);
    for (const int index : indices)
        component->add({index});
    return component;
}

Ref<SingleComponent> allVertices(int count) {
    auto component = makeRef<SingleComponent>(MFn::kMeshVertComponent);
    EXPECT_TRUE(component->setComplete(SingleComponent::Element{count}));
    return component;
}

Ref<SingleComponent> edges(const Ints& indices) {
    auto component = makeRef<SingleComponent>(MFn::kMeshEdgeComponent);
    for (const int index : indices)
        component->add({index});
    return component;
}

Ints indices(const Component& component) {
    const auto& single = static_cast<const SingleComponent&>(component);
    Ints list;
    for (std::size_t i = 0; i < single.count(); ++i)
        list.push_back(single.at(i)[0]);
    return list;
}

TEST(Component, SortsAndDropsDoublets) {
    const auto component = vertices({5, 1, 5, 3, 1, 0, 7, 7});
    EXPECT_EQ(indices(*component), (Ints{0, 1, 3, 5, 7}));
    EXPECT_TRUE(component->has({3}));
    EXPECT_FALSE(component->has({4}));
    EXPECT_TRUE(component->add({4})); // after it was read
    EXPECT_EQ(indices(*component), (Ints{0, 1, 3, 4, 5, 7}));
    EXPECT_FALSE(component->add({-1}));
    EXPECT_EQ(component->count(), 6u);

    auto pairs = makeRef<DoubleComponent>(MFn::kSurfaceCVComponent);
    for (const auto& [u, v] : {std::pair{1, 0}, {0, 9}, {1, 0}, {0, 2}})
        pairs->add({u, v});
    ASSERT_EQ(pairs->count(), 3u);
    EXPECT_EQ(pairs->at(0), (DoubleComponent::Element{0, 2}));
    EXPECT_EQ(pairs->at(1), (DoubleComponent::Element{0, 9}));
    EXPECT_EQ(pairs->at(2), (DoubleComponent::Element{1, 0}));
}

TEST(Component, ManyDoubletsTakeNoMoreRoomThanTheirElements) {
    auto component = makeRef<SingleComponent>(MFn::kMeshVertComponent);
    for (int i = 0; i < 100000; ++i)
        component->add({i % 3});
    EXPECT_LE(component->byteSize(), 2048 * sizeof(int));
    EXPECT_EQ(indices(*component), (Ints{0, 1, 2}));
}

TEST(Component, CompleteStandsForAllWithoutHoldingThem) {
    const auto million = allVertices(1000000);
    EXPECT_EQ(million->count(), 1000000u);
    EXPECT_EQ(million->byteSize(), 0u);
    EXPECT_TRUE(million->has({999999}));
    EXPECT_FALSE(million->has({1000000}));
    EXPECT_FALSE(million->has({-1}));

    auto grid = makeRef<DoubleComponent>(MFn::kSurfaceCVComponent);
    ASSERT_TRUE(grid->setComplete(DoubleComponent::Element{2, 3}));
    EXPECT_EQ(grid->count(), 6u);
    EXPECT_EQ(grid->at(4), (DoubleComponent::Element{1, 1}));

    EXPECT_FALSE(grid->setComplete(DoubleComponent::Element{1 << 20, 1 << 20})) << "too many to stand for";
    EXPECT_FALSE(grid->setComplete(DoubleComponent::Element{-1, 3}));
    EXPECT_EQ(grid->count(), 6u);

    auto unsized = makeRef<SingleComponent>(MFn::kMeshVertComponent);
    unsized->setComplete();
    EXPECT_TRUE(unsized->isComplete());
    EXPECT_FALSE(unsized->isEmpty());
    EXPECT_EQ(unsized->count(), 0u);
    EXPECT_TRUE(unsized->has({123456}));
}

TEST(Component, AddingToAComplete) {
    auto component = allVertices(3);
    component->add({2});
    EXPECT_TRUE(component->isComplete());
    component->add({4});
    EXPECT_FALSE(component->isComplete());
    EXPECT_EQ(indices(*component), (Ints{0, 1, 2, 4}));
}

TEST(Component, Union) {
    const auto unite = [](Ref<SingleComponent> a, const Ref<SingleComponent>& b) {
        EXPECT_TRUE(a->unite(*b));
        return a;
    };
    EXPECT_EQ(indices(*unite(vertices({4, 1}), vertices({9, 1, 0}))), (Ints{0, 1, 4, 9}));
    EXPECT_TRUE(unite(allVertices(5), vertices({0, 4}))->isComplete());
    EXPECT_TRUE(unite(vertices({0, 4}), allVertices(5))->isComplete());
    EXPECT_EQ(unite(allVertices(2), allVertices(4))->count(), 4u);
    EXPECT_EQ(indices(*unite(vertices({7, 8}), allVertices(2))), (Ints{0, 1, 7, 8}));
    EXPECT_EQ(indices(*unite(vertices({}), vertices({3, 2}))), (Ints{2, 3}));

    auto unsized = vertices({});
    unsized->setComplete();
    EXPECT_TRUE(unite(vertices({1}), unsized)->isUnsized());
    EXPECT_TRUE(unite(unsized, vertices({1}))->isUnsized());

    auto a = vertices({1});
    EXPECT_FALSE(a->unite(*edges({2})));
    EXPECT_EQ(indices(*a), (Ints{1}));

    // Neither of two complete grids holds the other: what comes out is neither.
    auto wide = makeRef<DoubleComponent>(MFn::kSurfaceCVComponent);
    auto tall = makeRef<DoubleComponent>(MFn::kSurfaceCVComponent);
    wide->setComplete(DoubleComponent::Element{3, 1});
    tall->setComplete(DoubleComponent::Element{1, 3});
    EXPECT_TRUE(wide->unite(*tall));
    EXPECT_FALSE(wide->isComplete());
    EXPECT_EQ(wide->count(), 5u);
    EXPECT_FALSE(wide->has({1, 1}));
}

TEST(Component, Difference) {
    auto component = allVertices(6);
    EXPECT_TRUE(component->subtract(*vertices({9})));
    EXPECT_TRUE(component->isComplete()) << "nothing was taken";
    EXPECT_TRUE(component->subtract(*vertices({0, 3, 9})));
    EXPECT_FALSE(component->isComplete());
    EXPECT_EQ(indices(*component), (Ints{1, 2, 4, 5}));
    EXPECT_TRUE(component->subtract(*allVertices(5)));
    EXPECT_EQ(indices(*component), (Ints{5}));
    EXPECT_FALSE(component->subtract(*edges({5})));

    auto unsized = vertices({});
    unsized->setComplete();
    EXPECT_FALSE(unsized->subtract(*vertices({0}))) << "the rest cannot be told";
    EXPECT_TRUE(unsized->isUnsized());
    EXPECT_TRUE(component->subtract(*unsized));
    EXPECT_TRUE(component->isEmpty());
    EXPECT_TRUE(unsized->subtract(*unsized->copy()));
    EXPECT_TRUE(unsized->isEmpty());
}

TEST(Component, ContainsAndEqual) {
    const auto some = vertices({1, 2, 5});
    EXPECT_TRUE(some->contains(*vertices({5, 1})));
    EXPECT_FALSE(some->contains(*vertices({1, 3})));
    EXPECT_FALSE(some->contains(*vertices({})));
    EXPECT_FALSE(some->contains(*edges({1})));
    EXPECT_TRUE(allVertices(2)->contains(*vertices({100}))) << "complete holds all";
    EXPECT_FALSE(some->contains(*allVertices(3)));
    EXPECT_TRUE(vertices({0, 1, 2})->contains(*allVertices(3)));

    EXPECT_TRUE(vertices({0, 1})->isEqual(*allVertices(2)));
    EXPECT_FALSE(vertices({0, 2})->isEqual(*allVertices(2)));
    EXPECT_FALSE(vertices({1})->isEqual(*edges({1})));
    EXPECT_TRUE(vertices({})->isEqual(*vertices({})));
}

TEST(Component, CopiesPartWhenOneIsWritten) {
    auto first = vertices({3, 1});
    const auto second = first->copy();
    first->add({2});
    EXPECT_EQ(indices(*second), (Ints{1, 3}));
    EXPECT_EQ(indices(*first), (Ints{1, 2, 3}));
}

TEST(ComponentList, JoinsEntriesOfOneKind) {
    auto list = makeRef<ComponentListData>();
    list->add(*vertices({}));
    EXPECT_EQ(list->length(), 1) << "an empty component makes an entry";
    EXPECT_TRUE(list->entry(0).isEmpty());

    const auto taken = vertices({4, 2});
    list->add(*taken);
    list->add(*edges({7}));
    list->add(*vertices({3}));
    ASSERT_EQ(list->length(), 2);
    EXPECT_EQ(indices(list->entry(0)), (Ints{2, 3, 4}));
    EXPECT_EQ(list->entry(1).apiType(), MFn::kMeshEdgeComponent);
    EXPECT_EQ(indices(*taken), (Ints{2, 4})) << "what was added is the caller's own";

    EXPECT_TRUE(list->has(*vertices({2, 4})));
    EXPECT_FALSE(list->has(*vertices({2, 7})));
    EXPECT_FALSE(list->has(*edges({2})));
    EXPECT_FALSE(list->has(*vertices({})));
}

TEST(ComponentList, RemovesUntilItIsEmpty) {
    auto list = makeRef<ComponentListData>();
    list->add(*allVertices(4));
    list->add(*edges({0}));
    auto copy = list->clone();
    EXPECT_FALSE(list->remove(*static_cast<Component*>(Component::create(MFn::kMeshPolygonComponent).get())));
    EXPECT_TRUE(list->remove(*vertices({0, 1})));
    EXPECT_EQ(indices(list->entry(0)), (Ints{2, 3}));
    EXPECT_TRUE(list->remove(*vertices({3, 2})));
    ASSERT_EQ(list->length(), 1);
    EXPECT_EQ(list->entry(0).apiType(), MFn::kMeshEdgeComponent);
    EXPECT_FALSE(list->removeEntry(1));
    EXPECT_TRUE(list->removeEntry(0));
    EXPECT_EQ(list->length(), 0);

    EXPECT_TRUE(static_cast<ComponentListData&>(*copy).has(*vertices({0, 1, 2, 3})))
        << "a clone keeps its own";
}

} // namespace
} // namespace vesk
