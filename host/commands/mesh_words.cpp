#include "host/commands/mesh_words.h"

#include "host/commands/data_words.h"
#include "host/commands/poly_faces_words.h"
#include "host/data/mesh_data.h"
#include "host/data/packed_data.h"
#include "host/nodes/mesh_file.h"

namespace vesk::commands {

namespace {

/// A count and that many tuples of `each` numbers.
Outcome readSection(Words& words, std::size_t each, std::string_view what, std::vector<float>& to) {
    const auto count = readCount(words, each, what);
    if (!count) return Outcome::fail(count.error());
    to.resize(*count * each);
    const std::size_t read = words.numbers(to.data(), to.size());
    return read < to.size() ? badElement(read, words) : Outcome{};
}

Outcome readEdges(Words& words, std::vector<int>& edges) {
    const auto count = readCount(words, 3, "edges");
    if (!count) return Outcome::fail(count.error());
    edges.resize(*count * 3);
    for (std::size_t i = 0; i < edges.size(); i += 3) {
        const std::size_t read = words.numbers(edges.data() + i, 2);
        if (read < 2) return badElement(i + read, words);
        const std::string_view kind = words.text();
        if (kind != "hard" && kind != "smooth") {
            return Outcome::fail("An edge is 'hard' or 'smooth', not '" + std::string(kind) + "'.");
        }
        edges[i + 2] = kind == "smooth" ? 1 : 0;
    }
    return {};
}

std::size_t cornerCount(const std::vector<int>& codes) {
    std::size_t corners = 0;
    for (std::size_t at = 0; at < codes.size();) {
        const std::size_t head = PolyFacesData::hasSet(codes[at]) ? 2 : 1;
        const auto ids = static_cast<std::size_t>(codes[at + head]);
        if (codes[at] == PolyFacesData::Face) corners += ids;
        at += head + 1 + ids;
    }
    return corners;
}

bool isSection(std::string_view word) { return word == "v" || word == "vn" || word == "vt" || word == "e"; }

} // namespace

Result<Ref<Data>> readMesh(Words& words) {
    nodes::MeshFileArrays arrays;
    std::vector<float> normals, uvs;
    std::string word;
    while (!words.atEnd()) {
        word = words.text();
        if (!isSection(word)) break;
        const auto outcome = word == "v"    ? readSection(words, 3, "points", arrays.points)
                             : word == "vn" ? readSection(words, 3, "normals", normals)
                             : word == "vt" ? readSection(words, 2, "texture coordinates", uvs)
                                            : readEdges(words, arrays.edges);
        if (!outcome) return outcome;
        word.clear();
    }
    if (!word.empty()) {
        const auto count = readFaceRecords(words, arrays.faceCodes, word);
        if (!count) return Outcome::fail(count.error());
        arrays.faceCount = static_cast<int>(*count);
    }
    if (normals.size() == 3 * cornerCount(arrays.faceCodes)) arrays.normals = std::move(normals);
    if (!uvs.empty()) arrays.uvSets.push_back({0, "map1", std::move(uvs)});
    auto made = nodes::meshFromFileArrays(std::move(arrays));
    if (!made) return Outcome::fail(made.error());
    return Ref<Data>(makeRef<MeshData>(std::move(made->mesh)));
}

} // namespace vesk::commands
