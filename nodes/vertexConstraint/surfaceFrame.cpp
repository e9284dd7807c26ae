#include "nodes/vertexConstraint/surfaceFrame.h"

#include <cmath>
#include <initializer_list>

namespace vesk::nodes {

namespace {

/// The part of a vector that is square to a unit normal, of unit length; zero when there is next to none.
MVector squareTo(const MVector& normal, const MVector& vector) {
    constexpr double kLeast = 1e-6;
    const double length = vector.length();
    const MVector unit = vector / length;
    const MVector square = unit - normal * (unit * normal);
    return length > 0 && square.length() > kLeast ? square.normal() : MVector();
}

} // namespace

MMatrix surfaceFrame(const MVector& normal, const MVector& side, unsigned axis) {
    const double length = normal.length();
    const MVector up = length > 0 && std::isfinite(length) ? normal / length : MVector(0, 1, 0);
    MVector across;
    for (const MVector& candidate : {side, MVector(1, 0, 0), MVector(0, 1, 0)}) {
        across = squareTo(up, candidate);
        if (across.length() > 0) break;
    }
    MMatrix frame;
    const MVector rows[] = {up, across ^ up, across}; // the axis, the next one, the one before
    for (unsigned i = 0; i < 3; ++i) {
        for (unsigned column = 0; column < 3; ++column)
            frame[(axis + i) % 3][column] = rows[i][column];
    }
    return frame;
}

} // namespace vesk::nodes
