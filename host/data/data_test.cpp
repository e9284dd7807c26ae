#include "host/data/array_attrs_data.h"
#include "host/data/array_data.h"
#include "host/data/value_data.h"

#include <gtest/gtest.h>

#include <limits>

namespace vesk {
namespace {

TEST(ArrayData, ClonesShareUntilOneWrites) {
    auto first = makeRef<DoubleArrayData>(std::vector<double>{1, 2});
    const Ref<Data> copy = first->clone();
    auto& second = static_cast<DoubleArrayData&>(*copy);
    EXPECT_EQ(&first->values.read(), &second.values.read());

    second.values.write()[0] = 9;
    EXPECT_EQ(first->values.read(), (std::vector<double>{1, 2}));
    EXPECT_EQ(second.values.read(), (std::vector<double>{9, 2}));

    const auto* sole = &second.values.read();
    second.values.write()[1] = 8;
    EXPECT_EQ(&second.values.read(), sole) << "a sole holder writes in place";
}

TEST(ArrayData, ViewsAreNoHolders) {
    auto data = makeRef<DoubleArrayData>(std::vector<double>{1});
    const auto view = data->values.view();
    data->values.write()[0] = 5;
    EXPECT_EQ((*view)[0], 5);
    data->values.set({6, 7});
    EXPECT_EQ(view->size(), 2u);

    const auto clone = data->clone();
    data->values.set({0});
    EXPECT_EQ(view->size(), 2u) << "it stays with the values that it was taken of";
    data = nullptr;
    EXPECT_FALSE(static_cast<DoubleArrayData&>(*clone).values.isShared());
}

TEST(ArrayAttrs, ArraysByNameAndType) {
    auto data = makeRef<ArrayAttrsData>();
    data->makeValues<MVector>("position")->write().resize(2);
    data->makeValues<double>("age")->write().push_back(4);
    EXPECT_EQ(data->makeValues<double>("position"), nullptr);
    EXPECT_EQ(data->findValues<double>("position"), nullptr);
    EXPECT_EQ(data->findValues<int>("id"), nullptr);
    ASSERT_EQ(data->channels().size(), 2u);
    EXPECT_EQ(data->channels()[0].name, "position");
    EXPECT_EQ(data->byteSize(), 2 * sizeof(MVector) + sizeof(double));

    const auto kept = data->clone();
    const auto& clone = static_cast<const ArrayAttrsData&>(*kept);
    data->clear();
    EXPECT_EQ(data->channels().size(), 2u);
    EXPECT_TRUE(data->findValues<double>("age")->read().empty());
    EXPECT_EQ(clone.findValues<double>("age")->read(), std::vector<double>{4});
}

TEST(NumericData, NumbersAreRoundedToTheirType) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    NumericData ints(MFnNumericData::k3Int);
    ints.set({-2.7, 1e20, nan, 4});
    EXPECT_EQ(ints.numbers(), (std::array<double, 4>{-2, 2147483647, 0, 0}));
    NumericData floats(MFnNumericData::k2Float);
    floats.set({0.1, 1e300});
    EXPECT_EQ(floats.numbers()[0], 0.1F);
    EXPECT_EQ(floats.numbers()[1], std::numeric_limits<float>::infinity());
    NumericData flag(MFnNumericData::kBoolean);
    flag.set({0.2});
    EXPECT_EQ(flag.numbers()[0], 1.0);

    EXPECT_EQ(ints.apiType(), MFn::kNumericData);
    EXPECT_EQ(NumericData(MFnNumericData::k3Double).apiType(), MFn::kData3Double);
    EXPECT_EQ(NumericData::countOf(MFnNumericData::k4Double), 4);
    EXPECT_EQ(NumericData::countOf(MFnNumericData::kInvalid), 0);
}

TEST(MatrixData, KeepsTheComponentsItWasMadeFrom) {
    MTransformationMatrix turned;
    const double fullTurn[] = {0, 0, 7};
    turned.setRotation(fullTurn, MTransformationMatrix::kXYZ);
    MatrixData data;
    data.set(turned);
    EXPECT_TRUE(data.hasTransformation());
    EXPECT_EQ(data.transformation().eulerRotation().z, 7.0) << "a matrix alone would give an angle below pi";
    data.set(MMatrix::identity);
    EXPECT_FALSE(data.hasTransformation());
    EXPECT_EQ(data.transformation().eulerRotation().z, 0.0);
}

} // namespace
} // namespace vesk
