#include "host/nodes/stock_types.h"

#include "host/core/log.h"
#include "host/nodes/declare.h"
#include "host/nodes/placeholder.h"

#include <memory>
#include <utility>

namespace vesk::nodes {

namespace {

using graph::boolean;
using graph::color;
using graph::compound;
using graph::enumeration;
using graph::integer;
using graph::message;
using graph::text;
using graph::typed;

/// A multi of wires without values, each taking the next free element.
AttrRef members(const char* longName, const char* shortName) {
    return message(longName, shortName)->multi()->indexFree();
}

AttrRef uvPair(const char* longName, const char* shortName, double value = 0) {
    return graph::tuple(longName, shortName, MFnNumericData::k2Float, {"U", "V"}, UnitKind::None, value);
}

// --- sets and partitions

void setAttributes(NodeType& type) {
    type(members("dagSetMembers", "dsm"));
    type(members("dnSetMembers", "dnsm"));
    type(members("groupNodes", "gn"));
    type(members("usedBy", "ub"));
    type(message("partition", "pa"));
    type(shortNumber("memberWireframeColor", "mwc", -1));
    type(text("annotation", "an"));
    type(boolean("verticesOnlySet", "vo"));
    type(boolean("edgesOnlySet", "eo"));
    type(boolean("facetsOnlySet", "fo"));
    type(boolean("editPointsOnlySet", "epo"));
    type(boolean("renderableOnlySet", "ro"));
    type(boolean("isLayer", "il"));
    type(boolean("hiddenInOutliner", "hio"));
}

void shadingEngineAttributes(NodeType& type) {
    type(color("surfaceShader", "ss"));
    type(color("volumeShader", "vs"));
    type(color("imageShader", "is"));
    type(floatNumber("displacementShader", "ds"));
    type(members("defaultLights", "dl"));
}

void partitionAttributes(NodeType& type) { type(members("sets", "st")); }

// --- materials and textures

void materialAttributes(NodeType& type) {
    type(keyable(color("color", "c", 0.5, 0.5, 0.5)));
    type(keyable(color("transparency", "it")));
    type(keyable(color("ambientColor", "ambc")));
    type(keyable(color("incandescence", "ic")));
    type(keyable(floatNumber("diffuse", "dc", 0.8)));
    type(keyable(floatNumber("translucence", "tc")));
    type(graph::tuple("normalCamera", "n", MFnNumericData::k3Float, {"X", "Y", "Z"}));
    type(output(color("outColor", "oc")));
    type(output(color("outTransparency", "ot")));
    type(output(color("outGlowColor", "ogc")));
}

void shinyAttributes(NodeType& type) {
    materialAttributes(type);
    type(keyable(color("specularColor", "sc", 0.5, 0.5, 0.5)));
    type(keyable(floatNumber("reflectivity", "rfl", 0.5)));
    type(keyable(color("reflectedColor", "rc")));
}

void blinnAttributes(NodeType& type) {
    shinyAttributes(type);
    type(keyable(floatNumber("eccentricity", "ec", 0.3)));
    type(keyable(floatNumber("specularRollOff", "sro", 0.7)));
}

void phongAttributes(NodeType& type) {
    shinyAttributes(type);
    type(keyable(floatNumber("cosinePower", "cp", 20)));
}

void surfaceShaderAttributes(NodeType& type) {
    type(keyable(color("outColor", "oc")));
    type(keyable(color("outTransparency", "ot")));
    type(keyable(color("outGlowColor", "ogc")));
    type(keyable(color("outMatteOpacity", "omo", 1, 1, 1)));
}

void materialInfoAttributes(NodeType& type) {
    type(message("shadingGroup", "sg"));
    type(message("material", "m"));
    type(members("texture", "t"));
}

void textureAttributes(NodeType& type) {
    type(uvPair("uvCoord", "uv"));
    type(uvPair("uvFilterSize", "fs"));
    type(keyable(color("defaultColor", "dc", 0.5, 0.5, 0.5)));
    type(keyable(color("colorGain", "cg", 1, 1, 1)));
    type(keyable(color("colorOffset", "co")));
    type(keyable(floatNumber("alphaGain", "ag", 1)));
    type(keyable(floatNumber("alphaOffset", "ao")));
    type(boolean("invert", "i"));
    type(output(color("outColor", "oc")));
    type(floatNumber("outAlpha", "oa")->output());
}

void fileTextureAttributes(NodeType& type) {
    textureAttributes(type);
    type(text("fileTextureName", "ftn"));
    type(shortNumber("filterType", "ft", 3));
    type(boolean("disableFileLoad", "dfl"));
    type(boolean("useFrameExtension", "ufe"));
    type(integer("frameExtension", "fe", 1));
    type(uvPair("coverage", "c", 1));
    type(uvPair("translateFrame", "tf"));
    type(floatNumber("rotateFrame", "rf"));
    type(boolean("mirrorU", "mu"));
    type(boolean("mirrorV", "mv"));
    type(boolean("stagger", "s"));
    type(boolean("wrapU", "wu", true));
    type(boolean("wrapV", "wv", true));
    type(uvPair("repeatUV", "re", 1));
    type(uvPair("offset", "of"));
    type(floatNumber("rotateUV", "r"));
    type(uvPair("noiseUV", "n"));
    for (const auto& [name, shortName] : {std::pair("vertexUvOne", "vt1"), std::pair("vertexUvTwo", "vt2"),
                                          std::pair("vertexUvThree", "vt3")}) {
        type(uvPair(name, shortName));
    }
    type(graph::tuple("vertexCameraOne", "vc1", MFnNumericData::k3Float, {"X", "Y", "Z"}));
}

void place2dAttributes(NodeType& type) {
    type(keyable(uvPair("coverage", "c", 1)));
    type(keyable(uvPair("translateFrame", "tf")));
    type(keyable(floatNumber("rotateFrame", "rf")));
    type(boolean("mirrorU", "mu"));
    type(boolean("mirrorV", "mv"));
    type(boolean("stagger", "s"));
    type(boolean("wrapU", "wu", true));
    type(boolean("wrapV", "wv", true));
    type(keyable(uvPair("repeatUV", "re", 1)));
    type(keyable(uvPair("offset", "of")));
    type(keyable(floatNumber("rotateUV", "r")));
    type(keyable(uvPair("noiseUV", "n")));
    type(boolean("fast", "f"));
    type(uvPair("uvCoord", "uv"));
    type(uvPair("uvFilterSize", "fs"));
    for (const auto& [name, shortName] : {std::pair("vertexUvOne", "vt1"), std::pair("vertexUvTwo", "vt2"),
                                          std::pair("vertexUvThree", "vt3")}) {
        type(uvPair(name, shortName));
    }
    type(graph::tuple("vertexCameraOne", "vc1", MFnNumericData::k3Float, {"X", "Y", "Z"}));
    type(output(uvPair("outUV", "o")));
    type(output(uvPair("outUvFilterSize", "ofs")));
}

// --- layers

/// Its children stand as those of `drawOverride` on DAG nodes, which it is connected to.
void displayLayerAttributes(NodeType& type) {
    type(compound(
        "drawInfo", "di",
        {boolean("enabled", "e", true), enumeration("displayType", "dt", {"Normal", "Template", "Reference"}),
         enumeration("levelOfDetail", "lod", {"Full", "Bounding Box"}), boolean("shading", "s", true),
         boolean("texturing", "t", true), boolean("playback", "p", true), boolean("visibility", "v", true),
         boolean("overrideRGBColors", "ovrgbf"), graph::number("color", "c", MFnNumericData::kByte),
         color("overrideColorRGB", "ovrgb")}));
    type(shortNumber("identification", "id"));
    type(graph::number("displayOrder", "do", MFnNumericData::kByte));
}

void displayLayerManagerAttributes(NodeType& type) {
    type(shortNumber("displayLayerId", "dli")->multi());
    type(shortNumber("currentDisplayLayer", "cdl"));
}

void renderLayerAttributes(NodeType& type) {
    type(shortNumber("identification", "rlid"));
    type(boolean("renderable", "rndr", true));
    type(boolean("global", "g"));
    type(graph::number("displayOrder", "do", MFnNumericData::kByte));
    type(compound("renderInfo", "ri",
                  {boolean("layerIdentification", "rlii"), boolean("layerRenderable", "rlr", true)}));
}

void renderLayerManagerAttributes(NodeType& type) {
    type(shortNumber("renderLayerId", "rlmi")->multi());
    type(shortNumber("currentRenderLayer", "crl"));
}

void lightLinkerAttributes(NodeType& type) {
    type(compound("link", "lnk", {message("light", "llnk"), message("object", "olnk")})->multi());
    type(compound("shadowLink", "slnk", {message("shadowLight", "sllk"), message("shadowObject", "solk")})
             ->multi());
    type(compound("ignore", "ign", {message("lightIgnored", "lign"), message("objectIgnored", "oign")})
             ->multi());
}

// --- the rest

void scriptAttributes(NodeType& type) {
    type(text("before", "b"));
    type(text("after", "a"));
    type(enumeration("scriptType", "st",
                     {"Demand", "Open/Close", "GUI Open/Close", "UI Configuration", "Software Render",
                      "Software Frame Render", "Scene Configuration", "Time Changed"}));
    type(enumeration("sourceType", "stp", {"MEL", "Python"}));
    type(boolean("ignoreReferenceEdits", "ire"));
}

void instancerAttributes(NodeType& type) {
    type(typed("inputPoints", "inp", MFnData::kDynArrayAttrs));
    type(graph::matrix("inputHierarchy", "inh")->multi());
    type(enumeration("rotationUnits", "ru", {"Degrees", "Radians"}));
}

/// In inches.
AttrRef cameraAperture() {
    auto aperture = graph::tuple("cameraAperture", "cap", MFnNumericData::k2Double, {"H", "V"});
    aperture->children[0]->longName = "horizontalFilmAperture";
    aperture->children[0]->shortName = "hfa";
    aperture->children[0]->defaultNumber = 1.41732;
    aperture->children[1]->longName = "verticalFilmAperture";
    aperture->children[1]->shortName = "vfa";
    aperture->children[1]->defaultNumber = 0.94488;
    return aperture;
}

void cameraAttributes(NodeType& type) {
    type(keyable(boolean("renderable", "rnd", true)));
    type(keyable(cameraAperture()));
    type(keyable(graph::real("focalLength", "fl", 35)));
    type(keyable(graph::real("lensSqueezeRatio", "lsr", 1)));
    type(keyable(graph::real("fStop", "fs", 5.6)));
    type(keyable(distance("focusDistance", "fd", 5)));
    type(keyable(angle("shutterAngle", "sa", 144 * 3.14159265358979323846 / 180)));
    type(keyable(distance("centerOfInterest", "coi", 5)));
    type(distance("nearClipPlane", "ncp", 0.1));
    type(distance("farClipPlane", "fcp", 10000));
    type(keyable(boolean("orthographic", "o")));
    type(keyable(distance("orthographicWidth", "ow", 10)));
    type(enumeration("filmFit", "ff", {"Fill", "Horizontal", "Vertical", "Overscan"}, 1));
    type(graph::real("overscan", "ovr", 1));
    type(triple("tumblePivot", "tp", UnitKind::Distance));
    type(color("backgroundColor", "col"));
    type(text("imageName", "imn"));
    type(text("depthName", "den"));
    type(text("maskName", "man"));
    type(text("homeCommand", "hc"));
    type(boolean("displayResolution", "dr"));
    type(boolean("displayGateMask", "dgm"));
    type(message("imagePlane", "ip")->multi()->indexFree());
}

void lightAttributes(NodeType& type) {
    type(keyable(color("color", "cl", 1, 1, 1)));
    type(keyable(floatNumber("intensity", "in", 1)));
    type(keyable(boolean("emitDiffuse", "ed", true)));
    type(keyable(boolean("emitSpecular", "sn", true)));
    type(keyable(boolean("useRayTraceShadows", "urs")));
    type(keyable(enumeration("decayRate", "de", {"No Decay", "Linear", "Quadratic", "Cubic"})));
}

void spotLightAttributes(NodeType& type) {
    lightAttributes(type);
    type(keyable(angle("coneAngle", "ca", 40 * 3.14159265358979323846 / 180)));
    type(keyable(angle("penumbraAngle", "pa")));
    type(keyable(floatNumber("dropoff", "dro")));
}

template <class T>
void add(graph::TypeRegistry& types, const char* name, MFn::Type kind, const char* base,
         void (*attributes)(NodeType&) = nullptr) {
    NodeType& type = declare<T>(types, name, kind, base);
    if (attributes) attributes(type);
}

void addNode(graph::TypeRegistry& types, const char* name, void (*attributes)(NodeType&) = nullptr,
             MFn::Type kind = MFn::kDependencyNode) {
    add<PlaceholderNode>(types, name, kind, "node", attributes);
}

void addList(graph::TypeRegistry& types, const char* name, const char* longName, const char* shortName) {
    addNode(types, name);
    (*types.find(name))(members(longName, shortName));
}

/// A type that does something elsewhere and nothing here: its first node tells so.
template <class T>
void addIdle(graph::TypeRegistry& types, const std::string& name, MFn::Type kind, const char* base) {
    (void)types.add(std::make_unique<NodeType>(
        name, kind, types.find(base),
        [told = std::make_shared<bool>(false)](const NodeType& type) -> Ref<Node> {
            if (!std::exchange(*told, true))
                log().warning("Nodes of type '" + type.name() + "' are kept, but do nothing here.");
            return makeRef<T>(type);
        }));
}

void registerShading(graph::TypeRegistry& types) {
    addNode(types, "objectSet", setAttributes, MFn::kSet);
    add<PlaceholderNode>(types, "shadingEngine", MFn::kShadingEngine, "objectSet", shadingEngineAttributes);
    addNode(types, "partition", partitionAttributes);
    addNode(types, "lambert", materialAttributes, MFn::kLambert);
    addNode(types, "blinn", blinnAttributes);
    addNode(types, "phong", phongAttributes);
    addNode(types, "phongE", shinyAttributes);
    addNode(types, "anisotropic", shinyAttributes);
    addNode(types, "surfaceShader", surfaceShaderAttributes);
    addNode(types, "materialInfo", materialInfoAttributes);
    addNode(types, "place2dTexture", place2dAttributes, MFn::kPlace2dTexture);
    addNode(types, "file", fileTextureAttributes, MFn::kFileTexture);
    addNode(types, "lightLinker", lightLinkerAttributes);
    addNode(types, "displayLayer", displayLayerAttributes);
    addNode(types, "displayLayerManager", displayLayerManagerAttributes);
    addNode(types, "renderLayer", renderLayerAttributes);
    addNode(types, "renderLayerManager", renderLayerManagerAttributes);
}

void registerSettings(graph::TypeRegistry& types) {
    addNode(types, "script", scriptAttributes, MFn::kScript);
    addList(types, "defaultShaderList", "shaders", "s");
    addList(types, "defaultTextureList", "textures", "tx");
    addList(types, "defaultRenderUtilityList", "utilities", "u");
    addList(types, "defaultRenderingList", "rendering", "r");
    addList(types, "lightList", "lights", "l");
    addList(types, "postProcessList", "postProcesses", "p");
    addList(types, "renderGlobalsList", "renderGlobals", "rg");
    for (const char* name : {"particleCloud",
                             "shaderGlow",
                             "renderGlobals",
                             "renderQuality",
                             "resolution",
                             "hardwareRenderGlobals",
                             "hardwareRenderingGlobals",
                             "viewColorManager",
                             "colorManagementGlobals",
                             "ikSystem",
                             "dynController",
                             "strokeGlobals",
                             "sequenceManager",
                             "sequencer",
                             "shot",
                             "hyperGraphInfo",
                             "hyperLayout",
                             "hyperView",
                             "nodeGraphEditorInfo",
                             "nodeGraphEditorBookmarks",
                             "nodeGraphEditorBookmarkInfo",
                             "dagPose",
                             "controller",
                             "shapeEditorManager",
                             "poseInterpolatorManager",
                             "globalCacheControl",
                             "geometryVarGroup",
                             "character",
                             "characterMap",
                             "reference",
                             "geomBind",
                             "blindDataTemplate",
                             "container",
                             "network"}) {
        addNode(types, name);
    }
    for (const char* name :
         {"bump2d", "bump3d", "layeredShader", "layeredTexture", "animLayer", "pairBlend", "choice"}) {
        addIdle<PlaceholderNode>(types, name, MFn::kDependencyNode, "node");
    }
}

void registerDag(graph::TypeRegistry& types) {
    add<PlaceholderShape>(types, "camera", MFn::kCamera, "shape", cameraAttributes);
    for (const char* name : {"ambientLight", "directionalLight", "areaLight", "volumeLight"})
        add<PlaceholderShape>(types, name, MFn::kShape, "shape", lightAttributes);
    add<PlaceholderShape>(types, "pointLight", MFn::kPointLight, "shape", lightAttributes);
    add<PlaceholderShape>(types, "spotLight", MFn::kShape, "shape", spotLightAttributes);
    add<PlaceholderShape>(types, "imagePlane", MFn::kShape, "shape");
    add<PlaceholderShape>(types, "annotationShape", MFn::kShape, "shape");
    add<PlaceholderTransform>(types, "instancer", MFn::kInstancer, "transform", instancerAttributes);
    add<PlaceholderTransform>(types, "ikEffector", MFn::kIkEffector, "transform");
    add<PlaceholderTransform>(types, "place3dTexture", MFn::kPlace3dTexture, "transform");
    add<PlaceholderTransform>(types, "dagContainer", MFn::kTransform, "transform");
    addIdle<PlaceholderTransform>(types, "ikHandle", MFn::kIkHandle, "transform");
    addIdle<PlaceholderTransform>(types, "pointConstraint", MFn::kPointConstraint, "transform");
    addIdle<PlaceholderTransform>(types, "parentConstraint", MFn::kParentConstraint, "transform");
    addIdle<PlaceholderTransform>(types, "scaleConstraint", MFn::kScaleConstraint, "transform");
    for (const char* name : {"orientConstraint", "aimConstraint", "poleVectorConstraint",
                             "geometryConstraint", "normalConstraint", "tangentConstraint", "nucleus"}) {
        addIdle<PlaceholderTransform>(types, name, MFn::kTransform, "transform");
    }
}

} // namespace

void registerStockTypes(graph::TypeRegistry& types) {
    registerShading(types);
    registerSettings(types);
    registerDag(types);
}

} // namespace vesk::nodes
