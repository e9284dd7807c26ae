#pragma once
// An instance of a node type in a scene.

#include "host/graph/cell.h"
#include "host/graph/node_type.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vesk::graph {

class Scene;

/// What a compute has to say: done, or "not mine" (the base class's turn; the old value stands).
enum class ComputeResult { Done, NotMine };

/// Base of all nodes. Host types derive from it; plug-in types sit in an adapter that derives from it.
class Node : public Object {
  public:
    explicit Node(const NodeType& type);
    ~Node() override;

    const NodeType& type() const { return *type_; }
    MFn::Type apiType() const override { return type_->apiType(); }
    bool hasFn(MFn::Type kind) const override { return type_->hasFn(kind); }
    bool isAlive() const override { return scene_ != nullptr; }

    const std::string& name() const { return name_; }
    /// Name that commands understand: the shortest unique path for a DAG node.
    virtual std::string uniqueName() const { return name_; }
    Scene* scene() const { return scene_; }

    /// Attributes of the type, then the node's own dynamic ones.
    Attribute* findAttribute(std::string_view name) const;
    Attribute* attributeAt(int index) const;
    int attributeCount() const;
    const std::vector<AttrRef>& dynamicAttributes() const { return dynamic_; }
    Outcome addDynamicAttribute(const AttrRef& attribute);
    /// A further child of a dynamic compound.
    Outcome addDynamicChild(Attribute& parent, const AttrRef& child);
    /// Disconnects and forgets a dynamic attribute.
    Outcome removeDynamicAttribute(Attribute& attribute);
    std::string alias(const Attribute& attribute, int logicalIndex) const;
    struct Alias {
        std::string name;
        Ref<Attribute> attribute;
        int logicalIndex;
    };
    std::vector<Alias> aliases;

    /// The cell of an attribute without multi ancestors, made when missing.
    Cell& cell(const Attribute& attribute);
    Cell* cellIfThere(const Attribute& attribute) const;
    /// Existing top-level cells.
    template <class F>
    void eachCell(F&& visit) {
        for (auto& top : tops_) {
            if (top) top->walk(visit);
        }
    }

    /// Outputs that a change of this cell's attribute dirties.
    const std::vector<Attribute*>& affectedBy(const Attribute& attribute) const;
    bool isComputed(const Attribute& attribute) const;

    // What a node type may do. None may throw.

    /// Fill the requested output (and whatever else is cheap to fill with it).
    virtual ComputeResult compute(Cell& /*requested*/) { return ComputeResult::NotMine; }
    /// More cells that get dirty with `cell`; must not evaluate.
    virtual void dependents(Cell& /*cell*/, std::vector<Cell*>& /*alsoDirty*/) {}
    virtual bool wantsDependents() const { return false; }
    virtual void connectionMade(Cell& /*own*/, Cell& /*other*/, bool /*asSource*/) {}
    virtual void connectionBroken(Cell& /*own*/, Cell& /*other*/, bool /*asSource*/) {}
    /// After the node is in the scene, before file values arrive.
    virtual void created() {}
    /// A command or a file stored a value here. Dirt was spread already.
    virtual void valueStored(Cell& /*cell*/) {}
    /// Before the node leaves the scene.
    virtual void removing() {}

    short nodeState() const;
    int computing = 0; ///< computes of this node that are under way
    bool isLocked = false;
    bool isDefault = false; ///< made by the session (time1, cameras); not deleted, written by `select -ne`
    bool isReferenced = false;

  private:
    friend class Scene;
    friend class Cell;
    const NodeType* type_;
    std::string name_;
    Scene* scene_ = nullptr;
    std::vector<AttrRef> dynamic_;
    std::vector<std::unique_ptr<Cell>> tops_; ///< by attribute index; null for children and the untouched
    std::vector<Cell*> static_;               ///< by attribute index; cells without multi ancestors
    std::size_t slot_ = 0;                    ///< place in the scene's list of nodes
};

} // namespace vesk::graph
