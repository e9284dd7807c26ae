#pragma once

#include <maya/MPlug.h>

#include "host/api/array_of.h"

/// Growable array of plugs.
class MPlugArray : public vesk::ArrayOf<MPlugArray, MPlug> {
  public:
    using ArrayOf::ArrayOf;
};
