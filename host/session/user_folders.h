#pragma once

#include <filesystem>
#include <string>

namespace vesk {

/// The session's own folders, never the user's home unless it is named. All paths end in "/".
class UserFolders {
  public:
    /// Below `root`, or below a new temporary folder that is removed at the end when `root` is empty. Throws
    /// std::runtime_error with a sentence when a folder cannot be made.
    explicit UserFolders(const std::filesystem::path& root);
    ~UserFolders();
    UserFolders(const UserFolders&) = delete;
    UserFolders& operator=(const UserFolders&) = delete;

    std::string app() const { return folder(""); }
    std::string scripts() const { return folder("scripts"); }
    std::string preferences() const { return folder("prefs"); }
    std::string shelves() const { return folder("prefs/shelves"); }
    std::string temporary() const { return folder("tmp"); }

  private:
    std::string folder(const char* name) const;

    std::filesystem::path root_;
    bool isOurs_;
};

} // namespace vesk
