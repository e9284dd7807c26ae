// The array nodes over ten million numbers, each beside a plain loop that reads the same arrays and writes
// its result to memory of its own, as a node must; and a chain of ten beside the sum of its parts.

#include "bench/bench.h"
#include "host/data/array_data.h"
#include "host/data/mesh_data.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"

#include <maya/MColor.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace vesk::bench {

namespace {

constexpr double kLimit = 1.5;
constexpr int kRepeats = 7;

/// Processor time of the fastest of several calls.
template <class F>
double fastest(F&& call) {
    double seconds = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kRepeats; ++i)
        seconds = std::min(seconds, processorSeconds(call));
    return seconds;
}

/// Memory that nobody has written to.
template <class T>
std::unique_ptr<T[]> room(std::size_t count) {
    return std::make_unique_for_overwrite<T[]>(count);
}

class Nodes {
  public:
    /// False when the plug-in cannot be loaded.
    bool start() {
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
        const Outcome loaded = session_.plugins().load((folder / "plug-ins" / "Vesk.so").string());
        if (!loaded) std::printf("arrays: %s\n", loaded.error.c_str());
        return static_cast<bool>(loaded);
    }
    void run(const std::string& text) {
        const auto result = session_.run(text);
        if (!result.ok) std::printf("arrays: %s\n", result.error.c_str());
    }
    graph::Cell& cell(const std::string& plug) {
        return *graph::findPlug(session_.scene(), plug).plug.cell();
    }
    Ref<Data> data(const std::string& plug) { return graph::pullData(cell(plug)); }
    /// Valid until `clear`, whatever the node puts out later.
    template <class ArrayKind>
    const std::vector<typename ArrayKind::Value>& values(const std::string& plug) {
        kept_.push_back(data(plug));
        return static_cast<ArrayKind&>(*kept_.back()).values.read();
    }
    /// Makes a node dirty through one of its numbers, which goes to and fro, and pulls an output.
    double seconds(const std::string& input, const std::string& output) {
        graph::Cell& number = cell(input);
        graph::Cell& out = cell(output);
        const double stored = number.number;
        (void)graph::clean(out);
        double other = stored;
        return fastest([&] {
            other = other == stored ? stored + 1 : stored;
            (void)graph::storeNumber(number, other);
            graph::clean(out);
        });
    }
    void clear() {
        kept_.clear();
        run("file -f -new");
    }

  private:
    Session session_;
    std::vector<Ref<Data>> kept_;
};

/// A node against a loop over `count` results of type T.
template <class T, class Loop>
void compare(Nodes& nodes, const char* what, const char* input, const char* output, std::size_t count,
             const char* peer, Loop loop) {
    const double node = nodes.seconds(input, output);
    const double plain = fastest([&] {
        const auto out = room<T>(count);
        loop(out.get());
        keep(out[0]);
    });
    report(what, node, peer, plain, kLimit);
}

constexpr std::size_t kNumbers = 10000000, kVectors = 3000000;

void benchDoubles(Nodes& nodes) {
    nodes.run(
        "createNode createArray -n a; setAttr a.outputType 1; setAttr a.length 10000000;"
        "setAttr a.defaultValueX -0.25; createNode createArray -n b; setAttr b.outputType 1;"
        "setAttr b.length 10000000; setAttr b.defaultValueX 3;"
        "createNode arrayBlend -n blend; connectAttr a.outArray blend.inArray1;"
        "connectAttr b.outArray blend.inArray2; setAttr blend.blend 0;"
        "createNode remapArray -n remap; connectAttr a.outArray remap.inArray; setAttr remap.absolute 1;"
        "setAttr remap.shift 1; setAttr remap.remap 1; setAttr remap.clamp 1; setAttr remap.clampMax 9;"
        "createNode remapArray -n whole; connectAttr a.outArray whole.inArray;"
        "setAttr whole.outArrayType 3; setAttr whole.shift 1;"
        "createNode resizeArray -n resize; connectAttr a.outArray resize.inArray;"
        "setAttr resize.length 10000000;"
        "createNode arrayToDynArrays -n dynamic; connectAttr a.outArray dynamic.inArray;"
        "setAttr -type \"string\" dynamic.name \"mass\";");
    const auto& a = nodes.values<DoubleArrayData>("a.outArray");
    const auto& b = nodes.values<DoubleArrayData>("b.outArray");
    compare<double>(nodes, "createArray, 10,000,000 doubles", "a.defaultValueY", "a.outArray", kNumbers,
                    "plain loop", [&](double* out) {
                        for (std::size_t i = 0; i < kNumbers; ++i)
                            out[i] = -0.25;
                    });
    compare<double>(nodes, "arrayBlend, blend of 10,000,000 doubles", "blend.blend", "blend.outArray",
                    kNumbers, "plain loop", [&](double* out) {
                        for (std::size_t i = 0; i < kNumbers; ++i)
                            out[i] = 0.5 * a[i] + 0.5 * b[i];
                    });
    const auto remapped = [](double x) {
        x = std::fabs(x) + 1;
        x = 1 * x - 0.5 * x;
        return x < 0 ? 0 : x > 9 ? 9 : x;
    };
    compare<double>(nodes, "remapArray, all steps, 10,000,000 doubles", "remap.shiftValue", "remap.outArray",
                    kNumbers, "plain loop", [&](double* out) {
                        for (std::size_t i = 0; i < kNumbers; ++i)
                            out[i] = remapped(a[i]);
                    });
    compare<int>(nodes, "remapArray, 10,000,000 doubles to ints", "whole.shiftValue", "whole.outArray",
                 kNumbers, "plain loop", [&](int* out) {
                     for (std::size_t i = 0; i < kNumbers; ++i)
                         out[i] = static_cast<int>(a[i] + 1);
                 });
    compare<double>(nodes, "resizeArray, 10,000,000 doubles and one", "resize.length", "resize.outArray",
                    kNumbers, "std::copy", [&](double* out) { std::copy(a.begin(), a.end(), out); });
    compare<double>(nodes, "arrayToDynArrays, 10,000,000 doubles", "dynamic.envelope",
                    "dynamic.outDynamicArrays", kNumbers, "std::copy",
                    [&](double* out) { std::copy(a.begin(), a.end(), out); });
    nodes.clear();
}

void benchVectors(Nodes& nodes) {
    nodes.run(
        "createNode createArray -n v; setAttr v.outputType 4; setAttr v.length 3000000;"
        "setAttr v.defaultValueX 2; createNode createArray -n d; setAttr d.outputType 1;"
        "setAttr d.length 3000000; setAttr d.defaultValueX 3;"
        "createNode createArray -n ramp; setAttr ramp.outputType 4; setAttr ramp.length 3000000;"
        "setAttr ramp.useRamps 1; setAttr ramp.rampDefaultValueXYZ[1].rampDefaultValueXYZ_Position 1;"
        "setAttr ramp.rampDefaultValueXYZ[1].rampDefaultValueXYZ_Color -type double3 1 2 4;"
        "createNode arrayBlend -n times; setAttr times.operation 3; connectAttr v.outArray times.inArray1;"
        "connectAttr d.outArray times.inArray2;"
        "createNode arrayToArray -n mix; connectAttr v.outArray mix.inArray1;"
        "connectAttr d.outArray mix.inArray2; setAttr mix.readY2 1;"
        "createNode remapArray -n points; setAttr points.outArrayType 2; setAttr points.shift 1;"
        "connectAttr v.outArray points.inArray;");
    const auto& v = nodes.values<VectorArrayData>("v.outArray");
    const auto& d = nodes.values<DoubleArrayData>("d.outArray");
    compare<MVector>(nodes, "createArray, ramp of 3,000,000 vectors", "ramp.defaultValueX", "ramp.outArray",
                     kVectors, "plain loop, the ramp inlined", [&](MVector* out) {
                         for (std::size_t i = 0; i < kVectors; ++i) {
                             const auto u = static_cast<double>(
                                 static_cast<float>(static_cast<double>(i) / static_cast<double>(kVectors)));
                             out[i] = MVector(static_cast<float>(u), static_cast<float>(2 * u),
                                              static_cast<float>(4 * u));
                         }
                     });
    compare<MVector>(nodes, "arrayBlend, 3,000,000 vectors by doubles", "times.blend", "times.outArray",
                     kVectors, "plain loop", [&](MVector* out) {
                         for (std::size_t i = 0; i < kVectors; ++i)
                             out[i] = v[i] * d[i];
                     });
    compare<MVector>(nodes, "arrayToArray, 3,000,000 vectors and doubles", "mix.envelope", "mix.outArray",
                     kVectors, "plain loop", [&](MVector* out) {
                         for (std::size_t i = 0; i < kVectors; ++i)
                             out[i] = MVector(v[i].x, d[i], v[i].z);
                     });
    compare<MPoint>(nodes, "remapArray, 3,000,000 vectors to points", "points.shiftValue", "points.outArray",
                    kVectors, "plain loop", [&](MPoint* out) {
                        for (std::size_t i = 0; i < kVectors; ++i)
                            out[i] = MPoint(v[i].x + 1, v[i].y + 1, v[i].z + 1);
                    });
    nodes.clear();
}

void benchMesh(Nodes& nodes) {
    constexpr std::size_t kPoints = 1000000;
    nodes.run("polyPlane -ch 0 -sx 999 -sy 999 -n plane; createNode createArray -n rgba;"
              "setAttr rgba.outputType 5; setAttr rgba.length 1000000; setAttr rgba.defaultValueX 0.5;"
              "createNode arrayToPointColor -n paint; connectAttr planeShape.outMesh paint.inGeometry;"
              "connectAttr rgba.outArray paint.inRgbaPP; setAttr paint.clamp 1;");
    const auto& rgba = nodes.values<DoubleArrayData>("rgba.outArray");
    const Ref<Data> meshData = nodes.data("planeShape.outMesh");
    const geom::Mesh& mesh = static_cast<MeshData&>(*meshData).geometry();
    const auto corners = static_cast<std::size_t>(mesh.cornerCount());
    compare<MColor>(nodes, "arrayToPointColor, 1,000,000 points", "paint.clampMin", "paint.outGeometry",
                    kPoints, "plain loop, colours and corner ids", [&](MColor* out) {
                        const auto ids = room<int>(corners);
                        const auto channel = [&](std::size_t i) {
                            const double x = rgba[i];
                            return static_cast<float>(x < 0 ? 0 : x > 1 ? 1 : x);
                        };
                        for (std::size_t i = 0; i < kPoints; ++i) {
                            out[i] = MColor(channel(4 * i), channel(4 * i + 1), channel(4 * i + 2),
                                            channel(4 * i + 3));
                            for (const int corner : mesh.topology().cornersOfVertex(static_cast<int>(i)))
                                ids[static_cast<std::size_t>(corner)] = static_cast<int>(i);
                        }
                        keep(ids[0]);
                    });
    nodes.clear();
}

void benchWeights(Nodes& nodes) {
    constexpr std::size_t kWeights = 1000000;
    nodes.run("createNode createArray -n a; setAttr a.outputType 1; setAttr a.length 1000000;"
              "createNode arrayToMulti -n list; connectAttr a.outArray list.inWeightPP;"
              "createNode multiToArray -n back; connectAttr list.outWeightList[0] back.inWeightList[0];"
              "createNode createArray -n map; setAttr map.outputType 2; setAttr map.length 1000000;"
              "createNode arrayToTexture2D -n spots; connectAttr a.outArray spots.inWeightPP;"
              "connectAttr map.outArray spots.inMapPP;");
    const auto& a = nodes.values<DoubleArrayData>("a.outArray");
    (void)nodes.data("back.outArray");
    graph::Cell& written = nodes.cell("list.outWeightList[0].weight");
    graph::Cell& read = nodes.cell("back.inWeightList[0].weights");
    const double to = nodes.seconds("list.envelope", "list.outWeightList[0].weight");
    const double toPlain = fastest([&] {
        auto cells = graph::Cell::detached(written.node, written.attr);
        for (std::size_t i = 0; i < kWeights; ++i)
            cells->element(static_cast<int>(i)).number = a[i];
        keep(*cells);
    });
    report("arrayToMulti, 1,000,000 weights", to, "plain loop that makes elements", toPlain, 1.5);
    (void)nodes.data("back.outArray");
    nodes.run("disconnectAttr list.outWeightList[0] back.inWeightList[0]"); // the weights stay
    compare<double>(nodes, "multiToArray, 1,000,000 weights", "back.envelope", "back.outArray", kWeights,
                    "plain loop over the elements", [&](double* out) {
                        for (const auto& element : read.children)
                            *out++ = element->number;
                    });
    const auto& map = nodes.values<DoubleArrayData>("map.outArray");
    compare<double>(nodes, "arrayToTexture2D, a sample of 1,000,000 pairs", "spots.power", "spots.outColor",
                    1, "plain loop", [&](double* out) {
                        double sum = 0, values = 0;
                        for (std::size_t i = 0; i < kWeights; ++i) {
                            const float u = 0 - static_cast<float>(map[2 * i]);
                            const float w = 0 - static_cast<float>(map[2 * i + 1]);
                            const double close = 1 - static_cast<double>(std::sqrt(u * u + w * w));
                            const double four = close * close * close * close;
                            sum += four * close * close * close;
                            values += std::pow(close, 7.0) * a[i];
                        }
                        *out = values / sum;
                    });
    nodes.clear();
}

void benchChain(Nodes& nodes) {
    nodes.run("createNode createArray -n n0; setAttr n0.outputType 1; setAttr n0.length 1000000;");
    for (int i = 1; i < 10; ++i) {
        const std::string name = "n" + std::to_string(i), from = "n" + std::to_string(i - 1) + ".outArray ";
        nodes.run("createNode remapArray -n " + name + "; setAttr " + name + ".shift 1; connectAttr " + from +
                  name + ".inArray;");
    }
    // Each part finds its input where the one before it has left it, as in the chain.
    graph::Cell& first = nodes.cell("n0.defaultValueX");
    double value = 0;
    const auto pull = [&](int i) { graph::clean(nodes.cell("n" + std::to_string(i) + ".outArray")); };
    double sum = std::numeric_limits<double>::infinity();
    for (int round = 0; round < kRepeats; ++round) {
        (void)graph::storeNumber(first, ++value);
        double parts = 0;
        for (int i = 0; i < 10; ++i)
            parts += processorSeconds([&] { pull(i); });
        sum = std::min(sum, parts);
    }
    const double chain = fastest([&] {
        (void)graph::storeNumber(first, ++value);
        pull(9);
    });
    report("a chain of ten array nodes, 1,000,000 doubles", chain, "the sum of its parts", sum, 1.05);
}

} // namespace

static void benchArrays() {
    Nodes nodes;
    if (!nodes.start()) return;
    benchDoubles(nodes);
    benchVectors(nodes);
    benchMesh(nodes);
    benchWeights(nodes);
    benchChain(nodes);
}

static const Benchmark registered("arrays", benchArrays);

} // namespace vesk::bench
