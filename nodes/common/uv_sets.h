#pragma once

class MFnMesh;
class MString;

namespace vesk::nodes {

/// Whether the mesh has the set, an empty name standing for the current one; if not, there is a warning.
bool checkUvSet(const MFnMesh& mesh, const MString& uvSet, const MString& nodeName);

} // namespace vesk::nodes
