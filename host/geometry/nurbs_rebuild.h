#pragma once
// New knots for a curve that keeps its shape.

#include "host/geometry/nurbs_curve.h"

namespace vesk::geom {

/// Numbered as the attributes of `rebuildCurve`.
struct RebuildOptions {
    enum Type { Uniform = 0, NoMultipleKnots = 3 };
    enum EndKnots { UniformEnds = 0, MultipleEnds = 1 };
    enum Range { ZeroToOne = 0, Keep = 1, ZeroToSpans = 2 };

    int type = Uniform;
    int endKnots = UniformEnds;
    int keepRange = Keep;
    bool keepControlPoints = false; ///< uniform knots for the CVs as they are
    int spans = 4;
    int degree = 3;
};

/// `NoMultipleKnots`: degree and number of CVs stay. With multiple ends, the result is open and its end CVs
/// are its ends; a curve that had this and simple inner knots comes back unchanged, a periodic one is cut
/// open at its seam. Inner knots that stand m times are moved apart, over (m - 1) / m of half the way to the
/// nearer neighbour each way, and the CVs that they touch are fitted to the old curve anew.
///
/// `Uniform`: the given degree and number of spans, of equal length; interpolates the old curve at the
/// Greville parameters. Periodic if the old curve is and ends are uniform; otherwise open, its end CVs its
/// ends.
///
/// Fails on an empty curve, any other type, a degree or number of spans out of range, and on uniform ends
/// together with multiple inner knots.
Result<NurbsCurve> rebuildCurve(const NurbsCurve& curve, const RebuildOptions& options);

} // namespace vesk::geom
