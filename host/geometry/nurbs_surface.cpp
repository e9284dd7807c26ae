#include "host/geometry/nurbs_surface.h"

#include "host/geometry/nurbs_cvs.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace vesk::geom {

namespace {

CvGrid gridOf(const NurbsBasis& u, const NurbsBasis& v) {
    return {u.cvCount(), u.distinctCvCount(), v.cvCount(), v.distinctCvCount()};
}

/// Equation 4.20 of Piegl and Tiller, "The NURBS Book"; sums without weight stay as they are.
/// The sums are those of the point, du, dv, duu, duv, dvv.
SurfacePoint divided(const std::array<NurbsSum, 6>& sums) {
    const auto& [s, u, v, uu, uv, vv] = sums;
    const double w = s.w != 0.0 ? s.w : 1.0;
    const MVector point = s.xyz / w;
    SurfacePoint result;
    result.position = MPoint(point);
    result.du = (u.xyz - u.w * point) / w;
    result.dv = (v.xyz - v.w * point) / w;
    result.duu = (uu.xyz - 2.0 * u.w * result.du - uu.w * point) / w;
    result.duv = (uv.xyz - u.w * result.dv - v.w * result.du - uv.w * point) / w;
    result.dvv = (vv.xyz - 2.0 * v.w * result.dv - vv.w * point) / w;
    return result;
}

constexpr int ordersU[] = {0, 1, 0, 2, 1, 0};
constexpr int ordersV[] = {0, 0, 1, 0, 1, 2};

/// The way to the middle of the domain: 1 or -1, 0 where there is no border to leave.
double inward(const NurbsBasis& basis, double parameter) {
    if (basis.isPeriodic()) return 0.0;
    return basis.normalized(parameter) <= 0.5 * (basis.start() + basis.end()) ? 1.0 : -1.0;
}

} // namespace

Result<NurbsSurface> NurbsSurface::create(NurbsBasis u, NurbsBasis v, std::vector<MPoint> cvs,
                                          bool rational) {
    if (const Outcome fault = u.check(); !fault) return Outcome::fail("u: " + fault.error);
    if (const Outcome fault = v.check(); !fault) return Outcome::fail("v: " + fault.error);
    if (cvs.size() != static_cast<std::size_t>(u.cvCount()) * v.cvCount()) {
        return Outcome::fail(std::to_string(cvs.size()) + " CVs where the knots ask for " +
                             std::to_string(u.cvCount()) + " times " + std::to_string(v.cvCount()));
    }
    NurbsSurface surface;
    surface.u_.reset(std::move(u));
    surface.v_.reset(std::move(v));
    surface.rational_ = rational;
    settleCvs(gridOf(*surface.u_, *surface.v_), rational, cvs);
    surface.cvs_.reset(std::move(cvs));
    return surface;
}

std::vector<int> NurbsSurface::distinctCvs() const {
    std::vector<int> indices;
    for (int i = 0; i < distinctCvCountU(); ++i) {
        for (int j = 0; j < distinctCvCountV(); ++j)
            indices.push_back(cvIndex(i, j));
    }
    return indices;
}

bool NurbsSurface::isRepeatedCv(int index) const {
    const int countV = cvCountV();
    if (countV == 0) return false;
    return index / countV >= distinctCvCountU() || index % countV >= distinctCvCountV();
}

Outcome NurbsSurface::setCvs(std::vector<MPoint> cvs) {
    if (static_cast<int>(cvs.size()) != cvCount()) {
        return Outcome::fail(std::to_string(cvs.size()) + " CVs for a surface that has " +
                             std::to_string(cvCount()));
    }
    settleCvs(gridOf(*u_, *v_), rational_, cvs);
    cvs_.reset(std::move(cvs));
    return {};
}

Outcome NurbsSurface::setCv(int index, const MPoint& cv) {
    if (index < 0 || index >= cvCount())
        return Outcome::fail("CV " + std::to_string(index) + " does not exist");
    if (isRepeatedCv(index)) return Outcome::fail("CV " + std::to_string(index) + " repeats another one");
    setCvAndRepeats(gridOf(*u_, *v_), rational_, index, cv, cvs_.write());
    return {};
}

SurfacePoint NurbsSurface::at(double u, double v) const {
    if (empty()) return {};
    const NurbsRow rowU = u_->row(u, 2);
    const NurbsRow rowV = v_->row(v, 2);
    std::array<NurbsSum, 6> sums;
    for (int i = 0; i <= u_->degree; ++i) {
        for (int j = 0; j <= v_->degree; ++j) {
            const MPoint& cv = this->cv(rowU.firstCv + i, rowV.firstCv + j);
            for (int k = 0; k < 6; ++k)
                sums[k].add(cv, rowU.values[ordersU[k]][i] * rowV.values[ordersV[k]][j]);
        }
    }
    if (!rational_) {
        // Without this, rounding of the weights' sum would move points of plain surfaces.
        for (NurbsSum& sum : sums)
            sum.w = 0.0;
    }
    return divided(sums);
}

MPoint NurbsSurface::pointAt(double u, double v) const {
    if (empty()) return {};
    const NurbsRow rowU = u_->row(u);
    const NurbsRow rowV = v_->row(v);
    NurbsSum sum;
    for (int i = 0; i <= u_->degree; ++i) {
        for (int j = 0; j <= v_->degree; ++j)
            sum.add(cv(rowU.firstCv + i, rowV.firstCv + j), rowU.values[0][i] * rowV.values[0][j]);
    }
    return rational_ && sum.w != 0.0 ? MPoint(sum.xyz / sum.w) : MPoint(sum.xyz);
}

MVector NurbsSurface::normalAt(double u, double v) const {
    const SurfacePoint p = at(u, v);
    const MVector normal = p.du ^ p.dv;
    const double size = p.du.length() + p.dv.length();
    if (normal.length() > 1e-12 * size * size) return normal.normal();
    // The growth of du ^ dv on the way inward has the direction of the limit.
    const double towardU = inward(*u_, u);
    const double towardV = inward(*v_, v);
    const MVector growth =
        ((p.duu * towardU + p.duv * towardV) ^ p.dv) + (p.du ^ (p.duv * towardU + p.dvv * towardV));
    const double curved = p.duu.length() + p.duv.length() + p.dvv.length();
    return growth.length() > 1e-12 * size * curved ? growth.normal() : MVector();
}

NurbsSurface NurbsSurface::transformed(const MMatrix& matrix) const {
    NurbsSurface surface = *this;
    if (!empty()) transformCvs(matrix, surface.cvs_.write());
    return surface;
}

std::size_t NurbsSurface::byteSize() const {
    return sizeof(*this) + (u_->knots.size() + v_->knots.size()) * sizeof(double) +
           cvs_->size() * sizeof(MPoint);
}

} // namespace vesk::geom
