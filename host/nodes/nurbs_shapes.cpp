#include "host/nodes/nurbs_shapes.h"

#include "host/nodes/declare.h"
#include "host/nodes/tweaks.h"

namespace vesk::nodes {

namespace {

using graph::boolean;
using graph::enumeration;
using graph::integer;
using graph::typed;

/// What both shapes have.
struct NurbsAttributes {
    explicit NurbsAttributes(MFnData::Type data)
        : create(typed("create", "cr", data)->asHidden()), cached(typed("cached", "cc", data)->asHidden()),
          local(typed("local", "l", data)->output()),
          worldSpace(typed("worldSpace", "ws", data)->output()->multi()->asWorldSpace()),
          controlPoints(graph::compound(
              "controlPoints", "cp",
              {distance("xValue", "xv"), distance("yValue", "yv"), distance("zValue", "zv")})) {
        controlPoints->array = true;
    }
    AttrRef create, cached, local, worldSpace, controlPoints;

    void addTo(NodeType& type) const {
        for (const auto& attribute : {create, cached, local, worldSpace, controlPoints})
            type(attribute);
        declareShapeInfluences(type, create, cached, local, worldSpace, {controlPoints});
    }
};

/// Degree, spans, form and range of one direction; `suffix` is empty, "U" or "V".
struct DirectionAttributes {
    DirectionAttributes(const std::string& suffix, const std::string& letter)
        : degree(integer("degree" + suffix, "d" + letter)->output()),
          spans(integer("spans" + suffix, "s" + letter)->output()),
          form(enumeration("form" + suffix, "f" + letter, {"Open", "Closed", "Periodic"})->output()),
          range(output(graph::compound(letter.empty() ? "minMaxValue" : "minMaxRange" + suffix,
                                       letter.empty() ? "mmv" : "mmr" + letter,
                                       {graph::real("minValue" + suffix, "min" + letter),
                                        graph::real("maxValue" + suffix, "max" + letter)}))) {}
    AttrRef degree, spans, form, range;

    void addTo(NodeType& type, const NurbsAttributes& shape) const {
        for (const auto& attribute : {degree, spans, form, range}) {
            type(attribute);
            type.affectsAll({shape.create, shape.cached}, {attribute});
        }
    }
    bool has(const Attribute& attribute) const {
        return &attribute == degree.get() || &attribute == spans.get() || &attribute == form.get() ||
               &attribute == range.get() || attribute.parent == range.get();
    }
    /// Fills all of them.
    void put(Node& node, const geom::NurbsBasis& basis) const {
        graph::putNumber(node.cell(*degree), basis.degree);
        graph::putNumber(node.cell(*spans), basis.spanCount());
        graph::putNumber(node.cell(*form), static_cast<int>(basis.form) - 1);
        graph::putNumber(node.cell(*range).child(0), basis.start());
        graph::putNumber(node.cell(*range).child(1), basis.end());
    }
};

const NurbsAttributes& curveAttributes() {
    static const NurbsAttributes attributes(MFnData::kNurbsCurve);
    return attributes;
}
const NurbsAttributes& surfaceAttributes() {
    static const NurbsAttributes attributes(MFnData::kNurbsSurface);
    return attributes;
}
const DirectionAttributes& curveDirection() {
    static const DirectionAttributes attributes("", "");
    return attributes;
}
const DirectionAttributes& surfaceDirection(bool isV) {
    static const DirectionAttributes u("U", "u"), v("V", "v");
    return isV ? v : u;
}

template <class Geometry>
void moveCvs(Geometry& geometry, Cell& tweaks) {
    std::vector<MPoint> cvs = geometry.cvs();
    addTweaks(tweaks, cvs);
    (void)geometry.setCvs(std::move(cvs));
}

template <class Geometry>
MBoundingBox boundsOfCvs(const Geometry& geometry) {
    MBoundingBox box;
    for (const MPoint& cv : geometry.cvs())
        box.expand(cv);
    return box;
}

} // namespace

void registerNurbsShapes(graph::TypeRegistry& types) {
    NodeType& curve = declare<NurbsCurveNode>(types, "nurbsCurve", MFn::kNurbsCurve, "curveShape");
    curveAttributes().addTo(curve);
    curveDirection().addTo(curve, curveAttributes());
    for (const auto& [name, shortName, value] :
         {std::tuple("dispCV", "dcv", false), std::tuple("dispEP", "dep", false),
          std::tuple("dispHull", "dh", false), std::tuple("dispCurveEndPoints", "dcep", false),
          std::tuple("dispGeometry", "dg", true), std::tuple("header", "h", true)}) {
        curve(boolean(name, shortName, value));
    }
    curve(floatNumber("lineWidth", "ls", -1));
    curve(boolean("alwaysDrawOnTop", "adot"));

    NodeType& surface = declare<NurbsSurfaceNode>(types, "nurbsSurface", MFn::kNurbsSurface, "surfaceShape");
    surfaceAttributes().addTo(surface);
    surfaceDirection(false).addTo(surface, surfaceAttributes());
    surfaceDirection(true).addTo(surface, surfaceAttributes());
    for (const auto& [name, shortName, value] :
         {std::tuple("divisionsU", "dvu", 0), std::tuple("divisionsV", "dvv", 0),
          std::tuple("curvePrecision", "cpr", 4), std::tuple("curvePrecisionShaded", "cps", 4),
          std::tuple("simplifyMode", "sim", 0), std::tuple("formatU", "fmu", 0),
          std::tuple("numberU", "nu", 0), std::tuple("numberV", "nv", 0)}) {
        surface(shortNumber(name, shortName, value));
    }
    for (const auto& [name, shortName] : {std::pair("dispCV", "dcv"), std::pair("dispEP", "dep"),
                                          std::pair("dispHull", "dh"), std::pair("trimmed", "tr")}) {
        surface(boolean(name, shortName));
    }
}

GeometryShapeNode::Plugs NurbsCurveNode::plugs() const {
    const auto& a = curveAttributes();
    return {a.create.get(), a.cached.get(), a.local.get(), a.worldSpace.get()};
}

bool NurbsCurveNode::isShaped() { return hasTweaks(cellIfThere(*curveAttributes().controlPoints)); }

void NurbsCurveNode::shape(GeometryData& geometry) {
    if (auto* data = dynamic_cast<NurbsCurveData*>(&geometry))
        moveCvs(data->write(), cell(*curveAttributes().controlPoints));
}

ComputeResult NurbsCurveNode::compute(Cell& requested) {
    if (!curveDirection().has(requested.attr)) return GeometryShapeNode::compute(requested);
    const auto data = graph::pullAs<NurbsCurveData>(cell(*curveAttributes().local));
    curveDirection().put(*this, data ? data->geometry().basis() : geom::NurbsBasis());
    return ComputeResult::Done;
}

MBoundingBox NurbsCurveNode::ownBounds() {
    const auto data = graph::pullAs<NurbsCurveData>(cell(*curveAttributes().local));
    return data ? boundsOfCvs(data->geometry()) : MBoundingBox();
}

GeometryShapeNode::Plugs NurbsSurfaceNode::plugs() const {
    const auto& a = surfaceAttributes();
    return {a.create.get(), a.cached.get(), a.local.get(), a.worldSpace.get()};
}

bool NurbsSurfaceNode::isShaped() { return hasTweaks(cellIfThere(*surfaceAttributes().controlPoints)); }

void NurbsSurfaceNode::shape(GeometryData& geometry) {
    if (auto* data = dynamic_cast<NurbsSurfaceData*>(&geometry))
        moveCvs(data->write(), cell(*surfaceAttributes().controlPoints));
}

ComputeResult NurbsSurfaceNode::compute(Cell& requested) {
    const bool isU = surfaceDirection(false).has(requested.attr);
    if (!isU && !surfaceDirection(true).has(requested.attr)) return GeometryShapeNode::compute(requested);
    const auto data = graph::pullAs<NurbsSurfaceData>(cell(*surfaceAttributes().local));
    const geom::NurbsSurface surface = data ? data->geometry() : geom::NurbsSurface();
    surfaceDirection(false).put(*this, surface.basisU());
    surfaceDirection(true).put(*this, surface.basisV());
    return ComputeResult::Done;
}

MBoundingBox NurbsSurfaceNode::ownBounds() {
    const auto data = graph::pullAs<NurbsSurfaceData>(cell(*surfaceAttributes().local));
    return data ? boundsOfCvs(data->geometry()) : MBoundingBox();
}

} // namespace vesk::nodes
