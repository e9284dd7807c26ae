// Data handles, multis and their builders, inside and outside of a compute.

#include "host/api/impl/test_session.h"
#include "host/data/geometry_data.h"

#include <maya/MArrayDataBuilder.h>
#include <maya/MArrayDataHandle.h>
#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnStringData.h>

namespace vesk::api {
namespace {

class HandleTest : public ApiTest {
  protected:
    MDataBlock block() { return MDataBlock(nodeOf(node)); }
    MPlug plug(const char* name) { return MFnDependencyNode(node).findPlug(name); }
    static std::vector<double> values(MArrayDataHandle handle) {
        std::vector<double> found;
        for (unsigned int i = 0; handle.jumpToArrayElement(i); ++i)
            found.push_back(handle.inputValue().asDouble());
        return found;
    }
    MObject node = make("probe", "n");
};

TEST_F(HandleTest, NumbersByValue) {
    MDataBlock data = block();
    EXPECT_EQ(data.inputValue(Probe::flag).asShort(), 1);
    EXPECT_EQ(data.inputValue(Probe::mode).asInt(), 7);
    EXPECT_EQ(data.inputValue(Probe::a).asInt(), 1);
    EXPECT_EQ(data.inputValue(Probe::a).type(), MFnData::kNumeric);
    EXPECT_EQ(data.inputValue(Probe::when).asTime().as(MTime::kSeconds), 0.5);
    MDataHandle place = data.outputValue(Probe::place);
    place.set(1.0F, 2.0F, 3.0F);
    EXPECT_EQ(place.asVector(), MVector(1, 2, 3));
    EXPECT_EQ(place.child(Probe::placeX).asFloat(), 1);
    const float3& first = data.inputValue(Probe::place).asFloat3();
    place.set(MVector(4, 5, 6));
    const float3& second = data.inputValue(Probe::place).asFloat3();
    EXPECT_EQ(first[2], 3); // what a temporary handle gave stays readable
    EXPECT_EQ(second[2], 6);
    EXPECT_EQ(place.numericType(), MFnNumericData::k3Float);
    place.set(1.0, 2.0); // two numbers are not three
    EXPECT_EQ(MFnNumericData(place.data()).numericType(), MFnNumericData::k3Float);

    MStatus status;
    EXPECT_EQ(data.inputValue(Probe::rowWeight, &status).asDouble(), 0);
    EXPECT_EQ(status, MStatus::kInvalidParameter); // stands below a multi
    EXPECT_EQ(data.inputValue(node, &status).type(), MFnData::kInvalid);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    MDataHandle none = data.inputValue(MFnDependencyNode(make("transform")).attribute("translate"), &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    none.set(3.0);
    none.setClean();
    EXPECT_EQ(none.set(MObject()), MStatus::kInvalidParameter);
    EXPECT_TRUE(none.asMesh().isNull() && none.data().isNull());
    EXPECT_EQ(none.asString(), "");
    EXPECT_EQ(none.asFloat3()[1], 0);
}

TEST_F(HandleTest, DataObjectsAreSharedUntilWritten) {
    MFnDoubleArrayData fn;
    MDoubleArray three(3, 1.0);
    MObject fresh = fn.create(three);
    MDataHandle numbers = block().outputValue(Probe::numbers);
    EXPECT_TRUE(numbers.set(fresh));
    fn.array().append(2.0); // the maker goes on filling what it placed
    EXPECT_EQ(MFnDoubleArrayData(numbers.data()).length(), 4U);

    MDataHandle any = block().outputValue(Probe::any);
    EXPECT_TRUE(any.set(block().inputValue(Probe::numbers).data()));
    EXPECT_EQ(any.type(), MFnData::kDoubleArray);
    EXPECT_TRUE(MFnDoubleArrayData(any.data()).set(MDoubleArray(1, 8.0)));
    EXPECT_EQ(MFnDoubleArrayData(numbers.data()).length(), 4U);
    EXPECT_EQ(MFnDoubleArrayData(any.data()).length(), 1U);
    EXPECT_EQ(MFnDoubleArrayData(block().inputValue(Probe::any).data()).set(three),
              MStatus::kFailure); // input

    EXPECT_EQ(block().outputValue(Probe::label).set(fresh), MStatus::kFailure); // of another type
    EXPECT_EQ(block().outputValue(Probe::rows).set(fresh), MStatus::kFailure);
    EXPECT_TRUE(numbers.set(MObject::kNullObj));
    EXPECT_EQ(numbers.type(), MFnData::kInvalid);
}

/// Geometry of one point, called a mesh.
struct Dot {
    MPoint point{1, 0, 0};
    Dot transformed(const MMatrix& matrix) const { return {point * matrix}; }
    std::size_t byteSize() const { return sizeof(point); }
};
using DotData = GeometryDataOf<Dot, MFn::kMeshData, MFnData::kMesh>;

DotData& dotOf(const MObject& object) { return dynamic_cast<DotData&>(*object.hostObject()); }

TEST_F(HandleTest, GeometryCarriesItsMatrixAlongWires) {
    MMatrix matrix;
    matrix[3][0] = 5;
    const auto source = makeRef<DotData>();
    source->setMatrix(matrix);
    const MObject from = make();
    ASSERT_TRUE(MPlug(from, Probe::any).setMObject(handleOn(source.get())));
    Probe::onCompute = [](Probe&, const MPlug& plug, MDataBlock& block) -> MStatus {
        if (plug != Probe::anyOut) return MStatus::kUnknownParameter;
        return block.outputValue(Probe::anyOut).set(block.inputValue(Probe::any).asMesh());
    };
    ASSERT_TRUE(connect(MPlug(from, Probe::anyOut), MPlug(node, Probe::any)));

    MDataHandle in = block().inputValue(Probe::any);
    EXPECT_EQ(in.type(), MFnData::kMesh);
    EXPECT_EQ(in.geometryTransformMatrix(), matrix);
    EXPECT_EQ(dotOf(in.asMesh()).geometry().point, MPoint(1, 0, 0));
    EXPECT_TRUE(in.asMesh().isReadOnly());
    const MObject inWorld = in.asMeshTransformed();
    EXPECT_EQ(dotOf(inWorld).geometry().point, MPoint(6, 0, 0));
    EXPECT_EQ(dotOf(inWorld).matrix(), MMatrix()); // object and world space are one in it
    EXPECT_TRUE(inWorld.isReadOnly());
    EXPECT_TRUE(in.asNurbsCurve().isNull() && in.asNurbsSurfaceTransformed().isNull());

    // Passed on and then written, the output's geometry leaves the input's alone.
    MDataHandle out = block().outputValue(Probe::anyOut);
    EXPECT_TRUE(out.set(in.asMesh()));
    EXPECT_FALSE(out.asMesh().isReadOnly());
    dotOf(out.asMesh()).write().point = MPoint(9, 9, 9);
    EXPECT_EQ(dotOf(in.asMesh()).geometry().point, MPoint(1, 0, 0));
    EXPECT_EQ(out.geometryTransformMatrix(), matrix);
}

TEST_F(HandleTest, GenericHoldsNumbersToo) {
    MDataHandle any = block().outputValue(Probe::any);
    bool isNumeric = true;
    bool isNull = false;
    EXPECT_TRUE(any.isGeneric(isNumeric, isNull));
    EXPECT_TRUE(!isNumeric && isNull);
    EXPECT_EQ(any.type(), MFnData::kInvalid);
    any.setGenericDouble(2.5, false);
    EXPECT_EQ(any.type(), MFnData::kNumeric);
    EXPECT_EQ(any.asGenericInt(), 2);
    any.setGenericDouble(0, true);
    EXPECT_EQ(any.type(), MFnData::kInvalid);
    any.set(MString("text"));
    EXPECT_EQ(any.asString(), "text");
    const MObject feeder = make();
    ASSERT_TRUE(connect(MPlug(feeder, Probe::a), MPlug(node, Probe::any)));
    EXPECT_EQ(block().inputValue(Probe::any).asGenericDouble(), 1.5);
    EXPECT_EQ(block().inputValue(Probe::any).type(), MFnData::kNumeric);
}

TEST_F(HandleTest, WalkingSparseMultis) {
    for (const unsigned int index : {10U, 3U, 5U})
        MPlug(node, Probe::items).elementByLogicalIndex(index).setDouble(index);
    MDataBlock data = block();
    MArrayDataHandle items = data.inputArrayValue(Probe::items);
    EXPECT_EQ(items.elementCount(), 3U);
    EXPECT_EQ(items.elementIndex(), 3U); // starts on the first
    EXPECT_TRUE(items.next());
    EXPECT_EQ(items.inputValue().asDouble(), 5);
    EXPECT_TRUE(items.jumpToElement(10));
    EXPECT_EQ(items.next(), MStatus::kFailure);
    EXPECT_EQ(items.jumpToElement(4), MStatus::kInvalidParameter);
    EXPECT_EQ(items.jumpToArrayElement(3), MStatus::kInvalidParameter);
    EXPECT_EQ(items.elementIndex(), 10U); // failed moves leave the place

    MStatus status;
    MArrayDataHandle empty = data.inputArrayValue(Probe::list, &status);
    EXPECT_TRUE(status);
    EXPECT_EQ(empty.inputValue(&status).type(), MFnData::kInvalid);
    EXPECT_EQ(status, MStatus::kFailure);
    MArrayDataHandle wrong = data.inputArrayValue(Probe::a, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(wrong.elementCount(&status), 0U);
    EXPECT_EQ(wrong.setAllClean(), MStatus::kInvalidParameter);

    // A multi inside a multi is reached through its element.
    plug("rows[2].rowNames[4]").setValue("four");
    MArrayDataHandle rows = data.inputArrayValue(Probe::rows);
    MArrayDataHandle names(rows.inputValue().child(Probe::rowNames), &status);
    EXPECT_TRUE(status);
    EXPECT_EQ(names.elementIndex(), 4U);
    EXPECT_EQ(names.inputValue().asString(), "four");
}

TEST_F(HandleTest, BuildersShowOnlyOnceSet) {
    MDataBlock data = block();
    MPlug(node, Probe::items).elementByLogicalIndex(2).setDouble(20);
    MPlug(node, Probe::items).elementByLogicalIndex(4).setDouble(40);
    MArrayDataHandle items = data.outputArrayValue(Probe::items);
    MStatus status;
    MArrayDataBuilder builder = items.builder(&status);
    ASSERT_TRUE(status);
    EXPECT_EQ(builder.elementCount(), 2U);
    EXPECT_EQ(builder.addElement(2).asDouble(), 20); // the one that is there
    EXPECT_EQ(builder.addElement(3).asDouble(), 9);  // a new one, at the default
    MDataHandle last = builder.addLast();
    last.set(50.0);
    EXPECT_TRUE(builder.removeElement(4));
    EXPECT_EQ(builder.removeElement(4), MStatus::kInvalidParameter);
    EXPECT_EQ(values(data.inputArrayValue(Probe::items)), (std::vector<double>{20, 40}));
    EXPECT_TRUE(items.set(builder));
    EXPECT_EQ(values(items), (std::vector<double>{20, 9, 50}));
    last.set(60.0); // a handle of a builder that was handed over writes nowhere
    EXPECT_EQ(values(items), (std::vector<double>{20, 9, 50}));

    MArrayDataBuilder anew(&data, Probe::items, 8, &status);
    EXPECT_TRUE(status);
    anew.addElement(0).set(1.0);
    EXPECT_TRUE(items.set(anew));
    EXPECT_EQ(values(items), std::vector<double>{1});
    EXPECT_EQ(data.outputArrayValue(Probe::list).set(anew),
              MStatus::kInvalidParameter); // another attribute's

    const MArrayDataBuilder none = data.inputArrayValue(Probe::curve).builder(&status);
    EXPECT_TRUE(status); // ramps use one
    MFnAttribute(Probe::items).setUsesArrayDataBuilder(false);
    (void)items.builder(&status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    MFnAttribute(Probe::items).setUsesArrayDataBuilder(true);
    EXPECT_EQ(items.set(MArrayDataBuilder()), MStatus::kInvalidParameter);
    EXPECT_EQ(MArrayDataBuilder().removeElement(0), MStatus::kInvalidParameter);
}

TEST_F(HandleTest, HandlesOfOneBuilderAreIndependent) {
    MDataBlock data = block();
    MArrayDataBuilder builder(&data, Probe::items, 0xffffffffU); // no more than a hint
    MDataHandle seven = builder.addElement(7), three = builder.addElement(3), gone = builder.addElement(5);
    for (unsigned int i = 10; i < 13; ++i)
        builder.addElement(i).set(0.5 * i); // nobody holds these
    seven.set(70.0);
    MDataHandle again = builder.addElement(7);
    EXPECT_EQ(again.asDouble(), 70);
    three.set(30.0);
    EXPECT_TRUE(builder.removeElement(5));
    gone.set(1.0);
    EXPECT_EQ(builder.addElement(11).asDouble(), 5.5);
    MArrayDataHandle items = data.outputArrayValue(Probe::items);
    EXPECT_TRUE(items.set(builder));
    EXPECT_EQ(values(items), (std::vector<double>{30, 70, 5, 5.5, 6}));
    builder = MArrayDataBuilder();
    seven.set(1.0); // keeps what it refers to alive
    EXPECT_EQ(values(items), (std::vector<double>{30, 70, 5, 5.5, 6}));
}

TEST_F(HandleTest, ElementsThatAreThereAreKept) {
    MDataBlock data = block();
    MArrayDataHandle items = data.outputArrayValue(Probe::items);
    const auto put = [&](std::initializer_list<unsigned int> indices, double value) {
        MArrayDataBuilder builder(&data, Probe::items, 4);
        for (const unsigned int index : indices)
            builder.addElement(index).set(value + index);
        EXPECT_TRUE(items.set(builder));
        return items.hostCell()->elementIfThere(4);
    };
    const auto* four = put({2, 4, 6}, 0);
    EXPECT_EQ(put({2, 4, 6}, 10), four);
    EXPECT_EQ(put({1, 2, 4, 8}, 20), four) << "one before, one instead";
    EXPECT_EQ(values(items), (std::vector<double>{21, 22, 24, 28}));
    EXPECT_EQ(put({4}, 30), four);
    EXPECT_EQ(values(items), std::vector<double>{34});
    EXPECT_EQ(put({}, 0), nullptr);
}

/// A walk that found all elements clean must not hide what changes afterwards.
TEST_F(HandleTest, ChangesAfterAWalkShow) {
    const MObject other = make();
    const auto element = [&](unsigned int i) { return MPlug(node, Probe::items).elementByLogicalIndex(i); };
    const auto walk = [&] {
        MDataBlock data = block();
        (void)data.inputValue(Probe::items); // cleans all of it
        MArrayDataHandle items = data.inputArrayValue(Probe::items);
        EXPECT_TRUE(items.jumpToElement(4));
        return values(items);
    };
    for (const unsigned int i : {2U, 4U, 6U})
        element(i).setDouble(i);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(walk(), (std::vector<double>{2, 4, 6}));
    element(4).setDouble(40);
    EXPECT_EQ(walk(), (std::vector<double>{2, 40, 6}));
    MPlug(other, Probe::a).setDouble(5);
    ASSERT_TRUE(connect(MPlug(other, Probe::a), element(2)));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(walk(), (std::vector<double>{5, 40, 6}));
    MPlug(other, Probe::a).setDouble(50);
    EXPECT_EQ(walk(), (std::vector<double>{50, 40, 6}));
    element(9).setDouble(9);
    EXPECT_EQ(walk(), (std::vector<double>{50, 40, 6, 9}));
    ASSERT_TRUE(connect(MPlug(other, Probe::items), MPlug(node, Probe::items)));
    MPlug(other, Probe::items).elementByLogicalIndex(4).setDouble(1);
    EXPECT_EQ(walk(), (std::vector<double>{50, 1}));
}

TEST_F(HandleTest, ElementsWithWiresOutliveABuilder) {
    const MObject to = make();
    ASSERT_TRUE(connect(MPlug(node, Probe::list).elementByLogicalIndex(1), MPlug(to, Probe::b)));
    MDataBlock data = block();
    MArrayDataBuilder builder(&data, Probe::list, 1);
    builder.addElement(5).set(7.0);
    EXPECT_TRUE(data.outputArrayValue(Probe::list).set(builder));
    EXPECT_TRUE(MPlug(node, Probe::list).elementByLogicalIndex(1).isConnected());
    EXPECT_EQ(values(data.outputArrayValue(Probe::list)), (std::vector<double>{0, 7}));
}

TEST_F(HandleTest, CompoundsCopyDeeply) {
    const MObject other = make();
    plug("rows[1].rowWeight").setDouble(11);
    plug("rows[1].rowNames[0]").setValue("one");
    MDataBlock to(nodeOf(other));
    EXPECT_TRUE(to.outputValue(Probe::rows).copy(block().inputValue(Probe::rows)));
    const MFnDependencyNode fn(other);
    EXPECT_EQ(fn.findPlug("rows[1].rowWeight").asDouble(), 11);
    fn.findPlug("rows[1].rowNames[0]").setValue("eins");
    EXPECT_EQ(plug("rows[1].rowNames[0]").asString(), "one");
    EXPECT_EQ(to.outputValue(Probe::rows).copy(MDataHandle()), MStatus::kInvalidParameter);
}

TEST_F(HandleTest, ConstructedHandlesFillMultisOfMultis) {
    // From within the compute of the output, which is not writable otherwise.
    Probe::onCompute = [](Probe& self, const MPlug& plug, MDataBlock& data) -> MStatus {
        if (plug != Probe::table && plug != Probe::tableCell) return MStatus::kUnknownParameter;
        MPlug cells(self.thisMObject(), Probe::tableCell);
        cells.selectAncestorLogicalIndex(0, Probe::table);
        MDataHandle handle = cells.constructHandle(data);
        MArrayDataHandle elements(handle);
        MArrayDataBuilder builder = elements.builder();
        const double a = data.inputValue(Probe::a).asDouble();
        for (unsigned int i = 0; i < 3; ++i)
            builder.addElement(i).set(a * i);
        elements.set(builder);
        const MStatus stored = cells.setValue(handle);
        cells.destructHandle(handle);
        return stored;
    };
    EXPECT_EQ(plug("table[0].tableCell[2]").asDouble(), 3);
    EXPECT_EQ(plug("table[0].tableCell[1]").asDouble(), 1.5); // set beside the one asked for
    EXPECT_EQ(Probe::computes, 1);
    plug("a").setDouble(10);
    EXPECT_EQ(plug("table[0].tableCell[1]").asDouble(), 10);
    EXPECT_EQ(plug("table[0].tableCell[2]").asDouble(), 20);
    EXPECT_EQ(Probe::computes, 2);

    MDataBlock data = block();
    MPlug label = plug("label");
    label.setValue("old");
    MDataHandle copy = label.constructHandle(data);
    copy.set(MString("new"));
    EXPECT_EQ(label.asString(), "old");
    EXPECT_TRUE(label.setValue(copy));
    EXPECT_EQ(label.asString(), "new");
    EXPECT_EQ(plug("a").setValue(copy), MStatus::kFailure); // another attribute's
}

} // namespace
} // namespace vesk::api
