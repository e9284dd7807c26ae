#include "host/mel/operators.h"

#include "host/mel/error.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace vesk::mel {

namespace {

bool isNumber(Type type) { return type == Type::Int || type == Type::Float; }

template <class Item>
bool compare(BinaryOp op, const Item& a, const Item& b) {
    switch (op) {
    case BinaryOp::Less: return a < b;
    case BinaryOp::LessEqual: return a <= b;
    case BinaryOp::Greater: return a > b;
    case BinaryOp::GreaterEqual: return a >= b;
    case BinaryOp::Equal: return a == b;
    default: return a != b;
    }
}

Value operateInts(BinaryOp op, int a, int b) {
    switch (op) {
    case BinaryOp::Add: return addInts(a, b);
    case BinaryOp::Sub: return subInts(a, b);
    case BinaryOp::Mul: return mulInts(a, b);
    case BinaryOp::Div: return divInts(a, b);
    case BinaryOp::Mod: return modInts(a, b);
    default: return compare(op, a, b);
    }
}

Value operateFloats(BinaryOp op, double a, double b) {
    switch (op) {
    case BinaryOp::Add: return a + b;
    case BinaryOp::Sub: return a - b;
    case BinaryOp::Mul: return a * b;
    case BinaryOp::Div: return divFloats(a, b);
    case BinaryOp::Mod: return modFloats(a, b);
    default: return compare(op, a, b);
    }
}

Value operateVectors(BinaryOp op, const MVector& a, const MVector& b) {
    switch (op) {
    case BinaryOp::Add: return a + b;
    case BinaryOp::Sub: return a - b;
    case BinaryOp::Mul: return a * b;
    case BinaryOp::Div: return divVectors(a, b);
    case BinaryOp::Mod: return modVectors(a, b);
    case BinaryOp::Cross: return a ^ b;
    case BinaryOp::Equal: return a == b;
    case BinaryOp::NotEqual: return !(a == b);
    default: return compare(op, a.length(), b.length());
    }
}

Matrix scaled(const Matrix& matrix, double factor) {
    Matrix result = matrix;
    for (double& value : result.values)
        value *= factor;
    return result;
}

Matrix multiplied(const Matrix& a, const Matrix& b) {
    if (a.columns != b.rows) throw Error("The sizes of the matrices do not fit.");
    Matrix result(a.rows, b.columns);
    for (int row = 0; row < a.rows; ++row) {
        for (int column = 0; column < b.columns; ++column) {
            for (int k = 0; k < a.columns; ++k)
                result.at(row, column) += a.at(row, k) * b.at(k, column);
        }
    }
    return result;
}

Matrix summed(const Matrix& a, const Matrix& b, double sign) {
    if (a.rows != b.rows || a.columns != b.columns) throw Error("The sizes of the matrices do not fit.");
    Matrix result = a;
    for (std::size_t i = 0; i < result.values.size(); ++i)
        result.values[i] += sign * b.values[i];
    return result;
}

Value operateMatrices(BinaryOp op, const Value& left, const Value& right) {
    if (op == BinaryOp::Mul && isNumber(right.type())) return scaled(left.asMatrix(), right.asFloat());
    if (op == BinaryOp::Mul && isNumber(left.type())) return scaled(right.asMatrix(), left.asFloat());
    const Matrix a = left.asMatrix();
    const Matrix b = right.asMatrix();
    switch (op) {
    case BinaryOp::Add: return summed(a, b, 1.0);
    case BinaryOp::Sub: return summed(a, b, -1.0);
    case BinaryOp::Mul: return multiplied(a, b);
    case BinaryOp::Equal: return a == b;
    default: return !(a == b);
    }
}

Form matrixForm(BinaryOp op, Type left, Type right) {
    const bool both = left == Type::Matrix && right == Type::Matrix;
    switch (op) {
    case BinaryOp::Mul: return both || isNumber(left) || isNumber(right) ? Form::Matrix : Form::Illegal;
    case BinaryOp::Add:
    case BinaryOp::Sub:
    case BinaryOp::Equal:
    case BinaryOp::NotEqual: return both ? Form::Matrix : Form::Illegal;
    default: return Form::Illegal;
    }
}

Form vectorForm(BinaryOp op, Type left, Type right) {
    const bool both = left == Type::Vector && right == Type::Vector;
    if (op == BinaryOp::Mul && !both) return Form::Scale;
    if (op == BinaryOp::Cross && !both) return Form::Illegal;
    return Form::Vector;
}

} // namespace

std::string_view symbolOf(BinaryOp op) {
    constexpr std::array<std::string_view, 12> symbols{"+", "-",  "*", "/",  "%",  "^",
                                                       "<", "<=", ">", ">=", "==", "!="};
    return symbols[static_cast<std::size_t>(op)];
}

bool isComparison(BinaryOp op) { return op >= BinaryOp::Less; }

Form formOf(BinaryOp op, Type left, Type right) {
    const auto either = [left, right](Type type) { return left == type || right == type; };
    if (isArray(left) || isArray(right) || either(Type::None)) return Form::Illegal;
    if (either(Type::Any)) return Form::Unknown;
    if (either(Type::Matrix)) return matrixForm(op, left, right);
    if (either(Type::String)) return op == BinaryOp::Add || isComparison(op) ? Form::Text : Form::Illegal;
    if (either(Type::Vector)) return vectorForm(op, left, right);
    if (op == BinaryOp::Cross) return Form::Illegal;
    return left == Type::Int && right == Type::Int ? Form::Int : Form::Float;
}

Type resultOf(BinaryOp op, Form form) {
    if (isComparison(op) || form == Form::Int) return Type::Int;
    switch (form) {
    case Form::Float: return Type::Float;
    case Form::Text: return Type::String;
    case Form::Matrix: return Type::Matrix;
    case Form::Vector: return op == BinaryOp::Mul ? Type::Float : Type::Vector;
    default: return Type::Vector;
    }
}

void illegalOperation(BinaryOp op, Type left, Type right) {
    // The operand to blame: an array or nothing, else a matrix, else text, else whatever is there.
    Type blamed = left;
    for (const Type type : {Type::Matrix, Type::String}) {
        if (right == type) blamed = right;
    }
    if (isArray(right) || right == Type::None) blamed = right;
    throw Error("Illegal operation \"" + std::string(symbolOf(op)) + "\" on data of type " +
                std::string(nameOf(blamed)) + ".");
}

void divisionByZero() { throw Error("Division by zero."); }

double modFloats(double a, double b) {
    if (b == 0.0) divisionByZero();
    return std::fmod(a, b);
}

MVector divVectors(const MVector& a, const MVector& b) {
    return {divFloats(a.x, b.x), divFloats(a.y, b.y), divFloats(a.z, b.z)};
}

MVector modVectors(const MVector& a, const MVector& b) {
    return {modFloats(a.x, b.x), modFloats(a.y, b.y), modFloats(a.z, b.z)};
}

bool compareTexts(BinaryOp op, const std::string& a, const std::string& b) { return compare(op, a, b); }

Value operate(BinaryOp op, const Value& left, const Value& right) {
    switch (formOf(op, left.type(), right.type())) {
    case Form::Int: return operateInts(op, left.asInt(), right.asInt());
    case Form::Float: return operateFloats(op, left.asFloat(), right.asFloat());
    case Form::Text:
        if (op == BinaryOp::Add) return left.asString() + right.asString();
        return compareTexts(op, left.asString(), right.asString());
    case Form::Vector: return operateVectors(op, left.asVector(), right.asVector());
    case Form::Scale:
        if (left.ifVector()) return *left.ifVector() * right.asFloat();
        return *right.ifVector() * left.asFloat();
    case Form::Matrix: return operateMatrices(op, left, right);
    case Form::Unknown:
    case Form::Illegal: break;
    }
    illegalOperation(op, left.type(), right.type());
}

Value negated(const Value& value) {
    switch (value.type()) {
    case Type::Int: return subInts(0, value.asInt());
    case Type::Float: return -value.asFloat();
    case Type::Vector: return -*value.ifVector();
    case Type::Matrix: return scaled(value.asMatrix(), -1.0);
    default: illegalOperation(BinaryOp::Sub, value.type(), value.type());
    }
}

} // namespace vesk::mel
