#pragma once

#include <maya/MStatus.h>

#include <memory>

class MDoubleArray;
class MIntArray;
class MString;
class MStringArray;
class MVector;
class MVectorArray;

namespace vesk::mel {
class Value;
} // namespace vesk::mel

/// What a command gave back. A scalar also reads as an array of one, an int as a double; another type is
/// `kFailure`, and the array given for it is emptied.
class MCommandResult {
  public:
    enum Type {
        kInvalid,
        kInt,
        kIntArray,
        kDouble,
        kDoubleArray,
        kString,
        kStringArray,
        kVector,
        kVectorArray,
        kMatrix,
        kMatrixArray
    };

    MCommandResult() = default;

    Type resultType(MStatus* status = nullptr) const;
    MStatus getResult(int& result) const;
    MStatus getResult(MIntArray& result) const;
    MStatus getResult(double& result) const;
    MStatus getResult(MDoubleArray& result) const;
    MStatus getResult(MString& result) const;
    MStatus getResult(MStringArray& result) const;
    MStatus getResult(MVector& result) const;
    MStatus getResult(MVectorArray& result) const;
    /// A matrix, row by row.
    MStatus getResult(MDoubleArray& result, int& rows, int& columns) const;
    MString stringResult(MStatus* status = nullptr) const;

    /// For the host.
    explicit MCommandResult(const vesk::mel::Value& value);

  private:
    std::shared_ptr<const vesk::mel::Value> value_; ///< null for none
};
