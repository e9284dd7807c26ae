#pragma once

#include <maya/MStringArray.h>

#include "host/api/fn_array_data.h"

/// Function set of string array data.
class MFnStringArrayData : public vesk::FnArrayData<MStringArray, MFn::kStringArrayData> {
  public:
    using FnArrayData::FnArrayData;
};
