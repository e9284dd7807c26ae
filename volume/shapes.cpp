#include "volume/shapes.h"

namespace vesk::volume {

namespace {

bool within(double value, double size) { return value >= -size && value <= size; }

bool isInTopWindow(const Capsule& c, const Vec3& p) {
    return within(p.x, c.topScale.x) && p.y > c.topOffset && p.y <= c.topOffset + c.topScale.y &&
           within(p.z, c.topScale.z);
}

/// Not the mirror image of the top's, and it stays so, because scenes are built on it: the X scale stands in
/// the lower bound and the offset is positive in the upper one. The window is only ever taller than the cap,
/// and the distance trims it.
bool isInBottomWindow(const Capsule& c, const Vec3& p) {
    return within(p.x, c.bottomScale.x) && p.y >= -c.bottomScale.x - c.bottomScale.y &&
           p.y < c.bottomOffset && within(p.z, c.bottomScale.z);
}

double ifInside(double distance) { return distance <= 1 ? distance : kOutside; }

double distanceInBody(const Capsule& c, const Vec3& p) {
    if (!within(p.x, std::max(c.bottomScale.x, c.topScale.x))) return kOutside;
    if (!within(p.z, std::max(c.bottomScale.z, c.topScale.z))) return kOutside;
    const double height = c.topOffset + c.bottomOffset;
    const double below = height - (p.y + c.bottomOffset); // of the body's top
    const auto radius = [&](double bottom, double top) {
        return height == 0 ? top : below * (bottom - top) / height + top;
    };
    return ifInside(length(
        {p.x / radius(c.bottomScale.x, c.topScale.x), 0, p.z / radius(c.bottomScale.z, c.topScale.z)}));
}

double distanceInCap(const Vec3& fromAxisPoint, const Vec3& scale) {
    return ifInside(
        length({fromAxisPoint.x / scale.x, fromAxisPoint.y / scale.y, fromAxisPoint.z / scale.z}));
}

} // namespace

Zone zoneOf(const Capsule& capsule, const Vec3& local) {
    if (local.y >= -capsule.bottomOffset && local.y <= capsule.topOffset) return Zone::Body;
    if (isInTopWindow(capsule, local)) return Zone::TopCap;
    if (isInBottomWindow(capsule, local)) return Zone::BottomCap;
    return Zone::None;
}

Vec3 axisPoint(const Capsule& capsule, Zone zone, const Vec3& local) {
    switch (zone) {
    case Zone::TopCap: return {0, capsule.topOffset, 0};
    case Zone::BottomCap: return {0, -capsule.bottomOffset, 0};
    case Zone::Body:
    case Zone::None: break;
    }
    return {0, local.y, 0};
}

double distanceInCube(const Vec3& local) {
    const double x = std::abs(local.x), y = std::abs(local.y), z = std::abs(local.z);
    if (!(x <= 1 && y <= 1 && z <= 1)) return kOutside;
    // Next to the middle there is no direction to scale along, and the length itself is the distance.
    constexpr double kMiddle = 9.999999974752427e-7;
    const double largest = std::max({x, y, z});
    if (largest <= kMiddle) {
        const double size = length(local);
        if (size <= kMiddle) return size;
    }
    return largest;
}

double distanceInCapsule(const Capsule& capsule, const Vec3& local) {
    const Zone zone = zoneOf(capsule, local);
    switch (zone) {
    case Zone::Body: return distanceInBody(capsule, local);
    case Zone::TopCap: return distanceInCap(local - axisPoint(capsule, zone, local), capsule.topScale);
    case Zone::BottomCap: return distanceInCap(local - axisPoint(capsule, zone, local), capsule.bottomScale);
    case Zone::None: break;
    }
    return kOutside;
}

double distanceInPrimitive(int kind, const Capsule& capsule, const Vec3& local) {
    switch (kind) {
    case kSphere: return distanceInSphere(local);
    case kCube: return distanceInCube(local);
    case kCapsule: return distanceInCapsule(capsule, local);
    default: return kOutside;
    }
}

double plainDistance(int kind, const Capsule& capsule, const Vec3& local) {
    if (kind != kCapsule) return length(local);
    const double nearest = std::max(-capsule.bottomOffset, std::min(capsule.topOffset, local.y));
    return length({local.x, local.y - nearest, local.z});
}

} // namespace vesk::volume
