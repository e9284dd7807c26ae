#include "host/api/impl/session_hooks.h"

namespace vesk::api {

namespace {

Session* running = nullptr;

} // namespace

Session* session() { return running; }
void setSession(Session* one) { running = one; }

} // namespace vesk::api
