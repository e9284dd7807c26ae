#pragma once
// The polygon net of a surface's CVs.

#include "host/geometry/mesh.h"
#include "host/geometry/nurbs_surface.h"

namespace vesk::geom {

struct ControlNetOptions {
    bool quads = false; ///< else each cell makes two triangles, cut from its first corner to its third
    /// Corners run (u,v) (u+1,v) (u+1,v+1) (u,v+1), so that face normals are on the side of du ^ dv;
    /// otherwise the other way round, from the same corner.
    bool matchNormalDir = false;
};

/// One vertex per CV that repeats no other, at the CV, in the order of the CVs; cells in the order of their
/// first CV. A periodic direction closes round. Cells with coincident corners are kept.
///
/// The UV set "map1" has one UV per vertex, 0 to 1 by the number of the CV; in a periodic direction, 1 would
/// be the first CV again. Fails on an empty surface.
Result<Mesh> controlNet(const NurbsSurface& surface, const ControlNetOptions& options);

} // namespace vesk::geom
