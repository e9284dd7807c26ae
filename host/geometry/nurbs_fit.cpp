#include "host/geometry/nurbs_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vesk::geom {

namespace {

using Four = std::array<double, 4>;

Four fourOf(const NurbsSum& sum) { return {sum.xyz.x, sum.xyz.y, sum.xyz.z, sum.w}; }

/// A square matrix with entries no farther than `reach` from the diagonal, and room for those that swapping
/// rows brings in.
class BandMatrix {
  public:
    BandMatrix(int size, int reach)
        : size_(size), reach_(reach), entries_(static_cast<std::size_t>(size) * (3 * reach + 1)) {}

    double& at(int row, int column) {
        return entries_[static_cast<std::size_t>(row) * (3 * reach_ + 1) + (column - row + reach_)];
    }
    /// Gauss elimination with row pivots; solutions stand in `sides` afterwards. False for a singular matrix,
    /// of which nothing is left then.
    bool solve(std::vector<Four>& sides) {
        for (int k = 0; k < size_; ++k) {
            if (!pivot(k, sides)) return false;
            for (int r = k + 1; r < std::min(size_, k + reach_ + 1); ++r)
                subtract(k, r, sides);
        }
        for (int k = size_ - 1; k >= 0; --k) {
            for (int i = 0; i < 4; ++i) {
                for (int c = k + 1; c < columnsEnd(k); ++c)
                    sides[k][i] -= at(k, c) * sides[c][i];
                sides[k][i] /= at(k, k);
            }
        }
        return true;
    }

  private:
    int columnsEnd(int pivotRow) const { return std::min(size_, pivotRow + 2 * reach_ + 1); }

    bool pivot(int k, std::vector<Four>& sides) {
        int best = k;
        for (int r = k + 1; r < std::min(size_, k + reach_ + 1); ++r) {
            if (std::abs(at(r, k)) > std::abs(at(best, k))) best = r;
        }
        // Rows of basis functions add up to one, so that this is relative to the matrix.
        if (!(std::abs(at(best, k)) > 1e-14)) return false;
        if (best == k) return true;
        for (int c = k; c < columnsEnd(k); ++c)
            std::swap(at(k, c), at(best, c));
        std::swap(sides[k], sides[best]);
        return true;
    }

    void subtract(int k, int r, std::vector<Four>& sides) {
        const double factor = at(r, k) / at(k, k);
        if (factor == 0.0) return;
        for (int c = k; c < columnsEnd(k); ++c)
            at(r, c) -= factor * at(k, c);
        for (int i = 0; i < 4; ++i)
            sides[r][i] -= factor * sides[k][i];
    }

    int size_, reach_;
    std::vector<double> entries_;
};

/// Where unknown `i` of `count` stands in the equations. Round a ring, neighbours stay near each other when
/// the ring is pressed flat: 0, last, 1, last but one, ...
int placeOf(int i, int count, bool ring) {
    if (!ring) return i;
    return 2 * i < count ? 2 * i : 2 * (count - 1 - i) + 1;
}

} // namespace

Outcome fitCvs(const NurbsBasis& basis, int first, const std::vector<double>& sites,
               const std::vector<NurbsSum>& targets, std::vector<MPoint>& cvs) {
    const int count = static_cast<int>(sites.size());
    const int distinct = basis.distinctCvCount();
    const auto place = [&](int i) { return placeOf(i, count, basis.isPeriodic()); };
    // The unknown that a CV is, outside 0 .. count - 1 for one that stays.
    const auto unknownOf = [&](int cv) { return (cv < distinct ? cv : cv - distinct) - first; };

    std::vector<NurbsRow> rows;
    int reach = 0;
    for (int k = 0; k < count; ++k) {
        rows.push_back(basis.row(sites[k]));
        for (int j = 0; j <= basis.degree; ++j) {
            const int unknown = unknownOf(rows[k].firstCv + j);
            if (unknown >= 0 && unknown < count) reach = std::max(reach, std::abs(place(k) - place(unknown)));
        }
    }
    BandMatrix matrix(count, reach);
    std::vector<Four> sides(count);
    for (int k = 0; k < count; ++k) {
        NurbsSum side = targets[k];
        for (int j = 0; j <= basis.degree; ++j) {
            const int cv = rows[k].firstCv + j;
            const int unknown = unknownOf(cv);
            if (unknown >= 0 && unknown < count)
                matrix.at(place(k), place(unknown)) += rows[k].values[0][j];
            else
                side.add(cvs[cv], -rows[k].values[0][j]);
        }
        sides[place(k)] = fourOf(side);
    }
    if (!matrix.solve(sides)) return Outcome::fail("the curve cannot be fitted with these knots");
    for (int i = 0; i < basis.cvCount(); ++i) {
        const int unknown = unknownOf(i);
        if (unknown < 0 || unknown >= count) continue;
        const auto [x, y, z, w] = sides[place(unknown)];
        cvs[i] = w != 0.0 ? MPoint(x / w, y / w, z / w, w) : MPoint(x, y, z, w);
    }
    return {};
}

} // namespace vesk::geom
