#pragma once
// Moves CVs so that a curve passes given points.

#include "host/geometry/nurbs_basis.h"

#include <vector>

namespace vesk::geom {

/// Moves the CVs `first` .. `first` + n - 1 so that the weighted sum of the CVs at `sites[k]` becomes
/// `targets[k]`; the others stay. n is the length of both lists. For rational curves the targets hold weights
/// and the weights of the CVs move, too; otherwise all weights are 1.
///
/// Site k should lie where CV `first` + k has weight (its `greville` parameter is always good). A periodic
/// basis asks for all distinct CVs at once, and for sites in its domain. Fails, changing nothing, when the
/// sites do not determine the CVs.
Outcome fitCvs(const NurbsBasis& basis, int first, const std::vector<double>& sites,
               const std::vector<NurbsSum>& targets, std::vector<MPoint>& cvs);

} // namespace vesk::geom
