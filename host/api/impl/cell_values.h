#pragma once
// What a cell holds, as the API's calls read and write it. Nothing here evaluates or spreads dirt.

#include "host/core/outcome.h"
#include "host/graph/cell.h"

#include <maya/MFnData.h>
#include <maya/MFnNumericData.h>
#include <maya/MTime.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace vesk::api {

/// Numbers of a pair, triple or quadruple; missing ones are 0.
using Numbers = std::array<double, 4>;

/// Whether the cell is a compound of one to four numbers.
bool isTuple(const graph::Cell& cell);
/// The numeric type of a number or tuple, or of a number in a generic attribute; `kInvalid` for anything
/// else.
MFnNumericData::Type numericTypeOf(const graph::Cell& cell);
/// What is there: `kNumeric` for numbers, `kInvalid` for no data.
MFnData::Type dataTypeOf(const graph::Cell& cell);

/// The number of a cell that holds one, in a generic attribute too; else 0.
double numberOf(const graph::Cell& cell);
/// The numbers of a tuple, whether made of cells or of one data object.
Numbers numbersOf(const graph::Cell& cell);

// Writing leaves the cell's dirt as it is, unless `nowClean`. False when the cell does not take the value.

bool putNumberInto(graph::Cell& cell, double value, bool nowClean = false);
bool putNumbersInto(graph::Cell& cell, const Numbers& numbers, int count, bool nowClean = false);
/// Null unsets. Numeric data goes into the children of a tuple.
bool putDataInto(graph::Cell& cell, Data* data, bool nowClean = false);

/// As a plug is set from outside, with the values of a detached cell of the same attribute.
Outcome storeCopy(graph::Cell& to, const graph::Cell& from);

/// A copy of the cell that belongs to no data block, with all that stands below it.
std::unique_ptr<graph::Cell> detachedCopy(const graph::Cell& cell);

/// Elements of a multi that are connected or hold a value: their logical indices, ascending.
std::vector<int> existingIndices(const graph::Cell& multi);

/// Cut toward zero and held in the range of an integer type; not-a-number is 0.
template <class Integer>
Integer truncatedTo(double value) {
    constexpr auto low = static_cast<double>(std::numeric_limits<Integer>::min());
    constexpr auto high = static_cast<double>(std::numeric_limits<Integer>::max());
    if (std::isnan(value)) return 0;
    if (value <= low) return std::numeric_limits<Integer>::min();
    return value >= high ? std::numeric_limits<Integer>::max() : static_cast<Integer>(value);
}

/// Cells hold times in ticks of 1/6000 second; the API gives them in the unit of the interface.
inline MTime timeOf(double ticks) {
    const MTime::Unit unit = MTime::uiUnit();
    return MTime(ticks / MTime::sizeOf(unit), unit);
}
inline double ticksOf(const MTime& time) { return time.value() * MTime::sizeOf(time.unit()); }

} // namespace vesk::api
