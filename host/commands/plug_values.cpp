#include "host/commands/plug_values.h"

#include "host/commands/assign.h"
#include "host/commands/packed.h"
#include "host/commands/ui_units.h"
#include "host/data/array_data.h"
#include "host/data/component_list_data.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"
#include "host/mel/error.h"

#include <algorithm>

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::AttrKind;
using graph::Cell;
using graph::Plug;
using graph::Scene;
using mel::Error;
using mel::Value;

Value numberValue(const Scene& scene, const Cell& leaf) {
    if (leaf.attr.isInteger()) return mel::truncated(leaf.number);
    return toUi(scene, leaf.attr.unit, leaf.number);
}

/// Numbers in the making of an array; whole ones stay ints as long as no other comes.
class Numbers {
  public:
    void add(const Scene& scene, const Cell& leaf) {
        whole_ = whole_ && leaf.attr.isInteger();
        values_.push_back(toUi(scene, leaf.attr.unit, leaf.number));
    }
    void add(const PackedPlace& element) {
        whole_ = whole_ && element.holdsIntegers;
        element.read(element.element, element.element, values_);
    }
    Value take() {
        if (!whole_ || values_.empty()) return std::move(values_);
        mel::IntArray ints;
        ints.reserve(values_.size());
        for (double value : values_)
            ints.push_back(mel::truncated(value));
        return ints;
    }

  private:
    mel::FloatArray values_;
    bool whole_ = true;
};

void addNumbers(const Scene& scene, Cell& cell, Numbers& numbers) {
    if (cell.attr.children.empty()) return numbers.add(scene, cell);
    for (std::size_t i = 0; i < cell.attr.children.size(); ++i)
        addNumbers(scene, cell.child(static_cast<int>(i)), numbers);
}

/// Items that are `each` numbers in a row.
template <class Item>
Value flattened(const std::vector<Item>& items, std::size_t each) {
    if (items.empty()) return mel::FloatArray();
    const double* const first = &items.front().x;
    return mel::FloatArray(first, first + each * items.size());
}
static_assert(sizeof(MVector) == 3 * sizeof(double) && sizeof(MPoint) == 4 * sizeof(double));

Value matrixValue(const MMatrix& matrix) {
    mel::FloatArray floats;
    for (unsigned i = 0; i < 16; ++i)
        floats.push_back(matrix(i / 4, i % 4));
    return floats;
}

Value numericValue(const NumericData& data) {
    const auto leaf = NumericData::leafOf(data.type());
    const bool isReal = leaf == MFnNumericData::kFloat || leaf == MFnNumericData::kDouble;
    mel::FloatArray floats(data.numbers().begin(), data.numbers().begin() + data.count());
    return isReal ? Value(std::move(floats)) : Value(Value(std::move(floats)).asIntArray().read());
}

Value stringsValue(const StringArrayData& data) {
    mel::StringArray strings;
    for (const auto& item : data.values.read())
        strings.push_back(text(item));
    return strings;
}

/// None when the language has no value for it.
Value dataValue(const Data& data) {
    if (const auto* string = dynamic_cast<const StringData*>(&data)) return text(string->value);
    if (const auto* matrix = dynamic_cast<const MatrixData*>(&data)) return matrixValue(matrix->matrix());
    if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(&data)) return doubles->values.read();
    if (const auto* ints = dynamic_cast<const IntArrayData*>(&data)) return ints->values.read();
    if (const auto* strings = dynamic_cast<const StringArrayData*>(&data)) return stringsValue(*strings);
    if (const auto* list = dynamic_cast<const ComponentListData*>(&data)) return list->texts();
    if (const auto* numeric = dynamic_cast<const NumericData*>(&data)) return numericValue(*numeric);
    if (const auto* floats = dynamic_cast<const FloatArrayData*>(&data)) {
        return mel::FloatArray(floats->values.read().begin(), floats->values.read().end());
    }
    if (const auto* vectors = dynamic_cast<const VectorArrayData*>(&data)) {
        return flattened(vectors->values.read(), 3);
    }
    if (const auto* points = dynamic_cast<const PointArrayData*>(&data)) {
        return flattened(points->values.read(), 4);
    }
    return {};
}

/// What an attribute without data reads as; none for those that could hold anything.
Value emptyValue(const Attribute& attribute) {
    if (attribute.kind != AttrKind::Typed) return {};
    switch (attribute.dataType) {
    case MFnData::kString: return "";
    case MFnData::kStringArray:
    case MFnData::kComponentList: return mel::StringArray();
    case MFnData::kIntArray: return mel::IntArray();
    default: return mel::FloatArray();
    }
}

[[noreturn]] void refuse(const Cell& cell) {
    throw Error("The data of '" + Plug(cell).name() + "' (" + cell.attr.typeName() +
                ") cannot be returned by a command.");
}

Value leafValue(const Scene& scene, Cell& cell) {
    if (cell.attr.kind == AttrKind::Message) throw Error("Message attributes have no data values.");
    if (cell.attr.isNumber()) return numberValue(scene, cell);
    if (!cell.data) {
        const bool holdsNumber = cell.attr.kind == AttrKind::Generic && !cell.attr.acceptedNumbers.empty() &&
                                 (cell.isSet || cell.feedingAncestor());
        return holdsNumber ? Value(cell.number) : emptyValue(cell.attr);
    }
    Value value = dataValue(*cell.data);
    if (value.isNone()) refuse(cell);
    return value;
}

Value cellValue(const Scene& scene, Cell& cell) {
    graph::clean(cell);
    if (cell.isLeaf()) return leafValue(scene, cell);
    std::vector<const Attribute*> leaves;
    if (!collectLeaves(cell.attr, leaves)) refuse(cell);
    Numbers numbers;
    addNumbers(scene, cell, numbers);
    return numbers.take();
}

/// Values of several plugs of one attribute: numbers or strings.
Value listValue(const Scene& scene, const std::vector<Plug>& plugs, const Attribute& attribute) {
    std::vector<const Attribute*> leaves;
    const bool areNumbers = collectLeaves(attribute, leaves);
    const bool areStrings = attribute.kind == AttrKind::Typed && attribute.dataType == MFnData::kString;
    Numbers numbers;
    mel::StringArray strings;
    for (const Plug& plug : plugs) {
        if (const auto packed = findPacked(plug)) {
            numbers.add(*packed);
            continue;
        }
        const ReadCell cell(plug);
        if (!cell.get()) throw Error("The index of an element is missing in '" + plug.name() + "'.");
        if (!areNumbers && !areStrings) refuse(*cell.get());
        graph::clean(*cell.get());
        if (areStrings) {
            strings.push_back(leafValue(scene, *cell.get()).asString());
        } else {
            addNumbers(scene, *cell.get(), numbers);
        }
    }
    return areStrings ? Value(std::move(strings)) : numbers.take();
}

Value packedValue(const PackedPlace& place, int first, int last) {
    std::vector<double> numbers;
    place.read(first, last, numbers);
    const bool isOne = place.element >= 0 && place.numberCount == 1;
    if (isOne) return place.holdsIntegers ? Value(mel::truncated(numbers[0])) : Value(numbers[0]);
    Value floats(std::move(numbers));
    return place.holdsIntegers ? Value(floats.asIntArray().read()) : floats;
}

std::vector<Plug> elementsOf(const Plug& array) {
    std::vector<Plug> plugs;
    const ReadCell cell(array);
    if (!cell.get()) throw Error("The index of an element is missing in '" + array.name() + "'.");
    for (int index : elementIndices(*cell.get()))
        plugs.push_back(array.element(index));
    return plugs;
}

void checkLength(const graph::PlugRange& range) {
    if (range.last >= 0 && static_cast<std::size_t>(range.last - range.first) >= kMostElements) {
        throw Error("'" + range.plug.name() + "[" + std::to_string(range.first) + ":" +
                    std::to_string(range.last) + "]' names too many elements.");
    }
}

} // namespace

ReadCell::ReadCell(const Plug& plug) {
    cell_ = plug.cellIfThere();
    if (cell_ || plug.isNull()) return;
    Plug above = plug;
    const Cell* there = nullptr;
    while (!there && !above.isNull()) {
        above = above.isElement() ? above.array() : above.parent();
        if (!above.isNull()) there = above.cellIfThere();
    }
    bool hasValue = plug.node->isComputed(*plug.attr);
    for (const Cell* at = there; at; at = at->parent)
        hasValue = hasValue || at->source || at->locked;
    const auto chosen = plug.indices.begin() + plug.depth;
    if (hasValue || std::find(plug.indices.begin(), chosen, -1) != chosen) {
        cell_ = plug.cell();
        return;
    }
    const int index = plug.isElement() ? plug.indices[static_cast<std::size_t>(plug.depth - 1)] : -1;
    spare_ = Cell::detached(*plug.node, *plug.attr, index);
    cell_ = spare_.get();
}

std::vector<int> elementIndices(Cell& array) {
    graph::clean(array);
    if (array.source && array.source->isArray()) return array.source->existingIndices();
    if (!array.feedingAncestor()) return array.existingIndices();
    std::vector<int> indices;
    for (const auto& element : array.children)
        indices.push_back(element->logicalIndex);
    return indices;
}

Value plugValue(Scene& scene, const graph::PlugRange& range) {
    if (!range.error.empty()) throw Error(range.error);
    checkLength(range);
    const bool isPlain = range.first < 0 && range.childPath.empty();
    if (const auto place = findPacked(range.plug)) {
        if (place->element >= 0) return packedValue(*place, place->element, place->element);
        if (range.childPath.empty()) {
            graph::clean(*place->array);
            const int last = range.first < 0 ? place->count() - 1 : range.last;
            return packedValue(*place, std::max(range.first, 0), last);
        }
    }
    if (isPlain && !range.plug.isArray()) {
        const ReadCell cell(range.plug);
        if (!cell.get()) throw Error("The index of an element is missing in '" + range.plug.name() + "'.");
        return cellValue(scene, *cell.get());
    }
    if (isPlain) return listValue(scene, elementsOf(range.plug), *range.plug.attr);
    const auto plugs = expand(range, kMostElements);
    if (!plugs) throw Error(plugs.error());
    if (plugs->empty()) return mel::FloatArray();
    return listValue(scene, *plugs, *plugs->front().attr);
}

} // namespace vesk::commands
