// Entry points: what happens when the host loads and unloads the library, step by step in the contract's
// order.

#include "plugin/registry.h"
#include "plugin/scripts.h"

#include <maya/MFnPlugin.h>
#include <maya/MGlobal.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

#include <fstream>
#include <string_view>

#if defined(_WIN32)
#define VESK_EXPORT extern "C" __declspec(dllexport)
#else
#define VESK_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

using namespace vesk;

MStatus registerNodes(MFnPlugin& plugin) {
    MStatus status;
    for (const NodeRow& row : nodeRows()) {
        if (!row.isWritten()) continue;
        const MString classification(row.classification ? row.classification : "");
        status = plugin.registerNode(row.name, MTypeId(row.typeId), row.creator, row.initialize, row.type,
                                     row.classification ? &classification : nullptr);
        if (!status) {
            status.perror("registerNode");
            return status;
        }
    }
    return status;
}

void printBanner() {
    static constexpr const char* kLines[] = {
        "",
        "Vesk (Jan 20 2013) Copyright the Vesk authors.",
        "Use it, change it and pass it on under the Apache License, Version 2.0.",
        "It comes without a warranty of any kind: see the LICENSE file for the terms.",
        "Save your scene before you try a new set-up.",
        "",
        "Contributors:",
        "    The graph team",
        "    The geometry team",
        "    The language team",
        "    The tools team",
        "    The examples team",
        "",
    };
    for (const char* line : kLines)
        MGlobal::displayInfo(line);
}

MString text(std::string_view carried) { return MString(carried.data(), static_cast<int>(carried.size())); }

void runMel(const MString& command) { MGlobal::executeCommand(command, false, false); }
void runPython(const MString& statement) { MGlobal::executePythonCommand(statement, false, false); }

void buildInterface() {
    runPython("vesk().updateShelfMenus()");
    runMel("makePaintable -at \"multiFloat\" -sm \"deformer\" \"peak\" \"weights\"");
    runMel("makePaintable -at \"multiFloat\" -sm \"deformer\" \"smooth\" \"weights\"");
    runMel("makePaintable -at \"doubleArray\" \"tensionMap\" \"inWeightPP\"");
    runMel("makePaintable -at \"doubleArray\" \"rayProject\" \"inWeightPP\"");
    runMel("makePaintable -at \"doubleArray\" \"timeOffset\" \"inWeightPP\"");
    runMel("makePaintable -at \"doubleArray\" \"retarget\" \"inWeightPP\"");
}

/// A file that cannot be written is not reported: the import that needs it fails in the interpreter.
void writeFile(const MString& path, std::string_view content) {
    std::ofstream file(path.asChar(), std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
}

/// The reload takes the text of this load, also in a second one; the source then leaves the disk.
void importTool(const char* module, const MString& folder) {
    const MString name(module);
    runPython("import " + name + " as " + name + "; reload(" + name + "); os.remove('" + folder + name +
              ".py')");
}

void writeTools() {
    const MString folder = MGlobal::executeCommandStringResult("internalVar -userScriptDir", false, false);
    writeFile(folder + "iconsDesigner.py", scripts::iconsDesignerPython);
    writeFile(folder + "iconsDesigner.ui", scripts::iconsDesignerUi);
    writeFile(folder + "iconsDesigner.hlp", scripts::iconsDesignerHelp);
    writeFile(folder + "icons.cfg", scripts::iconsConfiguration);
    importTool("iconsDesigner", folder);
    writeFile(folder + "slidersManager.py", scripts::slidersManagerPython);
    writeFile(folder + "slidersManager.hlp", scripts::slidersManagerHelp);
    importTool("slidersManager", folder);
    writeFile(folder + "displayDriverManager.hlp", scripts::displayDriverManagerHelp);
    writeFile(folder + "scriptsManager.py", scripts::scriptsManagerPython);
    importTool("scriptsManager", folder);
}

} // namespace

VESK_EXPORT MStatus initializePlugin(MObject obj) {
    MFnPlugin plugin(obj, "The Vesk authors", "Jan 20 2013", "any", nullptr);
    const MStatus status = registerNodes(plugin);
    if (!status) return status;
    printBanner();
    runMel(text(scripts::attributeEditorMel));
    runMel(text(scripts::displayDriverManagerMel));
    runPython(text(scripts::toolsPython));
    runPython("import os");
    if (MGlobal::mayaState(nullptr) == MGlobal::kInteractive) buildInterface();
    writeTools();
    return status;
}

VESK_EXPORT MStatus uninitializePlugin(MObject obj) {
    MFnPlugin plugin(obj, "Unknown", "Unknown", "Any");
    MStatus status;
    for (const NodeRow& row : nodeRows()) {
        if (!row.isWritten()) continue;
        status = plugin.deregisterNode(MTypeId(row.typeId));
        if (!status) {
            status.perror("deregisterNode");
            return status;
        }
    }
    return status;
}
