#include "host/session/user_folders.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace vesk {

namespace fs = std::filesystem;

namespace {

fs::path makeTemporary() {
    std::error_code failure;
    const fs::path base = fs::temp_directory_path(failure);
    std::string name = ((failure ? fs::path("/tmp") : base) / "vesk-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        throw std::runtime_error("cannot make a temporary folder '" + name + "': " + std::strerror(errno));
    }
    return name;
}

} // namespace

UserFolders::UserFolders(const fs::path& root) : isOurs_(root.empty()) {
    root_ = isOurs_ ? makeTemporary() : fs::absolute(root);
    for (const char* name : {"scripts", "prefs/shelves", "tmp"}) {
        std::error_code failure;
        fs::create_directories(root_ / name, failure);
        if (failure) {
            throw std::runtime_error("cannot make the folder '" + (root_ / name).string() +
                                     "': " + failure.message());
        }
    }
}

UserFolders::~UserFolders() {
    std::error_code ignored;
    if (isOurs_) fs::remove_all(root_, ignored);
}

std::string UserFolders::folder(const char* name) const {
    std::string path = (root_ / name).string();
    if (path.back() != '/') path += '/';
    return path;
}

} // namespace vesk
