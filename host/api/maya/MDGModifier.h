#pragma once

#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

#include <functional>
#include <vector>

/// Changes of the graph that are noted down and made together. Nodes are made at once, so that they can be
/// named in what follows; `doIt` does the rest and stops at the first failure. There is no undo in this host.
class MDGModifier {
  public:
    MDGModifier() = default;
    virtual ~MDGModifier();
    MDGModifier(const MDGModifier&) = delete;
    MDGModifier& operator=(const MDGModifier&) = delete;

    MObject createNode(const MString& typeName, MStatus* status = nullptr);
    MObject createNode(const MTypeId& typeId, MStatus* status = nullptr);
    MStatus deleteNode(const MObject& node);
    MStatus renameNode(const MObject& node, const MString& name);
    MStatus connect(const MPlug& source, const MPlug& destination);
    MStatus connect(const MObject& sourceNode, const MObject& sourceAttribute, const MObject& destinationNode,
                    const MObject& destinationAttribute);
    MStatus disconnect(const MPlug& source, const MPlug& destination);
    MStatus addAttribute(const MObject& node, const MObject& attribute);
    MStatus removeAttribute(const MObject& node, const MObject& attribute);
    MStatus commandToExecute(const MString& command);

    virtual MStatus doIt();
    /// `kNotImplemented`.
    virtual MStatus undoIt();

  private:
    MStatus note(bool isValid, std::function<MStatus()> change);

    std::vector<std::function<MStatus()>> changes_;
};
