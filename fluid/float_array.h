#pragma once
// The one way in which arrays of this folder are allocated.

#include <cstddef>
#include <cstdlib>
#include <new>
#include <span>
#include <utility>

namespace vesk::fluid {

/// An array of floats of fixed length, zero at first. Moving and swapping exchange pointers. The memory comes
/// zeroed from the system, so that pages that are never touched cost nothing.
class FloatArray {
  public:
    FloatArray() = default;
    /// Throws std::bad_alloc.
    explicit FloatArray(std::size_t size)
        : data_(size ? static_cast<float*>(std::calloc(size, sizeof(float))) : nullptr), size_(size) {
        if (size && !data_) throw std::bad_alloc();
    }
    FloatArray(FloatArray&& other) noexcept { swap(other); }
    FloatArray& operator=(FloatArray&& other) noexcept {
        FloatArray moved(std::move(other));
        swap(moved);
        return *this;
    }
    FloatArray(const FloatArray&) = delete;
    FloatArray& operator=(const FloatArray&) = delete;
    ~FloatArray() { std::free(data_); }

    float* data() { return data_; }
    const float* data() const { return data_; }
    std::size_t size() const { return size_; }
    float* begin() { return data_; }
    float* end() { return data_ + size_; }
    const float* begin() const { return data_; }
    const float* end() const { return data_ + size_; }
    float& operator[](std::size_t i) { return data_[i]; }
    float operator[](std::size_t i) const { return data_[i]; }

    void swap(FloatArray& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
    }
    friend void swap(FloatArray& a, FloatArray& b) noexcept { a.swap(b); }

  private:
    float* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace vesk::fluid
