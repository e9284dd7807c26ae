#include "host/commands/transform_commands.h"

#include "host/commands/lookup.h"
#include "host/commands/point_edits.h"
#include "host/commands/ui_units.h"
#include "host/graph/evaluate.h"

#include <maya/MEulerRotation.h>
#include <maya/MTransformationMatrix.h>

#include <cmath>

namespace vesk::commands {

using graph::Cell;
using graph::DagNode;
using graph::DagPath;

namespace {

using Triple = std::array<double, 3>;

Cell& cellOf(graph::Node& node, std::string_view attribute) {
    const graph::Attribute* found = node.findAttribute(attribute);
    if (!found) {
        throw mel::Error("'" + node.uniqueName() + "' has no attribute '" + std::string(attribute) + "'.");
    }
    return node.cell(*found);
}

Triple read(graph::Node& node, std::string_view attribute) {
    const auto values = graph::pullNumbers(cellOf(node, attribute));
    return {values.at(0), values.at(1), values.at(2)};
}

void store(graph::Node& node, std::string_view attribute, const Triple& values) {
    Cell& cell = cellOf(node, attribute);
    for (int i = 0; i < 3; ++i) {
        Cell& child = cell.child(i);
        // A locked part that stays as it is does no harm.
        const double value = values[static_cast<std::size_t>(i)];
        if (graph::pullNumber(child) == child.attr.coerced(value)) continue;
        require(graph::storeNumber(child, value));
    }
}

MVector vectorOf(const Triple& t) { return MVector(t[0], t[1], t[2]); }
Triple tripleOf(const MVector& v) { return {v.x, v.y, v.z}; }

Triple flagTriple(const Args& args, std::string_view flag) {
    return {args.number(flag, 0, 0), args.number(flag, 0, 1), args.number(flag, 0, 2)};
}

mel::Value floats(const Triple& t) { return mel::Value(mel::FloatArray{t[0], t[1], t[2]}); }

constexpr double kDegrees = 180.0 / 3.14159265358979323846;

Triple scaled(Triple t, double factor) {
    for (double& value : t)
        value *= factor;
    return t;
}

DagNode& transformNode(graph::Node& node) {
    if (!node.type().isDag) throw mel::Error("'" + node.uniqueName() + "' is no DAG node.");
    auto& dag = static_cast<DagNode&>(node);
    return dag.type().isShape ? *dag.parents().front() : dag;
}

MMatrix worldOf(const DagNode& node) { return graph::firstPath(node).inclusiveMatrix(); }
MMatrix parentOf(const DagNode& node) { return graph::firstPath(node).exclusiveMatrix(); }

std::string orderName(int order) {
    static constexpr const char* kNames[] = {"xyz", "yzx", "zxy", "xzy", "yxz", "zyx"};
    return kNames[std::clamp(order, 0, 5)];
}

} // namespace

void setLocalMatrix(DagNode& node, const MMatrix& matrix) {
    const MTransformationMatrix parts(matrix);
    double scale[3], shear[3];
    parts.getScale(scale, MSpace::kTransform);
    parts.getShear(shear, MSpace::kTransform);
    const int wanted = static_cast<int>(graph::pullNumber(cellOf(node, "rotateOrder")));
    MEulerRotation rotation = parts.eulerRotation();
    rotation.reorderIt(static_cast<MEulerRotation::RotationOrder>(wanted));
    store(node, "scale", {scale[0], scale[1], scale[2]});
    store(node, "shear", {shear[0], shear[1], shear[2]});
    store(node, "rotate", {rotation.x, rotation.y, rotation.z});
    // Pivots and joint orientation move things: the translation is what is missing then.
    const MMatrix now = node.localMatrix();
    const Triple translate = read(node, "translate");
    store(node, "translate",
          {translate[0] + matrix[3][0] - now[3][0], translate[1] + matrix[3][1] - now[3][1],
           translate[2] + matrix[3][2] - now[3][2]});
}

namespace {

// --- xform
// -----------------------------------------------------------------------------------------------------------

mel::Value matrixValue(const MMatrix& matrix) {
    mel::FloatArray values;
    for (unsigned row = 0; row < 4; ++row) {
        for (unsigned column = 0; column < 4; ++column)
            values.push_back(matrix[row][column]);
    }
    return mel::Value(std::move(values));
}

mel::Value queryXform(CommandContext& context, const Args& args) {
    const std::string name = args.wordCount() > 0 ? args.word(0) : std::string();
    if (name.find('.') != std::string::npos && args.has("translation")) {
        const auto points = pointsNamed(context, name);
        mel::FloatArray values;
        for (const MPoint& point : readPoints(points, args.isOn("worldSpace"))) {
            for (const double value : {point.x, point.y, point.z})
                values.push_back(value);
        }
        return mel::Value(std::move(values));
    }
    const auto nodes = operandNodes(context, args);
    if (nodes.empty()) throw mel::Error("xform: name an object.");
    DagNode& node = transformNode(*nodes.front());
    const bool world = args.isOn("worldSpace");
    if (args.has("matrix")) return matrixValue(world ? worldOf(node) : node.localMatrix());
    if (args.has("translation")) {
        if (!world) return floats(read(node, "translate"));
        // Where the rotate pivot is, less the pivot itself: the place that moving works on.
        const MMatrix matrix = worldOf(node);
        const MVector pivot = vectorOf(read(node, "rotatePivot"));
        const MVector moved = MVector(MPoint(pivot) * matrix) - pivot;
        return floats(tripleOf(moved));
    }
    if (args.has("rotation")) {
        if (!world) return floats(scaled(read(node, "rotate"), kDegrees));
        MEulerRotation rotation = MTransformationMatrix(worldOf(node)).eulerRotation();
        rotation.reorderIt(static_cast<MEulerRotation::RotationOrder>(
            static_cast<int>(graph::pullNumber(cellOf(node, "rotateOrder")))));
        return floats(scaled({rotation.x, rotation.y, rotation.z}, kDegrees));
    }
    if (args.has("scale")) {
        if (!world) return floats(read(node, "scale"));
        double scale[3];
        MTransformationMatrix(worldOf(node)).getScale(scale, MSpace::kTransform);
        return floats({scale[0], scale[1], scale[2]});
    }
    for (const auto& [flag, attribute] :
         {std::pair{"rotatePivot", "rotatePivot"}, {"scalePivot", "scalePivot"}}) {
        if (!args.has(flag)) continue;
        const Triple pivot = read(node, attribute);
        return floats(world ? tripleOf(MVector(MPoint(vectorOf(pivot)) * worldOf(node))) : pivot);
    }
    if (args.has("pivots")) {
        const Triple rotate = read(node, "rotatePivot"), scale = read(node, "scalePivot");
        return mel::Value(mel::FloatArray{rotate[0], rotate[1], rotate[2], scale[0], scale[1], scale[2]});
    }
    if (args.has("rotateOrder"))
        return mel::Value(orderName(static_cast<int>(graph::pullNumber(cellOf(node, "rotateOrder")))));
    throw mel::Error("xform: name what to query.");
}

void placeAt(DagNode& node, const MVector& position, bool world, bool relative) {
    if (!world) {
        store(node, "translate",
              tripleOf(position + (relative ? vectorOf(read(node, "translate")) : MVector())));
        return;
    }
    const MMatrix toParent = parentOf(node).inverse();
    const MVector pivot = vectorOf(read(node, "rotatePivot"));
    const MVector now = MVector(MPoint(pivot) * worldOf(node)) - pivot;
    const MVector step = relative ? position : position - now;
    store(node, "translate", tripleOf(vectorOf(read(node, "translate")) + step * toParent));
}

MMatrix matrixFlag(const Args& args) {
    MMatrix matrix;
    for (unsigned i = 0; i < 16; ++i)
        matrix[i / 4][i % 4] = args.number("matrix", 0, i);
    return matrix;
}

mel::Value editXform(CommandContext& context, const Args& args) {
    const bool world = args.isOn("worldSpace"), relative = args.isOn("relative");
    if (args.wordCount() > 0 && args.word(0).find('.') != std::string::npos) {
        if (!args.has("translation")) throw mel::Error("xform: points take -translation.");
        for (const auto& name : args.wordTexts()) {
            editPoints(pointsNamed(context, name), world, [&](const MPoint& point) {
                const MVector by = vectorOf(flagTriple(args, "translation"));
                return relative ? point + by : MPoint(by);
            });
        }
        return mel::Value();
    }
    for (graph::Node* target : operandNodes(context, args)) {
        DagNode& node = transformNode(*target);
        if (args.has("matrix")) {
            const MMatrix matrix = matrixFlag(args);
            setLocalMatrix(node, world ? matrix * parentOf(node).inverse() : matrix);
        }
        for (const char* pivot : {"rotatePivot", "scalePivot"}) {
            const bool both = args.has("pivots");
            if (!both && !args.has(pivot)) continue;
            MVector at = vectorOf(flagTriple(args, both ? "pivots" : pivot));
            if (world) at = MVector(MPoint(at) * worldOf(node).inverse());
            store(node, pivot, tripleOf(at));
        }
        if (args.has("rotateOrder")) {
            for (int order = 0; order < 6; ++order) {
                if (args.text("rotateOrder") == orderName(order))
                    require(graph::storeNumber(cellOf(node, "rotateOrder"), order));
            }
        }
        if (args.has("scale")) {
            Triple scale = flagTriple(args, "scale");
            const Triple now = read(node, "scale");
            for (std::size_t i = 0; relative && i < 3; ++i)
                scale[i] *= now[i];
            store(node, "scale", scale);
        }
        if (args.has("rotation")) {
            Triple rotation = scaled(flagTriple(args, "rotation"), 1 / kDegrees);
            const Triple now = read(node, "rotate");
            for (std::size_t i = 0; relative && i < 3; ++i)
                rotation[i] += now[i];
            if (world && !relative) {
                const int order = static_cast<int>(graph::pullNumber(cellOf(node, "rotateOrder")));
                const MEulerRotation wanted(rotation[0], rotation[1], rotation[2],
                                            static_cast<MEulerRotation::RotationOrder>(order));
                MEulerRotation local =
                    MTransformationMatrix(wanted.asMatrix() * parentOf(node).inverse()).eulerRotation();
                local.reorderIt(static_cast<MEulerRotation::RotationOrder>(order));
                rotation = {local.x, local.y, local.z};
            }
            store(node, "rotate", rotation);
        }
        if (args.has("translation"))
            placeAt(node, vectorOf(flagTriple(args, "translation")), world, relative);
    }
    return mel::Value();
}

mel::Value xform(CommandContext& context, const Args& args) {
    return args.isQuery() ? queryXform(context, args) : editXform(context, args);
}

// --- move, rotate, scale
// ---------------------------------------------------------------------------------------------

/// The three numbers in front, and the names behind them or the selection.
struct Change {
    Triple values{0, 0, 0};
    std::array<bool, 3> given{true, true, true};
    std::vector<std::string> names;
};

Change changeOf(const CommandContext& context, const Args& args, double neutral) {
    Change change;
    const bool axes[3] = {args.isOn("x"), args.isOn("y"), args.isOn("z")};
    const bool anyAxis = axes[0] || axes[1] || axes[2];
    std::size_t next = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        change.given[i] = !anyAxis || axes[i];
        change.values[i] = neutral;
        if (!change.given[i]) continue;
        const auto value = next < args.wordCount() ? args.words()[next]->number() : std::nullopt;
        if (!value) throw mel::Error("Numbers are missing: one for each axis.");
        change.values[i] = *value;
        ++next;
    }
    const auto texts = args.wordTexts();
    change.names.assign(texts.begin() + static_cast<std::ptrdiff_t>(next), texts.end());
    if (change.names.empty()) {
        for (const auto& item : context.scene.selection.items()) {
            for (auto& text : item.texts())
                change.names.push_back(std::move(text));
        }
    }
    if (change.names.empty()) throw mel::Error("Nothing is named or selected.");
    return change;
}

mel::Value move(CommandContext& context, const Args& args) {
    const Change change = changeOf(context, args, 0);
    const bool relative = args.isOn("relative");
    // The host moves in world space unless told otherwise.
    const bool world = !args.isOn("localSpace") && !args.isOn("objectSpace");
    const MVector by = vectorOf(change.values);
    const auto blend = [&](const MVector& now) {
        MVector to = now;
        for (unsigned i = 0; i < 3; ++i) {
            if (change.given[i]) to[i] = relative ? now[i] + by[i] : by[i];
        }
        return to;
    };
    for (const auto& name : change.names) {
        if (name.find('.') != std::string::npos) {
            editPoints(pointsNamed(context, name), world,
                       [&](const MPoint& point) { return MPoint(blend(MVector(point))); });
            continue;
        }
        DagNode& node = transformNode(nodeNamed(context, name));
        if (!world) {
            store(node, "translate", tripleOf(blend(vectorOf(read(node, "translate")))));
            continue;
        }
        const MVector pivot = vectorOf(read(node, "rotatePivot"));
        const MVector now = MVector(MPoint(pivot) * worldOf(node)) - (relative ? MVector() : pivot);
        placeAt(node, blend(now) - now, true, true);
    }
    return mel::Value();
}

mel::Value rotate(CommandContext& context, const Args& args) {
    const Change change = changeOf(context, args, 0);
    for (const auto& name : change.names) {
        DagNode& node = transformNode(nodeNamed(context, name));
        Triple rotation = read(node, "rotate");
        for (std::size_t i = 0; i < 3; ++i) {
            if (!change.given[i]) continue;
            rotation[i] = (args.isOn("relative") ? rotation[i] : 0) + change.values[i] / kDegrees;
        }
        store(node, "rotate", rotation);
    }
    return mel::Value();
}

mel::Value scale(CommandContext& context, const Args& args) {
    const Change change = changeOf(context, args, 1);
    const bool relative = !args.isOn("absolute");
    for (const auto& name : change.names) {
        if (name.find('.') != std::string::npos) {
            const MVector pivot = vectorOf(flagTriple(args, "pivot"));
            editPoints(pointsNamed(context, name), true, [&](const MPoint& point) {
                MVector from = MVector(point) - pivot;
                for (unsigned i = 0; i < 3; ++i)
                    from[i] *= change.values[i];
                return MPoint(pivot + from);
            });
            continue;
        }
        DagNode& node = transformNode(nodeNamed(context, name));
        Triple scale = read(node, "scale");
        for (std::size_t i = 0; i < 3; ++i) {
            if (change.given[i]) scale[i] = (relative ? scale[i] : 1) * change.values[i];
        }
        store(node, "scale", scale);
    }
    return mel::Value();
}

mel::Value pointPosition(CommandContext& context, const Args& args) {
    const bool local = args.isOn("local");
    std::string name = args.wordCount() > 0 ? args.word(0) : std::string();
    if (name.empty() && !context.scene.selection.items().empty())
        name = context.scene.selection.items().front().texts().front();
    if (name.empty()) throw mel::Error("pointPosition: name a point.");
    const auto points = readPoints(pointsNamed(context, name), !local);
    if (points.empty()) throw mel::Error("pointPosition: '" + name + "' has no point.");
    return floats({points.front().x, points.front().y, points.front().z});
}

const std::vector<ArgKind> kThree{ArgKind::Float, ArgKind::Float, ArgKind::Float};
const std::vector<FlagSpec> kMoveFlags{
    {"-relative", "-r"},    {"-absolute", "-a"},    {"-objectSpace", "-os"},
    {"-localSpace", "-ls"}, {"-worldSpace", "-ws"}, {"-x", "-x"},
    {"-y", "-y"},           {"-z", "-z"},           {"-pivot", "-p", kThree}};

const CommandSpec kCommands[] = {
    {"xform",
     "[object...]",
     {{"-worldSpace", "-ws"},
      {"-objectSpace", "-os"},
      {"-relative", "-r"},
      {"-absolute", "-a"},
      {"-translation", "-t", kThree},
      {"-rotation", "-ro", kThree},
      {"-scale", "-s", kThree},
      {"-rotatePivot", "-rp", kThree},
      {"-scalePivot", "-sp", kThree},
      {"-pivots", "-piv", kThree},
      {"-rotateOrder", "-roo", {ArgKind::Text}},
      {"-matrix", "-m", std::vector<ArgKind>(16, ArgKind::Float)}},
     xform,
     kAllModes},
    {"move", "x y z [object...]", kMoveFlags, move},
    {"rotate", "x y z [object...]", kMoveFlags, rotate},
    {"scale", "x y z [object...]", kMoveFlags, scale},
    {"pointPosition", "point", {{"-world", "-w"}, {"-local", "-l"}}, pointPosition},
};

} // namespace

void addTransformCommands(mel::CommandTable& table, CommandContext& context) {
    addCommands(table, context, kCommands);
}

} // namespace vesk::commands
