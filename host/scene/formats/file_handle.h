#pragma once
// What reading and writing files have in common: an open file, and how a failed call is told.

#include "host/core/outcome.h"

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace vesk::formats {

/// Owns a file descriptor; negative for none.
class FileHandle {
  public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) noexcept : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileHandle() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    explicit operator bool() const noexcept { return descriptor_ >= 0; }
    int get() const noexcept { return descriptor_; }
    /// For a close whose success matters.
    int release() noexcept { return std::exchange(descriptor_, -1); }

  private:
    int descriptor_ = -1;
};

/// "<path>: cannot be written: No space left on device".
inline Outcome failedCall(const std::filesystem::path& path, const std::string& what, int error) {
    return Outcome::fail(path.string() + ": " + what + ": " + std::generic_category().message(error));
}

} // namespace vesk::formats
