// Directions of growing u and v at the corners of faces.

#include "host/geometry/mesh.h"

#include <cmath>

namespace vesk::geom {

namespace {

/// UV triangles whose sides are parallel within this sine have no area to take directions from.
constexpr double leastUvSine = 1e-10;
/// A direction of growing u this close to the normal (sine) leaves no tangent.
constexpr double leastTangentSine = 1e-9;

/// What the triangles at one corner say: the sum of their unit directions of growing u, and of UV areas with
/// sign.
struct UvFlow {
    MVector growingU;
    double uvArea = 0.0;
    bool any = false;

    void add(const UvFlow& triangle) {
        if (!triangle.any) return;
        growingU += triangle.growingU;
        uvArea += triangle.uvArea;
        any = true;
    }
};

UvFlow flowOfTriangle(const Mesh& mesh, const UvSet& uvs, const TriangleCorners& corners) {
    MVector p[3];
    double u[3];
    double v[3];
    for (int k = 0; k < 3; ++k) {
        const int id = uvs.idOfCorner(corners[k]);
        if (id < 0) return {};
        p[k] = mesh.point(mesh.topology().faceVertices()[corners[k]]);
        u[k] = uvs.u[id];
        v[k] = uvs.v[id];
    }
    const double u1 = u[1] - u[0];
    const double v1 = v[1] - v[0];
    const double u2 = u[2] - u[0];
    const double v2 = v[2] - v[0];
    const double area = u1 * v2 - u2 * v1;
    if (!(std::abs(area) > leastUvSine * std::sqrt((u1 * u1 + v1 * v1) * (u2 * u2 + v2 * v2)))) return {};
    const MVector alongU = (p[1] - p[0]) * v2 - (p[2] - p[0]) * v1;
    return {alongU.normal() * (area < 0.0 ? -1.0 : 1.0), area, true};
}

Mesh::CornerFrame frameOf(const UvFlow& flow, const MFloatVector& cornerNormal) {
    const MVector normal = MVector(cornerNormal).normal();
    const double length = flow.growingU.length();
    if (!flow.any || !(length > 0.0) || normal == MVector::zero) return {};
    const MVector tangent = flow.growingU - normal * (flow.growingU * normal);
    if (!(tangent.length() > leastTangentSine * length)) return {};
    const MVector unit = tangent.normal();
    const MVector binormal = (normal ^ unit) * (flow.uvArea < 0.0 ? -1.0 : 1.0);
    return {MFloatVector(unit), MFloatVector(binormal), true};
}

} // namespace

Mesh::CornerFrames Mesh::cornerFrames(int uvSet) const {
    const UvSet& uvs = uvSets_[uvSet].read();
    CornerFrames frames;
    frames.tangents.resize(static_cast<std::size_t>(cornerCount()));
    frames.binormals.resize(frames.tangents.size());
    if (uvs.ids.empty()) return frames;
    const std::vector<MFloatVector>& normals = cornerNormals();
    const std::vector<TriangleCorners>& all = triangles();
    std::vector<UvFlow> flows;
    for (int f = 0; f < faceCount(); ++f) {
        const int start = topology_->faceStart()[f];
        const int size = topology_->faceSize(f);
        flows.assign(static_cast<std::size_t>(size), UvFlow());
        for (int t = 0; t < size - 2; ++t) {
            const TriangleCorners& triangle = all[triangleStart(f) + t];
            const UvFlow flow = flowOfTriangle(*this, uvs, triangle);
            for (const int corner : triangle)
                flows[corner - start].add(flow);
        }
        for (int k = 0; k < size; ++k) {
            const CornerFrame frame = frameOf(flows[k], normals[start + k]);
            frames.tangents[start + k] = frame.tangent;
            frames.binormals[start + k] = frame.binormal;
        }
    }
    return frames;
}

Mesh::CornerFrame Mesh::cornerFrame(int uvSet, int corner) const {
    const UvSet& uvs = uvSets_[uvSet].read();
    if (uvs.ids.empty()) return {};
    const int face = topology_->faceOfCorner(corner);
    UvFlow flow;
    for (int t = 0; t < triangleCount(face); ++t) {
        const TriangleCorners& triangle = triangles()[triangleStart(face) + t];
        if (triangle[0] == corner || triangle[1] == corner || triangle[2] == corner)
            flow.add(flowOfTriangle(*this, uvs, triangle));
    }
    return frameOf(flow, cornerNormals()[corner]);
}

Mesh::CornerFrame transformedFrame(Mesh::CornerFrame frame, const MMatrix& matrix) {
    const MVector tangent = (MVector(frame.tangent) * matrix).normal();
    const MVector binormal = MVector(frame.binormal) * matrix;
    frame.tangent = MFloatVector(tangent);
    // Both stay in the plane of the face, but a matrix that is not a rotation may turn them out of square.
    frame.binormal = MFloatVector((binormal - tangent * (binormal * tangent)).normal());
    return frame;
}

Mesh::CornerFrames transformedFrames(Mesh::CornerFrames frames, const MMatrix& matrix) {
    for (std::size_t c = 0; c < frames.tangents.size(); ++c) {
        const Mesh::CornerFrame frame =
            transformedFrame({frames.tangents[c], frames.binormals[c], true}, matrix);
        frames.tangents[c] = frame.tangent;
        frames.binormals[c] = frame.binormal;
    }
    return frames;
}

} // namespace vesk::geom
