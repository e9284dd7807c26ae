#include <maya/MDagPath.h>

#include "host/api/impl/access.h"
#include "host/graph/evaluate.h"

#include <maya/MDagPathArray.h>

using vesk::api::answer;
using vesk::api::dagNodeOf;
using vesk::api::handleOn;
using vesk::graph::DagNode;
using vesk::graph::DagPath;

MDagPath::MDagPath(DagPath path) {
    if (!path.isEmpty()) path_ = std::make_shared<const DagPath>(std::move(path));
}

const DagPath* MDagPath::hostPath() const { return path_ && path_->isValid() ? path_.get() : nullptr; }

namespace {

/// Asks the path, or answers `kFailure` when there is none.
template <class Question>
auto ask(const MDagPath& path, MStatus* status, Question question) {
    using Answer = decltype(question(std::declval<const DagPath&>()));
    const DagPath* host = path.hostPath();
    if (!host) return answer(status, Answer(), MStatus::kFailure);
    return answer(status, question(*host));
}

std::vector<DagNode*> shapesBelow(const DagNode& node) {
    std::vector<DagNode*> shapes;
    for (DagNode* child : node.children()) {
        if (child->type().isShape) shapes.push_back(child);
    }
    return shapes;
}

DagPath extended(const DagPath& path, DagNode& child) {
    DagPath longer = path;
    longer.nodes.emplace_back(&child);
    return longer;
}

} // namespace

bool MDagPath::isValid(MStatus* status) const { return answer(status, hostPath() != nullptr); }

bool MDagPath::operator==(const MDagPath& other) const {
    const DagPath* mine = hostPath();
    const DagPath* theirs = other.hostPath();
    return mine && theirs ? *mine == *theirs : mine == theirs;
}

MObject MDagPath::node(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return handleOn(path.node()); });
}

MObject MDagPath::transform(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) {
        for (auto at = path.nodes.rbegin(); at != path.nodes.rend(); ++at) {
            if ((*at)->isTransform()) return handleOn(at->get());
        }
        return MObject();
    });
}

MFn::Type MDagPath::apiType(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return path.node()->apiType(); });
}

bool MDagPath::hasFn(MFn::Type type, MStatus* status) const {
    return ask(*this, status, [&](const DagPath& path) {
        // A transform's path answers for its only shape, as its components do.
        if (path.node()->hasFn(type)) return true;
        const auto shapes = path.node()->isTransform() ? shapesBelow(*path.node()) : std::vector<DagNode*>();
        return shapes.size() == 1 && shapes[0]->hasFn(type);
    });
}

unsigned int MDagPath::length(MStatus* status) const {
    return ask(*this, status,
               [](const DagPath& path) { return static_cast<unsigned int>(path.nodes.size()); });
}

unsigned int MDagPath::childCount(MStatus* status) const {
    return ask(*this, status,
               [](const DagPath& path) { return static_cast<unsigned int>(path.node()->children().size()); });
}

MObject MDagPath::child(unsigned int position, MStatus* status) const {
    const DagPath* path = hostPath();
    if (!path) return answer(status, MObject(), MStatus::kFailure);
    const auto& children = path->node()->children();
    if (position >= children.size()) return answer(status, MObject(), MStatus::kInvalidParameter);
    return answer(status, handleOn(children[position]));
}

MStatus MDagPath::push(const MObject& child) {
    const DagPath* path = hostPath();
    DagNode* below = dagNodeOf(child);
    if (!below) return MStatus::kInvalidParameter;
    const DagNode* above = path ? path->node() : &below->scene()->world();
    const auto& parents = below->parents();
    if (std::find(parents.begin(), parents.end(), above) == parents.end()) return MStatus::kInvalidParameter;
    *this = MDagPath(extended(path ? *path : DagPath(), *below));
    return {};
}

MStatus MDagPath::pop(unsigned int steps) {
    const DagPath* path = hostPath();
    if (!path) return MStatus::kFailure;
    if (steps > path->nodes.size()) return MStatus::kInvalidParameter;
    DagPath shorter = *path;
    shorter.nodes.resize(path->nodes.size() - steps);
    *this = MDagPath(std::move(shorter));
    return {};
}

MStatus MDagPath::extendToShape() {
    const DagPath* path = hostPath();
    if (!path) return MStatus::kFailure;
    if (!path->node()->isTransform()) return {};
    auto shapes = shapesBelow(*path->node());
    if (shapes.size() > 1)
        std::erase_if(shapes, [](const DagNode* shape) { return shape->isIntermediate(); });
    if (shapes.size() != 1) return MStatus::kFailure;
    *this = MDagPath(extended(*path, *shapes[0]));
    return {};
}

MStatus MDagPath::extendToShapeDirectlyBelow(unsigned int position) {
    const DagPath* path = hostPath();
    if (!path) return MStatus::kFailure;
    const auto shapes = shapesBelow(*path->node());
    if (position >= shapes.size()) return MStatus::kInvalidParameter;
    *this = MDagPath(extended(*path, *shapes[position]));
    return {};
}

MStatus MDagPath::numberOfShapesDirectlyBelow(unsigned int& count) const {
    const DagPath* path = hostPath();
    if (!path) return MStatus::kFailure;
    count = static_cast<unsigned int>(shapesBelow(*path->node()).size());
    return {};
}

MString MDagPath::fullPathName(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return vesk::toMString(path.fullName()); });
}
MString MDagPath::partialPathName(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return vesk::toMString(path.partialName()); });
}
MMatrix MDagPath::inclusiveMatrix(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return path.inclusiveMatrix(); });
}
MMatrix MDagPath::exclusiveMatrix(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return path.exclusiveMatrix(); });
}
MMatrix MDagPath::inclusiveMatrixInverse(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return path.inclusiveMatrix().inverse(); });
}
MMatrix MDagPath::exclusiveMatrixInverse(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return path.exclusiveMatrix().inverse(); });
}

unsigned int MDagPath::instanceNumber(MStatus* status) const {
    return ask(*this, status,
               [](const DagPath& path) { return static_cast<unsigned int>(path.instanceNumber()); });
}
bool MDagPath::isInstanced(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) { return vesk::graph::pathCount(*path.node()) > 1; });
}

bool MDagPath::isVisible(MStatus* status) const {
    return ask(*this, status, [](const DagPath& path) {
        for (const auto& node : path.nodes) {
            if (vesk::graph::pullNumber(node->cell(*vesk::graph::dagAttributes().visibility)) == 0)
                return false;
        }
        return true;
    });
}

MStatus MDagPath::getAPathTo(const MObject& node, MDagPath& path) {
    const DagNode* dag = dagNodeOf(node);
    if (!dag) return MStatus::kInvalidParameter;
    path = MDagPath(vesk::graph::firstPath(*dag));
    return {};
}

MDagPath MDagPath::getAPathTo(const MObject& node, MStatus* status) {
    MDagPath path;
    vesk::api::report(status, getAPathTo(node, path));
    return path;
}

MStatus MDagPath::getAllPathsTo(const MObject& node, MDagPathArray& paths) {
    const DagNode* dag = dagNodeOf(node);
    paths.clear();
    if (!dag) return MStatus::kInvalidParameter;
    for (auto& path : vesk::graph::allPaths(*dag))
        paths.append(MDagPath(std::move(path)));
    return {};
}
