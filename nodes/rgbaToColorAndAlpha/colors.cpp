#include "nodes/rgbaToColorAndAlpha/colors.h"

#include <algorithm>

namespace vesk::nodes {

void takeChannel(std::span<const double> rgba, int channel, std::span<double> out) {
    const double* from = rgba.data() + channel;
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = from[4 * i];
}

void takeChannel(std::span<const MVector> rgb, int channel, std::span<double> out) {
    constexpr double MVector::*kChannels[] = {&MVector::x, &MVector::y, &MVector::z};
    if (channel == kAlpha) {
        std::ranges::fill(out, 1.0);
        return;
    }
    std::ranges::transform(rgb, out.begin(), kChannels[channel]);
}

void takeChannel(std::span<const MPoint> rgba, int channel, std::span<double> out) {
    constexpr double MPoint::*kChannels[] = {&MPoint::x, &MPoint::y, &MPoint::z, &MPoint::w};
    std::ranges::transform(rgba, out.begin(), kChannels[channel]);
}

void splitColors(std::span<const double> rgba, std::span<MVector> rgb, std::span<double> alpha) {
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        const double* color = &rgba[4 * i];
        rgb[i] = MVector(color[0], color[1], color[2]);
        alpha[i] = color[3];
    }
}

} // namespace vesk::nodes
