#pragma once

#include <maya/MIntArray.h>

#include "host/api/fn_array_data.h"

/// Function set of int array data.
class MFnIntArrayData : public vesk::FnArrayData<MIntArray, MFn::kIntArrayData> {
  public:
    using FnArrayData::FnArrayData;
};
