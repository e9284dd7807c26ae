// The library's functions of the machine around: environment variables, files, the clock. Programs are not
// run.

#include "host/mel/error.h"
#include "host/mel/library.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace vesk::mel {

namespace {

Value refuse(LibraryState&, Arguments) { throw Error("Scripts may not run programs here."); }

Value environmentValue(LibraryState&, Arguments a) {
    const char* const value = std::getenv(textAt(a, 0).c_str());
    return value ? std::string(value) : std::string();
}

Value setEnvironmentValue(LibraryState&, Arguments a) {
    if (::setenv(textAt(a, 0).c_str(), textAt(a, 1).c_str(), 1) != 0) {
        throw Error("putenv: there can be no variable named \"" + textAt(a, 0) + "\".");
    }
    return {};
}

/// `NAME=value` of each variable.
Value environmentValues(LibraryState&, Arguments) {
    StringArray all;
    for (char** one = environ; one && *one; ++one)
        all.emplace_back(*one);
    return all;
}

/// Seconds since the machine started, to be compared with each other only.
Value seconds(LibraryState&, Arguments) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Value currentFolder(LibraryState&, Arguments) {
    std::error_code error;
    return std::filesystem::current_path(error).string();
}

/// What `filetest -f file` and its siblings ask.
Value testFile(LibraryState&, Arguments a) {
    namespace fs = std::filesystem;
    const std::string& flag = textAt(a, 0);
    const std::string& path = textAt(a, 1);
    std::error_code error;
    if (flag == "-e" || flag == "-exists") return fs::exists(path, error);
    if (flag == "-f" || flag == "-file") return fs::is_regular_file(path, error);
    if (flag == "-d" || flag == "-directory") return fs::is_directory(path, error);
    if (flag == "-l" || flag == "-link") return fs::is_symlink(path, error);
    if (flag == "-r" || flag == "-readable") return ::access(path.c_str(), R_OK) == 0;
    if (flag == "-w" || flag == "-writable") return ::access(path.c_str(), W_OK) == 0;
    if (flag == "-x" || flag == "-executable") return ::access(path.c_str(), X_OK) == 0;
    if (flag == "-s" || flag == "-size")
        return fs::is_regular_file(path, error) && fs::file_size(path, error) > 0;
    throw Error("Invalid flag '" + flag + "'.");
}

Value openFile(LibraryState& state, Arguments a) { return state.files.open(textAt(a, 0), textAt(a, 1)); }

Value closeFile(LibraryState& state, Arguments a) {
    state.files.close(intAt(a, 0));
    return {};
}

Value flushFile(LibraryState& state, Arguments a) {
    state.files.flush(intAt(a, 0));
    return {};
}

Value rewindFile(LibraryState& state, Arguments a) {
    state.files.rewind(intAt(a, 0));
    return {};
}

Value isAtEnd(LibraryState& state, Arguments a) { return state.files.isAtEnd(intAt(a, 0)); }

Value writeText(LibraryState& state, Arguments a) {
    state.files.write(intAt(a, 0), textAt(a, 1));
    return {};
}

/// A line with the newline that ends it; empty at the end of the file.
Value readLine(LibraryState& state, Arguments a) { return state.files.readUntil(intAt(a, 0), '\n', true); }

// Bytes as `fwrite` leaves and `fread` takes them: an int in four, a float in eight, a vector as three
// floats, in the machine's order; a string up to a byte 0.

template <class Number>
std::string_view bytesOf(const Number& number) {
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

Value writeBytes(LibraryState& state, Arguments a) {
    const int file = intAt(a, 0);
    const Value& value = *a[1];
    if (const int* number = value.ifInt()) {
        state.files.write(file, bytesOf(*number));
    } else if (const double* real = value.ifFloat()) {
        state.files.write(file, bytesOf(*real));
    } else if (const std::string* text = value.ifString()) {
        state.files.write(file, std::string_view(text->c_str(), std::strlen(text->c_str()) + 1));
    } else if (const MVector* vector = value.ifVector()) {
        state.files.write(file, bytesOf(std::array{vector->x, vector->y, vector->z}));
    } else {
        throw Error("fwrite: data of type " + std::string(nameOf(value.type())) + " cannot be written.");
    }
    return {};
}

/// Zero at the end of the file.
template <class Number>
Number readNumber(LibraryState& state, int file) {
    std::array<char, sizeof(Number)> bytes;
    Number number{};
    if (state.files.read(file, bytes)) std::memcpy(&number, bytes.data(), bytes.size());
    return number;
}

Value readVector(LibraryState& state, Arguments a) {
    const auto numbers = readNumber<std::array<double, 3>>(state, intAt(a, 0));
    return MVector(numbers.data());
}

constexpr Builtin table[] = {
    valueRow("system", "s", Type::String, refuse),
    valueRow("exec", "s", Type::None, refuse),
    valueRow("popen", "ss", Type::Int, refuse),

    valueRow("getenv", "s", Type::String, environmentValue),
    valueRow("putenv", "ss", Type::None, setEnvironmentValue),
    valueRow("env", "", Type::Strings, environmentValues),
    valueRow("pwd", "", Type::String, currentFolder),
    valueRow("timerX", "", Type::Float, seconds),
    valueRow("timerX", "sf", Type::Float,
             [](LibraryState& state, Arguments a) -> Value {
                 if (textAt(a, 0) != "-st" && textAt(a, 0) != "-startTime")
                     throw Error("Invalid flag '" + textAt(a, 0) + "'.");
                 return seconds(state, {}).asFloat() - a[1]->asFloat();
             }),

    valueRow("filetest", "ss", Type::Int, testFile),
    valueRow("fopen", "s", Type::Int,
             [](LibraryState& state, Arguments a) -> Value { return state.files.open(textAt(a, 0), "w+"); }),
    valueRow("fopen", "ss", Type::Int, openFile),
    valueRow("fclose", "i", Type::None, closeFile),
    valueRow("fflush", "i", Type::None, flushFile),
    valueRow("frewind", "i", Type::None, rewindFile),
    valueRow("feof", "i", Type::Int, isAtEnd),
    valueRow("fprint", "is", Type::None, writeText),
    valueRow("fgetline", "i", Type::String, readLine),
    valueRow("fgetword", "i", Type::String,
             [](LibraryState& state, Arguments a) -> Value {
                 return state.files.readWord(intAt(a, 0), " \t\r\f\v");
             }),
    valueRow("fgetword", "is", Type::String,
             [](LibraryState& state, Arguments a) -> Value {
                 return state.files.readWord(intAt(a, 0), textAt(a, 1));
             }),
    valueRow("fwrite", "i*", Type::None, writeBytes),
    valueRow("fread", "ii", Type::Int,
             [](LibraryState& state, Arguments a) -> Value { return readNumber<int>(state, intAt(a, 0)); }),
    valueRow(
        "fread", "if", Type::Float,
        [](LibraryState& state, Arguments a) -> Value { return readNumber<double>(state, intAt(a, 0)); }),
    valueRow("fread", "is", Type::String,
             [](LibraryState& state, Arguments a) -> Value {
                 return state.files.readUntil(intAt(a, 0), '\0', false);
             }),
    valueRow("fread", "iv", Type::Vector, readVector),
};

} // namespace

std::span<const Builtin> systemFunctions() { return table; }

} // namespace vesk::mel
