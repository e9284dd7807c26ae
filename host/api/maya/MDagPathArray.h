#pragma once

#include <maya/MDagPath.h>

#include "host/api/array_of.h"

/// Growable array of DAG paths.
class MDagPathArray : public vesk::ArrayOf<MDagPathArray, MDagPath> {
  public:
    using ArrayOf::ArrayOf;
};
