#include "host/nodes/mesh_node.h"

#include "host/core/log.h"
#include "host/data/packed_data.h"
#include "host/data/value_data.h"
#include "host/graph/scene.h"
#include "host/nodes/declare.h"
#include "host/nodes/mesh_file.h"
#include "host/nodes/tweaks.h"

namespace vesk::nodes {

namespace {

using graph::boolean;
using graph::compound;
using graph::enumeration;
using graph::fileData;
using graph::text;
using graph::typed;

/// Two or three floats an element; the children's names are `stem` and `shortStem` with the letters.
AttrRef floats(const char* longName, const char* shortName, const std::string& stem,
               const std::string& shortStem, const std::string& letters) {
    std::vector<std::string> suffixes;
    for (const char letter : letters)
        suffixes.emplace_back(1, letter);
    const auto type = suffixes.size() == 2 ? MFnNumericData::k2Float : MFnNumericData::k3Float;
    auto attribute = graph::tuple(stem, shortStem, type, std::move(suffixes))->asPacked();
    attribute->longName = longName;
    attribute->shortName = shortName;
    return attribute;
}

struct MeshAttributes {
    AttrRef inMesh = typed("inMesh", "i", MFnData::kMesh)->asHidden();
    AttrRef outMesh = typed("outMesh", "o", MFnData::kMesh)->output();
    AttrRef worldMesh = typed("worldMesh", "w", MFnData::kMesh)->output()->multi()->asWorldSpace();
    AttrRef cachedInMesh = typed("cachedInMesh", "ci", MFnData::kMesh)->notStorable()->asHidden();

    AttrRef pnts = floats("pnts", "pt", "pnt", "p", "xyz");
    AttrRef vrts = floats("vrts", "vt", "vrt", "v", "xyz");
    AttrRef edge =
        compound("edge", "ed",
                 {graph::integer("edg1", "e1"), graph::integer("edg2", "e2"), graph::integer("edgh", "eh")})
            ->asPacked();
    AttrRef face = fileData("face", "fc", "polyFaces")->asPacked();
    AttrRef normals = floats("normals", "n", "normal", "n", "xyz");

    AttrRef uvSetName = text("uvSetName", "uvsn");
    AttrRef uvSetPoints = floats("uvSetPoints", "uvsp", "uvSetPoints", "uvp", "UV");
    AttrRef uvSet = compound("uvSet", "uvst",
                             {uvSetName, uvSetPoints, typed("uvSetTweakLocation", "uvtw", MFnData::kAny)});
    AttrRef currentUvSet = text("currentUVSet", "cuvs");

    AttrRef colorName = text("colorName", "clsn");
    AttrRef colorSetPoints =
        compound("colorSetPoints", "clsp",
                 {floatNumber("colorSetPointsR", "clpr"), floatNumber("colorSetPointsG", "clpg"),
                  floatNumber("colorSetPointsB", "clpb"), floatNumber("colorSetPointsA", "clpa", 1)})
            ->asPacked();
    AttrRef colorSet =
        compound("colorSet", "clst",
                 {colorName, boolean("clamped", "clam", true),
                  enumeration("representation", "rprt", {"", "A", "", "RGB", "RGBA"}, 4), colorSetPoints});
    AttrRef currentColorSet = text("currentColorSet", "ccls");

    MeshAttributes() {
        uvSet->array = true;
        colorSet->array = true;
    }
};

const MeshAttributes& meshAttributes() {
    static const MeshAttributes attributes;
    return attributes;
}

/// What files set on meshes and nothing here reads: display, smoothing for display, crease and hole lists.
void addKeptAttributes(NodeType& type) {
    for (const auto& [name, shortName, value] : {
             std::tuple("displayImmediate", "di", false),
             std::tuple("displayColors", "dcol", false),
             std::tuple("displayVertices", "dv", false),
             std::tuple("displayCenter", "dc", false),
             std::tuple("displayTriangles", "dt", false),
             std::tuple("displayNonPlanar", "dnp", false),
             std::tuple("displayNormal", "dn", false),
             std::tuple("displayUVs", "uv", false),
             std::tuple("displayMapBorders", "dmb", false),
             std::tuple("displayBorders", "db", false),
             std::tuple("displayInvisibleFaces", "difs", false),
             std::tuple("displayFacesWithGroupId", "dfgi", false),
             std::tuple("backfaceCulling", "bck", false),
             std::tuple("vertexBackfaceCulling", "vbc", true),
             std::tuple("allowTopologyMod", "atm", true),
             std::tuple("displaySubdComps", "dsc", false),
             std::tuple("useGlobalSmoothDrawType", "ugsdt", true),
             std::tuple("useMaxSubdivisions", "ums", false),
             std::tuple("useMaxUV", "umuv", false),
             std::tuple("useSmoothPreviewForRender", "uspr", true),
             std::tuple("keepHardEdge", "khe", false),
             std::tuple("keepMapBorders", "kmb", true),
             std::tuple("keepBorder", "kb", true),
             std::tuple("propagateEdgeHardness", "peh", false),
             std::tuple("smoothUVs", "suv", true),
             std::tuple("dispResolutionOverride", "dro", false),
             std::tuple("alwaysDrawOnTop", "adot", false),
             std::tuple("reuseTriangles", "rt", false),
         }) {
        type(boolean(name, shortName, value));
    }
    for (const auto& [name, shortName, value] : {
             std::tuple("displaySmoothMesh", "dsm", 0),
             std::tuple("smoothLevel", "lev", 2),
             std::tuple("renderSmoothLevel", "rsl", 1),
             std::tuple("smoothDrawType", "sdt", 0),
             std::tuple("smoothMeshSelectionMode", "smms", 1),
             std::tuple("displayResolution", "dr", 1),
             std::tuple("maxSubdivisions", "xsubd", 0),
             std::tuple("vertexNormalMethod", "vnm", 3),
             std::tuple("normalType", "nt", 1),
             std::tuple("normalThreshold", "ndt", 0),
             std::tuple("propagateBorder", "pbo", 0),
             std::tuple("osdVertBoundary", "ovb", 1),
             std::tuple("osdFvarBoundary", "ofb", 3),
             std::tuple("osdCreaseMethod", "ocm", 0),
             std::tuple("materialBlend", "mbl", 6),
         }) {
        type(shortNumber(name, shortName, value));
    }
    type(floatNumber("vertexSize", "vesz", 3));
    type(floatNumber("uvSize", "usz", 4));
    type(floatNumber("borderWidth", "bw", 2));
    type(floatNumber("normalSize", "ns", 0.4));
    type(floatNumber("continuity", "co", 1));
    type(enumeration("quadSplit", "qsp", {"Left", "Right", "Best Shape"}));
    type(text("displayColorChannel", "dcc", "Ambient+Diffuse"));
    type(graph::tuple("uvPivot", "pv", MFnNumericData::k2Double, {"X", "Y"}));
    type(graph::tuple("colorPerVertexOverlay", "covm", MFnNumericData::k3Int, {"0", "1", "2"})->multi());
    type(graph::tuple("colorDisplayMode", "cdvm", MFnNumericData::k3Int, {"0", "1", "2"})->multi());
    for (const auto& [name, shortName] : {std::pair("creaseData", "cd"), std::pair("creaseVertexData", "cvd"),
                                          std::pair("holeFaceData", "hfd")})
        type(fileData(name, shortName, "dataPolyComponent"));
    type(fileData("pinData", "pd", "dataPolyComponent")->multi());
    type(graph::message("blindDataNodes", "bnd")->multi()->indexFree());
    auto groups = compound("compObjectGroups", "cog",
                           {compound("componentGroups", "cgr",
                                     {typed("compObjectGrpCompList", "cgcl", MFnData::kComponentList),
                                      graph::integer("compObjectGroupId", "cgid")})
                                ->multi()})
                      ->multi();
    type(compound("compInstObjGroups", "ciog", {groups})->multi());
}

} // namespace

void registerMesh(graph::TypeRegistry& types) {
    NodeType& type = declare<MeshNode>(types, "mesh", MFn::kMesh, "surfaceShape");
    const auto& a = meshAttributes();
    for (const auto& attribute :
         {a.inMesh, a.outMesh, a.worldMesh, a.cachedInMesh, a.pnts, a.vrts, a.edge, a.face, a.normals,
          a.uvSet, a.currentUvSet, a.colorSet, a.currentColorSet}) {
        type(attribute);
    }
    addKeptAttributes(type);
    declareShapeInfluences(
        type, a.inMesh, a.cachedInMesh, a.outMesh, a.worldMesh,
        {a.pnts, a.vrts, a.edge, a.face, a.normals, a.uvSet, a.currentUvSet, a.colorSet, a.currentColorSet});
}

// --- the kept mesh

namespace {

/// The numbers of a packed multi, taken out of it when nobody else holds them and `mayTake` allows it.
template <class T>
std::vector<T> numbersIn(Cell* cell, bool mayTake) {
    auto* packed = cell ? dynamic_cast<PackedData<T>*>(cell->data.get()) : nullptr;
    if (!packed) return {};
    if (mayTake && packed->referenceCount() == 1) return std::move(packed->write());
    return packed->values();
}

Cell* childOf(Cell& cell, const AttrRef& attribute) {
    return cell.childIfThere(attribute->positionInParent());
}

std::string nameIn(Cell& cell, const AttrRef& attribute) {
    Cell* there = childOf(cell, attribute);
    return there ? textIn(*there) : std::string();
}

/// Takes the lists off the node's cells.
MeshFileArrays takeFileArrays(Node& node, bool mayTake) {
    const auto& a = meshAttributes();
    MeshFileArrays arrays;
    arrays.points = numbersIn<float>(node.cellIfThere(*a.vrts), mayTake);
    arrays.edges = numbersIn<int>(node.cellIfThere(*a.edge), mayTake);
    arrays.normals = numbersIn<float>(node.cellIfThere(*a.normals), mayTake);
    if (const Cell* faces = node.cellIfThere(*a.face)) {
        if (auto* records = dynamic_cast<PolyFacesData*>(faces->data.get())) {
            const bool alone = mayTake && records->referenceCount() == 1;
            arrays.faceCodes = alone ? std::move(records->codes) : records->codes;
        }
    }
    if (arrays.isEmpty()) return arrays;
    if (Cell* sets = node.cellIfThere(*a.uvSet)) {
        for (auto& set : sets->children) {
            arrays.uvSets.push_back({set->logicalIndex, nameIn(*set, a.uvSetName),
                                     numbersIn<float>(childOf(*set, a.uvSetPoints), mayTake)});
        }
    }
    if (Cell* sets = node.cellIfThere(*a.colorSet)) {
        for (auto& set : sets->children) {
            arrays.colorSets.push_back({set->logicalIndex, nameIn(*set, a.colorName),
                                        numbersIn<float>(childOf(*set, a.colorSetPoints), mayTake)});
        }
    }
    arrays.currentUvSet = textIn(node.cell(*a.currentUvSet));
    arrays.currentColorSet = textIn(node.cell(*a.currentColorSet));
    return arrays;
}

void resetValues(Node& node, std::initializer_list<AttrRef> attributes) {
    for (const auto& attribute : attributes) {
        if (Cell* top = node.cellIfThere(*attribute)) top->walk([](Cell& cell) { cell.resetToDefault(); });
    }
}

void dropFileArrays(Node& node) {
    const auto& a = meshAttributes();
    resetValues(node, {a.vrts, a.edge, a.face, a.normals, a.uvSet, a.colorSet});
}

} // namespace

void MeshNode::buildFromFile() {
    // An evaluation at another time puts everything back afterwards, so the lists have to stay.
    const bool mayTake = !scene()->preserving;
    MeshFileArrays arrays = takeFileArrays(*this, mayTake);
    if (arrays.isEmpty()) return;
    auto built = meshFromFileArrays(std::move(arrays));
    if (!built) {
        log().error("The mesh stored in '" + uniqueName() + "' cannot be read: " + built.error());
    } else if (built->holes > 0) {
        log().warning("'" + uniqueName() + "': holes in faces are not supported; " +
                      std::to_string(built->holes) + " were filled.");
    }
    graph::putData(cell(*meshAttributes().cachedInMesh),
                   built ? makeRef<MeshData>(std::move(built->mesh)) : makeRef<MeshData>());
    if (mayTake) dropFileArrays(*this);
}

Ref<GeometryData> MeshNode::own() {
    buildFromFile();
    return GeometryShapeNode::own();
}

void MeshNode::ownReplaced() {
    const auto& a = meshAttributes();
    dropFileArrays(*this);
    resetValues(*this, {a.currentUvSet, a.currentColorSet});
}

GeometryShapeNode::Plugs MeshNode::plugs() const {
    const auto& a = meshAttributes();
    return {a.inMesh.get(), a.cachedInMesh.get(), a.outMesh.get(), a.worldMesh.get()};
}

geom::Mesh MeshNode::mesh() {
    const auto data = Ref<MeshData>(dynamic_cast<MeshData*>(shown().get()));
    return data ? data->geometry() : geom::Mesh();
}

MBoundingBox MeshNode::ownBounds() {
    MBoundingBox box;
    const geom::Mesh shownMesh = mesh();
    for (const auto& point : shownMesh.points())
        box.expand(MPoint(point.x, point.y, point.z));
    return box;
}

// --- tweaks

namespace {

std::string currentSet(Node& node, const AttrRef& attribute) {
    return node.cellIfThere(*attribute) ? textIn(node.cell(*attribute)) : std::string();
}

} // namespace

bool MeshNode::isShaped() {
    const auto& a = meshAttributes();
    return hasTweaks(cellIfThere(*a.pnts)) || !currentSet(*this, a.currentUvSet).empty() ||
           !currentSet(*this, a.currentColorSet).empty();
}

void MeshNode::shape(GeometryData& geometry) {
    const auto& a = meshAttributes();
    geom::Mesh& mesh = static_cast<MeshData&>(geometry).write();
    if (const std::string name = currentSet(*this, a.currentUvSet); !name.empty()) {
        if (const int set = mesh.findUvSet(name); set >= 0) mesh.setCurrentUvSet(set);
    }
    if (const std::string name = currentSet(*this, a.currentColorSet); !name.empty()) {
        if (const int set = mesh.findColorSet(name); set >= 0) mesh.setCurrentColorSet(set);
    }
    if (Cell* tweaks = cellIfThere(*a.pnts); hasTweaks(tweaks)) addTweaks(*tweaks, mesh.editPoints());
}

} // namespace vesk::nodes
