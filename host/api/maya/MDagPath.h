#pragma once

#include <maya/MFn.h>
#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MString.h>

#include <memory>

class MDagPathArray;

namespace vesk::graph {
struct DagPath;
} // namespace vesk::graph

/// A way from the world down to a DAG node. Empty, or broken by a deletion, it answers with `kFailure`.
class MDagPath {
  public:
    MDagPath() = default;

    bool isValid(MStatus* status = nullptr) const;
    bool operator==(const MDagPath& other) const;
    bool operator!=(const MDagPath& other) const { return !(*this == other); }

    MObject node(MStatus* status = nullptr) const;
    /// The nearest transform on the path, the node itself included.
    MObject transform(MStatus* status = nullptr) const;
    MFn::Type apiType(MStatus* status = nullptr) const;
    bool hasFn(MFn::Type type, MStatus* status = nullptr) const;
    /// Nodes on the path.
    unsigned int length(MStatus* status = nullptr) const;
    unsigned int childCount(MStatus* status = nullptr) const;
    MObject child(unsigned int position, MStatus* status = nullptr) const;

    /// Goes down to a child.
    MStatus push(const MObject& child);
    /// Goes up; `kInvalidParameter` beyond the first node.
    MStatus pop(unsigned int steps = 1);
    /// From a transform to its shape. `kFailure` when it has none, or several.
    MStatus extendToShape();
    /// To a shape by its place among those directly below the transform.
    MStatus extendToShapeDirectlyBelow(unsigned int position);
    MStatus numberOfShapesDirectlyBelow(unsigned int& count) const;
    MStatus set(const MDagPath& path) { return *this = path, MStatus(); }

    MString fullPathName(MStatus* status = nullptr) const;
    /// The shortest tail that names this path alone.
    MString partialPathName(MStatus* status = nullptr) const;
    /// From the node's space to the world's; exclusive, from its parent's.
    MMatrix inclusiveMatrix(MStatus* status = nullptr) const;
    MMatrix exclusiveMatrix(MStatus* status = nullptr) const;
    MMatrix inclusiveMatrixInverse(MStatus* status = nullptr) const;
    MMatrix exclusiveMatrixInverse(MStatus* status = nullptr) const;

    unsigned int instanceNumber(MStatus* status = nullptr) const;
    bool isInstanced(MStatus* status = nullptr) const;
    /// Whether the node and all above it are visible.
    bool isVisible(MStatus* status = nullptr) const;

    /// The first path of a node, and all of them.
    static MStatus getAPathTo(const MObject& node, MDagPath& path);
    static MDagPath getAPathTo(const MObject& node, MStatus* status = nullptr);
    static MStatus getAllPathsTo(const MObject& node, MDagPathArray& paths);

    /// For the host.
    explicit MDagPath(vesk::graph::DagPath path);
    /// Null when empty or broken.
    const vesk::graph::DagPath* hostPath() const;

  private:
    std::shared_ptr<const vesk::graph::DagPath> path_;
};
