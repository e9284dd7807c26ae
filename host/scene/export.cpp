#include "host/scene/export.h"

#include "host/data/array_data.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/data/value_data.h"
#include "host/graph/evaluate.h"
#include "host/nodes/mesh_node.h"
#include "host/scene/ascii_writer.h"
#include "host/scene/formats/array_files.h"
#include "host/scene/formats/mesh_files.h"

#include <map>
#include <memory>

namespace vesk::scene {

namespace fs = std::filesystem;

using formats::ArrayColumn;
using graph::Cell;

namespace {

/// A plug's data as it is written: geometry in the space that it was asked for in.
struct Pulled {
    std::string plugName;
    Cell* cell = nullptr;
    Ref<Data> data;
};

Outcome pull(graph::Scene& scene, const std::string& plugName, Pulled& pulled) {
    const auto range = graph::findPlug(scene, plugName);
    if (!range.error.empty()) return Outcome::fail(range.error);
    if (range.first >= 0 || !range.childPath.empty())
        return Outcome::fail("'" + plugName + "': name one plug, not a range");
    if (!range.plug.attr->readable) return Outcome::fail("'" + plugName + "' is not readable");
    pulled.plugName = plugName;
    pulled.cell = range.plug.cell();
    if (!pulled.cell) return Outcome::fail("'" + plugName + "': an index is missing");
    graph::clean(*pulled.cell);
    pulled.data = pulled.cell->data;
    if (auto* geometry = dynamic_cast<GeometryData*>(pulled.data.get()))
        pulled.data = geometry->transformed();
    return {};
}

// --- geometry
// --------------------------------------------------------------------------------------------------------

Outcome writeMesh(const fs::path& file, const Pulled& pulled) {
    const auto* mesh = dynamic_cast<const MeshData*>(pulled.data.get());
    if (!mesh) return Outcome::fail("'" + pulled.plugName + "' carries no mesh");
    return file.extension() == ".obj" ? formats::writeObj(file, mesh->geometry())
                                      : formats::writePly(file, mesh->geometry());
}

/// A scene of its own with one shape (or, for arrays, one node) that holds the data.
Outcome writeScene(graph::Scene& scene, const fs::path& file, const Pulled& pulled) {
    graph::Scene alone(scene.types());
    std::vector<graph::Node*> nodes;
    const auto make = [&](const char* typeName, const std::string& name,
                          graph::DagNode* parent) -> Ref<graph::Node> {
        const graph::NodeType* type = scene.types().find(typeName);
        Ref<graph::Node> node = type ? alone.create(*type, name, parent) : nullptr;
        if (node) nodes.push_back(node.get());
        return node;
    };
    const std::string name = file.stem().string();
    const char* shapeType = dynamic_cast<MeshData*>(pulled.data.get())           ? "mesh"
                            : dynamic_cast<NurbsCurveData*>(pulled.data.get())   ? "nurbsCurve"
                            : dynamic_cast<NurbsSurfaceData*>(pulled.data.get()) ? "nurbsSurface"
                                                                                 : nullptr;
    if (shapeType) {
        const auto transform = make("transform", name, nullptr);
        if (!transform) return Outcome::fail("there is no node type 'transform'");
        const auto shape =
            make(shapeType, transform->name() + "Shape", static_cast<graph::DagNode*>(transform.get()));
        const auto own = pulled.data->clone();
        auto* node = dynamic_cast<nodes::GeometryShapeNode*>(shape.get());
        if (!node) return Outcome::fail("there is no node type '" + std::string(shapeType) + "'");
        if (auto outcome = node->setOwn(Ref<GeometryData>(static_cast<GeometryData*>(own.get()))); !outcome)
            return outcome;
    } else if (pulled.data) {
        const auto node = make("network", name, nullptr);
        if (!node) return Outcome::fail("there is no node type 'network'");
        const auto attribute =
            graph::typed(pulled.cell->attr.longName, pulled.cell->attr.shortName, pulled.data->dataType());
        if (auto outcome = node->addDynamicAttribute(attribute); !outcome) return outcome;
        if (auto outcome = graph::storeData(node->cell(*attribute), pulled.data); !outcome) return outcome;
    } else {
        return Outcome::fail("'" + pulled.plugName + "' carries no data");
    }
    return writeAscii(alone, nodes, file);
}

// --- arrays
// ----------------------------------------------------------------------------------------------------------

/// A column, and the values that it shows where they had to be laid out anew.
struct Column {
    ArrayColumn column;
    std::vector<double> numbers;
    std::vector<std::string> texts;
};

std::span<const double> flat(const std::vector<MVector>& vectors) {
    static_assert(sizeof(MVector) == 3 * sizeof(double));
    return {reinterpret_cast<const double*>(vectors.data()), 3 * vectors.size()};
}

std::span<const double> flat(const std::vector<MPoint>& points) {
    static_assert(sizeof(MPoint) == 4 * sizeof(double));
    return {reinterpret_cast<const double*>(points.data()), 4 * points.size()};
}

Outcome makeColumn(const Pulled& pulled, Column& made) {
    ArrayColumn& column = made.column;
    column.name = pulled.plugName;
    const Data* data = pulled.data.get();
    if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(data)) {
        column.values = std::span<const double>(doubles->values.read());
    } else if (const auto* floats = dynamic_cast<const FloatArrayData*>(data)) {
        column.values = std::span<const float>(floats->values.read());
    } else if (const auto* ints = dynamic_cast<const IntArrayData*>(data)) {
        column.values = std::span<const int>(ints->values.read());
    } else if (const auto* vectors = dynamic_cast<const VectorArrayData*>(data)) {
        column.values = flat(vectors->values.read());
        column.components = 3;
    } else if (const auto* points = dynamic_cast<const PointArrayData*>(data)) {
        column.values = flat(points->values.read());
        column.components = 4;
    } else if (const auto* texts = dynamic_cast<const StringArrayData*>(data)) {
        for (const MString& text : texts->values.read())
            made.texts.emplace_back(text.asChar());
        column.values = std::span<const std::string>(made.texts);
    } else if (const auto* matrix = dynamic_cast<const MatrixData*>(data)) {
        column.values = std::span<const double>(&matrix->matrix().matrix[0][0], 16);
        column.components = 16;
    } else if (const auto* mesh = dynamic_cast<const MeshData*>(data)) {
        const auto& vertices = mesh->geometry().points();
        column.values =
            std::span<const float>(reinterpret_cast<const float*>(vertices.data()), 3 * vertices.size());
        column.components = 3;
    } else if (const auto* curve = dynamic_cast<const NurbsCurveData*>(data)) {
        column.values = flat(curve->geometry().cvs());
        column.components = 4;
    } else if (const auto* surface = dynamic_cast<const NurbsSurfaceData*>(data)) {
        column.values = flat(surface->geometry().cvs());
        column.components = 4;
    } else if (const auto* text = dynamic_cast<const StringData*>(data)) {
        made.texts.emplace_back(text->value.asChar());
        column.values = std::span<const std::string>(made.texts);
    } else if (pulled.cell->attr.isNumber() || pulled.cell->isCompound() || pulled.cell->isArray()) {
        pulled.cell->walk([&](Cell& cell) {
            if (cell.isLeaf() && cell.attr.isNumber()) made.numbers.push_back(cell.number);
        });
        if (pulled.cell->isCompound() && !made.numbers.empty()) column.components = made.numbers.size();
        column.values = std::span<const double>(made.numbers);
    } else {
        return Outcome::fail("'" + pulled.plugName + "' carries no array");
    }
    return {};
}

Outcome writeArrays(const fs::path& file, const std::vector<Pulled>& pulled) {
    std::vector<std::unique_ptr<Column>> made; // stays put: columns view into it
    std::vector<ArrayColumn> columns;
    for (const auto& one : pulled) {
        made.push_back(std::make_unique<Column>());
        if (auto outcome = makeColumn(one, *made.back()); !outcome) return outcome;
        columns.push_back(made.back()->column);
    }
    if (file.extension() == ".csv") return formats::writeCsv(file, columns);
    if (file.extension() == ".json") return formats::writeJson(file, columns);
    return formats::writeNpy(file, columns.front());
}

std::vector<std::string> splitNames(std::string_view names) {
    std::vector<std::string> list;
    while (true) {
        const auto comma = names.find(',');
        list.emplace_back(names.substr(0, comma));
        if (comma == std::string_view::npos) return list;
        names.remove_prefix(comma + 1);
    }
}

} // namespace

Outcome checkExportName(const fs::path& file) {
    static const char* const kKnown[] = {".obj", ".ply", ".npy", ".json", ".csv", ".ma"};
    for (const char* extension : kKnown) {
        if (file.extension() == extension) return {};
    }
    return Outcome::fail("--export '" + file.string() + "': files end in .obj .ply .npy .json .csv or .ma");
}

Outcome exportPlug(graph::Scene& scene, const fs::path& file, std::string_view plugNames) {
    const auto failed = [&](const Outcome& outcome) {
        return Outcome::fail("--export '" + file.string() + "': " + outcome.error);
    };
    if (auto outcome = checkExportName(file); !outcome) return outcome;
    std::vector<Pulled> pulled;
    for (const auto& name : splitNames(plugNames)) {
        if (auto outcome = pull(scene, name, pulled.emplace_back()); !outcome) return failed(outcome);
    }
    const auto extension = file.extension();
    const bool takesSeveral = extension == ".csv" || extension == ".json";
    if (pulled.size() > 1 && !takesSeveral) {
        return failed(Outcome::fail("only .csv and .json files hold several plugs"));
    }
    const Outcome outcome = extension == ".obj" || extension == ".ply" ? writeMesh(file, pulled.front())
                            : extension == ".ma" ? writeScene(scene, file, pulled.front())
                                                 : writeArrays(file, pulled);
    return outcome ? outcome : failed(outcome);
}

} // namespace vesk::scene
