#pragma once
// The geometry behind a handle on data or on a shape.

#include <maya/MObject.h>

class MDagPath;

namespace vesk::api {

/// Data stands for itself; of a shape of that kind its world output, for reading only; null for anything
/// else. Pulls the shape.
MObject geometryDataOf(const MObject& object, MFn::Type shapeKind);
/// Of the shape at the path's end, or of the first shape below a transform, with the path's matrix.
MObject geometryDataOf(const MDagPath& path, MFn::Type shapeKind);

} // namespace vesk::api
