// The library's functions of file paths, and of names as the host writes them.

#include "host/mel/lexer.h"
#include "host/mel/library.h"
#include "host/mel/limits.h"

#include <algorithm>

namespace vesk::mel {

namespace {

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }

/// What stands behind the last slash.
std::string_view fileName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// Where the extension of a file name begins, at its point; the end of the name when it has none.
std::size_t extensionAt(std::string_view name) {
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos || point == 0 ? name.size() : point;
}

/// The file name without an ending, if it has that.
std::string_view withoutSuffix(std::string_view path, std::string_view suffix) {
    std::string_view name = fileName(path);
    if (name.size() > suffix.size() && name.ends_with(suffix)) name.remove_suffix(suffix.size());
    return name;
}

std::string_view withoutExtension(std::string_view path) {
    const std::string_view name = fileName(path);
    return name.substr(0, extensionAt(name));
}

std::string_view extension(std::string_view path) {
    const std::string_view name = fileName(path);
    return name.substr(std::min(extensionAt(name) + 1, name.size()));
}

/// The folder without a slash at its end, but for the root itself; empty for a name alone.
std::string_view folder(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return {};
    return path.substr(0, std::max<std::size_t>(slash, 1));
}

/// Paths are written with slashes only.
std::string withSlashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

/// `interToUI` in words: `translateX` is shown as `Translate X`, `outUVSet` as `Out UV Set`.
std::string inWords(std::string_view name) {
    std::string words;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (c == '_') {
            words += ' ';
            continue;
        }
        const bool begins = i == 0 || words.back() == ' ';
        const bool afterSmall = i > 0 && !isUpper(name[i - 1]);
        const bool beforeSmall = i + 1 < name.size() && isLower(name[i + 1]);
        if (!begins && isUpper(c) && (afterSmall || beforeSmall)) words += ' ';
        words += begins && isLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return words;
}

/// Every byte that no name of an object can have becomes `_`, and one goes before a digit in front.
std::string objectName(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !isNameStart(c) && !(c >= '0' && c <= '9'); }, '_');
    if (name.empty() || !isNameStart(name.front())) name.insert(name.begin(), '_');
    return name;
}

bool isObjectName(const std::string& name) { return !name.empty() && objectName(name) == name; }

template <std::string_view (*Function)(std::string_view)>
constexpr Builtin ofPath(std::string_view name) {
    return valueRow(name, "s", Type::String,
                    [](LibraryState&, Arguments a) -> Value { return Function(textAt(a, 0)); });
}

constexpr Builtin table[] = {
    ofPath<fileName>("basename"),
    valueRow("basename", "ss", Type::String,
             [](LibraryState&, Arguments a) -> Value { return withoutSuffix(textAt(a, 0), textAt(a, 1)); }),
    ofPath<withoutExtension>("basenameEx"),
    ofPath<extension>("fileExtension"),
    ofPath<folder>("dirname"),
    valueRow("toNativePath", "s", Type::String,
             [](LibraryState&, Arguments a) -> Value { return withSlashes(textAt(a, 0)); }),
    valueRow("fromNativePath", "s", Type::String,
             [](LibraryState&, Arguments a) -> Value { return withSlashes(textAt(a, 0)); }),
    valueRow("interToUI", "s", Type::String,
             [](LibraryState& state, Arguments a) -> Value {
                 std::string words = inWords(textAt(a, 0));
                 checkStringSize(words.size(), state.limits);
                 return words;
             }),
    valueRow("formValidObjectName", "s", Type::String,
             [](LibraryState&, Arguments a) -> Value { return objectName(textAt(a, 0)); }),
    valueRow("isValidObjectName", "s", Type::Int,
             [](LibraryState&, Arguments a) -> Value { return isObjectName(textAt(a, 0)); }),
};

} // namespace

std::span<const Builtin> nameFunctions() { return table; }

} // namespace vesk::mel
