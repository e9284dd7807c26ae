#pragma once
// What an `MObject` points to: a counted object that knows its API type.

#include <maya/MFn.h>

#include <cstdint>
#include <utility>

namespace vesk {

/// Base of everything that a handle can hold: nodes, attributes, data, components.
/// The count is not atomic: the graph is evaluated on one thread.
class Object {
  public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// The most derived kind.
    virtual MFn::Type apiType() const = 0;
    /// True for `apiType()` and for every ancestor of it in the table of kinds.
    virtual bool hasFn(MFn::Type type) const;
    /// False once the thing behind the handle was deleted from the scene while handles still hold it.
    virtual bool isAlive() const { return true; }

    void retain() const { ++references_; }
    void release() const {
        if (--references_ == 0) destroy();
    }
    std::uint32_t referenceCount() const { return references_; }

  private:
    void
    destroy() const; // out of line, since static checkers lose the count and see a freed object everywhere

    mutable std::uint32_t references_ = 0;
};

/// Whether `type` is `ancestor` or stands below it (a mesh is a shape, a DAG node, a dependency node ...).
bool isKindOf(MFn::Type type, MFn::Type ancestor);
/// The API's name of a kind, such as `kMesh`; "kInvalid" for numbers that the table does not hold.
const char* kindName(MFn::Type type);

/// Counting pointer to an `Object`.
template <class T>
class Ref {
  public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    Ref(T* object) : object_(object) {
        if (object_) object_->retain();
    }
    Ref(const Ref& other) : Ref(other.object_) {}
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U>
    Ref(const Ref<U>& other) : Ref(other.get()) {}
    ~Ref() {
        if (object_) object_->release();
    }
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    bool operator==(const Ref& other) const { return object_ == other.object_; }

  private:
    T* object_ = nullptr;
};

template <class T, class... Args>
Ref<T> makeRef(Args&&... args) {
    return Ref<T>(new T(std::forward<Args>(args)...));
}

} // namespace vesk
