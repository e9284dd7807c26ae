#pragma once
// What flows on a wire.

#include "host/core/object.h"

#include <maya/MFnData.h>

namespace vesk {

/// A data object: a thin wrapper around values that copies share until one of them writes.
///
/// A *fresh* object (just created, held by nobody but its maker) is placed in a plug as it is, so that its
/// maker can go on filling it. Setting an object that a plug already holds places a `clone` of it: the values
/// are shared, the identity is not, so a write through one plug's object never shows in the other.
class Data : public Object {
  public:
    virtual MFnData::Type dataType() const = 0;
    /// Another wrapper around the same values.
    virtual Ref<Data> clone() const = 0;
    /// Bytes held by the values (shared ones counted in full); for reports and limits.
    virtual std::size_t byteSize() const { return 0; }

    bool isPlaced() const { return placed_; }
    void markPlaced() { placed_ = true; }

  private:
    bool placed_ = false;
};

} // namespace vesk
