#include "host/scene/formats/mesh_files.h"
#include "host/scene/formats/mesh_test_support.h"
#include "host/scene/formats/test_folder.h"

#include <algorithm>
#include <cstring>

namespace vesk::formats {
namespace {

std::string meshText(std::string_view ply) {
    const auto mesh = parsePly(ply, "a.ply");
    return mesh ? textOf(*mesh) : mesh.error();
}

/// Bytes of values, each turned round for the other byte order when asked.
class Bytes {
  public:
    explicit Bytes(std::string text, bool big = false) : text_(std::move(text)), big_(big) {}
    template <class T>
    Bytes& add(T value) {
        char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T));
        if (big_) std::reverse(bytes, bytes + sizeof(T));
        text_.append(bytes, sizeof(T));
        return *this;
    }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
    bool big_;
};

const std::string triangle = "point [0, 0, 0]\npoint [1, 0, 0]\npoint [0, 1, 0]\n";

TEST(PlyReader, AsciiInAnyOrder) {
    EXPECT_EQ(
        meshText("ply\r\nformat ascii 1.0\r\ncomment any text\r\nobj_info more\r\n"
                 "element face 1\r\nproperty float weight\r\nproperty list uint8 int32 vertex_index\r\n"
                 "property list uchar int other\r\n"
                 "element camera 2\r\nproperty float angle\r\nproperty list char float more\r\n"
                 "element vertex 3\r\nproperty uchar red\r\nproperty float z\r\nproperty double y\r\n"
                 "property list uchar int tags\r\nproperty float nx\r\nproperty float ny\r\n"
                 "property float nz\r\nproperty uchar green\r\nproperty ushort blue\r\nproperty int x\r\n"
                 "end_header\r\n"
                 "nan 3 0 1 2 0\r\n\r\n"
                 "0.5 2 1 1\r\n1 0\r\n"
                 "255 0 0 2 7 7 0 0 1 0 65535 0\r\n"
                 "51 0 0 0 0 0 2 255 0 1\r\n"
                 "0 0 1 1 9 0 1 0 0 0 0\r\n"),
        triangle + "face\n  0 normal [0, 0, 1] color 1 0 1 1\n  1 normal [0, 0, 2] color 0.200000003 1 0 1\n"
                   "  2 normal [0, 1, 0] color 0 0 0 1\n");
}

TEST(PlyReader, NeedsNoLineEndAtTheEnd) {
    EXPECT_EQ(
        meshText("ply\nformat ascii 1.0\nelement vertex 2\nproperty int x\nproperty int y\nproperty int z\n"
                 "end_header\n1 2 3\n4 5 6"),
        "point [1, 2, 3]\npoint [4, 5, 6]\n");
}

TEST(PlyReader, BinaryInBothByteOrders) {
    const std::string head =
        " 1.0\nelement vertex 3\nproperty short x\nproperty double y\nproperty uint z\n"
        "property float red\nproperty float green\nproperty float blue\nproperty float alpha\n"
        "element skipped 1\nproperty list ushort double values\nproperty char end\n"
        "element nothing 1000000000000000000\n"
        "element face 2\nproperty list int ushort vertex_indices\nend_header\n";
    for (const bool big : {false, true}) {
        Bytes file(std::string("ply\nformat ") + (big ? "binary_big_endian" : "binary_little_endian") + head,
                   big);
        for (const int vertex : {0, 1, 2}) {
            file.add<std::int16_t>(vertex == 1 ? -1 : 0)
                .add(vertex == 2 ? 0.25 : 0.0)
                .add<std::uint32_t>(3000000000U);
            file.add(0.5F).add(2.0F).add(-1.0F).add(0.25F);
        }
        file.add<std::uint16_t>(2).add(1.0).add(2.0).add<std::int8_t>(-1);
        for (const std::uint16_t third : {2, 0}) {
            file.add<std::int32_t>(3).add<std::uint16_t>(1).add<std::uint16_t>(2 - third).add(third);
        }
        std::string expected = "point [0, 0, 3e+09]\npoint [-1, 0, 3e+09]\npoint [0, 0.25, 3e+09]\n";
        for (const char* line : {"face", "  1", "  0", "  2", "face", "  1", "  2", "  0"})
            expected.append(line).append(line[0] == 'f' ? "\n" : " color 0.5 2 -1 0.25\n");
        EXPECT_EQ(meshText(file.text()), expected);
    }
}

TEST(PlyReader, TakesUvsOfVerticesOrCorners) {
    for (const auto& [u, v] :
         {std::pair("s", "t"), std::pair("u", "v"), std::pair("texture_u", "texture_v")}) {
        EXPECT_EQ(meshText(std::string(
                               "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
                               "property float z\nproperty float ") +
                           v + "\nproperty float " + u +
                           "\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
                           "0 0 0 3 0\n1 0 0 4 1\n0 1 0 5 2\n3 2 0 1\n"),
                  triangle + "face\n  2 uv 2 2 5\n  0 uv 0 0 3\n  1 uv 1 1 4\n");
    }
    // Faces 0 and 1 agree at vertices 0 and 2; face 2 is not mapped.
    EXPECT_EQ(
        meshText(
            "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
            "element face 3\nproperty list uchar float texcoord\nproperty list uchar int vertex_indices\n"
            "end_header\n0 0 0\n1 0 0\n0 1 0\n"
            "6 0 0 1 0 0 1 3 0 1 2\n6 0 1 5 5 0 0 3 2 1 0\n0 3 0 1 2\n"),
        triangle + "face\n  0 uv 0 0 0\n  1 uv 1 1 0\n  2 uv 2 0 1\n"
                   "face\n  2 uv 2 0 1\n  1 uv 3 5 5\n  0 uv 0 0 0\nface\n  0\n  1\n  2\n");
}

TEST(PlyReader, NamesThePlaceOfAFault) {
    const std::string xyz = "property float x\nproperty float y\nproperty float z\n";
    const std::string head = "ply\nformat ascii 1.0\nelement vertex 3\n" + xyz +
                             "element face 1\nproperty list char int vertex_indices\nend_header\n";
    const std::string points = head + "0 0 0\n1 0 0\n0 1 0\n"; // rows begin on line 10
    const std::string binary = "ply\nformat binary_little_endian 1.0\nelement vertex 1\n" + xyz;
    const std::string binaryFaces =
        binary + "element face 1\nproperty list int int vertex_indices\nend_header\n";
    const auto at = [](const std::string& text, std::size_t more) {
        return "a.ply: byte " + std::to_string(text.size() + more) + ": ";
    };
    const float nan = std::nanf("");
    const auto point = [&](float x) { return Bytes(binaryFaces).add(x).add(0.0F).add(0.0F); };
    const std::pair<std::string, std::string> cases[] = {
        {"", "a.ply: not a PLY file"},
        {"solid", "a.ply: not a PLY file"},
        {"ply", "a.ply:1: expected the end of the line, found the end of the file"},
        {"ply\nformat ascii 2.0\n", "a.ply:2: expected version 1.0, found '2.0'"},
        {"ply\nformat utf 1.0\n",
         "a.ply:2: expected ascii, binary_little_endian or binary_big_endian, found 'utf'"},
        {"ply\nend_header\n", "a.ply:2: the header names no format"},
        {"ply\nelement vertex -1\n", "a.ply:2: expected a count, found '-1'"},
        {"ply\nproperty int x\n", "a.ply:2: a property before any element"},
        {"ply\nelement a 1\nelement a 1\n", "a.ply:3: a second element a"},
        {"ply\nelement a 1\nproperty quad x\n", "a.ply:3: expected a type, found 'quad'"},
        {"ply\nelement a 1\nproperty list float int x\n", "a.ply:3: expected an integer type, found 'float'"},
        {"ply\nformat ascii 1.0\nend_header\n", "a.ply:4: there is no element vertex"},
        {"ply\nformat ascii 1.0\nelement vertex 0\nproperty float x\nend_header\n",
         "a.ply:6: element vertex has no property y"},
        {"ply\nformat ascii 1.0\nelement vertex 9000000000000000000\n" + xyz + "end_header\n",
         "a.ply:8: 9000000000000000000 of element vertex do not fit into the file"},
        {head + "0 0 0\n1 0\n0 1 0\n3 0 1 2\n", "a.ply:11: expected a number, found the end of the line"},
        {head + "0 0 0\n1 0 0 0\n0 1 0\n3 0 1 2\n", "a.ply:11: expected the end of the line, found '0'"},
        {head + "0 0 0\n1 0 nan\n0 1 0\n3 0 1 2\n", "a.ply:11: expected a number, found 'nan'"},
        {head + "0 0 0\n1 0 -1e40\n0 1 0\n3 0 1 2\n", "a.ply:11: number out of range"},
        {points, "a.ply:13: 1 of element face do not fit into the file"},
        {points + "3 0 1 3\n", "a.ply:13: vertex 3 does not exist, the file has 3"},
        {points + "3 0 -1 1\n", "a.ply:13: vertex -1 does not exist, the file has 3"},
        {points + "3 0 1 1.5\n", "a.ply:13: expected an integer, found '1.5'"},
        {points + "-3 0 1 2\n", "a.ply:13: a list of -3 values does not fit into the file"},
        {points + "3 0 1\n", "a.ply:13: expected an integer, found the end of the line"},
        {points + "3 0 1 2\n3 0 1 2\n", "a.ply:14: more data than was announced"},
        {point(nan).add(0).text(), at(binaryFaces, 0) + "not a number"},
        {point(1).add(2000000000).text(),
         at(binaryFaces, 12) + "a list of 2000000000 values does not fit into the file"},
        {point(1).add(1).add(-7).text(), at(binaryFaces, 16) + "vertex -7 does not exist, the file has 1"},
        {point(1).add(2).add(0).text(),
         at(binaryFaces, 12) + "a list of 2 values does not fit into the file"},
        {point(1).add(0).add('x').text(), at(binaryFaces, 16) + "more data than was announced"},
    };
    for (const auto& [text, error] : cases)
        EXPECT_EQ(meshText(text), error) << text;
}

class PlyFiles : public ::testing::TestWithParam<PlyEncoding> {
  protected:
    std::string afterAFile(const MeshWriteOptions& options = {.normals = false}) const {
        const Outcome written = writePly(folder.path("a.ply"), mesh, GetParam(), options);
        EXPECT_TRUE(written) << written.error;
        const auto read = readPly(folder.path("a.ply"));
        return read ? textOf(*read) : read.error();
    }
    bool wrote(std::string_view line) const {
        return folder.load("a.ply").find("\n" + std::string(line) + "\n") != std::string::npos;
    }

    const TestFolder folder;
    geom::Mesh mesh = plainMesh();
    const std::vector<int> all{0, 1, 2, 3, 4, 5, 6, 7, 8};
};

TEST_P(PlyFiles, RoundTrip) {
    EXPECT_EQ(afterAFile(), textOf(mesh));
    ASSERT_TRUE(mesh.setVertexColors(std::vector<MColor>(9, MColor(0.1F, 2, -3, 0.5F)), all));
    EXPECT_EQ(afterAFile(), textOf(mesh));
    // One UV a vertex, the loose one aside.
    ASSERT_TRUE(mesh.setUvs(0, {0, 1, 2, 3, 4, 5, 6, 7}, {0, 0.1F, 0, 0, 0, 0, 0, 0}));
    ASSERT_TRUE(mesh.assignUvs(0, std::vector<int>{3, 4, 5}, mesh.topology().faceVertices()));
    EXPECT_EQ(afterAFile(), textOf(mesh));
    EXPECT_TRUE(wrote("property float s"));
    // A seam at vertex 1 and an unmapped face. Ids in the order in which corners meet their UVs.
    mesh.clearUvs(0);
    ASSERT_TRUE(mesh.setUvs(0, {0, 1, 0, 0.5F, 4, 5}, {0, 0, 1, -2, 1, 1}));
    ASSERT_TRUE(mesh.assignUvs(0, std::vector<int>{3, 4, 0}, std::vector<int>{0, 1, 2, 0, 3, 4, 5}));
    EXPECT_EQ(afterAFile(), textOf(mesh));
    EXPECT_TRUE(wrote("property list uchar float texcoord"));
}

TEST_P(PlyFiles, NormalsWhenEachVertexHasOne) {
    ASSERT_TRUE(mesh.setVertexNormals(std::vector<MFloatVector>(9, MFloatVector(0, 0.6F, 2)), all));
    EXPECT_EQ(afterAFile({}), textOf(mesh));
    mesh.lockCornerNormal(2, MFloatVector(1, 0, 0));
    afterAFile({});
    EXPECT_FALSE(wrote("property float nx"));
}

TEST_P(PlyFiles, ColoursAsBytesWithinTheirRange) {
    ASSERT_TRUE(mesh.setVertexColors(std::vector<MColor>(9, MColor(0, 1, 0.3F, 0.499F)), all));
    afterAFile();
    EXPECT_TRUE(wrote("property uchar alpha"));
    const auto read = readPly(folder.path("a.ply"));
    ASSERT_TRUE(read) << read.error();
    // 0.3 * 255 = 76.5, 0.3F being a little above; 0.499 * 255 = 127.2
    EXPECT_EQ(read->cornerColor(0, 0), MColor(0, 1, 77 / 255.0F, 127 / 255.0F));
}

TEST_P(PlyFiles, FacesOfManyCorners) {
    std::vector<MFloatVector> points;
    std::vector<int> loop;
    for (int i = 0; i < 300; ++i) {
        points.emplace_back(static_cast<float>(i), static_cast<float>(i * i), 0.0F);
        loop.push_back(i);
    }
    mesh = meshOf(points, {300}, loop);
    EXPECT_EQ(afterAFile(), textOf(mesh));
}

TEST_P(PlyFiles, ReadingSurvivesAnything) {
    ASSERT_TRUE(mesh.setUvs(0, {0, 1, 0, 0.5F, 4, 5}, {0, 0, 1, -2, 1, 1}));
    ASSERT_TRUE(mesh.assignUvs(0, std::vector<int>{3, 4, 0}, std::vector<int>{0, 1, 2, 0, 3, 4, 5}));
    ASSERT_TRUE(mesh.setVertexColors(std::vector<MColor>(9, MColor(0, 1, 0.5F)), all));
    afterAFile();
    const std::string good = folder.load("a.ply");
    // Without its last byte the text file has all but a line end.
    const std::size_t least = good.size() - (GetParam() == PlyEncoding::Ascii ? 1 : 0);
    for (std::size_t i = 0; i < good.size(); ++i) {
        const std::vector<char> part(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(i));
        EXPECT_EQ(static_cast<bool>(parsePly({part.data(), part.size()}, "a.ply")), i >= least) << i;
        for (const char c : {'\0', '\n', '9', '-', '\x7F', '\xFF'}) {
            std::string bad = good;
            bad[i] = c;
            const std::vector<char> bytes(bad.begin(), bad.end());
            const auto read = parsePly({bytes.data(), bytes.size()}, "a.ply");
            if (read) {
                EXPECT_TRUE(read->checkInvariants());
            } else {
                EXPECT_TRUE(read.error().starts_with("a.ply:")) << read.error();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Encodings, PlyFiles, ::testing::Values(PlyEncoding::Binary, PlyEncoding::Ascii),
                         [](const auto& tested) {
                             return tested.param == PlyEncoding::Ascii ? "Ascii" : "Binary";
                         });

} // namespace
} // namespace vesk::formats
