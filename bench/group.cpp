// group on large meshes: what an element costs, and that mirroring grows with the points.

#include "bench/bench.h"
#include "host/graph/evaluate.h"
#include "host/session/session.h"

#include <filesystem>
#include <string>

namespace vesk::bench {

namespace {

/// A session with the node `g` on a plane of so many points in a row and a column.
class Scene {
  public:
    explicit Scene(int side) {
        const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
        if (const Outcome loaded = session_.plugins().load((folder / "plug-ins" / "Vesk.so").string());
            !loaded)
            std::printf("group: %s\n", loaded.error.c_str());
        const std::string squares = std::to_string(side - 1);
        run("polyPlane -ch 0 -w 100 -h 100 -sx " + squares + " -sy " + squares +
            "; createNode group -n g; connectAttr pPlaneShape1.worldMesh[0] g.inGeometry");
    }
    void run(const std::string& text) {
        const auto result = session_.run(text);
        if (!result.ok) std::printf("group: %s\n", result.error.c_str());
    }
    double seconds() {
        graph::Cell& output = *graph::findPlug(session_.scene(), "g.outComponents").plug.cell();
        graph::Cell& input = *graph::findPlug(session_.scene(), "g.inMessage").plug.cell();
        (void)graph::pullData(output);
        int message = 0;
        return best(3, [&] {
            (void)graph::storeNumber(input, ++message); // dirties the outputs and changes nothing
            keep(graph::pullData(output));
        });
    }

  private:
    Session session_;
};

void benchGroup() {
    constexpr int kSide = 1000;
    Scene scene(kSide);
    const auto perElement = [&](const char* what) {
        reportLimit(what, 1e9 * scene.seconds() / (kSide * kSide), "ns", 100);
    };
    scene.run("setAttr -type \"string\" g.pattern \"0:499999 600000:999999\"");
    perElement("group, Pattern, per element of 1,000,000");
    scene.run("setAttr g.operation 2; setAttr g.spreadAngle 30");
    perElement("group, Normal / Velocity, per element of 1,000,000");
    scene.run("setAttr g.operation 3; setAttr -type \"string\" g.initialComponents \"500500\"; setAttr "
              "g.depth 2000");
    perElement("group, Depth, all of 1,000,000 reached");

    const auto mirror = [](int side) {
        Scene small(side);
        small.run("createNode transform -n plane; connectAttr plane.worldMatrix[0] g.mirrorMatrix; setAttr "
                  "g.mirror 1;"
                  "setAttr -type \"string\" g.pattern \"0:" +
                  std::to_string(side * side / 2) + "\"; setAttr g.axis 2; setAttr g.radius 0.05");
        return 1e9 * small.seconds() / (side * side);
    };
    const double few = mirror(141), many = mirror(447);
    std::printf("  mirroring with precise: %.0f ns a point of 20,000, %.0f of 200,000\n", few, many);
    // Ten times the points outgrow the caches, and that is all that they should cost.
    reportLimit("group, mirror: a point of 200,000 against one of 20,000", many / few, "times", 3);
}

const Benchmark registered("group", benchGroup);

} // namespace

} // namespace vesk::bench
