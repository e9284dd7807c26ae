#pragma once

#include "host/core/object.h"

#include <maya/MObject.h>

namespace vesk::api {

/// What a handle holds, as a T; null when it holds nothing or something else.
template <class T>
T* behind(const MObject& handle) {
    return dynamic_cast<T*>(handle.hostObject());
}

} // namespace vesk::api
