#include "host/mel/limits.h"

#include "host/mel/error.h"

#include <limits>

namespace vesk::mel {

namespace {

constexpr std::size_t kMostCounted = std::numeric_limits<int>::max(); ///< what `size` can still tell

// The nested runs use the stack of C++: each takes up to some kilobytes of its eight megabytes.
constexpr LimitRow rows[] = {
    {"recursion", &Limits::recursion, 10000000, "Procedures are nested more than # deep"},
    {"nesting", &Limits::nestedRuns, 300, "Scripts run by commands are nested more than # deep"},
    {"array", &Limits::arraySize, kMostCounted, "An array is limited to # elements"},
    {"string", &Limits::stringSize, kMostCounted, "A string is limited to # bytes"},
    {"deferred", &Limits::deferred, kMostCounted, "More than # deferred texts in a row: the rest is dropped"},
    {"files", &Limits::openFiles, 10000, "Scripts hold more than # files open"},
    {"steps", &Limits::steps, std::numeric_limits<std::size_t>::max(), "The script took more than # steps"},
};

} // namespace

std::span<const LimitRow> limitRows() { return rows; }

void setLimit(Limits& limits, std::string_view name, std::size_t value) {
    std::string names;
    for (const LimitRow& row : rows) {
        if (row.name != name) {
            names += (names.empty() ? "" : " ") + std::string(row.name);
            continue;
        }
        if (value > row.most) {
            throw Error("The limit \"" + std::string(name) + "\" can be raised to " +
                        std::to_string(row.most) + ".");
        }
        limits.*row.value = value;
        return;
    }
    throw Error("There is no limit \"" + std::string(name) + "\" among " + names + ".");
}

std::string limitMessage(const Limits& limits, std::size_t Limits::*limit) {
    for (const LimitRow& row : rows) {
        if (row.value != limit) continue;
        std::string text(row.what);
        text.replace(text.find('#'), 1, std::to_string(limits.*limit));
        return text + " (--mel-limit " + std::string(row.name) + "=N raises this).";
    }
    return {};
}

void limitReached(const Limits& limits, std::size_t Limits::*limit) {
    throw Error(limitMessage(limits, limit));
}

void checkArraySize(std::size_t elements, const Limits& limits) {
    if (elements > limits.arraySize) limitReached(limits, &Limits::arraySize);
}

void checkStringSize(std::size_t bytes, const Limits& limits) {
    if (bytes > limits.stringSize) limitReached(limits, &Limits::stringSize);
}

} // namespace vesk::mel
