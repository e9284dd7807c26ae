// The machine's work on strings, arrays, matrices and values of unknown type.

#include "host/mel/executor.h"

#include <utility>

namespace vesk::mel {

namespace {

void checkPosition(const Matrix& matrix, int row, int column) {
    if (row >= 0 && row < matrix.rows && column >= 0 && column < matrix.columns) return;
    throw Error("Index [" + std::to_string(row) + "][" + std::to_string(column) + "] lies outside of the " +
                std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) + " matrix.");
}

} // namespace

std::size_t Executor::checkedIndex(int index) {
    if (index < 0) throw Error("Array index " + std::to_string(index) + " is negative.");
    return static_cast<std::size_t>(index);
}

/// Before an array grows to hold an index.
void Executor::checkGrowth(std::size_t index) const { checkArraySize(index + 1, limits_); }

void Executor::checkText(std::size_t size) const { checkStringSize(size, limits_); }

void Executor::join(Value& to, const Value& left, const Value& right) const {
    const std::string& first = *left.ifString();
    const std::string& second = *right.ifString();
    checkText(first.size() + second.size());
    std::string text;
    text.reserve(first.size() + second.size());
    text += first;
    text += second;
    *to.ifString() = std::move(text);
}

void Executor::append(Value& to, const Value& right) const {
    checkText(to.ifString()->size() + right.ifString()->size());
    *to.ifString() += *right.ifString();
}

Value Executor::elementOfAny(const Value& array, int index) {
    if (!array.isArray()) {
        throw Error("Data of type " + std::string(nameOf(array.type())) + " has no elements.");
    }
    return array.element(checkedIndex(index));
}

/// A variable that holds nothing yet becomes an array of the item's type.
void Executor::setElementOfAny(Value& array, int index, const Value& item) const {
    const std::size_t at = checkedIndex(index);
    if (array.isNone() && arrayOf(item.type()) != Type::None) array = Value::zero(arrayOf(item.type()));
    if (at >= array.arraySize()) checkGrowth(at);
    array.setElement(at, item);
}

/// The size of a matrix is settled by its declaration or its first value.
void Executor::assignMatrix(Value& to, const Value& from) {
    const Matrix& old = to.ifShared<Matrix>()->read();
    const Matrix& matrix = from.ifShared<Matrix>()->read();
    if (old.rows > 0 && (old.rows != matrix.rows || old.columns != matrix.columns)) {
        throw Error("A " + std::to_string(matrix.rows) + " by " + std::to_string(matrix.columns) +
                    " matrix cannot be assigned to one of " + std::to_string(old.rows) + " by " +
                    std::to_string(old.columns) + ".");
    }
    to = from;
}

double Executor::matrixElement(const Value& value, int row, int column) {
    const Matrix& matrix = value.ifShared<Matrix>()->read();
    checkPosition(matrix, row, column);
    return matrix.at(row, column);
}

void Executor::setMatrixElement(Value& value, int row, int column, double item) {
    auto& shared = *value.ifShared<Matrix>();
    checkPosition(shared.read(), row, column);
    shared.write().at(row, column) = item;
}

void Executor::declareAny(Value& variable, Type type) {
    if (variable.isNone()) variable = Value::zero(type);
    if (variable.type() == type) return;
    throw Error("Invalid redeclaration of a variable as a different type (" + std::string(nameOf(type)) +
                " instead of " + std::string(nameOf(variable.type())) + ").");
}

bool Executor::isPastEnd(const Value& list, int index) {
    if (!list.isArray() && !list.isNone()) {
        throw Error("A loop over values needs an array, not data of type " +
                    std::string(nameOf(list.type())) + ".");
    }
    return static_cast<std::size_t>(index) >= list.arraySize();
}

} // namespace vesk::mel
