#pragma once
// Arrays on a node's inputs and outputs, as runs of elements that kernels work on.

#include "nodes/common/steps.h"

#include <maya/MFnDoubleArrayData.h>
#include <maya/MFnIntArrayData.h>
#include <maya/MFnPointArrayData.h>
#include <maya/MFnVectorArrayData.h>
#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <limits>
#include <span>
#include <type_traits>
#include <variant>

class MPxNode;

namespace vesk::nodes {

/// The elements of an API array, which lie side by side.
template <class Array>
auto elements(Array& array) {
    using Element = std::remove_reference_t<decltype(array[0])>;
    return array.length() > 0 ? std::span<Element>(&array[0], array.length()) : std::span<Element>();
}

/// Vectors and points as the numbers that they are made of: x, y, z or x, y, z, w.
std::span<const double> flat(std::span<const MVector> vectors);
std::span<double> flat(std::span<MVector> vectors);
std::span<const double> flat(std::span<const MPoint> points);
std::span<double> flat(std::span<MPoint> points);

/// Towards zero. What an int cannot hold becomes the nearest that it can; not-a-number becomes 0.
inline int truncated(double value) {
    constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
    if (value > kLeast - 1.0 && value < kMost + 1.0) [[likely]]
        return static_cast<int>(value);
    return value < 0 ? kLeast : value > 0 ? kMost : 0;
}

/// Elements by kind; the first alternative: no array, or one of another kind.
using AnyElements = std::variant<std::monostate, std::span<const int>, std::span<const double>,
                                 std::span<const MVector>, std::span<const MPoint>>;

std::size_t lengthOf(const AnyElements& elements);
inline bool isArray(const AnyElements& elements) { return elements.index() != 0; }

/// The array behind a data object, in place: nothing is copied. To be kept while its elements are read.
template <class FunctionSet>
class ArrayView {
    const FunctionSet set_;
    using Array = std::remove_cvref_t<decltype(std::declval<const FunctionSet&>().array())>;
    mutable Array array_; ///< some hosts' const arrays give copies of their elements, which have no place

  public:
    explicit ArrayView(const MObject& data) : set_(data), array_(set_.array()) {}
    ArrayView(const ArrayView&) = delete;
    ArrayView& operator=(const ArrayView&) = delete;

    auto values() const {
        const auto run = elements(array_);
        return std::span<const typename decltype(run)::element_type>(run);
    }
};

/// An input that takes arrays of several kinds, read in place. To be kept while its elements are read.
class InputArray {
  public:
    explicit InputArray(const MObject& data);
    InputArray(MDataBlock& block, const MObject& attribute)
        : InputArray(block.inputValue(attribute).data()) {}

    const AnyElements& values() const { return values_; }

  private:
    std::variant<std::monostate, ArrayView<MFnIntArrayData>, ArrayView<MFnDoubleArrayData>,
                 ArrayView<MFnVectorArrayData>, ArrayView<MFnPointArrayData>>
        view_;
    AnyElements values_;
};

using IntsOutput = ArrayOutput<MFnIntArrayData, MIntArray>;
using DoublesOutput = ArrayOutput<MFnDoubleArrayData, MDoubleArray>;
using VectorsOutput = ArrayOutput<MFnVectorArrayData, MVectorArray>;
using PointsOutput = ArrayOutput<MFnPointArrayData, MPointArray>;

/// Warns that an output of this length has no room in memory.
void warnOfMemory(const MPxNode& node, const MObject& attribute, std::size_t length);

/// A new array of one of the kinds above on an output: `fill` gets its elements, which are zero. Without the
/// memory for them there is a warning, and the output stays as it was.
template <class Output, class Fill>
void putArray(const MPxNode& node, MDataBlock& block, const MObject& attribute, std::size_t length,
              Fill fill) {
    Output output;
    if (length > 0xffffffffU || !output.values.setLength(static_cast<unsigned>(length))) {
        return warnOfMemory(node, attribute, length);
    }
    fill(elements(output.values));
    output.handOver(block, attribute);
}

/// An array without elements on an output.
template <class Output>
void putEmptyArray(MDataBlock& block, const MObject& attribute) {
    Output().handOver(block, attribute);
}

} // namespace vesk::nodes
