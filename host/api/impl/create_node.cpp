#include "host/api/impl/create_node.h"

#include "host/api/impl/access.h"
#include "host/api/impl/session_hooks.h"

namespace vesk::api {

const graph::NodeType* typeNamed(const MString& name) {
    return session() ? session()->scene().types().find(view(name)) : nullptr;
}

const graph::NodeType* typeWithId(unsigned id) {
    return session() && id != 0 ? session()->scene().types().findId(id) : nullptr;
}

MObject createNode(const graph::NodeType* type, const MString& name, graph::DagNode* parent,
                   MStatus* status) {
    if (!session()) return answer(status, MObject(), MStatus::kFailure);
    if (!type || type->isAbstract) return answer(status, MObject(), MStatus::kInvalidParameter);
    graph::Scene& scene = session()->scene();
    if (type->isShape && !parent) {
        const auto* transformType = scene.types().find("transform");
        const auto transform = transformType ? scene.create(*transformType) : Ref<graph::Node>();
        if (!transform) return answer(status, MObject(), MStatus::kFailure);
        if (!scene.create(*type, view(name), static_cast<graph::DagNode*>(transform.get()))) {
            scene.remove(*transform);
            return answer(status, MObject(), MStatus::kFailure);
        }
        return answer(status, handleOn(transform.get()));
    }
    const auto node = scene.create(*type, view(name), parent);
    return answer(status, handleOn(node.get()), node ? MStatus::kSuccess : MStatus::kFailure);
}

} // namespace vesk::api
