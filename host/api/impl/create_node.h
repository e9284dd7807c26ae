#pragma once
// Nodes made by API calls.

#include "host/graph/scene.h"

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

namespace vesk::api {

/// A node of the type in the session's scene. A shape without a parent gets a transform, which is then the
/// answer. `kInvalidParameter` for a type that is not there or only a base, `kFailure` without a session.
MObject createNode(const graph::NodeType* type, const MString& name, graph::DagNode* parent, MStatus* status);
const graph::NodeType* typeNamed(const MString& name);
const graph::NodeType* typeWithId(unsigned id);

} // namespace vesk::api
