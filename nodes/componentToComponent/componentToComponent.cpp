#include "nodes/componentToComponent/componentToComponent.h"

#include "nodes/common/attributes.h"
#include "nodes/common/steps.h"
#include "nodes/componentToComponent/componentConversion.h"

#include <maya/MFnComponentListData.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MIntArray.h>

#include <algorithm>

using namespace vesk::nodes;

namespace {

using Self = componentToComponent;

constexpr MFn::Type kKinds[] = {MFn::kMeshVertComponent, MFn::kMeshEdgeComponent, MFn::kMeshPolygonComponent,
                                MFn::kMeshMapComponent};

/// Where components go to and come from, by the numbers of `outComponentType`. What is no component of a mesh
/// counts as vertices.
MeshElement elementOf(MFn::Type kind) {
    const auto* found = std::find(std::begin(kKinds), std::end(kKinds), kind);
    return found == std::end(kKinds) ? MeshElement::kVertex : static_cast<MeshElement>(found - kKinds);
}

MObject sourceOf(MDataBlock& block, const MObject& mesh) {
    // The two fields of `useComponents` here: the list, the group.
    if (block.inputValue(Self::useComponents).asShort() == 0) {
        return firstComponent(block.inputValue(Self::inComponents).data());
    }
    return firstComponent(objectGroupIn(mesh, block.inputValue(Self::groupId).asInt()));
}

void convert(MDataBlock& block, MFnComponentListData& list) {
    MDataHandle handle = block.inputValue(Self::inMesh);
    if (handle.type() != MFnData::kMesh) return;
    const MObject mesh = handle.asMesh();
    const MObject source = sourceOf(block, mesh);
    const MeshElement from = elementOf(source.apiType());
    const auto to =
        static_cast<MeshElement>(std::clamp<short>(block.inputValue(Self::outComponentType).asShort(), 0, 3));
    const MString uvSet = block.inputValue(Self::uvSet).asString();
    const MIntArray elements = elementsOn(mesh, source, from);
    MFnSingleIndexedComponent component;
    const MObject converted = component.create(kKinds[static_cast<int>(to)]);
    component.addElements(from == to ? elements : convertElements(mesh, elements, from, to, uvSet));
    list.add(converted);
}

} // namespace

MObject componentToComponent::inMesh;
MObject componentToComponent::inComponents;
MObject componentToComponent::outComponents;
MObject componentToComponent::envelope;
MObject componentToComponent::useComponents;
MObject componentToComponent::groupId;
MObject componentToComponent::outComponentType;
MObject componentToComponent::uvSet;

MTypeId componentToComponent::id(0x115776);

void* componentToComponent::creator() { return new componentToComponent; }

MStatus componentToComponent::initialize() {
    AttributeTable t;
    t.generic(inMesh, "inMesh", "im", {MFnData::kMesh}).notStorable();
    t.typed(inComponents, "inComponents", "ic", MFnData::kComponentList).notStorable();
    t.typed(outComponents, "outComponents", "oc", MFnData::kComponentList).output();
    t.boolean(envelope, "envelope", "en", true).keyable();
    t.enumeration(useComponents, "useComponents", "uc", {"Input Components List", "Input Object Group"})
        .keyable();
    t.integer(groupId, "groupId", "gid", -1).keyable();
    t.enumeration(outComponentType, "outComponentType", "oct", {"vertex", "edge", "face", "map"}).keyable();
    t.string(uvSet, "uvSet", "uvs", "map1");
    return t.finish();
}

MStatus componentToComponent::compute(const MPlug& plug, MDataBlock& block) {
    if (nodeStateAsInput(block) == kBlocking || plug != outComponents) return MS::kUnknownParameter;
    MFnComponentListData list;
    const MObject data = list.create();
    if (block.inputValue(envelope).asBool()) convert(block, list);
    MDataHandle out = block.outputValue(outComponents);
    out.set(data);
    out.setClean();
    return MS::kSuccess;
}
