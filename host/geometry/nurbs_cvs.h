#pragma once
// Rules that the CV lists of curves and surfaces share. A curve is a surface with one CV along v.

#include <maya/MMatrix.h>
#include <maya/MPoint.h>

#include <vector>

namespace vesk::geom {

/// How many CVs there are along each direction, and how many of them repeat no other: more than the rest.
struct CvGrid {
    int countU = 0, distinctU = 0;
    int countV = 1, distinctV = 1;
};

/// Makes given CVs what a shape keeps: the repeated ones equal to the first, weights 1 unless rational.
inline void settleCvs(const CvGrid& grid, bool rational, std::vector<MPoint>& cvs) {
    const auto firstOf = [](int i, int distinct) { return i < distinct ? i : i - distinct; };
    for (int u = 0; u < grid.countU; ++u) {
        for (int v = 0; v < grid.countV; ++v) {
            MPoint& cv = cvs[grid.countV * u + v];
            cv = cvs[grid.countV * firstOf(u, grid.distinctU) + firstOf(v, grid.distinctV)];
            if (!rational) cv.w = 1.0;
        }
    }
}

/// Sets a CV that repeats no other, and its repetitions.
inline void setCvAndRepeats(const CvGrid& grid, bool rational, int index, MPoint cv,
                            std::vector<MPoint>& cvs) {
    if (!rational) cv.w = 1.0;
    for (int u = index / grid.countV; u < grid.countU; u += grid.distinctU) {
        for (int v = index % grid.countV; v < grid.countV; v += grid.distinctV)
            cvs[grid.countV * u + v] = cv;
    }
}

/// x, y, z by the matrix; weights stay.
inline void transformCvs(const MMatrix& matrix, std::vector<MPoint>& cvs) {
    for (MPoint& cv : cvs) {
        const MPoint moved = MPoint(cv.x, cv.y, cv.z) * matrix;
        cv = MPoint(moved.x, moved.y, moved.z, cv.w);
    }
}

} // namespace vesk::geom
