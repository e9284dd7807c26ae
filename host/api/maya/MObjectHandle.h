#pragma once

#include <maya/MObject.h>

#include <cstdint>

/// An object with a hash code, so that objects can be keys.
class MObjectHandle {
  public:
    MObjectHandle() = default;
    explicit MObjectHandle(const MObject& object) : object_(object) {}

    MObject object() const { return object_; }
    bool operator==(const MObjectHandle& other) const { return object_ == other.object_; }
    bool operator!=(const MObjectHandle& other) const { return !(*this == other); }

    /// Handles on one object have one code; those on others may share it.
    unsigned int hashCode() const { return objectHashCode(object_); }
    static unsigned int objectHashCode(const MObject& object) {
        const auto address = reinterpret_cast<std::uintptr_t>(object.hostObject());
        return static_cast<unsigned int>((address >> 4U) * 0x9E3779B97F4A7C15ULL >> 32U);
    }

  private:
    MObject object_;
};
