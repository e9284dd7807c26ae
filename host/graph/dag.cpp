#include "host/graph/dag.h"

#include "host/data/value_data.h"
#include "host/graph/evaluate.h"
#include "host/graph/scene.h"

#include <algorithm>

namespace vesk::graph {

const DagAttributes& dagAttributes() {
    static const DagAttributes attributes = [] {
        DagAttributes a;
        a.matrix = matrix("matrix", "m")->output();
        a.inverseMatrix = matrix("inverseMatrix", "im")->output();
        a.worldMatrix = matrix("worldMatrix", "wm")->output()->multi()->asWorldSpace();
        a.worldInverseMatrix = matrix("worldInverseMatrix", "wim")->output()->multi()->asWorldSpace();
        a.parentMatrix = matrix("parentMatrix", "pm")->output()->multi()->asWorldSpace();
        a.parentInverseMatrix = matrix("parentInverseMatrix", "pim")->output()->multi()->asWorldSpace();
        a.visibility = boolean("visibility", "v", true)->asKeyable();
        a.intermediateObject = boolean("intermediateObject", "io");
        a.objectGroupId = integer("objectGroupId", "gid");
        a.objectGrpCompList = typed("objectGrpCompList", "gcl", MFnData::kComponentList);
        a.objectGroups = compound(
            "objectGroups", "og",
            {a.objectGroupId, a.objectGrpCompList, number("objectGrpColor", "gco", MFnNumericData::kShort)});
        a.objectGroups->array = true;
        a.instObjGroups = compound("instObjGroups", "iog", {a.objectGroups});
        a.instObjGroups->array = true;
        return a;
    }();
    return attributes;
}

bool DagNode::isIntermediate() const {
    const Cell* cell = cellIfThere(*dagAttributes().intermediateObject);
    return cell && cell->number != 0;
}

bool DagNode::isBelow(const DagNode& ancestor) const {
    // Many instances of one ancestor are looked at once.
    std::vector<const DagNode*> seen, open;
    for (const DagNode* parent : parents_)
        open.push_back(parent);
    while (!open.empty()) {
        const DagNode* at = open.back();
        open.pop_back();
        if (at == &ancestor) return true;
        if (std::find(seen.begin(), seen.end(), at) != seen.end()) continue;
        seen.push_back(at);
        for (const DagNode* parent : at->parents_)
            open.push_back(parent);
    }
    return false;
}

std::string DagNode::uniqueName() const {
    if (!scene() || scene()->named(name()).size() < 2) return name();
    return firstPath(*this).partialName();
}

namespace {

MMatrix pullMatrix(Cell& cell) {
    const auto data = pullAs<MatrixData>(cell);
    return data ? data->matrix() : MMatrix();
}

/// The first nodes of a path, a path themselves.
DagPath firstNodes(const DagPath& path, std::size_t count) {
    DagPath result;
    result.nodes.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        result.nodes.push_back(path.nodes[i]);
    return result;
}

/// Makes the world matrices above a path's end valid from the top down, so that deep hierarchies don't
/// recurse.
void cleanAbove(const DagPath& path) {
    const auto& world = *dagAttributes().worldMatrix;
    std::size_t first = path.nodes.size() - 1;
    const auto cellOf = [&](std::size_t i) -> Cell& {
        return path.nodes[i]->cell(world).element(firstNodes(path, i + 1).instanceNumber());
    };
    while (first > 0 && cellOf(first - 1).dirty)
        --first;
    for (; first + 1 < path.nodes.size(); ++first)
        clean(cellOf(first));
}

MMatrix parentMatrixOf(const DagPath& path) {
    if (path.nodes.size() < 2) return MMatrix();
    const DagPath above = firstNodes(path, path.nodes.size() - 1);
    return pullMatrix(above.node()->cell(*dagAttributes().worldMatrix).element(above.instanceNumber()));
}

} // namespace

ComputeResult DagNode::compute(Cell& requested) {
    const auto& a = dagAttributes();
    const auto put = [&](const MMatrix& value) {
        putData(requested, makeRef<MatrixData>(value));
        return ComputeResult::Done;
    };
    if (&requested.attr == a.matrix.get()) return put(localMatrix());
    if (&requested.attr == a.inverseMatrix.get()) return put(pullMatrix(cell(*a.matrix)).inverse());
    if (!requested.isElement()) return ComputeResult::NotMine;
    const auto paths = allPaths(*this);
    const auto number = static_cast<std::size_t>(requested.logicalIndex);
    if (number >= paths.size()) return put(MMatrix()); // no such instance
    const int index = requested.logicalIndex;
    if (&requested.attr == a.worldMatrix.get()) {
        cleanAbove(paths[number]);
        return put(pullMatrix(cell(*a.matrix)) * pullMatrix(cell(*a.parentMatrix).element(index)));
    }
    if (&requested.attr == a.parentMatrix.get()) return put(parentMatrixOf(paths[number]));
    if (&requested.attr == a.worldInverseMatrix.get()) {
        return put(pullMatrix(cell(*a.worldMatrix).element(index)).inverse());
    }
    if (&requested.attr == a.parentInverseMatrix.get()) {
        return put(pullMatrix(cell(*a.parentMatrix).element(index)).inverse());
    }
    return ComputeResult::NotMine;
}

// --- paths
// -----------------------------------------------------------------------------------------------------------

bool DagPath::isValid() const {
    if (nodes.empty()) return false;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!nodes[i]->isAlive()) return false;
        const auto& parents = nodes[i]->parents();
        const DagNode* above = i ? nodes[i - 1].get() : &nodes[0]->scene()->world();
        if (std::find(parents.begin(), parents.end(), above) == parents.end()) return false;
    }
    return true;
}

std::string DagPath::fullName() const {
    std::string name;
    for (const auto& node : nodes)
        name += '|' + node->name();
    return name;
}

namespace {

/// Whether the last `count` names of `path` end `candidate` as well.
bool sharesTail(const DagPath& path, const DagPath& candidate, std::size_t count) {
    if (candidate.nodes.size() < count) return false;
    for (std::size_t i = 1; i <= count; ++i) {
        if (path.nodes[path.nodes.size() - i]->name() !=
            candidate.nodes[candidate.nodes.size() - i]->name()) {
            return false;
        }
    }
    return true;
}

} // namespace

std::string DagPath::partialName() const {
    if (nodes.empty()) return {};
    std::vector<DagPath> others;
    for (Node* same : node()->scene()->named(node()->name())) {
        if (!same->type().isDag) continue;
        for (auto& path : allPaths(static_cast<DagNode&>(*same))) {
            if (!(path == *this)) others.push_back(std::move(path));
        }
    }
    std::size_t count = 1;
    while (count < nodes.size() && std::any_of(others.begin(), others.end(), [&](const DagPath& one) {
               return sharesTail(*this, one, count);
           })) {
        ++count;
    }
    if (count == nodes.size() && std::any_of(others.begin(), others.end(), [&](const DagPath& one) {
            return sharesTail(*this, one, count);
        })) {
        return fullName();
    }
    std::string name;
    for (std::size_t i = nodes.size() - count; i < nodes.size(); ++i) {
        if (!name.empty()) name += '|';
        name += nodes[i]->name();
    }
    return name;
}

MMatrix DagPath::inclusiveMatrix() const {
    if (nodes.empty()) return MMatrix();
    return pullMatrix(node()->cell(*dagAttributes().worldMatrix).element(instanceNumber()));
}

MMatrix DagPath::exclusiveMatrix() const {
    if (nodes.empty()) return MMatrix();
    return pullMatrix(node()->cell(*dagAttributes().parentMatrix).element(instanceNumber()));
}

int DagPath::instanceNumber() const {
    if (nodes.empty()) return 0;
    const bool alone =
        std::all_of(nodes.begin(), nodes.end(), [](const auto& one) { return one->parents().size() < 2; });
    if (alone) return 0;
    const auto paths = allPaths(*node());
    const auto at = std::find(paths.begin(), paths.end(), *this);
    return at == paths.end() ? 0 : static_cast<int>(at - paths.begin());
}

bool DagPath::operator==(const DagPath& other) const { return nodes == other.nodes; }

std::vector<DagPath> allPaths(const DagNode& node) {
    std::vector<DagPath> paths;
    if (node.isWorld()) return paths;
    // From the bottom up; a run without instances is walked in a loop.
    std::vector<Ref<DagNode>> tail;
    auto* at = const_cast<DagNode*>(&node);
    while (true) {
        tail.emplace_back(at);
        if (at->parents().size() != 1) break;
        if (at->parents()[0]->isWorld()) {
            std::reverse(tail.begin(), tail.end());
            paths.push_back({std::move(tail)});
            return paths;
        }
        at = at->parents()[0];
    }
    std::reverse(tail.begin(), tail.end());
    for (DagNode* parent : at->parents()) {
        if (parent->isWorld()) {
            paths.push_back({tail});
            continue;
        }
        for (auto& above : allPaths(*parent)) {
            for (const auto& one : tail)
                above.nodes.push_back(one);
            paths.push_back(std::move(above));
        }
    }
    return paths;
}

DagPath firstPath(const DagNode& node) {
    DagPath path;
    for (auto* at = const_cast<DagNode*>(&node); at && !at->isWorld();
         at = at->parents().empty() ? nullptr : at->parents()[0]) {
        path.nodes.emplace_back(at);
    }
    std::reverse(path.nodes.begin(), path.nodes.end());
    return path;
}

int pathCount(const DagNode& node) { return static_cast<int>(allPaths(node).size()); }

} // namespace vesk::graph
