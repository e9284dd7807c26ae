#include "host/data/array_data.h"

#include <maya/MFnArrayAttrsData.h>
#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnIntArrayData.h>
#include <maya/MFnMatrixData.h>
#include <maya/MFnNumericData.h>
#include <maya/MFnPointArrayData.h>
#include <maya/MFnStringArrayData.h>
#include <maya/MFnStringData.h>
#include <maya/MFnVectorArrayData.h>

#include <gtest/gtest.h>

namespace {

/// The object as a node's input gives it.
MObject forReading(const MObject& object) { return MObject(object.hostObject(), true); }
/// Another object around the same values, as a second plug would hold it.
MObject sharing(const MObject& object) {
    return MObject(static_cast<vesk::Data*>(object.hostObject())->clone().get());
}

TEST(FnArrayData, ArrayIsAViewThatWritesTheData) {
    MFnDoubleArrayData set;
    const MObject object = set.create();
    MDoubleArray array = set.array();
    array.setLength(3);
    array[2] = 7;
    EXPECT_EQ(set.length(), 3u);
    EXPECT_EQ(set[2], 7.0);
    EXPECT_EQ(&set[2], &array[2]) << "filled in place";
    set.array().append(8);
    EXPECT_EQ(array.length(), 4u);

    MFnDoubleArrayData other(object);
    EXPECT_EQ(other[3], 8.0);
    EXPECT_EQ(other[4], 0.0) << "past the end";

    MDoubleArray copy;
    EXPECT_TRUE(set.copyTo(copy));
    copy[0] = 5;
    EXPECT_EQ(set[0], 0.0);
}

TEST(FnArrayData, CreateFromAnArrayCopies) {
    MVectorArray vectors(2, MVector(1, 2, 3));
    MFnVectorArrayData set;
    const MObject object = set.create(vectors);
    vectors[0] = MVector::zero;
    EXPECT_EQ(set[0], MVector(1, 2, 3));
    EXPECT_EQ(object.apiType(), MFn::kVectorArrayData);

    MStringArray strings;
    strings.append("a");
    MFnStringArrayData texts;
    texts.create(strings);
    EXPECT_EQ(texts[0], MString("a"));
    MFnPointArrayData points;
    points.create();
    points.array().setLength(1);
    EXPECT_EQ(points[0].w, 1.0);
}

TEST(FnArrayData, FirstWriteSplitsFromSharedValues) {
    MFnIntArrayData input;
    const MObject upstream = input.create(MIntArray(2, 1));
    const MObject passedOn = sharing(upstream);

    MFnIntArrayData reader(forReading(upstream));
    EXPECT_EQ(&reader[0], &reader.array()[0]) << "reading copies nothing";
    EXPECT_EQ(&reader[0], &MFnIntArrayData(forReading(passedOn))[0]);
    EXPECT_EQ(reader.set(MIntArray(5, 5)), MStatus::kFailure);
    EXPECT_EQ(reader.length(), 2u);

    MFnIntArrayData output(passedOn);
    output.array()[0] = 9;
    EXPECT_EQ(output[0], 9);
    EXPECT_EQ(reader[0], 1);
    const MObject third = sharing(passedOn);
    output.set(MIntArray(1, 4));
    EXPECT_EQ(MFnIntArrayData(third)[0], 9);
}

TEST(FnArrayData, WrongObjectsAreRefused) {
    MFnStringData text;
    const MObject string = text.create("words");
    MStatus status;
    MFnDoubleArrayData set(string, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(set.length(&status), 0u);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(set.array().length(), 0u);
    EXPECT_EQ(set[0], 0.0);
    MDoubleArray out(1, 2.0);
    EXPECT_EQ(set.copyTo(out), MStatus::kInvalidParameter);
    EXPECT_EQ(out.length(), 1u);
    EXPECT_EQ(set.set(out), MStatus::kInvalidParameter);
    EXPECT_TRUE(set.object(&status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);

    MFnDoubleArrayData filled;
    filled.create(out);
    EXPECT_EQ(filled.setObject(MObject::kNullObj), MStatus::kInvalidParameter);
    EXPECT_EQ(filled.length(), 0u) << "a refused object leaves the set empty";
    EXPECT_TRUE(MFnData().hasObj(string));
    EXPECT_TRUE(text.hasObj(MFn::kData));
    EXPECT_FALSE(set.hasObj(string));
}

TEST(FnArrayAttrs, ArraysByNameAreMadeOnDemand) {
    MFnArrayAttrsData set;
    const MObject object = set.create();
    MVectorArray positions = set.vectorArray("position");
    MDoubleArray ages = set.doubleArray("age"); // the first view must survive this
    positions.append(MVector(1, 2, 3));
    ages.append(4);
    set.stringArray("label").append("x");
    EXPECT_EQ(set.intArray("id").length(), 0u);

    EXPECT_EQ(set.count(), 4u);
    const MStringArray names = set.list();
    EXPECT_EQ(names[0], MString("position"));
    EXPECT_EQ(names[3], MString("id"));
    EXPECT_EQ(set.getVectorData("position")[0], MVector(1, 2, 3));

    MFnArrayAttrsData::Type type = MFnArrayAttrsData::kInvalid;
    EXPECT_TRUE(set.checkArrayExist("age", type));
    EXPECT_EQ(type, MFnArrayAttrsData::kDoubleArray);
    EXPECT_TRUE(set.checkArrayExist("label", type));
    EXPECT_EQ(type, MFnArrayAttrsData::kStringArray);
    EXPECT_FALSE(set.checkArrayExist("mass", type));
    EXPECT_EQ(type, MFnArrayAttrsData::kInvalid);

    MStatus status;
    set.doubleArray("position", &status).append(1);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(set.getIntData("mass", &status).length(), 0u);
    EXPECT_EQ(status, MStatus::kInvalidParameter);

    const MObject passedOn = sharing(object);
    MFnArrayAttrsData reader(forReading(passedOn));
    reader.doubleArray("mass", &status);
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_EQ(reader.clear(), MStatus::kFailure);
    EXPECT_EQ(reader.count(), 4u);
    EXPECT_TRUE(set.clear());
    EXPECT_EQ(set.count(), 4u);
    EXPECT_EQ(set.doubleArray("age").length(), 0u);
    EXPECT_EQ(reader.doubleArray("age").length(), 1u);
}

TEST(FnValueData, NumbersConvertByValue) {
    MFnNumericData set;
    MStatus status;
    EXPECT_TRUE(set.create(MFnNumericData::kInvalid, &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    const MObject object = set.create(MFnNumericData::k3Double);
    EXPECT_TRUE(set.setData(1.5, -2.5, 1e20));
    int a = 0, b = 0, c = 0;
    EXPECT_TRUE(set.getData(a, b, c));
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, -2);
    EXPECT_EQ(c, 2147483647);
    EXPECT_EQ(set.getData(a, b), MStatus::kInvalidParameter);
    EXPECT_EQ(set.setData(1.0, 2.0), MStatus::kInvalidParameter);
    MFnNumericData reader(forReading(object));
    EXPECT_EQ(reader.setData(0.0, 0.0, 0.0), MStatus::kFailure);
    double x = 0, y = 0, z = 0;
    EXPECT_TRUE(reader.getData(x, y, z));
    EXPECT_EQ(y, -2.5);
}

TEST(FnValueData, TextAndMatrix) {
    MFnStringData text;
    const MObject object = text.create("a");
    EXPECT_EQ(MFnStringData(forReading(object)).set("b"), MStatus::kFailure);
    EXPECT_TRUE(text.set("c"));
    EXPECT_EQ(MFnStringData(object).string(), MString("c"));

    MFnMatrixData matrix;
    EXPECT_FALSE(matrix.isTransformation());
    MTransformationMatrix moved;
    moved.setTranslation(MVector(1, 2, 3), MSpace::kTransform);
    matrix.create(moved);
    EXPECT_TRUE(matrix.isTransformation());
    EXPECT_EQ(matrix.matrix()[3][1], 2.0);
    matrix.set(MMatrix::identity);
    EXPECT_EQ(matrix.transformation().getTranslation(MSpace::kTransform), MVector::zero);
}

} // namespace
