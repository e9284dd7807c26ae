#pragma once
// Nodes of the hierarchy, and paths through it.

#include "host/graph/node.h"

#include <maya/MBoundingBox.h>
#include <maya/MMatrix.h>

#include <string>
#include <vector>

namespace vesk::graph {

/// A transform or a shape. A node with several parents is an instance: one path for each way from the world.
class DagNode : public Node {
  public:
    using Node::Node;

    std::string uniqueName() const override;

    const std::vector<DagNode*>& parents() const { return parents_; }
    const std::vector<DagNode*>& children() const { return children_; }
    bool isWorld() const { return isWorld_; }
    bool isTransform() const { return !type().isShape; }
    bool isIntermediate() const;

    /// Local matrix, row vectors; identity for shapes. Pulls the attributes that it is made of.
    virtual MMatrix localMatrix() { return MMatrix(); }
    /// Serves `matrix`, `worldMatrix[]`, `parentMatrix[]` and their inverses; other plugs are the derived
    /// type's.
    ComputeResult compute(Cell& requested) override;

    /// What the node itself takes up in its own space, without what stands below it; empty for none. Pulls.
    virtual MBoundingBox ownBounds() { return {}; }

    bool isBelow(const DagNode& ancestor) const;

  private:
    friend class Scene;
    std::vector<DagNode*> parents_;
    std::vector<DagNode*> children_;
    bool isWorld_ = false;
};

/// A way from the world down to a node. Holds its nodes; `isValid` turns false when one of them goes.
struct DagPath {
    std::vector<Ref<DagNode>> nodes; ///< from below the world to the node itself

    bool isEmpty() const { return nodes.empty(); }
    bool isValid() const;
    DagNode* node() const { return nodes.empty() ? nullptr : nodes.back().get(); }
    std::string fullName() const;
    /// Shortest tail that names this path alone.
    std::string partialName() const;
    MMatrix inclusiveMatrix() const;
    MMatrix exclusiveMatrix() const;
    /// Which of the node's paths this is: the index of `worldMatrix[]`, `worldMesh[]` ...
    int instanceNumber() const;
    bool operator==(const DagPath& other) const;
};

/// All paths of a node, in the order of instance numbers.
std::vector<DagPath> allPaths(const DagNode& node);
DagPath firstPath(const DagNode& node);
int pathCount(const DagNode& node);

/// Attributes of every DAG node, for types that compute from them.
struct DagAttributes {
    AttrRef matrix, inverseMatrix, worldMatrix, worldInverseMatrix, parentMatrix, parentInverseMatrix;
    AttrRef visibility, intermediateObject, instObjGroups, objectGroups, objectGroupId, objectGrpCompList;
};
const DagAttributes& dagAttributes();

} // namespace vesk::graph
