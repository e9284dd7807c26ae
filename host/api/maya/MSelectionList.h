#pragma once

#include <maya/MDagPath.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <memory>

namespace vesk::graph {
class Selection;
struct SelectionItem;
} // namespace vesk::graph

/// Nodes, plugs and components, in the order of their adding. Nodes that are deleted drop out.
class MSelectionList {
  public:
    enum MergeStrategy { kMergeNormal = 0, kXORWithList, kRemoveFromList };

    MSelectionList();
    MSelectionList(const MSelectionList& other);
    MSelectionList(MSelectionList&& other) noexcept;
    MSelectionList& operator=(const MSelectionList& other);
    MSelectionList& operator=(MSelectionList&& other) noexcept;
    ~MSelectionList();

    unsigned int length(MStatus* status = nullptr) const;
    bool isEmpty(MStatus* status = nullptr) const { return length(status) == 0; }
    MStatus clear();

    /// All that a name, a path, a pattern with `*`, a plug or components stand for. What is in the list
    /// already is not added a second time. `kInvalidParameter` when nothing matches.
    MStatus add(const MString& matching, bool searchChildNamespaces = false);
    /// Appended even if it is in the list, unless merging.
    MStatus add(const MObject& node, bool mergeWithExisting = false);
    MStatus add(const MDagPath& path, const MObject& component = MObject::kNullObj,
                bool mergeWithExisting = false);
    MStatus add(const MPlug& plug, bool mergeWithExisting = false);
    MStatus remove(unsigned int position);
    MStatus merge(const MSelectionList& other, MergeStrategy strategy = kMergeNormal);

    // By position: `kInvalidParameter` past the last, `kFailure` when another kind of thing stands there.

    MStatus getDependNode(unsigned int position, MObject& node) const;
    MStatus getDagPath(unsigned int position, MDagPath& path) const;
    MStatus getDagPath(unsigned int position, MDagPath& path, MObject& component) const;
    MStatus getPlug(unsigned int position, MPlug& plug) const;

    /// Shortest unique names; several for scattered components.
    MStatus getSelectionStrings(MStringArray& names) const;
    MStatus getSelectionStrings(unsigned int position, MStringArray& names) const;

    bool hasItem(const MObject& node, MStatus* status = nullptr) const;
    bool hasItem(const MPlug& plug, MStatus* status = nullptr) const;
    bool hasItem(const MDagPath& path, const MObject& component = MObject::kNullObj,
                 MStatus* status = nullptr) const;

    /// For the host.
    explicit MSelectionList(const vesk::graph::Selection& selection);
    const vesk::graph::Selection& hostSelection() const { return *selection_; }

  private:
    const vesk::graph::SelectionItem* at(unsigned int position) const;
    std::unique_ptr<vesk::graph::Selection> selection_; ///< never null
};
