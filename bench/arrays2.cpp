// Array nodes that are linear in their entries, over three million vectors or ten million doubles: the whole
// node, each beside a plain loop that reads the same input and writes the same values into new arrays.

#include "bench/bench.h"
#include "host/data/array_data.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"

#include <maya/MPoint.h>
#include <maya/MVector.h>

#include <filesystem>
#include <vector>

namespace vesk::bench {

namespace {

constexpr std::size_t kVectors = 3000000, kDoubles = 10000000;

class Nodes {
  public:
    Nodes() {
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
        if (const Outcome loaded = session_.plugins().load((folder / "plug-ins" / "Vesk.so").string());
            !loaded)
            std::printf("arrays2: %s\n", loaded.error.c_str());
        std::vector<double> numbers(kDoubles);
        for (std::size_t i = 0; i < kDoubles; ++i)
            numbers[i] = 0.001 * static_cast<double>(i % 1000);
        std::vector<MVector> positions(kVectors);
        for (std::size_t i = 0; i < kVectors; ++i)
            positions[i] = MVector(static_cast<double>(i), numbers[i], 1);
        doubles = Ref<Data>(new DoubleArrayData(std::move(numbers)));
        vectors = Ref<Data>(new VectorArrayData(std::move(positions)));
    }
    void run(const char* text) { session_.run(text); }
    graph::Cell& cell(const char* plug) { return *graph::findPlug(session_.scene(), plug).plug.cell(); }

    /// Seconds of a pull of `output` after `input` was set anew.
    double pull(const char* input, const Ref<Data>& data, const char* output) {
        graph::Cell &in = cell(input), &out = cell(output);
        return best(5, [&] {
            (void)graph::storeData(in, data);
            keep(graph::pullData(out));
        });
    }

    Ref<Data> doubles, vectors;
    const std::vector<double>& doubleValues() const {
        return static_cast<const DoubleArrayData&>(*doubles).values.read();
    }
    const std::vector<MVector>& vectorValues() const {
        return static_cast<const VectorArrayData&>(*vectors).values.read();
    }

  private:
    Session session_;
};

void splitting(Nodes& nodes) {
    nodes.run("createNode splitRgba -n s; setAttr s.channel 2; createNode rgbaToColorAndAlpha -n c;");
    const auto& rgba = nodes.doubleValues();
    const auto& vectors = nodes.vectorValues();
    const double oneOfFour = best(5, [&] {
        std::vector<double> out(kDoubles / 4);
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = rgba[4 * i + 2];
        keep(out);
    });
    report("splitRgba, 10,000,000 doubles", nodes.pull("s.inArray", nodes.doubles, "s.outArray"),
           "plain loop", oneOfFour, 1.5);
    const double oneOfThree = best(5, [&] {
        std::vector<double> out(kVectors);
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = vectors[i].z;
        keep(out);
    });
    report("splitRgba, 3,000,000 vectors", nodes.pull("s.inArray", nodes.vectors, "s.outArray"), "plain loop",
           oneOfThree, 1.5);
    const double parts = best(5, [&] {
        std::vector<MVector> rgb(kDoubles / 4);
        std::vector<double> alpha(kDoubles / 4);
        for (std::size_t i = 0; i < alpha.size(); ++i) {
            rgb[i] = MVector(rgba[4 * i], rgba[4 * i + 1], rgba[4 * i + 2]);
            alpha[i] = rgba[4 * i + 3];
        }
        keep(rgb);
        keep(alpha);
    });
    report("rgbaToColorAndAlpha, 10,000,000 doubles", nodes.pull("c.inRgbaPP", nodes.doubles, "c.outRgbPP"),
           "plain loop", parts, 1.5);
}

void overTime(Nodes& nodes) {
    nodes.run("createNode computeVelocity -n v; createNode timeOffset -n t; setAttr t.offset -1;"
              "createNode arrayDataContainer -n b; setAttr b.record 0;");
    const auto& vectors = nodes.vectorValues();
    const double differences = best(5, [&] {
        std::vector<MVector> out(kVectors);
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = (vectors[i] - vectors[i]) * 24.0;
        keep(out);
    });
    report("computeVelocity, 3,000,000 vectors", nodes.pull("v.inGeometry", nodes.vectors, "v.outVelocityPP"),
           "plain loop", differences, 1.5);
    const double copies = best(5, [&] {
        std::vector<MVector> out(vectors);
        keep(out);
    });
    report("timeOffset, all points one frame late, 3,000,000 vectors",
           nodes.pull("t.inGeometry", nodes.vectors, "t.outGeometry"), "plain copy", copies, 6);
    const auto values = nodes.vectors;
    (void)graph::storeData(nodes.cell("b.held[0].heldArray"), values);
    (void)graph::storeNumber(nodes.cell("b.held[1].heldTime"), 4);
    (void)graph::storeData(nodes.cell("b.held[1].heldArray"), values);
    (void)graph::storeNumber(nodes.cell("b.endTime"), 4);
    graph::Cell &time = nodes.cell("b.inTime"), &held = nodes.cell("b.outArray");
    double at = 0;
    const double node = best(5, [&] {
        (void)graph::storeNumber(time, at = at < 3 ? at + 0.5 : 0.5);
        keep(graph::pullData(held));
    });
    const double blend = best(5, [&] {
        std::vector<MVector> out(kVectors);
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = vectors[i] * 0.75 + vectors[i] * 0.25;
        keep(out);
    });
    report("arrayDataContainer between two frames, 3,000,000 vectors", node, "plain loop", blend, 1.5);
}

} // namespace

static void benchArrays() {
    Nodes nodes;
    splitting(nodes);
    overTime(nodes);
}

static const Benchmark registered("arrays2", benchArrays);

} // namespace vesk::bench
