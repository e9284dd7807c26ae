#include "host/commands/data_words.h"

#include "host/commands/matrix_words.h"
#include "host/commands/mesh_words.h"
#include "host/commands/nurbs_words.h"
#include "host/data/array_data.h"
#include "host/data/component_list_data.h"
#include "host/data/packed_data.h"
#include "host/data/value_data.h"

#include <algorithm>
#include <array>

namespace vesk::commands {

namespace {

using Num = MFnNumericData;

struct TupleRow {
    std::string_view name;
    Num::Type type;
    int size;
};
constexpr std::array kTuples{
    TupleRow{"double3", Num::k3Double, 3},    TupleRow{"float3", Num::k3Float, 3},
    TupleRow{"float2", Num::k2Float, 2},      TupleRow{"double2", Num::k2Double, 2},
    TupleRow{"long2", Num::k2Int, 2},         TupleRow{"long3", Num::k3Int, 3},
    TupleRow{"short2", Num::k2Short, 2},      TupleRow{"short3", Num::k3Short, 3},
    TupleRow{"double4", Num::k4Double, 4},    TupleRow{"reflectanceRGB", Num::k3Float, 3},
    TupleRow{"spectrumRGB", Num::k3Float, 3},
};

const TupleRow* tupleRow(std::string_view name) {
    const auto* row =
        std::find_if(kTuples.begin(), kTuples.end(), [&](const TupleRow& one) { return one.name == name; });
    return row == kTuples.end() ? nullptr : row;
}

Result<Ref<Data>> readString(Words& words) {
    if (words.atEnd()) return Outcome::fail("The text is missing.");
    return Ref<Data>(makeRef<StringData>(toMString(std::string(words.text()))));
}

Result<Ref<Data>> readStrings(Words& words) {
    const auto count = readCount(words, 1, "strings");
    if (!count) return Outcome::fail(count.error());
    std::vector<MString> list;
    list.reserve(*count);
    for (std::size_t i = 0; i < *count; ++i)
        list.push_back(toMString(std::string(words.text())));
    return Ref<Data>(makeRef<StringArrayData>(std::move(list)));
}

/// Arrays of plain numbers.
template <class ArrayData>
Result<Ref<Data>> readNumbers(Words& words) {
    const auto count = readCount(words, 1, "values");
    if (!count) return Outcome::fail(count.error());
    std::vector<typename ArrayData::Value> list(*count);
    const std::size_t read = words.numbers(list.data(), *count);
    if (read < *count) return badElement(read, words);
    return Ref<Data>(makeRef<ArrayData>(std::move(list)));
}

/// Arrays of vectors or points, each of N numbers.
template <class ArrayData, std::size_t N, class Make>
Result<Ref<Data>> readTuples(Words& words, std::string_view what, Make make) {
    const auto count = readCount(words, N, what);
    if (!count) return Outcome::fail(count.error());
    std::vector<typename ArrayData::Value> list;
    list.reserve(*count);
    constexpr std::size_t kAtOnce = 256;
    std::array<double, N * kAtOnce> numbers;
    while (list.size() < *count) {
        const std::size_t tuples = std::min(kAtOnce, *count - list.size());
        const std::size_t read = words.numbers(numbers.data(), tuples * N);
        if (read < tuples * N) return badElement(list.size() * N + read, words);
        for (std::size_t i = 0; i < tuples; ++i)
            list.push_back(make(numbers.data() + i * N));
    }
    return Ref<Data>(makeRef<ArrayData>(std::move(list)));
}

Result<Ref<Data>> readVectors(Words& words) {
    return readTuples<VectorArrayData, 3>(words, "vectors",
                                          [](const double* n) { return MVector(n[0], n[1], n[2]); });
}

Result<Ref<Data>> readPoints(Words& words) {
    return readTuples<PointArrayData, 4>(words, "points",
                                         [](const double* n) { return MPoint(n[0], n[1], n[2], n[3]); });
}

Result<Ref<Data>> readComponents(Words& words) {
    const auto count = readCount(words, 1, "components");
    if (!count) return Outcome::fail(count.error());
    std::vector<std::string> texts;
    texts.reserve(*count);
    for (std::size_t i = 0; i < *count; ++i)
        texts.emplace_back(words.text());
    std::string error;
    const Ref<ComponentListData> list = ComponentListData::fromTexts(texts, error);
    if (!list) return Outcome::fail(std::move(error));
    return Ref<Data>(list);
}

struct DataRow {
    std::string_view name;
    Result<Ref<Data>> (*read)(Words&);
};
constexpr std::array kData{
    DataRow{"string", readString},
    DataRow{"matrix", readMatrix},
    DataRow{"componentList", readComponents},
    DataRow{"Int32Array", readNumbers<IntArrayData>},
    DataRow{"stringArray", readStrings},
    DataRow{"vectorArray", readVectors},
    DataRow{"doubleArray", readNumbers<DoubleArrayData>},
    DataRow{"pointArray", readPoints},
    DataRow{"floatArray", readNumbers<FloatArrayData>},
    DataRow{"mesh", readMesh},
    DataRow{"nurbsCurve", readNurbsCurve},
    DataRow{"nurbsSurface", readNurbsSurface},
};

const DataRow* dataRow(std::string_view name) {
    const auto* row =
        std::find_if(kData.begin(), kData.end(), [&](const DataRow& one) { return one.name == name; });
    return row == kData.end() ? nullptr : row;
}

} // namespace

int tupleSize(std::string_view typeName) {
    const TupleRow* row = tupleRow(typeName);
    return row ? row->size : 0;
}

Num::Type tupleType(std::string_view typeName) {
    const TupleRow* row = tupleRow(typeName);
    return row ? row->type : Num::kInvalid;
}

Outcome badElement(std::size_t position, Words& words) {
    std::string text = "Error reading data element number " + std::to_string(position + 1);
    if (!words.atEnd()) text += ": " + std::string(words.text());
    return Outcome::fail(text + '.');
}

Outcome checkUsed(Words& words) {
    if (words.atEnd()) return {};
    return Outcome::fail("There are more values than the attribute takes, from " + words.asWritten() +
                         " on.");
}

bool isDataType(std::string_view typeName) { return dataRow(typeName) != nullptr; }

Result<Ref<Data>> readData(std::string_view typeName, Words& words) {
    const DataRow* row = dataRow(typeName);
    if (!row) return Outcome::fail("There is no data type '" + std::string(typeName) + "'.");
    return row->read(words);
}

Ref<Data> readOpaque(std::string_view typeName, Words& words) {
    auto data = makeRef<OpaqueData>();
    data->typeName = typeName;
    while (!words.atEnd())
        data->words.push_back(words.asWritten());
    return data;
}

} // namespace vesk::commands
