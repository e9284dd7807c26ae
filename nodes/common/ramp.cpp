#include "nodes/common/ramp.h"

#include <maya/MColorArray.h>
#include <maya/MFloatArray.h>
#include <maya/MIntArray.h>
#include <maya/MRampAttribute.h>

#include <algorithm>
#include <cmath>

namespace vesk::nodes {

template <int Channels>
Ramp<Channels>::Ramp(std::vector<Entry> entries) : entryCount_(entries.size()), entries_(std::move(entries)) {
    std::erase_if(entries_, [](const Entry& entry) { return !std::isfinite(entry.position); });
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const Entry& a, const Entry& b) { return a.position < b.position; });
    if (entries_.size() < 2) return;
    segments_.resize(entries_.size() - 1);
    using Slopes = std::array<double, Channels>;
    std::vector<Slopes> slopes(segments_.size());
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        const Entry& a = entries_[i];
        const Entry& b = entries_[i + 1];
        Segment& segment = segments_[i];
        segment.first = a.position;
        segment.last = b.position;
        segment.start = static_cast<double>(a.position);
        segment.length = static_cast<double>(b.position) - segment.start;
        segment.interpolation = a.interpolation;
        for (std::size_t c = 0; c < Channels; ++c) {
            segment.from[c] = static_cast<double>(a.values[c]);
            segment.to[c] = static_cast<double>(b.values[c]);
            slopes[i][c] = segment.length > 0 ? (segment.to[c] - segment.from[c]) / segment.length : 0;
        }
    }
    // A tangent is the mean of the slopes at its two sides, or the only one.
    const auto tangent = [&](std::size_t entry, std::size_t c) {
        if (entry == 0) return slopes[0][c];
        if (entry == slopes.size()) return slopes[entry - 1][c];
        return (slopes[entry - 1][c] + slopes[entry][c]) / 2;
    };
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        for (std::size_t c = 0; c < Channels; ++c) {
            segments_[i].fromTangent[c] = tangent(i, c) * segments_[i].length;
            segments_[i].toTangent[c] = tangent(i + 1, c) * segments_[i].length;
        }
    }
}

template <int Channels>
typename Ramp<Channels>::Values Ramp<Channels>::find(float position, std::size_t& segment) const {
    if (entries_.empty()) return {};
    const Entry& first = entries_.front();
    if (!(position >= first.position)) return first.values; // before it, or no number
    if (position >= entries_.back().position) return entries_.back().values;
    const auto right = std::upper_bound(entries_.begin(), entries_.end(), position,
                                        [](float p, const Entry& entry) { return p < entry.position; });
    segment = static_cast<std::size_t>(right - entries_.begin()) - 1;
    if (position == entries_[segment].position) return entries_[segment].values;
    return between(segments_[segment], position);
}

template class Ramp<1>;
template class Ramp<3>;

namespace {

/// One call of the host for all entries; `valuesOf` makes an entry's values.
template <int Channels, class HostValues, class ValuesOf>
Ramp<Channels> readRamp(const MObject& node, const MObject& attribute, ValuesOf valuesOf) {
    MIntArray indices, interpolations;
    MFloatArray positions;
    HostValues values;
    const MRampAttribute ramp(node, attribute);
    ramp.getEntries(indices, positions, values, interpolations);
    std::vector<typename Ramp<Channels>::Entry> entries;
    for (unsigned i = 0; i < positions.length(); ++i)
        entries.push_back({positions[i], valuesOf(values[i]), interpolations[i]});
    return Ramp<Channels>(std::move(entries));
}

} // namespace

CurveRamp readCurveRamp(const MObject& node, const MObject& attribute) {
    return readRamp<1, MFloatArray>(node, attribute, [](float value) { return CurveRamp::Values{value}; });
}

ColorRamp readColorRamp(const MObject& node, const MObject& attribute) {
    return readRamp<3, MColorArray>(node, attribute, [](const MColor& color) {
        return ColorRamp::Values{color.r, color.g, color.b};
    });
}

} // namespace vesk::nodes
