// A chain of one-input nodes: what dirt and a pull cost for each, through the API as plug-ins use it.

#include "bench/bench.h"
#include "host/api/impl/plugin_type.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"

#include <maya/MDataBlock.h>
#include <maya/MDataHandle.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MPlug.h>
#include <maya/MPxNode.h>

#include <string>
#include <vector>

namespace vesk::bench {

namespace {

class AddOne : public MPxNode {
  public:
    static inline MObject in, out;
    static void* creator() { return new AddOne; }
    static MStatus initialize() {
        MFnNumericAttribute maker;
        in = maker.create("in", "i", MFnNumericData::kDouble);
        out = maker.create("out", "o", MFnNumericData::kDouble);
        maker.setWritable(false);
        addAttribute(in);
        addAttribute(out);
        return attributeAffects(in, out);
    }
    MStatus compute(const MPlug& plug, MDataBlock& block) override {
        if (plug != out) return MS::kUnknownParameter;
        MDataHandle result = block.outputValue(out);
        result.setDouble(block.inputValue(in).asDouble() + 1);
        result.setClean();
        return MS::kSuccess;
    }
};

double perNode(int length) {
    Session session;
    const Outcome made = api::registerPluginType(session.types(), {.name = "addOne",
                                                                   .typeId = 0x1fff1,
                                                                   .creator = AddOne::creator,
                                                                   .initialize = AddOne::initialize,
                                                                   .kind = MPxNode::kDependNode,
                                                                   .classification = {},
                                                                   .plugin = "bench"});
    if (!made) {
        std::printf("chain: %s\n", made.error.c_str());
        return 0;
    }
    const graph::NodeType& type = *session.types().find("addOne");
    std::vector<Ref<graph::Node>> nodes;
    for (int i = 0; i < length; ++i) {
        nodes.push_back(session.scene().create(type, "link" + std::to_string(i)));
        if (i == 0) continue;
        auto& from = nodes[nodes.size() - 2]->cell(*type.find("out"));
        (void)graph::connect(from, nodes.back()->cell(*type.find("in")));
    }
    graph::Cell& first = nodes.front()->cell(*type.find("in"));
    graph::Cell& last = nodes.back()->cell(*type.find("out"));
    double value = 0;
    (void)graph::pullNumber(last);
    const double seconds = best(5, [&] {
        (void)graph::storeNumber(first, ++value);
        keep(graph::pullNumber(last));
    });
    if (last.number != value + length) std::printf("chain: wrong result\n");
    return 1e6 * seconds / length;
}

} // namespace

static void benchChain() {
    const double small = perNode(1000), middle = perNode(10000), large = perNode(100000);
    reportLimit("chain of 10,000 nodes, dirty and pull, per node", middle, "us", 1);
    std::printf("  per node in a chain of 1,000: %.3f us, of 100,000: %.3f us\n", small, large);
}

static const Benchmark registered("chain", benchChain);

} // namespace vesk::bench
