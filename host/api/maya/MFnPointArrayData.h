#pragma once

#include <maya/MPointArray.h>

#include "host/api/fn_array_data.h"

/// Function set of point array data.
class MFnPointArrayData : public vesk::FnArrayData<MPointArray, MFn::kPointArrayData> {
  public:
    using FnArrayData::FnArrayData;
};
