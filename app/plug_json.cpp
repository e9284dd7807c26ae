#include "app/plug_json.h"

#include "app/talk.h"

#include "host/api/number_text.h"
#include "host/commands/ui_units.h"
#include "host/data/array_data.h"
#include "host/data/component_list_data.h"
#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"
#include "host/data/value_data.h"

#include <cmath>

namespace vesk::app {

namespace {

using graph::Cell;

void putNumber(std::string& line, double value) {
    line += std::isfinite(value) ? formatExact(value) : "null"; // JSON has no other word for it
}

void putText(std::string& line, const MString& text) { line += quotedJson(text.asChar()); }

template <class Items, class Put>
void putList(std::string& line, const Items& items, Put put) {
    line += '[';
    bool first = true;
    for (const auto& item : items) {
        if (!first) line += ", ";
        first = false;
        put(item);
    }
    line += ']';
}

void putNumbers(std::string& line, std::initializer_list<double> values) {
    putList(line, values, [&](double value) { putNumber(line, value); });
}

void putMatrix(std::string& line, const MMatrix& matrix) {
    line += '[';
    for (unsigned row = 0; row < 4; ++row) {
        if (row > 0) line += ", ";
        putNumbers(line, {matrix[row][0], matrix[row][1], matrix[row][2], matrix[row][3]});
    }
    line += ']';
}

Outcome putData(std::string& line, const Data* data, const std::string& plugName) {
    if (!data) {
        line += "null";
    } else if (const auto* text = dynamic_cast<const StringData*>(data)) {
        putText(line, text->value);
    } else if (const auto* matrix = dynamic_cast<const MatrixData*>(data)) {
        putMatrix(line, matrix->matrix());
    } else if (const auto* numbers = dynamic_cast<const NumericData*>(data)) {
        const auto& values = numbers->numbers();
        putList(line, std::span(values).first(static_cast<std::size_t>(numbers->count())),
                [&](double value) { putNumber(line, value); });
    } else if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(data)) {
        putList(line, doubles->values.read(), [&](double value) { putNumber(line, value); });
    } else if (const auto* floats = dynamic_cast<const FloatArrayData*>(data)) {
        putList(line, floats->values.read(), [&](float value) { line += formatExact(value); });
    } else if (const auto* ints = dynamic_cast<const IntArrayData*>(data)) {
        putList(line, ints->values.read(), [&](int value) { line += std::to_string(value); });
    } else if (const auto* vectors = dynamic_cast<const VectorArrayData*>(data)) {
        putList(line, vectors->values.read(), [&](const MVector& v) { putNumbers(line, {v.x, v.y, v.z}); });
    } else if (const auto* points = dynamic_cast<const PointArrayData*>(data)) {
        putList(line, points->values.read(), [&](const MPoint& p) {
            putNumbers(line, {p.x, p.y, p.z, p.w});
        });
    } else if (const auto* texts = dynamic_cast<const StringArrayData*>(data)) {
        putList(line, texts->values.read(), [&](const MString& item) { putText(line, item); });
    } else if (const auto* components = dynamic_cast<const ComponentListData*>(data)) {
        putList(line, components->texts(), [&](const std::string& item) { line += quotedJson(item); });
    } else if (const auto* mesh = dynamic_cast<const MeshData*>(data)) {
        const auto& geometry = mesh->geometry();
        line += "{\"mesh\": {\"vertices\": " + std::to_string(geometry.vertexCount()) +
                ", \"edges\": " + std::to_string(geometry.edgeCount()) +
                ", \"faces\": " + std::to_string(geometry.faceCount()) + "}}";
    } else if (const auto* curve = dynamic_cast<const NurbsCurveData*>(data)) {
        line += "{\"nurbsCurve\": {\"cvs\": " + std::to_string(curve->geometry().cvCount()) + "}}";
    } else if (const auto* surface = dynamic_cast<const NurbsSurfaceData*>(data)) {
        line += "{\"nurbsSurface\": {\"cvsInU\": " + std::to_string(surface->geometry().cvCountU()) +
                ", \"cvsInV\": " + std::to_string(surface->geometry().cvCountV()) + "}}";
    } else {
        return Outcome::fail("--get '" + plugName + "': data of type '" + kindName(data->apiType()) +
                             "' cannot be shown");
    }
    return {};
}

Outcome putCell(std::string& line, const graph::Scene& scene, Cell& cell, const std::string& plugName) {
    if (cell.isArray()) {
        line += '{';
        bool first = true;
        for (const int index : cell.existingIndices()) {
            line += first ? "\"" : ", \"";
            first = false;
            line += std::to_string(index) + "\": ";
            if (auto outcome = putCell(line, scene, cell.element(index), plugName); !outcome) return outcome;
        }
        line += '}';
        return {};
    }
    if (cell.isCompound()) {
        line += '[';
        for (std::size_t i = 0; i < cell.attr.children.size(); ++i) {
            if (i > 0) line += ", ";
            if (auto outcome = putCell(line, scene, cell.child(static_cast<int>(i)), plugName); !outcome)
                return outcome;
        }
        line += ']';
        return {};
    }
    if (!cell.attr.isNumber()) return putData(line, cell.data.get(), plugName);
    if (cell.attr.kind == graph::AttrKind::Numeric && cell.attr.numericType == MFnNumericData::kBoolean) {
        line += cell.number != 0 ? "true" : "false";
    } else {
        putNumber(line, commands::toUi(scene, cell.attr.unit, cell.number));
    }
    return {};
}

} // namespace

std::string frameText(double frame) { return formatExact(frame); }

Outcome plugJson(graph::Scene& scene, std::string_view plugName, std::string& line) {
    const std::string name(plugName);
    const auto range = graph::findPlug(scene, plugName);
    if (!range.error.empty()) return Outcome::fail("--get '" + name + "': " + range.error);
    if (range.first >= 0 || !range.childPath.empty()) {
        return Outcome::fail("--get '" + name + "': name one plug, not a range");
    }
    if (!range.plug.attr->readable)
        return Outcome::fail("--get '" + name + "': the attribute is not readable");
    Cell* cell = range.plug.cell();
    if (!cell) return Outcome::fail("--get '" + name + "': an index is missing");
    graph::clean(*cell);
    return putCell(line, scene, *cell, name);
}

} // namespace vesk::app
