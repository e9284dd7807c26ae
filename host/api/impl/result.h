#pragma once
// How calls of the API answer: a value, and a status for those who want it.

#include <maya/MStatus.h>

#include <utility>

namespace vesk::api {

/// Fills the optional last argument of API calls.
inline void report(MStatus* status, MStatus value = MStatus()) {
    if (status) *status = value;
}

/// Reports and gives the call's answer in one statement.
template <class T>
T answer(MStatus* status, T value, MStatus code = MStatus()) {
    report(status, code);
    return value;
}

} // namespace vesk::api
