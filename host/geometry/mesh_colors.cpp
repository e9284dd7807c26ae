// Colour sets of a mesh.

#include "host/geometry/mesh.h"
#include "host/geometry/mesh_layers.h"

namespace vesk::geom {

namespace {

Outcome checkColorSet(const ColorSet& set, int corners) {
    return checkLayerIds("colour set " + set.name, set.ids, corners, set.colors.size());
}

/// Throws out entries that no corner has; the others keep their order.
void dropUnused(ColorSet& set) {
    std::vector<int> newId(set.colors.size(), -1);
    for (const int id : set.ids) {
        if (id >= 0) newId[id] = 0;
    }
    int count = 0;
    for (std::size_t i = 0; i < newId.size(); ++i) {
        if (newId[i] < 0) continue;
        set.colors[count] = set.colors[i];
        newId[i] = count++;
    }
    set.colors.resize(static_cast<std::size_t>(count));
    for (int& id : set.ids)
        id = id < 0 ? -1 : newId[id];
}

/// Colours are appended and leave behind those that they replace. After a large change, or when most of the
/// list must be left over, throws these out; rarely enough that colours set one by one cost little each.
void tidyColors(ColorSet& set, std::size_t appended) {
    if (appended * 4 >= set.ids.size() || set.colors.size() > 2 * set.ids.size()) dropUnused(set);
}

/// Sum of colours and how many there were.
struct ColorMean {
    double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
    int count = 0;

    void add(const MColor& c) { r += c.r, g += c.g, b += c.b, a += c.a, ++count; }
    MColor mean(const MColor& unset) const {
        if (count == 0) return unset;
        const auto part = [this](double sum) { return static_cast<float>(sum / count); };
        return {part(r), part(g), part(b), part(a)};
    }
};

Outcome checkTargets(const char* kind, std::size_t colors, std::span<const int> ids, int limit) {
    if (colors != ids.size())
        return Outcome::fail(std::to_string(colors) + " colours given for " + std::to_string(ids.size()) +
                             " ids");
    for (const int id : ids) {
        if (id < 0 || id >= limit)
            return Outcome::fail(std::string(kind) + " " + std::to_string(id) + " does not exist");
    }
    return {};
}

} // namespace

int Mesh::findColorSet(std::string_view name) const {
    if (name.empty()) return currentColorSet_;
    for (int set = 0; set < colorSetCount(); ++set) {
        if (colorSets_[set]->name == name) return set;
    }
    return -1;
}

int Mesh::addColorSet(std::string name) {
    if (const int present = name.empty() ? -1 : findColorSet(name); present >= 0) return present;
    ColorSet set;
    set.name = std::move(name);
    colorSets_.emplace_back(std::move(set));
    if (currentColorSet_ < 0) currentColorSet_ = 0;
    return colorSetCount() - 1;
}

Outcome Mesh::setColorSets(std::vector<ColorSet> sets, int current) {
    const int count = static_cast<int>(sets.size());
    if (current < -1 || current >= count || (current < 0) != sets.empty())
        return Outcome::fail("colour set " + std::to_string(current) + " cannot be current, there are " +
                             std::to_string(count));
    for (const ColorSet& set : sets) {
        if (Outcome outcome = checkColorSet(set, cornerCount()); !outcome) return outcome;
    }
    colorSets_.clear();
    for (ColorSet& set : sets)
        colorSets_.emplace_back(std::move(set));
    currentColorSet_ = current;
    return {};
}

Outcome Mesh::checkColorSets() const {
    if (currentColorSet_ >= colorSetCount() || (currentColorSet_ < 0) != colorSets_.empty())
        return Outcome::fail("the current colour set does not exist");
    for (const auto& set : colorSets_) {
        if (Outcome outcome = checkColorSet(*set, cornerCount()); !outcome) return outcome;
    }
    return {};
}

ColorSet& Mesh::colorsForWriting() {
    if (currentColorSet_ < 0) addColorSet("colorSet1");
    ColorSet& set = colorSets_[currentColorSet_].write();
    set.ids.resize(static_cast<std::size_t>(cornerCount()), -1);
    return set;
}

namespace {

bool isEveryVertexInOrder(std::span<const int> vertices, int vertexCount) {
    if (vertices.size() != static_cast<std::size_t>(vertexCount)) return false;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        if (vertices[i] != static_cast<int>(i)) return false;
    }
    return true;
}

} // namespace

Outcome Mesh::setVertexColors(std::span<const MColor> colors, std::span<const int> vertices) {
    if (Outcome outcome = checkTargets("vertex", colors.size(), vertices, vertexCount()); !outcome)
        return outcome;
    ColorSet& set = colorsForWriting();
    const auto first = set.colors.size();
    bool isUsed = first == 0; // a list that is new, each colour at some corner, has nothing to throw out
    set.colors.insert(set.colors.end(), colors.begin(), colors.end());
    if (isUsed && isEveryVertexInOrder(vertices, vertexCount())) {
        // Corner by corner the memory is walked in its order.
        std::vector<char> hasCorner(vertices.size(), 0);
        const auto& faceVertices = topology_->faceVertices();
        for (std::size_t corner = 0; corner < faceVertices.size(); ++corner) {
            set.ids[corner] = faceVertices[corner];
            hasCorner[static_cast<std::size_t>(faceVertices[corner])] = 1;
        }
        if (std::find(hasCorner.begin(), hasCorner.end(), 0) != hasCorner.end())
            tidyColors(set, colors.size());
        return {};
    }
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const auto corners = topology_->cornersOfVertex(vertices[i]);
        // The last one keeps the colour when a vertex is named twice.
        for (const int corner : corners) {
            isUsed = isUsed && set.ids[corner] < 0;
            set.ids[corner] = static_cast<int>(first + i);
        }
        isUsed = isUsed && !corners.empty();
    }
    if (!isUsed) tidyColors(set, colors.size());
    return {};
}

Outcome Mesh::setCornerColors(std::span<const MColor> colors, std::span<const int> corners) {
    if (Outcome outcome = checkTargets("face corner", colors.size(), corners, cornerCount()); !outcome)
        return outcome;
    ColorSet& set = colorsForWriting();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        set.ids[corners[i]] = static_cast<int>(set.colors.size());
        set.colors.push_back(colors[i]);
    }
    tidyColors(set, colors.size());
    return {};
}

void Mesh::clearColors(int set) {
    ColorSet cleared;
    cleared.name = colorSets_[set]->name;
    colorSets_[set].reset(std::move(cleared));
}

std::vector<MColor> Mesh::vertexColors(int set, const MColor& unset) const {
    constexpr int kNone = -1, kSeveral = -2;
    const ColorSet& colors = colorSets_[set].read();
    const auto& vertices = topology_->faceVertices();
    // The mean of equal colours is exactly that colour: sums are needed only where corners differ.
    std::vector<int> ids(static_cast<std::size_t>(vertexCount()), kNone);
    bool areMixed = false;
    for (std::size_t c = 0; c < colors.ids.size(); ++c) {
        const int id = colors.ids[c];
        int& common = ids[vertices[c]];
        if (id < 0 || id == common) continue;
        areMixed = areMixed || common != kNone;
        common = common == kNone ? id : kSeveral;
    }
    std::vector<MColor> result(ids.size());
    for (std::size_t v = 0; v < ids.size(); ++v) {
        if (ids[v] != kSeveral) result[v] = ids[v] == kNone ? unset : colors.colors[ids[v]];
    }
    if (!areMixed) return result;
    std::vector<ColorMean> means(ids.size());
    for (std::size_t c = 0; c < colors.ids.size(); ++c) {
        const int vertex = vertices[c];
        if (ids[vertex] == kSeveral && colors.ids[c] >= 0) means[vertex].add(colors.colors[colors.ids[c]]);
    }
    for (std::size_t v = 0; v < ids.size(); ++v) {
        if (ids[v] == kSeveral) result[v] = means[v].mean(unset);
    }
    return result;
}

MColor Mesh::vertexColor(int set, int vertex, const MColor& unset) const {
    const ColorSet& colors = colorSets_[set].read();
    ColorMean mean;
    for (const int corner : topology_->cornersOfVertex(vertex)) {
        if (const int id = colors.idOfCorner(corner); id >= 0) mean.add(colors.colors[id]);
    }
    return mean.mean(unset);
}

MColor Mesh::cornerColor(int set, int corner, const MColor& unset) const {
    const int id = colorSets_[set]->idOfCorner(corner);
    return id < 0 ? unset : colorSets_[set]->colors[id];
}

std::vector<MColor> Mesh::cornerColors(int set, const MColor& unset) const {
    std::vector<MColor> result(static_cast<std::size_t>(cornerCount()));
    for (int c = 0; c < cornerCount(); ++c)
        result[c] = cornerColor(set, c, unset);
    return result;
}

std::vector<MColor> Mesh::usedColors(int set) const {
    ColorSet copy = colorSets_[set].read();
    dropUnused(copy);
    return std::move(copy.colors);
}

} // namespace vesk::geom
