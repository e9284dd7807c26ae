#pragma once
// The functions of the language itself, by name and the types of their parameters.

#include "host/mel/code.h"
#include "host/mel/random.h"
#include "host/mel/script_files.h"

#include <span>
#include <string_view>
#include <vector>

namespace vesk::mel {

struct Limits;

/// What functions of the library keep between calls, and may use.
struct LibraryState {
    explicit LibraryState(const Limits& limitValues) : limits(limitValues), files(limitValues) {}

    Random random;
    const Limits& limits;
    ScriptFiles files;
};

/// One function with one list of parameters; a name may have several.
struct Builtin {
    /// The parameters as letters: i f s v for int, float, string and vector, I F S V for their arrays, * for
    /// a value of any type; `&` after a letter: a variable that the function may change.
    std::string_view name;
    std::string_view parameters;
    Type result = Type::None;

    /// Functions of numbers only: the arguments lie in a row, three numbers for each vector; the result
    /// likewise.
    NumberFunction numbers = nullptr;
    /// All others. The arguments have the types of the parameters.
    Value (*values)(LibraryState& state, std::span<Value* const> arguments) = nullptr;
};

struct BuiltinParameter {
    Type type = Type::None; ///< Any for *
    bool byReference = false;
};

/// The parameters spelled out.
std::vector<BuiltinParameter> parametersOf(const Builtin& builtin);

/// All functions of that name; empty when there is none.
std::vector<const Builtin*> builtinsNamed(std::string_view name);

// The tables, one for each file.
std::span<const Builtin> numberFunctions();
std::span<const Builtin> randomFunctions();
std::span<const Builtin> stringFunctions();
std::span<const Builtin> arrayFunctions();
std::span<const Builtin> listFunctions();
std::span<const Builtin> nameFunctions();
std::span<const Builtin> systemFunctions();

// What the rows of those tables are written with.

using Arguments = std::span<Value* const>;
using ValueFunction = Value (*)(LibraryState&, Arguments);

constexpr Builtin valueRow(std::string_view name, std::string_view parameters, Type result,
                           ValueFunction function) {
    return {name, parameters, result, nullptr, function};
}

inline const std::string& textAt(Arguments arguments, std::size_t index) {
    return *arguments[index]->ifString();
}
inline int intAt(Arguments arguments, std::size_t index) { return *arguments[index]->ifInt(); }

} // namespace vesk::mel
