#include "nodes/bmesh/skeleton.h"

#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnMatrixData.h>
#include <maya/MItDag.h>
#include <maya/MObjectHandle.h>
#include <maya/MPlugArray.h>

#include <unordered_map>

namespace vesk::nodes {

namespace {

/// The joints by id, and the ids of their parents.
class JointList {
  public:
    void add(const MObject& joint, int parent) {
        ids_.try_emplace(MObjectHandle(joint), static_cast<int>(joints.size()));
        joints.push_back(joint);
        parents.push_back(parent);
    }

    int find(const MObject& joint) const {
        const auto found = ids_.find(MObjectHandle(joint));
        return found == ids_.end() ? -1 : found->second;
    }

    /// The root and every joint below it. A joint whose parent is not in the list begins a part of its own.
    void addHierarchy(const MObject& root) {
        add(root, -1);
        MDagPath path;
        if (!MFnDagNode(root).getPath(path)) return;
        MItDag walk;
        for (walk.reset(path, MItDag::kDepthFirst, MFn::kJoint); !walk.isDone(); walk.next()) {
            const MObject joint = walk.currentItem();
            if (joint != root) add(joint, find(MFnDagNode(joint).parent(0)));
        }
    }

    std::vector<MObject> joints;
    std::vector<int> parents;

  private:
    struct Hash {
        std::size_t operator()(const MObjectHandle& handle) const { return handle.hashCode(); }
    };
    std::unordered_map<MObjectHandle, int, Hash> ids_; ///< the first of each
};

MObject sourceNode(const MPlug& plug) {
    MPlugArray sources;
    plug.connectedTo(sources, true, false);
    return sources.length() > 0 ? sources[0].node() : MObject();
}

} // namespace

MString Skeleton::jointName(int sphere) const {
    return MFnDependencyNode(joints[static_cast<std::size_t>(sphere)]).name();
}

Skeleton readSkeleton(MPlug inJoints, const MObject& matrix, const MObject& radius) {
    Skeleton skeleton;
    JointList list;
    MIntArray indices;
    inJoints.getExistingArrayAttributeIndices(indices);
    for (unsigned i = 0; i < indices.length(); ++i) {
        const MPlug element = inJoints.elementByLogicalIndex(static_cast<unsigned>(indices[i]));
        const MPlug matrixPlug = element.child(matrix);
        const MObject joint = sourceNode(matrixPlug);
        if (joint.isNull()) continue;
        if (indices[i] == 0) {
            list.addHierarchy(joint);
            skeleton.spheres.resize(static_cast<int>(list.joints.size()));
        }
        const int id = list.find(joint);
        if (id < 0) continue;
        const MVector center =
            MFnMatrixData(matrixPlug.asMObject()).transformation().getTranslation(MSpace::kTransform);
        skin::JointSphere& sphere = skeleton.spheres[id];
        sphere.center = {static_cast<float>(center.x), static_cast<float>(center.y),
                         static_cast<float>(center.z)};
        sphere.setRadius(element.child(radius).asFloat());
        sphere.parent = list.parents[static_cast<std::size_t>(id)];
        skeleton.positions.append({center.x, center.y, center.z});
    }
    skeleton.joints = std::move(list.joints);
    return skeleton;
}

} // namespace vesk::nodes
