#pragma once
// What a script may use before it is stopped with an error that names the limit, and how to raise it.

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace vesk::mel {

struct Limits {
    static constexpr std::size_t kRecursion = 1000; ///< procedures within procedures
    static constexpr std::size_t kNestedRuns = 100; ///< texts run by commands of texts run by commands ...
    static constexpr std::size_t kArraySize = 1U << 26;  ///< elements of one array
    static constexpr std::size_t kStringSize = 1U << 28; ///< bytes of one string
    static constexpr std::size_t kDeferred = 10000;      ///< deferred texts run after one top-level text
    static constexpr std::size_t kOpenFiles = 64;        ///< files that scripts hold open
    static constexpr std::size_t kNoStepLimit = 0;
    static constexpr std::size_t kTextSize = 1U << 30; ///< bytes of a text or script file; not to be raised

    std::size_t recursion = kRecursion;
    std::size_t nestedRuns = kNestedRuns;
    std::size_t arraySize = kArraySize;
    std::size_t stringSize = kStringSize;
    std::size_t deferred = kDeferred;
    std::size_t openFiles = kOpenFiles;
    /// Turns of loops and calls of procedures in one top-level text.
    std::size_t steps = kNoStepLimit;
};

/// A limit as a user sets it: `--mel-limit name=value`.
struct LimitRow {
    std::string_view name;
    std::size_t Limits::*value;
    std::size_t most; ///< it can be raised to this
    std::string_view what;
};

std::span<const LimitRow> limitRows();

/// Sets the limit of that name. Throws Error when there is none, or the value is beyond what it can be.
void setLimit(Limits& limits, std::string_view name, std::size_t value);

/// `An array is limited to 100 elements (--mel-limit array=N raises this).`
std::string limitMessage(const Limits& limits, std::size_t Limits::*limit);
/// Throws it as an Error.
[[noreturn]] void limitReached(const Limits& limits, std::size_t Limits::*limit);

void checkArraySize(std::size_t elements, const Limits& limits);
void checkStringSize(std::size_t bytes, const Limits& limits);

} // namespace vesk::mel
