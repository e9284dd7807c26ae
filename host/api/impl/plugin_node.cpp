#include "host/api/impl/plugin_node.h"

#include "host/api/impl/access.h"
#include "host/api/impl/guarded.h"
#include "host/graph/evaluate.h"

#include <maya/MDataBlock.h>
#include <maya/MRampAttribute.h>

namespace vesk::api {

using graph::Cell;
using graph::ComputeResult;

namespace {

/// Whether the object's class has a `setDependentsDirty` of its own: few do, and asking costs more than all
/// the rest of an element's dirt. A compiler that cannot tell has them all asked.
bool overridesDependents(MPxNode& body) {
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wpmf-conversions"
    using Function = MStatus (*)(MPxNode*, const MPlug&, MPlugArray&);
    constexpr auto kMember = &MPxNode::setDependentsDirty;
    return (Function)(body.*kMember) != (Function)(&MPxNode::setDependentsDirty);
#pragma GCC diagnostic pop
#else
    (void)body;
    return true;
#endif
}

} // namespace

PluginHost::PluginHost(graph::Node& node, std::unique_ptr<MPxNode> body)
    : node_(node), body_(std::move(body)), asksDependents_(body_ && overridesDependents(*body_)) {
    if (body_) body_->host_ = this;
}

PluginHost::~PluginHost() {
    calls_ = 0;
    orphan();
}

void PluginHost::orphan() {
    if (!body_) return;
    if (calls_ > 0) {
        doomed_ = true;
        return;
    }
    body_->host_ = nullptr; // no handle on a node that is going away
    body_.reset();
}

/// While a function of the object runs, neither the object nor its node goes away.
class PluginHost::Call {
  public:
    explicit Call(PluginHost& host) : node_(&host.node_), host_(host) { ++host_.calls_; }
    ~Call() {
        if (--host_.calls_ == 0 && host_.doomed_) host_.orphan();
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

  private:
    Ref<graph::Node> node_;
    PluginHost& host_;
};

/// Calls a function of the object, if there is one, and lets nothing out that it throws.
template <class Action>
void PluginHost::call(const char* function, const Cell* cell, Action action) {
    if (isOrphan()) return;
    const Call running(*this);
    const auto place = [&] {
        const std::string name = cell ? graph::Plug(*cell).name() : node_.uniqueName();
        return std::string(function) + " of '" + name + "' (" + node_.type().name() + ")";
    };
    guarded(place, action);
}

ComputeResult PluginHost::computeBody(Cell& requested) {
    MStatus status = MStatus::kUnknownParameter;
    call("compute", &requested, [&] {
        status = MStatus::kFailure; // what stands when it throws
        const MPlug plug(requested);
        MDataBlock block(&node_);
        status = body_->compute(plug, block);
    });
    return status == MStatus::kUnknownParameter ? ComputeResult::NotMine : ComputeResult::Done;
}

void PluginHost::askDependents(Cell& cell, std::vector<Cell*>& alsoDirty) {
    call("setDependentsDirty", &cell, [&] {
        MPlugArray plugs;
        body_->setDependentsDirty(MPlug(cell), plugs);
        for (const MPlug& plug : storage(plugs)) {
            const auto host = plug.hostPlug();
            if (host.node.get() != &node_) continue;
            if (Cell* one = host.cell()) alsoDirty.push_back(one);
        }
    });
}

void PluginHost::tellMade(Cell& own, Cell& other, bool asSource) {
    call("connectionMade", &own, [&] { body_->connectionMade(MPlug(own), MPlug(other), asSource); });
}

void PluginHost::tellBroken(Cell& own, Cell& other, bool asSource) {
    call("connectionBroken", &own, [&] { body_->connectionBroken(MPlug(own), MPlug(other), asSource); });
}

void PluginHost::callBody(const char* function, const Cell& cell,
                          const std::function<void(MPxNode&)>& action) {
    call(function, &cell, [&] { action(*body_); });
}

void PluginHost::startBody() {
    for (const auto& attribute : node_.type().attributes()) {
        if (attribute->ramp == graph::RampKind::None || attribute->multiDepth() != 1) continue;
        // A fresh ramp has one entry: value 0 at position 0, going on straight.
        Cell& ramp = node_.cell(*attribute);
        if (!ramp.children.empty()) continue;
        Cell& entry = ramp.element(0);
        entry.isSet = true;
        graph::putNumber(entry.child(0), 0);
        graph::putNumber(entry.child(2), MRampAttribute::kLinear);
    }
    call("postConstructor", nullptr, [&] { body_->postConstructor(); });
}

} // namespace vesk::api
