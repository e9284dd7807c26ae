// The library is made of the floors; this file gives it a source of its own.

extern "C" __attribute__((visibility("default"))) const char* veskHostApiVersion() { return "201217"; }
