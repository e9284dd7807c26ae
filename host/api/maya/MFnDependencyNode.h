#pragma once

#include <maya/MFnBase.h>
#include <maya/MPlug.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

class MPlugArray;
class MPxNode;

namespace vesk::graph {
class Node;
} // namespace vesk::graph

/// Function set of every node. On a node that was deleted everything fails with `kInvalidParameter`.
class MFnDependencyNode : public MFnBase {
  public:
    MFnDependencyNode() = default;
    explicit MFnDependencyNode(const MObject& object, MStatus* status = nullptr) { take(object, status); }
    MFn::Type type() const override { return MFn::kDependencyNode; }

    /// A node of a type known by name or id; named after its type, or as wished when that is free.
    MObject create(const MString& typeName, MStatus* status = nullptr);
    MObject create(const MString& typeName, const MString& name, MStatus* status = nullptr);
    MObject create(const MTypeId& typeId, MStatus* status = nullptr);
    MObject create(const MTypeId& typeId, const MString& name, MStatus* status = nullptr);

    MString name(MStatus* status = nullptr) const;
    /// Gives the node the name, with a number when it is taken, and answers with what it became.
    MString setName(const MString& name, MStatus* status = nullptr);
    bool hasUniqueName(MStatus* status = nullptr) const;
    MString typeName(MStatus* status = nullptr) const;
    MTypeId typeId(MStatus* status = nullptr) const;
    /// Of a node type; empty when it has none or is unknown.
    static MString classification(const MString& typeName);
    MString pluginName(MStatus* status = nullptr) const;
    /// The plug-in's object behind the node; null for the host's own nodes.
    MPxNode* userNode(MStatus* status = nullptr) const;

    unsigned int attributeCount(MStatus* status = nullptr) const;
    MObject attribute(unsigned int index, MStatus* status = nullptr) const;
    /// By long or short name; null and `kInvalidParameter` when there is none.
    MObject attribute(const MString& name, MStatus* status = nullptr) const;
    bool hasAttribute(const MString& name, MStatus* status = nullptr) const;
    /// By long, short or alias name, with indices where wanted: `multi[2].child`.
    MPlug findPlug(const MString& name, MStatus* status = nullptr) const;
    MPlug findPlug(const MString& name, bool wantNetworked, MStatus* status = nullptr) const;
    MPlug findPlug(const MObject& attribute, MStatus* status = nullptr) const;
    MPlug findPlug(const MObject& attribute, bool wantNetworked, MStatus* status = nullptr) const;
    /// Gives the node an attribute of its own.
    MStatus addAttribute(const MObject& attribute);
    MStatus removeAttribute(const MObject& attribute);

    /// All plugs that wires hang on.
    MStatus getConnections(MPlugArray& plugs) const;
    /// Empty when the plug has no alias.
    MString plugsAlias(const MPlug& plug, MStatus* status = nullptr) const;
    bool findAlias(const MString& alias, MObject& attribute, MStatus* status = nullptr) const;

    bool isDefaultNode(MStatus* status = nullptr) const;
    bool isFromReferencedFile(MStatus* status = nullptr) const;
    bool isLocked(MStatus* status = nullptr) const;
    MStatus setLocked(bool locked);

  protected:
    /// Null when the set is empty or its node was deleted.
    vesk::graph::Node* hostNode() const;
    void take(const MObject& object, MStatus* status);
    bool accepts(const vesk::Object& object) const override;
};
