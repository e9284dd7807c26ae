#pragma once
// The transfer as plain loops with flat stores, every volume against every point and every point of its
// cloud: what the fast one is compared with, to the bit, and measured against.

#include "nodes/attributeTransfer/transfer.h"

namespace vesk::nodes::plain {

using volume::Vec3;

struct Volume {
    volume::Controls controls;
    volume::Placement placement;
    volume::Cloud cloud;
    VolumeRamps ramps;
};

struct Slice {
    std::size_t start, end;
    volume::Box box;
};

/// The lists of one run, as they come from the volumes.
struct Lists {
    std::vector<const volume::Controls*> controls;
    std::vector<volume::Placement> placements;
    std::vector<const VolumeRamps*> ramps;
    std::vector<volume::CloudPoint> cloud;
    std::vector<Slice> slices;
};

inline Lists makeLists(std::span<const Volume> volumes) {
    static const volume::Controls kOff;
    Lists lists;
    for (const Volume& v : volumes) {
        lists.placements.push_back(v.placement);
        lists.ramps.push_back(&v.ramps);
        if (!(v.controls.envelope > 0)) {
            lists.placements.push_back({});
            lists.controls.push_back(&kOff);
            continue;
        }
        lists.controls.push_back(&v.controls);
        if (v.controls.kind != volume::kCloud) continue;
        if (v.cloud.allMatch && v.cloud.points.empty() && v.controls.envelope != 1) {
            lists.slices.push_back({0, 0, volume::Box(Vec3{})});
            continue;
        }
        Slice slice{lists.cloud.size(), 0, {}};
        for (const auto& point : v.cloud.points) {
            lists.cloud.push_back(point);
            const double r = point.sphere.radius;
            if (r == 0) continue;
            slice.box.grow(point.sphere.center - Vec3{r, r, r});
            slice.box.grow(point.sphere.center + Vec3{r, r, r});
        }
        slice.end = lists.cloud.size();
        lists.slices.push_back(slice);
    }
    return lists;
}

/// With an iterator that is stuck on the first masked point.
inline volume::Box boundsLoop(std::span<const Vec3> points, std::span<const char> inside) {
    volume::Box box(Vec3{});
    std::size_t iterator = 0;
    bool isSeeded = false;
    for (std::size_t round = 0; round < points.size(); ++round) {
        if (inside[iterator] == 0) continue;
        if (isSeeded) box.grow(points[iterator++]);
        isSeeded = true;
    }
    return box;
}

struct Store {
    std::size_t width;
    std::vector<double> distances;
    std::vector<int> volumes, cloudPoints;
    std::vector<int> counts;

    Store(std::size_t maxInfluences, std::size_t points)
        : width(maxInfluences), distances(width * points, -1), volumes(width * points, 0),
          cloudPoints(width * points, -1), counts(points, 0) {}

    void offer(std::size_t point, double distance, std::size_t volume, std::size_t cloudPoint) {
        std::size_t slot = width;
        if (static_cast<std::size_t>(counts[point]) < width) {
            slot = static_cast<std::size_t>(counts[point]);
        } else {
            for (slot = 0; slot < width && !(distances[point * width + slot] > distance); ++slot) {
            }
        }
        if (slot == width) return;
        distances[point * width + slot] = distance;
        volumes[point * width + slot] = static_cast<int>(volume);
        cloudPoints[point * width + slot] = static_cast<int>(cloudPoint);
        ++counts[point];
    }

    std::vector<std::size_t> list(std::size_t point) const {
        std::vector<std::size_t> list = {point * width};
        for (std::size_t slot = point * width + 1; slot < (point + 1) * width; ++slot) {
            if (distances[slot] == -1) continue;
            list.insert(distances[slot] > distances[list.front()] ? list.begin() : list.end(), slot);
        }
        return list;
    }
};

inline void fill(const Lists& lists, std::span<const Vec3> points, std::span<const char> inside,
                 Store& store) {
    const volume::Box bounds = boundsLoop(points, inside);
    std::size_t cloudIndex = 0;
    for (std::size_t v = 0; v < lists.controls.size(); ++v) {
        const volume::Controls& c = *lists.controls[v];
        if (c.envelope == 0) continue;
        const bool isCloud = c.kind == volume::kCloud;
        if (isCloud && !lists.slices[cloudIndex].box.meets(bounds)) continue;
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (inside[i] == 0) continue;
            if (!isCloud) {
                const Vec3 local = lists.placements[v].inverse.point(points[i]);
                const double distance = volume::distanceInPrimitive(c.kind, c.capsule, local);
                if (distance != volume::kOutside) store.offer(i, distance, v, 0);
                continue;
            }
            const Slice& slice = lists.slices[cloudIndex];
            if (slice.end == 0 || !slice.box.contains(points[i])) continue;
            for (std::size_t q = slice.start; q < slice.end; ++q) {
                const double distance = volume::length(points[i] - lists.cloud[q].sphere.center);
                const double radius = lists.cloud[q].sphere.radius;
                if (radius >= distance) store.offer(i, distance / radius, v, q);
            }
        }
        if (isCloud) ++cloudIndex;
    }
}

inline void transfer(const TransferSettings& s, std::span<const Volume> volumes, const CurveRamp& kernel,
                     std::span<const char> inside, TransferPoints& p) {
    const Lists lists = makeLists(volumes);
    Store store(static_cast<std::size_t>(s.maxInfluences), p.positions.size());
    fill(lists, p.positions, inside, store);
    if (!s.merge) {
        if (s.weight) p.weights.assign(p.weights.size(), 0);
        if (s.color) p.colors.assign(p.colors.size(), defaultRgba(s.solidAlpha));
        if (s.normal) p.normals.assign(p.normals.size(), Vec3{});
        if (s.radius) p.radii.assign(p.radii.size(), 0);
    }
    const auto d = [](float value) { return static_cast<double>(value); };
    for (std::size_t i = 0; i < p.positions.size(); ++i) {
        if (inside[i] == 0) {
            for (std::size_t c = 0; c < 4 && s.color && !p.outRgba.empty(); ++c)
                p.outRgba[4 * i + c] = 0;
            continue;
        }
        if (store.counts[i] == 0) continue;
        const auto list = store.list(i);
        std::vector<float> k(list.size(), 1);
        float sum = 0;
        for (std::size_t n = 0; n < list.size() && list.size() > 1; ++n) {
            k[n] = std::max(0.0F, kernel.at(static_cast<float>(store.distances[list[n]]))[0]);
            sum += k[n];
        }
        const auto settled = [&](float a) { return list.size() == 1 ? a : sum != 0 ? a / sum : 0.0F; };
        const auto at = [&](std::size_t n) { return static_cast<float>(store.distances[list[n]]); };
        const auto volumeAt = [&](std::size_t n) { return static_cast<std::size_t>(store.volumes[list[n]]); };
        const auto controlsAt = [&](std::size_t n) -> const auto& { return *lists.controls[volumeAt(n)]; };
        const auto rampsAt = [&](std::size_t n) -> const auto& { return *lists.ramps[volumeAt(n)]; };
        const auto placeAt = [&](std::size_t n) -> const auto& { return lists.placements[volumeAt(n)]; };
        const auto cloudAt = [&](std::size_t n) {
            return controlsAt(n).kind == volume::kCloud
                       ? &lists.cloud[static_cast<std::size_t>(store.cloudPoints[list[n]])]
                       : nullptr;
        };
        const auto mix = [&](double& present, float a) {
            present = s.blend && present != 0 ? d(1 - a) * present + d(a) : d(a);
        };
        if (s.weight) {
            float a = 0;
            for (std::size_t n = 0; n < list.size(); ++n) {
                float v = rampsAt(n).weight.at(at(n))[0];
                if (cloudAt(n)) v = static_cast<float>(d(v) * cloudAt(n)->weight);
                a += v * k[n];
            }
            mix(p.weights[i], settled(a));
        }
        if (s.color) {
            float sums[4] = {};
            for (std::size_t n = 0; n < list.size(); ++n) {
                float alpha = rampsAt(n).alpha.at(at(n))[0];
                if (cloudAt(n)) alpha = static_cast<float>(d(alpha) * cloudAt(n)->rgba[3]);
                const auto ramp = rampsAt(n).color.at(at(n));
                for (std::size_t c = 0; c < 3; ++c) {
                    float value = cloudAt(n) ? static_cast<float>(cloudAt(n)->rgba[c]) : ramp[c];
                    value *= k[n];
                    sums[c] += s.alphaModulate ? value * alpha : value;
                }
                sums[3] += alpha * k[n];
            }
            const bool isBlack = p.colors[i] == Rgba{};
            for (std::size_t c = 0; c < 4; ++c) {
                float& present = p.colors[i][c];
                const float a = settled(sums[c]);
                present = s.blend && !isBlack ? (1 - a) * present + a : a;
                if (!p.outRgba.empty()) p.outRgba[4 * i + c] = d(present);
            }
        }
        if (s.radius) {
            float a = 0;
            for (std::size_t n = 0; n < list.size(); ++n) {
                float v = rampsAt(n).radius.at(at(n))[0];
                if (cloudAt(n)) v = static_cast<float>(d(v) * cloudAt(n)->sphere.radius);
                a += v * k[n];
            }
            mix(p.radii[i], settled(a));
            if (p.radii[i] < 0) p.radii[i] = 0;
        }
        const auto image = [&](std::size_t n, const Vec3& v) {
            return s.areParticles ? placeAt(n).matrix.direction(v) : placeAt(n).matrix.point(v);
        };
        const auto addTo = [&](float(&sums)[3], const Vec3& v, float w) {
            sums[0] += static_cast<float>(v.x * d(w));
            sums[1] += static_cast<float>(v.y * d(w));
            sums[2] += static_cast<float>(v.z * d(w));
        };
        if (s.position) {
            float t[3] = {}, total = 0;
            for (std::size_t n = 0; n < list.size(); ++n) {
                const float w = rampsAt(n).position.at(at(n))[0] * k[n];
                total += w;
                if (cloudAt(n)) {
                    addTo(t, cloudAt(n)->sphere.center, w);
                } else if (controlsAt(n).kind != volume::kCapsule) {
                    addTo(t, placeAt(n).translation, w);
                } else {
                    const auto& capsule = controlsAt(n).capsule;
                    const Vec3 local = placeAt(n).inverse.point(p.positions[i]);
                    const auto zone = volume::zoneOf(capsule, local);
                    if (zone == volume::Zone::Body) addTo(t, image(n, {0, local.y, 0}), w);
                    if (zone == volume::Zone::TopCap) addTo(t, image(n, {0, capsule.topOffset, 0}), w);
                    if (zone == volume::Zone::BottomCap) addTo(t, image(n, {0, -capsule.bottomOffset, 0}), w);
                }
            }
            p.positions[i] = p.positions[i] * d(1 - settled(total)) +
                             Vec3{d(settled(t[0])), d(settled(t[1])), d(settled(t[2]))};
        }
        if (s.normal) {
            float sums[3] = {}, total = 0;
            Vec3 direction;
            for (std::size_t n = 0; n < list.size(); ++n) {
                const float w = rampsAt(n).normal.at(at(n))[0] * k[n];
                total += w;
                const int along = controlsAt(n).normal;
                if (cloudAt(n)) {
                    direction = cloudAt(n)->normal;
                } else if (along >= 0 && along < 3) {
                    direction = placeAt(n).matrix.direction(
                        {along == 0 ? 1.0 : 0, along == 1 ? 1.0 : 0, along == 2 ? 1.0 : 0});
                } else if (controlsAt(n).kind != volume::kCapsule) {
                    direction = p.positions[i] - placeAt(n).translation;
                } else {
                    const auto& capsule = controlsAt(n).capsule;
                    const Vec3 local = placeAt(n).inverse.point(p.positions[i]);
                    const auto zone = volume::zoneOf(capsule, local);
                    if (zone == volume::Zone::Body)
                        direction = placeAt(n).matrix.direction({local.x, 0, local.z});
                    if (zone == volume::Zone::TopCap)
                        direction = p.positions[i] - image(n, {0, capsule.topOffset, 0});
                    if (zone == volume::Zone::BottomCap)
                        direction = p.positions[i] - image(n, {0, -capsule.bottomOffset, 0});
                }
                addTo(sums, direction, w);
            }
            const double w = d(settled(total)), w1 = d(1 - settled(total));
            const double speed = volume::length(p.normals[i]);
            const Vec3 start = s.areParticles ? volume::normalised(p.normals[i]) : p.normals[i];
            const Vec3 turned = volume::normalised(Vec3{d(sums[0]), d(sums[1]), d(sums[2])});
            p.normals[i] = s.blend ? volume::normalised(start * w1 + turned * w) : turned;
            if (s.areParticles) p.normals[i] = p.normals[i] * speed;
        }
    }
}

} // namespace vesk::nodes::plain
