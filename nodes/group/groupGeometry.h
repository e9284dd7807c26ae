#pragma once
// The geometry of `group` as its stages see it: points, normals and neighbours, whatever came in.

#include "nodes/common/mesh_links.h"
#include "nodes/group/elementSet.h"

#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MString.h>
#include <maya/MVector.h>

#include <span>
#include <vector>

class MDataBlock;
class MDataHandle;

namespace vesk::nodes {

/// Values of `componentType`.
enum class GroupKind : short { kVertex = 0, kEdge, kFace, kMap, kCurveCV, kSurfaceCV, kParticle };

/// The kind of component that a selection is made of. Particles are selected as vertices.
MFn::Type componentOf(GroupKind kind);

struct GroupGeometry {
    enum class Form { kNone, kMesh, kCurve, kSurface, kParticles };

    Form form = Form::kNone;
    MObject output;        ///< a copy in the chosen space; null for particles
    MeshLinks links;       ///< of the mesh, the polygon through all particles, the tessellation of a surface
    MObject mesh;          ///< what `links` is made of; null for curves
    int pointCount = 0;    ///< at least three for particles
    int particleCount = 0; ///< without the copies of the first that make three
    std::vector<MVector> velocities; ///< one a point of particles
    int numCVsInU = 0, numCVsInV = 0;
    MString uvSet; ///< empty: the current one
    bool hasUvs = false;

    /// Whether such elements are there at all. Curves and surfaces have their CVs alone; particles can be
    /// selected as parts of the polygon through them as well.
    bool fits(GroupKind kind) const;
    /// Elements of a kind; UVs count as vertices here, as they do in all stages but two. 0 for what does not
    /// fit.
    int count(GroupKind kind) const;
    int uvCount() const;
    ElementCounts wholeCounts(MFn::Type type) const;
    /// All elements of a kind.
    ElementSet complete(GroupKind kind) const;
    /// Flat indices as elements of a kind: those of a surface are pairs.
    ElementSet selection(GroupKind kind, const std::vector<int>& indices) const;
    ElementId elementAt(GroupKind kind, int index) const;

    /// Of vertices, CVs, particles: in the chosen space.
    std::span<const MPoint> points();
    void setPoints(const MPointArray& points);

    /// The vertices of elements: themselves, both ends, corners.
    std::vector<int> verticesOf(const ElementSet& set);

    /// Per vertex (or CV): the normal, or what the velocity is for particles of kind `kParticle`. Those of a
    /// curve come from a ribbon that is made from what feeds `input`.
    std::vector<MVector> references(GroupKind kind, const MPlug& input);
    std::vector<MVector> faceNormals() const;
    const Links& vertexUvs();

  private:
    MPointArray points_; ///< of a mesh read when first asked for
    Links vertexUvs_;
    bool hasVertexUvs_ = false;
};

/// What became of reading the input.
enum class GroupInput {
    kReady,
    kPeriodicSurface,  ///< `output` is there, nothing else
    kUnknownVelocities ///< particles without velocities, and no shape to ask
};

/// The attributes that the input is read from.
struct GroupInputAttributes {
    const MObject &inGeometry, &inVelocityPP;
};

GroupInput readGroupGeometry(const MObject& node, MDataBlock& block, const GroupInputAttributes& attributes,
                             short coordinateSystem, GroupGeometry& geometry);

} // namespace vesk::nodes
