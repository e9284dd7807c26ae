#include "nodes/retarget/retarget.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/common/choice.h"
#include "nodes/common/mesh_queries.h"
#include "nodes/common/steps.h"
#include "nodes/retarget/binding.h"

#include <maya/MFnMesh.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MPointArray.h>

#include <algorithm>

using namespace vesk::nodes;
using Self = retarget;

MObject retarget::inGeometry;
MObject retarget::inReferenceMesh;
MObject retarget::inReferenceMesh2;
MObject retarget::inWeightPP;
MObject retarget::outGeometry;
MObject retarget::envelope;
MObject retarget::inComponents;
MObject retarget::useComponents;
MObject retarget::groupId;
MObject retarget::mode;
MObject retarget::reverseNormals;
MObject retarget::setInitialState;
MObject retarget::uvSet;
MObject retarget::uvSet2;
MObject retarget::tolerance;
MObject retarget::snapToReferenceMesh;
MObject retarget::cacheUVs;
MObject retarget::cacheFaceIds;
MObject retarget::cachePointIds;

MTypeId retarget::id(0x11576a);

void* retarget::creator() { return new retarget; }

MStatus retarget::initialize() {
    AttributeTable t;
    t.generic(inGeometry, "inGeometry", "ig", {MFnData::kMesh, MFnData::kNurbsCurve}).notStorable();
    t.generic(inReferenceMesh, "inReferenceMesh", "irm", {MFnData::kMesh}).notStorable();
    t.generic(inReferenceMesh2, "inReferenceMesh2", "irm2", {MFnData::kMesh}).notStorable();
    t.typed(inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray);
    t.generic(outGeometry, "outGeometry", "og", {MFnData::kMesh, MFnData::kNurbsCurve}).output();
    t.real(envelope, "envelope", "en", 1).keyable().min(0).max(1);
    t.typed(inComponents, "inComponents", "ic", MFnData::kComponentList);
    t.enumeration(useComponents, "useComponents", "uc",
                  {"None", "Input Component List", "Input Object Group"})
        .keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.enumeration(mode, "mode", "m", {"closest point", "ray projection", "closest uv"}).keyable();
    t.boolean(reverseNormals, "reverseNormals", "rn", true).keyable();
    t.boolean(setInitialState, "setInitialState", "sis", false).keyable();
    t.string(uvSet, "uvSet", "uvs");
    t.string(uvSet2, "uvSet2", "uvs2");
    t.real(tolerance, "tolerance", "t", 0.1).keyable().min(0.0001).softMax(1);
    t.boolean(snapToReferenceMesh, "snapToReferenceMesh", "strm", false).keyable();
    t.typed(cacheUVs, "cacheUVs", "cuv", MFnData::kDoubleArray).hidden();
    t.typed(cacheFaceIds, "cacheFaceIds", "cfid", MFnData::kIntArray).hidden();
    t.typed(cachePointIds, "cachePointIds", "cpid", MFnData::kIntArray).hidden();
    return t.finish();
}

namespace {

/// A name, where the host wants null for the current set.
struct SetName {
    MString text;
    const MString* orCurrent() const { return text.length() > 0 ? &text : nullptr; }
};

/// A reference in world space.
struct Reference {
    MObject data;
    MFnMesh mesh;
    SetName uvSet;
    std::span<const float> points; ///< x, y and z of each vertex

    Reference(MDataBlock& block, const MObject& attribute, const MObject& set)
        : uvSet{block.inputValue(set).asString()} {
        MDataHandle handle = block.inputValue(attribute);
        data = geometryIn(handle, kWorldCoordinates);
        if (data.isNull()) return;
        mesh.setObject(data);
        points = {mesh.getRawPoints(), 3 * static_cast<std::size_t>(mesh.numVertices())};
    }
};

/// Elements of an array of the kind asked for; none of any other.
template <class Element>
std::span<const Element> elementsIn(const InputArray& array) {
    const auto* run = std::get_if<std::span<const Element>>(&array.values());
    return run ? *run : std::span<const Element>();
}

/// The binding as the node's attributes hold it.
class StoredBinding {
  public:
    explicit StoredBinding(MDataBlock& block)
        : uvs_(block, Self::cacheUVs), faces_(block, Self::cacheFaceIds),
          vertices_(block, Self::cachePointIds) {}
    BindingView view() const {
        return {elementsIn<double>(uvs_), elementsIn<int>(faces_), elementsIn<int>(vertices_)};
    }

  private:
    InputArray uvs_, faces_, vertices_;
};

template <class Output, class Element>
void store(MDataBlock& block, const MObject& attribute, const std::vector<Element>& values) {
    Output output;
    output.values.setLength(static_cast<unsigned>(values.size()));
    std::ranges::copy(values, elements(output.values).begin());
    output.handOver(block, attribute);
}

bool isAnyEmpty(const BindingView& binding) {
    return binding.uvs.empty() || binding.faces.empty() || binding.vertices.empty();
}

/// One evaluation, on the output's own copy of the geometry.
class Evaluation {
  public:
    Evaluation(retarget& node, MDataBlock& block, const MObject& geometry)
        : node_(node), block_(block), geometry_(geometry), isMesh_(geometry.apiType() == MFn::kMeshData),
          first_(block, Self::inReferenceMesh, Self::uvSet),
          second_(block, Self::inReferenceMesh2, Self::uvSet2),
          tolerance_(std::max(block.inputValue(Self::tolerance).asFloat(), 0.0001F)) {}

    void run() {
        const RetargetMode mode = readMode();
        if (isMesh_) {
            MFnMesh(geometry_).getPoints(points_, MSpace::kWorld);
        } else {
            MFnNurbsCurve(geometry_).getCVs(points_, MSpace::kWorld);
        }
        if (first_.points.size() != second_.points.size() || first_.points.empty())
            return complain(
                "inReferenceMesh and inReferenceMesh2 shapes are empty or have different point count.");
        if (points_.length() == 0) return;
        if (!isBound()) bind(mode);
        const StoredBinding stored(block_);
        if (isAnyEmpty(stored.view())) return complain("internal cache is empty.");
        carry(stored.view());
    }

  private:
    void complain(const char* text) const { warn(nodeName(node_, Self::inGeometry), text); }

    RetargetMode readMode() const {
        const short asked = std::clamp<short>(block_.inputValue(Self::mode).asShort(), 0, 2);
        const auto mode = static_cast<RetargetMode>(asked);
        if (isMesh_ || mode == RetargetMode::kClosestPoint) return mode;
        complain(mode == RetargetMode::kRayProjection
                     ? "\"ray projection\" method is not supported for nurbs curves. Assuming \"closest "
                       "point\" instead."
                     : "\"closest uv\" method is not supported for nurbs curves. Assuming \"closest point\" "
                       "instead.");
        return RetargetMode::kClosestPoint;
    }

    bool isBound() const {
        const StoredBinding stored(block_);
        return stored.view().faces.size() == points_.length() && !isAnyEmpty(stored.view()) &&
               !block_.inputValue(Self::setInitialState).asBool();
    }

    void bind(RetargetMode mode) {
        const BindingSettings settings{mode, block_.inputValue(Self::reverseNormals).asBool(),
                                       first_.uvSet.orCurrent(), tolerance_};
        const Binding binding =
            bindPoints(geometry_, elements(std::as_const(points_)), first_.data, settings);
        store<DoublesOutput>(block_, Self::cacheUVs, binding.uvs);
        store<IntsOutput>(block_, Self::cacheFaceIds, binding.faces);
        store<IntsOutput>(block_, Self::cachePointIds, binding.vertices);
        if (block_.inputValue(Self::setInitialState).asBool())
            MPlug(node_.thisMObject(), Self::setInitialState).setBool(false);
    }

    void carry(const BindingView& binding) {
        const InputArray weights(block_, Self::inWeightPP);
        const PointSelection selection =
            chosenBy(block_, {Self::useComponents, Self::inComponents, Self::groupId}, geometry_);
        MIntArray chosen;
        if (!selection.isEverything())
            chosen =
                selection.ids(isMesh_ ? MFn::kMeshVertComponent : MFn::kCurveCVComponent, points_.length());
        const double share = static_cast<double>(block_.inputValue(Self::envelope).asFloat());
        const Carriage carriage{.points = elements(points_),
                                .chosen = elements(std::as_const(chosen)),
                                .binding = binding,
                                .references = {first_.points, second_.points},
                                .weights = elementsIn<double>(weights),
                                .envelope = std::clamp(share, 0.0, 1.0),
                                .snap = block_.inputValue(Self::snapToReferenceMesh).asBool()};
        inQueryPieces(carriage.count(), [&](std::size_t begin, std::size_t end) {
            std::array<Origins, 64> origins;
            for (; begin < end; begin += origins.size()) {
                const std::size_t count = std::min(origins.size(), end - begin);
                for (std::size_t i = 0; i < count; ++i) {
                    const std::size_t point = carriage.point(begin + i);
                    if (binding.has(point)) findOrigins(binding, point, origins[i]);
                }
                carryPoints(carriage, begin, std::span(origins).first(count));
            }
        });
        if (isMesh_) {
            MFnMesh(geometry_).setPoints(points_, MSpace::kWorld);
        } else {
            MFnNurbsCurve(geometry_).setCVs(points_, MSpace::kWorld);
        }
    }

    void findOrigins(const BindingView& binding, std::size_t point, Origins& origins) const {
        const float2 uv = {static_cast<float>(binding.uvs[2 * point]),
                           static_cast<float>(binding.uvs[2 * point + 1])};
        const auto find = [&](const Reference& reference, MPoint& origin) {
            return reference.mesh.getPointAtUV(binding.faces[point], origin, uv, MSpace::kWorld,
                                               reference.uvSet.orCurrent(), tolerance_) == MS::kSuccess;
        };
        origins.known = find(first_, origins.first) && find(second_, origins.second);
    }

    retarget& node_;
    MDataBlock& block_;
    MObject geometry_;
    const bool isMesh_;
    Reference first_, second_;
    const float tolerance_;
    MPointArray points_;
};

} // namespace

MStatus retarget::compute(const MPlug& plug, MDataBlock& block) {
    const short behaviour = nodeState(block);
    if (behaviour == kBlocking) return MS::kUnknownParameter;
    if (behaviour != kHasNoEffect && plug != outGeometry) return MS::kSuccess;
    MDataHandle out = block.outputValue(outGeometry);
    out.copy(block.inputValue(inGeometry));
    if (const MObject geometry = out.data(); behaviour != kHasNoEffect && !geometry.isNull())
        Evaluation(*this, block, geometry).run();
    out.setClean();
    return MS::kSuccess;
}
