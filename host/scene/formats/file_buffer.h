#pragma once

#include "host/core/result.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>

namespace vesk::formats {

/// The bytes of a whole file, as they were when it was opened: a copy in memory, so that another program that
/// cuts or overwrites the file meanwhile does no harm. Nothing is stripped or converted. Moving keeps views
/// of the text good.
class FileBuffer {
  public:
    /// Reads files, pipes and devices to their end. The message of a failure begins with the path: it does
    /// not exist, is a folder, may not be read, does not fit into memory.
    static Result<FileBuffer> open(const std::filesystem::path& path);

    std::string_view text() const noexcept { return {bytes_.get(), size_}; }

  private:
    struct Free {
        void operator()(char* bytes) const noexcept;
    };
    bool grow(std::size_t capacity);

    std::unique_ptr<char, Free> bytes_;
    std::size_t size_ = 0;
};

} // namespace vesk::formats
