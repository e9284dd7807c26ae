#pragma once

#include <maya/MStatus.h>

#include <algorithm>
#include <cmath>

/// Colour with opacity: exactly four floats, not limited to 0..1. Arithmetic treats all four alike.
class MColor {
  public:
    /// How three numbers make a colour. Hue counts from 0 to 360, saturation and value from 0 to 1.
    enum MColorType { kRGB, kHSV };

    float r = 0.0F, g = 0.0F, b = 0.0F, a = 1.0F;

    /// Opaque black.
    constexpr MColor() noexcept = default;
    constexpr MColor(float rr, float gg, float bb = 0.0F, float aa = 1.0F) noexcept
        : r(rr), g(gg), b(bb), a(aa) {}
    MColor(MColorType type, float c1, float c2, float c3, float alpha = 1.0F) noexcept {
        set(type, c1, c2, c3, alpha);
    }
    constexpr explicit MColor(const float rgba[4]) noexcept
        : r(rgba[0]), g(rgba[1]), b(rgba[2]), a(rgba[3]) {}

    MStatus set(MColorType type, float c1, float c2, float c3, float alpha = 1.0F) noexcept {
        return *this = type == kHSV ? fromHsv(c1, c2, c3, alpha) : MColor(c1, c2, c3, alpha), MStatus();
    }
    MStatus get(MColorType type, float& c1, float& c2, float& c3, float& alpha) const noexcept {
        const MColor c = type == kHSV ? toHsv() : *this;
        return c1 = c.r, c2 = c.g, c3 = c.b, alpha = c.a, MStatus();
    }
    MStatus get(MColorType type, float& c1, float& c2, float& c3) const noexcept {
        float alpha = 0.0F;
        return get(type, c1, c2, c3, alpha);
    }
    constexpr MStatus get(float rgba[4]) const noexcept {
        rgba[0] = r, rgba[1] = g, rgba[2] = b, rgba[3] = a;
        return {};
    }

    /// Component 0 to 3; any other index means alpha.
    constexpr float& operator[](unsigned int i) noexcept { return i == 0 ? r : i == 1 ? g : i == 2 ? b : a; }
    constexpr float operator[](unsigned int i) const noexcept {
        return i == 0 ? r : i == 1 ? g : i == 2 ? b : a;
    }
    constexpr float& operator()(unsigned int i) noexcept { return (*this)[i]; }
    constexpr float operator()(unsigned int i) const noexcept { return (*this)[i]; }

    constexpr MColor& operator+=(const MColor& c) noexcept {
        return r += c.r, g += c.g, b += c.b, a += c.a, *this;
    }
    constexpr MColor& operator-=(const MColor& c) noexcept {
        return r -= c.r, g -= c.g, b -= c.b, a -= c.a, *this;
    }
    constexpr MColor& operator*=(const MColor& c) noexcept {
        return r *= c.r, g *= c.g, b *= c.b, a *= c.a, *this;
    }
    constexpr MColor& operator*=(float s) noexcept { return r *= s, g *= s, b *= s, a *= s, *this; }
    constexpr MColor& operator/=(float s) noexcept { return r /= s, g /= s, b /= s, a /= s, *this; }
    constexpr MColor operator-() const noexcept { return {-r, -g, -b, -a}; }
    friend constexpr MColor operator+(MColor c, const MColor& d) noexcept { return c += d; }
    friend constexpr MColor operator-(MColor c, const MColor& d) noexcept { return c -= d; }
    friend constexpr MColor operator*(MColor c, const MColor& d) noexcept { return c *= d; }
    friend constexpr MColor operator*(MColor c, float s) noexcept { return c *= s; }
    friend constexpr MColor operator*(float s, MColor c) noexcept { return c *= s; }
    friend constexpr MColor operator/(MColor c, float s) noexcept { return c /= s; }
    constexpr bool operator==(const MColor& c) const noexcept = default;

  private:
    static MColor fromHsv(float hue, float saturation, float value, float alpha) noexcept;
    MColor toHsv() const noexcept;
};
static_assert(sizeof(MColor) == 4 * sizeof(float));

inline MColor MColor::fromHsv(float hue, float saturation, float value, float alpha) noexcept {
    const float sextant = hue / 60.0F - 6.0F * std::floor(hue / 360.0F);
    // Each channel falls from `value` by the saturation outside its own third of the circle.
    const auto channel = [&](float shift) {
        const float k = std::fmod(shift + sextant, 6.0F);
        return value * (1.0F - saturation * std::clamp(std::min(k, 4.0F - k), 0.0F, 1.0F));
    };
    return {channel(5.0F), channel(3.0F), channel(1.0F), alpha};
}

inline MColor MColor::toHsv() const noexcept {
    const float value = std::max({r, g, b});
    const float range = value - std::min({r, g, b});
    if (!(range > 0.0F)) return {0.0F, 0.0F, value, a};
    float sextant = 0.0F;
    if (value == r) {
        sextant = (g - b) / range + (g < b ? 6.0F : 0.0F);
    } else if (value == g) {
        sextant = (b - r) / range + 2.0F;
    } else {
        sextant = (r - g) / range + 4.0F;
    }
    return {sextant * 60.0F, value != 0.0F ? range / value : 0.0F, value, a};
}
