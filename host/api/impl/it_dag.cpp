#include <maya/MItDag.h>

#include "host/api/impl/access.h"
#include "host/api/impl/session_hooks.h"

using vesk::api::answer;
using vesk::api::handleOn;
using vesk::graph::DagNode;
using vesk::graph::DagPath;

MItDag::MItDag(TraversalType traversal, MFn::Type filter, MStatus* status)
    : traversal_(traversal), filter_(filter) {
    vesk::api::report(status, reset());
}

MStatus MItDag::reset() {
    auto* session = vesk::api::session();
    if (!session) {
        start({}, traversal_, filter_);
        return MStatus::kFailure;
    }
    std::deque<Place> places;
    for (DagNode* top : session->scene().world().children())
        places.push_back({MDagPath(DagPath{{vesk::Ref<DagNode>(top)}}), 0});
    root_ = handleOn(&session->scene().world());
    start(std::move(places), traversal_, filter_);
    return {};
}

MStatus MItDag::reset(const MObject& root, TraversalType traversal, MFn::Type filter) {
    const DagNode* node = vesk::api::dagNodeOf(root);
    if (node && node->isWorld()) {
        traversal_ = traversal;
        filter_ = filter;
        return reset();
    }
    return reset(node ? MDagPath(vesk::graph::firstPath(*node)) : MDagPath(), traversal, filter);
}

MStatus MItDag::reset(const MDagPath& root, TraversalType traversal, MFn::Type filter) {
    root_ = root.node();
    const bool isThere = root.isValid();
    start(isThere ? std::deque<Place>{{root, 0}} : std::deque<Place>(), traversal, filter);
    return isThere ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

void MItDag::start(std::deque<Place> places, TraversalType traversal, MFn::Type filter) {
    open_ = std::move(places);
    traversal_ = traversal;
    filter_ = filter;
    pruned_ = false;
    settle();
}

bool MItDag::passes(const MDagPath& path) const {
    return filter_ == MFn::kInvalid || path.hostPath()->node()->hasFn(filter_);
}

void MItDag::expand() {
    const Place place = std::move(open_.front());
    open_.pop_front();
    const DagPath* path = place.path.hostPath();
    if (!path) return;
    std::vector<Place> below;
    for (DagNode* child : path->node()->children()) {
        DagPath longer = *path;
        longer.nodes.emplace_back(child);
        below.push_back({MDagPath(std::move(longer)), place.depth + 1});
    }
    open_.insert(traversal_ == kBreadthFirst ? open_.end() : open_.begin(), below.begin(), below.end());
}

void MItDag::settle() {
    while (!open_.empty() && !(open_.front().path.isValid() && passes(open_.front().path)))
        expand();
}

bool MItDag::isDone(MStatus* status) const { return answer(status, open_.empty()); }

MStatus MItDag::next() {
    if (open_.empty()) return MStatus::kFailure;
    if (pruned_) {
        open_.pop_front();
        pruned_ = false;
    } else {
        expand();
    }
    settle();
    return {};
}

MStatus MItDag::prune() {
    if (open_.empty()) return MStatus::kFailure;
    pruned_ = true;
    return {};
}

namespace {

template <class T>
T none(MStatus* status) {
    return answer(status, T(), MStatus::kFailure);
}

} // namespace

unsigned int MItDag::depth(MStatus* status) const {
    return open_.empty() ? none<unsigned int>(status) : answer(status, open_.front().depth);
}
MObject MItDag::currentItem(MStatus* status) const {
    return open_.empty() ? none<MObject>(status) : open_.front().path.node(status);
}
MStatus MItDag::getPath(MDagPath& path) const {
    if (open_.empty()) return MStatus::kFailure;
    path = open_.front().path;
    return {};
}
MObject MItDag::root(MStatus* status) const { return answer(status, root_); }
MString MItDag::fullPathName(MStatus* status) const {
    return open_.empty() ? none<MString>(status) : open_.front().path.fullPathName(status);
}
MString MItDag::partialPathName(MStatus* status) const {
    return open_.empty() ? none<MString>(status) : open_.front().path.partialPathName(status);
}

unsigned int MItDag::instanceCount(bool total, MStatus* status) const {
    const DagPath* path = open_.empty() ? nullptr : open_.front().path.hostPath();
    if (!path) return none<unsigned int>(status);
    const DagNode& node = *path->node();
    return answer(status,
                  static_cast<unsigned int>(total ? static_cast<std::size_t>(vesk::graph::pathCount(node))
                                                  : node.parents().size()));
}
bool MItDag::isInstanced(bool indirect, MStatus* status) const { return instanceCount(indirect, status) > 1; }
MItDag::TraversalType MItDag::traversalType(MStatus* status) const { return answer(status, traversal_); }
