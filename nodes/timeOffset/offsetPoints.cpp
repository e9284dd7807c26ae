#include "nodes/timeOffset/offsetPoints.h"

#include "nodes/common/array_inputs.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>

namespace vesk::nodes {

std::vector<double> offsetFrames(double now, double offset, std::span<const double> weights,
                                 std::size_t count) {
    std::vector<double> frames(count, now);
    for (std::size_t i = 0; i < count; ++i) {
        const double away = weights.empty() ? offset : offset * weights[i];
        if (!std::isnan(away)) frames[i] = now + std::clamp(away, -kFarthestOffset, kFarthestOffset);
    }
    return frames;
}

namespace {

/// Points by the whole frame at or before the one they are asked for; those that stay are left out.
std::map<double, std::vector<std::size_t>> byWholeFrame(std::span<const double> frames, double now) {
    std::map<double, std::vector<std::size_t>> groups;
    std::vector<std::size_t>* last = nullptr;
    double lastFrame = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (frames[i] == now) continue;
        const double whole = std::floor(frames[i]);
        if (!last || whole != lastFrame) last = &groups[lastFrame = whole];
        last->push_back(i);
    }
    return groups;
}

} // namespace

bool offsetPoints(std::span<const double> frames, double now, std::span<MVector> points,
                  const std::function<MVectorArray(double frame)>& pointsAt) {
    bool allThere = true;
    std::optional<MVectorArray> next; // of the frame behind the last one
    double nextFrame = 0;
    for (const auto& [frame, members] : byWholeFrame(frames, now)) {
        MVectorArray earlier = next && nextFrame == frame ? std::move(*next) : pointsAt(frame);
        next.reset();
        if (std::ranges::any_of(members, [&, whole = frame](std::size_t i) { return frames[i] != whole; }))
            next.emplace(pointsAt(nextFrame = frame + 1));
        const bool isThere = earlier.length() == points.size() && (!next || next->length() == points.size());
        allThere = allThere && isThere;
        if (!isThere) continue;
        for (const std::size_t i : members) {
            const auto at = static_cast<unsigned>(i);
            const double share = frames[i] - frame;
            points[i] = share == 0 ? earlier[at] : earlier[at] * (1 - share) + (*next)[at] * share;
        }
    }
    return allThere;
}

} // namespace vesk::nodes
