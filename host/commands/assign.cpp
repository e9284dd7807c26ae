#include "host/commands/assign.h"

#include "host/api/number_text.h"
#include "host/commands/data_words.h"
#include "host/commands/packed.h"
#include "host/commands/poly_faces_words.h"
#include "host/commands/ui_units.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"

#include <algorithm>

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::AttrKind;
using graph::Cell;
using graph::Plug;
using graph::PlugRange;
using graph::Scene;

std::string quoted(const Plug& plug) { return "'" + plug.name() + "'"; }

Outcome openIndex(const Plug& plug) {
    return Outcome::fail("The index of an element is missing in " + quoted(plug) + ".");
}

/// As `checkWritable`; a node may store into its own outputs while it computes.
Outcome checkStorable(const Cell& cell) {
    if (cell.node.computing > 0 && cell.node.isComputed(cell.attr)) return {};
    return graph::checkWritable(cell);
}

// --- numbers ---------------------------------------------------------------------------------------------

/// Cells of the leaves below a cell, in order.
void addLeafCells(Cell& cell, std::vector<Cell*>& leaves) {
    if (cell.attr.children.empty()) {
        leaves.push_back(&cell);
        return;
    }
    for (std::size_t i = 0; i < cell.attr.children.size(); ++i)
        addLeafCells(cell.child(static_cast<int>(i)), leaves);
}

/// Brings the value into the hard limits, or says that it is past one.
Outcome limit(const Scene& scene, const Cell& cell, bool clamp, double& value) {
    const auto& low = cell.attr.min;
    const auto& high = cell.attr.max;
    const bool isLow = low && value < *low;
    const bool isHigh = high && value > *high;
    if (!isLow && !isHigh) return {};
    const double bound = isLow ? *low : *high;
    if (clamp) {
        value = bound;
        return {};
    }
    return Outcome::fail("Cannot set the attribute " + quoted(Plug(cell)) + " past its " +
                         (isLow ? "minimum" : "maximum") + " value of " +
                         formatDouble(toUi(scene, cell.attr.unit, bound)) + ".");
}

Outcome storeNumbers(Scene& scene, const std::vector<Cell*>& leaves, bool clamp, Words& words) {
    std::vector<double> numbers(leaves.size());
    const std::size_t read = words.numbers(numbers.data(), numbers.size());
    if (read < numbers.size()) return badElement(read, words);
    if (auto outcome = checkUsed(words); !outcome) return outcome;
    for (std::size_t i = 0; i < leaves.size(); ++i) {
        numbers[i] = toInternal(scene, leaves[i]->attr.unit, numbers[i]);
        if (auto outcome = checkStorable(*leaves[i]); !outcome) return outcome;
        if (auto outcome = limit(scene, *leaves[i], clamp, numbers[i]); !outcome) return outcome;
    }
    for (std::size_t i = 0; i < leaves.size(); ++i) {
        if (auto outcome = graph::storeNumber(*leaves[i], numbers[i]); !outcome) return outcome;
    }
    return {};
}

/// One number or tuple into an attribute that carries whatever it is given.
Outcome storeGeneric(Cell& cell, std::string_view typeName, Words& words) {
    if (auto outcome = checkStorable(cell); !outcome) return outcome;
    const int size = tupleSize(typeName);
    std::array<double, 4> numbers{};
    const auto wanted = static_cast<std::size_t>(std::max(size, 1));
    const std::size_t read = words.numbers(numbers.data(), wanted);
    if (read < wanted) return badElement(read, words);
    if (size == 0) {
        cell.data = nullptr;
        return graph::storeNumber(cell, numbers[0]);
    }
    auto data = makeRef<NumericData>(tupleType(typeName));
    data->set(numbers);
    placeWritten(cell, data);
    return {};
}

bool takesNumber(const Attribute& attribute) {
    return attribute.kind == AttrKind::Generic && !attribute.acceptedNumbers.empty();
}

bool takesTuple(const Attribute& attribute, std::string_view typeName) {
    if (attribute.accepts(MFnData::kNumeric)) return true;
    const auto& accepted = attribute.acceptedNumbers;
    return attribute.kind == AttrKind::Generic &&
           std::find(accepted.begin(), accepted.end(), tupleType(typeName)) != accepted.end();
}

/// Whether numbers fit the plug's attribute, and how many each plug takes.
Result<std::size_t> numbersEach(const Plug& plug, std::string_view typeName) {
    if (plug.isArray()) {
        return Outcome::fail(quoted(plug) + " is a multi: name the elements that are to be set.");
    }
    const Attribute& attribute = *plug.attr;
    if (attribute.kind == AttrKind::Message) {
        return Outcome::fail("Message attributes such as " + quoted(plug) + " have no data values.");
    }
    const auto size = static_cast<std::size_t>(tupleSize(typeName));
    if (size > 0 && takesTuple(attribute, typeName)) return size;
    if (size == 0 && takesNumber(attribute)) return std::size_t{1};
    std::vector<const Attribute*> leaves;
    if (!collectLeaves(attribute, leaves)) {
        return Outcome::fail(attribute.isCompound()
                                 ? "The compound attribute " + quoted(plug) + " does not hold numbers alone."
                                 : "The data is not a numeric value, so the -type flag must be used for " +
                                       quoted(plug) + ". Type: " + attribute.typeName() + ".");
    }
    if (size > 0 && size != leaves.size()) {
        return Outcome::fail("The attribute " + quoted(plug) + " cannot be set to data of type '" +
                             std::string(typeName) + "'.");
    }
    return leaves.size();
}

Outcome assignNumbers(Scene& scene, const std::vector<Plug>& plugs, const AssignOptions& options,
                      std::string_view typeName, Words& words) {
    std::vector<Cell*> leaves;
    for (const Plug& plug : plugs) {
        Cell* cell = plug.cell();
        if (!cell) return openIndex(plug);
        if (cell->attr.children.empty() && !cell->attr.isNumber()) {
            if (auto outcome = storeGeneric(*cell, typeName, words); !outcome) return outcome;
        } else {
            addLeafCells(*cell, leaves);
        }
    }
    return storeNumbers(scene, leaves, options.clamp, words);
}

/// Lists of index and value, each behind its length: `2 0 0.25 3 0.75 1 0 1` for two elements' weights.
Outcome assignSparse(const std::vector<Plug>& plugs, Words& words) {
    for (const Plug& plug : plugs) {
        const auto count = readCount(words, 2, "values of " + quoted(plug));
        if (!count) return Outcome::fail(count.error());
        for (std::size_t i = 0; i < *count; ++i) {
            int index = 0;
            double value = 0;
            if (words.numbers(&index, 1) + words.numbers(&value, 1) < 2) return badElement(2 * i, words);
            if (index < 0) {
                return Outcome::fail(quoted(plug) + " has no element " + std::to_string(index) + '.');
            }
            Cell* cell = plug.element(index).cell();
            if (!cell) return openIndex(plug);
            if (auto outcome = checkStorable(*cell); !outcome) return outcome;
            if (auto outcome = graph::storeNumber(*cell, value); !outcome) return outcome;
        }
    }
    return {};
}

// --- data ------------------------------------------------------------------------------------------------

bool holdsType(const Attribute& attribute, const Data& data, std::string_view typeName) {
    if (!attribute.fileType.empty()) return attribute.fileType == typeName;
    return attribute.isData() && attribute.accepts(data.dataType());
}

Outcome assignData(const Plug& plug, std::string_view typeName, Words& words) {
    Cell* cell = plug.cell();
    if (!cell) return openIndex(plug);
    const Attribute& attribute = cell->attr;
    const auto misfit = [&] {
        return Outcome::fail("The attribute " + quoted(plug) + " cannot be set to data of type '" +
                             std::string(typeName) + "'.");
    };
    if (!cell->isLeaf() || !attribute.isData()) return misfit();
    if (auto outcome = checkStorable(*cell); !outcome) return outcome;
    if (!isDataType(typeName)) {
        // Storage types that are kept as they stand.
        const bool fits = attribute.typeName() == typeName || attribute.accepts(MFnData::kAny);
        if (!fits) return misfit();
        placeWritten(*cell, readOpaque(typeName, words));
        return {};
    }
    auto data = readData(typeName, words);
    if (!data) return Outcome::fail(data.error());
    if (!holdsType(attribute, **data, typeName)) return misfit();
    return graph::storeData(*cell, *data);
}

// --- the whole -------------------------------------------------------------------------------------------

/// What a range names inside packed storage; nothing when it names cells.
struct PackedRange {
    PackedPlace place;
    int first, last;
};
std::optional<PackedRange> packedRange(const PlugRange& range) {
    if (range.plug.isNull() || !range.plug.node) return std::nullopt;
    if (range.first < 0) {
        auto place = findPacked(range.plug);
        if (!place) return std::nullopt;
        return PackedRange{*place, place->element, place->element};
    }
    Plug one = range.plug.element(range.first);
    if (!range.childPath.empty()) {
        const auto child = graph::findPlug(*one.node, one.attributePath() + '.' + range.childPath);
        if (!child.error.empty() || child.first >= 0) return std::nullopt;
        one = child.plug;
    }
    auto place = findPacked(one);
    if (!place) return std::nullopt;
    return PackedRange{*place, range.first, range.last};
}

Outcome assignPacked(const PackedRange& target, std::string_view typeName, Words& words) {
    const Plug array(*target.place.array);
    if (!typeName.empty() && tupleSize(typeName) != target.place.numberCount) {
        return Outcome::fail("The attribute " + quoted(array) + " cannot be set to data of type '" +
                             std::string(typeName) + "'.");
    }
    if (target.first < 0) {
        return Outcome::fail(quoted(array) + " is a multi: name the elements that are to be set.");
    }
    return target.place.write(target.first, target.last, words);
}

bool isPolyFaces(const PlugRange& range) {
    const Attribute& attribute = *range.plug.attr;
    return attribute.array && attribute.fileType == "polyFaces" && range.childPath.empty();
}

Outcome assignFaces(const PlugRange& range, Words& words) {
    const bool isElement = range.plug.isElement();
    const int only = isElement ? range.plug.indices[static_cast<std::size_t>(range.plug.depth - 1)] : -1;
    const int first = isElement ? only : range.first;
    const int last = isElement ? only : range.last;
    const Plug array = isElement ? range.plug.array() : range.plug;
    if (first < 0) {
        return Outcome::fail(quoted(array) + " is a multi: name the elements that are to be set.");
    }
    Cell* cell = array.cell();
    return cell ? assignPolyFaces(*cell, first, last, words) : openIndex(array);
}

Outcome assignValue(Scene& scene, const PlugRange& range, const AssignOptions& options,
                    std::string_view typeName, Words& words) {
    if (typeName == "polyFaces" && isPolyFaces(range)) return assignFaces(range, words);
    if (const auto packed = packedRange(range)) return assignPacked(*packed, typeName, words);
    // Each plug takes a word at least, so a range is never longer than what follows it.
    const auto plugs = expand(range, words.mostLeft());
    if (!plugs) return Outcome::fail(plugs.error());
    if (plugs->empty()) return {};
    const Plug& front = plugs->front();
    if (scene.readingFile && typeName.empty() && front.isArray() && front.attr->isNumber()) {
        return assignSparse(*plugs, words);
    }
    if (typeName.empty() || tupleSize(typeName) > 0) {
        const auto each = numbersEach(plugs->front(), typeName);
        if (!each) return Outcome::fail(each.error());
        return assignNumbers(scene, *plugs, options, typeName, words);
    }
    for (const Plug& plug : *plugs) {
        if (auto outcome = assignData(plug, typeName, words); !outcome) return outcome;
    }
    return {};
}

/// Flags are kept by cell; packed elements have none, so theirs go to the whole.
void eachCell(const PlugRange& range, const std::function<void(Cell&)>& visit) {
    if (const auto packed = packedRange(range)) return visit(*packed->place.array);
    if (range.first < 0 && range.childPath.empty()) {
        if (Cell* cell = range.plug.cell()) visit(*cell);
        return;
    }
    const Cell* array = range.plug.cellIfThere();
    if (!array) return;
    for (const auto& element : array->children) {
        const bool isNamed =
            range.first < 0 || (element->logicalIndex >= range.first && element->logicalIndex <= range.last);
        if (isNamed && range.childPath.empty()) visit(*element);
    }
}

void setLock(const PlugRange& range, const AssignOptions& options, bool locked) {
    if (options.lock == locked) eachCell(range, [&](Cell& cell) { cell.locked = locked; });
}

} // namespace

bool collectLeaves(const Attribute& attribute, std::vector<const Attribute*>& leaves) {
    if (attribute.children.empty()) {
        leaves.push_back(&attribute);
        return attribute.isNumber();
    }
    return std::all_of(attribute.children.begin(), attribute.children.end(),
                       [&](const auto& child) { return !child->array && collectLeaves(*child, leaves); });
}

Result<std::vector<Plug>> expand(const PlugRange& range, std::size_t most) {
    std::vector<Plug> plugs;
    const bool isPlain = range.first < 0 && range.childPath.empty();
    if (isPlain) return std::vector<Plug>{range.plug};
    std::vector<int> indices;
    if (range.first >= 0) {
        if (static_cast<std::size_t>(range.last) - static_cast<std::size_t>(range.first) >= most) {
            return Outcome::fail(quoted(range.plug) + '[' + std::to_string(range.first) + ':' +
                                 std::to_string(range.last) +
                                 "] names more elements than there can be values.");
        }
        for (long long i = range.first; i <= range.last; ++i)
            indices.push_back(static_cast<int>(i));
    } else if (const Cell* array = range.plug.cellIfThere()) {
        indices = array->existingIndices();
    }
    for (int index : indices) {
        const Plug element = range.plug.element(index);
        if (range.childPath.empty()) {
            plugs.push_back(element);
            continue;
        }
        const auto child = graph::findPlug(*element.node, element.attributePath() + '.' + range.childPath);
        if (!child.error.empty()) return Outcome::fail(child.error);
        const auto below = expand(child, most);
        if (!below) return Outcome::fail(below.error());
        plugs.insert(plugs.end(), below->begin(), below->end());
        if (plugs.size() > most)
            return Outcome::fail(quoted(range.plug) + " names more elements than there can be values.");
    }
    return plugs;
}

Outcome assign(Scene& scene, const PlugRange& range, const AssignOptions& options, std::string_view typeName,
               Words& words) {
    if (!range.error.empty()) return Outcome::fail(range.error);
    setLock(range, options, false);
    if (!words.atEnd()) {
        if (auto outcome = assignValue(scene, range, options, typeName, words); !outcome) return outcome;
        if (!words.atEnd()) {
            return Outcome::fail("There are more values than " + quoted(range.plug) +
                                 " takes: " + words.asWritten() + " ...");
        }
    } else if (!options.any || !typeName.empty()) {
        return Outcome::fail("No value was given for " + quoted(range.plug) + ".");
    }
    if (options.keyable) {
        eachCell(range, [&](Cell& cell) { cell.keyable = *options.keyable ? 1 : 0; });
    }
    if (options.channelBox) {
        eachCell(range, [&](Cell& cell) { cell.channelBox = *options.channelBox ? 1 : 0; });
    }
    setLock(range, options, true);
    return {};
}

} // namespace vesk::commands
