#include "host/api/impl/plugin_node.h"

#include "host/api/impl/access.h"
#include "host/api/impl/guarded.h"
#include "host/graph/evaluate.h"

#include <maya/MDataBlock.h>
#include <maya/MRampAttribute.h>

namespace vesk::api {

using graph::Cell;
using graph::ComputeResult;

PluginHost::PluginHost(graph::Node& node, std::unique_ptr<MPxNode> body)
    : node_(node), body_(std::move(body)) {
    if (body_) body_->host_ = this;
}

PluginHost::~PluginHost() { orphan(); }

void PluginHost::orphan() {
    if (!body_) return;
    body_->host_ = nullptr; // no handle on a node that is going away
    body_.reset();
}

std::string PluginHost::placeOf(const char* function, const Cell* cell) const {
    const std::string name = cell ? graph::Plug(*cell).name() : node_.uniqueName();
    return std::string(function) + " of '" + name + "' (" + node_.type().name() + ")";
}

ComputeResult PluginHost::computeBody(Cell& requested) {
    if (!body_) return ComputeResult::NotMine;
    MStatus status;
    guarded([&] { return placeOf("compute", &requested); },
            [&] {
                const MPlug plug(requested);
                MDataBlock block(&node_);
                status = body_->compute(plug, block);
            });
    return status == MStatus::kUnknownParameter ? ComputeResult::NotMine : ComputeResult::Done;
}

void PluginHost::askDependents(Cell& cell, std::vector<Cell*>& alsoDirty) {
    if (!body_) return;
    guarded([&] { return placeOf("setDependentsDirty", &cell); },
            [&] {
                dependents_.clear();
                body_->setDependentsDirty(MPlug(cell), dependents_);
                for (const MPlug& plug : storage(dependents_)) {
                    const auto host = plug.hostPlug();
                    if (host.node.get() != &node_) continue;
                    if (Cell* one = host.cell()) alsoDirty.push_back(one);
                }
            });
}

void PluginHost::tellMade(Cell& own, Cell& other, bool asSource) {
    if (!body_) return;
    guarded([&] { return placeOf("connectionMade", &own); },
            [&] { body_->connectionMade(MPlug(own), MPlug(other), asSource); });
}

void PluginHost::tellBroken(Cell& own, Cell& other, bool asSource) {
    if (!body_) return;
    guarded([&] { return placeOf("connectionBroken", &own); },
            [&] { body_->connectionBroken(MPlug(own), MPlug(other), asSource); });
}

void PluginHost::startBody() {
    if (!body_) return;
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
    guarded([&] { return placeOf("postConstructor"); }, [&] { body_->postConstructor(); });
}

} // namespace vesk::api
