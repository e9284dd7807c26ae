#include "nodes/tensionMapSimple/zoneTension.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace vesk::nodes {

namespace {

/// A number that is too large stands for the largest one.
std::optional<std::size_t> numberIn(std::string_view text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size() || text.empty()) return std::nullopt;
    if (error == std::errc::result_out_of_range) return std::numeric_limits<std::size_t>::max();
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

/// Marks what a word such as `4`, `4:8` or `a.vtx[4:8]` names; false when it is none.
bool mark(std::string_view word, Zone& zone) {
    if (const auto bracket = word.find('['); bracket != std::string_view::npos && word.back() == ']')
        word = word.substr(bracket + 1, word.size() - bracket - 2);
    const auto colon = word.find(':');
    const auto first = numberIn(word.substr(0, colon));
    const auto last = colon == std::string_view::npos ? first : numberIn(word.substr(colon + 1));
    if (!first || !last || *last < *first) return false;
    const std::size_t count = zone.contains.size();
    zone.namesMissing = zone.namesMissing || *last >= count;
    for (std::size_t vertex = *first; vertex <= *last && vertex < count; ++vertex)
        zone.contains[vertex] = 1;
    return true;
}

} // namespace

Zone zoneOf(std::string_view text, std::size_t vertexCount) {
    constexpr std::string_view kBetween = " ,\t\n\r";
    Zone zone;
    zone.contains.assign(vertexCount, 0);
    for (std::size_t at = text.find_first_not_of(kBetween); at != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(kBetween, at), text.size());
        const std::string_view word = text.substr(at, end - at);
        if (!mark(word, zone) && zone.fault.empty()) zone.fault = word;
        at = text.find_first_not_of(kBetween, end);
    }
    return zone;
}

EdgeLengths lengthsOf(std::span<const std::array<int, 2>> edges, std::span<const MPoint> now,
                      std::span<const MPoint> rest) {
    EdgeLengths lengths;
    lengths.now.reserve(edges.size());
    lengths.rest.reserve(edges.size());
    for (const auto& edge : edges) {
        const auto a = static_cast<std::size_t>(edge[0]), b = static_cast<std::size_t>(edge[1]);
        lengths.now.push_back(now[a].distanceTo(now[b]));
        lengths.rest.push_back(rest[a].distanceTo(rest[b]));
    }
    return lengths;
}

double tensionOf(std::span<const std::array<int, 2>> edges, const EdgeLengths& lengths,
                 std::span<const char> zone) {
    double now = 0, rest = 0;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const auto& edge = edges[i];
        if (!zone[static_cast<std::size_t>(edge[0])] && !zone[static_cast<std::size_t>(edge[1])]) continue;
        now += lengths.now[i];
        rest += lengths.rest[i];
    }
    const double tension = (now - rest) / rest;
    return std::isfinite(tension) ? tension : 0;
}

} // namespace vesk::nodes
