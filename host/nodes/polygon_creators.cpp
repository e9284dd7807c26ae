#include "host/nodes/polygon_creators.h"

#include "host/core/log.h"
#include "host/data/mesh_data.h"
#include "host/geometry/polygon_primitives.h"
#include "host/nodes/declare.h"

namespace vesk::nodes {

namespace {

/// Attributes of all of them.
struct CreatorAttributes {
    AttrRef output = graph::typed("output", "out", MFnData::kMesh)->output();
    AttrRef axis = direction("axis", "ax", MVector::yAxis);
    /// 0: none; what other numbers say about the layout makes no difference here.
    AttrRef createUvs = shortNumber("createUVs", "cuv", 2);
    AttrRef texture = shortNumber("texture", "tx", 1);
};

const CreatorAttributes& creatorAttributes() {
    static const CreatorAttributes attributes;
    return attributes;
}

class PolygonCreator : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        const auto& a = creatorAttributes();
        if (&requested.attr != a.output.get()) return ComputeResult::NotMine;
        geom::MeshResult result = build();
        if (!result) log().error("'" + uniqueName() + "': " + result.outcome.error);
        if (graph::pullNumber(cell(*a.createUvs)) == 0) result.mesh.clearUvs(0);
        graph::putData(requested, makeRef<MeshData>(std::move(result.mesh)));
        return ComputeResult::Done;
    }

  protected:
    virtual geom::MeshResult build() = 0;

    MVector axis() { return vectorOf(*this, *creatorAttributes().axis); }
    double number(std::string_view name) { return valueOf(*this, name); }
    int count(std::string_view name) { return countOf(*this, name); }
};

class PolyCube : public PolygonCreator {
    using PolygonCreator::PolygonCreator;
    geom::MeshResult build() override {
        return geom::makeCube({.width = number("width"),
                               .height = number("height"),
                               .depth = number("depth"),
                               .subdivisionsWidth = count("subdivisionsWidth"),
                               .subdivisionsHeight = count("subdivisionsHeight"),
                               .subdivisionsDepth = count("subdivisionsDepth"),
                               .axis = axis()});
    }
};

class PolyPlane : public PolygonCreator {
    using PolygonCreator::PolygonCreator;
    geom::MeshResult build() override {
        return geom::makePlane({.width = number("width"),
                                .height = number("height"),
                                .subdivisionsWidth = count("subdivisionsWidth"),
                                .subdivisionsHeight = count("subdivisionsHeight"),
                                .axis = axis()});
    }
};

class PolySphere : public PolygonCreator {
    using PolygonCreator::PolygonCreator;
    geom::MeshResult build() override {
        return geom::makeSphere({.radius = number("radius"),
                                 .subdivisionsAxis = count("subdivisionsAxis"),
                                 .subdivisionsHeight = count("subdivisionsHeight"),
                                 .axis = axis()});
    }
};

class PolyCylinder : public PolygonCreator {
    using PolygonCreator::PolygonCreator;
    geom::MeshResult build() override {
        return geom::makeCylinder({.radius = number("radius"),
                                   .height = number("height"),
                                   .subdivisionsAxis = count("subdivisionsAxis"),
                                   .subdivisionsHeight = count("subdivisionsHeight"),
                                   .subdivisionsCaps = count("subdivisionsCaps"),
                                   .axis = axis()});
    }
};

class PolyCone : public PolygonCreator {
    using PolygonCreator::PolygonCreator;
    geom::MeshResult build() override {
        return geom::makeCone({.radius = number("radius"),
                               .height = number("height"),
                               .subdivisionsAxis = count("subdivisionsAxis"),
                               .subdivisionsHeight = count("subdivisionsHeight"),
                               .subdivisionsCaps = count("subdivisionsCaps"),
                               .axis = axis()});
    }
};

class PolyTorus : public PolygonCreator {
    using PolygonCreator::PolygonCreator;
    geom::MeshResult build() override {
        return geom::makeTorus({.radius = number("radius"),
                                .sectionRadius = number("sectionRadius"),
                                .subdivisionsAxis = count("subdivisionsAxis"),
                                .subdivisionsHeight = count("subdivisionsHeight"),
                                .axis = axis()});
    }
};

template <class T>
void add(graph::TypeRegistry& types, const char* name, MFn::Type kind, const std::vector<AttrRef>& inputs) {
    const auto& a = creatorAttributes();
    NodeType& type = declare<T>(types, name, kind);
    for (const auto& shared : {a.output, a.axis, a.createUvs, a.texture})
        type(shared);
    for (const auto& input : inputs)
        type(keyable(input));
    type.affectsAll(inputs, {a.output});
    type.affectsAll({a.axis, a.createUvs}, {a.output});
}

AttrRef divisions(const char* longName, const char* shortName, int value) {
    return graph::integer(longName, shortName, value);
}

} // namespace

void registerPolygonCreators(graph::TypeRegistry& types) {
    add<PolyCube>(types, "polyCube", MFn::kPolyCube,
                  {distance("width", "w", 1), distance("height", "h", 1), distance("depth", "d", 1),
                   divisions("subdivisionsWidth", "sw", 1), divisions("subdivisionsHeight", "sh", 1),
                   divisions("subdivisionsDepth", "sd", 1)});
    add<PolyPlane>(types, "polyPlane", MFn::kDependencyNode,
                   {distance("width", "w", 1), distance("height", "h", 1),
                    divisions("subdivisionsWidth", "sw", 10), divisions("subdivisionsHeight", "sh", 10)});
    add<PolySphere>(types, "polySphere", MFn::kDependencyNode,
                    {distance("radius", "r", 1), divisions("subdivisionsAxis", "sa", 20),
                     divisions("subdivisionsHeight", "sh", 20)});
    for (const bool isCone : {false, true}) {
        const std::vector<AttrRef> inputs = {
            distance("radius", "r", 1), distance("height", "h", 2), divisions("subdivisionsAxis", "sa", 20),
            divisions("subdivisionsHeight", "sh", 1), divisions("subdivisionsCaps", "sc", 0)};
        if (isCone) {
            add<PolyCone>(types, "polyCone", MFn::kDependencyNode, inputs);
        } else {
            add<PolyCylinder>(types, "polyCylinder", MFn::kDependencyNode, inputs);
        }
        (*types.find(isCone ? "polyCone" : "polyCylinder"))(graph::boolean("roundCap", "rcp"));
    }
    add<PolyTorus>(types, "polyTorus", MFn::kDependencyNode,
                   {distance("radius", "r", 1), distance("sectionRadius", "sr", 0.5),
                    divisions("subdivisionsAxis", "sa", 20), divisions("subdivisionsHeight", "sh", 20)});
    (*types.find("polyTorus"))(angle("twist", "tw"));
}

} // namespace vesk::nodes
