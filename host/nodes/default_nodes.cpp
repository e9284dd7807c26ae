#include "host/nodes/default_nodes.h"

#include "host/data/value_data.h"
#include "host/nodes/declare.h"

#include <numbers>

namespace vesk::nodes {

namespace {

using graph::DagNode;
using graph::Scene;

/// The node of that name and type below `parent` (nodes outside the DAG: anywhere), made when missing.
Node& defaultNode(Scene& scene, std::string_view typeName, std::string_view name, DagNode* parent = nullptr) {
    const NodeType& type = *scene.types().find(typeName);
    for (Node* there : scene.named(name)) {
        if (&there->type() == &type && there->isDefault) return *there;
    }
    Node& made = *scene.create(type, name, parent);
    made.isDefault = true;
    return made;
}

void setNumber(Node& node, std::string_view name, double value) {
    (void)graph::storeNumber(plug(node, name), value);
}

void setTriple(Node& node, std::string_view name, const MVector& value) {
    Cell& cell = plug(node, name);
    for (int i = 0; i < 3; ++i)
        (void)graph::storeNumber(cell.child(i), value[static_cast<unsigned int>(i)]);
}

void setText(Node& node, std::string_view name, const char* value) {
    (void)graph::storeData(plug(node, name), makeRef<StringData>(MString(value)));
}

struct CameraRow {
    const char* name;
    MVector place;
    MVector degrees;
    double centerOfInterest;
    bool orthographic;
    const char* homeCommand;
};

void makeCamera(Scene& scene, const CameraRow& row) {
    constexpr double kRadians = std::numbers::pi / 180;
    const std::string name = row.name;
    Node& transform = defaultNode(scene, "transform", name);
    setNumber(transform, "visibility", 0);
    setTriple(transform, "translate", row.place);
    setTriple(transform, "rotate", row.degrees * kRadians);
    Node& camera = defaultNode(scene, "camera", name + "Shape", static_cast<DagNode*>(&transform));
    setNumber(camera, "visibility", 0);
    setNumber(camera, "renderable", row.orthographic ? 0 : 1);
    setNumber(camera, "centerOfInterest", row.centerOfInterest);
    setNumber(camera, "orthographic", row.orthographic ? 1 : 0);
    if (row.orthographic) setNumber(camera, "orthographicWidth", 30);
    setText(camera, "imageName", row.name);
    setText(camera, "depthName", (name + "_depth").c_str());
    setText(camera, "maskName", (name + "_mask").c_str());
    setText(camera, "homeCommand", row.homeCommand);
}

void makeCameras(Scene& scene) {
    const CameraRow rows[] = {
        {"persp", {28, 21, 28}, {-27.938352729602379, 45, 0}, 44.82186966202994, false, "viewSet -p %camera"},
        {"top", {0, 100.1, 0}, {-90, 0, 0}, 100.1, true, "viewSet -t %camera"},
        {"front", {0, 0, 100.1}, {0, 0, 0}, 100.1, true, "viewSet -f %camera"},
        {"side", {100.1, 0, 0}, {0, 90, 0}, 100.1, true, "viewSet -s %camera"},
    };
    for (const auto& row : rows)
        makeCamera(scene, row);
}

constexpr std::pair<const char*, const char*> kPlainNodes[] = {
    {"sequenceManager", "sequenceManager1"},
    {"hardwareRenderingGlobals", "hardwareRenderingGlobals"},
    {"partition", "renderPartition"},
    {"partition", "characterPartition"},
    {"renderGlobalsList", "renderGlobalsList1"},
    {"defaultShaderList", "defaultShaderList1"},
    {"postProcessList", "postProcessList1"},
    {"defaultRenderUtilityList", "defaultRenderUtilityList1"},
    {"defaultRenderingList", "defaultRenderingList1"},
    {"defaultTextureList", "defaultTextureList1"},
    {"lightList", "lightList1"},
    {"lambert", "lambert1"},
    {"particleCloud", "particleCloud1"},
    {"shaderGlow", "shaderGlow1"},
    {"shadingEngine", "initialShadingGroup"},
    {"shadingEngine", "initialParticleSE"},
    {"materialInfo", "initialMaterialInfo"},
    {"objectSet", "defaultLightSet"},
    {"objectSet", "defaultObjectSet"},
    {"renderGlobals", "defaultRenderGlobals"},
    {"renderQuality", "defaultRenderQuality"},
    {"resolution", "defaultResolution"},
    {"hardwareRenderGlobals", "defaultHardwareRenderGlobals"},
    {"viewColorManager", "defaultViewColorManager"},
    {"colorManagementGlobals", "defaultColorMgtGlobals"},
    {"hyperLayout", "hyperGraphLayout"},
    {"hyperGraphInfo", "hyperGraphInfo"},
    {"ikSystem", "ikSystem"},
    {"dynController", "dynController1"},
    {"strokeGlobals", "strokeGlobals"},
    {"globalCacheControl", "globalCacheControl"},
    {"lightLinker", "lightLinker1"},
    {"displayLayerManager", "layerManager"},
    {"displayLayer", "defaultLayer"},
    {"renderLayerManager", "renderLayerManager"},
    {"renderLayer", "defaultRenderLayer"},
};

/// A wire between default nodes, unless it is there already.
void wire(Node& from, std::string_view out, Cell& destination) {
    Cell& source = plug(from, out);
    if (!destination.source) (void)graph::connect(source, destination);
}

/// What a scene that was cleared left between the nodes that stayed.
void cutWires(Scene& scene) {
    for (Node* node : scene.nodes()) {
        if (!node->isDefault) continue;
        for (int i = 0; i < node->attributeCount(); ++i) {
            const Attribute* attribute = node->attributeAt(i);
            if (!attribute || attribute->parent) continue;
            if (Cell* top = node->cellIfThere(*attribute)) graph::disconnectAll(*top);
        }
    }
}

void wireDefaults(Scene& scene) {
    const auto node = [&](const char* type, const char* name) -> Node& {
        return defaultNode(scene, type, name);
    };
    Node& group = node("shadingEngine", "initialShadingGroup");
    Node& particles = node("shadingEngine", "initialParticleSE");
    wire(node("lambert", "lambert1"), "outColor", plug(group, "surfaceShader"));
    wire(node("lambert", "lambert1"), "outColor", plug(particles, "surfaceShader"));
    Cell& sets = plug(node("partition", "renderPartition"), "sets");
    wire(group, "partition", sets.element(0));
    wire(particles, "partition", sets.element(1));
}

} // namespace

void createDefaultNodes(Scene& scene) {
    cutWires(scene);
    (void)defaultNode(scene, "time", "time1");
    makeCameras(scene);
    for (const auto& [type, name] : kPlainNodes)
        (void)defaultNode(scene, type, name);
    wireDefaults(scene);
    setNumber(defaultNode(scene, "renderLayer", "defaultRenderLayer"), "global", 1);
    scene.setFrame(1);
}

} // namespace vesk::nodes
