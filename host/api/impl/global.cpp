#include <maya/MGlobal.h>

#include "host/api/impl/access.h"
#include "host/api/impl/session_hooks.h"
#include "host/core/log.h"

#include <maya/MDoubleArray.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>
#include <maya/MTime.h>
#include <maya/MTypes.h>

using vesk::text;
using vesk::api::answer;
using vesk::api::session;
using vesk::api::view;
using vesk::graph::Selection;

void MGlobal::displayInfo(const MString& message) { vesk::log().info(view(message)); }
void MGlobal::displayWarning(const MString& message) { vesk::log().warning(view(message)); }
void MGlobal::displayError(const MString& message) { vesk::log().error(view(message)); }

// --- languages
// -------------------------------------------------------------------------------------------------------

namespace {

/// Runs MEL and fills the result as `MCommandResult` converts it; clears it on any failure.
template <class Result>
MStatus run(const MString& command, Result& result, bool echo) {
    if constexpr (std::is_arithmetic_v<Result>) {
        result = 0;
    } else {
        result = Result();
    }
    if (!session()) return MStatus::kFailure;
    auto done = session()->runMel(text(command), echo);
    if (!done.ok) return MStatus::kFailure;
    if constexpr (std::is_same_v<Result, MDoubleArray>) {
        if (auto* floats = done.value.template ifShared<vesk::mel::FloatArray>()) {
            vesk::storage(result) = std::move(floats->write());
            return {};
        }
    }
    return MCommandResult(done.value).getResult(result);
}

} // namespace

MStatus MGlobal::executeCommand(const MString& command, bool displayEnabled, bool) {
    if (!session()) return MStatus::kFailure;
    return session()->runMel(text(command), displayEnabled).ok ? MStatus::kSuccess : MStatus::kFailure;
}
MStatus MGlobal::executeCommand(const MString& command, int& result, bool displayEnabled, bool) {
    return run(command, result, displayEnabled);
}
MStatus MGlobal::executeCommand(const MString& command, MIntArray& result, bool displayEnabled, bool) {
    return run(command, result, displayEnabled);
}
MStatus MGlobal::executeCommand(const MString& command, double& result, bool displayEnabled, bool) {
    return run(command, result, displayEnabled);
}
MStatus MGlobal::executeCommand(const MString& command, MDoubleArray& result, bool displayEnabled, bool) {
    return run(command, result, displayEnabled);
}
MStatus MGlobal::executeCommand(const MString& command, MString& result, bool displayEnabled, bool) {
    return run(command, result, displayEnabled);
}
MStatus MGlobal::executeCommand(const MString& command, MStringArray& result, bool displayEnabled, bool) {
    return run(command, result, displayEnabled);
}

MStatus MGlobal::executeCommand(const MString& command, MCommandResult& result, bool displayEnabled, bool) {
    result = MCommandResult();
    if (!session()) return MStatus::kFailure;
    const auto done = session()->runMel(text(command), displayEnabled);
    if (!done.ok) return MStatus::kFailure;
    result = MCommandResult(done.value);
    return {};
}

MString MGlobal::executeCommandStringResult(const MString& command, bool displayEnabled, bool,
                                            MStatus* status) {
    MString result;
    vesk::api::report(status, run(command, result, displayEnabled));
    return result;
}

MStatus MGlobal::executeCommandOnIdle(const MString& command, bool) {
    if (!session()) return MStatus::kFailure;
    session()->deferMel(text(command));
    return {};
}

MStatus MGlobal::sourceFile(const MString& path) {
    return session() && session()->sourceFile(text(path)).ok ? MStatus::kSuccess : MStatus::kFailure;
}

MStatus MGlobal::executePythonCommand(const MString& command, bool displayEnabled, bool) {
    return session() && session()->runPython(text(command), displayEnabled).ok ? MStatus::kSuccess
                                                                               : MStatus::kFailure;
}

MStatus MGlobal::executePythonCommand(const MString& command, MString& result, bool displayEnabled, bool) {
    result = MString();
    if (!session()) return MStatus::kFailure;
    const auto done = session()->runPython(text(command), displayEnabled);
    if (!done.ok) return MStatus::kFailure;
    result = vesk::toMString(done.text);
    return {};
}

MString MGlobal::executePythonCommandStringResult(const MString& command, bool displayEnabled,
                                                  bool undoEnabled, MStatus* status) {
    MString result;
    vesk::api::report(status, executePythonCommand(command, result, displayEnabled, undoEnabled));
    return result;
}

// --- selection
// -------------------------------------------------------------------------------------------------------

MStatus MGlobal::getActiveSelectionList(MSelectionList& list) {
    if (!session()) return MStatus::kFailure;
    list = MSelectionList(session()->scene().selection);
    return {};
}

MStatus MGlobal::setActiveSelectionList(const MSelectionList& list, ListAdjustment adjustment) {
    if (!session()) return MStatus::kFailure;
    Selection& active = session()->scene().selection;
    MSelectionList result(active);
    switch (adjustment) {
    case kReplaceList: result = list; break;
    case kXORWithList: result.merge(list, MSelectionList::kXORWithList); break;
    case kAddToList: result.merge(list); break;
    case kRemoveFromList: result.merge(list, MSelectionList::kRemoveFromList); break;
    case kAddToHeadOfList:
        result = list;
        result.merge(MSelectionList(active));
        break;
    }
    active = result.hostSelection();
    return {};
}

MStatus MGlobal::getHiliteList(MSelectionList& list) {
    if (!session()) return MStatus::kFailure;
    list = MSelectionList(session()->hilite);
    return {};
}

MStatus MGlobal::setHiliteList(const MSelectionList& list) {
    if (!session()) return MStatus::kFailure;
    session()->hilite = list.hostSelection();
    return {};
}

MStatus MGlobal::clearSelectionList() { return setActiveSelectionList(MSelectionList()); }

MStatus MGlobal::select(const MObject& node, ListAdjustment adjustment) {
    MSelectionList list;
    const MStatus added = list.add(node);
    return added ? setActiveSelectionList(list, adjustment) : added;
}

MStatus MGlobal::unselect(const MObject& node) { return select(node, kRemoveFromList); }

MStatus MGlobal::selectByName(const MString& name, ListAdjustment adjustment) {
    MSelectionList list;
    const MStatus added = list.add(name);
    return added ? setActiveSelectionList(list, adjustment) : added;
}

MStatus MGlobal::getSelectionListByName(const MString& name, MSelectionList& list) {
    list.clear();
    return list.add(name);
}

// --- the rest
// --------------------------------------------------------------------------------------------------------

MStatus MGlobal::deleteNode(MObject& node) {
    auto* host = vesk::api::nodeOf(node);
    if (!host) return MStatus::kInvalidParameter;
    if (host->isDefault || host->isLocked || host == &host->scene()->world()) return MStatus::kFailure;
    host->scene()->remove(*host);
    return {};
}

MGlobal::MMayaState MGlobal::mayaState(MStatus* status) {
    if (!session()) return answer(status, kBatch, MStatus::kFailure);
    return answer(status, session()->state());
}

int MGlobal::apiVersion() { return MAYA_API_VERSION; }
bool MGlobal::isYAxisUp(MStatus* status) { return answer(status, true); }

MStatus MGlobal::viewFrame(double frame) {
    if (!session()) return MStatus::kFailure;
    session()->scene().setFrame(frame);
    return {};
}

MStatus MGlobal::viewFrame(const MTime& time) {
    if (!session()) return MStatus::kFailure;
    return viewFrame(time.as(MTime::kSeconds) * session()->scene().framesPerSecond());
}
