#pragma once

#include "host/data/geometry_data.h"
#include "host/geometry/nurbs_curve.h"
#include "host/geometry/nurbs_surface.h"

namespace vesk {

using NurbsCurveData = GeometryDataOf<geom::NurbsCurve, MFn::kNurbsCurveData, MFnData::kNurbsCurve>;
using NurbsSurfaceData = GeometryDataOf<geom::NurbsSurface, MFn::kNurbsSurfaceData, MFnData::kNurbsSurface>;

} // namespace vesk
