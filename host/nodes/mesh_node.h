#pragma once
// The polygon shape.

#include "host/data/mesh_data.h"
#include "host/nodes/shape_node.h"

namespace vesk::nodes {

/// Node type `mesh`; after `registerShapeBases`.
void registerMesh(graph::TypeRegistry& types);

/// Shows `inMesh`, or the mesh that it keeps in `cachedInMesh`, with the offsets of `pnts` added to the
/// points.
///
/// A scene file gives the kept mesh as lists (`vrts`, `edge`, `face` ...). They are built into one mesh at
/// the first pull and then dropped. Lists that make no mesh are an error on the log that names the node; the
/// shape is empty then. `currentUVSet` and `currentColorSet` choose among the sets of what is shown.
class MeshNode : public GeometryShapeNode {
  public:
    using GeometryShapeNode::GeometryShapeNode;

    Outcome setMesh(geom::Mesh mesh) { return setOwn(makeRef<MeshData>(std::move(mesh))); }
    /// The shown mesh, the empty mesh when there is none. Pulls.
    geom::Mesh mesh();

    Ref<GeometryData> own() override;
    MBoundingBox ownBounds() override;

  protected:
    Plugs plugs() const override;
    bool isShaped() override;
    void shape(GeometryData& geometry) override;
    void ownReplaced() override;

  private:
    void buildFromFile();
};

} // namespace vesk::nodes
