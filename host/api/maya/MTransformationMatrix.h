#pragma once

#include <maya/MEulerRotation.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MQuaternion.h>
#include <maya/MSpace.h>
#include <maya/MVector.h>

#include <array>

/// A transform by its components. First to last they are: -scalePivot, scale, shear, +scalePivot,
/// +scalePivotTranslation, -rotatePivot, rotation orientation, rotation, +rotatePivot,
/// +rotatePivotTranslation, translation. Lengths are centimetres, angles radians. Every component is stored
/// and given as it is: the `MSpace::Space` that many calls take changes nothing.
class MTransformationMatrix {
  public:
    enum RotationOrder { kInvalid = 0, kXYZ, kYZX, kZXY, kXZY, kYXZ, kZYX, kLast };
    static constexpr double kTolerance = 1.0e-10;

    MTransformationMatrix() = default;
    /// Components that give `matrix`: pivots zero, order xyz, translation from row 3; scale, shear and
    /// rotation by making the rows x, y, z square in turn. A negative determinant makes all three scales
    /// negative. A row that vanishes on the way has scale 0 and no shear.
    explicit MTransformationMatrix(const MMatrix& matrix) noexcept;
    MTransformationMatrix& operator=(const MMatrix& matrix) noexcept {
        return *this = MTransformationMatrix(matrix);
    }

    MMatrix asMatrix() const noexcept;
    MMatrix asMatrixInverse() const noexcept { return asMatrix().inverse(); }
    /// Scale and shear about the scale pivot.
    MMatrix asScaleMatrix() const noexcept {
        return about(scaleAndShear(), scalePivot_, scalePivotTranslation_);
    }
    /// Orientation and rotation about the rotate pivot.
    MMatrix asRotateMatrix() const noexcept {
        return about(orientAndRotate(), rotatePivot_, rotatePivotTranslation_);
    }

    MVector getTranslation(MSpace::Space, MStatus* status = nullptr) const noexcept {
        return succeed(status), translation_;
    }
    MVector translation(MSpace::Space space, MStatus* status = nullptr) const noexcept {
        return getTranslation(space, status);
    }
    MStatus setTranslation(const MVector& t, MSpace::Space) noexcept { return translation_ = t, MStatus(); }
    MStatus addTranslation(const MVector& t, MSpace::Space) noexcept { return translation_ += t, MStatus(); }

    MStatus getScale(double scale[3], MSpace::Space) const noexcept { return scale_.get(scale); }
    MStatus setScale(const double scale[3], MSpace::Space) noexcept {
        return scale_ = MVector(scale), MStatus();
    }
    /// Multiplies the scales.
    MStatus addScale(const double scale[3], MSpace::Space) noexcept {
        return scale_ = MVector(scale_.x * scale[0], scale_.y * scale[1], scale_.z * scale[2]), MStatus();
    }
    /// xy, xz, yz: how much of x goes into y and z, and of y into z.
    MStatus getShear(double shear[3], MSpace::Space) const noexcept { return shear_.get(shear); }
    MStatus setShear(const double shear[3], MSpace::Space) noexcept {
        return shear_ = MVector(shear), MStatus();
    }

    /// The angles, and in `order` the order in which they count.
    MStatus getRotation(double rotation[3], RotationOrder& order) const noexcept {
        return order = rotationOrder(), rotation_.asVector().get(rotation);
    }
    MStatus getRotation(double rotation[3], RotationOrder& order, MSpace::Space) const noexcept {
        return getRotation(rotation, order);
    }
    MStatus getRotationQuaternion(double& x, double& y, double& z, double& w) const noexcept {
        const MQuaternion q = rotation();
        return x = q.x, y = q.y, z = q.z, w = q.w, MStatus();
    }
    MQuaternion rotation() const noexcept { return rotation_.asQuaternion(); }
    MEulerRotation eulerRotation() const noexcept { return rotation_; }
    RotationOrder rotationOrder() const noexcept { return static_cast<RotationOrder>(rotation_.order + 1); }

    /// `kInvalidParameter` when `order` is none.
    MStatus setRotation(const double rotation[3], RotationOrder order) noexcept {
        if (order <= kInvalid || order >= kLast) return MStatus::kInvalidParameter;
        return rotation_ = MEulerRotation(rotation, eulerOrder(order)), MStatus();
    }
    MStatus setRotation(const double rotation[3], RotationOrder order, MSpace::Space) noexcept {
        return setRotation(rotation, order);
    }
    /// Turns further, after the present rotation; the order stays.
    MStatus addRotation(const double rotation[3], RotationOrder order) noexcept {
        if (order <= kInvalid || order >= kLast) return MStatus::kInvalidParameter;
        return rotation_ *= MEulerRotation(rotation, eulerOrder(order)), MStatus();
    }
    /// The order stays.
    MStatus setRotationQuaternion(double x, double y, double z, double w) noexcept {
        return rotation_ = MQuaternion(x, y, z, w), MStatus();
    }
    MTransformationMatrix& rotateTo(const MQuaternion& rotation) noexcept {
        return rotation_ = rotation, *this;
    }
    /// Takes the order too.
    MTransformationMatrix& rotateTo(const MEulerRotation& rotation) noexcept {
        return rotation_ = rotation, *this;
    }
    /// New angles for the same rotation.
    MStatus reorderRotation(RotationOrder order) noexcept {
        if (order <= kInvalid || order >= kLast) return MStatus::kInvalidParameter;
        return rotation_.reorderIt(eulerOrder(order)), MStatus();
    }

    MQuaternion rotationOrientation() const noexcept { return orientation_; }
    MStatus setRotationOrientation(const MQuaternion& q) noexcept { return orientation_ = q, MStatus(); }

    MPoint scalePivot(MSpace::Space, MStatus* status = nullptr) const noexcept {
        return succeed(status), MPoint(scalePivot_);
    }
    MVector scalePivotTranslation(MSpace::Space, MStatus* status = nullptr) const noexcept {
        return succeed(status), scalePivotTranslation_;
    }
    MPoint rotatePivot(MSpace::Space, MStatus* status = nullptr) const noexcept {
        return succeed(status), MPoint(rotatePivot_);
    }
    MVector rotatePivotTranslation(MSpace::Space, MStatus* status = nullptr) const noexcept {
        return succeed(status), rotatePivotTranslation_;
    }
    /// With `balance` the pivot's translation changes too, so that the whole matrix stays.
    MStatus setScalePivot(const MPoint& pivot, MSpace::Space, bool balance) noexcept {
        if (balance) scalePivotTranslation_ += shift(scaleAndShear(), scalePivot_ - MVector(pivot));
        return scalePivot_ = pivot, MStatus();
    }
    MStatus setRotatePivot(const MPoint& pivot, MSpace::Space, bool balance) noexcept {
        if (balance) rotatePivotTranslation_ += shift(orientAndRotate(), rotatePivot_ - MVector(pivot));
        return rotatePivot_ = pivot, MStatus();
    }
    MStatus setScalePivotTranslation(const MVector& t, MSpace::Space) noexcept {
        return scalePivotTranslation_ = t, MStatus();
    }
    MStatus setRotatePivotTranslation(const MVector& t, MSpace::Space) noexcept {
        return rotatePivotTranslation_ = t, MStatus();
    }

    /// Whether the matrices are the same, whatever the components.
    bool isEquivalent(const MTransformationMatrix& other, double tolerance = kTolerance) const noexcept {
        return asMatrix().isEquivalent(other.asMatrix(), tolerance);
    }

  private:
    static void succeed(MStatus* status) noexcept {
        if (status) *status = MStatus();
    }
    static MEulerRotation::RotationOrder eulerOrder(RotationOrder order) noexcept {
        return static_cast<MEulerRotation::RotationOrder>(order - 1);
    }
    MMatrix scaleAndShear() const noexcept;
    MMatrix orientAndRotate() const noexcept { return orientation_.asMatrix() * rotation_.asMatrix(); }
    /// How far all points move when `linear` acts about `pivot` rather than about the origin.
    static MVector shift(const MMatrix& linear, const MVector& pivot) noexcept {
        return pivot - pivot * linear;
    }
    /// -pivot, `linear`, +pivot, +offset.
    static MMatrix about(MMatrix linear, const MVector& pivot, const MVector& offset) noexcept {
        (shift(linear, pivot) + offset).get(linear[3]);
        return linear;
    }
    static void completeFrame(std::array<MVector, 3>& axes) noexcept;

    MVector scale_ = MVector::one;
    MVector shear_;
    MVector scalePivot_, scalePivotTranslation_;
    MVector rotatePivot_, rotatePivotTranslation_;
    MQuaternion orientation_;
    MEulerRotation rotation_;
    MVector translation_;
};

inline MTransformationMatrix::MTransformationMatrix(const MMatrix& matrix) noexcept
    : translation_(matrix[3]) {
    std::array<MVector, 3> axes;
    // shear_[j + k - 1] holds the part of axis j in row k: xy, xz, yz.
    for (unsigned int k = 0; k < 3; ++k) {
        const MVector row(matrix[k]);
        MVector rest = row;
        for (unsigned int j = 0; j < k; ++j) {
            shear_[j + k - 1] = rest * axes[j];
            rest -= axes[j] * shear_[j + k - 1];
        }
        // What rounding leaves of a row that lies in the space of the rows before it counts as nothing.
        const double size = rest.length() > 1.0e-12 * row.length() ? rest.length() : 0.0;
        scale_[k] = size;
        axes[k] = size > 0.0 ? rest / size : MVector::zero;
        for (unsigned int j = 0; j < k; ++j)
            shear_[j + k - 1] = size > 0.0 ? shear_[j + k - 1] / size : 0.0;
    }
    if ((axes[0] ^ axes[1]) * axes[2] < 0.0) {
        scale_ *= -1.0;
        for (MVector& axis : axes)
            axis *= -1.0;
    }
    completeFrame(axes);
    MMatrix frame;
    for (unsigned int k = 0; k < 3; ++k)
        axes[k].get(frame[k]);
    rotation_ = MEulerRotation::decompose(frame, MEulerRotation::kXYZ);
}

/// Gives the zero vectors among `axes` directions that make a right-handed frame with the others.
inline void MTransformationMatrix::completeFrame(std::array<MVector, 3>& axes) noexcept {
    const auto missing = [&](unsigned int k) { return axes[k] == MVector::zero; };
    for (unsigned int k = 0; k < 3; ++k) {
        const unsigned int next = (k + 1) % 3;
        const unsigned int last = (k + 2) % 3;
        if (!missing(k)) continue;
        if (missing(next) && missing(last)) {
            axes = {MVector::xAxis, MVector::yAxis, MVector::zAxis};
        } else if (missing(next) || missing(last)) {
            axes[k] = vesk::across(axes[missing(next) ? last : next]);
        } else {
            axes[k] = axes[next] ^ axes[last];
        }
    }
}

inline MMatrix MTransformationMatrix::scaleAndShear() const noexcept {
    MMatrix m;
    (scale_.x * MVector(1.0, 0.0, 0.0)).get(m[0]);
    (scale_.y * MVector(shear_[0], 1.0, 0.0)).get(m[1]);
    (scale_.z * MVector(shear_[1], shear_[2], 1.0)).get(m[2]);
    return m;
}

inline MMatrix MTransformationMatrix::asMatrix() const noexcept {
    MMatrix m = asScaleMatrix() * asRotateMatrix();
    (MVector(m[3]) + translation_).get(m[3]);
    return m;
}
