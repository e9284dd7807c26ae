#pragma once

#include "host/data/geometry_data.h"
#include "host/geometry/mesh.h"

namespace vesk {

using MeshData = GeometryDataOf<geom::Mesh, MFn::kMeshData, MFnData::kMesh>;

} // namespace vesk
