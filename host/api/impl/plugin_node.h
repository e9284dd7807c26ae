#pragma once
// The host's nodes around the objects of plug-ins.

#include "host/graph/dag.h"

#include <maya/MPlugArray.h>
#include <maya/MPxNode.h>

#include <functional>
#include <memory>

namespace vesk::api {

/// What a plug-in's object and its node have to do with each other, whatever the node's class in the graph.
class PluginHost {
  public:
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    /// Null once the plug-in that made it is gone.
    MPxNode* body() const { return body_.get(); }
    graph::Node& hostNode() const { return node_; }
    bool isOrphan() const { return !body_ || doomed_; }
    /// Destroys the plug-in's object, once none of its functions runs any more; the node stays, as one of
    /// unknown kind.
    void orphan();

  protected:
    PluginHost(graph::Node& node, std::unique_ptr<MPxNode> body);
    ~PluginHost();

    graph::ComputeResult computeBody(graph::Cell& requested);
    /// Whether the object has a `setDependentsDirty` of its own.
    bool asksDependents() const { return !isOrphan() && asksDependents_; }
    void askDependents(graph::Cell& cell, std::vector<graph::Cell*>& alsoDirty);
    void tellMade(graph::Cell& own, graph::Cell& other, bool asSource);
    void tellBroken(graph::Cell& own, graph::Cell& other, bool asSource);
    /// First entries of ramps, then the object's `postConstructor`.
    void startBody();
    /// Calls another function of the object, guarded as those above; `cell` is what an error names.
    void callBody(const char* function, const graph::Cell& cell, const std::function<void(MPxNode&)>& action);

  private:
    class Call;
    template <class Action>
    void call(const char* function, const graph::Cell* cell, Action action);

    graph::Node& node_;
    std::unique_ptr<MPxNode> body_;
    const bool asksDependents_;
    int calls_ = 0;       ///< functions of the object that are running
    bool doomed_ = false; ///< to be destroyed when the last of them returns
};

/// A node of graph class `Base` around a plug-in's object. What the object calls unknown is the base's.
template <class Base>
class PluginNodeOf : public Base, public PluginHost {
  public:
    PluginNodeOf(const graph::NodeType& type, std::unique_ptr<MPxNode> body)
        : Base(type), PluginHost(*this, std::move(body)) {}

    MFn::Type apiType() const override { return isOrphan() ? MFn::kUnknown : Base::apiType(); }
    bool hasFn(MFn::Type kind) const override {
        return isOrphan() ? isKindOf(MFn::kUnknown, kind) : Base::hasFn(kind);
    }
    graph::ComputeResult compute(graph::Cell& requested) override {
        // Matrices are never the plug-in's; a node that takes every plug for its own would leave them empty.
        if constexpr (std::is_base_of_v<graph::DagNode, Base>) {
            if (isDagAttribute(requested.attr)) return Base::compute(requested);
        }
        const auto result = computeBody(requested);
        return result == graph::ComputeResult::NotMine ? Base::compute(requested) : result;
    }
    bool wantsDependents() const override { return Base::wantsDependents() || asksDependents(); }
    void dependents(graph::Cell& cell, std::vector<graph::Cell*>& alsoDirty) override {
        Base::dependents(cell, alsoDirty);
        askDependents(cell, alsoDirty);
    }
    void connectionMade(graph::Cell& own, graph::Cell& other, bool asSource) override {
        Base::connectionMade(own, other, asSource);
        tellMade(own, other, asSource);
    }
    void connectionBroken(graph::Cell& own, graph::Cell& other, bool asSource) override {
        Base::connectionBroken(own, other, asSource);
        tellBroken(own, other, asSource);
    }
    void created() override {
        Base::created();
        startBody();
    }
    void removing() override {
        Base::removing();
        orphan();
    }

  private:
    static bool isDagAttribute(const graph::Attribute& attribute) {
        const auto& a = graph::dagAttributes();
        const auto* one = &attribute;
        return one == a.matrix.get() || one == a.inverseMatrix.get() || one == a.worldMatrix.get() ||
               one == a.worldInverseMatrix.get() || one == a.parentMatrix.get() ||
               one == a.parentInverseMatrix.get();
    }
};

using PluginNode = PluginNodeOf<graph::Node>;

} // namespace vesk::api
