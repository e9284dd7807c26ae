#pragma once

#include <maya/MCommandResult.h>
#include <maya/MObject.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

class MDoubleArray;
class MIntArray;
class MStringArray;
class MTime;

/// The session: its messages, its languages, its selection. Without a running session `kFailure`.
class MGlobal {
  public:
    enum MMayaState { kInteractive = 0, kBatch, kLibraryApp, kBaseUIMode };
    enum ListAdjustment { kReplaceList = 0, kXORWithList, kAddToList, kRemoveFromList, kAddToHeadOfList };

    // --- messages ---

    static void displayInfo(const MString& text);
    static void displayWarning(const MString& text);
    static void displayError(const MString& text);

    // --- languages: an error is on the log when the call returns `kFailure`, and the result is cleared ---

    static MStatus executeCommand(const MString& command, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, int& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MIntArray& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, double& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MDoubleArray& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MString& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MStringArray& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& command, MCommandResult& result, bool displayEnabled = false,
                                  bool undoEnabled = false);
    /// Empty unless the result is a string.
    static MString executeCommandStringResult(const MString& command, bool displayEnabled = false,
                                              bool undoEnabled = false, MStatus* status = nullptr);
    /// After what runs now has ended.
    static MStatus executeCommandOnIdle(const MString& command, bool displayEnabled = false);
    static MStatus sourceFile(const MString& path);
    static MStatus executePythonCommand(const MString& command, bool displayEnabled = false,
                                        bool undoEnabled = false);
    static MStatus executePythonCommand(const MString& command, MString& result, bool displayEnabled = false,
                                        bool undoEnabled = false);
    static MString executePythonCommandStringResult(const MString& command, bool displayEnabled = false,
                                                    bool undoEnabled = false, MStatus* status = nullptr);

    // --- selection ---

    static MStatus getActiveSelectionList(MSelectionList& list);
    static MStatus setActiveSelectionList(const MSelectionList& list,
                                          ListAdjustment adjustment = kReplaceList);
    static MStatus getHiliteList(MSelectionList& list);
    static MStatus setHiliteList(const MSelectionList& list);
    static MStatus clearSelectionList();
    static MStatus select(const MObject& node, ListAdjustment adjustment = kAddToList);
    static MStatus unselect(const MObject& node);
    static MStatus selectByName(const MString& name, ListAdjustment adjustment = kAddToList);
    static MStatus getSelectionListByName(const MString& name, MSelectionList& list);

    // --- the rest ---

    /// A DAG node goes with its children.
    static MStatus deleteNode(MObject& node);
    static MMayaState mayaState(MStatus* status = nullptr);
    static int apiVersion();
    static bool isYAxisUp(MStatus* status = nullptr);
    /// Sets the current time.
    static MStatus viewFrame(const MTime& time);
    static MStatus viewFrame(double frame);
};
