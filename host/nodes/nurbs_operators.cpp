#include "host/nodes/nurbs_operators.h"

#include "host/core/log.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/geometry/nurbs_extrude.h"
#include "host/geometry/nurbs_primitives.h"
#include "host/geometry/nurbs_rebuild.h"
#include "host/geometry/nurbs_tessellate.h"
#include "host/nodes/declare.h"

namespace vesk::nodes {

namespace {

using graph::boolean;
using graph::enumeration;
using graph::integer;
using graph::typed;

/// A node with one output, which all other attributes affect.
class OneOutputNode : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        if (!isComputed(requested.attr)) return ComputeResult::NotMine;
        graph::putData(requested, make());
        return ComputeResult::Done;
    }

  protected:
    /// What the output gets; null for nothing.
    virtual Ref<Data> make() = 0;

    /// The geometry at an input with its matrix applied, but for what comes out of a chain of deformers: that
    /// stays in object space. Null when there is none of that class.
    template <class T>
    Ref<T> transformedInput(std::string_view name) {
        const auto data = dataOf<GeometryData>(*this, name);
        if (!data) return nullptr;
        const Cell* source = plug(*this, name).source;
        const bool isInChain =
            source && (source->node.type().isA("geometryFilter") || source->node.type().isA("groupParts"));
        return Ref<T>(dynamic_cast<T*>(isInChain ? data.get() : data->transformed().get()));
    }
    template <class T, class Geometry>
    Ref<Data> made(Result<Geometry> result) {
        if (!result) return refuse(result.error());
        return makeRef<T>(std::move(*result));
    }
    Ref<Data> refuse(const std::string& why) {
        log().error("'" + uniqueName() + "': " + why);
        return nullptr;
    }
};

class RebuildCurve : public OneOutputNode {
    using OneOutputNode::OneOutputNode;
    Ref<Data> make() override {
        const auto input = transformedInput<NurbsCurveData>("inputCurve");
        if (!input || input->geometry().empty()) return nullptr;
        return made<NurbsCurveData>(
            geom::rebuildCurve(input->geometry(), {.type = countOf(*this, "rebuildType"),
                                                   .endKnots = countOf(*this, "endKnots"),
                                                   .keepRange = countOf(*this, "keepRange"),
                                                   .keepControlPoints = flagOf(*this, "keepControlPoints"),
                                                   .spans = countOf(*this, "spans"),
                                                   .degree = countOf(*this, "degree")}));
    }
};

class Extrude : public OneOutputNode {
    using OneOutputNode::OneOutputNode;
    Ref<Data> make() override {
        const auto input = transformedInput<NurbsCurveData>("profile");
        if (!input || input->geometry().empty()) return nullptr;
        if (countOf(*this, "extrudeType") != 0) return refuse("only extrudeType 0 (distance) is supported.");
        return made<NurbsSurfaceData>(geom::extrudeDistance(
            input->geometry(), {.length = valueOf(*this, "length"),
                                .direction = vectorOf(*this, "direction"),
                                .useProfileNormal = flagOf(*this, "useProfileNormal")}));
    }
};

class NurbsTessellate : public OneOutputNode {
    using OneOutputNode::OneOutputNode;
    Ref<Data> make() override {
        const auto input = transformedInput<NurbsSurfaceData>("inputSurface");
        if (!input || input->geometry().empty()) return nullptr;
        if (countOf(*this, "format") != 3) return refuse("only format 3 (control points) is supported.");
        return made<MeshData>(
            geom::controlNet(input->geometry(), {.quads = countOf(*this, "polygonType") == 1,
                                                 .matchNormalDir = flagOf(*this, "matchNormalDir")}));
    }
};

class MakeNurbCircle : public OneOutputNode {
    using OneOutputNode::OneOutputNode;
    Ref<Data> make() override {
        return made<NurbsCurveData>(geom::makeCircle({.center = MPoint(vectorOf(*this, "center")),
                                                      .normal = vectorOf(*this, "normal"),
                                                      .radius = valueOf(*this, "radius"),
                                                      .sweep = valueOf(*this, "sweep"),
                                                      .degree = countOf(*this, "degree"),
                                                      .sections = countOf(*this, "sections")}));
    }
};

class MakeNurbPlane : public OneOutputNode {
    using OneOutputNode::OneOutputNode;
    Ref<Data> make() override {
        return made<NurbsSurfaceData>(geom::makePlane({.pivot = MPoint(vectorOf(*this, "pivot")),
                                                       .axis = vectorOf(*this, "axis"),
                                                       .width = valueOf(*this, "width"),
                                                       .lengthRatio = valueOf(*this, "lengthRatio"),
                                                       .degree = countOf(*this, "degree"),
                                                       .patchesU = countOf(*this, "patchesU"),
                                                       .patchesV = countOf(*this, "patchesV")}));
    }
};

/// Shapes of revolution.
class RevolvedNode : public OneOutputNode {
  protected:
    using OneOutputNode::OneOutputNode;
    geom::RevolvedOptions options() {
        return {.pivot = MPoint(vectorOf(*this, "pivot")),
                .axis = vectorOf(*this, "axis"),
                .radius = valueOf(*this, "radius"),
                .startSweep = valueOf(*this, "startSweep"),
                .endSweep = valueOf(*this, "endSweep"),
                .degree = countOf(*this, "degree"),
                .sections = countOf(*this, "sections")};
    }
    double ratio() { return valueOf(*this, "heightRatio"); }
    int spans() { return countOf(*this, "spans"); }
};

class MakeNurbSphere : public RevolvedNode {
  public:
    using RevolvedNode::RevolvedNode;
    Ref<Data> make() override { return made<NurbsSurfaceData>(geom::makeSphere(options(), spans())); }
};

class MakeNurbCylinder : public RevolvedNode {
  public:
    using RevolvedNode::RevolvedNode;
    Ref<Data> make() override {
        return made<NurbsSurfaceData>(geom::makeCylinder(options(), ratio(), spans()));
    }
};

class MakeNurbCone : public RevolvedNode {
  public:
    using RevolvedNode::RevolvedNode;
    Ref<Data> make() override { return made<NurbsSurfaceData>(geom::makeCone(options(), ratio(), spans())); }
};

class MakeNurbTorus : public RevolvedNode {
  public:
    using RevolvedNode::RevolvedNode;
    Ref<Data> make() override { return made<NurbsSurfaceData>(geom::makeTorus(options(), ratio(), spans())); }
};

template <class T>
void add(graph::TypeRegistry& types, const char* name, MFn::Type kind, const AttrRef& result,
         const std::vector<AttrRef>& inputs) {
    NodeType& type = declare<T>(types, name, kind);
    for (const auto& input : inputs)
        type(input);
    type(result->output());
    type.affectsAll(inputs, {result});
}

AttrRef curve(const char* longName, const char* shortName) {
    return typed(longName, shortName, MFnData::kNurbsCurve);
}
AttrRef surface(const char* longName, const char* shortName) {
    return typed(longName, shortName, MFnData::kNurbsSurface);
}
AttrRef point(const char* longName, const char* shortName) {
    return triple(longName, shortName, UnitKind::Distance);
}

AttrRef nurbsDegree() {
    auto degree = enumeration("degree", "d", {}, 3);
    degree->fields = {{"Linear", 1}, {"Quadratic", 2}, {"Cubic", 3}, {"Quintic", 5}, {"Heptic", 7}};
    return degree;
}

template <class T>
void addRevolved(graph::TypeRegistry& types, const char* name, int spans, double ratio) {
    add<T>(types, name, MFn::kDependencyNode, surface("outputSurface", "os"),
           {point("pivot", "p"), direction("axis", "ax", MVector::xAxis), distance("radius", "r", 1),
            angle("startSweep", "ssw"), angle("endSweep", "esw", geom::fullTurn), nurbsDegree(),
            integer("sections", "s", 8), integer("spans", "nsp", spans),
            graph::real("heightRatio", "hr", ratio), boolean("useTolerance", "ut"),
            distance("tolerance", "tol", 0.01)});
}

void registerCreators(graph::TypeRegistry& types) {
    add<MakeNurbCircle>(types, "makeNurbCircle", MFn::kDependencyNode, curve("outputCurve", "oc"),
                        {point("center", "c"), direction("normal", "nr", MVector::zAxis),
                         distance("radius", "r", 1), angle("sweep", "sw", geom::fullTurn), nurbsDegree(),
                         integer("sections", "s", 8), boolean("useTolerance", "ut"),
                         distance("tolerance", "tol", 0.01), boolean("fixCenter", "fc", true)});
    add<MakeNurbPlane>(types, "makeNurbPlane", MFn::kDependencyNode, surface("outputSurface", "os"),
                       {point("pivot", "p"), direction("axis", "ax", MVector::xAxis),
                        distance("width", "w", 1), graph::real("lengthRatio", "lr", 1), nurbsDegree(),
                        integer("patchesU", "u", 1), integer("patchesV", "v", 1)});
    addRevolved<MakeNurbSphere>(types, "makeNurbSphere", 4, 2);
    addRevolved<MakeNurbCylinder>(types, "makeNurbCylinder", 1, 2);
    addRevolved<MakeNurbCone>(types, "makeNurbCone", 1, 2);
    addRevolved<MakeNurbTorus>(types, "makeNurbTorus", 4, 0.5);
}

} // namespace

void registerNurbsOperators(graph::TypeRegistry& types) {
    add<RebuildCurve>(types, "rebuildCurve", MFn::kRebuildCurve, curve("outputCurve", "oc"),
                      {curve("inputCurve", "ic"),
                       enumeration("rebuildType", "rt",
                                   {"Uniform", "Reduce Spans", "Match Knots", "No Multiple Knots",
                                    "Curvature", "Rebuild Ends", "Clean"}),
                       enumeration("endKnots", "end", {"Uniform End Knots", "Multiple End Knots"}),
                       enumeration("keepRange", "kr", {"0 to 1", "Keep", "0 to #spans"}, 1),
                       boolean("keepEndPoints", "kep", true), boolean("keepTangents", "kt", true),
                       boolean("keepControlPoints", "kcp"), integer("spans", "s", 4), nurbsDegree(),
                       graph::real("tolerance", "tol", 0.01), curve("matchCurve", "mc")});
    add<Extrude>(types, "extrude", MFn::kExtrude, surface("outputSurface", "os"),
                 {curve("profile", "pr"), curve("path", "pt"),
                  enumeration("extrudeType", "et", {"Distance", "Flat", "Tube"}, 2),
                  distance("length", "l", 1), direction("direction", "d", MVector::yAxis),
                  integer("degreeAlongLength", "dl", 1), boolean("useProfileNormal", "upn"),
                  shortNumber("useComponentPivot", "ucp"), boolean("fixedPath", "fpt"),
                  graph::real("scale", "sc", 1), angle("rotation", "ro"), point("pivot", "p"),
                  boolean("reverseSurfaceIfPathReversed", "rsp")});
    add<NurbsTessellate>(
        types, "nurbsTessellate", MFn::kNurbsTesselate, typed("outputPolygon", "op", MFnData::kMesh),
        {surface("inputSurface", "is"), enumeration("format", "f", {"Count", "Fit", "General", "CVs"}, 1),
         enumeration("polygonType", "pt", {"Triangle", "Quad"}), boolean("matchNormalDir", "mnd"),
         boolean("normalizeTrimmedUVRange", "ntr", true), integer("polygonCount", "pc", 200),
         enumeration(
             "uType", "ut",
             {"Per surf # of iso params in 3D", "Per surf # of iso params", "Per span # of iso params"}, 2),
         integer("uNumber", "un", 3),
         enumeration(
             "vType", "vt",
             {"Per surf # of iso params in 3D", "Per surf # of iso params", "Per span # of iso params"}, 2),
         integer("vNumber", "vn", 3), boolean("useChordHeight", "uch"), distance("chordHeight", "cht", 0.1),
         boolean("useChordHeightRatio", "ucr", true), graph::real("chordHeightRatio", "chr", 0.9),
         boolean("edgeSwap", "es"), distance("delta", "dta", 0.1),
         distance("fractionalTolerance", "ft", 0.01), distance("minEdgeLength", "mel", 0.001)});
    registerCreators(types);
}

} // namespace vesk::nodes
