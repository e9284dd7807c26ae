#pragma once

#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>

#include <memory>

class MPlugArray;

namespace vesk::api {
class GraphWalk;
} // namespace vesk::api

/// Walks along wires, and through a node only where an attribute affects another. Each node (or plug) comes
/// once. A filter leaves out what is of another kind, and the walk goes on behind it.
class MItDependencyGraph {
  public:
    enum Direction { kDownstream = 0, kUpstream };
    enum Traversal { kDepthFirst = 0, kBreadthFirst };
    enum Level { kNodeLevel = 0, kPlugLevel };

    /// From a node or a plug, which is itself the first item if it passes the filter. `kFailure` when nothing
    /// does.
    explicit MItDependencyGraph(const MObject& root, MFn::Type filter = MFn::kInvalid,
                                Direction direction = kDownstream, Traversal traversal = kDepthFirst,
                                Level level = kNodeLevel, MStatus* status = nullptr);
    explicit MItDependencyGraph(const MPlug& root, MFn::Type filter = MFn::kInvalid,
                                Direction direction = kDownstream, Traversal traversal = kDepthFirst,
                                Level level = kNodeLevel, MStatus* status = nullptr);
    ~MItDependencyGraph();
    MItDependencyGraph(const MItDependencyGraph&) = delete;
    MItDependencyGraph& operator=(const MItDependencyGraph&) = delete;

    bool isDone(MStatus* status = nullptr) const;
    MStatus next();
    /// Starts over.
    MStatus reset();
    /// Does not go on behind the present item.
    MStatus prune();
    bool isPruningOnFilter(MStatus* status = nullptr) const;
    MStatus enablePruningOnFilter();
    MStatus disablePruningOnFilter();

    MObject currentItem(MStatus* status = nullptr) const;
    MObject thisNode(MStatus* status = nullptr) const { return currentItem(status); }
    /// The plug by which the walk came to the present node.
    MPlug thisPlug(MStatus* status = nullptr) const;
    /// The plug at the other end of that wire; null at the root.
    MPlug previousPlug(MStatus* status = nullptr) const;
    MObject rootNode(MStatus* status = nullptr) const;
    MPlug rootPlug(MStatus* status = nullptr) const;

  private:
    std::unique_ptr<vesk::api::GraphWalk> walk_;
};
