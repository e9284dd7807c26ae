// The library's functions of arrays, and those that take a value of any type.

#include "host/core/log.h"
#include "host/mel/interpreter.h"
#include "host/mel/library.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace vesk::mel {

namespace {

using Arguments = std::span<Value* const>;
using ValueFunction = Value (*)(LibraryState&, Arguments);

constexpr Builtin row(std::string_view name, std::string_view parameters, Type result,
                      ValueFunction function) {
    return {name, parameters, result, nullptr, function};
}

const std::string& textAt(Arguments arguments, std::size_t index) { return *arguments[index]->ifString(); }

const StringArray& textsAt(Arguments arguments, std::size_t index) {
    return arguments[index]->ifShared<StringArray>()->read();
}

/// The array variable that an argument by reference stands for.
StringArray& textsToChange(Arguments arguments, std::size_t index) {
    if (arguments[index]->isNone()) *arguments[index] = StringArray();
    auto* array = arguments[index]->ifShared<StringArray>();
    if (!array) cannotConvert(arguments[index]->type(), Type::Strings);
    return array->write();
}

/// Elements of an array, bytes of a string, and 1 for any other value.
Value sizeOf(LibraryState&, Arguments a) {
    const Value& value = *a[0];
    if (value.isArray()) return static_cast<int>(value.arraySize());
    if (const std::string* text = value.ifString()) return static_cast<int>(text->size());
    return value.isNone() ? 0 : 1;
}

/// Empties an array; returns 1, as for success.
Value clear(LibraryState&, Arguments a) {
    if (!a[0]->isArray() && !a[0]->isNone()) {
        throw Error("clear needs an array and not data of type " + std::string(nameOf(a[0]->type())) + ".");
    }
    *a[0] = Value::zero(a[0]->type());
    return 1;
}

template <class Array>
Array sorted(Array array) {
    std::sort(array.begin(), array.end());
    return array;
}

/// NaN has no order; it goes to the end.
FloatArray sortedFloats(FloatArray array) {
    const auto end = std::partition(array.begin(), array.end(), [](double v) { return !std::isnan(v); });
    std::sort(array.begin(), end);
    return array;
}

/// Text as it is; each element of an array and each row of a matrix on a line of its own.
Value print(LibraryState&, Arguments a) {
    const Value& value = *a[0];
    std::string text;
    if (value.isArray()) {
        for (std::size_t i = 0; i < value.arraySize(); ++i)
            text += value.element(i).asString() + "\n";
    } else if (const auto* shared = value.ifShared<Matrix>()) {
        const Matrix& matrix = shared->read();
        for (int i = 0; i < matrix.rows; ++i) {
            for (int j = 0; j < matrix.columns; ++j) {
                text += Value(matrix.at(i, j)).asString() + (j + 1 < matrix.columns ? " " : "\n");
            }
        }
    } else if (!value.isNone()) {
        text = value.asString();
    }
    log().print(text);
    return {};
}

Value contains(LibraryState&, Arguments a) {
    const StringArray& array = textsAt(a, 1);
    return std::find(array.begin(), array.end(), textAt(a, 0)) != array.end();
}

Value count(LibraryState&, Arguments a) {
    const StringArray& array = textsAt(a, 1);
    return static_cast<int>(std::count(array.begin(), array.end(), textAt(a, 0)));
}

/// The second array without what is in the first.
Value removed(LibraryState&, Arguments a) {
    const StringArray& unwanted = textsAt(a, 0);
    const std::unordered_set<std::string> out(unwanted.begin(), unwanted.end());
    StringArray kept;
    for (const std::string& item : textsAt(a, 1)) {
        if (!out.contains(item)) kept.push_back(item);
    }
    return kept;
}

/// The first of each.
Value withoutDuplicates(LibraryState&, Arguments a) {
    std::unordered_set<std::string> seen;
    StringArray kept;
    for (const std::string& item : textsAt(a, 0)) {
        if (seen.insert(item).second) kept.push_back(item);
    }
    return kept;
}

Value catenated(LibraryState& state, Arguments a) {
    StringArray both = textsAt(a, 0);
    const StringArray& more = textsAt(a, 1);
    checkArraySize(both.size() + more.size(), *state.limits);
    both.insert(both.end(), more.begin(), more.end());
    return both;
}

/// Puts an item before the one at an index. Returns 1, or 0 for an index that lies outside.
Value insertAt(LibraryState& state, Arguments a) {
    const int index = *a[0]->ifInt();
    StringArray& array = textsToChange(a, 1);
    if (index < 0 || static_cast<std::size_t>(index) > array.size()) return 0;
    checkArraySize(array.size() + 1, *state.limits);
    array.insert(array.begin() + index, textAt(a, 2));
    return 1;
}

/// Appends the first `count` items of the second array to the first.
Value append(LibraryState& state, Arguments a) {
    const StringArray more = textsAt(a, 1); // may be the very array that grows
    StringArray& array = textsToChange(a, 0);
    const auto wanted = static_cast<std::size_t>(std::max(*a[2]->ifInt(), 0));
    const std::size_t taken = std::min(wanted, more.size());
    checkArraySize(array.size() + taken, *state.limits);
    array.insert(array.end(), more.begin(), more.begin() + static_cast<std::ptrdiff_t>(taken));
    return {};
}

constexpr Builtin table[] = {
    row("size", "*", Type::Int, sizeOf),
    row("clear", "*&", Type::Int, clear),
    row("print", "*", Type::None, print),
    row("sort", "I", Type::Ints,
        [](LibraryState&, Arguments a) -> Value { return sorted(a[0]->asIntArray().read()); }),
    row("sort", "F", Type::Floats,
        [](LibraryState&, Arguments a) -> Value { return sortedFloats(a[0]->asFloatArray().read()); }),
    row("sort", "S", Type::Strings,
        [](LibraryState&, Arguments a) -> Value { return sorted(a[0]->asStringArray().read()); }),
    row("stringArrayContains", "sS", Type::Int, contains),
    row("stringArrayCount", "sS", Type::Int, count),
    row("stringArrayRemove", "SS", Type::Strings, removed),
    row("stringArrayRemoveDuplicates", "S", Type::Strings, withoutDuplicates),
    row("stringArrayCatenate", "SS", Type::Strings, catenated),
    row("stringArrayInsertAtIndex", "iS&s", Type::Int, insertAt),
    row("appendStringArray", "S&Si", Type::None, append),
};

} // namespace

std::span<const Builtin> arrayFunctions() { return table; }

} // namespace vesk::mel
