#include "host/commands/matrix_words.h"

#include "host/commands/data_words.h"
#include "host/data/value_data.h"

#include <array>

namespace vesk::commands {

namespace {

/// Where the components begin among the numbers behind `xform`.
enum XformPlace : std::size_t {
    kScale = 0,
    kRotation = 3,
    kOrder = 6,
    kTranslation = 7,
    kShear = 10,
    kScalePivot = 13,
    kScalePivotTranslation = 16,
    kRotatePivot = 19,
    kRotatePivotTranslation = 22,
    kOrientation = 25,
    kJointOrientation = 29,
    kInverseScale = 33,
    kCompensates = 36,
    kXformCount = 37,
};

Result<Ref<Data>> readXform(Words& words) {
    std::array<double, kXformCount> n{};
    const std::size_t read = words.numbers(n.data(), n.size());
    if (read < n.size()) return badElement(read, words);
    const double order = n[kOrder];
    if (!(order >= 0 && order <= 5)) return Outcome::fail("The rotation order of a matrix is from 0 to 5.");

    const auto vector = [&n](std::size_t at) { return MVector(n[at], n[at + 1], n[at + 2]); };
    const auto quaternion = [&n](std::size_t at) {
        return MQuaternion(n[at], n[at + 1], n[at + 2], n[at + 3]);
    };
    constexpr auto kSpace = MSpace::kTransform;
    MTransformationMatrix transform;
    transform.setScale(&n[kScale], kSpace);
    transform.setShear(&n[kShear], kSpace);
    transform.setScalePivot(MPoint(vector(kScalePivot)), kSpace, false);
    transform.setScalePivotTranslation(vector(kScalePivotTranslation), kSpace);
    transform.setRotatePivot(MPoint(vector(kRotatePivot)), kSpace, false);
    transform.setRotatePivotTranslation(vector(kRotatePivotTranslation), kSpace);
    transform.setRotationOrientation(quaternion(kOrientation));
    const auto rotationOrder = static_cast<int>(order) + 1;
    transform.setRotation(&n[kRotation], static_cast<MTransformationMatrix::RotationOrder>(rotationOrder));
    // A joint turns further by its own orientation.
    const MQuaternion joint = quaternion(kJointOrientation);
    if (joint != MQuaternion()) transform.rotateTo(transform.rotation() * joint);
    transform.setTranslation(vector(kTranslation), kSpace);

    auto data = makeRef<MatrixData>();
    const MVector inverseScale = vector(kInverseScale);
    if (n[kCompensates] == 0 || inverseScale == MVector(1, 1, 1)) {
        data->set(transform);
        return Ref<Data>(data);
    }
    MMatrix matrix = transform.asMatrix();
    for (unsigned row = 0; row < 3; ++row) {
        for (unsigned column = 0; column < 3; ++column)
            matrix(row, column) *= inverseScale[column];
    }
    data->set(matrix);
    return Ref<Data>(data);
}

} // namespace

Result<Ref<Data>> readMatrix(Words& words) {
    if (words.peek() == WordKind::Text) {
        const std::string word(words.text());
        if (word != "xform")
            return Outcome::fail("A matrix begins with a number or 'xform', not '" + word + "'.");
        return readXform(words);
    }
    std::array<double, 16> numbers{};
    const std::size_t read = words.numbers(numbers.data(), numbers.size());
    if (read < numbers.size()) return badElement(read, words);
    MMatrix matrix;
    for (unsigned i = 0; i < 16; ++i)
        matrix(i / 4, i % 4) = numbers[i];
    return Ref<Data>(makeRef<MatrixData>(matrix));
}

} // namespace vesk::commands
