#pragma once
// The two kinds of text patterns: those of `match` and `substitute`, and those with `*` and `?` for names.

#include <cstddef>
#include <optional>
#include <string_view>

namespace vesk::mel {

struct Span {
    std::size_t begin = 0;
    std::size_t length = 0;
};

/// The first place where a pattern fits, and there the longest fit. A pattern knows `.` any byte, `[abc]`,
/// `[a-z]`, `[^a]`, `( )`, `^` and `$` at its ends, `\` before a byte meant as such, and `* + ?` after what
/// may come any number of times, at least once, or not at all. Time grows with the length of the text times
/// that of the pattern, whatever they are. Throws Error for a pattern that is not one.
std::optional<Span> findPattern(std::string_view pattern, std::string_view text);

/// Whether the whole text fits a pattern with `*` any bytes, `?` one byte, `[abc]`, `[a-z]`, `[^a]` one of
/// some.
bool matchesGlob(std::string_view pattern, std::string_view text);

} // namespace vesk::mel
