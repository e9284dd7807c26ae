#pragma once

#include <maya/MTime.h>

/// The session's time line.
class MAnimControl {
  public:
    /// In the unit of the interface; frame 0 without a session. While a plug is read at another time it is
    /// that time.
    static MTime currentTime();
};
