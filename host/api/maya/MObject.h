#pragma once

#include <maya/MFn.h>
#include <maya/MTypes.h>

#include <utility>

namespace vesk {
class Object;
void retainObject(Object* object);
void releaseObject(Object* object);
} // namespace vesk

/// Handle to anything the host owns: a node, an attribute, data, a component. Counts references.
/// An object that came out of a node's input is read-only: function sets on it read, and refuse to write.
class MObject {
  public:
    MObject() = default;
    MObject(const MObject& other) : MObject(other.object_, other.readOnly_) {}
    MObject(MObject&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)), readOnly_(other.readOnly_) {}
    ~MObject() {
        if (object_) vesk::releaseObject(object_);
    }
    MObject& operator=(MObject other) noexcept {
        std::swap(object_, other.object_);
        std::swap(readOnly_, other.readOnly_);
        return *this;
    }

    bool isNull() const { return object_ == nullptr; }
    /// The most derived kind; `MFn::kInvalid` for a null object.
    MFn::Type apiType() const;
    const char* apiTypeStr() const;
    bool hasFn(MFn::Type type) const;
    bool operator==(const MObject& other) const { return object_ == other.object_; }
    bool operator!=(const MObject& other) const { return object_ != other.object_; }

    static MObject kNullObj;

    /// For the host: the object behind the handle.
    explicit MObject(vesk::Object* object, bool readOnly = false) : object_(object), readOnly_(readOnly) {
        if (object_) vesk::retainObject(object_);
    }
    vesk::Object* hostObject() const { return object_; }
    bool isReadOnly() const { return readOnly_; }

  private:
    vesk::Object* object_ = nullptr;
    bool readOnly_ = false;
};
