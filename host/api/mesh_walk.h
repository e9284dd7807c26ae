#pragma once
// What the iterators over a mesh's vertices, edges and faces have in common.

#include <maya/MFnMesh.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <vector>

namespace vesk::geom {
class MeshTopology;
} // namespace vesk::geom

namespace vesk::api {

/// Walks elements of a mesh by ascending id. Calls past the end fail with `kFailure`.
class MeshWalk {
  public:
    bool isDone(MStatus* status = nullptr) const;
    MStatus next() { return ++index_, MStatus(); }
    MStatus reset() { return index_ = 0, MStatus(); }
    int index(MStatus* status = nullptr) const;
    /// Moves there; walking on from there is fine, `previous` gets the id left behind.
    MStatus setIndex(int index, int& previous) {
        if (index < 0 || index >= count_) return MStatus::kFailure;
        previous = index_;
        index_ = index;
        return {};
    }
    int count(MStatus* status = nullptr) const;
    /// A component of this element alone.
    MObject currentItem(MStatus* status = nullptr) const;

  protected:
    /// `element` is the kind of component that the walk is over.
    MeshWalk(const MObject& mesh, MFn::Type element, MStatus* status);
    bool isHere() const { return index_ >= 0 && index_ < count_; }
    const geom::MeshTopology& topology() const;
    /// Null when the space is the mesh's own.
    const MMatrix* matrixFor(MSpace::Space space) const { return function_.matrixFor(space); }

    MFnMesh function_;
    const geom::Mesh* mesh_ = nullptr;
    int index_ = 0;
    mutable std::vector<int> scratch_;

  private:
    MFn::Type element_;
    int count_ = 0;
};

} // namespace vesk::api
