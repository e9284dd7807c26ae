#include "host/nodes/register.h"

#include "host/api/impl/plugin_type.h"
#include "host/nodes/anim_curve_node.h"
#include "host/nodes/arithmetic.h"
#include "host/nodes/groups.h"
#include "host/nodes/mesh_node.h"
#include "host/nodes/nurbs_operators.h"
#include "host/nodes/nurbs_shapes.h"
#include "host/nodes/particle_node.h"
#include "host/nodes/polygon_creators.h"
#include "host/nodes/shape_node.h"
#include "host/nodes/stock_types.h"
#include "host/nodes/transform.h"

namespace vesk::nodes {

void registerHostTypes(graph::TypeRegistry& types) {
    registerTransforms(types);
    registerShapeBases(types);
    registerMesh(types);
    registerNurbsShapes(types);
    registerParticles(types);
    api::registerLocatorType(types);
    registerPolygonCreators(types);
    registerNurbsOperators(types);
    registerGroups(types);
    registerArithmetic(types);
    registerAnimCurves(types);
    registerStockTypes(types);
}

} // namespace vesk::nodes
