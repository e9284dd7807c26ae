// The function sets of attributes, and ramps on nodes.

#include "host/api/impl/test_session.h"
#include "host/data/value_data.h"

#include <maya/MFnMatrixData.h>
#include <maya/MFnStringData.h>

namespace vesk::api {
namespace {

TEST(Attributes, FlagsStartAsTheHostHasThemAndReachTuples) {
    MFnNumericAttribute fn;
    const MObject pair = fn.create("pair", "pr", MFnNumericData::k2Double, 0.25);
    EXPECT_TRUE(fn.isReadable() && fn.isWritable() && fn.isConnectable() && fn.isStorable() && fn.isCached());
    EXPECT_FALSE(fn.isArray() || fn.isKeyable() || fn.isHidden() || fn.internal() || fn.isUsedAsColor());
    EXPECT_FALSE(fn.isWorldSpace() || fn.usesArrayDataBuilder() || fn.isIndeterminant() ||
                 fn.isChannelBoxFlagSet());
    EXPECT_TRUE(fn.indexMatters());
    EXPECT_EQ(fn.disconnectBehavior(), MFnAttribute::kNothing);

    EXPECT_TRUE(fn.setKeyable(true));
    EXPECT_TRUE(fn.setStorable(false));
    EXPECT_TRUE(fn.setArray(true));
    MFnNumericAttribute second(fn.child(1));
    EXPECT_EQ(second.name(), "pair1");
    EXPECT_EQ(second.shortName(), "pr1");
    EXPECT_EQ(second.parent(), pair);
    EXPECT_TRUE(second.isKeyable());
    EXPECT_FALSE(second.isStorable());
    EXPECT_FALSE(second.isArray()); // the multi is the pair's own
    double value = 0;
    EXPECT_TRUE(second.getDefault(value));
    EXPECT_EQ(value, 0.25);

    const MObject color = fn.createColor("tint", "t");
    EXPECT_TRUE(fn.isUsedAsColor());
    EXPECT_EQ(MFnAttribute(fn.child(2)).name(), "tintB");
    EXPECT_EQ(MFnAttribute(fn.child(2)).shortName(), "tb");
    EXPECT_EQ(color.apiType(), MFn::kAttribute3Float);
    EXPECT_TRUE(color.hasFn(MFn::kCompoundAttribute));
}

TEST(Attributes, DefaultsAndLimits) {
    MFnNumericAttribute fn;
    (void)fn.createPoint("where", "w");
    EXPECT_TRUE(fn.setDefault(1.0, 2.0, 3.0));
    EXPECT_EQ(fn.setDefault(1.0, 2.0), MStatus::kInvalidParameter);
    EXPECT_EQ(fn.setDefault(4.0), MStatus::kInvalidParameter);
    double x = 0;
    double y = 0;
    double z = 0;
    EXPECT_TRUE(fn.getDefault(x, y, z));
    EXPECT_EQ(z, 3);

    (void)fn.create("times", "ti", MFnNumericData::kInt);
    EXPECT_TRUE(fn.setDefault(2.9));
    int whole = 0;
    EXPECT_TRUE(fn.getDefault(whole));
    EXPECT_EQ(whole, 2);
    EXPECT_FALSE(fn.hasMax());
    EXPECT_EQ(fn.getMax(x), MStatus::kFailure);
    EXPECT_TRUE(fn.setMax(10));
    EXPECT_TRUE(fn.getMax(x));
    EXPECT_EQ(x, 10);
    EXPECT_FALSE(fn.hasMin() || fn.hasSoftMax());

    MStatus status;
    EXPECT_TRUE(fn.create("bad", "b", MFnNumericData::kLast, 0, &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_TRUE(fn.create("", "b", MFnNumericData::kInt, 0, &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);
}

TEST(Attributes, UnitsSpeakSecondsAndRadians) {
    MFnUnitAttribute fn;
    (void)fn.create("when", "w", MTime(12, MTime::kFilm));
    double value = 0;
    EXPECT_TRUE(fn.getDefault(value));
    EXPECT_EQ(value, 0.5); // half a second
    MTime time;
    EXPECT_TRUE(fn.getDefault(time));
    EXPECT_EQ(time.as(MTime::kFilm), 12);
    EXPECT_TRUE(fn.setMax(2));
    EXPECT_TRUE(fn.getMax(value));
    EXPECT_EQ(value, 2);
    (void)fn.create("turn", "t", MAngle(180, MAngle::kDegrees));
    EXPECT_TRUE(fn.getDefault(value));
    EXPECT_DOUBLE_EQ(value, 3.14159265358979323846);
    EXPECT_EQ(fn.unitType(), MFnUnitAttribute::kAngle);
}

TEST(Attributes, EnumsByFieldName) {
    MFnEnumAttribute fn;
    (void)fn.create("mode", "m");
    fn.addField("None", 0);
    fn.addField("All", 12);
    fn.addField("Some", -3);
    EXPECT_EQ(fn.setDefault("All"), MStatus::kSuccess);
    short value = 0;
    EXPECT_TRUE(fn.getDefault(value));
    EXPECT_EQ(value, 12);
    EXPECT_EQ(fn.setDefault("Most"), MStatus::kInvalidParameter);
    EXPECT_TRUE(fn.getMin(value));
    EXPECT_EQ(value, -3);
    MStatus status;
    EXPECT_EQ(fn.fieldName(12, &status), "All");
    EXPECT_EQ(fn.fieldName(13, &status), "");
    EXPECT_EQ(status, MStatus::kInvalidParameter);
}

TEST(Attributes, CompoundsOwnTheirChildrenOnce) {
    MFnNumericAttribute number;
    const MObject child = number.create("child", "c", MFnNumericData::kDouble);
    MFnCompoundAttribute fn;
    MObject kept;
    {
        const MObject outer = fn.create("outer", "o");
        EXPECT_TRUE(fn.addChild(child));
        EXPECT_EQ(fn.addChild(child), MStatus::kInvalidParameter);
        EXPECT_EQ(fn.addChild(outer), MStatus::kInvalidParameter);
        EXPECT_EQ(fn.numChildren(), 1U);
        MFnCompoundAttribute other;
        const MObject inner = other.create("inner", "i");
        EXPECT_EQ(other.addChild(child), MStatus::kInvalidParameter);
        EXPECT_TRUE(fn.addChild(inner));
        EXPECT_EQ(other.addChild(outer), MStatus::kInvalidParameter); // no rings
        kept = inner;
    }
    (void)fn.create("another", "a"); // the set lets go of the outer compound
    MStatus status;
    EXPECT_TRUE(MFnAttribute(kept).parent(&status).isNull());
    EXPECT_EQ(status, MStatus::kNotFound);
}

TEST(Attributes, TypedAndGenericAccept) {
    MFnTypedAttribute typed;
    MFnStringData text;
    const MObject word = text.create("start");
    const MObject label = typed.create("label", "l", MFnData::kString, word);
    EXPECT_TRUE(text.set("changed")); // the default is the attribute's own
    MObject kept;
    EXPECT_TRUE(typed.getDefault(kept));
    EXPECT_EQ(MFnStringData(kept).string(), "start");
    MStatus status;
    EXPECT_TRUE(typed.create("matrix", "m", MFnData::kMatrix, word, &status).isNull());
    EXPECT_EQ(status, MStatus::kInvalidParameter);

    MFnGenericAttribute generic;
    (void)generic.create("any", "a");
    EXPECT_TRUE(generic.addDataAccept(MFnData::kMesh));
    EXPECT_TRUE(generic.addNumericDataAccept(MFnNumericData::kFloat));
    EXPECT_TRUE(generic.accepts(MFnData::kMesh));
    EXPECT_FALSE(generic.accepts(MFnData::kString));
    EXPECT_TRUE(generic.accepts(MFnNumericData::kFloat));
    EXPECT_EQ(generic.removeDataAccept(MFnData::kString), MStatus::kInvalidParameter);
    EXPECT_TRUE(generic.removeDataAccept(MFnData::kMesh));
    EXPECT_FALSE(generic.accepts(MFnData::kMesh));

    EXPECT_EQ(MFnGenericAttribute(label, &status).name(), ""); // another kind of attribute
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(MFnGenericAttribute().addDataAccept(MFnData::kMesh), MStatus::kInvalidParameter);
}

class RampTest : public ApiTest {
  protected:
    static MFloatArray floats(std::initializer_list<float> values) {
        MFloatArray array;
        for (const float value : values)
            array.append(value);
        return array;
    }
    static MIntArray ints(std::initializer_list<int> values) {
        MIntArray array;
        for (const int value : values)
            array.append(value);
        return array;
    }
    float valueAt(const MRampAttribute& ramp, float position) {
        float value = -1;
        ramp.getValueAtPosition(position, value);
        return value;
    }
    MObject node = make();
    MRampAttribute curve{node, Probe::curve};
};

TEST_F(RampTest, StartsWithOneEntryAndGrows) {
    MIntArray indices;
    MFloatArray positions;
    MFloatArray values;
    MIntArray steps;
    curve.getEntries(indices, positions, values, steps);
    ASSERT_EQ(indices.length(), 1U);
    EXPECT_EQ(indices[0], 0);
    EXPECT_EQ(positions[0], 0);
    EXPECT_EQ(values[0], 0);
    EXPECT_EQ(steps[0], MRampAttribute::kLinear);

    MStatus status;
    curve.setValueAtIndex(1, 0, &status);
    EXPECT_TRUE(status);
    curve.setValueAtIndex(1, 1, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    curve.addEntries(floats({1, 0.5F}), floats({3, 2}), ints({1, 0}), &status);
    EXPECT_TRUE(status);
    EXPECT_EQ(curve.getNumEntries(), 3U);
    EXPECT_EQ(valueAt(curve, 0.25F), 1.5F); // from 1 at 0 to 2 at 0.5
    EXPECT_EQ(valueAt(curve, 0.75F), 2);    // the entry at 0.5 stays
    curve.addEntries(floats({1}), floats({3, 2}), ints({1}), &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);

    curve.deleteEntries(ints({2, 5}), &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(curve.getNumEntries(), 3U);
    curve.deleteEntries(ints({0, 2}), &status);
    EXPECT_TRUE(status);
    EXPECT_EQ(valueAt(curve, 0), 3);
    curve.deleteEntries(ints({1}), &status);
    EXPECT_EQ(status, MStatus::kFailure);
    curve.addEntries(floats({0}), floats({7}), ints({1}), &status);
    curve.getEntries(indices, positions, values, steps);
    EXPECT_EQ(indices[1], 2); // behind the highest
}

TEST_F(RampTest, ColoursAndWrongKinds) {
    MRampAttribute shade{MPlug(node, Probe::shade)};
    MStatus status;
    shade.setColorAtIndex(MColor(1, 0.5F, 0), 0, &status);
    EXPECT_TRUE(status);
    MColor color;
    shade.getColorAtPosition(0.3F, color, &status);
    EXPECT_EQ(color, MColor(1, 0.5F, 0, 1));
    float value = 5;
    shade.getValueAtPosition(0, value, &status);
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_EQ(value, 5);
    curve.setColorAtIndex(color, 0, &status);
    EXPECT_EQ(status, MStatus::kFailure);
    EXPECT_TRUE(shade.isColorRamp());
    EXPECT_FALSE(shade.isCurveRamp());

    const MRampAttribute none(node, Probe::a, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    EXPECT_EQ(none.getNumEntries(&status), 0U);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
    scene.remove(*nodeOf(node));
    curve.getValueAtPosition(0, value, &status);
    EXPECT_EQ(status, MStatus::kInvalidParameter);
}

TEST_F(RampTest, ConnectedEntriesArePulledAndEditsDirty) {
    const MObject feeder = make();
    const MPlug value = MFnDependencyNode(node).findPlug("curve[0].curve_FloatValue");
    ASSERT_TRUE(connect(MPlug(feeder, Probe::a), value));
    EXPECT_EQ(valueAt(curve, 0), 1.5F);
    MPlug(feeder, Probe::a).setDouble(4);
    EXPECT_EQ(valueAt(curve, 0), 4);
    MStatus status;
    curve.setValueAtIndex(8, 0, &status);
    EXPECT_EQ(status, MStatus::kFailure); // fed by a wire

    Probe::onCompute = [&](Probe& self, const MPlug&, MDataBlock& block) {
        block.outputValue(Probe::sum)
            .set(static_cast<double>(valueAt(MRampAttribute(self.thisMObject(), Probe::curve), 1)));
        return MStatus::kSuccess;
    };
    const MPlug sum(node, Probe::sum);
    EXPECT_EQ(sum.asDouble(), 4);
    curve.setPositionAtIndex(0.5F, 0);
    EXPECT_EQ(sum.asDouble(), 4);
    curve.addEntries(floats({0.8F}), floats({6}), ints({1}));
    EXPECT_EQ(sum.asDouble(), 6);
    EXPECT_EQ(Probe::computes, 3); // once for each edit
}

} // namespace
} // namespace vesk::api
