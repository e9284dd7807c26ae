// A skeleton of 2,000 joints in a tree: the skin alone, and the node on top of it. The pairing of its
// triangles at two sizes.

#include "bench/bench.h"
#include "bmesh/skin_mesh.h"
#include "host/session/session.h"

#include <cmath>
#include <filesystem>
#include <sstream>

namespace vesk::bench {

namespace {

using skin::Float3;

constexpr int kJoints = 2000;

struct Joint {
    Float3 offset; ///< from the parent
    int parent;
};

/// Three children a joint, which leave it in directions that repeat only after the whole tree.
std::vector<Joint> tree() {
    std::vector<Joint> joints{{{0, 0, 0}, -1}};
    for (int i = 1; i < kJoints; ++i) {
        // Even turns over the sphere by the golden angle.
        const double height = 1.0 - 2.0 * (i + 0.5) / kJoints;
        const double ring = std::sqrt(1.0 - height * height);
        const double turn = 2.399963229728653 * i;
        joints.push_back({Float3{static_cast<float>(ring * std::cos(turn)), static_cast<float>(height),
                                 static_cast<float>(ring * std::sin(turn))} *
                              3.0F,
                          (i - 1) / 3});
    }
    return joints;
}

skin::SkinMesh skeleton() {
    skin::SkinMesh mesh;
    for (const Joint& joint : tree()) {
        skin::JointSphere sphere;
        sphere.parent = joint.parent;
        sphere.center = joint.offset;
        if (joint.parent >= 0) sphere.center += mesh.spheres[joint.parent].center;
        sphere.setRadius(0.7F);
        mesh.spheres.append(sphere);
    }
    return mesh;
}

void benchCore() {
    skin::SkinMesh mesh = skeleton();
    const double seconds = best(10, [&] {
        mesh.build();
        keep(mesh.vertices.size());
    });
    std::printf("  a skin of %d joints has %d vertices, %d quads, %d triangles\n", kJoints,
                mesh.vertices.size(), mesh.quads.size(), mesh.triangles.size());
    reportLimit("bmesh, the skin of 2,000 joints over plain arrays", 1e3 * seconds, "ms", 50);
}

void benchNode() {
    Session session;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    const Outcome loaded = session.plugins().load((folder / "plug-ins" / "Vesk.so").string());
    if (!loaded) return (void)std::printf("bmesh: %s\n", loaded.error.c_str());
    std::ostringstream script;
    script << "createNode bmesh -n skin; createNode mesh -n shape; connectAttr skin.outMesh shape.inMesh;\n";
    const auto joints = tree();
    for (int i = 0; i < kJoints; ++i) {
        const Joint& joint = joints[static_cast<std::size_t>(i)];
        script << "createNode joint -n j" << i;
        if (i > 0) script << " -p j" << joint.parent;
        script << "; setAttr j" << i << ".translate " << joint.offset.x << ' ' << joint.offset.y << ' '
               << joint.offset.z << "; setAttr j" << i << ".radius 0.7;\n";
        script << "connectAttr j" << i << ".worldMatrix[0] skin.inJoints[" << i << "].matrix; connectAttr j"
               << i << ".radius skin.inJoints[" << i << "].radius;\n";
    }
    if (!session.run(script.str()).ok) return (void)std::printf("bmesh: the scene does not run\n");
    int step = 0;
    for (const int subdivisions : {0, 1}) {
        (void)session.run("setAttr skin.subdivisions " + std::to_string(subdivisions));
        const double seconds = best(5, [&] {
            (void)session.run("setAttr j1999.radius " + std::to_string(0.5 + 0.01 * ++step));
            keep(session.run("polyEvaluate -v shape").ok);
        });
        const std::string what =
            "bmesh, the node with 2,000 joints, subdivisions " + std::to_string(subdivisions);
        if (subdivisions == 0) {
            reportLimit(what.c_str(), 1e3 * seconds, "ms", 50);
        } else {
            std::printf("  %s: %.1f ms\n", what.c_str(), 1e3 * seconds);
        }
    }
}

/// A wavy strip of so many triangles.
skin::SkinMesh strip(int count) {
    skin::SkinMesh mesh;
    for (int i = 0; i < count + 2; ++i) {
        const auto x = static_cast<float>(i / 2);
        mesh.vertices.append(skin::SkinVertex{{x, static_cast<float>(i % 2), std::sin(x)}, {}, {}});
    }
    for (int i = 0; i < count; ++i)
        mesh.triangles.append(skin::Triangle{{{i}, {i + 1 + i % 2}, {i + 2 - i % 2}}});
    return mesh;
}

void benchPairing() {
    constexpr int small = 20000, large = 320000;
    const auto secondsOf = [](int count) {
        const skin::SkinMesh made = strip(count);
        return best(5, [&] {
            skin::SkinMesh mesh = made;
            mesh.pairTrianglesToQuads();
            keep(mesh.quads.size());
        });
    };
    // n log n of the sizes, and twice that for memory that no cache holds any more.
    const double growth = 16.0 * std::log(static_cast<double>(large)) / std::log(static_cast<double>(small));
    const double few = secondsOf(small);
    report("bmesh, pairing 320,000 triangles", secondsOf(large), "n log n of 20,000", few * growth, 2);
}

void benchBmesh() {
    benchCore();
    benchNode();
    benchPairing();
}

} // namespace

static const Benchmark registered("bmesh", benchBmesh);

} // namespace vesk::bench
