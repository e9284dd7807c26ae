#include "host/commands/point_edits.h"

#include "host/data/component.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/data/packed_data.h"
#include "host/graph/evaluate.h"

#include <algorithm>

namespace vesk::commands {

using graph::Cell;
using graph::DagNode;
using graph::SelectionItem;

namespace {

/// The object-space output of a shape, and the multi that holds its tweaks.
struct ShapePlugs {
    std::string_view output, tweaks;
};

ShapePlugs plugsOf(const graph::Node& shape) {
    if (shape.type().isA("mesh")) return {"outMesh", "pnts"};
    if (shape.type().isA("nurbsCurve") || shape.type().isA("nurbsSurface")) return {"local", "controlPoints"};
    throw mel::Error("'" + shape.uniqueName() + "' has no points that can be reached.");
}

Ref<Data> outputOf(graph::Node& shape) {
    return graph::pullData(shape.cell(*shape.findAttribute(plugsOf(shape).output)));
}

/// Flat indices of the points that a component stands for.
std::vector<int> indicesOf(const Component& component, const Data* data) {
    const auto* mesh = dynamic_cast<const MeshData*>(data);
    const auto* surface = dynamic_cast<const NurbsSurfaceData*>(data);
    const auto* curve = dynamic_cast<const NurbsCurveData*>(data);
    std::vector<int> indices;
    const int pointCount = mesh      ? mesh->geometry().vertexCount()
                           : surface ? surface->geometry().cvCountU() * surface->geometry().cvCountV()
                           : curve   ? curve->geometry().cvCount()
                                     : 0;
    if (component.isUnsized()) {
        for (int i = 0; i < pointCount; ++i)
            indices.push_back(i);
        return indices;
    }
    if (const auto* pairs = dynamic_cast<const DoubleComponent*>(&component); pairs && surface) {
        for (std::size_t i = 0; i < pairs->count(); ++i) {
            const auto at = pairs->at(i);
            if (at[0] < surface->geometry().cvCountU() && at[1] < surface->geometry().cvCountV()) {
                indices.push_back(at[0] * surface->geometry().cvCountV() + at[1]);
            }
        }
    }
    const auto* single = dynamic_cast<const SingleComponent*>(&component);
    for (std::size_t i = 0; single && i < single->count(); ++i) {
        const int id = single->at(i)[0];
        if (mesh && component.apiType() == MFn::kMeshPolygonComponent) {
            if (!mesh->geometry().topology().hasFace(id)) continue;
            for (const int vertex : mesh->geometry().topology().verticesOfFace(id))
                indices.push_back(vertex);
        } else if (mesh && component.apiType() == MFn::kMeshEdgeComponent) {
            if (!mesh->geometry().topology().hasEdge(id)) continue;
            const auto& edge = mesh->geometry().topology().edges()[static_cast<std::size_t>(id)];
            indices.push_back(edge.a);
            indices.push_back(edge.b);
        } else if (id < pointCount) {
            indices.push_back(id);
        }
    }
    std::sort(indices.begin(), indices.end());
    indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
    return indices;
}

MPoint pointAt(const Data* data, int index) {
    const auto at = static_cast<std::size_t>(index);
    if (const auto* mesh = dynamic_cast<const MeshData*>(data)) return MPoint(mesh->geometry().point(index));
    if (const auto* curve = dynamic_cast<const NurbsCurveData*>(data)) return curve->geometry().cvs()[at];
    if (const auto* surface = dynamic_cast<const NurbsSurfaceData*>(data))
        return surface->geometry().cvs()[at];
    return MPoint();
}

/// Adds offsets to the shape's tweaks. `offsets` holds three numbers a point.
void addTweaks(graph::Node& shape, const std::vector<int>& indices, const std::vector<double>& offsets) {
    Cell& tweaks = shape.cell(*shape.findAttribute(plugsOf(shape).tweaks));
    Ref<PackedFloats> packed(dynamic_cast<PackedFloats*>(tweaks.data.get()));
    packed = packed ? Ref<PackedFloats>(static_cast<PackedFloats*>(packed->clone().get()))
                    : makeRef<PackedFloats>(3);
    auto& values = packed->write();
    const std::size_t needed = 3 * (static_cast<std::size_t>(indices.back()) + 1);
    if (values.size() < needed) values.resize(needed, 0.0F);
    for (std::size_t i = 0; i < indices.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            float& value = values[3 * static_cast<std::size_t>(indices[i]) + axis];
            value = static_cast<float>(value + offsets[3 * i + axis]);
        }
    }
    require(graph::storeData(tweaks, packed));
}

} // namespace

Ref<Component> pointsOf(const SelectionItem& item) {
    const auto* component = dynamic_cast<const Component*>(item.component.get());
    if (!component) return nullptr;
    const graph::NodeType& type = item.node->type();
    const MFn::Type kind = type.isA("mesh")           ? MFn::kMeshVertComponent
                           : type.isA("nurbsCurve")   ? MFn::kCurveCVComponent
                           : type.isA("nurbsSurface") ? MFn::kSurfaceCVComponent
                           : type.isA("particle")     ? MFn::kDynParticleSetComponent
                                                      : MFn::kInvalid;
    if (component->apiType() == kind) return component->copy();
    const bool hasVertices =
        component->apiType() == MFn::kMeshPolygonComponent || component->apiType() == MFn::kMeshEdgeComponent;
    if (kind != MFn::kMeshVertComponent || !hasVertices) return nullptr;
    const auto vertices = makeRef<SingleComponent>(kind);
    for (const int vertex : indicesOf(*component, outputOf(*item.node).get()))
        (void)vertices->add({vertex});
    return vertices;
}

std::vector<SelectionItem> pointsNamed(const CommandContext& context, std::string_view name) {
    auto items = graph::resolve(context.scene, name);
    std::erase_if(items,
                  [](const SelectionItem& item) { return !dynamic_cast<Component*>(item.component.get()); });
    if (items.empty()) throw mel::Error("No points match name: " + std::string(name));
    return items;
}

std::vector<MPoint> readPoints(const std::vector<SelectionItem>& points, bool world) {
    std::vector<MPoint> positions;
    for (const auto& item : points) {
        const Ref<Data> data = outputOf(*item.node);
        const MMatrix matrix = world ? item.path.inclusiveMatrix() : MMatrix();
        for (const int index : indicesOf(static_cast<Component&>(*item.component), data.get())) {
            positions.push_back(pointAt(data.get(), index) * matrix);
        }
    }
    return positions;
}

void editPoints(const std::vector<SelectionItem>& points, bool world,
                const std::function<MPoint(const MPoint&)>& change) {
    for (const auto& item : points) {
        const Ref<Data> data = outputOf(*item.node);
        const auto indices = indicesOf(static_cast<Component&>(*item.component), data.get());
        if (indices.empty()) continue;
        const MMatrix matrix = world ? item.path.inclusiveMatrix() : MMatrix();
        const MMatrix back = world ? matrix.inverse() : MMatrix();
        std::vector<double> offsets;
        offsets.reserve(3 * indices.size());
        for (const int index : indices) {
            const MPoint now = pointAt(data.get(), index);
            const MPoint to = change(now * matrix) * back;
            for (const double offset : {to.x - now.x, to.y - now.y, to.z - now.z})
                offsets.push_back(offset);
        }
        addTweaks(*item.node, indices, offsets);
    }
}

} // namespace vesk::commands
