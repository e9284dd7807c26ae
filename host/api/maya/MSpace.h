#pragma once

/// Spaces in which geometry and transforms are asked for.
class MSpace {
  public:
    enum Space {
        kInvalid = 0,
        kTransform = 1,
        kPreTransform = 2,
        kObject = kPreTransform,
        kPostTransform = 3,
        kWorld = 4,
        kLast = 5
    };
};
