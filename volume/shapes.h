#pragma once
// The volume test: whether a point lies in a volume, and at which normalised distance.

#include "volume/space.h"

namespace vesk::volume {

enum Kind : int { kSphere = 0, kCube = 1, kCapsule = 2, kCloud = 3 };

/// An elliptical frustum along y with a cap at each end. Offsets and scales are not negative.
struct Capsule {
    double topOffset = 0, bottomOffset = 0;
    Vec3 topScale, bottomScale;
};

/// The part of a capsule that decides about a local point, whether or not the point lies in it.
enum class Zone { None, Body, TopCap, BottomCap };

/// The first that applies of: the body by y alone; the window of the top cap; the window of the bottom cap.
Zone zoneOf(const Capsule& capsule, const Vec3& local);

/// The point of the capsule's axis that a zone belongs to: at the point's height, or at the cap's offset.
Vec3 axisPoint(const Capsule& capsule, Zone zone, const Vec3& local);

/// What the tests below answer for a point that is not inside. Points on the surface are inside.
inline constexpr double kOutside = -1;

// Local points: world points times the inverse of the volume's matrix. The distance is 0 in the middle and 1
// on the surface. A point or shape that is not finite has nothing inside.

inline double distanceInSphere(const Vec3& local) {
    const double distance = length(local);
    return distance <= 1 ? distance : kOutside;
}
double distanceInCube(const Vec3& local);
/// A capsule whose offsets are both 0 has a body of no height, which is as wide as the top cap.
double distanceInCapsule(const Capsule& capsule, const Vec3& local);
/// `kOutside` for clouds and for kinds that don't exist.
double distanceInPrimitive(int kind, const Capsule& capsule, const Vec3& local);

/// How far a local point is from the middle of a primitive, inside or not, with nothing divided by the
/// shape's extent: its length, or for a capsule the distance to the nearest point of the axis.
double plainDistance(int kind, const Capsule& capsule, const Vec3& local);

/// A point of a cloud. One with a negative radius, or with anything that is no number, holds nothing.
struct Sphere {
    Vec3 center;
    double radius = 0;
};

/// In a sphere of radius 0, its own centre is inside at a distance that is no number.
inline double distanceInside(const Sphere& sphere, const Vec3& p) {
    const double distance = length(p - sphere.center);
    return sphere.radius >= distance ? distance / sphere.radius : kOutside;
}

} // namespace vesk::volume
