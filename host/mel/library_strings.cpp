// The library's functions of strings.

#include "host/mel/library.h"
#include "host/mel/limits.h"
#include "host/mel/pattern.h"

#include <algorithm>

namespace vesk::mel {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\f\v";

/// From the byte `first` to the byte `last`, counted from 1 and both included; what lies outside is left out.
std::string part(const std::string& text, int first, int last) {
    const int size = static_cast<int>(text.size());
    first = std::max(first, 1);
    last = std::min(last, size);
    if (first > last) return {};
    return text.substr(static_cast<std::size_t>(first) - 1, static_cast<std::size_t>(last - first) + 1);
}

std::string tail(const std::string& text, int count) {
    const std::size_t length = std::min(static_cast<std::size_t>(std::max(count, 0)), text.size());
    return text.substr(text.size() - length);
}

std::string stripped(const std::string& text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// ASCII letters only, whatever the locale.
std::string upper(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

std::string lower(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

/// The pieces between any of the separators; empty ones are left out.
StringArray tokens(std::string_view text, std::string_view separators, const Limits& limits) {
    StringArray pieces;
    for (;;) {
        checkArraySize(pieces.size(), limits);
        const std::size_t first = text.find_first_not_of(separators);
        if (first == std::string_view::npos) return pieces;
        text.remove_prefix(first);
        const std::size_t length = std::min(text.find_first_of(separators), text.size());
        pieces.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
}

Value tokenizeInto(Value& variable, std::string_view text, std::string_view separators,
                   const Limits& limits) {
    StringArray pieces = tokens(text, separators, limits);
    const int count = static_cast<int>(pieces.size());
    variable = Value(std::move(pieces));
    return count;
}

std::string matched(const std::string& pattern, const std::string& text) {
    const std::optional<Span> span = findPattern(pattern, text);
    return span ? text.substr(span->begin, span->length) : std::string();
}

/// The first fit of the pattern is replaced.
std::string substituted(const std::string& pattern, const std::string& text, const std::string& replacement,
                        const Limits& limits) {
    const std::optional<Span> span = findPattern(pattern, text);
    if (!span) return text;
    checkStringSize(text.size() - span->length + replacement.size(), limits);
    return std::string(text).replace(span->begin, span->length, replacement);
}

/// Every occurrence of a plain text, from the left.
std::string substitutedAll(const std::string& text, const std::string& search, const std::string& replacement,
                           const Limits& limits) {
    if (search.empty()) return text;
    std::string result;
    std::size_t from = 0;
    for (std::size_t at = text.find(search); at != std::string::npos; at = text.find(search, from)) {
        result.append(text, from, at - from);
        result += replacement;
        checkStringSize(result.size(), limits);
        from = at + search.size();
    }
    result.append(text, from);
    checkStringSize(result.size(), limits);
    return result;
}

/// `"`, `\\`, newline and the like as the language writes them in a string.
std::string encoded(const std::string& text, const Limits& limits) {
    std::string code;
    for (const char c : text) {
        switch (c) {
        case '\n': code += "\\n"; break;
        case '\t': code += "\\t"; break;
        case '\r': code += "\\r"; break;
        case '"':
        case '\\': code += '\\'; [[fallthrough]];
        default: code += c;
        }
    }
    checkStringSize(code.size(), limits);
    return code;
}

constexpr Builtin table[] = {
    valueRow(
        "substring", "sii", Type::String,
        [](LibraryState&, Arguments a) -> Value { return part(textAt(a, 0), intAt(a, 1), intAt(a, 2)); }),
    valueRow("startString", "si", Type::String,
             [](LibraryState&, Arguments a) -> Value { return part(textAt(a, 0), 1, intAt(a, 1)); }),
    valueRow("endString", "si", Type::String,
             [](LibraryState&, Arguments a) -> Value { return tail(textAt(a, 0), intAt(a, 1)); }),
    valueRow("startsWith", "ss", Type::Int,
             [](LibraryState&, Arguments a) -> Value { return textAt(a, 0).starts_with(textAt(a, 1)); }),
    valueRow("endsWith", "ss", Type::Int,
             [](LibraryState&, Arguments a) -> Value { return textAt(a, 0).ends_with(textAt(a, 1)); }),
    valueRow("strip", "s", Type::String,
             [](LibraryState&, Arguments a) -> Value { return stripped(textAt(a, 0)); }),
    valueRow("toupper", "s", Type::String,
             [](LibraryState&, Arguments a) -> Value { return upper(textAt(a, 0)); }),
    valueRow("tolower", "s", Type::String,
             [](LibraryState&, Arguments a) -> Value { return lower(textAt(a, 0)); }),
    valueRow("match", "ss", Type::String,
             [](LibraryState&, Arguments a) -> Value { return matched(textAt(a, 0), textAt(a, 1)); }),
    valueRow("gmatch", "ss", Type::Int,
             [](LibraryState&, Arguments a) -> Value { return matchesGlob(textAt(a, 1), textAt(a, 0)); }),
    valueRow("substitute", "sss", Type::String,
             [](LibraryState& state, Arguments a) -> Value {
                 return substituted(textAt(a, 0), textAt(a, 1), textAt(a, 2), state.limits);
             }),
    valueRow("substituteAllString", "sss", Type::String,
             [](LibraryState& state, Arguments a) -> Value {
                 return substitutedAll(textAt(a, 0), textAt(a, 1), textAt(a, 2), state.limits);
             }),
    valueRow("encodeString", "s", Type::String,
             [](LibraryState& state, Arguments a) -> Value { return encoded(textAt(a, 0), state.limits); }),
    valueRow("capitalizeString", "s", Type::String,
             [](LibraryState&, Arguments a) -> Value {
                 return upper(textAt(a, 0).substr(0, 1)) +
                        textAt(a, 0).substr(std::min<std::size_t>(1, textAt(a, 0).size()));
             }),
    valueRow("strcmp", "ss", Type::Int,
             [](LibraryState&, Arguments a) -> Value {
                 const int order = textAt(a, 0).compare(textAt(a, 1));
                 return (order > 0) - (order < 0);
             }),
    valueRow("tokenize", "sS&", Type::Int,
             [](LibraryState& state, Arguments a) -> Value {
                 return tokenizeInto(*a[1], textAt(a, 0), kBlanks, state.limits);
             }),
    valueRow("tokenize", "ssS&", Type::Int,
             [](LibraryState& state, Arguments a) -> Value {
                 return tokenizeInto(*a[2], textAt(a, 0), textAt(a, 1), state.limits);
             }),
    valueRow("stringToStringArray", "ss", Type::Strings,
             [](LibraryState& state, Arguments a) -> Value {
                 return tokens(textAt(a, 0), textAt(a, 1), state.limits);
             }),
};

} // namespace

std::span<const Builtin> stringFunctions() { return table; }

} // namespace vesk::mel
