#include "nodes/group/groupStages.h"

#include <maya/MStringArray.h>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace vesk::nodes {

namespace {

using Form = GroupGeometry::Form;

/// How far behind the last element the mark of an empty selection lies.
constexpr int kBeyond = 100;

/// Whether a text of numbers with blanks between them holds the time. Exactly: times are set, not measured.
bool holdsTime(const MString& frames, double time) {
    MStringArray tokens;
    frames.split(' ', tokens);
    for (unsigned i = 0; i < tokens.length(); ++i) {
        const std::string_view token = tokens[i].asChar();
        double number = 0;
        const auto [end, fault] = std::from_chars(token.data(), token.data() + token.size(), number);
        if (fault == std::errc() && end == token.data() + token.size() && number == time) return true;
    }
    return false;
}

void merge(RunningList& list, const RunningList& other) {
    for (const ElementSet& entry : other.entries())
        list.add(entry);
}

} // namespace

void combineInto(RunningList& list, const ElementSet& set, GroupCombine combine) {
    if (set.elements.empty()) return;
    if (combine == GroupCombine::kSubtract) {
        list.remove(set);
    } else {
        list.add(set);
    }
}

void seedStage(RunningList& list, const RunningList& input, const GroupSettings& s,
               const GroupGeometry& geometry) {
    if (s.combine != GroupCombine::kUnion && s.combine != GroupCombine::kSubtract) return;
    const ElementSet* first = input.first();
    if (!first || (s.filterInput && first->type != componentOf(s.kind))) return;
    if (first->type == MFn::kMeshMapComponent && !geometry.hasUvs) return;
    list.add(*first);
}

void operationStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry) {
    combineInto(list, geometry.selection(s.kind, operationIndices(s.operation, s.operations, geometry)),
                s.combine);
}

void volumeStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry,
                 volume::VolumeList& volumes, const volume::CloudStore& clouds) {
    if (volumes.size() == 0) return;
    combineInto(list, elementsInVolumes(s.kind, geometry, volumes, clouds), s.combine);
}

void intersectStage(RunningList& list, const RunningList& input, const GroupSettings& s) {
    if (s.combine != GroupCombine::kIntersect) return;
    if (list.isEmpty() || input.isEmpty()) return list.clear();
    if (input.first()->elements.size() == list.first()->elements.size()) return;
    const ElementSet common = input.first()->common(*list.first());
    list.clear();
    if (!common.elements.empty()) list.add(common);
}

namespace {

/// Edges or faces at the vertices; with `contained` those alone whose points, in the mirror's own space, are
/// in reach.
ElementSet widened(const std::vector<int>& vertices, const GroupSettings& s, GroupGeometry& geometry,
                   const MBoundingBox& reach) {
    const bool isEdges = s.kind == GroupKind::kEdge;
    const Links& around = isEdges ? geometry.links.vertexEdges() : geometry.links.vertexFaces();
    const Links& corners = isEdges ? geometry.links.edgeVertices() : geometry.links.faceVertices();
    std::vector<int> found;
    for (const int vertex : vertices) {
        const auto ids = around.of(vertex);
        found.insert(found.end(), ids.begin(), ids.end());
    }
    ElementSet set = geometry.selection(s.kind, found);
    if (!s.contained || geometry.form != Form::kMesh) return set;
    std::erase_if(set.elements, [&](ElementId element) {
        const auto points = corners.of(static_cast<int>(element));
        return !std::all_of(points.begin(), points.end(), [&](int point) {
            return reach.contains(geometry.points()[static_cast<std::size_t>(point)] * s.mirrorInverse);
        });
    });
    return set;
}

} // namespace

void mirrorStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry,
                 const GroupWarning& warning) {
    if (s.mirrorMode == GroupMirror::kNone || geometry.form == Form::kNone) return;
    if (!s.hasMirrorMatrix) return warning("No mirror matrix provided.");
    const ElementSet kept = list.isEmpty() ? ElementSet() : *list.first();
    list.clear();
    if (s.kind == GroupKind::kMap) {
        warning("Mirroring is not supported for mesh UVs.");
        return list.add({MFn::kMeshVertComponent, {}});
    }
    const std::vector<int> selected = geometry.verticesOf(kept);
    const std::vector<int> points = mirroredPoints(geometry.points(), selected, s.mirror);
    const bool isWide = s.kind == GroupKind::kEdge || s.kind == GroupKind::kFace;
    const ElementSet mirrored =
        isWide ? widened(points, s, geometry, mirrorReach(geometry.points(), selected, s.mirror.radius))
               : geometry.selection(s.kind, points);
    if (s.mirrorMode == GroupMirror::kUnion && !kept.elements.empty()) list.add(kept);
    if (!mirrored.elements.empty()) list.add(mirrored);
}

namespace {

bool isOnBoundary(GroupKind kind, GroupGeometry& geometry, int index) {
    switch (kind) {
    case GroupKind::kVertex: return geometry.links.isBoundaryVertex(index);
    case GroupKind::kEdge: return geometry.links.isBoundaryEdge(index);
    case GroupKind::kFace: return geometry.links.isBoundaryFace(index);
    case GroupKind::kSurfaceCV: {
        const int u = index / geometry.numCVsInV, v = index % geometry.numCVsInV;
        return u == 0 || u == geometry.numCVsInU - 1 || v == 0 || v == geometry.numCVsInV - 1;
    }
    default: return false;
    }
}

} // namespace

void boundaryStage(RunningList& list, const GroupSettings& s, GroupGeometry& geometry) {
    const bool isThere =
        geometry.form == Form::kMesh || (geometry.form == Form::kSurface && s.kind == GroupKind::kSurfaceCV);
    if (s.boundary == GroupBoundary::kNone || !isThere) return;
    const RunningList before = list;
    if (s.boundary == GroupBoundary::kReplace || s.boundary == GroupBoundary::kIntersect) list.clear();
    std::vector<int> found;
    for (int index = 0; index < geometry.count(s.kind); ++index) {
        if (!isOnBoundary(s.kind, geometry, index)) continue;
        const bool isWanted = s.boundary != GroupBoundary::kIntersect ||
                              before.holds(componentOf(s.kind), geometry.elementAt(s.kind, index));
        if (isWanted) found.push_back(index);
    }
    combineInto(list, geometry.selection(s.kind, found),
                s.boundary == GroupBoundary::kSubtract ? GroupCombine::kSubtract : GroupCombine::kUnion);
}

void invertStage(RunningList& list, const GroupSettings& s, const GroupGeometry& geometry) {
    if (!s.invert) return;
    RunningList rest;
    rest.add(geometry.complete(s.kind));
    if (!list.isEmpty()) rest.remove(*list.first());
    list = rest;
}

void nothingStage(RunningList& list, const GroupSettings& s, const GroupGeometry& geometry) {
    if (!list.isEmpty()) return;
    ElementSet mark{componentOf(s.kind), {}};
    if (geometry.fits(s.kind)) {
        const bool isUvs = s.kind == GroupKind::kMap;
        const ElementId beyond = (isUvs ? geometry.uvCount() : geometry.count(s.kind)) + kBeyond;
        mark.elements.push_back(s.kind == GroupKind::kSurfaceCV ? pairElement(beyond, beyond) : beyond);
    }
    list.add(mark);
}

void accumulationStage(RunningList& list, const RunningList& previous, const RunningList& start,
                       const GroupSettings& s) {
    if (s.resetFrames == MString("*") || holdsTime(s.resetFrames, s.currentTime)) return;
    merge(list, previous);
    if (holdsTime(s.startFrames, s.currentTime)) merge(list, start);
}

} // namespace vesk::nodes
