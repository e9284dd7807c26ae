#pragma once
// The growable arrays of the API: one template, from which each array class is made.

#include <maya/MStatus.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace vesk {

template <class Self, class T>
class ArrayOf;

/// For the host: the flat memory behind an array, to work on or to move vectors in and out.
template <class Self, class T>
std::vector<T>& storage(ArrayOf<Self, T>& array) noexcept {
    return *array.items_;
}
template <class Self, class T>
const std::vector<T>& storage(const ArrayOf<Self, T>& array) noexcept {
    return *array.items_;
}

/// For the host: an array around a vector, without a copy: `adopt<MIntArray>(std::move(indices))`.
template <class Array>
Array adopt(std::vector<typename Array::Element>&& items) {
    Array array;
    storage(array) = std::move(items);
    return array;
}

/// An array owns its items or is a view of a vector that someone else, a data object say, holds too.
/// Reads and writes of a view, changes of length included, go to that vector. A copy of a view owns its
/// items; a view that is moved stays a view; assigning to a view fills the vector that it views. Reading
/// outside the array gives an element as `T()` makes it; writing there goes nowhere.
template <class Self, class T>
class ArrayOf {
  public:
    using Element = T;

    ArrayOf() noexcept : items_(&own_) {}
    explicit ArrayOf(unsigned int initialSize, const T& initialValue = T())
        : own_(initialSize, initialValue), items_(&own_) {}
    ArrayOf(const T source[], unsigned int count) : own_(source, source + count), items_(&own_) {}
    ArrayOf(const ArrayOf& other) : own_(*other.items_), items_(&own_) {}
    ArrayOf(ArrayOf&& other) noexcept
        : own_(std::move(other.own_)), viewed_(std::move(other.viewed_)),
          items_(viewed_ ? viewed_.get() : &own_) {
        other.items_ = &other.own_;
        other.own_.clear();
    }
    // The size increment stays with each array.
    // cppcheck-suppress operatorEqVarError
    ArrayOf& operator=(const ArrayOf& other) {
        if (this != &other) *items_ = *other.items_;
        return *this;
    }
    // What a view shows belongs to others too and is copied, which allocates.
    // NOLINTNEXTLINE(performance-noexcept-move-constructor)
    ArrayOf& operator=(ArrayOf&& other) {
        if (other.viewed_) return *this = std::as_const(other);
        if (this != &other) *items_ = std::exchange(other.own_, {});
        return *this;
    }
    ~ArrayOf() = default;

    /// A view of `items`; owning and empty when that is null.
    static Self viewOf(std::shared_ptr<std::vector<T>> items) noexcept {
        Self view;
        ArrayOf& base = view;
        base.viewed_ = std::move(items);
        if (base.viewed_) base.items_ = base.viewed_.get();
        return view;
    }

    unsigned int length() const noexcept { return static_cast<unsigned int>(items_->size()); }

    const T& operator[](unsigned int index) const noexcept {
        if (index < items_->size()) [[likely]]
            return (*items_)[index];
        return missing();
    }
    T& operator[](unsigned int index) noexcept {
        if (index < items_->size()) [[likely]]
            return (*items_)[index];
        return nowhere();
    }

    /// New elements are as `T()` makes them: 0, (0,0,0,1) for points and colours, "".
    MStatus setLength(unsigned int length) {
        return allocating([&] { items_->resize(length); });
    }
    MStatus append(const T& element) {
        items_->push_back(element);
        return {};
    }
    /// Puts `element` before the one at `index`; `index` may be the length.
    MStatus insert(const T& element, unsigned int index) {
        if (index > items_->size()) return MStatus::kInvalidParameter;
        items_->insert(items_->begin() + index, element);
        return {};
    }
    MStatus remove(unsigned int index) {
        if (index >= items_->size()) return MStatus::kInvalidParameter;
        items_->erase(items_->begin() + index);
        return {};
    }
    MStatus set(const T& element, unsigned int index) {
        if (index >= items_->size()) return MStatus::kInvalidParameter;
        (*items_)[index] = element;
        return {};
    }
    MStatus copy(const Self& source) {
        *this = static_cast<const ArrayOf&>(source);
        return {};
    }
    MStatus clear() noexcept {
        items_->clear();
        return {};
    }
    /// Copies all elements to memory that has room for `length()`.
    MStatus get(T to[]) const {
        std::copy(items_->begin(), items_->end(), to);
        return {};
    }
    /// Appends all elements of `other`, which may be this array.
    Self& operator+=(const Self& other) {
        const std::size_t count = other.length();
        items_->reserve(items_->size() + count);
        for (std::size_t i = 0; i < count; ++i)
            items_->push_back((*static_cast<const ArrayOf&>(other).items_)[i]);
        return static_cast<Self&>(*this);
    }

    /// A hint that is kept and not needed: growth is by a factor.
    void setSizeIncrement(unsigned int increment) noexcept { sizeIncrement_ = increment; }
    unsigned int sizeIncrement() const noexcept { return sizeIncrement_; }

    friend std::vector<T>& storage<>(ArrayOf& array) noexcept;
    friend const std::vector<T>& storage<>(const ArrayOf& array) noexcept;

  private:
    static const T& missing() noexcept {
        static const T element{};
        return element;
    }
    [[gnu::cold, gnu::noinline]] static T& nowhere() noexcept {
        thread_local T element;
        return element = T();
    }
    template <class Action>
    static MStatus allocating(Action action) {
        try {
            action();
            return {};
        } catch (const std::bad_alloc&) {
        } catch (const std::length_error&) {
        }
        return MStatus::kInsufficientMemory;
    }

    std::vector<T> own_;
    std::shared_ptr<std::vector<T>> viewed_; ///< null while the array owns its items
    std::vector<T>* items_;                  ///< `own_` or what is viewed; never null
    unsigned int sizeIncrement_ = 1;
};

} // namespace vesk
