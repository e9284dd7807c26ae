#pragma once
// Points and directions of the skin mesh: stored in single precision; lengths, products and angles are summed
// in double and rounded once, so that what is straight or equal on paper comes out so.

#include <cmath>

namespace vesk::skin {

struct Float3 {
    float x = 0.0F, y = 0.0F, z = 0.0F;

    friend Float3 operator+(Float3 a, Float3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Float3 operator-(Float3 a, Float3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Float3 operator-(Float3 a) { return {-a.x, -a.y, -a.z}; }
    friend Float3 operator*(Float3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
    Float3& operator+=(Float3 b) { return *this = *this + b; }
    friend bool operator==(Float3 a, Float3 b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
};

inline double dot(Float3 a, Float3 b) {
    return static_cast<double>(a.x) * b.x + static_cast<double>(a.y) * b.y + static_cast<double>(a.z) * b.z;
}

inline double length(Float3 a) { return std::sqrt(dot(a, a)); }

inline bool isFinite(Float3 a) { return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z); }

inline Float3 scaled(double x, double y, double z, double by) {
    return {static_cast<float>(x * by), static_cast<float>(y * by), static_cast<float>(z * by)};
}

/// Unit length; `otherwise` in place of a zero vector.
inline Float3 normalised(Float3 a, Float3 otherwise) {
    const double size = length(a);
    return size > 0.0 ? scaled(a.x, a.y, a.z, 1.0 / size) : otherwise;
}

/// The cross product at unit length, `otherwise` where it vanishes.
inline Float3 unitCross(Float3 a, Float3 b, Float3 otherwise) {
    const double x = static_cast<double>(a.y) * b.z - static_cast<double>(a.z) * b.y;
    const double y = static_cast<double>(a.z) * b.x - static_cast<double>(a.x) * b.z;
    const double z = static_cast<double>(a.x) * b.y - static_cast<double>(a.y) * b.x;
    const double size = std::sqrt(x * x + y * y + z * z);
    return size > 0.0 ? scaled(x, y, z, 1.0 / size) : otherwise;
}

} // namespace vesk::skin
