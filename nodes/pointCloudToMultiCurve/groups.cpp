#include "nodes/pointCloudToMultiCurve/groups.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vesk::nodes {

std::map<int, std::vector<unsigned>> groupedPoints(std::size_t count, std::span<const double> groups,
                                                   std::span<const double> ids) {
    std::map<int, std::vector<unsigned>> grouped;
    for (unsigned i = 0; i < count; ++i) {
        const double group = groups.empty() ? 0 : groups[i];
        if (group >= 0 && group <= std::numeric_limits<int>::max())
            grouped[static_cast<int>(group)].push_back(i);
    }
    if (ids.empty()) return grouped;
    for (auto& [group, places] : grouped) {
        std::ranges::stable_sort(places, [&](unsigned a, unsigned b) {
            return ids[a] < ids[b] || (std::isnan(ids[b]) && !std::isnan(ids[a]));
        });
    }
    return grouped;
}

} // namespace vesk::nodes
