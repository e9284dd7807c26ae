#pragma once

#include <maya/MStatus.h>

#include <cstdint>

/// What a callback is removed by; 0 is none.
using MCallbackId = std::intptr_t;

/// Base of what callbacks are registered with.
class MMessage {
  public:
    /// `kFailure` for an id that is not, or no longer, in use.
    static MStatus removeCallback(MCallbackId id);
};
