#include "host/scene/formats/mesh_files.h"
#include "host/scene/formats/mesh_test_support.h"
#include "host/scene/formats/test_folder.h"

namespace vesk::formats {
namespace {

std::string meshText(std::string_view obj) {
    const auto mesh = parseObj(obj, "a.obj");
    return mesh ? textOf(*mesh) : mesh.error();
}

TEST(ObjReader, ReadsWhatFacesName) {
    EXPECT_EQ(meshText("# four corners of a square, twice\r\n"
                       "mtllib some.mtl\n"
                       "o first\n"
                       "v 0 0 0\nv 1 0 0 1.0\nv\t1 1e0 0 \n  v 0 +1 0\n"
                       "vt 0 0\nvt .5 0 9\nvt 1\n"
                       "vn 0 0 1\nvn 0 0 -2\n"
                       "g a b c\nusemtl red\ns 1\n"
                       "f 1/1/1 2/2/1 3/3/2\n"
                       "f -4//-2 -2// 4\n"
                       "l 1 2 3\n"
                       "f 1/2 3/3 4/1/"),
              "point [0, 0, 0]\npoint [1, 0, 0]\npoint [1, 1, 0]\npoint [0, 1, 0]\n"
              "face\n  0 uv 0 0 0 normal [0, 0, 1]\n  1 uv 1 0.5 0 normal [0, 0, 1]\n"
              "  2 uv 2 1 0 normal [0, 0, -2]\n"
              "face\n  0 normal [0, 0, 1]\n  2\n  3\n"
              "face\n  0 uv 1 0.5 0\n  2 uv 2 1 0\n  3 uv 0 0 0\n");
}

TEST(ObjReader, JoinsLinesAndLooksAhead) {
    // Points after the face, a byte order mark, continued lines, a comment that seems to go on but does not.
    EXPECT_EQ(
        meshText("\xEF\xBB\xBF# c:\\\nf 1 \\\r\n 2\\\n 3\ng a \\\n f 9 9 9\nv 1 \\\n2 3\nv 4 5 6\nv 7 8 9"),
        "point [1, 2, 3]\npoint [4, 5, 6]\npoint [7, 8, 9]\nface\n  0\n  1\n  2\n");
}

TEST(ObjReader, TakesColoursOfPoints) {
    EXPECT_EQ(meshText("v 0 0 0\nv 1 0 0 .5 .25 2\nv 0 1 0 1 0 0 .75\nf 1 2 3\n"),
              "point [0, 0, 0]\npoint [1, 0, 0]\npoint [0, 1, 0]\n"
              "face\n  0 color -1 -1 -1 -1\n  1 color 0.5 0.25 2 1\n  2 color 1 0 0 0.75\n");
}

TEST(ObjReader, DropsFacesWithoutAreaAndTheirLayers) {
    EXPECT_EQ(meshText("v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 2 0\nf 1/1 2/1\nf 1/1 1/2 2/2 3/3\n"),
              "point [0, 0, 0]\npoint [1, 0, 0]\npoint [0, 1, 0]\nface\n  0 uv 0 0 0\n  1 uv 1 1 0\n  2 uv 2 "
              "2 0\n");
}

TEST(ObjReader, NamesTheLineOfAFault) {
    const std::string three = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    const std::pair<std::string, std::string> cases[] = {
        {"", "a.obj: empty file"},
        {"v 1 2", "a.obj:1: expected a number, found the end of the file"},
        {"\nv 1 2\n", "a.obj:2: expected a number, found the end of the line"},
        {"v 1 2 nan\n", "a.obj:1: expected a number, found 'nan'"},
        {"v 1 2 1e39\n", "a.obj:1: number out of range"},
        {"v 1 2 3x\n", "a.obj:1: expected a number, found '3x'"},
        {"v 1 2 3 4 5\n", "a.obj:1: expected a colour of three or four numbers, found the end of the line"},
        {"v 1 2 3 4 5 6 7 8\n", "a.obj:1: expected the end of the line, found '8'"},
        {"vt 1 2 3 4\n", "a.obj:1: expected the end of the line, found '4'"},
        {"vn 1 2\n", "a.obj:1: expected a number, found the end of the line"},
        {three + "f 1 2 0\n", "a.obj:4: point 0 does not exist"},
        {three + "f 1 2 -4\n", "a.obj:4: point -4 does not exist"},
        {three + "f 1 2 3\nf 1 2 4\nf 1 3 2\n", "a.obj:5: point 4 does not exist, the file has 3"},
        {three + "f 1/1 2/1 3/1\n", "a.obj:4: texture vertex 1 does not exist, the file has 0"},
        {three + "vn 0 0 1\nf 1//1 2//2 3//1\n", "a.obj:5: normal 2 does not exist, the file has 1"},
        {three + "f 1 2 99999999999\n", "a.obj:4: point 99999999999 does not exist"},
        {three + "f 1 2 99999999999999999999\n", "a.obj:4: expected an index, found '99999999999999999999'"},
        {three + "f\n", "a.obj:4: expected a point index, found the end of the line"},
        {three + "f 1 2 3/1/1/1\n", "a.obj:4: expected a blank after the corner, found '/1'"},
        {"some words\n", "a.obj:1: unknown statement, and no points in the whole file"},
        {three + "\x89PNG\x1A\n", "a.obj:4: not an OBJ statement"},
        {std::string(100, '\0'), "a.obj:1: not an OBJ statement"},
    };
    for (const auto& [text, error] : cases)
        EXPECT_EQ(meshText(text), error);
    EXPECT_EQ(readObj("/missing/a.obj").error(), "/missing/a.obj: cannot be read: No such file or directory");
}

TEST(ObjFiles, RoundTrip) {
    const TestFolder folder;
    geom::Mesh mesh = plainMesh();
    const auto afterAFile = [&] {
        const Outcome written = writeObj(folder.path("a.obj"), mesh, {.normals = false});
        EXPECT_TRUE(written) << written.error;
        const auto read = readObj(folder.path("a.obj"));
        return read ? textOf(*read) : read.error();
    };
    EXPECT_EQ(afterAFile(), textOf(mesh));
    // A seam at vertex 1; the pentagon is not mapped. List entry 0 is at no corner.
    ASSERT_TRUE(mesh.setUvs(0, {9, 0, 1, 0.1F, 1, 0, 0.5F}, {9, 0, 0, 1, 1, 1, -2}));
    ASSERT_TRUE(mesh.assignUvs(0, std::vector<int>{3, 4, 0}, std::vector<int>{1, 2, 3, 1, 6, 4, 5}));
    EXPECT_EQ(afterAFile(), textOf(mesh));
    // A face that is mapped in part counts as not mapped.
    const std::string mapped = textOf(mesh);
    ASSERT_TRUE(
        mesh.assignUvs(0, std::vector<int>{3, 4, 5}, std::vector<int>{1, 2, 3, 1, 6, 4, 5, 1, 1, -1, 1, 1}));
    EXPECT_EQ(afterAFile(), mapped);
    ASSERT_TRUE(mesh.assignUvs(0, std::vector<int>{3, 4, 0}, std::vector<int>{1, 2, 3, 1, 6, 4, 5}));
    const std::vector<MColor> colors(9, MColor(0.1F, 2, -3, 1));
    ASSERT_TRUE(mesh.setVertexColors(colors, std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(afterAFile(), textOf(mesh));
}

TEST(ObjFiles, NormalsAreListedOncePerVertexAndLockedWhenRead) {
    const TestFolder folder;
    geom::Mesh mesh =
        meshOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {1, 0, 1}}, {4, 3}, {0, 1, 2, 3, 1, 4, 2});
    // The quad looks along z, the triangle along -x; a hard edge between them.
    mesh.setAllEdgesHard(true);
    ASSERT_TRUE(writeObj(folder.path("a.obj"), mesh));
    const std::string text = folder.load("a.obj");
    std::size_t listed = 0;
    for (std::size_t at = text.find("vn "); at != std::string::npos; at = text.find("vn ", at + 1))
        ++listed;
    EXPECT_EQ(listed, 7U); // no two corners of a vertex agree
    const auto read = readObj(folder.path("a.obj"));
    ASSERT_TRUE(read) << read.error();
    for (int corner = 0; corner < 7; ++corner) {
        EXPECT_TRUE(read->isNormalLocked(corner));
        EXPECT_EQ(read->lockedNormals().values[corner],
                  corner < 4 ? MFloatVector(0, 0, 1) : MFloatVector(-1, 0, 0));
    }
    mesh.setAllEdgesHard(false);
    ASSERT_TRUE(mesh.setVertexNormals(std::vector<MFloatVector>(5, MFloatVector(0, 0.5F, 0)),
                                      std::vector<int>{0, 1, 2, 3, 4}));
    ASSERT_TRUE(writeObj(folder.path("a.obj"), mesh));
    EXPECT_EQ(textOf(*readObj(folder.path("a.obj"))), textOf(mesh));
}

TEST(ObjFiles, RefuseWhatIsNotFinite) {
    const TestFolder folder;
    folder.store("a.obj", "old");
    geom::Mesh mesh = plainMesh();
    mesh.setPoint(3, {0, std::nanf(""), 0});
    const std::string name = folder.path("a.obj");
    EXPECT_EQ(writeObj(name, mesh).error, name + ": point 3 is not finite");
    EXPECT_EQ(folder.load("a.obj"), "old");
}

TEST(ObjReader, SurvivesAnything) {
    const std::string good =
        "v 0 0 0 1 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvn 0 0 1\nf 1/1/1 -2/-1/1 3//1 \\\n 1\n";
    for (std::size_t i = 0; i < good.size(); ++i) {
        static_cast<void>(parseObj(std::string_view(good).substr(0, i), "a.obj"));
        for (const char c : {'\0', '\n', '9', '-', '/', '\\', '\xFF'}) {
            std::string bad = good;
            bad[i] = c;
            // A copy of the exact length, so that a sanitizer sees reads beyond it.
            const std::vector<char> bytes(bad.begin(), bad.end());
            const auto mesh = parseObj({bytes.data(), bytes.size()}, "a.obj");
            if (mesh) {
                EXPECT_TRUE(mesh->checkInvariants()) << bad;
            } else {
                EXPECT_TRUE(mesh.error().starts_with("a.obj:")) << mesh.error();
            }
        }
    }
}

} // namespace
} // namespace vesk::formats
