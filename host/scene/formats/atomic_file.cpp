#include "host/scene/formats/atomic_file.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>

namespace vesk::formats {

namespace {

/// Different for every file of this process and, as far as can be, of others.
std::string temporaryName() {
    static std::atomic<unsigned> count{0};
    return ".vesk-" + std::to_string(::getpid()) + "-" + std::to_string(count++) + ".tmp";
}

} // namespace

AtomicFile::AtomicFile(const std::filesystem::path& path)
    : path_(path), target_(path), buffer_(std::make_unique_for_overwrite<char[]>(bufferSize)) {
    followLinks();
    if (!failed()) open();
}

AtomicFile::~AtomicFile() { removeTemporary(); }

void AtomicFile::open() {
    struct stat old = {};
    const bool replaces = ::stat(target_.c_str(), &old) == 0;
    if (!replaces && errno != ENOENT) return fail(errno);
    if (replaces && S_ISDIR(old.st_mode)) return fail(EISDIR);
    if (replaces && !S_ISREG(old.st_mode)) {
        outcome_ = Outcome::fail(path_.string() + ": cannot be written: not a regular file");
        return;
    }
    if (replaces && ::faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) return fail(errno);
    if (!target_.has_filename()) return fail(EISDIR);

    openTemporary();
    if (replaces && !failed()) takeOver(old);
}

void AtomicFile::followLinks() {
    constexpr int longestChain = 40;
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(target_, error); ++links) {
        if (links == longestChain) return fail(ELOOP);
        const auto next = std::filesystem::read_symlink(target_, error);
        if (error) return fail(error.value());
        target_ = target_.parent_path() / next;
    }
}

void AtomicFile::openTemporary() {
    // A name can only be taken by what a killed process with the same number left: few.
    constexpr int attempts = 1000;
    int error = EEXIST;
    for (int i = 0; i < attempts && error == EEXIST; ++i) {
        temporary_ = target_.parent_path() / temporaryName();
        file_ = FileHandle(::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file_) return;
        error = errno;
    }
    temporary_.clear();
    fail(error);
}

void AtomicFile::takeOver(const struct stat& replaced) {
    struct stat made = {};
    if (::fstat(file_.get(), &made) != 0) return fail(errno);
    // Only the administrator may give files away: for others the new file is their own.
    if (made.st_uid != replaced.st_uid || made.st_gid != replaced.st_gid)
        static_cast<void>(::fchown(file_.get(), replaced.st_uid, replaced.st_gid) == 0);
    if (::fchmod(file_.get(), replaced.st_mode & 0777) != 0) fail(errno);
}

void AtomicFile::write(std::string_view bytes) {
    if (bytes.empty()) return; // perhaps without memory behind it
    if (bytes.size() > bufferSize - used_) flush();
    if (bytes.size() > bufferSize) return writeOut(bytes);
    std::memcpy(buffer_.get() + used_, bytes.data(), bytes.size());
    used_ += bytes.size();
}

void AtomicFile::flush() {
    writeOut({buffer_.get(), used_});
    used_ = 0;
}

void AtomicFile::writeOut(std::string_view bytes) {
    while (!bytes.empty() && !failed()) {
        const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            fail(errno);
        }
    }
}

Outcome AtomicFile::commit() {
    flush();
    // Network and quota errors may show only here. Without the sync a power cut could leave the new name on
    // an empty file.
    if (!failed() && ::fsync(file_.get()) != 0) fail(errno);
    if (!failed() && ::close(file_.release()) != 0) fail(errno);
    if (!failed() && ::rename(temporary_.c_str(), target_.c_str()) != 0) fail(errno);
    if (failed()) {
        removeTemporary();
    } else {
        temporary_.clear();
    }
    return outcome_;
}

void AtomicFile::fail(int error) {
    if (!failed()) outcome_ = failedCall(path_, "cannot be written", error);
}

void AtomicFile::removeTemporary() {
    if (temporary_.empty()) return;
    ::unlink(temporary_.c_str());
    temporary_.clear();
}

} // namespace vesk::formats
