#include <maya/MItDependencyGraph.h>

#include "host/api/impl/access.h"
#include "host/graph/evaluate.h"

#include <deque>
#include <unordered_set>

using vesk::Ref;
using vesk::api::answer;
using vesk::api::handleOn;
using vesk::graph::Attribute;
using vesk::graph::Cell;
using vesk::graph::Node;
using vesk::graph::Plug;

namespace vesk::api {

namespace {

/// What a change of `from` reaches within its node, itself first.
std::vector<const Attribute*> reachedFrom(const Node& node, const Attribute& from) {
    std::vector<const Attribute*> reached{&from};
    for (std::size_t i = 0; i < reached.size(); ++i) {
        for (const Attribute* out : node.affectedBy(*reached[i])) {
            if (std::find(reached.begin(), reached.end(), out) == reached.end()) reached.push_back(out);
        }
    }
    return reached;
}

bool isTied(const Node& node, const Attribute& in, const Attribute& out) {
    for (const Attribute* one : reachedFrom(node, in)) {
        if (one == &out || one->isBelow(out) || out.isBelow(*one)) return true;
    }
    return false;
}

} // namespace

/// The walk itself: what is open, what was seen, and the present item.
class GraphWalk {
  public:
    using It = MItDependencyGraph;

    /// An arrival at a node; at the root without a wire.
    struct Stop {
        Ref<Node> node;
        Plug plug;     ///< the node's end of the wire, or the root plug
        Plug previous; ///< the other end
    };

    GraphWalk(Stop start, MFn::Type filter, It::Direction direction, It::Traversal traversal, It::Level level)
        : root(std::move(start)), filter_(filter), direction_(direction), traversal_(traversal),
          level_(level) {
        restart();
    }

    void restart() {
        open_.clear();
        seenNodes_.clear();
        seenPlugs_.clear();
        present_ = Stop();
        if (root.node) open_.push_back(root);
        settle();
    }

    bool isDone() const { return !present_.node; }
    const Stop& present() const { return present_; }

    void step() {
        if (!pruned_) expand(present_);
        settle();
    }

    void prune() { pruned_ = true; }

    const Stop root;
    bool prunesOnFilter = false;

  private:
    /// Takes stops off the open ones until one is an item.
    void settle() {
        present_ = Stop();
        pruned_ = false;
        while (!open_.empty()) {
            Stop stop = std::move(open_.front());
            open_.pop_front();
            if (!stop.node->isAlive()) continue;
            const Cell* arrival = stop.plug.cellIfThere();
            if (arrival && !seenPlugs_.insert(arrival).second) continue;
            const bool isNew = seenNodes_.insert(stop.node.get()).second;
            const bool passes = filter_ == MFn::kInvalid || stop.node->hasFn(filter_);
            if (passes && (isNew || level_ == It::kPlugLevel)) {
                present_ = std::move(stop);
                return;
            }
            if (passes || !prunesOnFilter) expand(stop);
        }
    }

    /// Opens what the wires of a node lead to, as far as they are tied to where the walk came in.
    void expand(const Stop& stop) {
        if (!stop.node->isAlive()) return;
        Node& node = *stop.node;
        std::vector<Stop> found;
        node.eachCell([&](Cell& cell) {
            const bool downstream = direction_ == It::kDownstream;
            if (downstream ? cell.destinations.empty() : !cell.source) return;
            if (!stop.plug.isNull()) {
                const Attribute& came = *stop.plug.attr;
                if (!(downstream ? isTied(node, came, cell.attr) : isTied(node, cell.attr, came))) return;
            }
            const auto follow = [&](Cell& other) {
                found.push_back({Ref<Node>(&other.node), Plug(other), Plug(cell)});
            };
            if (!downstream) return follow(*cell.source);
            for (Cell* to : cell.destinations)
                follow(*to);
        });
        const auto where = traversal_ == It::kDepthFirst ? open_.begin() : open_.end();
        open_.insert(where, found.begin(), found.end());
    }

    MFn::Type filter_;
    It::Direction direction_;
    It::Traversal traversal_;
    It::Level level_;
    std::deque<Stop> open_;
    std::unordered_set<const Node*> seenNodes_;
    std::unordered_set<const Cell*> seenPlugs_;
    Stop present_;
    bool pruned_ = false;
};

} // namespace vesk::api

using vesk::api::GraphWalk;

MItDependencyGraph::MItDependencyGraph(const MObject& root, MFn::Type filter, Direction direction,
                                       Traversal traversal, Level level, MStatus* status)
    : walk_(std::make_unique<GraphWalk>(GraphWalk::Stop{vesk::api::nodeOf(root), {}, {}}, filter, direction,
                                        traversal, level)) {
    vesk::api::report(status, walk_->isDone() ? MStatus::kFailure : MStatus::kSuccess);
}

MItDependencyGraph::MItDependencyGraph(const MPlug& root, MFn::Type filter, Direction direction,
                                       Traversal traversal, Level level, MStatus* status)
    : walk_(std::make_unique<GraphWalk>(GraphWalk::Stop{root.hostPlug().node, root.hostPlug(), {}}, filter,
                                        direction, traversal, level)) {
    vesk::api::report(status, walk_->isDone() ? MStatus::kFailure : MStatus::kSuccess);
}

MItDependencyGraph::~MItDependencyGraph() = default;

bool MItDependencyGraph::isDone(MStatus* status) const { return answer(status, walk_->isDone()); }

MStatus MItDependencyGraph::next() {
    if (walk_->isDone()) return MStatus::kFailure;
    walk_->step();
    return {};
}

MStatus MItDependencyGraph::reset() {
    walk_->restart();
    return walk_->isDone() ? MStatus::kFailure : MStatus::kSuccess;
}

MStatus MItDependencyGraph::prune() {
    if (walk_->isDone()) return MStatus::kFailure;
    walk_->prune();
    return {};
}

bool MItDependencyGraph::isPruningOnFilter(MStatus* status) const {
    return answer(status, walk_->prunesOnFilter);
}
MStatus MItDependencyGraph::enablePruningOnFilter() { return walk_->prunesOnFilter = true, MStatus(); }
MStatus MItDependencyGraph::disablePruningOnFilter() { return walk_->prunesOnFilter = false, MStatus(); }

namespace {

MPlug plugOf(const Plug& plug, MStatus* status) {
    if (plug.isNull()) return answer(status, MPlug(), MStatus::kFailure);
    return answer(status, MPlug(plug));
}

} // namespace

MObject MItDependencyGraph::currentItem(MStatus* status) const {
    if (walk_->isDone()) return answer(status, MObject(), MStatus::kFailure);
    return answer(status, handleOn(walk_->present().node.get()));
}
MPlug MItDependencyGraph::thisPlug(MStatus* status) const { return plugOf(walk_->present().plug, status); }
MPlug MItDependencyGraph::previousPlug(MStatus* status) const {
    return plugOf(walk_->present().previous, status);
}
MObject MItDependencyGraph::rootNode(MStatus* status) const {
    return answer(status, handleOn(walk_->root.node.get()));
}
MPlug MItDependencyGraph::rootPlug(MStatus* status) const { return plugOf(walk_->root.plug, status); }
