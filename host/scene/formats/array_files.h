#pragma once
// Arrays as files that other programs read: NPY, CSV, JSON. Written as they go: no second copy in memory.

#include "host/core/outcome.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <variant>

namespace vesk::formats {

/// Views: what they show must stay while a file is written.
using ArrayValues = std::variant<std::span<const double>, std::span<const float>, std::span<const int>,
                                 std::span<const std::string>>;

/// A named array of entries, each of `components` values in a row: 1 for numbers, 3 for vectors, 16 for
/// matrices.
struct ArrayColumn {
    std::string name;
    ArrayValues values; ///< entryCount * components
    std::size_t components = 1;

    std::size_t entryCount() const;
};

// Each writer fails, leaving what stood under the name, when a column's length is no multiple of its
// components (or these are 0), on what its own text says, and on what `AtomicFile` says.

/// NumPy's format 1.0: little-endian float64, float32 or int32, in C order, of shape (n,) for one component,
/// else (n, components). Fails on texts. The name is not stored.
Outcome writeNpy(const std::filesystem::path& path, const ArrayColumn& column);

/// A header line, then one row an entry, LF line ends. A column of one component is headed by its name; one
/// of 2 to 4 takes the columns name.x name.y name.z name.w, a longer one name.0 name.1 and on. Where a column
/// is shorter than the longest its cells are empty. Numbers read back as the same bits, "nan" and "inf" among
/// them. A text with a comma, a quote or a line end is quoted, quotes in it doubled.
Outcome writeCsv(const std::filesystem::path& path, std::span<const ArrayColumn> columns);

/// One object: per column its name and a list with one line an entry, a number or text for one component and
/// a list for more. Numbers read back as the same bits, but nan and infinities become null. Bytes of texts
/// that are not UTF-8 become U+FFFD. Fails on two columns of one name.
Outcome writeJson(const std::filesystem::path& path, std::span<const ArrayColumn> columns);

} // namespace vesk::formats
