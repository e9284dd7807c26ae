#pragma once

#include <maya/MDoubleArray.h>

#include "host/api/fn_array_data.h"

/// Function set of double array data.
class MFnDoubleArrayData : public vesk::FnArrayData<MDoubleArray, MFn::kDoubleArrayData> {
  public:
    using FnArrayData::FnArrayData;
};
