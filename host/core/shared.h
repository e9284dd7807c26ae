#pragma once
// A value that many holders share until one of them writes.

#include <memory>
#include <utility>

namespace vesk {

/// Copying shares; `write()` gives this holder a value of its own first when others hold the same one.
/// Never null: a default-made holder reads as a default-made T (made on the first read or write).
template <class T>
class Shared {
  public:
    Shared() = default;
    explicit Shared(T value) : value_(std::make_shared<T>(std::move(value))) {}

    const T& read() const {
        if (value_) return *value_;
        static const T empty{};
        return empty;
    }
    const T& operator*() const { return read(); }
    const T* operator->() const { return &read(); }

    /// The value without making one first: null when there is none yet.
    const T* get() const { return value_.get(); }
    /// The value if nobody else holds it, else null.
    T* sole() { return value_.use_count() == 1 ? value_.get() : nullptr; }

    T& write() {
        if (!value_) {
            value_ = std::make_shared<T>();
        } else if (value_.use_count() > 1) {
            value_ = std::make_shared<T>(*value_);
        }
        return *value_;
    }

    /// A fresh value in place of the present one, without copying what was there.
    T& reset(T value = T{}) {
        value_ = std::make_shared<T>(std::move(value));
        return *value_;
    }

    bool sharesWith(const Shared& other) const { return value_ && value_ == other.value_; }

  private:
    std::shared_ptr<T> value_;
};

} // namespace vesk
