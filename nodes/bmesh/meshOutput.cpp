#include "nodes/bmesh/meshOutput.h"

#include <maya/MFnMesh.h>
#include <maya/MFnMeshData.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshVertex.h>
#include <maya/MMeshSmoothOptions.h>
#include <maya/MPointArray.h>

#include <vector>

namespace vesk::nodes {

namespace {

/// The face's points without those that repeat an earlier one.
template <class Face>
void readLoop(const skin::SkinMesh& skin, const Face& face, MPointArray& loop) {
    loop.setLength(0);
    for (const skin::Corner& corner : face) {
        const skin::Float3 p = skin.vertices.at(corner.vertex).position;
        const MPoint point(p.x, p.y, p.z);
        bool isNew = true;
        for (unsigned i = 0; i < loop.length(); ++i)
            isNew = isNew && point.distanceTo(loop[i]) > kMFnMeshPointTolerance;
        if (isNew) loop.append(point);
    }
}

/// The first face makes the mesh, the others are added to it.
class Welder {
  public:
    explicit Welder(const skin::SkinMesh& skin) : skin_(skin) {}

    template <class Face>
    void add(const Face& face) {
        readLoop(skin_, face, loop_);
        if (loop_.length() < 3) return;
        if (!data.isNull()) {
            mesh_.addPolygon(loop_, true, kMFnMeshPointTolerance);
            return;
        }
        const auto count = static_cast<int>(loop_.length());
        MIntArray connects;
        for (int i = 0; i < count; ++i)
            connects.append(i);
        data = MFnMeshData().create();
        mesh_.create(count, 1, loop_, MIntArray(1, count), connects, data);
    }

    MObject data;

  private:
    const skin::SkinMesh& skin_;
    MFnMesh mesh_;
    MPointArray loop_;
};

/// Vertices that edges join to each: those of point v are vertices[start[v]] .. [start[v + 1] - 1].
struct Neighbours {
    std::vector<int> start{0}, vertices;
};

Neighbours neighboursOf(MObject& mesh) {
    Neighbours neighbours;
    MIntArray around;
    for (MItMeshVertex vertex(mesh); !vertex.isDone(); vertex.next()) {
        vertex.getConnectedVertices(around);
        for (unsigned i = 0; i < around.length(); ++i)
            neighbours.vertices.push_back(around[i]);
        neighbours.start.push_back(static_cast<int>(neighbours.vertices.size()));
    }
    return neighbours;
}

void relax(MPointArray& points, const Neighbours& neighbours, int passes) {
    for (int pass = 0; pass < passes; ++pass) {
        const MPointArray before(points);
        for (unsigned v = 0; v < points.length(); ++v) {
            const int begin = neighbours.start[v];
            const int end = neighbours.start[v + 1];
            MVector sum;
            for (int i = begin; i < end; ++i)
                sum +=
                    MVector(before[static_cast<unsigned>(neighbours.vertices[static_cast<std::size_t>(i)])]);
            points[v] = MPoint((sum + MVector(before[v])) / (end - begin + 1));
        }
    }
}

} // namespace

MObject emptyMesh() {
    MObject data = MFnMeshData().create();
    MFnMesh().create(0, 0, MPointArray(), MIntArray(), MIntArray(), data);
    return data;
}

MObject weldedMesh(const skin::SkinMesh& skin) {
    Welder welder(skin);
    for (const skin::Quad& quad : skin.quads)
        welder.add(quad);
    for (const skin::Triangle& triangle : skin.triangles)
        welder.add(triangle);
    return welder.data;
}

void relaxMesh(MObject& mesh, int passes) {
    MFnMesh function(mesh);
    MPointArray points;
    function.getPoints(points, MSpace::kObject);
    relax(points, neighboursOf(mesh), passes);
    function.setPoints(points, MSpace::kObject);
}

MObject subdividedMesh(const MObject& mesh, int divisions) {
    MObject coarse = MFnMeshData().create();
    MFnMesh function;
    function.copy(mesh, coarse);
    MMeshSmoothOptions options;
    options.setDivisions(divisions);
    MObject smooth = MFnMeshData().create();
    MStatus status;
    function.generateSmoothMesh(smooth, &options, &status);
    return status ? smooth : MObject();
}

} // namespace vesk::nodes
