#include "host/nodes/groups.h"

#include "host/data/component_list_data.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/nodes/declare.h"
#include "host/nodes/tweaks.h"

#include <memory>

namespace vesk::nodes {

namespace {

using graph::boolean;
using graph::compound;
using graph::typed;

constexpr double kHasNoEffect = 1;

/// A copy to be changed; null when the data is no geometry with groups and a matrix.
Ref<GeometryData> ownCopy(const Ref<Data>& data) {
    if (!dynamic_cast<GeometryData*>(data.get())) return nullptr;
    const Ref<Data> copy = data->clone();
    return Ref<GeometryData>(static_cast<GeometryData*>(copy.get()));
}

// --- geometryFilter

void registerGeometryFilter(graph::TypeRegistry& types) {
    NodeType& type = declareAbstract<Node>(types, "geometryFilter", MFn::kGeometryFilt, "node");
    const auto unitRange = [](AttrRef attribute) {
        attribute->softMin = 0;
        attribute->softMax = 1;
        return attribute;
    };
    const auto envelope = type(unitRange(floatNumber("envelope", "en", 1))->asKeyable());
    const auto geometry = geometryPlug("inputGeometry", "ig")->notStorable()->resets();
    const auto input = type(compound("input", "ip", {geometry, graph::integer("groupId", "gi")})->multi());
    const auto weights = unitRange(floatNumber("weights", "w", 1)->multi(true));
    const auto weightList = type(compound("weightList", "wl", {weights})->multi(true));
    type.affectsAll({envelope, input, weightList},
                    {type(geometryPlug("outputGeometry", "og")->output()->multi())});
}

// --- groupId

class GroupId : public Node {
  public:
    GroupId(const NodeType& type, int id) : Node(type), id_(id) {}
    void created() override { graph::putNumber(plug(*this, "groupId"), id_); }

  private:
    const int id_;
};

void registerGroupId(graph::TypeRegistry& types) {
    auto type =
        std::make_unique<NodeType>("groupId", MFn::kGroupId, types.find("node"),
                                   [last = std::make_shared<int>(0)](const NodeType& self) -> Ref<Node> {
                                       return makeRef<GroupId>(self, ++*last);
                                   });
    (*type)(graph::integer("groupId", "id")->output());
    (void)types.add(std::move(type));
}

// --- groupParts

class GroupParts : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        if (!isComputed(requested.attr)) return ComputeResult::NotMine;
        const Ref<Data> input = graph::pullData(plug(*this, "inputGeometry"));
        const auto result = nodeState() == kHasNoEffect ? nullptr : ownCopy(input);
        if (result) putGroup(result->writeGroups());
        graph::putData(requested, result ? Ref<Data>(result) : input);
        return ComputeResult::Done;
    }

  private:
    void putGroup(ObjectGroups& groups) {
        const auto id = static_cast<unsigned int>(countOf(*this, "groupId"));
        groups.add(id);
        const auto components = dataOf<ComponentListData>(*this, "inputComponents");
        if (components && components->length() > 0) groups.setComponent(id, components->entry(0));
        const auto removed = dataOf<ComponentListData>(*this, "inputRemoveComponent");
        for (int i = 0; removed && i < removed->length(); ++i)
            groups.removeComponent(id, removed->entry(i));
    }
};

void registerGroupParts(graph::TypeRegistry& types) {
    NodeType& type = declare<GroupParts>(types, "groupParts", MFn::kGroupParts);
    const auto in = type(geometryPlug("inputGeometry", "ig"));
    const auto id = type(graph::integer("groupId", "gi"));
    const auto components = type(typed("inputComponents", "ic", MFnData::kComponentList));
    const auto removed = type(typed("inputRemoveComponent", "irc", MFnData::kComponentList));
    type.affectsAll({in, id, components, removed, AttrRef(type.find("nodeState"))},
                    {type(geometryPlug("outputGeometry", "og")->output())});
}

// --- tweak

/// Adds offsets to the CVs that are there.
template <class Geometry>
void addToCvs(Cell& offsets, Geometry& geometry) {
    std::vector<MPoint> cvs = geometry.cvs();
    addTweaks(offsets, cvs);
    (void)geometry.setCvs(std::move(cvs));
}

class Tweak : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        if (!isComputed(requested.attr) || !requested.isElement()) return ComputeResult::NotMine;
        const int index = requested.logicalIndex;
        const Ref<Data> input =
            graph::pullData(plug(*this, "input").element(index).child(*type().find("inputGeometry")));
        Cell& offsets = plug(*this, "vlist").element(index).child(*type().find("vertex"));
        const bool passes = nodeState() == kHasNoEffect || !hasTweaks(&offsets);
        const auto result = passes ? nullptr : ownCopy(input);
        if (result) move(*result, offsets);
        graph::putData(requested, result ? Ref<Data>(result) : input);
        return ComputeResult::Done;
    }

  private:
    static void move(GeometryData& geometry, Cell& offsets) {
        if (auto* mesh = dynamic_cast<MeshData*>(&geometry)) {
            addTweaks(offsets, mesh->write().editPoints());
        } else if (auto* curve = dynamic_cast<NurbsCurveData*>(&geometry)) {
            addToCvs(offsets, curve->write());
        } else if (auto* surface = dynamic_cast<NurbsSurfaceData*>(&geometry)) {
            addToCvs(offsets, surface->write());
        }
    }
};

void registerTweak(graph::TypeRegistry& types) {
    NodeType& type = declare<Tweak>(types, "tweak", MFn::kTweak, "geometryFilter");
    const auto vertex =
        compound("vertex", "vt",
                 {floatNumber("xVertex", "vx"), floatNumber("yVertex", "vy"), floatNumber("zVertex", "vz")})
            ->asPacked();
    const auto list = type(compound("vlist", "vl", {vertex})->multi());
    type(boolean("relativeTweak", "rtw", true));
    type.affectsAll({list}, {AttrRef(type.find("outputGeometry"))});
}

// --- transformGeometry

class TransformGeometry : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        if (!isComputed(requested.attr)) return ComputeResult::NotMine;
        const Ref<Data> input = graph::pullData(plug(*this, "inputGeometry"));
        const auto copy = ownCopy(input);
        if (copy) {
            const MMatrix matrix = matrixIn(plug(*this, "transform"));
            copy->setMatrix(flagOf(*this, "invertTransform") ? matrix.inverse() : matrix);
        }
        graph::putData(requested, copy ? Ref<Data>(copy->transformed()) : input);
        return ComputeResult::Done;
    }
};

void registerTransformGeometry(graph::TypeRegistry& types) {
    NodeType& type = declare<TransformGeometry>(types, "transformGeometry", MFn::kDependencyNode);
    const auto in = type(geometryPlug("inputGeometry", "ig"));
    const auto matrix = type(graph::matrix("transform", "txf"));
    const auto inverted = type(boolean("invertTransform", "itf"));
    type(boolean("freezeNormals", "fn"));
    type.affectsAll({in, matrix, inverted}, {type(geometryPlug("outputGeometry", "og")->output())});
}

} // namespace

void registerGroups(graph::TypeRegistry& types) {
    registerGroupId(types);
    registerGroupParts(types);
    registerGeometryFilter(types);
    registerTweak(types);
    registerTransformGeometry(types);
}

} // namespace vesk::nodes
