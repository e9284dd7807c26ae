#pragma once
// The boundary to a plug-in's code: nothing that it throws gets past.

#include "host/core/log.h"

#include <exception>
#include <string>

namespace vesk::api {

/// Calls `action`. What it throws becomes an error on the log that says where; `where` gives that text.
/// False when something was thrown.
template <class Where, class Action>
bool guarded(Where where, Action action) {
    try {
        action();
        return true;
    } catch (const std::exception& thrown) {
        log().error("Exception in " + where() + ": " + thrown.what());
    } catch (...) {
        log().error("Exception of unknown kind in " + where() + ".");
    }
    return false;
}

} // namespace vesk::api
