#include "host/scene/formats/array_files.h"

#include "host/scene/formats/atomic_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <set>
#include <string_view>
#include <type_traits>

namespace vesk::formats {

namespace {

std::size_t valueCount(const ArrayColumn& column) {
    return std::visit([](auto values) { return values.size(); }, column.values);
}

Outcome check(const ArrayColumn& column) {
    if (column.components != 0 && valueCount(column) % column.components == 0) return {};
    return Outcome::fail("array \"" + column.name + "\": " + std::to_string(valueCount(column)) +
                         " values are no whole entries of " + std::to_string(column.components));
}

Outcome check(std::span<const ArrayColumn> columns) {
    for (const ArrayColumn& column : columns) {
        if (Outcome outcome = check(column); !outcome) return outcome;
    }
    return {};
}

// ---- CSV ----

void putCsv(AtomicFile& file, const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return file.write(text);
    file.put('"');
    for (const char c : text) {
        if (c == '"') file.put(c);
        file.put(c);
    }
    file.put('"');
}

template <class Number>
void putCsv(AtomicFile& file, Number value) {
    file.putNumber(value);
}

std::string componentName(const ArrayColumn& column, std::size_t component) {
    if (column.components == 1) return column.name;
    if (column.components <= 4) return column.name + "." + "xyzw"[component];
    return column.name + "." + std::to_string(component);
}

void putCsvHeader(AtomicFile& file, std::span<const ArrayColumn> columns) {
    bool first = true;
    for (const ArrayColumn& column : columns) {
        for (std::size_t i = 0; i < column.components; ++i) {
            if (!std::exchange(first, false)) file.put(',');
            putCsv(file, componentName(column, i));
        }
    }
    file.put('\n');
}

void putCsvCells(AtomicFile& file, const ArrayColumn& column, std::size_t entry) {
    std::visit(
        [&](auto values) {
            const std::size_t start = entry * column.components;
            for (std::size_t i = 0; i < column.components; ++i) {
                if (i > 0) file.put(',');
                if (start < values.size()) putCsv(file, values[start + i]);
            }
        },
        column.values);
}

// ---- JSON ----

/// Bytes of the UTF-8 character at the start of `text`; 0 when there is none.
std::size_t utf8Length(std::string_view text) {
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    // Longer than needed, halves of surrogate pairs, beyond the last character.
    const unsigned second = byte(1);
    const bool bad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                     (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return bad ? 0 : length;
}

void putJsonControl(AtomicFile& file, char c) {
    constexpr std::string_view digits = "0123456789abcdef";
    file.write("\\u00");
    file.put(digits[static_cast<unsigned char>(c) >> 4U]);
    file.put(digits[static_cast<unsigned char>(c) & 15U]);
}

void putJson(AtomicFile& file, std::string_view text) {
    file.put('"');
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        if (length == 0) {
            file.write("\xEF\xBF\xBD");
        } else if (static_cast<unsigned char>(text[0]) < ' ') {
            putJsonControl(file, text[0]);
        } else {
            if (text[0] == '"' || text[0] == '\\') file.put('\\');
            file.write(text.substr(0, length));
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    file.put('"');
}

template <class Number>
requires std::is_arithmetic_v<Number>
void putJson(AtomicFile& file, Number value) {
    if constexpr (std::is_floating_point_v<Number>) {
        if (!std::isfinite(value)) return file.write("null");
    }
    file.putNumber(value);
}

void putJsonList(AtomicFile& file, const ArrayColumn& column) {
    std::visit(
        [&](auto values) {
            for (std::size_t i = 0; i < values.size(); ++i) {
                const std::size_t component = i % column.components;
                file.write(component > 0 ? ", " : i > 0 ? ",\n" : "\n");
                if (column.components > 1 && component == 0) file.put('[');
                putJson(file, values[i]);
                if (column.components > 1 && component + 1 == column.components) file.put(']');
            }
        },
        column.values);
}

// ---- NPY ----

template <class T>
constexpr std::string_view npyType = "";
template <>
constexpr std::string_view npyType<double> = "<f8";
template <>
constexpr std::string_view npyType<float> = "<f4";
template <>
constexpr std::string_view npyType<int> = "<i4";

void putNpyHeader(AtomicFile& file, const ArrayColumn& column, std::string_view type) {
    const std::string shape = std::to_string(column.entryCount()) + "," +
                              (column.components > 1 ? " " + std::to_string(column.components) : "");
    std::string text =
        "{'descr': '" + std::string(type) + "', 'fortran_order': False, 'shape': (" + shape + "), }";
    // Blanks and a line end bring the data to a multiple of 64 bytes.
    constexpr std::size_t before = 10;
    text.resize((before + text.size() + 1 + 63) / 64 * 64 - before - 1, ' ');
    text += '\n';
    file.write(std::string_view("\x93NUMPY\x01\x00", 8));
    file.put(static_cast<char>(text.size() & 255U));
    file.put(static_cast<char>(text.size() >> 8U));
    file.write(text);
}

} // namespace

std::size_t ArrayColumn::entryCount() const { return components == 0 ? 0 : valueCount(*this) / components; }

Outcome writeNpy(const std::filesystem::path& path, const ArrayColumn& column) {
    static_assert(std::endian::native == std::endian::little, "values are written as they lie in memory");
    if (Outcome outcome = check(column); !outcome) return outcome;
    if (std::holds_alternative<std::span<const std::string>>(column.values))
        return Outcome::fail(path.string() + ": NPY files hold numbers, array \"" + column.name +
                             "\" holds texts");
    AtomicFile file(path);
    std::visit(
        [&](auto values) {
            putNpyHeader(file, column, npyType<typename decltype(values)::value_type>);
            file.write({reinterpret_cast<const char*>(values.data()), values.size_bytes()});
        },
        column.values);
    return file.commit();
}

Outcome writeCsv(const std::filesystem::path& path, std::span<const ArrayColumn> columns) {
    if (Outcome outcome = check(columns); !outcome) return outcome;
    std::size_t rows = 0;
    for (const ArrayColumn& column : columns)
        rows = std::max(rows, column.entryCount());

    AtomicFile file(path);
    putCsvHeader(file, columns);
    for (std::size_t row = 0; row < rows && !file.failed(); ++row) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (i > 0) file.put(',');
            putCsvCells(file, columns[i], row);
        }
        file.put('\n');
    }
    return file.commit();
}

Outcome writeJson(const std::filesystem::path& path, std::span<const ArrayColumn> columns) {
    if (Outcome outcome = check(columns); !outcome) return outcome;
    std::set<std::string_view> names;
    for (const ArrayColumn& column : columns) {
        if (!names.insert(column.name).second)
            return Outcome::fail(path.string() + ": two arrays are named \"" + column.name + "\"");
    }

    AtomicFile file(path);
    file.put('{');
    for (std::size_t i = 0; i < columns.size(); ++i) {
        file.write(i > 0 ? ",\n" : "\n");
        putJson(file, std::string_view(columns[i].name));
        file.write(": [");
        putJsonList(file, columns[i]);
        file.write(columns[i].entryCount() > 0 ? "\n]" : "]");
    }
    file.write("\n}\n");
    return file.commit();
}

} // namespace vesk::formats
