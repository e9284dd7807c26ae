#pragma once

#include <maya/MMatrix.h>
#include <maya/MPoint.h>

#include <algorithm>

/// Box along the axes. An empty box holds no point; its corners and centre read as the origin.
class MBoundingBox {
  public:
    constexpr MBoundingBox() noexcept = default;
    /// Any two opposite corners.
    constexpr MBoundingBox(const MPoint& corner1, const MPoint& corner2) noexcept {
        expand(corner1);
        expand(corner2);
    }

    constexpr MPoint min() const noexcept { return min_; }
    constexpr MPoint max() const noexcept { return max_; }
    constexpr MPoint center() const noexcept {
        return {(min_.x + max_.x) / 2.0, (min_.y + max_.y) / 2.0, (min_.z + max_.z) / 2.0};
    }
    constexpr double width() const noexcept { return max_.x - min_.x; }
    constexpr double height() const noexcept { return max_.y - min_.y; }
    constexpr double depth() const noexcept { return max_.z - min_.z; }

    constexpr void clear() noexcept { *this = MBoundingBox(); }
    /// The first point of an empty box becomes both its corners.
    constexpr void expand(const MPoint& p) noexcept {
        const MPoint at(p.x, p.y, p.z);
        min_ = empty_ ? at : MPoint(std::min(min_.x, p.x), std::min(min_.y, p.y), std::min(min_.z, p.z));
        max_ = empty_ ? at : MPoint(std::max(max_.x, p.x), std::max(max_.y, p.y), std::max(max_.z, p.z));
        empty_ = false;
    }
    /// An empty `box` adds nothing.
    constexpr void expand(const MBoundingBox& box) noexcept {
        if (box.empty_) return;
        expand(box.min_);
        expand(box.max_);
    }

    /// The faces belong to the box.
    constexpr bool contains(const MPoint& p) const noexcept { return intersects(MBoundingBox(p, p)); }
    /// Whether the boxes touch or come within `tolerance` of each other along every axis.
    constexpr bool intersects(const MBoundingBox& box, double tolerance = 0.0) const noexcept {
        if (empty_ || box.empty_) return false;
        const auto meet = [&](unsigned int axis) {
            return box.min_[axis] - tolerance <= max_[axis] && min_[axis] - tolerance <= box.max_[axis];
        };
        return meet(0) && meet(1) && meet(2);
    }

    /// Becomes the box around its eight transformed corners. An empty box stays empty.
    constexpr void transformUsing(const MMatrix& matrix) noexcept {
        if (empty_) return;
        MBoundingBox box;
        for (int corner = 0; corner < 8; ++corner) {
            box.expand(MPoint((corner & 1) ? max_.x : min_.x, (corner & 2) ? max_.y : min_.y,
                              (corner & 4) ? max_.z : min_.z) *
                       matrix);
        }
        *this = box;
    }

  private:
    MPoint min_, max_;
    bool empty_ = true;
};
