#pragma once

#include <maya/MArrayDataHandle.h>
#include <maya/MDGContext.h>
#include <maya/MDataHandle.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>

namespace vesk::graph {
class Node;
} // namespace vesk::graph

/// The data of one node while it computes. Attributes are named by their objects; one that is not the node's,
/// or that stands below a multi, gives `kInvalidParameter` and an empty handle.
class MDataBlock {
  public:
    /// Valid data: what feeds the attribute, its children or elements is evaluated.
    MDataHandle inputValue(const MObject& attribute, MStatus* status = nullptr);
    MDataHandle inputValue(const MPlug& plug, MStatus* status = nullptr);
    /// The present content; nothing is evaluated.
    MDataHandle outputValue(const MObject& attribute, MStatus* status = nullptr);
    MDataHandle outputValue(const MPlug& plug, MStatus* status = nullptr);
    /// The elements of a multi, from the first. Elements are evaluated when their `inputValue` is taken.
    MArrayDataHandle inputArrayValue(const MObject& attribute, MStatus* status = nullptr);
    MArrayDataHandle inputArrayValue(const MPlug& plug, MStatus* status = nullptr);
    MArrayDataHandle outputArrayValue(const MObject& attribute, MStatus* status = nullptr);
    MArrayDataHandle outputArrayValue(const MPlug& plug, MStatus* status = nullptr);

    /// The plug counts as up to date until the next change of what it depends on.
    MStatus setClean(const MPlug& plug);
    MStatus setClean(const MObject& attribute);
    bool isClean(const MPlug& plug, MStatus* status = nullptr);
    bool isClean(const MObject& attribute, MStatus* status = nullptr);

    MDGContext context(MStatus* status = nullptr) const;

    /// For the host; with null, nothing is found.
    explicit MDataBlock(vesk::graph::Node* node) : node_(node) {}
    vesk::graph::Node* hostNode() const { return node_; }

  private:
    vesk::graph::Cell* find(const MObject& attribute, MStatus* status);
    vesk::graph::Cell* find(const MPlug& plug, MStatus* status);
    MDataHandle input(vesk::graph::Cell* cell);
    MArrayDataHandle arrayOf(vesk::graph::Cell* cell, bool asInput, MStatus* status);

    vesk::graph::Node* node_;
};
