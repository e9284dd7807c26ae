// The sweep from the tips to the roots.

#include "bmesh/skin_mesh.h"

#include <algorithm>
#include <cmath>

namespace vesk::skin {

namespace {

constexpr Float3 kX{1, 0, 0};
constexpr Float3 kY{0, 1, 0};
constexpr Float3 kZ{0, 0, 1};

Float3 mean(const std::array<Float3, 4>& corners) {
    return (corners[0] + corners[1] + corners[2] + corners[3]) * 0.25F;
}

/// By how much the bone from `a` to the joint bends on its way to `b`, both seen from the joint: 0 when
/// straight, never positive.
float bendAngle(Float3 a, Float3 b) {
    const float angle = -std::acos(static_cast<float>(-dot(a, b) / std::sqrt(dot(a, a) * dot(b, b))));
    return std::isnan(angle) ? 0.0F : angle;
}

} // namespace

Float3 rotateAboutAxis(Float3 v, Float3 axis, float angle) {
    const double cosine = std::cos(static_cast<double>(angle));
    const double sine = std::sin(static_cast<double>(angle));
    const double along = dot(axis, v) * (1.0 - cosine);
    const auto turned = [&](float part, float across, float axisPart) {
        return static_cast<float>(part * cosine + across * sine + axisPart * along);
    };
    return {turned(v.x, axis.y * v.z - axis.z * v.y, axis.x),
            turned(v.y, axis.z * v.x - axis.x * v.z, axis.y),
            turned(v.z, axis.x * v.y - axis.y * v.x, axis.z)};
}

std::array<Float3, 4> ringFrame(const JointSphere& sphere, const JointSphere& parent) {
    const Float3 d = normalised(sphere.center - parent.center, kY);
    const Float3 reference = std::abs(d.y) < 0.5F ? kY : kX;
    const Float3 side = unitCross(reference, d, kZ);
    const float radius = sphere.radius();
    const Float3 u = side * radius;
    const Float3 w = unitCross(d, side, kX) * radius;
    const Float3 c = sphere.center;
    return {c + u + w, c - u + w, c - u - w, c + u - w};
}

/// One run over a skeleton. Every joint on the way down is a `Visit` on a stack of our own.
class SkinSweep {
  public:
    explicit SkinSweep(SkinMesh& mesh) : mesh_(mesh) {
        for (int i = 0; i < mesh.spheres.size(); ++i) {
            radii_.append(sphere(i).radius());
            weights_.append({{i, 1.0F}});
        }
    }

    void run(int root) {
        stack_.append(Visit{root, 0, {}, {}});
        while (!stack_.isEmpty()) {
            Visit& top = stack_.last();
            if (top.nextChild < sphere(top.sphere).children.size()) {
                stack_.append(Visit{sphere(top.sphere).children[top.nextChild++], 0, {}, {}});
                continue;
            }
            const Visit done = stack_.takeLast();
            const SweepRing ring = finish(done);
            if (!stack_.isEmpty()) childIsDone(stack_.last(), done.sphere, ring);
        }
    }

  private:
    using Corners = std::array<Float3, 4>;

    struct Visit {
        int sphere;
        int nextChild;
        SweepRing childRing;               ///< of an only child
        QVector<std::array<int, 4>> faces; ///< of a branch: the open ends of its arms
    };

    const JointSphere& sphere(int i) const { return std::as_const(mesh_.spheres)[i]; }
    float radius(int i) const { return radii_.at(i); }
    bool hasParent(int i) const { return sphere(i).parent >= 0; }
    const JointSphere& parentOf(int i) const { return sphere(sphere(i).parent); }

    int addVertices(const Corners& corners, int owner, Float3 offset = {}) {
        const int first = mesh_.vertices.size();
        for (const Float3& corner : corners)
            mesh_.vertices.append(SkinVertex{corner + offset, {}, weights_.at(owner)});
        return first;
    }
    void addQuad(int a, int b, int c, int d) { mesh_.quads.append(Quad{{{a}, {b}, {c}, {d}}}); }

    SweepRing finish(const Visit& visit) {
        switch (sphere(visit.sphere).children.size()) {
        case 0: return generateTip(visit.sphere);
        case 1: return generateBone(visit.sphere, visit.childRing);
        default: return generateBranch(visit.sphere, visit.faces);
        }
    }

    void childIsDone(Visit& parent, int child, const SweepRing& ring) {
        if (sphere(parent.sphere).children.size() == 1) {
            parent.childRing = ring;
        } else {
            parent.faces.append(generateArm(parent.sphere, child, ring));
        }
    }

    SweepRing generateTip(int s) {
        if (!hasParent(s)) return generateCube(s);
        const Corners corners = ringFrame(sphere(s), parentOf(s));
        const Float3 end = normalised(sphere(s).center - parentOf(s).center, kY) * radius(s);
        const int n = addVertices(corners, s, end);
        addVertices(corners, s);
        addQuad(n, n + 1, n + 2, n + 3);
        addQuad(n + 4, n + 5, n + 1, n);
        addQuad(n + 5, n + 6, n + 2, n + 1);
        addQuad(n + 6, n + 7, n + 3, n + 2);
        addQuad(n + 7, n + 4, n, n + 3);
        return {corners, {n + 4, n + 5, n + 6, n + 7}};
    }

    SweepRing generateCube(int s) {
        const Float3 x = kX * radius(s);
        const Float3 y = kY * radius(s);
        const Float3 z = kZ * radius(s);
        const Float3 c = sphere(s).center;
        const int n = addVertices({c + x + y + z, c + x - y + z, c + x - y - z, c + x + y - z}, s);
        addVertices({c - x + y + z, c - x - y + z, c - x - y - z, c - x + y - z}, s);
        addQuad(n, n + 1, n + 2, n + 3);
        addQuad(n + 7, n + 6, n + 5, n + 4);
        addQuad(n + 7, n + 4, n, n + 3);
        addQuad(n + 6, n + 7, n + 3, n + 2);
        addQuad(n + 6, n + 2, n + 1, n + 5);
        addQuad(n, n + 4, n + 5, n + 1);
        return {};
    }

    /// The ring's shape about the centre of `from`, turned and scaled to stand about `center`.
    static Corners moved(const SweepRing& ring, Float3 from, Float3 center, float scale, Float3 axis = kY,
                         float angle = 0.0F) {
        Corners corners;
        for (std::size_t k = 0; k < 4; ++k)
            corners[k] = center + rotateAboutAxis(ring.positions[k] - from, axis, angle) * scale;
        return corners;
    }

    SweepRing generateBone(int s, const SweepRing& childRing) {
        const int child = sphere(s).children[0];
        if (!hasParent(s)) return generateRootBone(s, child, childRing);
        const float ratio = radius(s) / radius(child);
        const Float3 center = sphere(s).center;
        Float3 from = sphere(child).center;
        const Float3 a = from - center;
        const Float3 b = parentOf(s).center - center;
        const Float3 axis = unitCross(a, b, kY);
        const float angle = bendAngle(a, b);
        if (angle == 0.0F) from.y += 0.001F; // part of the contract: straight chains lean a little
        const int n =
            connectRings(childRing, moved(childRing, from, center, ratio, axis, angle / 2), child, radius(s));
        return {moved(childRing, from, center, ratio, axis, angle), {n, n + 1, n + 2, n + 3}};
    }

    SweepRing generateRootBone(int s, int child, const SweepRing& childRing) {
        const float ratio = radius(s) / radius(child);
        const Float3 center = sphere(s).center;
        const Float3 from = sphere(child).center;
        const int n = connectRings(childRing, moved(childRing, from, center, ratio), child, radius(s));
        const Float3 cap = center + normalised(center - from, kY) * radius(s);
        addVertices(moved(childRing, from, cap, ratio), s);
        addQuad(n, n + 4, n + 5, n + 1);
        addQuad(n + 1, n + 5, n + 6, n + 2);
        addQuad(n + 2, n + 6, n + 7, n + 3);
        addQuad(n + 3, n + 7, n + 4, n);
        addQuad(n + 4, n + 7, n + 6, n + 5);
        return {};
    }

    /// The tube from a child to its branch; the vertices at which it ends there.
    std::array<int, 4> generateArm(int s, int child, const SweepRing& ring) {
        const Float3 center = sphere(s).center;
        const Float3 from = sphere(child).center;
        const Float3 end = center + normalised(from - center, kY) * radius(s);
        const Corners target = moved(ring, from, end, radius(s) / radius(child));
        const int n = connectRings(ring, target, child, radius(s));
        return {n, n + 1, n + 2, n + 3};
    }

    SweepRing generateBranch(int s, QVector<std::array<int, 4>> faces) {
        SweepRing ring;
        if (hasParent(s)) {
            const Float3 end = normalised(parentOf(s).center - sphere(s).center, kY) * radius(s);
            ring.positions = ringFrame(sphere(s), parentOf(s));
            const int n = addVertices(ring.positions, s, end);
            ring.indices = {n, n + 1, n + 2, n + 3};
            faces.append(ring.indices);
        }
        stitch(faces);
        return ring;
    }

    void stitch(const QVector<std::array<int, 4>>& faces) {
        // Faces shrink to almost a point, so that each lands on the hull as a small patch and the triangles
        // span the gaps between them.
        constexpr float shrink = 0.99F;
        QVector<Float3> points;
        QHash<Float3, int> vertexAt;
        for (const auto& face : faces) {
            const Corners corners = positionsOf(face);
            const Float3 middle = mean(corners);
            for (std::size_t k = 0; k < 4; ++k) {
                points.append(corners[k] + (middle - corners[k]) * shrink);
                vertexAt.insert(points.last(), face[k]);
            }
        }
        mesh_.appendHull(convexHull(points), vertexAt, faces);
    }

    Corners positionsOf(const std::array<int, 4>& indices) const {
        Corners corners;
        for (std::size_t k = 0; k < 4; ++k)
            corners[k] = std::as_const(mesh_.vertices)[indices[k]].position;
        return corners;
    }

    /// Lays the tube from the ring of sphere p to the target corners, with rings between where the gap is
    /// long; the first of the target's four vertices.
    int connectRings(const SweepRing& from, const Corners& target, int p, float targetRadius) {
        const float r0 = radius(p);
        const Float3 start = mean(positionsOf(from.indices));
        const Float3 way = mean(target) - start;
        const auto distance = static_cast<float>(length(way));
        const float gap = distance - r0 - targetRadius;
        const int extra = extraRings(gap / (r0 + targetRadius));
        std::array<int, 4> previous = from.indices;
        for (int k = 0; k < extra; ++k) {
            const float t = extra > 1 ? static_cast<float>(k) / static_cast<float>(extra - 1) : 0.0F;
            const float s = (gap * t + r0) / distance;
            const Float3 center = start + way * s;
            const float scale = ((targetRadius - r0) * s + r0) / r0;
            Corners ring;
            for (std::size_t i = 0; i < 4; ++i)
                ring[i] = center + (from.positions[i] - start) * scale;
            previous = addTube(previous, ring, p);
        }
        return addTube(previous, target, p)[0];
    }

    std::array<int, 4> addTube(const std::array<int, 4>& previous, const Corners& ring, int owner) {
        const auto& [q0, q1, q2, q3] = previous;
        const int b = addVertices(ring, owner);
        addQuad(b, b + 1, q1, q0);
        addQuad(b + 1, b + 2, q2, q1);
        addQuad(b + 2, b + 3, q3, q2);
        addQuad(b + 3, b, q0, q3);
        return {b, b + 1, b + 2, b + 3};
    }

    /// The whole rings of the gap, as far as there are any left to give.
    int extraRings(float wanted) {
        if (!(wanted >= 1.0F)) return 0;
        const double rings = std::floor(wanted);
        const auto given = static_cast<int>(std::min<double>(rings, ringsLeft_));
        ringsLeft_ -= given;
        mesh_.missingRings_ += rings - given;
        return given;
    }

    SkinMesh& mesh_;
    QVector<float> radii_;
    QVector<QHash<int, float>> weights_; ///< of a vertex that a sphere makes; shared by all of them
    QVector<Visit> stack_;
    int ringsLeft_ = SkinMesh::kMaxExtraRings;
};

void SkinMesh::build() {
    for (JointSphere& sphere : spheres)
        sphere.children.clear();
    for (int i = 0; i < spheres.size(); ++i) {
        if (spheres[i].parent >= 0) spheres[spheres[i].parent].children.append(i);
    }
    vertices.clear();
    triangles.clear();
    quads.clear();
    missingRings_ = 0.0;
    SkinSweep sweep(*this);
    for (int i = 0; i < spheres.size(); ++i) {
        if (spheres[i].parent < 0) sweep.run(i);
    }
    pairTrianglesToQuads();
    computeNormals();
}

} // namespace vesk::skin
