#include <maya/MColorArray.h>
#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MPointArray.h>
#include <maya/MStringArray.h>
#include <maya/MVectorArray.h>

#include <gtest/gtest.h>

#include <numeric>

namespace {

using Doubles = std::vector<double>;

TEST(Array, ReadsOutsideGiveANewElementAndWritesGoNowhere) {
    MIntArray ints(2u, 7);
    ints[2] = 5;
    EXPECT_EQ(ints[2], 0) << "what went nowhere must not come back";
    ints[static_cast<unsigned int>(-1)] = 5;
    EXPECT_EQ(vesk::storage(ints), (std::vector<int>{7, 7}));
    EXPECT_EQ(std::as_const(ints)[99], 0);
    EXPECT_EQ(std::as_const(static_cast<const MPointArray&>(MPointArray()))[0], MPoint(0, 0, 0, 1));
    EXPECT_EQ(ints.set(1, 2), MS::kInvalidParameter);
    EXPECT_EQ(ints.remove(2), MS::kInvalidParameter);
    EXPECT_EQ(ints.insert(1, 3), MS::kInvalidParameter);
}

TEST(Array, NewElementsByLength) {
    MDoubleArray doubles;
    MColorArray colors;
    MStringArray strings;
    doubles.append(4.0);
    doubles.setLength(2);
    colors.setLength(1);
    strings.setLength(1);
    EXPECT_EQ(vesk::storage(doubles), (Doubles{4.0, 0.0}));
    EXPECT_EQ(colors[0], MColor(0, 0, 0, 1));
    EXPECT_EQ(strings[0], "");
    MPointArray points;
    EXPECT_EQ(points.append(1, 2), MS::kSuccess);
    EXPECT_EQ(points[0], MPoint(1, 2, 0, 1));
}

TEST(Array, InsertRemoveAppend) {
    MIntArray ints;
    for (int i = 0; i < 4; ++i)
        ints.append(i);
    ints.insert(9, 1);
    ints.insert(8, 5);
    ints.remove(0);
    EXPECT_EQ(vesk::storage(ints), (std::vector<int>{9, 1, 2, 3, 8}));
    ints += ints;
    EXPECT_EQ(vesk::storage(ints), (std::vector<int>{9, 1, 2, 3, 8, 9, 1, 2, 3, 8}));
}

TEST(Array, PlainArraysOfNumbersComeAndGo) {
    const double from[2][3] = {{1, 2, 3}, {4, 5, 6}};
    MVectorArray vectors(from, 2);
    const double changed[3] = {7, 8, 9};
    EXPECT_TRUE(vectors.set(changed, 0));
    float to[2][3];
    vectors.get(to);
    EXPECT_EQ(to[0][0], 7.0F);
    EXPECT_EQ(to[1][2], 6.0F);
}

TEST(ArrayView, SharesWithItsVector) {
    const auto data = std::make_shared<Doubles>(Doubles{1, 2, 3});
    MDoubleArray view = MDoubleArray::viewOf(data);
    view[1] = 20;
    view.append(4);
    EXPECT_EQ(*data, (Doubles{1, 20, 3, 4}));
    data->assign(100, 5.0);
    EXPECT_EQ(view.length(), 100u) << "the view follows its vector through growth";
    EXPECT_EQ(view[99], 5.0);

    view = MDoubleArray(2u, 6.0);
    EXPECT_EQ(*data, (Doubles{6, 6})) << "assigning to a view fills the vector";
    MDoubleArray second = MDoubleArray::viewOf(data);
    view = second;
    view = std::move(second);
    EXPECT_EQ(*data, (Doubles{6, 6})) << "two views of one vector";
    EXPECT_EQ(MDoubleArray::viewOf(nullptr).length(), 0u);
}

TEST(ArrayView, CopiesOwnAndMovesKeepTheView) {
    const auto data = std::make_shared<Doubles>(Doubles{1, 2, 3});
    MDoubleArray view = MDoubleArray::viewOf(data);
    MDoubleArray copied = view;
    MDoubleArray assigned;
    assigned = view;
    MDoubleArray fromTemporary;
    fromTemporary = MDoubleArray::viewOf(data);
    copied[0] = assigned[0] = fromTemporary[0] = 9;
    EXPECT_EQ(*data, (Doubles{1, 2, 3}));
    EXPECT_EQ(fromTemporary.length(), 3u);

    MDoubleArray moved = std::move(view);
    moved[0] = 10;
    EXPECT_EQ((*data)[0], 10.0);
    // What was moved from is an empty array of its own.
    view.append(1); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(view.length(), 1u);
    EXPECT_EQ(data->size(), 3u);
}

TEST(Array, MovesCarryTheMemory) {
    Doubles large(1000);
    std::iota(large.begin(), large.end(), 0.0);
    const double* memory = large.data();
    MDoubleArray adopted = vesk::adopt<MDoubleArray>(std::move(large));
    std::vector<MDoubleArray> several;
    several.push_back(std::move(adopted));
    several.emplace_back();
    several.resize(20); // moves the arrays themselves about
    MDoubleArray last;
    last = std::move(several[0]);
    EXPECT_EQ(&last[0], memory);
    EXPECT_EQ(last[999], 999.0);
    several[0].append(1.0);
    EXPECT_EQ(several[0].length(), 1u);
}

} // namespace
