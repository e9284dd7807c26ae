#pragma once

#include <maya/MObject.h>

#include "host/api/array_of.h"

/// Growable array of handles.
class MObjectArray : public vesk::ArrayOf<MObjectArray, MObject> {
  public:
    using ArrayOf::ArrayOf;
};
