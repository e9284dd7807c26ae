#include "nodes/common/uv_sets.h"

#include "nodes/common/steps.h"

#include <maya/MFnMesh.h>
#include <maya/MStringArray.h>

namespace vesk::nodes {

bool checkUvSet(const MFnMesh& mesh, const MString& uvSet, const MString& nodeName) {
    if (uvSet.length() == 0) {
        if (mesh.currentUVSetName().length() > 0) return true;
        warn(nodeName, "Cannot find a current uvSet.");
        return false;
    }
    MStringArray names;
    mesh.getUVSetNames(names);
    for (unsigned i = 0; i < names.length(); ++i) {
        if (names[i] == uvSet) return true;
    }
    warn(nodeName, ("Cannot find uvSet named \"" + uvSet + "\".").asChar());
    return false;
}

} // namespace vesk::nodes
