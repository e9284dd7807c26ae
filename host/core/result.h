#pragma once

#include "host/core/outcome.h"

#include <optional>
#include <string>
#include <utility>

namespace vesk {

/// A value, or the sentence that tells a person why there is none.
template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : value_(std::move(value)) {}
    /// `failure` must be one.
    Result(Outcome failure) : error_(std::move(failure.error)) {}

    explicit operator bool() const noexcept { return value_.has_value(); }
    /// Empty when there is a value.
    const std::string& error() const noexcept { return error_; }

    // Only when there is a value.
    T& operator*() noexcept { return *value_; }
    const T& operator*() const noexcept { return *value_; }
    T* operator->() noexcept { return &*value_; }
    const T* operator->() const noexcept { return &*value_; }

  private:
    std::optional<T> value_;
    std::string error_;
};

} // namespace vesk
