#pragma once
// Descriptor of a node type: declared once, apart from the instances in a scene.

#include "host/core/outcome.h"
#include "host/graph/attribute.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vesk::graph {

class Node;

/// A node type and its attributes. A derived type starts with its base's attributes, so an attribute's index
/// is the same in every type that inherits it.
class NodeType {
  public:
    using Creator = std::function<Ref<Node>(const NodeType&)>;

    NodeType(std::string name, MFn::Type apiType, const NodeType* base, Creator create);

    const std::string& name() const { return name_; }
    MFn::Type apiType() const { return apiType_; }
    const NodeType* base() const { return base_; }
    bool isA(std::string_view typeName) const;
    /// `apiType()`, its ancestors in the table of kinds, and the kinds added with `alsoKind`.
    bool hasFn(MFn::Type type) const;
    void alsoKind(MFn::Type type) { alsoKinds_.push_back(type); }

    unsigned typeId = 0;
    std::string classification;
    std::string plugin; ///< name of the plug-in that registered the type; empty for the host's own
    bool isDag = false;
    bool isShape = false;
    bool isAbstract = false;  ///< a base that `createNode` refuses
    bool followsTime = false; ///< dirtied by every change of the current time

    Ref<Node> create() const { return create_(*this); }

    /// Takes the attribute and its children. Fails when a name is taken (base attributes included) or the
    /// attribute belongs elsewhere.
    Outcome add(const AttrRef& attribute);
    /// Attribute tables of the host's own types: as `add`, and the attribute back.
    AttrRef operator()(const AttrRef& attribute);
    /// Both must be this type's; `out` must not be keyable.
    Outcome affects(Attribute* in, Attribute* out);
    /// Every input on every output.
    void affectsAll(const std::vector<AttrRef>& ins, const std::vector<AttrRef>& outs);

    /// Declares an output that no attribute of the node influences: what dirties it stands outside.
    void computes(const AttrRef& output);

    /// All attributes, base first, parents before children: an attribute's `index` is its place here.
    const std::vector<AttrRef>& attributes() const { return attributes_; }
    /// By long or short name; null when there is none. A long name wins over a short one.
    Attribute* find(std::string_view name) const;

    /// Outputs that a change of `attribute` dirties, through it, its parents and its children.
    const std::vector<Attribute*>& affectedBy(const Attribute& attribute) const;
    /// Whether the attribute (or a parent or child of it) is the output of some influence.
    bool isComputed(const Attribute& attribute) const;

  private:
    void adopt(const AttrRef& attribute);
    void closeInfluences() const;

    std::string name_;
    MFn::Type apiType_;
    const NodeType* base_;
    Creator create_;
    std::vector<MFn::Type> alsoKinds_;
    std::vector<AttrRef> attributes_;
    std::unordered_map<std::string, Attribute*> longNames_, shortNames_;
    /// Own declarations only, by the index of the input: base attributes are shared with other types.
    std::vector<std::vector<Attribute*>> influences_;
    std::vector<Attribute*> uninfluenced_; ///< outputs declared by `computes`
    mutable bool closed_ = false;
    mutable std::vector<std::vector<Attribute*>> closure_;
    mutable std::vector<bool> computed_;
};

/// The types that a session knows. Registration order is kept.
class TypeRegistry {
  public:
    /// Fails on a taken name or (non-zero) id.
    Outcome add(std::unique_ptr<NodeType> type);
    /// The type leaves the registry and is handed back; nodes of it must be dealt with first.
    std::unique_ptr<NodeType> remove(std::string_view name);
    NodeType* find(std::string_view name) const;
    NodeType* findId(unsigned typeId) const;
    std::vector<const NodeType*> all() const;
    void clear();

  private:
    std::vector<std::unique_ptr<NodeType>> types_;
    std::unordered_map<std::string, NodeType*> byName_;
};

} // namespace vesk::graph
