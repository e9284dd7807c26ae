#pragma once
// Single values on a wire: a text, a few numbers, a matrix.

#include "host/data/data.h"

#include <maya/MFnNumericData.h>
#include <maya/MMatrix.h>
#include <maya/MString.h>
#include <maya/MTransformationMatrix.h>

#include <array>
#include <optional>

namespace vesk {

class StringData : public Data {
  public:
    StringData() = default;
    explicit StringData(MString string) : value(std::move(string)) {}

    MString value;

    MFn::Type apiType() const override { return MFn::kStringData; }
    MFnData::Type dataType() const override { return MFnData::kString; }
    Ref<Data> clone() const override { return makeRef<StringData>(value); }
    std::size_t byteSize() const override { return value.length(); }
};

/// Up to four numbers. They are kept as doubles, each rounded to what the type can hold when it is set.
class NumericData : public Data {
  public:
    explicit NumericData(MFnNumericData::Type type) : type_(type) {}

    MFnNumericData::Type type() const { return type_; }
    /// How many numbers a type has: 1 to 4; 0 for numbers that are no type.
    static int countOf(MFnNumericData::Type type);
    /// The type of one number of a type: `kDouble` of `k3Double`.
    static MFnNumericData::Type leafOf(MFnNumericData::Type type);
    int count() const { return countOf(type_); }

    /// A number as one of that type holds it: integers are cut toward zero and held in range, and are 0 for
    /// what is not a number.
    static double rounded(double number, MFnNumericData::Type leaf);

    /// The numbers, first `count()` of them used.
    const std::array<double, 4>& numbers() const { return numbers_; }
    /// Each is rounded to the type.
    void set(const std::array<double, 4>& numbers);

    MFn::Type apiType() const override;
    MFnData::Type dataType() const override { return MFnData::kNumeric; }
    Ref<Data> clone() const override;
    std::size_t byteSize() const override { return sizeof(numbers_); }

  private:
    MFnNumericData::Type type_;
    std::array<double, 4> numbers_{};
};

/// A matrix, and the components that it was made from, when it was.
class MatrixData : public Data {
  public:
    MatrixData() = default;
    explicit MatrixData(const MMatrix& matrix) : matrix_(matrix) {}

    const MMatrix& matrix() const { return matrix_; }
    bool hasTransformation() const { return transformation_.has_value(); }
    /// The components as they were given, or those that the matrix falls into.
    MTransformationMatrix transformation() const {
        return transformation_ ? *transformation_ : MTransformationMatrix(matrix_);
    }
    void set(const MMatrix& matrix) {
        matrix_ = matrix;
        transformation_.reset();
    }
    void set(const MTransformationMatrix& transformation) {
        matrix_ = transformation.asMatrix();
        transformation_ = transformation;
    }

    MFn::Type apiType() const override { return MFn::kMatrixData; }
    MFnData::Type dataType() const override { return MFnData::kMatrix; }
    Ref<Data> clone() const override {
        auto copy = makeRef<MatrixData>(matrix_);
        copy->transformation_ = transformation_;
        return copy;
    }
    std::size_t byteSize() const override { return sizeof(matrix_); }

  private:
    MMatrix matrix_;
    std::optional<MTransformationMatrix> transformation_;
};

} // namespace vesk
