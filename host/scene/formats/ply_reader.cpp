#include "host/scene/formats/file_buffer.h"
#include "host/scene/formats/mesh_files.h"
#include "host/scene/formats/mesh_layers.h"
#include "host/scene/formats/ply_header.h"
#include "host/scene/formats/ply_source.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace vesk::formats {

namespace {

constexpr std::size_t largestCount = std::numeric_limits<int>::max();

/// The layers of vertices. `needed` components make one; `width` is what an entry holds in memory.
enum Layer : std::size_t { Points, Normals, Uvs, Colors };
struct LayerShape {
    std::size_t needed, width;
};
constexpr std::array<LayerShape, 4> layerShapes{{{3, 3}, {3, 3}, {2, 2}, {3, 4}}};

struct Role {
    std::string_view name;
    Layer layer;
    std::size_t component;
};
constexpr Role roles[] = {{"x", Points, 0},
                          {"y", Points, 1},
                          {"z", Points, 2},
                          {"nx", Normals, 0},
                          {"ny", Normals, 1},
                          {"nz", Normals, 2},
                          {"s", Uvs, 0},
                          {"t", Uvs, 1},
                          {"u", Uvs, 0},
                          {"v", Uvs, 1},
                          {"texture_u", Uvs, 0},
                          {"texture_v", Uvs, 1},
                          {"red", Colors, 0},
                          {"green", Colors, 1},
                          {"blue", Colors, 2},
                          {"alpha", Colors, 3},
                          {"diffuse_red", Colors, 0},
                          {"diffuse_green", Colors, 1},
                          {"diffuse_blue", Colors, 2}};

/// The property that fills each component of a layer, -1 for none.
std::array<int, 4> propertiesOf(const PlyElement& element, Layer layer) {
    std::array<int, 4> found{-1, -1, -1, -1};
    for (const Role& role : roles) {
        if (role.layer == layer && found[role.component] < 0)
            found[role.component] = element.find(role.name, false);
    }
    return found;
}

struct CornerUv {
    float u = 0.0F, v = 0.0F;
    friend bool operator==(const CornerUv&, const CornerUv&) = default;
};

/// Where a property's numbers go; nowhere without `to`.
struct Target {
    float* to = nullptr;
    std::size_t stride = 0; ///< floats from one row's to the next
    float divisor = 1.0F;
};

/// Reads the rows that the header announces, from either source.
template <class Source>
class BodyReader {
  public:
    BodyReader(const PlyHeader& header, Source source) : header_(header), source_(std::move(source)) {}

    bool read();
    /// After `read` went well.
    MeshLayers takeLayers();

    const std::string& problem() const { return source_.problem; }
    const char* problemPlace() const { return problemPlace_ ? problemPlace_ : source_.place(); }

  private:
    bool checkCount(const PlyElement& element);
    bool vertices(const PlyElement& element);
    template <class T>
    void aim(const PlyElement& element, Layer layer, std::vector<T>& to);
    bool faces(const PlyElement& element);
    bool corners(const PlyProperty& property);
    bool cornerUvs(const PlyProperty& property);
    bool endFace(bool hasUvs);
    bool skipRows(const PlyElement& element);
    bool skip(const PlyProperty& property);
    bool number(PlyType type, float& value);
    bool listLength(const PlyProperty& property, std::int64_t& length);
    void mergeCornerUvs();
    bool fail(const std::string& problem) { return fail(problem, source_.place()); }
    bool fail(const std::string& problem, const char* place) {
        source_.problem = problem;
        problemPlace_ = place;
        return false;
    }

    const PlyHeader& header_;
    Source source_;
    const char* problemPlace_ = nullptr;
    std::size_t vertexCount_ = 0;
    std::vector<Target> targets_; ///< per property of vertices
    std::vector<MFloatVector> points_, normals_;
    std::vector<CornerUv> uvs_; ///< per vertex
    std::vector<MColor> colors_;
    std::vector<int> counts_, connects_;
    std::vector<CornerUv> cornerUvs_; ///< of mapped corners
    std::vector<int> cornerUvIds_;    ///< per corner, -1 unmapped; empty when no face has UVs
    std::vector<float> faceUvs_;      ///< of the face at hand
};

template <class Source>
bool BodyReader<Source>::read() {
    const PlyElement* const vertex = header_.find("vertex");
    if (!vertex) return fail("there is no element vertex");
    vertexCount_ = vertex->count;
    for (const PlyElement& element : header_.elements) {
        if (!checkCount(element)) return false;
        const bool isRead = &element == vertex       ? vertices(element)
                            : element.name == "face" ? faces(element)
                                                     : skipRows(element);
        if (!isRead) return false;
    }
    const std::string_view rest = source_.rest();
    return std::all_of(rest.begin(), rest.end(), isBlank) || fail("more data than was announced");
}

/// Before anything is allocated.
template <class Source>
bool BodyReader<Source>::checkCount(const PlyElement& element) {
    if (element.properties.empty() || element.count <= source_.rowRoom(element)) return true;
    return fail(std::to_string(element.count) + " of element " + element.name + " do not fit into the file");
}

template <class Source>
bool BodyReader<Source>::vertices(const PlyElement& element) {
    for (const std::string_view name : {"x", "y", "z"}) {
        if (element.find(name, false) < 0) return fail("element vertex has no property " + std::string(name));
    }
    if (element.count > largestCount) return fail("too many vertices");
    targets_.resize(element.properties.size());
    aim(element, Points, points_);
    aim(element, Normals, normals_);
    aim(element, Uvs, uvs_);
    aim(element, Colors, colors_);
    for (std::size_t row = 0; row < element.count; ++row) {
        if (!source_.beginRow()) return false;
        for (std::size_t i = 0; i < targets_.size(); ++i) {
            const Target& target = targets_[i];
            float value = 0.0F;
            if (!target.to) {
                if (!skip(element.properties[i])) return false;
            } else if (!number(element.properties[i].type, value)) {
                return false;
            } else {
                target.to[row * target.stride] = value / target.divisor;
            }
        }
        if (!source_.endRow()) return false;
    }
    return true;
}

/// Makes room for a layer that the vertices have in full and leads its properties there.
template <class Source>
template <class T>
void BodyReader<Source>::aim(const PlyElement& element, Layer layer, std::vector<T>& to) {
    const auto [needed, width] = layerShapes[layer];
    const std::array<int, 4> properties = propertiesOf(element, layer);
    const auto neededEnd = properties.begin() + static_cast<std::ptrdiff_t>(needed);
    if (element.count == 0 || std::find(properties.begin(), neededEnd, -1) != neededEnd) return;
    static_assert(sizeof(T) % sizeof(float) == 0);
    to.resize(element.count);
    for (std::size_t i = 0; i < width; ++i) {
        if (properties[i] < 0) continue;
        const auto property = static_cast<std::size_t>(properties[i]);
        const double scale = layer == Colors ? plyLargest(element.properties[property].type) : 1.0;
        targets_[property] = {reinterpret_cast<float*>(to.data()) + i, width, static_cast<float>(scale)};
    }
}

template <class Source>
bool BodyReader<Source>::faces(const PlyElement& element) {
    const int plural = element.find("vertex_indices", true);
    const int indices = plural >= 0 ? plural : element.find("vertex_index", true);
    const int uvs = element.find("texcoord", true);
    if (element.count > 0 && indices < 0) return fail("element face has no list vertex_indices");
    if (element.count > largestCount) return fail("too many faces");
    for (std::size_t row = 0; row < element.count; ++row) {
        if (!source_.beginRow()) return false;
        for (std::size_t i = 0; i < element.properties.size(); ++i) {
            const PlyProperty& property = element.properties[i];
            const bool isRead = static_cast<int>(i) == indices ? corners(property)
                                : static_cast<int>(i) == uvs   ? cornerUvs(property)
                                                               : skip(property);
            if (!isRead) return false;
        }
        if (!endFace(uvs >= 0) || !source_.endRow()) return false;
    }
    return true;
}

template <class Source>
bool BodyReader<Source>::corners(const PlyProperty& property) {
    std::int64_t length = 0;
    if (!listLength(property, length)) return false;
    if (connects_.size() + static_cast<std::size_t>(length) > largestCount)
        return fail("too many face corners");
    for (std::int64_t i = 0; i < length; ++i) {
        const char* const place = source_.place();
        std::int64_t vertex = 0;
        if (!source_.integer(property.type, vertex)) return false;
        if (vertex < 0 || static_cast<std::size_t>(vertex) >= vertexCount_) {
            return fail("vertex " + std::to_string(vertex) + " does not exist, the file has " +
                            std::to_string(vertexCount_),
                        place);
        }
        connects_.push_back(static_cast<int>(vertex));
    }
    counts_.push_back(static_cast<int>(length));
    return true;
}

template <class Source>
bool BodyReader<Source>::cornerUvs(const PlyProperty& property) {
    std::int64_t length = 0;
    if (!listLength(property, length)) return false;
    faceUvs_.resize(static_cast<std::size_t>(length));
    for (float& value : faceUvs_) {
        if (!number(property.type, value)) return false;
    }
    return true;
}

template <class Source>
bool BodyReader<Source>::endFace(bool hasUvs) {
    if (!hasUvs) return true;
    const auto corners = static_cast<std::size_t>(counts_.back());
    if (!faceUvs_.empty() && faceUvs_.size() != 2 * corners) {
        return fail("texcoord has " + std::to_string(faceUvs_.size()) + " numbers for a face of " +
                    std::to_string(corners) + " corners");
    }
    if (faceUvs_.empty()) cornerUvIds_.resize(connects_.size(), -1);
    for (std::size_t i = 0; i < faceUvs_.size(); i += 2) {
        cornerUvIds_.push_back(static_cast<int>(cornerUvs_.size()));
        cornerUvs_.push_back({faceUvs_[i], faceUvs_[i + 1]});
    }
    return true;
}

template <class Source>
bool BodyReader<Source>::skipRows(const PlyElement& element) {
    if (element.name == "tristrips" && element.count > 0) return fail("triangle strips are not supported");
    if (element.properties.empty()) return true;
    for (std::size_t row = 0; row < element.count; ++row) {
        if (!source_.beginRow()) return false;
        for (const PlyProperty& property : element.properties) {
            if (!skip(property)) return false;
        }
        if (!source_.endRow()) return false;
    }
    return true;
}

template <class Source>
bool BodyReader<Source>::skip(const PlyProperty& property) {
    std::int64_t count = 1;
    if (property.isList && !listLength(property, count)) return false;
    return source_.skip(property.type, count);
}

template <class Source>
bool BodyReader<Source>::number(PlyType type, float& value) {
    const char* const place = source_.place();
    if (!source_.real(type, value)) return false;
    return std::isfinite(value) || fail(std::isnan(value) ? "not a number" : "number out of range", place);
}

template <class Source>
bool BodyReader<Source>::listLength(const PlyProperty& property, std::int64_t& length) {
    const char* const place = source_.place();
    if (!source_.integer(property.countType, length)) return false;
    if (length >= 0 && length <= source_.room(property.type)) return true;
    return fail("a list of " + std::to_string(length) + " values does not fit into the file", place);
}

/// Corners at one vertex with equal UVs share them.
template <class Source>
void BodyReader<Source>::mergeCornerUvs() {
    if (cornerUvs_.empty()) return;
    ValueLister<CornerUv> lister(vertexCount_);
    for (std::size_t corner = 0; corner < cornerUvIds_.size(); ++corner) {
        int& id = cornerUvIds_[corner];
        if (id >= 0) id = lister.idOf(connects_[corner], cornerUvs_[static_cast<std::size_t>(id)]);
    }
    cornerUvs_ = std::move(lister.values);
}

template <class Source>
MeshLayers BodyReader<Source>::takeLayers() {
    MeshLayers layers;
    mergeCornerUvs();
    const bool perCorner = !cornerUvs_.empty();
    for (const CornerUv& uv : perCorner ? cornerUvs_ : uvs_) {
        layers.u.push_back(uv.u);
        layers.v.push_back(uv.v);
    }
    if (perCorner) {
        layers.uvIds = std::move(cornerUvIds_);
    } else if (!uvs_.empty()) {
        layers.uvIds = connects_;
    }
    if (!normals_.empty()) layers.normalIds = connects_;
    if (!colors_.empty()) layers.colorIds = connects_;
    layers.normals = std::move(normals_);
    layers.colors = std::move(colors_);
    layers.points = std::move(points_);
    layers.counts = std::move(counts_);
    layers.connects = std::move(connects_);
    return layers;
}

template <class Source>
Result<geom::Mesh> readBody(std::string_view bytes, const PlyHeader& header, Source source,
                            const std::filesystem::path& name) {
    BodyReader<Source> reader(header, std::move(source));
    if (!reader.read()) {
        const std::string place = header.format == PlyFormat::Ascii
                                      ? ":" + std::to_string(lineOf(bytes, reader.problemPlace()))
                                      : ": byte " + std::to_string(reader.problemPlace() - bytes.data());
        return Outcome::fail(name.string() + place + ": " + reader.problem());
    }
    auto mesh = makeMesh(reader.takeLayers());
    if (!mesh) return Outcome::fail(name.string() + ": " + mesh.error());
    return mesh;
}

} // namespace

Result<geom::Mesh> parsePly(std::string_view bytes, const std::filesystem::path& name) {
    const auto header = parsePlyHeader(bytes, name);
    if (!header) return Outcome::fail(header.error());
    const std::string_view body = bytes.substr(header->size);
    if (header->format == PlyFormat::Ascii) return readBody(bytes, *header, PlyTextSource(body), name);
    const bool bigEndian = header->format == PlyFormat::BinaryBig;
    return readBody(bytes, *header, PlyByteSource(body, bigEndian), name);
}

Result<geom::Mesh> readPly(const std::filesystem::path& path) {
    const auto file = FileBuffer::open(path);
    if (!file) return Outcome::fail(file.error());
    return parsePly(file->text(), path);
}

} // namespace vesk::formats
