#include "fluid/noise_tile.h"

#include "fluid/float_array.h"
#include "fluid/line_filters.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <numbers>
#include <random>

namespace vesk::fluid {

namespace {

constexpr GridSize tileRes = {tileSide, tileSide, tileSide};

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// Adds to the tile a copy of itself that is moved by an odd offset and has x and z exchanged, which evens
/// out the samples at even and at odd places.
void balanceEvenAndOdd(float* noise, float* copy) {
    constexpr int offset = tileSide / 2 + 1, mask = tileSide - 1, slab = tileSide * tileSide;
    for (int ix = 0; ix < tileSide; ++ix) {
        for (int iy = 0; iy < tileSide; ++iy) {
            const float* from = noise + ((iy + offset) & mask) * tileSide + ((ix + offset) & mask);
            for (int iz = 0; iz < tileSide; ++iz)
                *copy++ = from[((iz + offset) & mask) * slab];
        }
    }
    copy -= tileSize;
    for (std::size_t i = 0; i < tileSize; ++i)
        noise[i] += copy[i];
}

} // namespace

void fillGaussian(float* values) {
    constexpr double unit = 1.0 / 4294967296.0;
    std::mt19937 draw(123456);
    for (std::size_t i = 0; i < tileSize; ++i) {
        const double r1 = draw(), r2 = draw();
        values[i] = static_cast<float>(std::sqrt(-2.0 * std::log(1.0 - (r1 + 0.5) * unit)) *
                                       std::cos(2.0 * std::numbers::pi * r2 * unit));
    }
}

void makeNoiseTile(float* tile) {
    FloatArray half(tileSize), band(tileSize);
    fillGaussian(tile);
    for (int axis = 0; axis < 3; ++axis) {
        downsampleLines(axis == 0 ? tile : band.data(), half.data(), tileRes, axis, LineEnds::periodic);
        upsampleLines(half.data(), band.data(), tileRes, axis, LineEnds::periodic);
    }
    for (std::size_t i = 0; i < tileSize; ++i)
        tile[i] -= band[i];
    balanceEvenAndOdd(tile, half.data());
}

bool loadTile(float* tile, const std::string& file) {
    const File in(std::fopen(file.c_str(), "rb"), std::fclose);
    if (!in) {
        std::printf("loadTile: No noise tile '%s' found.\n", file.c_str());
        return false;
    }
    const std::size_t count = std::fread(tile, sizeof(float), tileSize, in.get());
    if (count == tileSize) return true;
    std::printf("loadTile: Noise tile '%s' is wrong size %d.\n", file.c_str(), static_cast<int>(count));
    return false;
}

void saveTile(const float* tile, const std::string& file) {
    File out(std::fopen(file.c_str(), "wb"), std::fclose);
    const bool written = out && std::fwrite(tile, sizeof(float), tileSize, out.get()) == tileSize;
    const bool closed = out && std::fclose(out.release()) == 0;
    std::printf(written && closed ? "saveTile: Noise tile file '%s' saved.\n"
                                  : "saveTile: Noise tile '%s' could not be saved.\n",
                file.c_str());
}

void buildNoiseTile(float* tile, const std::string& file) {
    if (loadTile(tile, file)) return;
    makeNoiseTile(tile);
    saveTile(tile, file);
}

} // namespace vesk::fluid
