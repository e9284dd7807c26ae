#pragma once
// Which points of its input a node works on: `useComponents`, `inComponents`, `groupId`.

#include <maya/MFn.h>
#include <maya/MIntArray.h>
#include <maya/MObject.h>

#include <vector>

class MDataBlock;

namespace vesk::nodes {

/// Values of `useComponents`.
enum UseComponents : short { kAllPoints = 0, kInputComponentList = 1, kInputObjectGroup = 2 };

/// Points chosen by `useComponents`. Without a selection every point is in.
class PointSelection {
  public:
    /// Everything.
    PointSelection() = default;
    /// The first entry of a component list, or a component itself; anything else (null, ids) selects nothing.
    static PointSelection ofComponents(MObject components);
    /// The object group of the geometry's data; nothing when the id is negative or the geometry has no such
    /// group.
    static PointSelection ofObjectGroup(const MObject& geometryData, int groupId);

    bool isEverything() const { return everything_; }
    /// By the point's place in the order of `MItGeometry`; surfaces count v fastest with `numCVsInV` a row.
    /// `pointKind` is the kind of the geometry's points (`kMeshVertComponent` ...): elements of other kinds
    /// select nothing.
    std::vector<char> mask(MFn::Type pointKind, unsigned pointCount, unsigned numCVsInV = 0) const;
    /// The places that the mask marks, ascending.
    MIntArray ids(MFn::Type pointKind, unsigned pointCount, unsigned numCVsInV = 0) const;

  private:
    bool everything_ = true;
    MObject component_;
};

/// Ids that an `inComponents` input holds for `count` particles: an int array, or the elements of a single
/// indexed component (of a list its first entry), all for a complete one. Empty for anything else.
MIntArray particleIds(MObject components, unsigned count);

/// 1 at each id that is a place below `count`.
std::vector<char> maskOf(const MIntArray& ids, unsigned count);

/// The attributes with which the points of an input are chosen.
struct ChoiceAttributes {
    const MObject &useComponents, &inComponents, &groupId;
};

/// What they choose of a mesh, curve or surface, whose data object holds the groups.
PointSelection chosenBy(MDataBlock& block, const ChoiceAttributes& attributes, const MObject& geometryData);

} // namespace vesk::nodes
