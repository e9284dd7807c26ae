#pragma once
// The noise tile: 128^3 band-limited random values that repeat without a seam, and the file that keeps them.
// Cook, DeRose, "Wavelet Noise", SIGGRAPH 2005.

#include <cstddef>
#include <string>

namespace vesk::fluid {

inline constexpr int tileSide = 128;
inline constexpr std::size_t tileSize = std::size_t{tileSide} * tileSide * tileSide;

/// Fills `tile`, tileSize floats, x fastest: from the file if it holds them, else by making and saving them.
void buildNoiseTile(float* tile, const std::string& file);

/// Makes the tile. Always the same values.
void makeNoiseTile(float* tile);

/// The tileSize unit Gaussians that the tile is made of.
void fillGaussian(float* values);

// The file is tileSize floats in host byte order and nothing else. Reports go to standard output.

/// Whether all values were there; else the content of `tile` means nothing.
bool loadTile(float* tile, const std::string& file);
void saveTile(const float* tile, const std::string& file);

} // namespace vesk::fluid
