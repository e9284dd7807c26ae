#pragma once
// The programs that the interpreters of MEL and of Lua are compared by.

#include <span>
#include <string>

namespace vesk::bench {

constexpr int kPoints = 100000; ///< in the loop over points

/// One program in both languages. Each text defines a function `name` without arguments that returns a
/// number, the same in both.
struct Program {
    const char* name;
    const char* title;
    double limit; ///< on the ratio of MEL's time to Lua's
    const char* mel;
    const char* lua;
};

std::span<const Program> programs();

/// The procedure that the node `point` writes for positions, in full, around a body of ten arithmetic
/// operations and one sine. Its plugs are named by how many numbers they hold a point.
std::string positionProcedure();

} // namespace vesk::bench
