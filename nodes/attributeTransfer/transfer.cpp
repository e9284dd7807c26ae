#include "nodes/attributeTransfer/transfer.h"

namespace vesk::nodes {

namespace {

using volume::Vec3;

/// One influence on the present point, with what it refers to.
struct Entry {
    const volume::Controls* volume;
    const volume::Placement* placement;
    const VolumeRamps* ramps;
    const volume::CloudPoint* cloudPoint; ///< null for primitives
    float distance;
    float kernel;
};

/// A sum of vectors in single precision.
struct FloatSum {
    float x = 0, y = 0, z = 0;
    void add(const Vec3& v, float weight) {
        const auto w = static_cast<double>(weight);
        x += static_cast<float>(v.x * w);
        y += static_cast<float>(v.y * w);
        z += static_cast<float>(v.z * w);
    }
};

class Walk {
  public:
    Walk(const TransferSettings& settings, const TransferVolumes& volumes, const volume::Box& bounds,
         TransferPoints& points)
        : s_(settings), v_(volumes), points_(points), search_(volumes.list, volumes.clouds, bounds),
          slots_(settings.maxInfluences) {}

    void visit(std::size_t i) {
        if (!findInfluences(points_.positions[i])) return;
        if (s_.weight) points_.weights[i] = mixed(points_.weights[i], sum(&VolumeRamps::weight, weightOf));
        if (s_.color) mixColor(i);
        if (s_.radius) {
            const double radius = mixed(points_.radii[i], sum(&VolumeRamps::radius, radiusOf));
            points_.radii[i] = radius < 0 ? 0 : radius;
        }
        if (s_.position) pull(points_.positions[i]);
        if (s_.normal) turn(points_.normals[i], points_.positions[i]);
    }

  private:
    bool findInfluences(const Vec3& p) {
        slots_.clear();
        search_.eachHolding(p, [&](const volume::Influence& influence) { slots_.offer(influence); });
        if (slots_.isEmpty()) return false;
        slots_.list(order_);
        const auto at = [&](std::size_t n) -> const volume::Influence& {
            return slots_[static_cast<std::size_t>(order_[n])];
        };
        kernel_.weigh(
            order_.size(), [&](std::size_t n) { return at(n).distance; },
            [&](float distance) { return v_.kernel.at(distance)[0]; });
        entries_.clear();
        for (std::size_t n = 0; n < order_.size(); ++n) {
            const volume::Influence& influence = at(n);
            const auto i = static_cast<std::size_t>(influence.volume);
            const auto& controls = v_.list.controls(i);
            const bool isCloud = controls.kind == volume::kCloud;
            entries_.push_back(
                {&controls, &v_.list.placement(i), &v_.ramps[i],
                 isCloud ? &v_.clouds.point(static_cast<std::size_t>(influence.cloudPoint)) : nullptr,
                 static_cast<float>(influence.distance), kernel_[n]});
        }
        return true;
    }

    static double weightOf(const volume::CloudPoint& p) { return p.weight; }
    static double radiusOf(const volume::CloudPoint& p) { return p.sphere.radius; }
    static double alphaOf(const volume::CloudPoint& p) { return p.rgba[3]; }

    /// A falloff at an entry's distance, times what the cloud's point has of it.
    static float valueAt(const Entry& entry, CurveRamp VolumeRamps::*ramp,
                         double (*ofCloud)(const volume::CloudPoint&)) {
        const float value = (entry.ramps->*ramp).at(entry.distance)[0];
        if (!entry.cloudPoint) return value;
        return static_cast<float>(static_cast<double>(value) * ofCloud(*entry.cloudPoint));
    }

    float sum(CurveRamp VolumeRamps::*ramp, double (*ofCloud)(const volume::CloudPoint&)) const {
        float total = 0;
        for (const Entry& entry : entries_)
            total += valueAt(entry, ramp, ofCloud) * entry.kernel;
        return kernel_.settled(total);
    }

    double mixed(double present, float value) const {
        if (!s_.blend || present == 0) return static_cast<double>(value);
        return static_cast<double>(1 - value) * present + static_cast<double>(value);
    }

    void mixColor(std::size_t i) {
        Rgba sum{};
        for (const Entry& entry : entries_) {
            const float alpha = valueAt(entry, &VolumeRamps::alpha, alphaOf);
            std::array<float, 3> color{};
            if (entry.cloudPoint) {
                for (std::size_t c = 0; c < 3; ++c)
                    color[c] = static_cast<float>(entry.cloudPoint->rgba[c]);
            } else {
                color = entry.ramps->color.at(entry.distance);
            }
            for (std::size_t c = 0; c < 3; ++c)
                sum[c] += s_.alphaModulate ? color[c] * entry.kernel * alpha : color[c] * entry.kernel;
            sum[3] += alpha * entry.kernel;
        }
        Rgba& present = points_.colors[i];
        const bool screens = s_.blend && present != Rgba{};
        for (std::size_t c = 0; c < 4; ++c) {
            const float value = kernel_.settled(sum[c]);
            present[c] = screens ? (1 - value) * present[c] + value : value;
            if (!points_.outRgba.empty()) points_.outRgba[4 * i + c] = static_cast<double>(present[c]);
        }
    }

    Vec3 worldImage(const Entry& entry, const Vec3& axisPoint) const {
        const volume::Matrix& matrix = entry.placement->matrix;
        return s_.areParticles ? matrix.direction(axisPoint) : matrix.point(axisPoint);
    }

    /// Where an entry pulls to; nowhere from beside a capsule's zones.
    std::optional<Vec3> target(const Entry& entry, const Vec3& position) const {
        if (entry.cloudPoint) return entry.cloudPoint->sphere.center;
        if (entry.volume->kind != volume::kCapsule) return entry.placement->translation;
        const volume::Capsule& capsule = entry.volume->capsule;
        const Vec3 local = entry.placement->inverse.point(position);
        const volume::Zone zone = volume::zoneOf(capsule, local);
        if (zone == volume::Zone::None) return std::nullopt;
        return worldImage(entry, volume::axisPoint(capsule, zone, local));
    }

    void pull(Vec3& position) const {
        FloatSum targets;
        float weights = 0;
        for (const Entry& entry : entries_) {
            const float weight = entry.ramps->position.at(entry.distance)[0] * entry.kernel;
            if (const auto to = target(entry, position)) targets.add(*to, weight);
            weights += weight;
        }
        const Vec3 moved{static_cast<double>(kernel_.settled(targets.x)),
                         static_cast<double>(kernel_.settled(targets.y)),
                         static_cast<double>(kernel_.settled(targets.z))};
        position = position * static_cast<double>(1 - kernel_.settled(weights)) + moved;
    }

    /// Where an entry turns to; beside a capsule's zones there is no such direction.
    std::optional<Vec3> direction(const Entry& entry, const Vec3& position) const {
        if (entry.cloudPoint) return entry.cloudPoint->normal;
        const volume::Placement& at = *entry.placement;
        switch (entry.volume->normal) {
        case volume::kAlongX: return at.matrix.direction({1, 0, 0});
        case volume::kAlongY: return at.matrix.direction({0, 1, 0});
        case volume::kAlongZ: return at.matrix.direction({0, 0, 1});
        case volume::kAwayFromCenter: break;
        default: return std::nullopt;
        }
        if (entry.volume->kind != volume::kCapsule) return position - at.translation;
        const volume::Capsule& capsule = entry.volume->capsule;
        const Vec3 local = at.inverse.point(position);
        const volume::Zone zone = volume::zoneOf(capsule, local);
        if (zone == volume::Zone::None) return std::nullopt;
        if (zone == volume::Zone::Body) return at.matrix.direction({local.x, 0, local.z});
        return position - worldImage(entry, volume::axisPoint(capsule, zone, local));
    }

    void turn(Vec3& normal, const Vec3& position) const {
        FloatSum directions;
        float weights = 0;
        Vec3 last; // an entry without a direction takes that of the one before
        for (const Entry& entry : entries_) {
            const float weight = entry.ramps->normal.at(entry.distance)[0] * entry.kernel;
            last = direction(entry, position).value_or(last);
            directions.add(last, weight);
            weights += weight;
        }
        const auto share = static_cast<double>(kernel_.settled(weights));
        const double speed = length(normal);
        if (s_.areParticles) normal = normalised(normal);
        const Vec3 turned =
            normalised(Vec3{static_cast<double>(directions.x), static_cast<double>(directions.y),
                            static_cast<double>(directions.z)});
        normal = s_.blend
                     ? normalised(normal * static_cast<double>(1 - kernel_.settled(weights)) + turned * share)
                     : turned;
        if (s_.areParticles) normal = normal * speed;
    }

    const TransferSettings& s_;
    const TransferVolumes& v_;
    TransferPoints& points_;
    volume::InfluenceSearch search_;
    volume::InfluenceSlots slots_;
    volume::KernelWeights kernel_;
    std::vector<int> order_;
    std::vector<Entry> entries_;
};

/// What came in counts no more, but for the positions.
void forget(const TransferSettings& s, TransferPoints& points) {
    if (s.weight) std::fill(points.weights.begin(), points.weights.end(), 0);
    if (s.color) std::fill(points.colors.begin(), points.colors.end(), defaultRgba(s.solidAlpha));
    if (s.normal) std::fill(points.normals.begin(), points.normals.end(), Vec3{});
    if (s.radius) std::fill(points.radii.begin(), points.radii.end(), 0);
}

} // namespace

void transfer(const TransferSettings& settings, const TransferVolumes& volumes, std::span<const char> inside,
              TransferPoints& points) {
    if (!settings.merge) forget(settings, points);
    // Nothing but clouds is held against the bounds.
    const volume::Box bounds =
        volumes.clouds.cloudCount() > 0 ? volume::pointBounds(points.positions, inside) : volume::Box();
    Walk walk(settings, volumes, bounds, points);
    for (std::size_t i = 0; i < points.positions.size(); ++i) {
        if (inside[i] != 0) {
            walk.visit(i);
        } else if (settings.color && !points.outRgba.empty()) {
            std::fill_n(points.outRgba.begin() + static_cast<std::ptrdiff_t>(4 * i), 4, 0);
        }
    }
}

} // namespace vesk::nodes
