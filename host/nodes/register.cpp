#include "host/nodes/register.h"

#include "host/nodes/mesh_node.h"
#include "host/nodes/shape_node.h"
#include "host/nodes/stock_types.h"
#include "host/nodes/transform.h"

namespace vesk::nodes {

void registerHostTypes(graph::TypeRegistry& types) {
    registerTransforms(types);
    registerShapeBases(types);
    registerMesh(types);
    registerStockTypes(types);
}

} // namespace vesk::nodes
