// The library's functions of strings.

#include "host/mel/interpreter.h"
#include "host/mel/library.h"
#include "host/mel/pattern.h"

#include <algorithm>

namespace vesk::mel {

namespace {

using Arguments = std::span<Value* const>;
using ValueFunction = Value (*)(LibraryState&, Arguments);

constexpr std::string_view kBlanks = " \t\r\n\f\v";

const std::string& textAt(Arguments arguments, std::size_t index) { return *arguments[index]->ifString(); }

int intAt(Arguments arguments, std::size_t index) { return *arguments[index]->ifInt(); }

constexpr Builtin row(std::string_view name, std::string_view parameters, Type result,
                      ValueFunction function) {
    return {name, parameters, result, nullptr, function};
}

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
StringArray tokens(std::string_view text, std::string_view separators) {
    StringArray pieces;
    for (;;) {
        const std::size_t first = text.find_first_not_of(separators);
        if (first == std::string_view::npos) return pieces;
        text.remove_prefix(first);
        const std::size_t length = std::min(text.find_first_of(separators), text.size());
        pieces.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
}

Value tokenizeInto(Value& variable, std::string_view text, std::string_view separators) {
    StringArray pieces = tokens(text, separators);
    const int count = static_cast<int>(pieces.size());
    variable = Value(std::move(pieces));
    return count;
}

std::string matched(const std::string& pattern, const std::string& text) {
    const std::optional<Span> span = findPattern(pattern, text);
    return span ? text.substr(span->begin, span->length) : std::string();
}

/// The first fit of the pattern is replaced.
std::string substituted(const std::string& pattern, const std::string& text, const std::string& replacement) {
    const std::optional<Span> span = findPattern(pattern, text);
    if (!span) return text;
    return std::string(text).replace(span->begin, span->length, replacement);
}

std::string joined(const StringArray& items, const std::string& separator, const Limits& limits) {
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += separator;
        text += items[i];
        checkStringSize(text.size(), limits);
    }
    return text;
}

constexpr Builtin table[] = {
    row("substring", "sii", Type::String,
        [](LibraryState&, Arguments a) -> Value { return part(textAt(a, 0), intAt(a, 1), intAt(a, 2)); }),
    row("startString", "si", Type::String,
        [](LibraryState&, Arguments a) -> Value { return part(textAt(a, 0), 1, intAt(a, 1)); }),
    row("endString", "si", Type::String,
        [](LibraryState&, Arguments a) -> Value { return tail(textAt(a, 0), intAt(a, 1)); }),
    row("startsWith", "ss", Type::Int,
        [](LibraryState&, Arguments a) -> Value { return textAt(a, 0).starts_with(textAt(a, 1)); }),
    row("endsWith", "ss", Type::Int,
        [](LibraryState&, Arguments a) -> Value { return textAt(a, 0).ends_with(textAt(a, 1)); }),
    row("strip", "s", Type::String,
        [](LibraryState&, Arguments a) -> Value { return stripped(textAt(a, 0)); }),
    row("toupper", "s", Type::String,
        [](LibraryState&, Arguments a) -> Value { return upper(textAt(a, 0)); }),
    row("tolower", "s", Type::String,
        [](LibraryState&, Arguments a) -> Value { return lower(textAt(a, 0)); }),
    row("match", "ss", Type::String,
        [](LibraryState&, Arguments a) -> Value { return matched(textAt(a, 0), textAt(a, 1)); }),
    row("gmatch", "ss", Type::Int,
        [](LibraryState&, Arguments a) -> Value { return matchesGlob(textAt(a, 1), textAt(a, 0)); }),
    row("substitute", "sss", Type::String,
        [](LibraryState&, Arguments a) -> Value {
            return substituted(textAt(a, 0), textAt(a, 1), textAt(a, 2));
        }),
    row("tokenize", "sS&", Type::Int,
        [](LibraryState&, Arguments a) -> Value { return tokenizeInto(*a[1], textAt(a, 0), kBlanks); }),
    row("tokenize", "ssS&", Type::Int,
        [](LibraryState&, Arguments a) -> Value { return tokenizeInto(*a[2], textAt(a, 0), textAt(a, 1)); }),
    row("stringToStringArray", "ss", Type::Strings,
        [](LibraryState&, Arguments a) -> Value { return tokens(textAt(a, 0), textAt(a, 1)); }),
    row("stringArrayToString", "Ss", Type::String,
        [](LibraryState& state, Arguments a) -> Value {
            return joined(a[0]->asStringArray().read(), textAt(a, 1), *state.limits);
        }),
};

} // namespace

std::span<const Builtin> stringFunctions() { return table; }

} // namespace vesk::mel
