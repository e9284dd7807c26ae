#pragma once
// The files that scripts hold open with `fopen`, and where they may write.

#include <cstddef>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::mel {

struct Limits;

/// Open files by number, from 1 on. Whatever a script leaves open is closed with the object. Reading is
/// allowed of regular files everywhere; writing below `writeFolders` only, links followed. Every function
/// throws Error for a number that stands for no open file.
class ScriptFiles {
  public:
    explicit ScriptFiles(const Limits& limits) : limits_(limits) {}

    /// Folders below which files may be written; none at first. Relative ones count from the current folder.
    std::vector<std::string> writeFolders;

    /// The modes are those of C's `fopen`. Returns the file's number, 0 when the file cannot be opened.
    /// Throws Error for a mode that is not one and for a file that may not be written.
    int open(const std::string& path, std::string_view mode);
    void close(int number);
    void flush(int number);
    void rewind(int number);
    /// Whether a read has met the end.
    bool isAtEnd(int number);

    void write(int number, std::string_view bytes);
    /// Fills `bytes`, or returns false when fewer are left.
    bool read(int number, std::span<char> bytes);
    /// Up to a byte that ends it, which is taken too: with it (`keepsEnd`) or without.
    std::string readUntil(int number, char end, bool keepsEnd);
    /// The next run of bytes that are not in `separators`; a newline ends it too. The byte behind it is
    /// taken.
    std::string readWord(int number, std::string_view separators);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    struct OpenFile {
        std::unique_ptr<std::FILE, Close> file;
        bool wroteLast = false; ///< C wants a seek between writing and reading
    };
    OpenFile& at(int number);
    std::FILE* prepared(int number, bool writing);
    bool mayWrite(const std::string& path) const;

    const Limits& limits_;
    std::vector<OpenFile> files_;
};

} // namespace vesk::mel
