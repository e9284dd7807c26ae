#include "host/scene/formats/file_buffer.h"
#include "host/scene/formats/mesh_files.h"
#include "host/scene/formats/mesh_layers.h"
#include "host/scene/formats/numbers.h"

#include <limits>

namespace vesk::formats {

namespace {

/// The indices of one kind (points, UVs or normals) that faces name. They may point ahead, so that the
/// highest is looked at when all is read.
struct IndexRange {
    const char* what;
    int highest = -1;
    const char* place = nullptr;
};

class ObjReader {
  public:
    ObjReader(std::string_view text, const std::filesystem::path& name)
        : text_(text), name_(name), cursor_(text) {}

    Result<geom::Mesh> read();

  private:
    bool statement();
    bool vertexStatement();
    bool point();
    bool uv();
    bool normal();
    bool face();
    bool corner();
    bool index(IndexRange& range, std::size_t count, int& id);
    bool number(float& value);
    bool otherStatement();
    bool checkRange(const IndexRange& range, std::size_t count);

    void skipGap();
    void skipStatement();
    bool atWordEnd() { return cursor_.atEnd() || isBlank(cursor_.peek()) || cursor_.peek() == '\\'; }
    bool atLineEnd() { return cursor_.atEnd() || cursor_.peek() == '\n'; }
    bool fail(const std::string& what) { return fail(what, cursor_.at()); }
    bool fail(const std::string& what, const char* place);
    bool failExpecting(const char* what);

    std::string_view text_;
    const std::filesystem::path& name_;
    TextCursor cursor_;
    MeshLayers layers_;
    std::vector<int> vertexColor_; ///< per point its colour, -1 none; grows once a colour is there
    IndexRange pointRange_{"point"}, uvRange_{"texture vertex"}, normalRange_{"normal"};
    const char* unknown_ = nullptr; ///< the first statement that is none of the format
    std::string error_;
};

/// Statements of the format that make no polygons.
bool isPassedOver(std::string_view word) {
    constexpr std::string_view words[] = {
        "g",     "o",          "s",         "mg",       "usemtl", "mtllib", "usemap", "maplib",
        "l",     "p",          "vp",        "cstype",   "deg",    "bmat",   "step",   "curv",
        "curv2", "surf",       "parm",      "trim",     "hole",   "scrv",   "sp",     "end",
        "con",   "bevel",      "c_interp",  "d_interp", "lod",    "ctech",  "stech",  "call",
        "csh",   "shadow_obj", "trace_obj", "bzp",      "bsp",    "cdc",    "cdp",    "res"};
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

bool isNamePart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

Result<geom::Mesh> ObjReader::read() {
    if (text_.empty()) return Outcome::fail(name_.string() + ": empty file");
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text_.starts_with(byteOrderMark)) cursor_ = TextCursor(text_.substr(byteOrderMark.size()));
    while (!cursor_.atEnd()) {
        if (!statement()) return Outcome::fail(error_);
    }
    if (layers_.points.empty() && unknown_) {
        static_cast<void>(fail("unknown statement, and no points in the whole file", unknown_));
        return Outcome::fail(error_);
    }
    if (!checkRange(pointRange_, layers_.points.size()) || !checkRange(uvRange_, layers_.u.size()) ||
        !checkRange(normalRange_, layers_.normals.size()))
        return Outcome::fail(error_);

    if (uvRange_.highest < 0) layers_.uvIds.clear();
    if (normalRange_.highest < 0) layers_.normalIds.clear();
    if (!layers_.colors.empty()) {
        vertexColor_.resize(layers_.points.size(), -1);
        for (const int vertex : layers_.connects)
            layers_.colorIds.push_back(vertexColor_[static_cast<std::size_t>(vertex)]);
    }
    auto mesh = makeMesh(std::move(layers_));
    if (!mesh) return Outcome::fail(name_.string() + ": " + mesh.error());
    return mesh;
}

bool ObjReader::statement() {
    skipGap();
    switch (cursor_.peek()) {
    case '\n': cursor_.step(); return true;
    case '#': cursor_.skipLine(); return true;
    case 'v': return vertexStatement();
    case 'f': {
        const TextCursor start = cursor_;
        cursor_.step();
        if (!cursor_.atEnd() && isBlank(cursor_.peek())) return face();
        cursor_ = start;
        return otherStatement();
    }
    default: return cursor_.atEnd() || otherStatement();
    }
}

bool ObjReader::vertexStatement() {
    const TextCursor start = cursor_;
    const std::string_view word = cursor_.word();
    if (word == "v") return point();
    if (word == "vt") return uv();
    if (word == "vn") return normal();
    cursor_ = start;
    return otherStatement();
}

bool ObjReader::point() {
    constexpr std::size_t most = 7;
    float values[most] = {};
    std::size_t count = 0;
    for (skipGap(); !atLineEnd(); skipGap()) {
        if (count == most) return failExpecting("the end of the line");
        if (!number(values[count++])) return false;
    }
    if (count < 3) return failExpecting("a number");
    if (count == 5) return failExpecting("a colour of three or four numbers");
    layers_.points.emplace_back(values[0], values[1], values[2]);
    if (count >= 6) {
        vertexColor_.resize(layers_.points.size() - 1, -1);
        vertexColor_.push_back(static_cast<int>(layers_.colors.size()));
        layers_.colors.emplace_back(values[3], values[4], values[5], count == most ? values[6] : 1.0F);
    }
    return true;
}

bool ObjReader::uv() {
    float u = 0.0F, v = 0.0F, depth = 0.0F;
    skipGap();
    if (!number(u)) return false;
    skipGap();
    if (!atLineEnd() && !number(v)) return false;
    skipGap();
    if (!atLineEnd() && !number(depth)) return false;
    skipGap();
    if (!atLineEnd()) return failExpecting("the end of the line");
    layers_.u.push_back(u);
    layers_.v.push_back(v);
    return true;
}

bool ObjReader::normal() {
    MFloatVector normal;
    for (unsigned i = 0; i < 3; ++i) {
        skipGap();
        if (!number(normal[i])) return false;
    }
    skipGap();
    if (!atLineEnd()) return failExpecting("the end of the line");
    layers_.normals.push_back(normal);
    return true;
}

bool ObjReader::face() {
    int corners = 0;
    for (skipGap(); !atLineEnd(); skipGap()) {
        if (!corner()) return false;
        ++corners;
    }
    if (corners == 0) return failExpecting("a point index");
    layers_.counts.push_back(corners);
    return true;
}

/// v, v/vt, v//vn or v/vt/vn; slashes with nothing behind them are let pass.
bool ObjReader::corner() {
    int point = -1, uv = -1, normal = -1;
    if (layers_.connects.size() == std::numeric_limits<int>::max()) return fail("too many face corners");
    if (!index(pointRange_, layers_.points.size(), point)) return false;
    if (cursor_.take('/')) {
        if (cursor_.peek() != '/' && !atWordEnd() && !index(uvRange_, layers_.u.size(), uv)) return false;
        if (cursor_.take('/') && !atWordEnd() && !index(normalRange_, layers_.normals.size(), normal))
            return false;
    }
    if (!atWordEnd()) return failExpecting("a blank after the corner");
    layers_.connects.push_back(point);
    layers_.uvIds.push_back(uv);
    layers_.normalIds.push_back(normal);
    return true;
}

/// Counted from 1, or backwards from what is there so far, -1 being the last.
bool ObjReader::index(IndexRange& range, std::size_t count, int& id) {
    const char* const place = cursor_.at();
    std::int64_t value = 0;
    if (!cursor_.integer(value)) return failExpecting("an index");
    const auto present = static_cast<std::int64_t>(count);
    if (value == 0 || value < -present || value > std::numeric_limits<int>::max())
        return fail(std::string(range.what) + " " + std::to_string(value) + " does not exist", place);
    id = static_cast<int>(value > 0 ? value - 1 : present + value);
    if (id > range.highest) {
        range.highest = id;
        range.place = place;
    }
    return true;
}

bool ObjReader::checkRange(const IndexRange& range, std::size_t count) {
    if (count > std::numeric_limits<int>::max()) return fail(std::string("too many ") + range.what + "s");
    if (range.highest < static_cast<int>(count)) return true;
    return fail(std::string(range.what) + " " + std::to_string(std::int64_t{range.highest} + 1) +
                    " does not exist, the file has " + std::to_string(count),
                range.place);
}

bool ObjReader::number(float& value) {
    const TextCursor start = cursor_;
    if (!cursor_.number(value) || !atWordEnd()) {
        cursor_ = start;
        return failExpecting("a number");
    }
    if (std::isinf(value)) return fail("number out of range", start.at());
    return true;
}

bool ObjReader::otherStatement() {
    const char* const place = cursor_.at();
    const std::string_view word = cursor_.word();
    if (!std::all_of(word.begin(), word.end(), isNamePart)) return fail("not an OBJ statement", place);
    if (!unknown_ && !isPassedOver(word)) unknown_ = place;
    skipStatement();
    return true;
}

/// To the next word of the statement. A backslash at the end of a line carries it on.
void ObjReader::skipGap() {
    for (;;) {
        cursor_.skipBlanksInLine();
        if (cursor_.peek() != '\\') return;
        TextCursor next = cursor_;
        next.step();
        next.skipBlanksInLine();
        if (!next.take('\n')) return;
        cursor_ = next;
    }
}

void ObjReader::skipStatement() {
    for (;;) {
        const char* const start = cursor_.at();
        cursor_.skipLine();
        const char* last = cursor_.at();
        while (last != start && isBlank(last[-1]))
            --last;
        if (last == start || last[-1] != '\\') return;
    }
}

bool ObjReader::fail(const std::string& what, const char* place) {
    error_ = name_.string() + ":" + std::to_string(lineOf(text_, place)) + ": " + what;
    return false;
}

bool ObjReader::failExpecting(const char* what) {
    return fail(std::string("expected ") + what + ", found " + foundAt(cursor_));
}

} // namespace

Result<geom::Mesh> parseObj(std::string_view text, const std::filesystem::path& name) {
    return ObjReader(text, name).read();
}

Result<geom::Mesh> readObj(const std::filesystem::path& path) {
    const auto file = FileBuffer::open(path);
    if (!file) return Outcome::fail(file.error());
    return parseObj(file->text(), path);
}

} // namespace vesk::formats
