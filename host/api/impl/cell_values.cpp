#include "host/api/impl/cell_values.h"

#include "host/api/impl/built_elements.h"
#include "host/data/packed_data.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"

#include <numeric>

namespace vesk::api {

using graph::AttrKind;
using graph::Cell;

namespace {

/// A generic attribute that a number came to, over a wire or by hand, holds no data object.
bool isBareNumber(const Cell& cell) {
    if (!cell.isLeaf() || cell.attr.kind != AttrKind::Generic || cell.data) return false;
    return cell.source ? cell.source->attr.isNumber() : cell.isSet && !cell.attr.acceptedNumbers.empty();
}

NumericData* numericData(const Cell& cell) { return dynamic_cast<NumericData*>(cell.data.get()); }

bool holdsNumber(const Cell& cell) { return cell.isLeaf() && cell.attr.isNumber(); }

} // namespace

bool isTuple(const Cell& cell) {
    if (!cell.isCompound() || cell.attr.children.empty() || cell.attr.children.size() > 4) return false;
    for (const auto& child : cell.attr.children) {
        if (child->array || !child->isNumber()) return false;
    }
    return true;
}

MFnNumericData::Type numericTypeOf(const Cell& cell) {
    if (holdsNumber(cell)) {
        if (cell.attr.kind == AttrKind::Unit) return MFnNumericData::kDouble;
        if (cell.attr.kind == AttrKind::Enum) return MFnNumericData::kShort;
        return cell.attr.numericType;
    }
    if (isTuple(cell)) {
        if (cell.attr.kind == AttrKind::Numeric) return cell.attr.numericType;
        return graph::numericTuple(MFnNumericData::kDouble, static_cast<int>(cell.attr.children.size()));
    }
    if (const auto* numbers = numericData(cell)) return numbers->type();
    return isBareNumber(cell) ? MFnNumericData::kDouble : MFnNumericData::kInvalid;
}

MFnData::Type dataTypeOf(const Cell& cell) {
    if (cell.isArray()) return MFnData::kInvalid;
    if (cell.data) return cell.data->dataType();
    return numericTypeOf(cell) == MFnNumericData::kInvalid ? MFnData::kInvalid : MFnData::kNumeric;
}

double numberOf(const Cell& cell) {
    if (holdsNumber(cell) || isBareNumber(cell)) return cell.number;
    const auto* numbers = numericData(cell);
    return numbers ? numbers->numbers()[0] : 0;
}

Numbers numbersOf(const Cell& cell) {
    Numbers numbers{};
    if (isTuple(cell)) {
        for (std::size_t i = 0; i < cell.attr.children.size(); ++i) {
            const Cell* child = cell.childIfThere(static_cast<int>(i));
            numbers[i] = child ? child->number : cell.attr.children[i]->defaultNumber;
        }
    } else if (const auto* data = numericData(cell)) {
        numbers = data->numbers();
    } else {
        numbers[0] = numberOf(cell);
    }
    return numbers;
}

bool putNumberInto(Cell& cell, double value, bool nowClean) {
    if (holdsNumber(cell)) {
        graph::putNumber(cell, value, nowClean);
        return true;
    }
    if (!cell.isLeaf() || cell.attr.kind != AttrKind::Generic || cell.attr.acceptedNumbers.empty())
        return false;
    graph::putNumber(cell, value, nowClean);
    cell.data = nullptr;
    return true;
}

bool putNumbersInto(Cell& cell, const Numbers& numbers, int count, bool nowClean) {
    if (isTuple(cell)) {
        const int size = static_cast<int>(cell.attr.children.size());
        for (int i = 0; i < std::min(count, size); ++i) {
            graph::putNumber(cell.child(i), numbers[static_cast<std::size_t>(i)], nowClean);
        }
        return count == size;
    }
    if (!cell.isLeaf() || !cell.attr.accepts(MFnData::kNumeric)) return false;
    auto data = makeRef<NumericData>(graph::numericTuple(MFnNumericData::kDouble, count));
    data->set(numbers);
    graph::putData(cell, data, nowClean);
    return true;
}

bool putDataInto(Cell& cell, Data* data, bool nowClean) {
    if (const auto* numbers = dynamic_cast<NumericData*>(data)) {
        if (holdsNumber(cell)) return putNumberInto(cell, numbers->numbers()[0], nowClean);
        if (isTuple(cell)) return putNumbersInto(cell, numbers->numbers(), numbers->count(), nowClean);
    }
    if (!cell.isLeaf() || !cell.attr.isData()) return false;
    if (data && cell.attr.fileType.empty() && !cell.attr.accepts(data->dataType())) return false;
    graph::putData(cell, Ref<Data>(data), nowClean);
    return true;
}

Outcome storeCopy(Cell& to, const Cell& from) {
    if (&to.attr != &from.attr || to.isArray() != from.isArray()) {
        return Outcome::fail("The data is not that of attribute '" + to.attr.longName + "'.");
    }
    if (to.isArray()) {
        const bool byOwner = to.node.computing > 0 && to.node.isComputed(to.attr);
        if (!byOwner) {
            if (auto outcome = graph::checkWritable(to); !outcome) return outcome;
        }
        if (const auto* flat = flatElements(from)) {
            graph::replaceNumbers(to, flat->indices, flat->numbers);
        } else {
            graph::replaceElements(to, from.children);
        }
        graph::markClean(to);
        if (!byOwner) graph::spreadDirt(to);
        return {};
    }
    if (to.isLeaf())
        return to.attr.isNumber() ? graph::storeNumber(to, from.number) : graph::storeData(to, from.data);
    for (const auto& child : from.children) {
        if (!child) continue;
        if (auto outcome = storeCopy(to.child(child->attr), *child); !outcome) return outcome;
    }
    return {};
}

std::unique_ptr<Cell> detachedCopy(const Cell& cell) {
    const auto copyInto = [](const auto& self, Cell& to, const Cell& from) -> void {
        to.number = from.number;
        to.data = from.data ? from.data->clone() : nullptr;
        to.isSet = from.isSet;
        for (const auto& below : from.children) {
            if (!below || (below->isElement() && !below->isInUse())) continue;
            self(self, below->isElement() ? to.element(below->logicalIndex) : to.child(below->attr), *below);
        }
    };
    auto copy = Cell::detached(cell.node, cell.attr, cell.logicalIndex);
    copyInto(copyInto, *copy, cell);
    return copy;
}

std::vector<int> existingIndices(const Cell& multi) {
    if (!multi.attr.packed) return multi.existingIndices();
    int count = 0;
    if (const auto* floats = dynamic_cast<const PackedFloats*>(multi.data.get())) count = floats->count();
    if (const auto* ints = dynamic_cast<const PackedInts*>(multi.data.get())) count = ints->count();
    std::vector<int> indices(static_cast<std::size_t>(count));
    std::iota(indices.begin(), indices.end(), 0);
    return indices;
}

} // namespace vesk::api
