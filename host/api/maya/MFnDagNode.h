#pragma once

#include <maya/MBoundingBox.h>
#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MMatrix.h>

class MDagPathArray;

namespace vesk::graph {
class DagNode;
} // namespace vesk::graph

/// Function set of transforms and shapes. Made from a path it knows which instance is meant, else it takes
/// the first.
class MFnDagNode : public MFnDependencyNode {
  public:
    static constexpr unsigned int kNextPos = 0xff;

    MFnDagNode() = default;
    explicit MFnDagNode(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    explicit MFnDagNode(const MDagPath& path, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kDagNode; }
    using MFnDependencyNode::setObject;
    MStatus setObject(MObject& object) override;
    MStatus setObject(const MObject& object) override;
    virtual MStatus setObject(const MDagPath& path);

    /// Below the parent, or the world.
    MObject create(const MString& typeName, const MObject& parent, MStatus* status = nullptr);
    MObject create(const MString& typeName, const MString& name, const MObject& parent,
                   MStatus* status = nullptr);
    using MFnDependencyNode::create;

    unsigned int parentCount(MStatus* status = nullptr) const;
    /// The world for nodes directly below it.
    MObject parent(unsigned int position, MStatus* status = nullptr) const;
    unsigned int childCount(MStatus* status = nullptr) const;
    MObject child(unsigned int position, MStatus* status = nullptr) const;
    bool hasParent(const MObject& node, MStatus* status = nullptr) const;
    bool hasChild(const MObject& node, MStatus* status = nullptr) const;
    bool isParentOf(const MObject& node, MStatus* status = nullptr) const { return hasChild(node, status); }
    bool isChildOf(const MObject& node, MStatus* status = nullptr) const { return hasParent(node, status); }
    bool inModel(MStatus* status = nullptr) const;
    MObject dagRoot(MStatus* status = nullptr) const;
    /// Moves a node below this one; keeping its other parents makes it an instance.
    MStatus addChild(const MObject& child, unsigned int position = kNextPos,
                     bool keepExistingParents = false);

    MStatus getPath(MDagPath& path) const;
    MStatus getAllPaths(MDagPathArray& paths) const;
    /// The path that the set was made from; `kFailure` when it was made from an object.
    MDagPath dagPath(MStatus* status = nullptr) const;
    MString fullPathName(MStatus* status = nullptr) const;
    MString partialPathName(MStatus* status = nullptr) const;
    unsigned int instanceCount(bool total, MStatus* status = nullptr) const;
    bool isInstanced(bool indirect = true, MStatus* status = nullptr) const;

    /// The node's own matrix; identity for a shape.
    MMatrix transformationMatrix(MStatus* status = nullptr) const;
    /// In the node's own space, around what stands below it too; intermediate shapes are left out.
    MBoundingBox boundingBox(MStatus* status = nullptr) const;
    bool isIntermediateObject(MStatus* status = nullptr) const;
    MStatus setIntermediateObject(bool state);

  protected:
    vesk::graph::DagNode* hostDag() const;
    /// The chosen path, or the node's first.
    MDagPath somePath() const;

    MDagPath path_; ///< empty when made from an object
};
