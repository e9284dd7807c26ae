// Nearest points and hits of rays, against values worked out by hand and the plain loop.

#include "host/geometry/mesh_index.h"

#include "host/geometry/mesh_samples.h"
#include "parallel/loops.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace vesk::geom {
namespace {

using test::build;

TEST(ClosestPoint, RegionsOfATriangle) {
    const MVector a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
    struct {
        MVector p, nearest;
    } const cases[] = {{{1, 1, 5}, {1, 1, 0}},  {{-1, -2, 3}, {0, 0, 0}}, {{9, -1, 0}, {4, 0, 0}},
                       {{-1, 9, 1}, {0, 4, 0}}, {{2, -3, 1}, {2, 0, 0}},  {{-5, 3, 0}, {0, 3, 0}},
                       {{4, 4, 7}, {2, 2, 0}}};
    for (const auto& one : cases) {
        const TrianglePoint found = closestOnTriangle(one.p, a, b, c);
        EXPECT_TRUE(found.point.isEquivalent(one.nearest, 1e-12)) << one.p.x << " " << one.p.y;
        const MVector byWeights = a * found.weights[0] + b * found.weights[1] + c * found.weights[2];
        EXPECT_TRUE(byWeights.isEquivalent(one.nearest, 1e-12));
    }
    // Without area: the nearest of its edges, or its one point.
    EXPECT_EQ(closestOnTriangle({3, 5, 0}, {0, 0, 0}, {2, 0, 0}, {4, 0, 0}).point, MVector(3, 0, 0));
    EXPECT_EQ(closestOnTriangle({3, 5, 0}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}).point, MVector(1, 1, 1));
}

TEST(ClosestPoint, TiesGoToTheLowestFaceAndTheReachCounts) {
    // Two squares beside each other, and the middle of their common edge.
    const Mesh mesh = build({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}}, {4, 4},
                            {1, 2, 5, 4, 0, 1, 4, 3});
    const MeshIndex& index = mesh.index();
    const auto found = index.closestPoint({1, 0.5, 2});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->face, 0);
    EXPECT_EQ(found->triangle, 1) << "1 5 4: the edge from 4 to 1 is on it, and on 1 2 5 only its end";
    EXPECT_EQ(found->squaredDistance, 4);
    EXPECT_TRUE(index.closestPoint({1, 0.5, 2}, 2)) << "the reach itself is in";
    EXPECT_FALSE(index.closestPoint({1, 0.5, 2}, 1.999));
    EXPECT_FALSE(index.closestPoint({std::nan(""), 0, 0}));
    EXPECT_FALSE(Mesh().index().closestPoint({0, 0, 0}));
}

TEST(ClosestPoint, PointsThatAreNoNumbersAreNotFoundAndHarmNobody) {
    const Mesh mesh = build({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {std::nanf(""), 0, 0}, {INFINITY, 2, 0}},
                            {3, 3, 3}, {0, 1, 3, 0, 1, 2, 1, 2, 4});
    const auto found = mesh.index().closestPoint({0.25, 0.25, 9});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->face, 1);
    EXPECT_EQ(found->point, MVector(0.25, 0.25, 0));
}

TEST(ClosestPoint, TheSameToTheBitAsThePlainSearch) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> inside(-1, 1);
    for (const double shift : {0.0, 1e4}) {
        std::vector<MFloatVector> points;
        std::vector<int> counts, connects;
        for (int i = 0; i < 400; ++i) {
            points.emplace_back(inside(random) + static_cast<float>(shift), inside(random), inside(random));
            connects.push_back(i);
            if (i % 4 == 3) counts.push_back(4);
        }
        const Mesh mesh = build(points, counts, connects);
        const MeshIndex& index = mesh.index();
        for (int i = 0; i < 300; ++i) {
            const MVector p(shift + 3 * inside(random), inside(random) / 3.0, 2 * inside(random));
            MeshPoint plain;
            for (int face = 0; face < mesh.faceCount(); ++face) {
                for (int triangle = 0; triangle < mesh.triangleCount(face); ++triangle) {
                    const auto v = mesh.triangleVertices(face, triangle);
                    const auto one =
                        closestOnTriangle(p, mesh.point(v[0]), mesh.point(v[1]), mesh.point(v[2]));
                    const double squared = (p - one.point) * (p - one.point);
                    if (squared < plain.squaredDistance) plain = {{one}, face, triangle, squared};
                }
            }
            const auto found = index.closestPoint(p);
            ASSERT_TRUE(found);
            EXPECT_EQ(found->point, plain.point);
            EXPECT_EQ(found->face, plain.face);
            EXPECT_EQ(found->triangle, plain.triangle);
        }
    }
}

// --- rays ---

Ray along(const MVector& source, const MVector& direction) { return {source, direction}; }

TEST(RayTriangle, WhereALineMeetsIt) {
    const MVector a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
    const auto hit = hitTriangle(along({1, 2, 6}, {0, 0, -3}), a, b, c, 0);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->param, 2);
    EXPECT_EQ(hit->weights, (std::array<double, 3>{0.25, 0.25, 0.5}));
    EXPECT_EQ(hitTriangle(along({1, 2, -6}, {0, 0, -3}), a, b, c, 0)->param, -2) << "behind, from below";
    EXPECT_TRUE(hitTriangle(along({4, 0, 1}, {0, 0, 1}), a, b, c, 0)) << "a corner";
    EXPECT_FALSE(hitTriangle(along({2, 2.001, 1}, {0, 0, 1}), a, b, c, 0));
    // Beyond an edge by less and by more than a tenth of its length.
    EXPECT_TRUE(hitTriangle(along({2, -0.39, 1}, {0, 0, 1}), a, b, c, 0.1));
    EXPECT_FALSE(hitTriangle(along({2, -0.41, 1}, {0, 0, 1}), a, b, c, 0.1));
    EXPECT_TRUE(hitTriangle(along({2.39, 2.39, 1}, {0, 0, 1}), a, b, c, 0.1)) << "0.55 of 0.57";
    EXPECT_FALSE(hitTriangle(along({2.41, 2.41, 1}, {0, 0, 1}), a, b, c, 0.1));
    // In its plane, without area, without direction, no number.
    EXPECT_FALSE(hitTriangle(along({-1, 1, 0}, {1, 0, 0}), a, b, c, 0.1));
    EXPECT_FALSE(hitTriangle(along({1, 0, 1}, {0, 0, -1}), a, b, {2, 0, 0}, 0.1));
    EXPECT_FALSE(hitTriangle(along({1, 1, 1}, {0, 0, 0}), a, b, c, 0.1));
    EXPECT_FALSE(hitTriangle(along({1, 1, std::nan("")}, {0, 0, 1}), a, b, c, 0.1));
}

TEST(RayTriangle, ANeedleReachesNoFartherThanItsBox) {
    // Lines that run beside both long edges meet far beyond the tip.
    const MVector a(0, 0, 0), b(1, 0, 0), c(1, 1e-9, 0);
    EXPECT_TRUE(hitTriangle(along({-0.9e-6, 0, 1}, {0, 0, 1}), a, b, c, 1e-6));
    EXPECT_FALSE(hitTriangle(along({-0.01, 0, 1}, {0, 0, 1}), a, b, c, 1e-6));
}

/// The hits of all triangles, one by one.
std::vector<MeshHit> plainHits(const Mesh& mesh, const RayQuery& query) {
    std::vector<MeshHit> hits;
    for (int face = 0; face < mesh.faceCount(); ++face) {
        for (int triangle = 0; triangle < mesh.triangleCount(face); ++triangle) {
            const auto v = mesh.triangleVertices(face, triangle);
            const auto hit =
                hitTriangle(query.ray, mesh.point(v[0]), mesh.point(v[1]), mesh.point(v[2]), query.tolerance);
            const double param = hit ? hit->param : -1;
            if (!hit || std::abs(param) > query.maxParam || (param < 0 && !query.bothDirections)) continue;
            hits.push_back({*hit, face, triangle});
        }
    }
    std::stable_sort(hits.begin(), hits.end(),
                     [](const MeshHit& a, const MeshHit& b) { return a.param < b.param; });
    return hits;
}

void expectSame(const MeshHit& found, const MeshHit& plain) {
    EXPECT_EQ(found.param, plain.param);
    EXPECT_EQ(found.face, plain.face);
    EXPECT_EQ(found.triangle, plain.triangle);
    EXPECT_EQ(found.weights, plain.weights);
}

/// Counts the hits, so that a test can say that there were some.
int expectAsPlain(const Mesh& mesh, const RayQuery& query) {
    const auto plain = plainHits(mesh, query);
    const auto all = mesh.index().allHits(query);
    EXPECT_EQ(all.size(), plain.size());
    for (std::size_t i = 0; i < std::min(all.size(), plain.size()); ++i)
        expectSame(all[i], plain[i]);
    const auto first = mesh.index().firstHit(query);
    EXPECT_EQ(first.has_value(), !plain.empty());
    if (!first || plain.empty()) return 0;
    const auto key = [](const MeshHit& hit) {
        return std::tuple(std::abs(hit.param), hit.face, hit.triangle);
    };
    expectSame(*first, *std::min_element(plain.begin(), plain.end(), [&](const MeshHit& a, const MeshHit& b) {
        return key(a) < key(b);
    }));
    return 1;
}

/// Squares of one side length in the plane z = 0 with some height.
Mesh grid(int side, float height, float size = 1) {
    std::vector<MFloatVector> points;
    test::Ids counts, connects;
    for (int y = 0; y <= side; ++y) {
        for (int x = 0; x <= side; ++x) {
            points.emplace_back(static_cast<float>(x) * size, static_cast<float>(y) * size,
                                height * static_cast<float>((x * 7 + y * 5) % 4));
            if (x == side || y == side) continue;
            const int v = y * (side + 1) + x;
            counts.push_back(4);
            connects.insert(connects.end(), {v, v + 1, v + side + 2, v + side + 1});
        }
    }
    return build(points, counts, connects);
}

class RaysOnMeshes : public ::testing::TestWithParam<test::NamedMesh> {};

TEST_P(RaysOnMeshes, AsThePlainLoopToTheBit) {
    const Mesh& mesh = GetParam().mesh;
    std::mt19937 random(11);
    const auto any = [&](float size) {
        return MVector(MFloatVector(std::uniform_real_distribution<float>(-size, size)(random),
                                    std::uniform_real_distribution<float>(-size, size)(random),
                                    std::uniform_real_distribution<float>(-size, size)(random)));
    };
    std::vector<MVector> targets; // corners, middles of edges and of faces, and places close by
    for (const MFloatVector& point : mesh.points())
        targets.emplace_back(point);
    for (int e = 0; e < mesh.edgeCount(); ++e) {
        const MeshEdge edge = mesh.topology().edges()[static_cast<std::size_t>(e)];
        targets.push_back((mesh.point(edge.a) + mesh.point(edge.b)) * 0.5);
        targets.push_back(targets.back() + any(2e-6F));
    }
    for (int f = 0; f < mesh.faceCount(); ++f)
        targets.emplace_back(mesh.faceCenter(f));
    const MVector ways[] = {{0, 0, -1}, {1, 0, 0}, {0, 3, 0}, {1, 1, 0}, {0.5, 0, -0.5}};
    int hits = 0, turn = 0;
    const std::size_t stride = 1 + targets.size() / 400;
    for (std::size_t next = 0; next < targets.size(); next += stride) {
        const MVector& target = targets[next];
        for (int i = 0; i < 8; ++i, ++turn) {
            const MVector way = i < 5 ? ways[i] : any(1);
            const double back = i == 6 ? 0 : i == 7 ? 1e4 : 2.5;
            RayQuery query{{MVector(MFloatVector(target - way * back)), MVector(MFloatVector(way))}};
            query.bothDirections = turn % 3 == 0;
            if (turn % 5 == 0) query.maxParam = 2.5;
            if (turn % 7 == 0) query.tolerance = turn % 2 == 0 ? 0 : 0.01;
            hits += expectAsPlain(mesh, query);
        }
        if (::testing::Test::HasFailure()) return;
    }
    EXPECT_GE(hits, mesh.faceCount() > 0 ? static_cast<int>(targets.size() / stride) : 0);
}

std::vector<test::NamedMesh> meshesForRays() {
    auto meshes = test::allMeshes();
    std::mt19937 random(5);
    std::uniform_real_distribution<float> inside(-1, 1);
    std::vector<MFloatVector> points;
    test::Ids ids, threes(60, 3);
    for (int i = 0; i < 180; ++i) {
        points.emplace_back(inside(random), inside(random), inside(random) * (i < 90 ? 1.0F : 1e-4F));
        ids.push_back(i);
    }
    meshes.push_back({"triangles anywhere", build(points, threes, ids)});
    for (MFloatVector& point : points)
        point = point * 1e-3F + MFloatVector(1e4F, -1e4F, 0);
    meshes.push_back({"small and far from the origin", build(points, threes, ids)});
    meshes.push_back({"flat grid", grid(6, 0)});
    meshes.push_back({"rough grid", grid(6, 0.3F)});
    meshes.push_back({"grid of huge size", grid(4, 1e20F, 1e25F)});
    meshes.push_back({"needles", build({{0, 0, 0}, {1, 0, 0}, {1, 1e-7F, 0}, {0.5F, 0, 0}, {2, 0, 1e-6F}},
                                       {3, 3, 3, 3}, {0, 1, 2, 0, 1, 3, 0, 2, 4, 0, 2, 1})});
    return meshes;
}

INSTANTIATE_TEST_SUITE_P(Meshes, RaysOnMeshes, ::testing::ValuesIn(meshesForRays()));

TEST(MeshIndexRays, LimitsSidesAndTies) {
    const Mesh mesh = grid(2, 0); // squares of size 1 from (0, 0) to (2, 2)
    const auto first = [&](const RayQuery& query) { return mesh.index().firstHit(query); };
    RayQuery down{{{0.75, 0.25, 6}, {0, 0, -2}}};
    EXPECT_EQ(first(down)->param, 3);
    down.maxParam = 3;
    EXPECT_TRUE(first(down)) << "the limit itself is in";
    down.maxParam = 2.999;
    EXPECT_FALSE(first(down));
    RayQuery up{{{0.75, 0.25, 6}, {0, 0, 2}}};
    EXPECT_FALSE(first(up));
    up.bothDirections = true;
    EXPECT_EQ(first(up)->param, -3);
    // On the middle vertex, where six triangles meet: face 0 has it in both of its own.
    const auto tie = first({{{1, 1, 1}, {0, 0, -1}}});
    EXPECT_EQ(tie->face, 0);
    EXPECT_EQ(tie->triangle, 0);
    EXPECT_EQ(tie->weights, (std::array<double, 3>{0, 0, 1}));
    EXPECT_EQ(mesh.index().allHits({{{1, 1, 1}, {0, 0, -1}}}).size(), 6U);
    // In the plane itself nothing is met, and across the outer border only what the tolerance lets in.
    EXPECT_FALSE(first({{{-1, 0.5, 0}, {1, 0, 0}}}));
    EXPECT_TRUE(first({{{0.5, -0.9e-6, 1}, {0, 0, -1}}}));
    EXPECT_FALSE(first({{{0.5, -1.1e-6, 1}, {0, 0, -1}}}));
    for (const double bad : {0.0, std::nan(""), double{INFINITY}})
        EXPECT_FALSE(first({{{0.5, 0.5, 1}, {0, 0, bad}}})) << bad;
    EXPECT_FALSE(first({{{0.5, 0.5, INFINITY}, {0, 0, -1}}}));
    EXPECT_FALSE(first({{{0.5, 0.5, 1}, {0, 0, -1}}, std::nan("")}));
    EXPECT_TRUE(first({{{0.5, 0.5, 1e12}, {0, 0, -1}}})) << "from very far";
}

TEST(MeshIndexRays, TrianglesWithoutNumbersCountForNothing) {
    const float nan = std::nanf("");
    const Mesh mesh = build({{0, 0, 0}, {4, 0, 0}, {0, 4, 0}, {nan, 0, 1}, {0, INFINITY, 2}, {0, 0, 1}},
                            {3, 3, 3}, {0, 1, 3, 5, 1, 4, 0, 1, 2});
    const auto hit = mesh.index().firstHit({{{1, 1, 9}, {0, 0, -1}}});
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->face, 2);
    EXPECT_EQ(hit->param, 9);
    EXPECT_FALSE(Mesh().index().firstHit({{{1, 1, 9}, {0, 0, -1}}}));
}

TEST(MeshIndex, CopiesShareItUntilPointsChange) {
    Mesh mesh = grid(2, 0);
    const MeshIndex* const made = &mesh.index();
    Mesh copy = mesh;
    EXPECT_EQ(&copy.index(), made);
    copy.setPoint(0, {0, 0, 5});
    EXPECT_NE(&copy.index(), made);
    EXPECT_EQ(&mesh.index(), made);
    EXPECT_GT(mesh.byteSize(), grid(2, 0).byteSize());
    EXPECT_EQ(copy.index().firstHit({{{0, 0, 9}, {0, 0, -1}}})->param, 4);
}

TEST(MeshIndex, TheSameForAnyNumberOfThreads) {
    const Mesh mesh = grid(150, 0.2F); // of several pieces
    const int before = parallel::threads();
    std::vector<double> expected;
    for (const int threads : {1, 2, 5}) {
        parallel::setThreads(threads);
        Mesh fresh = mesh;
        fresh.setPoint(0, mesh.points()[0]); // with an index of its own
        std::vector<double> params(4000);
        parallel::inPieces(params.size(), 100, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                const double x = static_cast<double>(i % 63) * 2.41, y = static_cast<double>(i / 63) * 2.4;
                const auto hit = fresh.index().firstHit({{{x, y, 5}, {0.3, 0.2, -1}}});
                const auto nearest = fresh.index().closestPoint({x, y, 5});
                params[i] = (hit ? hit->param : -1) + 100 * nearest->squaredDistance + nearest->face;
            }
        });
        if (expected.empty()) expected = params;
        EXPECT_EQ(params, expected);
        int hits = 0;
        for (int i = 0; i < 10; ++i)
            hits += expectAsPlain(fresh, {{{15.1 * i, 149.5 - 3 * i, 5}, {0.1, 0.02, -1}}});
        hits += expectAsPlain(fresh, {{{150, 109, 5}, {0, 0, -1}}}); // where the first piece ends
        EXPECT_GE(hits, 10);
    }
    parallel::setThreads(before);
}

} // namespace
} // namespace vesk::geom
