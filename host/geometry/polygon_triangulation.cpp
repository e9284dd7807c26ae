#include "host/geometry/polygon_triangulation.h"

#include <cmath>

namespace vesk::geom {

namespace {

/// Sine of the angle below which three corners count as lying on one line: above the rounding of floats.
constexpr double straightSine = 1e-6;

} // namespace

void EarClipper::flatten(std::span<const MVector> loop, const MVector& normal) {
    const MVector up = normal.length() > 0.0 ? normal.normal() : MVector::zAxis;
    // Any axis not near the normal will do; the result does not depend on the turn within the plane.
    const MVector side = std::abs(up.x) < 0.6 ? MVector::xAxis : MVector::yAxis;
    const MVector v = (up ^ side).normal();
    const MVector u = v ^ up;
    flat_.clear();
    for (const MVector& point : loop) {
        const MVector offset = point - loop[0];
        flat_.push_back({offset * u, offset * v});
    }
}

double EarClipper::turn(int a, int b, int c) const {
    return (flat_[b].x - flat_[a].x) * (flat_[c].y - flat_[a].y) -
           (flat_[b].y - flat_[a].y) * (flat_[c].x - flat_[a].x);
}

bool EarClipper::turnsLeft(int a, int b, int c) const {
    const double before = std::hypot(flat_[b].x - flat_[a].x, flat_[b].y - flat_[a].y);
    const double after = std::hypot(flat_[c].x - flat_[b].x, flat_[c].y - flat_[b].y);
    return turn(a, b, c) > straightSine * before * after;
}

bool EarClipper::isInside(int corner, int a, int b, int c) const {
    const Flat& p = flat_[corner];
    for (const int own : {a, b, c}) {
        // Loops that touch themselves visit a place twice.
        if (own == corner || (flat_[own].x == p.x && flat_[own].y == p.y)) return false;
    }
    return turn(a, b, corner) >= 0.0 && turn(b, c, corner) >= 0.0 && turn(c, a, corner) >= 0.0;
}

bool EarClipper::isEar(int a, int b, int c) {
    if (!turnsLeft(a, b, c)) return false;
    std::size_t kept = 0;
    bool blocked = false;
    for (std::size_t i = 0; i < reflex_.size(); ++i) {
        const int corner = reflex_[i];
        // Cutting ears only ever opens a corner up: what has become convex stays convex.
        const bool convex = turnsLeft(previous_[corner], corner, next_[corner]);
        if (removed_[corner] || convex) continue;
        reflex_[kept++] = corner;
        if (!isInside(corner, a, b, c)) continue;
        blocked = true;
        for (++i; i < reflex_.size(); ++i)
            reflex_[kept++] = reflex_[i];
    }
    reflex_.resize(kept);
    return !blocked;
}

void EarClipper::findReflex() {
    const int size = static_cast<int>(flat_.size());
    next_.resize(flat_.size());
    previous_.resize(flat_.size());
    removed_.assign(flat_.size(), 0);
    reflex_.clear();
    for (int k = 0; k < size; ++k) {
        next_[k] = k + 1 == size ? 0 : k + 1;
        previous_[k] = k == 0 ? size - 1 : k - 1;
        if (!turnsLeft(previous_[k], k, next_[k])) reflex_.push_back(k);
    }
}

void EarClipper::split(std::span<const MVector> loop, const MVector& normal,
                       std::span<std::array<int, 3>> out) {
    flatten(loop, normal);
    findReflex();
    int left = static_cast<int>(loop.size());
    int here = 0;
    int failures = 0;
    for (auto& triangle : out) {
        // A whole round without an ear: the loop crosses itself or is flat. Cut on regardless.
        while (left > 3 && failures < left && !isEar(here, next_[here], next_[next_[here]])) {
            here = next_[here];
            ++failures;
        }
        failures = 0;
        const int tip = next_[here];
        const int after = next_[tip];
        triangle = {here, tip, after};
        removed_[tip] = 1;
        next_[here] = after;
        previous_[after] = here;
        --left;
    }
}

} // namespace vesk::geom
