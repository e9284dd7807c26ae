// Meshes, curves and surfaces as words.

#include "host/commands/probe_scene.h"

#include "host/data/mesh_data.h"
#include "host/data/nurbs_data.h"

namespace vesk::commands {

namespace {

class GeometryWords : public ProbeScene {
  protected:
    template <class T>
    const auto& geometry(const char* attribute) {
        return dynamic_cast<const T&>(*n->cell(*n->findAttribute(attribute)).data).geometry();
    }
};

} // namespace

TEST_F(GeometryWords, MeshWithItsLayers) {
    check({{"setAttr -type mesh n.shape v 3 0 0 0 1 0 0 0 2 0 vn 3 0 0 1 0 1 0 1 0 0 vt 3 0 0 1 0 0 0.5 "
            "e 3 0 1 hard 1 2 smooth 2 0 hard f 3 0 1 2 mu 0 3 2 1 0",
            "-"}});
    const auto& mesh = geometry<MeshData>("shape");
    EXPECT_EQ(mesh.points()[2], MFloatVector(0, 2, 0));
    ASSERT_EQ(mesh.faceCount(), 1);
    EXPECT_TRUE(mesh.isHardEdge(0));
    EXPECT_FALSE(mesh.isHardEdge(1));
    EXPECT_EQ(mesh.cornerNormals()[1], MFloatVector(0, 1, 0));
    EXPECT_EQ(mesh.uvSet(0).idOfCorner(0), 2);
    EXPECT_FLOAT_EQ(mesh.uvSet(0).v[2], 0.5F);
    check({
        {"setAttr -type mesh n.shape v 1 0 0 0 e 1 0 0 soft", "! An edge is 'hard' or 'smooth', not 'soft'."},
        {"setAttr -type mesh n.shape v 2 0 0 0 0 0", "! 2 points are announced, but the values end before "
                                                     "that."},
        {"setAttr -type mesh n.shape v 1 0 0 0 w 1", "! 'w' is not a record of polyFaces data."},
        {"getAttr n.shape", "! The data of 'n.shape' (mesh) cannot be returned by a command."},
    });
    EXPECT_EQ(run("setAttr -type mesh n.shape v 1 0 0 0 e 1 0 1 hard f 1 0").front(), '!');
    EXPECT_EQ(geometry<MeshData>("shape").vertexCount(), 3);
}

TEST_F(GeometryWords, Curves) {
    check({{"setAttr -type nurbsCurve n.curve 3 1 0 no 3 6 0 0 0 1 1 1 4 0 0 0 0 3 0 3 3 0 3 0 0", "-"}});
    // Halfway the weights are 1 3 3 1 over 8.
    EXPECT_TRUE(geometry<NurbsCurveData>("curve").pointAt(0.5).isEquivalent(MPoint(1.5, 2.25, 0)));
    check({{"setAttr n.curve -type nurbsCurve 1 2 1 yes 2 3 0 1 2 3 0 0 1 4 5 0.5 0 0 1", "-"}});
    const auto& curve = geometry<NurbsCurveData>("curve");
    EXPECT_TRUE(curve.isRational());
    EXPECT_EQ(curve.form(), geom::NurbsForm::Closed);
    EXPECT_EQ(curve.cvs()[1], MPoint(4, 5, 0, 0.5));
    check({
        {"setAttr -type nurbsCurve n.curve 1 1 0 no 4 2 0 1", "! A curve has 2 or 3 dimensions, not 4."},
        {"setAttr -type nurbsCurve n.curve 1 1 3 no 3 2 0 1 2 0 0 0 1 1 1", "! A form is 0, 1 or 2, not 3."},
        {"setAttr -type nurbsCurve n.curve 1 2 0 no 3 2 0 1 2 0 0 0 1 1 1",
         "! The curve's knots make 1 spans, not 2."},
        {"setAttr -type nurbsCurve n.curve 1 1 0 no 3 2 0 1 2 0 0 0 1 1",
         "! 2 CVs are announced, but the values end before that."},
        {"setAttr -type nurbsCurve n.curve 1 1 0 no", "! Error reading data element number 5."},
    });
    EXPECT_EQ(run("setAttr -type nurbsCurve n.curve 99 1 0 no 3 2 0 1 2 0 0 0 1 1 1").front(), '!');
    EXPECT_EQ(geometry<NurbsCurveData>("curve").cvCount(), 3);
}

TEST_F(GeometryWords, Surfaces) {
    check({{"setAttr -type nurbsSurface n.surface 1 1 0 0 no 2 0 1 3 0 1 2 6 "
            "0 0 0  0 1 0  0 2 0  1 0 0  1 1 0  1 2 5",
            "-"}});
    const auto& surface = geometry<NurbsSurfaceData>("surface");
    EXPECT_EQ(surface.cvCountU(), 2);
    EXPECT_EQ(surface.cvCountV(), 3);
    EXPECT_EQ(surface.cv(1, 2), MPoint(1, 2, 5));
    check({
        {"setAttr -type nurbsSurface n.surface 1 1 0 0 no 2 0 1 2 0 1 \"NOTRIM\" 4 "
         "0 0 0 0 1 0 1 0 0 1 1 0",
         "-"},
        {"setAttr -type nurbsSurface n.surface 1 1 0 0 no 2 0 1 2 0 1 \"CUT\" 4",
         "! TRIM or NOTRIM is wanted, not 'CUT'."},
    });
    const auto warnings = log().warningCount();
    check({{"setAttr -type nurbsSurface n.surface 1 1 0 0 no 2 0 1 2 0 1 \"TRIM\" 4 "
            "7 0 0 0 1 0 1 0 0 1 1 0 1 2 3",
            "-"}});
    EXPECT_EQ(log().warningCount(), warnings + 1);
    EXPECT_EQ(geometry<NurbsSurfaceData>("surface").cv(0, 0), MPoint(7, 0, 0));
}

} // namespace vesk::commands
