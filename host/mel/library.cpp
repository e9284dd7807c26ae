#include "host/mel/library.h"

#include <array>
#include <unordered_map>

namespace vesk::mel {

namespace {

/// All tables in one list; a function's place in it is its index in the code.
const std::vector<const Builtin*>& allBuiltins() {
    static const std::vector<const Builtin*> list = [] {
        std::vector<const Builtin*> all;
        for (const std::span<const Builtin> table :
             {numberFunctions(), randomFunctions(), stringFunctions(), arrayFunctions(), listFunctions(),
              nameFunctions(), systemFunctions()}) {
            for (const Builtin& builtin : table)
                all.push_back(&builtin);
        }
        return all;
    }();
    return list;
}

using NameIndex = std::unordered_map<std::string_view, std::vector<const Builtin*>>;

const NameIndex& builtinNames() {
    static const NameIndex index = [] {
        NameIndex names;
        for (const Builtin* builtin : allBuiltins())
            names[builtin->name].push_back(builtin);
        return names;
    }();
    return index;
}

Type typeOfLetter(char letter) {
    switch (letter) {
    case 'i': return Type::Int;
    case 'f': return Type::Float;
    case 's': return Type::String;
    case 'v': return Type::Vector;
    case 'I': return Type::Ints;
    case 'F': return Type::Floats;
    case 'S': return Type::Strings;
    case 'V': return Type::Vectors;
    default: return Type::Any;
    }
}

} // namespace

std::vector<BuiltinParameter> parametersOf(const Builtin& builtin) {
    std::vector<BuiltinParameter> parameters;
    for (const char letter : builtin.parameters) {
        if (letter == '&') {
            parameters.back().byReference = true;
        } else {
            parameters.push_back({typeOfLetter(letter), false});
        }
    }
    return parameters;
}

std::vector<const Builtin*> builtinsNamed(std::string_view name) {
    const auto found = builtinNames().find(name);
    return found == builtinNames().end() ? std::vector<const Builtin*>() : found->second;
}

} // namespace vesk::mel
