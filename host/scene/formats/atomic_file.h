#pragma once

#include "host/api/number_text.h"
#include "host/core/outcome.h"
#include "host/scene/formats/file_handle.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vesk::formats {

/// A file that appears under its name whole or not at all. It is written to a hidden temporary beside its
/// final place; `commit` brings that to the disk and renames it; without a commit the destructor removes it,
/// and what stood under the name still does.
///
/// The first thing that goes wrong is kept; everything after it does nothing, and `commit` tells it. So
/// writers need no checks of their own.
///
/// A symbolic link stays one: the file that it points to is replaced. A replaced file hands on its permission
/// bits, and its owner where that is allowed; a new file gets what the umask leaves. A file without write
/// permission is not replaced, nor is anything but a regular file.
class AtomicFile {
  public:
    explicit AtomicFile(const std::filesystem::path& path);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    void write(std::string_view bytes);
    void put(char byte) {
        *room(1) = byte;
        ++used_;
    }
    /// As `vesk::formatExact`: the shortest text that reads back as the same number.
    template <class Real>
    void putNumber(Real value) {
        advance(writeExact(room(exactTextSize), value));
    }
    void putNumber(std::int64_t value) {
        char* const to = room(exactTextSize);
        advance(std::to_chars(to, to + exactTextSize, value).ptr);
    }
    void putNumber(int value) { putNumber(static_cast<std::int64_t>(value)); }
    /// The value's own bytes, in the order of this machine.
    template <class T>
    void putRaw(T value) {
        std::memcpy(room(sizeof value), &value, sizeof value);
        used_ += sizeof value;
    }

    /// Whether something has gone wrong, so that a long job can stop early.
    bool failed() const noexcept { return !outcome_; }
    /// Once, at the end. After a failure the temporary is gone and the old file is as it was.
    Outcome commit();

  private:
    static constexpr std::size_t bufferSize = std::size_t{1} << 17;

    /// Memory for the next `count` bytes, at most `bufferSize`.
    char* room(std::size_t count) {
        if (bufferSize - used_ < count) flush();
        return buffer_.get() + used_;
    }
    void advance(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }
    void flush();
    void writeOut(std::string_view bytes);
    void fail(int error);
    void followLinks();
    void open();
    void openTemporary();
    void takeOver(const struct stat& replaced);
    void removeTemporary();

    std::filesystem::path path_;   ///< as asked for: what messages name
    std::filesystem::path target_; ///< behind symbolic links
    std::filesystem::path temporary_;
    FileHandle file_;
    std::unique_ptr<char[]> buffer_;
    std::size_t used_ = 0;
    Outcome outcome_;
};

} // namespace vesk::formats
