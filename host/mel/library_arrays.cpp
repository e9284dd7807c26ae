// The library's functions of any array, and those that take a value of any type.

#include "host/core/log.h"
#include "host/mel/library.h"

#include <algorithm>
#include <cmath>

namespace vesk::mel {

namespace {

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

constexpr Builtin table[] = {
    valueRow("size", "*", Type::Int, sizeOf),
    valueRow("clear", "*&", Type::Int, clear),
    valueRow("print", "*", Type::None, print),
    valueRow("sort", "I", Type::Ints,
             [](LibraryState&, Arguments a) -> Value { return sorted(a[0]->asIntArray().read()); }),
    valueRow("sort", "F", Type::Floats,
             [](LibraryState&, Arguments a) -> Value { return sortedFloats(a[0]->asFloatArray().read()); }),
    valueRow("sort", "S", Type::Strings,
             [](LibraryState&, Arguments a) -> Value { return sorted(a[0]->asStringArray().read()); }),
};

} // namespace

std::span<const Builtin> arrayFunctions() { return table; }

} // namespace vesk::mel
