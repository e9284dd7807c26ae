#include "host/commands/packed.h"

#include "host/commands/data_words.h"
#include "host/data/packed_data.h"
#include "host/graph/evaluate.h"

#include <algorithm>
#include <limits>

namespace vesk::commands {

namespace {

using graph::Attribute;
using graph::Cell;
using graph::Plug;

int leafCount(const Attribute& attribute) {
    if (attribute.children.empty()) return 1;
    int count = 0;
    for (const auto& child : attribute.children)
        count += leafCount(*child);
    return count;
}

/// Leaves that stand before `wanted` below `top`.
int leavesBefore(const Attribute& top, const Attribute& wanted) {
    int before = 0;
    for (const Attribute* at = &wanted; at != &top; at = at->parent) {
        for (const auto& sibling : at->parent->children) {
            if (sibling.get() == at) break;
            before += leafCount(*sibling);
        }
    }
    return before;
}

bool isWhole(const Attribute& attribute) {
    if (attribute.children.empty()) return attribute.isInteger();
    return std::all_of(attribute.children.begin(), attribute.children.end(),
                       [](const graph::AttrRef& child) { return isWhole(*child); });
}

bool holdsNumbers(const Attribute& attribute) {
    if (attribute.children.empty()) return attribute.isNumber();
    return std::all_of(attribute.children.begin(), attribute.children.end(),
                       [](const graph::AttrRef& child) { return holdsNumbers(*child); });
}

/// `count` numbers for each element, with `numberCount` of each `stride` taken from the stream.
template <class T>
Outcome writeNumbers(const PackedPlace& place, int first, int last, Words& words) {
    Ref<PackedData<T>> data = takeToWrite<PackedData<T>>(*place.array);
    if (!data || data->stride != place.stride) data = makeRef<PackedData<T>>(place.stride);

    const auto stride = static_cast<std::size_t>(place.stride);
    const auto perElement = static_cast<std::size_t>(place.numberCount);
    const auto wanted = (static_cast<std::size_t>(last) - static_cast<std::size_t>(first) + 1) * perElement;
    const auto begin = static_cast<std::size_t>(first) * stride;
    const auto end = (static_cast<std::size_t>(last) + 1) * stride;
    auto& values = data->write();
    const std::size_t before = values.size();
    const auto check = [&](std::size_t read) {
        return read < wanted ? badElement(read, words) : checkUsed(words);
    };
    if (begin >= before && perElement == stride) {
        // The usual case: a file appends elements. They are read to where they stay.
        values.resize(end);
        if (auto outcome = check(words.numbers(values.data() + begin, wanted)); !outcome) {
            values.resize(before);
            return outcome;
        }
    } else {
        std::vector<T> numbers(wanted);
        if (auto outcome = check(words.numbers(numbers.data(), wanted)); !outcome) return outcome;
        values.resize(std::max(before, end));
        for (std::size_t i = 0; i * perElement < wanted; ++i) {
            std::copy_n(numbers.begin() + static_cast<std::ptrdiff_t>(i * perElement), perElement,
                        values.begin() +
                            static_cast<std::ptrdiff_t>(begin + i * stride +
                                                        static_cast<std::size_t>(place.firstNumber)));
        }
    }
    placeWritten(*place.array, data);
    return {};
}

template <class T>
void readNumbers(const PackedPlace& place, int first, int last, std::vector<double>& to) {
    const auto* data = dynamic_cast<const PackedData<T>*>(place.array->data.get());
    const std::vector<T> none;
    const auto& values = data ? data->values() : none;
    for (long long element = first; element <= last; ++element) {
        const std::size_t start = static_cast<std::size_t>(element * place.stride + place.firstNumber);
        for (std::size_t at = start; at < start + static_cast<std::size_t>(place.numberCount); ++at)
            to.push_back(at < values.size() ? static_cast<double>(values[at]) : 0.0);
    }
}

template <class T>
void clearElement(const PackedPlace& place, int element) {
    const Ref<PackedData<T>> data = takeToWrite<PackedData<T>>(*place.array);
    if (!data || element >= data->count()) return;
    auto& values = data->write();
    const auto start = values.begin() + static_cast<std::ptrdiff_t>(element) * data->stride;
    if (element + 1 == data->count()) {
        values.erase(start, values.end());
    } else {
        std::fill_n(start, data->stride, T{});
    }
    placeWritten(*place.array, data);
}

} // namespace

std::optional<PackedPlace> findPacked(const Plug& plug) {
    Plug up = plug;
    while (!up.isNull() && !up.attr->packed)
        up = up.parent();
    if (up.isNull() || !holdsNumbers(*up.attr)) return std::nullopt;
    PackedPlace place;
    place.stride = leafCount(*up.attr);
    place.numberCount = leafCount(*plug.attr);
    place.firstNumber = leavesBefore(*up.attr, *plug.attr);
    place.holdsIntegers = isWhole(*up.attr);
    if (up.isElement()) {
        place.element = up.indices[static_cast<std::size_t>(up.depth - 1)];
        up = up.array();
    }
    place.array = up.cell();
    if (!place.array) return std::nullopt;
    return place;
}

int PackedPlace::count() const {
    if (const auto* floats = dynamic_cast<const PackedFloats*>(array->data.get())) return floats->count();
    if (const auto* ints = dynamic_cast<const PackedInts*>(array->data.get())) return ints->count();
    return 0;
}

void PackedPlace::read(int first, int last, std::vector<double>& to) const {
    graph::clean(*array);
    if (holdsIntegers) {
        readNumbers<int>(*this, first, last, to);
    } else {
        readNumbers<float>(*this, first, last, to);
    }
}

Outcome PackedPlace::write(int first, int last, Words& words) const {
    if (auto outcome = graph::checkWritable(*array); !outcome) return outcome;
    const long long elements = static_cast<long long>(last) - first + 1;
    const bool tooMany =
        static_cast<unsigned long long>(elements) * static_cast<unsigned>(numberCount) > words.mostLeft();
    if (tooMany) {
        return Outcome::fail("There are fewer values than the elements [" + std::to_string(first) + ":" +
                             std::to_string(last) + "] of '" + Plug(*array).name() + "' need.");
    }
    const long long most = std::numeric_limits<int>::max() / stride - 1;
    if (static_cast<long long>(first) - count() > kPackedGap || last > most) {
        return Outcome::fail("The index " + std::to_string(last) + " is out of range for '" +
                             Plug(*array).name() + "'.");
    }
    return holdsIntegers ? writeNumbers<int>(*this, first, last, words)
                         : writeNumbers<float>(*this, first, last, words);
}

Outcome PackedPlace::clear(int index) const {
    if (auto outcome = graph::checkWritable(*array); !outcome) return outcome;
    if (holdsIntegers) {
        clearElement<int>(*this, index);
    } else {
        clearElement<float>(*this, index);
    }
    return {};
}

void placeWritten(graph::Cell& cell, Ref<Data> data) {
    const bool isOutput = cell.node.isComputed(cell.attr);
    const bool isOwn = isOutput && cell.node.computing > 0;
    graph::putData(cell, std::move(data), isOwn || !isOutput);
    if (isOwn) return;
    graph::spreadDirt(cell);
    cell.node.valueStored(cell);
}

} // namespace vesk::commands
