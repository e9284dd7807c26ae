#pragma once

#include <string>
#include <utility>

namespace vesk {

/// Success, or the sentence that tells a person what went wrong.
struct [[nodiscard]] Outcome {
    std::string error;

    static Outcome fail(std::string message) { return Outcome{std::move(message)}; }
    explicit operator bool() const { return error.empty(); }
};

} // namespace vesk
