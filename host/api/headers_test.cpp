// Every value type of the API side by side: names do not clash, and static members are ready before main.

#include <maya/MAngle.h>
#include <maya/MBoundingBox.h>
#include <maya/MColor.h>
#include <maya/MColorArray.h>
#include <maya/MDistance.h>
#include <maya/MDoubleArray.h>
#include <maya/MEulerRotation.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatMatrix.h>
#include <maya/MFloatPoint.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFloatVector.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFn.h>
#include <maya/MInt64Array.h>
#include <maya/MIntArray.h>
#include <maya/MMatrix.h>
#include <maya/MMatrixArray.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MQuaternion.h>
#include <maya/MSpace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>
#include <maya/MTime.h>
#include <maya/MTimeArray.h>
#include <maya/MTransformationMatrix.h>
#include <maya/MTypeId.h>
#include <maya/MTypes.h>
#include <maya/MUintArray.h>
#include <maya/MVector.h>
#include <maya/MVectorArray.h>

#include <gtest/gtest.h>

namespace {

constinit const MVector savedAxis = MVector::zAxis;
constinit const MMatrix savedMatrix = MMatrix::identity;
constinit const MTypeId savedId(0x1234, 0x56);

TEST(Headers, StaticsAreReadyBeforeMain) {
    EXPECT_EQ(savedAxis, MVector(0.0, 0.0, 1.0));
    EXPECT_EQ(savedMatrix(3, 3), 1.0);
    EXPECT_EQ(savedId.id(), 0x123456U);
}

TEST(Headers, StatusReadsAsTruthAndSaysWhatFailed) {
    const MStatus failed = MS::kInvalidParameter;
    EXPECT_FALSE(failed);
    EXPECT_TRUE(failed != MS::kSuccess && failed == MStatus(MS::kInvalidParameter));
    EXPECT_TRUE(MStatus() && MS::kSuccess == MStatus());
    testing::internal::CaptureStderr();
    failed.perror("create");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "create: (kInvalidParameter): Invalid argument\n");
}

} // namespace
