#include "host/data/component_text.h"

#include <algorithm>
#include <charconv>

namespace vesk {

namespace {

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

/// Takes an index off the front of `text`.
bool takeIndex(std::string_view& text, int& index) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    if (error != std::errc() || index < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

/// What stands between two brackets.
bool parseRange(std::string_view text, IndexRange& range) {
    if (text == "*") {
        range.all = true;
        return true;
    }
    if (!takeIndex(text, range.first)) return false;
    range.last = range.first;
    if (text.empty()) return true;
    if (text.front() != ':') return false;
    text.remove_prefix(1);
    if (!takeIndex(text, range.last) || !text.empty()) return false;
    if (range.last < range.first) std::swap(range.first, range.last);
    return true;
}

/// Adds all elements of a block, the last index fastest.
template <int N>
bool addBlock(IndexedComponent<N>& component, const std::vector<IndexRange>& ranges) {
    typename IndexedComponent<N>::Element element;
    for (int i = 0; i < N; ++i)
        element[i] = ranges[i].first;
    for (;;) {
        if (!component.add(element)) return false;
        int i = N - 1;
        while (i >= 0 && element[i] == ranges[i].last) {
            element[i] = ranges[i].first;
            --i;
        }
        if (i < 0) return true;
        ++element[i];
    }
}

bool isSmallEnough(const std::vector<IndexRange>& ranges) {
    std::size_t count = 1;
    for (const IndexRange& range : ranges) {
        const auto length = static_cast<std::size_t>(range.last) - static_cast<std::size_t>(range.first) + 1;
        if (length > Component::kMaxElements) return false;
        count *= length;
        if (count > Component::kMaxElements) return false;
    }
    return true;
}

bool addBlock(Component& component, const std::vector<IndexRange>& ranges) {
    switch (component.dimensions()) {
    case 1: return addBlock(static_cast<SingleComponent&>(component), ranges);
    case 2: return addBlock(static_cast<DoubleComponent&>(component), ranges);
    default: return addBlock(static_cast<TripleComponent&>(component), ranges);
    }
}

} // namespace

bool ComponentText::isComplete() const {
    return std::all_of(ranges.begin(), ranges.end(), [](const IndexRange& range) { return range.all; });
}

ComponentText parseComponentText(std::string_view text) {
    ComponentText result;
    const std::size_t bracket = std::min(text.find('['), text.size());
    const std::string_view word = text.substr(0, bracket);
    for (std::string_view rest = text.substr(bracket); !rest.empty();) {
        const std::size_t close = rest.find(']');
        IndexRange range;
        if (rest.front() != '[' || close == std::string_view::npos ||
            !parseRange(rest.substr(1, close - 1), range)) {
            result.error = quoted(text) + " is not a component: its brackets cannot be read.";
            return result;
        }
        result.ranges.push_back(range);
        rest.remove_prefix(close + 1);
    }
    result.kind = Component::kindOf(word, static_cast<int>(result.ranges.size()));
    if (result.kind == MFn::kInvalid) {
        result.error = quoted(text) + " is not a component: no kind is written so.";
    }
    return result;
}

Outcome addTo(Component& component, const ComponentText& text, std::span<const int> sizes) {
    const auto dimensions = static_cast<std::size_t>(component.dimensions());
    const std::string word(Component::wordOf(text.kind));
    if (component.apiType() != text.kind || text.ranges.size() != dimensions) {
        return Outcome::fail("Components '" + word + "' cannot be added to those of another kind.");
    }
    const bool haveSizes = sizes.size() == dimensions;
    if (text.isComplete()) {
        auto all = Component::create(text.kind);
        if (!haveSizes) {
            all->setComplete();
        } else if (!all->setComplete(sizes.data())) {
            return Outcome::fail("There are too many components '" + word + "' to name them all.");
        }
        if (!component.unite(*all)) return Outcome::fail("Too many components '" + word + "'.");
        return {};
    }
    std::vector<IndexRange> ranges = text.ranges;
    for (std::size_t i = 0; i < dimensions; ++i) {
        if (!ranges[i].all) continue;
        if (!haveSizes) {
            return Outcome::fail("A '*' beside other indices of '" + word +
                                 "' can be understood only where the size of the geometry is known.");
        }
        if (sizes[i] <= 0) return {};
        ranges[i] = {0, sizes[i] - 1};
    }
    if (!isSmallEnough(ranges) || !addBlock(component, ranges)) {
        return Outcome::fail("Too many components '" + word + "'.");
    }
    return {};
}

} // namespace vesk
