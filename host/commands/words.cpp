#include "host/commands/words.h"

#include "host/api/number_text.h"
#include "host/commands/command_spec.h"

#include <cmath>
#include <limits>

namespace vesk::commands {

namespace {

void store(double number, double& to) { to = number; }
void store(double number, int& to) { to = mel::truncated(number); }
void store(double number, float& to) {
    const bool fits = !(std::abs(number) > static_cast<double>(std::numeric_limits<float>::max()));
    to =
        fits ? static_cast<float>(number) : std::copysign(HUGE_VALF, static_cast<float>(number > 0 ? 1 : -1));
}

} // namespace

Result<std::size_t> readCount(Words& words, std::size_t wordsEach, std::string_view what) {
    double number = 0;
    if (words.numbers(&number, 1) != 1) {
        return Outcome::fail("The number of " + std::string(what) + " is missing.");
    }
    if (!(number >= 0) || number != std::floor(number)) {
        return Outcome::fail("There cannot be " + formatDouble(number) + ' ' + std::string(what) + '.');
    }
    const std::size_t most = words.mostLeft() / std::max<std::size_t>(wordsEach, 1);
    if (number > static_cast<double>(most)) {
        return Outcome::fail(formatDouble(number, 17) + ' ' + std::string(what) +
                             " are announced, but the values end before that.");
    }
    return static_cast<std::size_t>(number);
}

std::size_t ValueWords::sizeOf(const mel::Value& value) {
    if (value.ifVector()) return 3;
    if (const auto* matrix = value.ifShared<mel::Matrix>()) return matrix->read().values.size();
    return 1;
}

std::optional<double> ValueWords::part(const mel::Value& value, std::size_t index) {
    if (const int* whole = value.ifInt()) return *whole;
    if (const double* real = value.ifFloat()) return *real;
    if (const MVector* vector = value.ifVector()) return (*vector)[static_cast<unsigned>(index)];
    if (const auto* matrix = value.ifShared<mel::Matrix>()) return matrix->read().values[index];
    if (const auto number = value.number()) return number;
    // A word that came out of a variable was not read as one of the language's booleans.
    const auto flag = asBool(value);
    return flag ? std::optional<double>(*flag ? 1 : 0) : std::nullopt;
}

ValueWords::ValueWords(std::span<const mel::Value* const> values) : values_(values) {
    for (const mel::Value* value : values)
        left_ += sizeOf(*value);
    while (!values_.empty() && sizeOf(*values_.front()) == 0)
        values_ = values_.subspan(1);
}

void ValueWords::step() {
    --left_;
    if (++part_ < sizeOf(*values_.front())) return;
    part_ = 0;
    do {
        values_ = values_.subspan(1);
    } while (!values_.empty() && sizeOf(*values_.front()) == 0);
}

std::size_t ValueWords::numbersAhead() {
    std::size_t count = 0;
    std::size_t first = part_;
    for (const mel::Value* value : values_) {
        const std::size_t size = sizeOf(*value);
        if (size > 0 && !part(*value, first)) break;
        count += size - first;
        first = 0;
    }
    return count;
}

WordKind ValueWords::peek() {
    if (values_.empty()) return WordKind::End;
    const std::string* text = values_.front()->ifString();
    if (!text) return WordKind::Number;
    return looksLikeFlag(*text) ? WordKind::Flag : WordKind::Text;
}

std::string_view ValueWords::text() {
    if (values_.empty()) return {};
    const mel::Value& value = *values_.front();
    const std::string* text = value.ifString();
    std::string_view view;
    if (text) {
        view = *text;
    } else {
        text_ = sizeOf(value) > 1 ? formatDouble(*part(value, part_)) : value.asString();
        view = text_;
    }
    step();
    return view;
}

std::string ValueWords::asWritten() {
    if (values_.empty()) return {};
    if (!values_.front()->isString()) return std::string(text());
    std::string quoted = "\"";
    for (char c : text()) {
        if (c == '"' || c == '\\') quoted += '\\';
        if (c == '\n') {
            quoted += "\\n";
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

template <class T>
std::size_t ValueWords::take(T* to, std::size_t count) {
    std::size_t taken = 0;
    for (; taken < count && !values_.empty(); ++taken) {
        const auto number = part(*values_.front(), part_);
        if (!number) break;
        store(*number, to[taken]);
        step();
    }
    return taken;
}

std::size_t ValueWords::numbers(double* to, std::size_t count) { return take(to, count); }
std::size_t ValueWords::numbers(float* to, std::size_t count) { return take(to, count); }
std::size_t ValueWords::numbers(int* to, std::size_t count) { return take(to, count); }

} // namespace vesk::commands
