#include <maya/MAnimControl.h>

#include "host/api/impl/session_hooks.h"

MTime MAnimControl::currentTime() {
    vesk::api::Session* running = vesk::api::session();
    return MTime(running ? running->scene().frame() : 0.0, MTime::uiUnit());
}
