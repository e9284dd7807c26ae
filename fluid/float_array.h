#pragma once
// The one way in which arrays of this folder are allocated.

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <span>
#include <utility>

namespace vesk::fluid {

/// An array of floats of fixed length, zero at first. Moving and swapping exchange pointers. The memory comes
/// zeroed from the system, so that pages that are never touched cost nothing. Large arrays start at different
/// places of a page: read side by side, they would otherwise push each other out of the cache.
class FloatArray {
  public:
    FloatArray() = default;
    /// Throws std::bad_alloc.
    explicit FloatArray(std::size_t size) : size_(size) {
        if (size == 0) return;
        const std::size_t offset = offsetFor(size);
        block_ = std::calloc(size + offset, sizeof(float));
        if (!block_) throw std::bad_alloc();
        data_ = static_cast<float*>(block_) + offset;
    }
    FloatArray(FloatArray&& other) noexcept { swap(other); }
    FloatArray& operator=(FloatArray&& other) noexcept {
        FloatArray moved(std::move(other));
        swap(moved);
        return *this;
    }
    FloatArray(const FloatArray&) = delete;
    FloatArray& operator=(const FloatArray&) = delete;
    ~FloatArray() { std::free(block_); }

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
        std::swap(block_, other.block_);
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
    }
    friend void swap(FloatArray& a, FloatArray& b) noexcept { a.swap(b); }

  private:
    static std::size_t offsetFor(std::size_t size) {
        constexpr std::size_t large = 1 << 15, apart = 17 * 64 / sizeof(float), places = 15;
        static std::atomic<unsigned> made = 0;
        return size < large ? 0 : made++ % places * apart;
    }

    void* block_ = nullptr;
    float* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace vesk::fluid
