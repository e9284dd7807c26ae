#include "nodes/tensionBlendShape/tensionBlend.h"

#include <maya/MVector.h>

#include <algorithm>
#include <cmath>

namespace vesk::nodes {

namespace {

/// The amount as colours and arrays show it. What is no number shows nothing.
float shown(double amount) { return std::isnan(amount) ? 0.0F : static_cast<float>(std::min(amount, 1.0)); }

MColor scaled(const MColor& color, float by) { return {color.r * by, color.g * by, color.b * by, 1}; }

MPoint bindPoint(const BlendSource& source, std::size_t k) {
    return k < source.bindPoints.size() ? source.bindPoints[k] : MPoint();
}

/// Adds the side's share of its target's difference from the bind pose.
void add(const BlendSide& side, double amount, const MPoint& bound, std::size_t k, MPoint& point) {
    if (k >= side.target.size()) return;
    const MVector offset = (side.target[k] - bound) * (side.limit ? std::min(amount, *side.limit) : amount);
    const MPoint moved = point + offset;
    if (std::isfinite(moved.x) && std::isfinite(moved.y) && std::isfinite(moved.z)) point = moved;
}

Blended started(const BlendSource& source, std::size_t count) {
    Blended blended;
    blended.points.assign(source.points.begin(), source.points.end());
    blended.stretch.assign(count, 0);
    blended.stretchColors.assign(count, MColor(0, 0, 0, 1));
    return blended;
}

void colorOutput(Blended& blended, std::size_t k, const MColor& color) {
    blended.coloredVertices.push_back(static_cast<int>(k));
    blended.outputColors.push_back(color);
}

} // namespace

std::vector<float> meanEdgeLengths(std::span<const std::array<int, 2>> edges,
                                   std::span<const MPoint> points) {
    std::vector<double> sums(points.size(), 0);
    std::vector<int> counts(points.size(), 0);
    for (const auto& edge : edges) {
        const auto a = static_cast<std::size_t>(edge[0]), b = static_cast<std::size_t>(edge[1]);
        const double length = points[a].distanceTo(points[b]);
        sums[a] += length, ++counts[a];
        sums[b] += length, ++counts[b];
    }
    std::vector<float> means(points.size(), 0);
    for (std::size_t k = 0; k < means.size(); ++k) {
        if (counts[k] > 0) means[k] = static_cast<float>(sums[k] / counts[k]);
    }
    return means;
}

Blended blendByTension(const BlendSource& source, const BlendSide& stretch, const BlendSide& compression) {
    const std::size_t count = std::min(source.points.size(), source.lengths.size());
    Blended blended = started(source, count);
    blended.compression.assign(count, 0);
    for (std::size_t k = 0; k < count; ++k) {
        const double now = static_cast<double>(source.lengths[k]);
        const double then = k < source.bindLengths.size() ? static_cast<double>(source.bindLengths[k]) : 0.0;
        if (now > then) {
            const double amount = (now - then) * stretch.multiplier;
            blended.stretch[k] = shown(amount);
            blended.stretchColors[k] = scaled(stretch.color, blended.stretch[k]);
            add(stretch, amount, bindPoint(source, k), k, blended.points[k]);
        } else if (then > now) {
            const double amount = (then - now) * compression.multiplier;
            blended.compression[k] = shown(amount);
            colorOutput(blended, k, scaled(compression.color, blended.compression[k]));
            add(compression, amount, bindPoint(source, k), k, blended.points[k]);
        }
    }
    return blended;
}

Blended blendByDistance(const BlendSource& source, const BlendSide& stretch) {
    const std::size_t count = std::min(source.points.size(), source.lengths.size());
    Blended blended = started(source, count);
    blended.stretchColors.clear();
    for (std::size_t k = 0; k < count; ++k) {
        const MPoint bound = bindPoint(source, k);
        const double amount = (bound - source.points[k]).length() * stretch.multiplier;
        blended.stretch[k] = shown(amount);
        colorOutput(blended, k, scaled(stretch.color, blended.stretch[k]));
        add(stretch, amount, bound, k, blended.points[k]);
    }
    return blended;
}

} // namespace vesk::nodes
