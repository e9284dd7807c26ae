#pragma once

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MObject.h>
#include <maya/MString.h>

#include <deque>

/// Walks the hierarchy: parents before children, children in their order. Instances come once for each path.
class MItDag {
  public:
    enum TraversalType { kInvalidType = 0, kDepthFirst, kBreadthFirst };

    /// From the world, which is not an item. A filter leaves out other kinds of nodes and goes on below them.
    explicit MItDag(TraversalType traversal = kDepthFirst, MFn::Type filter = MFn::kInvalid,
                    MStatus* status = nullptr);

    /// From a node or path, which is the first item if it passes the filter.
    MStatus reset(const MObject& root, TraversalType traversal = kDepthFirst,
                  MFn::Type filter = MFn::kInvalid);
    MStatus reset(const MDagPath& root, TraversalType traversal = kDepthFirst,
                  MFn::Type filter = MFn::kInvalid);
    /// From the world again.
    MStatus reset();

    bool isDone(MStatus* status = nullptr) const;
    MStatus next();
    /// Does not go below the present item.
    MStatus prune();
    /// Steps below the root.
    unsigned int depth(MStatus* status = nullptr) const;

    MObject currentItem(MStatus* status = nullptr) const;
    MObject item(MStatus* status = nullptr) const { return currentItem(status); }
    MStatus getPath(MDagPath& path) const;
    MObject root(MStatus* status = nullptr) const;
    MString fullPathName(MStatus* status = nullptr) const;
    MString partialPathName(MStatus* status = nullptr) const;
    unsigned int instanceCount(bool total, MStatus* status = nullptr) const;
    bool isInstanced(bool indirect = true, MStatus* status = nullptr) const;
    TraversalType traversalType(MStatus* status = nullptr) const;

  private:
    struct Place {
        MDagPath path;
        unsigned int depth;
    };
    void start(std::deque<Place> places, TraversalType traversal, MFn::Type filter);
    /// Takes the first place away and puts what stands below it where the traversal wants it.
    void expand();
    /// Goes on until an item passes the filter.
    void settle();
    bool passes(const MDagPath& path) const;

    std::deque<Place> open_; ///< the present item, and what is known to come
    TraversalType traversal_ = kDepthFirst;
    MFn::Type filter_ = MFn::kInvalid;
    MObject root_;
    bool pruned_ = false;
};
