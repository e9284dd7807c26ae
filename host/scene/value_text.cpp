#include "host/scene/value_text.h"

#include "host/data/array_data.h"
#include "host/data/component_list_data.h"
#include "host/data/nurbs_data.h"
#include "host/data/packed_data.h"
#include "host/data/value_data.h"

namespace vesk::scene {

using formats::AtomicFile;

std::string quotedText(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        switch (c) {
        case '"': result += "\\\""; break;
        case '\\': result += "\\\\"; break;
        case '\n': result += "\\n"; break;
        case '\t': result += "\\t"; break;
        case '\r': result += "\\r"; break;
        default: result += c;
        }
    }
    return result += '"';
}

namespace {

void writeHead(AtomicFile& file, std::string_view type) {
    file.write(" -type \"");
    file.write(type);
    file.write("\"");
}

void writeCount(AtomicFile& file, std::size_t count) {
    file.put(' ');
    file.putNumber(static_cast<std::int64_t>(count));
}

template <class T>
void writeArray(AtomicFile& file, std::string_view type, const std::vector<T>& values) {
    writeHead(file, type);
    writeCount(file, values.size());
    writeNumbers(file, values.data(), values.size(), 12);
}

void writePoint(AtomicFile& file, const MPoint& point, bool rational) {
    file.write("\n\t\t");
    const double values[] = {point.x, point.y, point.z, point.w};
    for (int i = 0; i < (rational ? 4 : 3); ++i) {
        if (i > 0) file.put(' ');
        file.putNumber(values[i]);
    }
}

/// Forms are numbered from 0 in files, from 1 in the API.
int fileForm(int form) { return form - 1; }

void writeKnots(AtomicFile& file, const std::vector<double>& knots) {
    file.write("\n\t\t");
    file.putNumber(static_cast<std::int64_t>(knots.size()));
    writeNumbers(file, knots.data(), knots.size(), 16);
}

void writeCurve(AtomicFile& file, const geom::NurbsCurve& curve) {
    writeHead(file, "nurbsCurve");
    file.write("\n\t\t");
    file.putNumber(curve.degree());
    file.put(' ');
    file.putNumber(curve.spanCount());
    file.put(' ');
    file.putNumber(fileForm(static_cast<int>(curve.form())));
    file.write(curve.isRational() ? " yes 3" : " no 3");
    writeKnots(file, curve.knots());
    file.write("\n\t\t");
    file.putNumber(static_cast<std::int64_t>(curve.cvs().size()));
    for (const MPoint& cv : curve.cvs())
        writePoint(file, cv, curve.isRational());
}

void writeSurface(AtomicFile& file, const geom::NurbsSurface& surface) {
    writeHead(file, "nurbsSurface");
    file.write("\n\t\t");
    for (const int number :
         {surface.basisU().degree, surface.basisV().degree, fileForm(static_cast<int>(surface.basisU().form)),
          fileForm(static_cast<int>(surface.basisV().form))}) {
        file.putNumber(number);
        file.put(' ');
    }
    file.write(surface.isRational() ? "yes " : "no ");
    writeKnots(file, surface.basisU().knots);
    writeKnots(file, surface.basisV().knots);
    file.write("\n\t\t");
    file.putNumber(static_cast<std::int64_t>(surface.cvs().size()));
    for (const MPoint& cv : surface.cvs())
        writePoint(file, cv, surface.isRational());
}

} // namespace

bool canWriteData(const Data& data) {
    switch (data.dataType()) {
    case MFnData::kString:
    case MFnData::kMatrix:
    case MFnData::kStringArray:
    case MFnData::kDoubleArray:
    case MFnData::kIntArray:
    case MFnData::kPointArray:
    case MFnData::kVectorArray:
    case MFnData::kComponentList:
    case MFnData::kNurbsCurve:
    case MFnData::kNurbsSurface: return true;
    default: return dynamic_cast<const OpaqueData*>(&data) || dynamic_cast<const FloatArrayData*>(&data);
    }
}

void writeData(AtomicFile& file, const Data& data) {
    if (const auto* text = dynamic_cast<const StringData*>(&data)) {
        writeHead(file, "string");
        file.put(' ');
        file.write(quotedText(text->value.asChar()));
    } else if (const auto* matrix = dynamic_cast<const MatrixData*>(&data)) {
        writeHead(file, "matrix");
        writeNumbers(file, &matrix->matrix().matrix[0][0], 16, 16);
    } else if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(&data)) {
        writeArray(file, "doubleArray", doubles->values.read());
    } else if (const auto* floats = dynamic_cast<const FloatArrayData*>(&data)) {
        writeArray(file, "floatArray", floats->values.read());
    } else if (const auto* ints = dynamic_cast<const IntArrayData*>(&data)) {
        writeArray(file, "Int32Array", ints->values.read());
    } else if (const auto* vectors = dynamic_cast<const VectorArrayData*>(&data)) {
        writeHead(file, "vectorArray");
        writeCount(file, vectors->values.read().size());
        for (const MVector& v : vectors->values.read())
            writePoint(file, MPoint(v), false);
    } else if (const auto* points = dynamic_cast<const PointArrayData*>(&data)) {
        writeHead(file, "pointArray");
        writeCount(file, points->values.read().size());
        for (const MPoint& point : points->values.read())
            writePoint(file, point, true);
    } else if (const auto* texts = dynamic_cast<const StringArrayData*>(&data)) {
        writeHead(file, "stringArray");
        writeCount(file, texts->values.read().size());
        for (const MString& item : texts->values.read())
            file.write(" " + quotedText(item.asChar()));
    } else if (const auto* components = dynamic_cast<const ComponentListData*>(&data)) {
        const auto names = components->texts();
        writeHead(file, "componentList");
        writeCount(file, names.size());
        for (const auto& name : names)
            file.write(" " + quotedText(name));
    } else if (const auto* curve = dynamic_cast<const NurbsCurveData*>(&data)) {
        writeCurve(file, curve->geometry());
    } else if (const auto* surface = dynamic_cast<const NurbsSurfaceData*>(&data)) {
        writeSurface(file, surface->geometry());
    } else if (const auto* opaque = dynamic_cast<const OpaqueData*>(&data)) {
        writeHead(file, opaque->typeName);
        for (const auto& word : opaque->words)
            file.write(" " + word);
    }
}

} // namespace vesk::scene
