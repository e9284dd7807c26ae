#include <maya/MFnDagNode.h>

#include "host/api/impl/access.h"
#include "host/api/impl/create_node.h"
#include "host/graph/evaluate.h"

#include <maya/MDagPathArray.h>

#include <algorithm>

using vesk::api::answer;
using vesk::api::dagNodeOf;
using vesk::api::handleOn;
using vesk::graph::DagNode;

MFnDagNode::MFnDagNode(const MDagPath& path, MStatus* status) {
    const MStatus done = MFnDagNode::setObject(path);
    vesk::api::report(status, done);
}

MStatus MFnDagNode::setObject(MObject& object) { return setObject(std::as_const(object)); }

MStatus MFnDagNode::setObject(const MObject& object) {
    path_ = MDagPath();
    return MFnDependencyNode::setObject(object);
}

MStatus MFnDagNode::setObject(const MDagPath& path) {
    MStatus done = MFnDagNode::setObject(path.node());
    if (done) path_ = path;
    return done;
}

DagNode* MFnDagNode::hostDag() const { return dagNodeOf(object_); }

MDagPath MFnDagNode::somePath() const {
    if (path_.isValid()) return path_;
    const DagNode* node = hostDag();
    return node ? MDagPath(vesk::graph::firstPath(*node)) : MDagPath();
}

namespace {

template <class Question>
auto ask(DagNode* node, MStatus* status, Question question) {
    using Answer = decltype(question(*node));
    if (!node) return answer(status, Answer(), MStatus::kInvalidParameter);
    return answer(status, question(*node));
}

MObject at(const std::vector<DagNode*>& nodes, unsigned int position, MStatus* status) {
    if (position >= nodes.size()) return answer(status, MObject(), MStatus::kInvalidParameter);
    return answer(status, handleOn(nodes[position]));
}

bool holds(const std::vector<DagNode*>& nodes, const MObject& object) {
    return std::any_of(nodes.begin(), nodes.end(), [&](DagNode* one) { return object.hostObject() == one; });
}

} // namespace

MObject MFnDagNode::create(const MString& typeName, const MObject& parent, MStatus* status) {
    return create(typeName, MString(), parent, status);
}

MObject MFnDagNode::create(const MString& typeName, const MString& name, const MObject& parent,
                           MStatus* status) {
    const auto* type = vesk::api::typeNamed(typeName);
    DagNode* above = dagNodeOf(parent);
    if (!type || !type->isDag || (!above && !parent.isNull()) || (above && !above->isTransform())) {
        return answer(status, MObject(), MStatus::kInvalidParameter);
    }
    path_ = MDagPath();
    return object_ = vesk::api::createNode(type, name, above, status);
}

// --- family
// ----------------------------------------------------------------------------------------------------------

unsigned int MFnDagNode::parentCount(MStatus* status) const {
    return ask(hostDag(), status,
               [](const DagNode& node) { return static_cast<unsigned int>(node.parents().size()); });
}

MObject MFnDagNode::parent(unsigned int position, MStatus* status) const {
    const DagNode* node = hostDag();
    return at(node ? node->parents() : std::vector<DagNode*>(), position, status);
}

unsigned int MFnDagNode::childCount(MStatus* status) const {
    return ask(hostDag(), status,
               [](const DagNode& node) { return static_cast<unsigned int>(node.children().size()); });
}

MObject MFnDagNode::child(unsigned int position, MStatus* status) const {
    const DagNode* node = hostDag();
    return at(node ? node->children() : std::vector<DagNode*>(), position, status);
}

bool MFnDagNode::hasParent(const MObject& node, MStatus* status) const {
    return ask(hostDag(), status, [&](const DagNode& own) { return holds(own.parents(), node); });
}
bool MFnDagNode::hasChild(const MObject& node, MStatus* status) const {
    return ask(hostDag(), status, [&](const DagNode& own) { return holds(own.children(), node); });
}
bool MFnDagNode::inModel(MStatus* status) const {
    return ask(hostDag(), status, [](const DagNode& node) { return !node.parents().empty(); });
}
MObject MFnDagNode::dagRoot(MStatus* status) const {
    return ask(hostDag(), status, [](const DagNode& node) { return handleOn(&node.scene()->world()); });
}

MStatus MFnDagNode::addChild(const MObject& child, unsigned int, bool keepExistingParents) {
    DagNode* node = hostDag();
    DagNode* below = dagNodeOf(child);
    if (!node || !below || !node->isTransform()) return MStatus::kInvalidParameter;
    return vesk::api::toStatus(node->scene()->reparent(*below, node, keepExistingParents));
}

// --- paths
// -----------------------------------------------------------------------------------------------------------

MStatus MFnDagNode::getPath(MDagPath& path) const {
    if (!hostDag()) return MStatus::kInvalidParameter;
    path = somePath();
    return path.isValid() ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MFnDagNode::getAllPaths(MDagPathArray& paths) const {
    return MDagPath::getAllPathsTo(object_, paths);
}

MDagPath MFnDagNode::dagPath(MStatus* status) const {
    return answer(status, path_, path_.isValid() ? MStatus::kSuccess : MStatus::kFailure);
}
MString MFnDagNode::fullPathName(MStatus* status) const { return somePath().fullPathName(status); }
MString MFnDagNode::partialPathName(MStatus* status) const { return somePath().partialPathName(status); }

unsigned int MFnDagNode::instanceCount(bool total, MStatus* status) const {
    return ask(hostDag(), status, [&](const DagNode& node) {
        return static_cast<unsigned int>(total ? static_cast<std::size_t>(vesk::graph::pathCount(node))
                                               : node.parents().size());
    });
}
bool MFnDagNode::isInstanced(bool indirect, MStatus* status) const {
    return instanceCount(indirect, status) > 1;
}

// --- place and size
// --------------------------------------------------------------------------------------------------

MMatrix MFnDagNode::transformationMatrix(MStatus* status) const {
    return ask(hostDag(), status, [](DagNode& node) { return node.localMatrix(); });
}

MBoundingBox MFnDagNode::boundingBox(MStatus* status) const {
    return ask(hostDag(), status, [](DagNode& top) {
        struct Part {
            DagNode* node;
            MMatrix toTop;
        };
        MBoundingBox whole;
        std::vector<Part> open{{&top, MMatrix()}};
        while (!open.empty()) {
            const Part part = open.back();
            open.pop_back();
            MBoundingBox own = part.node->ownBounds();
            own.transformUsing(part.toTop);
            whole.expand(own);
            for (DagNode* child : part.node->children()) {
                if (!child->isIntermediate()) open.push_back({child, child->localMatrix() * part.toTop});
            }
        }
        return whole;
    });
}

bool MFnDagNode::isIntermediateObject(MStatus* status) const {
    return ask(hostDag(), status, [](const DagNode& node) { return node.isIntermediate(); });
}

MStatus MFnDagNode::setIntermediateObject(bool state) {
    DagNode* node = hostDag();
    if (!node) return MStatus::kInvalidParameter;
    auto& cell = node->cell(*vesk::graph::dagAttributes().intermediateObject);
    return vesk::api::toStatus(vesk::graph::storeNumber(cell, state ? 1 : 0));
}
