#include "app/options.h"

#include "host/mel/error.h"
#include "host/mel/limits.h"

#include <charconv>
#include <cmath>
#include <stdexcept>

namespace vesk::app {

namespace {

constexpr std::size_t kMostFrames = 1000000;

/// A number at the front of `text`, taken off it.
bool takeNumber(std::string_view& text, double& value) {
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || !std::isfinite(value)) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool takeLetter(std::string_view& text, char letter) {
    if (text.empty() || text.front() != letter) return false;
    text.remove_prefix(1);
    return true;
}

} // namespace

std::vector<double> parseFrames(const std::string& text) {
    const auto fault = [&](const char* why) -> std::invalid_argument {
        return std::invalid_argument("--frames '" + text + "': " + why);
    };
    std::vector<double> frames;
    std::string_view rest = text;
    do {
        double first = 0, last = 0, step = 1;
        if (!takeNumber(rest, first)) throw fault("expected a frame number, as in 1-24x2,30");
        last = first;
        if (takeLetter(rest, '-') && !takeNumber(rest, last))
            throw fault("expected a frame number after '-'");
        if (takeLetter(rest, 'x') && !takeNumber(rest, step)) throw fault("expected a step after 'x'");
        if (!(step > 0)) throw fault("the step must be above 0");
        if (last < first) throw fault("a range must not run backwards");
        const double count = std::floor((last - first) / step + 1e-9) + 1;
        if (count > static_cast<double>(kMostFrames - frames.size()))
            throw fault("more than a million frames");
        for (double i = 0; i < count; ++i)
            frames.push_back(first + i * step);
    } while (takeLetter(rest, ','));
    if (!rest.empty()) throw fault("unexpected text behind a range");
    return frames;
}

std::pair<std::string, std::size_t> parseLimit(const std::string& text) {
    const Assignment given = parseAssignment("--mel-limit", text);
    std::size_t value = 0;
    const char* const last = given.right.data() + given.right.size();
    const auto [end, failure] = std::from_chars(given.right.data(), last, value);
    if (failure != std::errc() || end != last || value == 0) {
        throw std::invalid_argument("--mel-limit '" + text + "': expected a whole number above 0 after '='");
    }
    mel::Limits unused;
    try {
        mel::setLimit(unused, given.left, value);
    } catch (const mel::Error& error) {
        throw std::invalid_argument("--mel-limit '" + text + "': " + error.message());
    }
    return {given.left, value};
}

Assignment parseAssignment(const std::string& option, const std::string& text) {
    const auto at = text.find('=');
    if (at == std::string::npos || at == 0 || at + 1 == text.size()) {
        throw std::invalid_argument(option + " '" + text + "': expected two names around '='");
    }
    return {text.substr(0, at), text.substr(at + 1)};
}

} // namespace vesk::app
