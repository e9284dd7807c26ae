#pragma once

#include <maya/MVectorArray.h>

#include "host/api/fn_array_data.h"

/// Function set of vector array data.
class MFnVectorArrayData : public vesk::FnArrayData<MVectorArray, MFn::kVectorArrayData> {
  public:
    using FnArrayData::FnArrayData;
};
