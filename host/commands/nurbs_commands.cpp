#include "host/commands/nurbs_commands.h"

#include "host/commands/creation.h"
#include "host/commands/lookup.h"
#include "host/commands/node_commands.h"
#include "host/data/nurbs_data.h"
#include "host/nodes/shape_node.h"

namespace vesk::commands {

namespace {

mel::Value curve(CommandContext& context, const Args& args) {
    const int degree = args.integer("degree", 3);
    std::vector<MPoint> cvs;
    const bool isRational = args.has("pointWeight");
    for (const auto& use : args.uses(isRational ? "pointWeight" : "point")) {
        cvs.emplace_back(use[0].asFloat(), use[1].asFloat(), use[2].asFloat(),
                         isRational ? use[3].asFloat() : 1.0);
    }
    std::vector<double> knots;
    for (const auto& use : args.uses("knot"))
        knots.push_back(use[0].asFloat());
    geom::NurbsBasis basis;
    if (knots.empty()) {
        const int spans = static_cast<int>(cvs.size()) - degree;
        if (degree < 1 || degree > geom::maxNurbsDegree || spans < 1) {
            throw mel::Error("curve: degree " + std::to_string(degree) + " does not fit " +
                             std::to_string(cvs.size()) + " points.");
        }
        basis = geom::NurbsBasis::clamped(degree, spans);
    } else {
        basis.degree = degree;
        basis.form = args.isOn("periodic") ? geom::NurbsForm::Periodic : geom::NurbsForm::Open;
        basis.knots = std::move(knots);
    }
    auto made = geom::NurbsCurve::create(std::move(basis), std::move(cvs), isRational);
    if (!made) throw mel::Error("curve: " + made.error());
    auto& transform =
        static_cast<graph::DagNode&>(makeNode(context, "transform", args.text("name", "curve#")));
    auto& shape = makeNode(context, "nurbsCurve", shapeNameFor(transform.name()), &transform);
    require(static_cast<nodes::GeometryShapeNode&>(shape).setOwn(makeRef<NurbsCurveData>(std::move(*made))));
    selectOnly(context, transform);
    return mel::Value(transform.uniqueName());
}

const std::vector<CreatorFlag> kCommon = {{"center", {"centerX", "centerY", "centerZ"}},
                                          {"radius", {"radius"}},
                                          {"degree", {"degree"}},
                                          {"sections", {"sections"}},
                                          {"spans", {"spans"}}};

CreatorSpec nurbs(std::string_view creator, std::string_view output, std::string_view shape,
                  std::string_view transform, std::vector<CreatorFlag> more) {
    more.insert(more.end(), kCommon.begin(), kCommon.begin() + 1);
    return {creator, output, shape, "create", transform, std::move(more)};
}

mel::Value circle(CommandContext& context, const Args& args) {
    static const CreatorSpec spec =
        nurbs("makeNurbCircle", "outputCurve", "nurbsCurve", "nurbsCircle#",
              {kCommon[1], kCommon[2], kCommon[3], {"normal", {"normalX", "normalY", "normalZ"}}});
    return createGeometry(context, args, spec);
}

mel::Value sphere(CommandContext& context, const Args& args) {
    static const CreatorSpec spec =
        nurbs("makeNurbSphere", "outputSurface", "nurbsSurface", "nurbsSphere#",
              {kCommon[1], kCommon[2], kCommon[3], kCommon[4], {"axis", {"axisX", "axisY", "axisZ"}}});
    return createGeometry(context, args, spec);
}

mel::Value nurbsPlane(CommandContext& context, const Args& args) {
    static const CreatorSpec spec = nurbs("makeNurbPlane", "outputSurface", "nurbsSurface", "nurbsPlane#",
                                          {kCommon[2],
                                           {"width", {"width"}},
                                           {"lengthRatio", {"lengthRatio"}},
                                           {"patchesU", {"patchesU"}},
                                           {"patchesV", {"patchesV"}},
                                           {"axis", {"axisX", "axisY", "axisZ"}}});
    return createGeometry(context, args, spec);
}

const std::vector<ArgKind> kThree{ArgKind::Float, ArgKind::Float, ArgKind::Float};
const FlagSpec kCenter{"-center", "-c", kThree};
const FlagSpec kRadius{"-radius", "-r", {ArgKind::Float}};
const FlagSpec kDegree{"-degree", "-d", {ArgKind::Int}};
const FlagSpec kSections{"-sections", "-s", {ArgKind::Int}};
const FlagSpec kSpans{"-spans", "-nsp", {ArgKind::Int}};
const FlagSpec kAxis{"-axis", "-ax", kThree};

const CommandSpec kCommands[] = {
    {"curve",
     "",
     {kDegree,
      {"-point", "-p", kThree, kAllModes, true},
      {"-pointWeight",
       "-pw",
       {ArgKind::Float, ArgKind::Float, ArgKind::Float, ArgKind::Float},
       kAllModes,
       true},
      {"-knot", "-k", {ArgKind::Float}, kAllModes, true},
      {"-periodic", "-per", {ArgKind::Bool}},
      {"-name", "-n", {ArgKind::Text}}},
     curve},
    {"circle", "", creationFlags({kCenter, kRadius, kDegree, kSections, {"-normal", "-nr", kThree}}), circle},
    {"sphere", "", creationFlags({kCenter, kRadius, kDegree, kSections, kSpans, kAxis}), sphere},
    {"nurbsPlane", "",
     creationFlags({kCenter,
                    kDegree,
                    {"-width", "-w", {ArgKind::Float}},
                    {"-lengthRatio", "-lr", {ArgKind::Float}},
                    {"-patchesU", "-u", {ArgKind::Int}},
                    {"-patchesV", "-v", {ArgKind::Int}},
                    kAxis}),
     nurbsPlane},
};

} // namespace

void addNurbsCommands(mel::CommandTable& table, CommandContext& context) {
    addCommands(table, context, kCommands);
}

} // namespace vesk::commands
