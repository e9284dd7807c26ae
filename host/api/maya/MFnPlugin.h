#pragma once
// For the one source of a plug-in that holds its entry points: with this header the library exports its API
// version, whatever its visibility settings. `MNoVersionString` leaves that out for further sources.

#include <maya/MFnBase.h>
#include <maya/MPxNode.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>
#include <maya/MTypes.h>

#ifndef MNoVersionString
#define VESK_TEXT_OF_(number) #number
#define VESK_TEXT_OF(number) VESK_TEXT_OF_(number)
extern "C" {
extern __attribute__((visibility("default"))) const char MApiVersion[];
}
const char MApiVersion[] = VESK_TEXT_OF(MAYA_API_VERSION);
#undef VESK_TEXT_OF
#undef VESK_TEXT_OF_
#endif

using MCreatorFunction = void* (*)();
using MInitializeFunction = MStatus (*)();

/// Function set of a plug-in, used by its `initializePlugin` and `uninitializePlugin`.
class MFnPlugin : public MFnBase {
  public:
    MFnPlugin() = default;
    /// The plug-in says who made it. The API version that it requires is kept and not used.
    explicit MFnPlugin(MObject& object, const char* vendor = "Unknown", const char* version = "Unknown",
                       const char* requiredApiVersion = "Any", MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kPlugin; }

    MString name(MStatus* status = nullptr) const;
    MString vendor(MStatus* status = nullptr) const;
    MString version(MStatus* status = nullptr) const;
    MString apiVersion(MStatus* status = nullptr) const;
    /// The folder that the library was loaded from.
    MString loadPath(MStatus* status = nullptr) const;
    MStatus setName(const MString& name);
    MStatus setVersion(const MString& version);

    /// Makes a node type: calls `initialize` at once. `kFailure`, a message, and nothing registered when that
    /// fails, or when the name or the id is known.
    MStatus registerNode(const MString& typeName, const MTypeId& typeId, MCreatorFunction creator,
                         MInitializeFunction initialize, MPxNode::Type type = MPxNode::kDependNode,
                         const MString* classification = nullptr);
    /// Nodes of the type that there are become nodes of unknown kind, which keep their data. `kFailure` for
    /// an id that is no plug-in's.
    MStatus deregisterNode(const MTypeId& typeId);
};
