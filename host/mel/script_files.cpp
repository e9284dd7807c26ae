#include "host/mel/script_files.h"

#include "host/mel/error.h"
#include "host/mel/limits.h"

#include <algorithm>
#include <filesystem>

namespace vesk::mel {

namespace fs = std::filesystem;

namespace {

bool isBelow(const fs::path& file, const fs::path& folder) {
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return end == folder.end() && rest != file.end();
}

} // namespace

bool ScriptFiles::mayWrite(const std::string& path) const {
    std::error_code error;
    const fs::path file = fs::weakly_canonical(fs::absolute(path, error), error);
    if (error || fs::is_symlink(file, error)) return false; // still a link: one to nowhere
    if (fs::exists(file, error) && !fs::is_regular_file(file, error)) return false;
    return std::any_of(writeFolders.begin(), writeFolders.end(), [&file, &error](const std::string& folder) {
        const fs::path inside = fs::canonical(folder, error);
        return !error && isBelow(file, inside);
    });
}

int ScriptFiles::open(const std::string& path, std::string_view mode) {
    std::string kind(mode);
    std::erase(kind, 'b'); // text and bytes are the same
    constexpr std::string_view known[] = {"r", "w", "a", "r+", "w+", "a+"};
    if (std::find(std::begin(known), std::end(known), kind) == std::end(known)) {
        throw Error("fopen: there is no mode \"" + std::string(mode) + "\".");
    }
    if (kind != "r" && !mayWrite(path)) {
        throw Error(
            "fopen: scripts may write below the current folder, the user's folders and the folder for "
            "temporary files, not \"" +
            path + "\".");
    }
    std::error_code error;
    if (kind == "r" && !fs::is_regular_file(path, error)) return 0;
    std::size_t slot = 0;
    while (slot < files_.size() && files_[slot].file)
        ++slot;
    if (slot >= limits_.openFiles) limitReached(limits_, &Limits::openFiles);
    std::FILE* const file = std::fopen(path.c_str(), kind.c_str());
    if (!file) return 0;
    if (slot == files_.size()) files_.emplace_back();
    files_[slot].file.reset(file);
    files_[slot].wroteLast = false;
    return static_cast<int>(slot) + 1;
}

ScriptFiles::OpenFile& ScriptFiles::at(int number) {
    const std::size_t slot = static_cast<std::size_t>(number) - 1;
    if (number < 1 || slot >= files_.size() || !files_[slot].file) {
        throw Error("There is no open file with the number " + std::to_string(number) + ".");
    }
    return files_[slot];
}

std::FILE* ScriptFiles::prepared(int number, bool writing) {
    OpenFile& open = at(number);
    if (open.wroteLast != writing) std::fseek(open.file.get(), 0, SEEK_CUR);
    open.wroteLast = writing;
    return open.file.get();
}

void ScriptFiles::close(int number) {
    if (std::fclose(at(number).file.release()) != 0) throw Error("fclose: not everything could be written.");
}

void ScriptFiles::flush(int number) {
    if (std::fflush(at(number).file.get()) != 0) throw Error("fflush: not everything could be written.");
}

void ScriptFiles::rewind(int number) { std::rewind(at(number).file.get()); }

bool ScriptFiles::isAtEnd(int number) { return std::feof(at(number).file.get()) != 0; }

void ScriptFiles::write(int number, std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), prepared(number, true)) != bytes.size()) {
        throw Error("The file with the number " + std::to_string(number) + " cannot be written.");
    }
}

bool ScriptFiles::read(int number, std::span<char> bytes) {
    return std::fread(bytes.data(), 1, bytes.size(), prepared(number, false)) == bytes.size();
}

std::string ScriptFiles::readUntil(int number, char end, bool keepsEnd) {
    std::FILE* const file = prepared(number, false);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        if (static_cast<char>(c) != end || keepsEnd) text += static_cast<char>(c);
        if (static_cast<char>(c) == end) break;
        checkStringSize(text.size(), limits_);
    }
    return text;
}

std::string ScriptFiles::readWord(int number, std::string_view separators) {
    std::FILE* const file = prepared(number, false);
    const auto separates = [separators](int c) {
        return c == '\n' || separators.find(static_cast<char>(c)) != std::string_view::npos;
    };
    int c = std::fgetc(file);
    while (c != EOF && separates(c))
        c = std::fgetc(file);
    std::string word;
    for (; c != EOF && !separates(c); c = std::fgetc(file)) {
        word += static_cast<char>(c);
        checkStringSize(word.size(), limits_);
    }
    return word;
}

} // namespace vesk::mel
