#include "host/scene/formats/file_buffer.h"

#include "host/scene/formats/file_handle.h"

#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>

namespace vesk::formats {

void FileBuffer::Free::operator()(char* bytes) const noexcept { std::free(bytes); }

bool FileBuffer::grow(std::size_t capacity) {
    // malloc and not new: pages that are never read stay untouched, and a large block moves without a copy.
    auto* const moved = static_cast<char*>(std::realloc(bytes_.get(), capacity));
    if (!moved) return false;
    static_cast<void>(bytes_.release());
    bytes_.reset(moved);
    return true;
}

Result<FileBuffer> FileBuffer::open(const std::filesystem::path& path) {
    const FileHandle file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info = {};
    if (!file || ::fstat(file.get(), &info) != 0) return failedCall(path, "cannot be read", errno);
    if (S_ISDIR(info.st_mode)) return failedCall(path, "cannot be read", EISDIR);

    // The size is a first guess: pipes and some devices have none. The last byte of room shows the end.
    FileBuffer buffer;
    std::size_t capacity = static_cast<std::size_t>(info.st_size) + 1;
    for (;;) {
        if (!buffer.grow(capacity)) return failedCall(path, "cannot be read", ENOMEM);
        while (buffer.size_ < capacity) {
            const ssize_t count =
                ::read(file.get(), buffer.bytes_.get() + buffer.size_, capacity - buffer.size_);
            if (count == 0) return buffer;
            if (count < 0 && errno != EINTR) return failedCall(path, "cannot be read", errno);
            if (count > 0) buffer.size_ += static_cast<std::size_t>(count);
        }
        capacity = std::max<std::size_t>(2 * capacity, 65536);
    }
}

} // namespace vesk::formats
