#include <maya/MFileIO.h>

#include "host/api/impl/session_hooks.h"

bool MFileIO::isReadingFile() {
    vesk::api::Session* running = vesk::api::session();
    return running && running->scene().readingFile;
}
