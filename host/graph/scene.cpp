#include "host/graph/scene.h"

#include "host/graph/glob.h"

#include <algorithm>
#include <charconv>

namespace vesk::graph {

double framesPerSecond(std::string_view unit) {
    struct Row {
        std::string_view name;
        double fps;
    };
    static constexpr Row kUnits[] = {{"game", 15},      {"film", 24},         {"pal", 25},       {"ntsc", 30},
                                     {"show", 48},      {"palf", 50},         {"ntscf", 60},     {"sec", 1},
                                     {"min", 1.0 / 60}, {"hour", 1.0 / 3600}, {"millisec", 1000}};
    for (const auto& row : kUnits) {
        if (row.name == unit) return row.fps;
    }
    // Later versions write the number itself: `100fps`, `29.97fps`.
    double fps = 0;
    const auto [end, failure] = std::from_chars(unit.data(), unit.data() + unit.size(), fps);
    const bool isNumber = failure == std::errc() && std::string_view(end, unit.data() + unit.size()) == "fps";
    return isNumber && fps > 0 && fps <= 1e6 ? fps : 0;
}

namespace {

AttrRef timeAttribute() {
    static const AttrRef attribute = [] {
        auto time = unit("outTime", "o", UnitKind::Time, 250);
        return time->asKeyable();
    }();
    return attribute;
}

} // namespace

void registerBaseTypes(TypeRegistry& types) {
    auto node = std::make_unique<NodeType>("node", MFn::kDependencyNode, nullptr,
                                           [](const NodeType& type) { return makeRef<Node>(type); });
    node->isAbstract = true;
    auto& base = *node;
    static const AttrRef common[] = {
        message("message", "msg"),
        boolean("caching", "cch"),
        number("isHistoricallyInteresting", "ihi", MFnNumericData::kByte, 2),
        enumeration("nodeState", "nds",
                    {"Normal", "HasNoEffect", "Blocking", "Waiting-Normal", "Waiting-HasNoEffect",
                     "Waiting-Blocking"}),
        boolean("frozen", "fzn"),
    };
    for (const auto& attribute : common)
        base(attribute);
    const NodeType* nodeType = node.get();
    (void)types.add(std::move(node));

    auto dag = std::make_unique<NodeType>("dagNode", MFn::kDagNode, nodeType,
                                          [](const NodeType& type) { return makeRef<DagNode>(type); });
    dag->isDag = true;
    dag->isAbstract = true;
    const auto& a = dagAttributes();
    auto& d = *dag;
    for (const auto& attribute :
         {a.matrix, a.inverseMatrix, a.worldMatrix, a.worldInverseMatrix, a.parentMatrix,
          a.parentInverseMatrix, a.visibility, a.intermediateObject, a.instObjGroups}) {
        d(attribute);
    }
    static const AttrRef display[] = {
        boolean("template", "tmp"),
        boolean("ghosting", "gh"),
        boolean("lodVisibility", "lodv", true),
        boolean("useObjectColor", "uoc"),
        number("objectColor", "oc", MFnNumericData::kShort),
        compound("drawOverride", "do",
                 {boolean("overrideEnabled", "ove"),
                  enumeration("overrideDisplayType", "ovdt", {"Normal", "Template", "Reference"}),
                  enumeration("overrideLevelOfDetail", "ovlod", {"Full", "Bounding Box"}),
                  boolean("overrideShading", "ovs", true), boolean("overrideTexturing", "ovt", true),
                  boolean("overridePlayback", "ovp", true), boolean("overrideVisibility", "ovv", true),
                  boolean("overrideRGBColors", "ovrgbf"),
                  number("overrideColor", "ovc", MFnNumericData::kByte), color("overrideColorRGB", "ovrgb")}),
        compound("renderInfo", "ri",
                 {boolean("identification", "rlid"), boolean("layerRenderable", "rlr", true)}),
    };
    for (const auto& attribute : display)
        d(attribute);
    d.affectsAll({a.matrix}, {a.inverseMatrix, a.worldMatrix, a.worldInverseMatrix});
    d.computes(a.parentMatrix);
    d.affectsAll({a.parentMatrix}, {a.worldMatrix, a.worldInverseMatrix, a.parentInverseMatrix});
    (void)types.add(std::move(dag));

    auto time = std::make_unique<NodeType>("time", MFn::kTime, nodeType,
                                           [](const NodeType& type) { return makeRef<Node>(type); });
    (*time)(timeAttribute());
    static const AttrRef unwarped = unit("unwarpedTime", "unw", UnitKind::Time, 250);
    (*time)(unwarped);
    (void)types.add(std::move(time));
}

Scene::Scene(TypeRegistry& types)
    : types_(types),
      worldType_(std::make_unique<NodeType>("world", MFn::kWorld, types.find("dagNode"),
                                            [](const NodeType& type) { return makeRef<DagNode>(type); })) {
    world_ = makeRef<DagNode>(*worldType_);
    world_->isWorld_ = true;
    world_->scene_ = this;
}

Scene::~Scene() {
    selection.clear();
    for (std::size_t i = nodes_.size(); i-- > 0;) {
        if (nodes_[i]) removeOne(*nodes_[i]);
    }
    world_->scene_ = nullptr;
}

// --- names
// -----------------------------------------------------------------------------------------------------------

namespace {

bool isNameLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == ':' || static_cast<unsigned char>(c) >= 0x80;
}

/// Letters that names cannot hold become underscores; the root name space's colon falls away.
std::string legalName(std::string_view wish) {
    while (!wish.empty() && wish.front() == ':')
        wish.remove_prefix(1);
    std::string name(wish);
    for (char& c : name) {
        if (!isNameLetter(c) && c != '#') c = '_';
    }
    const auto start = name.rfind(':') == std::string::npos ? 0 : name.rfind(':') + 1;
    if (start < name.size() && name[start] >= '0' && name[start] <= '9') name.insert(start, 1, '_');
    return name;
}

struct Numbered {
    std::string stem;
    long number;
    bool hasNumber;
};

Numbered splitNumber(const std::string& name) {
    std::size_t digits = name.size();
    while (digits > 0 && name[digits - 1] >= '0' && name[digits - 1] <= '9' && name.size() - digits < 9)
        --digits;
    if (digits == name.size()) return {name, 0, false};
    long number = 0;
    std::from_chars(name.data() + digits, name.data() + name.size(), number);
    return {name.substr(0, digits), number, true};
}

} // namespace

std::string Scene::freeName(std::string_view wish, const DagNode* parent, bool isDag,
                            const Node* self) const {
    const DagNode* place = parent ? parent : world_.get();
    const auto isTaken = [&](const std::string& name) {
        for (const Node* other : named(name)) {
            if (other == self) continue;
            if (!isDag || !other->type().isDag) return true;
            const auto& parents = static_cast<const DagNode*>(other)->parents();
            if (std::find(parents.begin(), parents.end(), place) != parents.end()) return true;
        }
        return false;
    };
    // Numbers count over the whole scene, so that shortest names stay short.
    const auto isTakenAnywhere = [&](const std::string& name) {
        const auto& others = named(name);
        return !(others.empty() || (others.size() == 1 && others[0] == self));
    };
    std::string name = legalName(wish);
    if (const auto hash = name.find('#'); hash != std::string::npos) {
        const std::string front = name.substr(0, hash);
        const std::string back = name.substr(name.find_last_of('#') + 1);
        long number = back.empty() ? lowestFree(front) : 1;
        for (;; ++number) {
            name = front + std::to_string(number) + back;
            if (!isTakenAnywhere(name)) break;
        }
        if (back.empty()) lowestFree_[front] = number;
        return name;
    }
    if (!isTaken(name)) return name;
    const Numbered parts = splitNumber(name);
    for (long number = std::max(parts.number + 1, lowestFree(parts.stem));; ++number) {
        name = parts.stem + std::to_string(number);
        if (!isTakenAnywhere(name)) return name;
    }
}

long Scene::lowestFree(const std::string& stem) const {
    const auto at = lowestFree_.find(stem);
    return at == lowestFree_.end() ? 1 : at->second;
}

void Scene::insertName(Node& node) { byName_[node.name_].push_back(&node); }

void Scene::eraseName(Node& node) {
    const auto at = byName_.find(node.name_);
    if (at == byName_.end()) return;
    std::erase(at->second, &node);
    if (at->second.empty()) byName_.erase(at);
    const Numbered parts = splitNumber(node.name_);
    if (const auto low = lowestFree_.find(parts.stem); low != lowestFree_.end()) {
        low->second = std::max(1L, std::min(low->second, parts.number));
    }
}

const std::vector<Node*>& Scene::named(std::string_view shortName) const {
    static const std::vector<Node*> none;
    const auto at = byName_.find(std::string(shortName));
    return at == byName_.end() ? none : at->second;
}

Outcome Scene::rename(Node& node, std::string_view name) {
    const std::string legal = legalName(name);
    if (legal.empty()) return Outcome::fail("A node cannot have an empty name.");
    if (node.isDefault || node.isLocked) {
        return Outcome::fail("Cannot rename '" + node.uniqueName() + "': it is " +
                             (node.isLocked ? "locked." : "one of the session's own nodes."));
    }
    const bool isDag = node.type().isDag;
    const DagNode* parent = nullptr;
    if (isDag && !static_cast<DagNode&>(node).parents_.empty())
        parent = static_cast<DagNode&>(node).parents_[0];
    eraseName(node);
    node.name_ = freeName(legal, parent, isDag, &node);
    insertName(node);
    return {};
}

Node* Scene::find(std::string_view nameOrPath, bool* ambiguous) const {
    if (ambiguous) *ambiguous = false;
    while (!nameOrPath.empty() && nameOrPath.front() == ':')
        nameOrPath.remove_prefix(1);
    const auto bar = nameOrPath.rfind('|');
    const auto& candidates = named(bar == std::string_view::npos ? nameOrPath : nameOrPath.substr(bar + 1));
    if (bar == std::string_view::npos) {
        if (candidates.size() == 1) return candidates[0];
        if (ambiguous) *ambiguous = candidates.size() > 1;
        return nullptr;
    }
    Node* found = nullptr;
    for (Node* candidate : candidates) {
        if (!candidate->type().isDag) continue;
        for (const auto& path : allPaths(static_cast<DagNode&>(*candidate))) {
            const std::string full = path.fullName();
            const bool matches = nameOrPath.front() == '|'
                                     ? full == nameOrPath
                                     : full.size() > nameOrPath.size() && full.ends_with(nameOrPath) &&
                                           full[full.size() - nameOrPath.size() - 1] == '|';
            if (!matches) continue;
            if (found && found != candidate) {
                if (ambiguous) *ambiguous = true;
                return nullptr;
            }
            found = candidate;
        }
    }
    return found;
}

std::vector<Node*> Scene::match(std::string_view pattern) const {
    while (!pattern.empty() && pattern.front() == ':')
        pattern.remove_prefix(1);
    if (pattern.find_first_of("*?") == std::string_view::npos) {
        if (pattern.find('|') != std::string_view::npos) {
            Node* one = find(pattern);
            return one ? std::vector<Node*>{one} : std::vector<Node*>{};
        }
        return named(pattern);
    }
    const bool isPath = pattern.find('|') != std::string_view::npos;
    std::vector<Node*> found;
    for (Node* node : nodes()) {
        bool hit = !isPath && globMatches(pattern, node->name());
        if (isPath && node->type().isDag) {
            for (const auto& path : allPaths(static_cast<DagNode&>(*node))) {
                const std::string full = path.fullName();
                hit = hit || globMatches(pattern, full) ||
                      (pattern.front() != '|' && globMatches("*|" + std::string(pattern), full));
            }
        }
        if (hit) found.push_back(node);
    }
    return found;
}

// --- nodes
// -----------------------------------------------------------------------------------------------------------

Ref<Node> Scene::create(const NodeType& type, std::string_view name, DagNode* parent) {
    Ref<Node> node = type.create();
    if (!node) return node;
    if (name.empty()) {
        node->name_ = freeName(type.name() + '#', parent, type.isDag);
    } else {
        node->name_ = freeName(name, parent, type.isDag);
    }
    if (nodes_.size() > 64 && nodes_.size() > 2 * alive_) closeHoles();
    node->scene_ = this;
    node->slot_ = nodes_.size();
    nodes_.push_back(node);
    ++alive_;
    insertName(*node);
    if (type.isDag) {
        auto& dag = static_cast<DagNode&>(*node);
        DagNode* above = parent ? parent : world_.get();
        dag.parents_.push_back(above);
        above->children_.push_back(&dag);
        // Dirt of a parent reaches a child through these.
        (void)dag.cell(*dagAttributes().worldMatrix);
        (void)dag.cell(*dagAttributes().parentMatrix);
    }
    node->created();
    return node;
}

void Scene::closeHoles() {
    std::erase(nodes_, Ref<Node>());
    for (std::size_t i = 0; i < nodes_.size(); ++i)
        nodes_[i]->slot_ = i;
}

void Scene::removeOne(Node& node) {
    node.removing();
    for (int i = 0; i < node.attributeCount(); ++i) {
        const Attribute* attribute = node.attributeAt(i);
        if (!attribute || attribute->parent) continue;
        if (Cell* top = node.cellIfThere(*attribute)) disconnectAll(*top);
    }
    if (node.type().isDag) {
        auto& dag = static_cast<DagNode&>(node);
        for (DagNode* parent : dag.parents_)
            std::erase(parent->children_, &dag);
        for (DagNode* child : dag.children_)
            std::erase(child->parents_, &dag);
        dag.parents_.clear();
        dag.children_.clear();
    }
    eraseName(node);
    node.scene_ = nullptr;
    --alive_;
    nodes_[node.slot_] = nullptr; // may be the last reference
}

void Scene::remove(Node& node) {
    if (!node.isAlive() || node.scene_ != this) return;
    if (!node.type().isDag) return removeOne(node);
    // Children first; what has another parent stays there.
    std::vector<Ref<DagNode>> doomed{Ref<DagNode>(static_cast<DagNode*>(&node))};
    for (std::size_t i = 0; i < doomed.size(); ++i) {
        for (DagNode* child : doomed[i]->children_) {
            const bool onlyHere =
                std::all_of(child->parents_.begin(), child->parents_.end(), [&](DagNode* parent) {
                    return std::find(doomed.begin(), doomed.end(), Ref<DagNode>(parent)) != doomed.end();
                });
            if (onlyHere) doomed.emplace_back(child);
        }
    }
    for (std::size_t i = doomed.size(); i-- > 0;) {
        if (doomed[i]->isAlive()) removeOne(*doomed[i]);
    }
}

void Scene::clear() {
    selection.clear();
    for (std::size_t i = nodes_.size(); i-- > 0;) {
        if (i < nodes_.size() && nodes_[i] && !nodes_[i]->isDefault) {
            const Ref<Node> keep = nodes_[i];
            removeOne(*keep);
        }
    }
    for (Node* node : nodes()) {
        node->aliases.clear();
        node->isLocked = false;
        for (const AttrRef& attribute : std::vector<AttrRef>(node->dynamicAttributes())) {
            if (!attribute->parent) (void)node->removeDynamicAttribute(*attribute);
        }
        node->eachCell([](Cell& cell) {
            cell.resetToDefault();
            cell.locked = false;
            cell.keyable = cell.channelBox = -1;
        });
        node->eachCell([](Cell& cell) { markDirty(cell); });
    }
    fileName.clear();
    fileInfo.clear();
    missingPlugins.clear();
    playback = {};
    fps_ = 24;
    setFrame(1);
}

std::vector<Node*> Scene::nodes() const {
    std::vector<Node*> list;
    list.reserve(alive_);
    for (const auto& node : nodes_) {
        if (node) list.push_back(node.get());
    }
    return list;
}

namespace {

void refreshBelow(DagNode& node) {
    markDirty(node.cell(*dagAttributes().parentMatrix));
    // An instance number may have changed its meaning while nothing else did.
    node.cell(*dagAttributes().parentMatrix).walk([](Cell& cell) { spreadDirt(cell); });
    for (DagNode* child : node.children())
        refreshBelow(*child);
}

} // namespace

Outcome Scene::reparent(DagNode& node, DagNode* parent, bool additional) {
    DagNode* above = parent ? parent : world_.get();
    if (above == &node || above->isBelow(node)) {
        return Outcome::fail("Cannot parent '" + node.uniqueName() + "' below itself.");
    }
    if (std::find(node.parents_.begin(), node.parents_.end(), above) != node.parents_.end()) {
        return Outcome::fail("'" + node.uniqueName() + "' is already a child of '" +
                             (above->isWorld() ? "the world" : above->uniqueName()) + "'.");
    }
    if (!additional) {
        for (DagNode* old : node.parents_)
            std::erase(old->children_, &node);
        node.parents_.clear();
    }
    node.parents_.push_back(above);
    above->children_.push_back(&node);
    const std::string name = freeName(node.name_, above, true, &node);
    if (name != node.name_) {
        eraseName(node);
        node.name_ = name;
        insertName(node);
    }
    refreshBelow(node);
    return {};
}

Outcome Scene::removeInstance(DagNode& node, DagNode& parent) {
    if (node.parents_.size() < 2) {
        return Outcome::fail("'" + node.uniqueName() + "' has no other parent to stay below.");
    }
    if (std::erase(node.parents_, &parent) == 0) {
        return Outcome::fail("'" + node.uniqueName() + "' is not a child of '" + parent.uniqueName() + "'.");
    }
    std::erase(parent.children_, &node);
    refreshBelow(node);
    return {};
}

// --- time
// ------------------------------------------------------------------------------------------------------------

double Scene::frame() const {
    const auto& times = named("time1");
    if (times.empty()) return 1;
    const Cell* cell = times[0]->cellIfThere(*timeAttribute());
    return (cell ? cell->number : timeAttribute()->defaultNumber) / ticksPerFrame();
}

void Scene::setFrame(double frame) {
    const auto& times = named("time1");
    if (times.empty()) return;
    (void)storeNumber(times[0]->cell(*timeAttribute()), frame * ticksPerFrame());
    for (const auto& node : nodes_) {
        if (!node || !node->type().followsTime) continue;
        for (int i = 0; i < node->attributeCount(); ++i) {
            const Attribute* attribute = node->attributeAt(i);
            if (attribute && !attribute->parent && node->isComputed(*attribute))
                markDirty(node->cell(*attribute));
        }
    }
}

} // namespace vesk::graph
