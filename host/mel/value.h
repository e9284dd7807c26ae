#pragma once
// Values of the MEL language, and its conversions between them.

#include "host/core/shared.h"

#include <maya/MVector.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vesk::mel {

using IntArray = std::vector<int>;
using FloatArray = std::vector<double>;
using StringArray = std::vector<std::string>;
using VectorArray = std::vector<MVector>;

/// Fixed size, row by row.
struct Matrix {
    int rows = 0;
    int columns = 0;
    std::vector<double> values; ///< rows * columns

    Matrix() = default;
    Matrix(int rowCount, int columnCount);
    double& at(int row, int column) { return values[position(row, column)]; }
    double at(int row, int column) const { return values[position(row, column)]; }
    std::size_t position(int row, int column) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(column);
    }
    friend bool operator==(const Matrix&, const Matrix&) = default;
};

/// In the order of the alternatives of `Value`. `Any` is no value's type: it is what the compiler says of an
/// expression whose type only the run will tell.
enum class Type : std::uint8_t {
    None,
    Int,
    Float,
    String,
    Vector,
    Matrix,
    Ints,
    Floats,
    Strings,
    Vectors,
    Any
};

/// `int`, `string[]`, `matrix` ... and `void` for None.
std::string_view nameOf(Type type);
bool isArray(Type type);
/// The type of an array's elements; the type itself when it is no array.
Type elementOf(Type type);
/// The array type with elements of this type; None when there is none.
Type arrayOf(Type element);

/// Whether the language converts one type into another. Whether a matrix fits a vector, and what Any holds,
/// is left to the run.
bool isConvertible(Type from, Type to);
/// `Cannot convert data of type string[] to type int.`
[[noreturn]] void cannotConvert(Type from, Type to);

/// A value of any type. Arrays and matrices are shared on copying and copied on writing.
class Value {
  public:
    Value() = default;
    Value(int value) : data_(value) {}
    Value(bool value) : data_(value ? 1 : 0) {}
    Value(double value) : data_(value) {}
    Value(std::string value) : data_(std::move(value)) {}
    Value(std::string_view value) : data_(std::string(value)) {}
    Value(const char* value) : data_(std::string(value)) {}
    Value(const MVector& value) : data_(value) {}
    Value(Matrix value) : data_(Shared<Matrix>(std::move(value))) {}
    Value(IntArray value) : data_(Shared<IntArray>(std::move(value))) {}
    Value(FloatArray value) : data_(Shared<FloatArray>(std::move(value))) {}
    Value(StringArray value) : data_(Shared<StringArray>(std::move(value))) {}
    Value(VectorArray value) : data_(Shared<VectorArray>(std::move(value))) {}
    template <class Pointer>
    Value(Pointer*) = delete;

    /// What a variable of this type holds before it is set; none for None and Any.
    static Value zero(Type type);

    Type type() const { return static_cast<Type>(data_.index()); }
    bool isNone() const { return type() == Type::None; }
    bool isArray() const { return mel::isArray(type()); }
    bool isNumber() const { return type() == Type::Int || type() == Type::Float; }
    bool isString() const { return type() == Type::String; }

    // The language's conversions. One that the language does not have (array to scalar, say) throws Error; so
    // does a none, except that it reads as an empty array.

    /// A float is cut toward zero and held in the range of an int (NaN is 0); a string gives its leading
    /// number or 0, a vector its length.
    int asInt() const;
    double asFloat() const;
    /// Numbers as the language prints them (`%.10g`); a vector as "x y z".
    std::string asString() const;
    /// A number gives all three components; a string its up to three leading numbers.
    MVector asVector() const;
    Matrix asMatrix() const;
    /// Int and float arrays convert into each other element by element. Cheap when the type is right already.
    Shared<IntArray> asIntArray() const;
    Shared<FloatArray> asFloatArray() const;
    Shared<StringArray> asStringArray() const;
    Shared<VectorArray> asVectorArray() const;
    bool asBool() const; ///< a number other than 0, a vector with a length

    /// Converts to the type as an assignment does. None and Any leave the value alone.
    Value convertedTo(Type type) const;

    /// A number, or a string that is one as a whole: what a command takes where it wants a number.
    std::optional<double> number() const;

    /// As `print` and a result line show it: arrays and the rows of matrices joined with blanks.
    std::string display() const;

    /// Elements of an array; 0 for anything else.
    std::size_t arraySize() const;
    /// One element of an array, zero past its end; for anything else the value itself.
    Value element(std::size_t index) const;

    /// Writes one element of an array, converted; the array grows to hold it. Throws Error for anything else.
    void setElement(std::size_t index, const Value& item);

    // Direct access for who knows the type; the pointers are null for any other.
    const int* ifInt() const { return std::get_if<int>(&data_); }
    const double* ifFloat() const { return std::get_if<double>(&data_); }
    const std::string* ifString() const { return std::get_if<std::string>(&data_); }
    const MVector* ifVector() const { return std::get_if<MVector>(&data_); }
    template <class T>
    const Shared<T>* ifShared() const {
        return std::get_if<Shared<T>>(&data_);
    }
    std::string* ifString() { return std::get_if<std::string>(&data_); }
    template <class T>
    Shared<T>* ifShared() {
        return std::get_if<Shared<T>>(&data_);
    }

    /// The alternative that the value is known to hold; nothing checks it.
    template <class T>
    const T& as() const {
        const T* const value = std::get_if<T>(&data_);
        if (!value) __builtin_unreachable();
        return *value;
    }
    template <class T>
    T& as() {
        T* const value = std::get_if<T>(&data_);
        if (!value) __builtin_unreachable();
        return *value;
    }

  private:
    std::variant<std::monostate, int, double, std::string, MVector, Shared<Matrix>, Shared<IntArray>,
                 Shared<FloatArray>, Shared<StringArray>, Shared<VectorArray>>
        data_;
};

/// A float as an int: cut toward zero, held in the range, NaN as 0.
int truncated(double value);

} // namespace vesk::mel
