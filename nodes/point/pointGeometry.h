#pragma once
// The two geometries of `point`: taken from their inputs, read into channels, written back.

#include "nodes/common/choice.h"
#include "nodes/common/steps.h"
#include "nodes/point/pointChannels.h"

#include <maya/MFnData.h>
#include <maya/MSpace.h>

namespace vesk::nodes {

/// A mesh, curve or surface in the space that the node works in. Without points it is empty.
class EditedGeometry {
  public:
    EditedGeometry() = default;
    /// What `input` holds. Curves and surfaces are tessellated, as their normals and UVs are those of a mesh.
    EditedGeometry(MDataHandle& handle, const MPlug& input, short coordinateSystem);

    bool isMesh() const { return type_ == MFnData::kMesh; }
    unsigned pointCount() const { return count_; }
    /// A periodic curve or surface: its tessellation has another number of vertices.
    bool isPeriodic() const { return isPeriodic_; }
    /// From here on it is a copy, which can be changed and keeps the object groups.
    void makeCopy();
    /// Null without geometry.
    const MObject& object() const { return object_; }

    MPointArray points() const;
    /// Four a point, (0, 0, 0, 1) where a vertex has none; empty unless it is a mesh with such a set.
    MDoubleArray meshColors(const MString& colorSet) const;
    /// One a point; zero vectors where there is no mesh to ask.
    MVectorArray normals() const;
    /// u, v of the first of the UVs of each point, (0, 0) where it has none.
    MDoubleArray sharedMap(const MString& uvSet) const;
    /// All UVs by id; empty without such a set.
    void uvs(const MString& uvSet, MFloatArray& us, MFloatArray& vs) const;

    /// Chosen points, ascending; a surface's CVs by their flat index. Ids beyond the points are left out.
    MIntArray idsOf(const PointSelection& selection) const;
    UvSelection uvsAt(const MIntArray& vertices, const MString& uvSet) const;

    // On a copy.

    void setPoints(const MPointArray& points);
    void setColors(const MColorArray& colors, const MIntArray& vertices);
    void setNormals(const MVectorArray& normals, const MIntArray& vertices);
    void setUvs(const MFloatArray& us, const MFloatArray& vs, const MString& uvSet);

  private:
    void tessellate(const MPlug& input, const MMatrix& matrix);

    MFnData::Type type_ = MFnData::kInvalid;
    MSpace::Space space_ = MSpace::kObject;
    MObject object_;
    MObject tessellation_;   ///< a mesh's is itself
    unsigned stride_ = 1;    ///< vertices of the tessellation a point
    unsigned count_ = 0;     ///< points
    unsigned numCVsInV_ = 0; ///< of a surface
    bool isPeriodic_ = false;
    MMatrix toSpace_; ///< what takes normals of the tessellation into the space, as its transpose
    bool turnsNormals_ = false;
};

} // namespace vesk::nodes
