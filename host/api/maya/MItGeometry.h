#pragma once

#include <maya/MObject.h>
#include <maya/MPoint.h>
#include <maya/MSpace.h>
#include <maya/MStatus.h>

#include <cstddef>
#include <vector>

class MDataHandle;

namespace vesk {
class Component;
}

/// Walks the points of a mesh, curve or surface in the order of all per-point arrays: vertices by id, CVs by
/// index, a surface's with v fastest. Of periodic shapes only the distinct CVs are visited.
///
/// Data without points of its own (particle positions) has no iterator: the constructor fails and it is done.
class MItGeometry {
  public:
    explicit MItGeometry(MDataHandle& handle, bool readOnly = true, MStatus* status = nullptr);
    /// Only the points in an object group of the data; none when it has no such group.
    MItGeometry(MDataHandle& handle, int groupId, bool readOnly = true, MStatus* status = nullptr);
    explicit MItGeometry(const MObject& geometry, MStatus* status = nullptr);

    bool isDone(MStatus* status = nullptr) const;
    MStatus next();
    MStatus reset();
    int index(MStatus* status = nullptr) const;
    /// Repeated CVs of periodic shapes count too; `exactCount` counts what is visited.
    int count(MStatus* status = nullptr) const;
    int exactCount(MStatus* status = nullptr) const;
    MObject currentItem(MStatus* status = nullptr) const;
    MObject component(MStatus* status = nullptr) const { return currentItem(status); }

    MPoint position(MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
    /// Writes through to the data, CVs keep their weights; `kFailure` on an iterator for reading.
    MStatus setPosition(const MPoint& point, MSpace::Space space = MSpace::kObject);

  private:
    void skipRepeated();
    void limitTo(const vesk::Component* component);

    MObject object_;
    bool readOnly_ = true;
    int index_ = 0;
    bool limited_ = false;
    std::vector<int> chosen_; ///< indices to visit, when limited
    std::size_t place_ = 0;   ///< among these
    int count_ = 0;
    int numCVsInV_ = 0; ///< of a surface
    int distinctU_ = 0, distinctV_ = 0;
};
