// `point` with its position block on, beside the procedure that it generates, run alone on arrays that lie
// ready.

#include "bench/bench.h"
#include "host/data/array_data.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"
#include "nodes/point/pointProcedures.h"

#include <filesystem>
#include <string>

namespace vesk::bench {

namespace {

constexpr const char* kText = "$Y=$TY+sin($TX*2.5)*0.25;";

/// A plane with side * side vertices, and the node `p` on it.
void build(Session& session, int side) {
    const std::string cells = std::to_string(side - 1);
    session.run("file -f -new; polyPlane -ch 0 -w 100 -h 100 -sx " + cells + " -sy " + cells +
                "; createNode point -n p; connectAttr pPlaneShape1.worldMesh[0] p.inGeometry;"
                "setAttr p.enablePosition 1; setAttr -type \"string\" p.stringPosition \"" +
                kText + "\";");
}

double compute(Session& session) {
    auto& scene = session.scene();
    graph::Cell& output = *graph::findPlug(scene, "p.outGeometry").plug.cell();
    graph::Cell& input = *graph::findPlug(scene, "p.groupId").plug.cell();
    (void)graph::pullData(output);
    int groupId = 0;
    return best(5, [&] {
        (void)graph::storeNumber(input, ++groupId); // dirties the outputs and changes nothing
        keep(graph::pullData(output));
    });
}

/// The same procedure, with arrays of the same lengths on a node that computes nothing.
double procedureAlone(Session& session, int count) {
    const std::string n = std::to_string(count);
    session.run(
        "createNode network -n arrays;"
        "string $s; for ($s in {\"ones\", \"twos\", \"fours\"}) addAttr -ln $s -dt doubleArray arrays;"
        "addAttr -ln threes -dt vectorArray arrays; addAttr -ln ids -dt Int32Array arrays;");
    const auto fill = [&](const char* attribute, Ref<Data> data) {
        (void)graph::storeData(
            *graph::findPlug(session.scene(), std::string("arrays.") + attribute).plug.cell(),
            std::move(data));
    };
    const auto size = static_cast<std::size_t>(count);
    std::vector<int> ids(size);
    for (std::size_t i = 0; i < size; ++i)
        ids[i] = static_cast<int>(i);
    fill("ids", makeRef<IntArrayData>(std::move(ids)));
    fill("ones", makeRef<DoubleArrayData>(std::vector<double>()));
    fill("twos", makeRef<DoubleArrayData>(std::vector<double>(2 * size, 0.5)));
    fill("fours", makeRef<DoubleArrayData>(std::vector<double>(4 * size, 0.5)));
    fill("threes", makeRef<VectorArrayData>(std::vector<MVector>(size, MVector(0, 1, 0))));
    const std::string ones = "arrays.ones", twos = "arrays.twos", threes = "arrays.threes",
                      fours = "arrays.fours";
    nodes::PointScript script;
    script.node = "p";
    script.frame = "0";
    script.plugs = {"arrays.ids", "",     "",   fours, fours, fours, fours, ones, ones,
                    threes,       threes, ones, ones,  twos,  twos,  twos,  twos};
    session.run(
        nodes::PointProcedure(nodes::PointBlock::kPosition, script, kText, static_cast<unsigned>(count))
            .text());
    return best(5, [&] { keep(session.mel().callProc("position_POINT")); });
}

} // namespace

static void benchPoint() {
    Session session;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    const Outcome loaded = session.plugins().load((folder / "plug-ins" / "Vesk.so").string());
    if (!loaded) {
        std::printf("point: %s\n", loaded.error.c_str());
        return;
    }
    build(session, 316);
    const double node = compute(session);
    const double loop = procedureAlone(session, 316 * 316);
    report("point, position block, 100,000 points", node, "the generated procedure alone", loop, 1.5);
    build(session, 1000);
    report("point, position block, 1,000,000 points", compute(session), "10 times 100,000 points",
           node * 1e6 / (316 * 316), 1.5);
}

static const Benchmark registered("point", benchPoint);

} // namespace vesk::bench
