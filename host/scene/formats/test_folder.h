#pragma once
// For tests: a folder of their own, gone afterwards.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace vesk::formats {

class TestFolder {
  public:
    TestFolder() {
        std::string name = ::testing::TempDir() + "formatsXXXXXX";
        path_ = ::mkdtemp(name.data());
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() { std::filesystem::remove_all(path_); }

    std::filesystem::path path(std::string_view name) const { return path_ / name; }
    std::filesystem::path store(std::string_view name, std::string_view bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }
    std::string load(std::string_view name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// Entries of the folder, hidden ones too.
    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
    }

  private:
    std::filesystem::path path_;
};

} // namespace vesk::formats
