#include "host/mel/value.h"

#include "host/api/number_text.h"
#include "host/mel/error.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace vesk::mel {

namespace {

constexpr std::array<std::string_view, 11> typeNames{
    "void", "int", "float", "string", "vector", "matrix", "int[]", "float[]", "string[]", "vector[]", "any"};

std::string vectorText(const MVector& v) {
    return formatDouble(v.x) + " " + formatDouble(v.y) + " " + formatDouble(v.z);
}

/// Up to three numbers between blanks and commas, `<<` in front allowed.
MVector leadingVector(std::string_view text) {
    MVector vector;
    const auto skip = [&text](std::string_view what) {
        text.remove_prefix(std::min(text.find_first_not_of(what), text.size()));
    };
    skip(" \t\r\n");
    if (text.substr(0, 2) == "<<") text.remove_prefix(2);
    for (unsigned int i = 0; i < 3; ++i) {
        const LeadingNumber number = leadingNumber(text);
        if (number.length == 0) break;
        vector[i] = number.value;
        text.remove_prefix(number.length);
        skip(" \t\r\n,");
    }
    return vector;
}

template <class To, class From, class Convert>
Shared<To> mapped(const From& from, Convert convert) {
    To to;
    to.reserve(from.size());
    for (const auto& item : from)
        to.push_back(convert(item));
    return Shared<To>(std::move(to));
}

template <class Array, class Text>
std::string joined(const Array& array, Text text) {
    std::string line;
    bool first = true;
    for (const auto& item : array) {
        if (!first) line += ' ';
        first = false;
        line += text(item);
    }
    return line;
}

template <class Array>
Value elementOrZero(const Array& array, std::size_t index) {
    using Item = typename Array::value_type;
    return index < array.size() ? Value(array[index]) : Value(Item{});
}

template <class Array>
typename Array::value_type& elementAt(Array& array, std::size_t index) {
    if (index >= array.size()) array.resize(index + 1);
    return array[index];
}

} // namespace

Matrix::Matrix(int rowCount, int columnCount)
    : rows(rowCount), columns(columnCount),
      values(static_cast<std::size_t>(rowCount) * static_cast<std::size_t>(columnCount)) {}

std::string_view nameOf(Type type) { return typeNames[static_cast<std::size_t>(type)]; }

bool isArray(Type type) { return type >= Type::Ints && type <= Type::Vectors; }

Type elementOf(Type type) {
    switch (type) {
    case Type::Ints: return Type::Int;
    case Type::Floats: return Type::Float;
    case Type::Strings: return Type::String;
    case Type::Vectors: return Type::Vector;
    default: return type;
    }
}

Type arrayOf(Type element) {
    switch (element) {
    case Type::Int: return Type::Ints;
    case Type::Float: return Type::Floats;
    case Type::String: return Type::Strings;
    case Type::Vector: return Type::Vectors;
    default: return Type::None;
    }
}

bool isConvertible(Type from, Type to) {
    if (from == to || to == Type::None) return true;
    if (from == Type::None) return false;
    if (from == Type::Any || to == Type::Any) return true;
    if (from == Type::Matrix || to == Type::Matrix) return from == Type::Vector || to == Type::Vector;
    if (isArray(from) || isArray(to)) {
        const auto isNumeric = [](Type type) { return type == Type::Ints || type == Type::Floats; };
        return isNumeric(from) && isNumeric(to);
    }
    return true;
}

void cannotConvert(Type from, Type to) {
    throw Error("Cannot convert data of type " + std::string(nameOf(from)) + " to type " +
                std::string(nameOf(to)) + ".");
}

int truncated(double value) {
    if (std::isnan(value)) return 0;
    return static_cast<int>(std::clamp(value, static_cast<double>(std::numeric_limits<int>::min()),
                                       static_cast<double>(std::numeric_limits<int>::max())));
}

Value Value::zero(Type type) {
    Value value;
    switch (type) {
    case Type::Int: value.data_.emplace<int>(); break;
    case Type::Float: value.data_.emplace<double>(); break;
    case Type::String: value.data_.emplace<std::string>(); break;
    case Type::Vector: value.data_.emplace<MVector>(); break;
    case Type::Matrix: value.data_.emplace<Shared<Matrix>>(); break;
    case Type::Ints: value.data_.emplace<Shared<IntArray>>(); break;
    case Type::Floats: value.data_.emplace<Shared<FloatArray>>(); break;
    case Type::Strings: value.data_.emplace<Shared<StringArray>>(); break;
    case Type::Vectors: value.data_.emplace<Shared<VectorArray>>(); break;
    case Type::None:
    case Type::Any: break;
    }
    return value;
}

int Value::asInt() const {
    if (const int* value = ifInt()) return *value;
    switch (type()) {
    case Type::Float:
    case Type::String:
    case Type::Vector: return truncated(asFloat());
    default: cannotConvert(type(), Type::Int);
    }
}

double Value::asFloat() const {
    switch (type()) {
    case Type::Int: return *ifInt();
    case Type::Float: return *ifFloat();
    case Type::String: return leadingNumber(*ifString()).value;
    case Type::Vector: return ifVector()->length();
    default: cannotConvert(type(), Type::Float);
    }
}

std::string Value::asString() const {
    switch (type()) {
    case Type::Int: return std::to_string(*ifInt());
    case Type::Float: return formatDouble(*ifFloat());
    case Type::String: return *ifString();
    case Type::Vector: return vectorText(*ifVector());
    default: cannotConvert(type(), Type::String);
    }
}

MVector Value::asVector() const {
    switch (type()) {
    case Type::Int:
    case Type::Float: {
        const double number = asFloat();
        return {number, number, number};
    }
    case Type::String: return leadingVector(*ifString());
    case Type::Vector: return *ifVector();
    case Type::Matrix: {
        const Matrix& matrix = **ifShared<Matrix>();
        if (matrix.rows == 1 && matrix.columns == 3) return MVector(matrix.values.data());
        break;
    }
    default: break;
    }
    cannotConvert(type(), Type::Vector);
}

Matrix Value::asMatrix() const {
    if (const auto* matrix = ifShared<Matrix>()) return **matrix;
    const MVector* vector = ifVector();
    if (!vector) cannotConvert(type(), Type::Matrix);
    Matrix row(1, 3);
    row.values = {vector->x, vector->y, vector->z};
    return row;
}

Shared<IntArray> Value::asIntArray() const {
    if (const auto* array = ifShared<IntArray>()) return *array;
    if (isNone()) return {};
    if (const auto* array = ifShared<FloatArray>()) return mapped<IntArray>(array->read(), truncated);
    cannotConvert(type(), Type::Ints);
}

Shared<FloatArray> Value::asFloatArray() const {
    if (const auto* array = ifShared<FloatArray>()) return *array;
    if (isNone()) return {};
    if (const auto* array = ifShared<IntArray>()) {
        return mapped<FloatArray>(array->read(), [](int item) { return static_cast<double>(item); });
    }
    cannotConvert(type(), Type::Floats);
}

Shared<StringArray> Value::asStringArray() const {
    if (const auto* array = ifShared<StringArray>()) return *array;
    if (isNone()) return {};
    cannotConvert(type(), Type::Strings);
}

Shared<VectorArray> Value::asVectorArray() const {
    if (const auto* array = ifShared<VectorArray>()) return *array;
    if (isNone()) return {};
    cannotConvert(type(), Type::Vectors);
}

bool Value::asBool() const {
    switch (type()) {
    case Type::Int: return *ifInt() != 0;
    case Type::Float:
    case Type::String:
    case Type::Vector: return asFloat() != 0.0;
    default: cannotConvert(type(), Type::Int);
    }
}

Value Value::convertedTo(Type to) const {
    if (to == type()) return *this;
    Value result;
    switch (to) {
    case Type::None:
    case Type::Any: return *this;
    case Type::Int: return asInt();
    case Type::Float: return asFloat();
    case Type::String: return asString();
    case Type::Vector: return asVector();
    case Type::Matrix: return asMatrix();
    case Type::Ints: result.data_ = asIntArray(); break;
    case Type::Floats: result.data_ = asFloatArray(); break;
    case Type::Strings: result.data_ = asStringArray(); break;
    case Type::Vectors: result.data_ = asVectorArray(); break;
    }
    return result;
}

void Value::setElement(std::size_t index, const Value& item) {
    switch (type()) {
    case Type::Ints: elementAt(ifShared<IntArray>()->write(), index) = item.asInt(); break;
    case Type::Floats: elementAt(ifShared<FloatArray>()->write(), index) = item.asFloat(); break;
    case Type::Strings: elementAt(ifShared<StringArray>()->write(), index) = item.asString(); break;
    case Type::Vectors: elementAt(ifShared<VectorArray>()->write(), index) = item.asVector(); break;
    default: throw Error("Data of type " + std::string(nameOf(type())) + " has no elements.");
    }
}

std::optional<double> Value::number() const {
    if (isNumber()) return asFloat();
    if (const std::string* text = ifString()) return wholeNumber(*text);
    return std::nullopt;
}

std::string Value::display() const {
    switch (type()) {
    case Type::None: return {};
    case Type::Matrix: return joined((*ifShared<Matrix>())->values, [](double v) { return formatDouble(v); });
    case Type::Ints: return joined(**ifShared<IntArray>(), [](int v) { return std::to_string(v); });
    case Type::Floats: return joined(**ifShared<FloatArray>(), [](double v) { return formatDouble(v); });
    case Type::Strings:
        return joined(**ifShared<StringArray>(),
                      [](const std::string& v) -> const std::string& { return v; });
    case Type::Vectors: return joined(**ifShared<VectorArray>(), vectorText);
    default: return asString();
    }
}

std::size_t Value::arraySize() const {
    switch (type()) {
    case Type::Ints: return (*ifShared<IntArray>())->size();
    case Type::Floats: return (*ifShared<FloatArray>())->size();
    case Type::Strings: return (*ifShared<StringArray>())->size();
    case Type::Vectors: return (*ifShared<VectorArray>())->size();
    default: return 0;
    }
}

Value Value::element(std::size_t index) const {
    switch (type()) {
    case Type::Ints: return elementOrZero(**ifShared<IntArray>(), index);
    case Type::Floats: return elementOrZero(**ifShared<FloatArray>(), index);
    case Type::Strings: return elementOrZero(**ifShared<StringArray>(), index);
    case Type::Vectors: return elementOrZero(**ifShared<VectorArray>(), index);
    default: return *this;
    }
}

} // namespace vesk::mel
