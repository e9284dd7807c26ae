#pragma once
// What UV sets and colour sets have in common.

#include "host/core/outcome.h"

#include <climits>
#include <span>
#include <string>

namespace vesk::geom {

/// Whether `ids` is empty or holds one id per corner, each -1 or among the `values` entries of the layer.
inline Outcome checkLayerIds(const std::string& layer, std::span<const int> ids, int corners,
                             std::size_t values) {
    if (!ids.empty() && ids.size() != static_cast<std::size_t>(corners))
        return Outcome::fail(layer + ": " + std::to_string(ids.size()) + " ids for " +
                             std::to_string(corners) + " corners");
    if (values > static_cast<std::size_t>(INT_MAX)) return Outcome::fail(layer + ": too many entries");
    for (const int id : ids) {
        if (id < -1 || id >= static_cast<int>(values))
            return Outcome::fail(layer + ": id " + std::to_string(id) + " is not among the " +
                                 std::to_string(values) + " entries");
    }
    return {};
}

} // namespace vesk::geom
