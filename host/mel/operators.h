#pragma once
// What operators do with which types: the one rule that both the compiler and the machine follow.

#include "host/mel/syntax.h"
#include "host/mel/value.h"

#include <cstdint>

namespace vesk::mel {

/// How an operation is carried out: what both operands are converted to.
enum class Form : std::uint8_t {
    Int,
    Float,
    Text,   ///< `+` joins, comparisons are by byte order
    Vector, ///< by components; comparisons of order go by length
    Scale,  ///< a vector by a number, in either order
    Matrix,
    Unknown, ///< an operand's type is known to the run only
    Illegal
};

Form formOf(BinaryOp op, Type left, Type right);
/// The type of the operation's result; `form` is neither Unknown nor Illegal.
Type resultOf(BinaryOp op, Form form);
/// `Illegal operation "-" on data of type string.`
[[noreturn]] void illegalOperation(BinaryOp op, Type left, Type right);
[[noreturn]] void divisionByZero();

// Integers wrap around; division and remainder by zero throw.

inline int addInts(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

inline int subInts(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

inline int mulInts(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

inline int divInts(int a, int b) {
    if (b == 0) [[unlikely]]
        divisionByZero();
    return b == -1 ? subInts(0, a) : a / b; // the smallest int by -1 would trap
}

inline int modInts(int a, int b) {
    if (b == 0) [[unlikely]]
        divisionByZero();
    return b == -1 ? 0 : a % b;
}

inline double divFloats(double a, double b) {
    if (b == 0.0) [[unlikely]]
        divisionByZero();
    return a / b;
}

double modFloats(double a, double b);
MVector divVectors(const MVector& a, const MVector& b);
MVector modVectors(const MVector& a, const MVector& b);
bool compareTexts(BinaryOp op, const std::string& a, const std::string& b);

/// The operation on values of any type; throws what the language does not have.
Value operate(BinaryOp op, const Value& left, const Value& right);
Value negated(const Value& value);

} // namespace vesk::mel
