#pragma once
// The language's random numbers and noise. Both are our own and repeat on every machine.

#include <maya/MVector.h>

#include <cstdint>

namespace vesk::mel {

/// A 64-bit counter whose steps are scrambled (the "splitmix" generator).
class Random {
  public:
    void seed(std::uint32_t value) {
        state_ = value;
        hasSpare_ = false;
    }
    /// At least 0 and below 1.
    double uniform();
    /// Normal distribution of mean 0 and deviation 1.
    double gauss();
    /// Evenly within the ball of radius 1.
    MVector inBall();

  private:
    std::uint64_t next();

    std::uint64_t state_ = 0;
    double spare_ = 0.0;
    bool hasSpare_ = false;
};

/// Gradient noise on the lattice of whole numbers, 0 at its points, between -1 and 1. NaN, infinite and very
/// large coordinates (beyond 2^50, where no fraction worth the name is left) give 0.
double noise(const MVector& point);
/// Three independent noises.
MVector noiseVector(const MVector& point);

} // namespace vesk::mel
