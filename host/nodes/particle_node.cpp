#include "host/nodes/particle_node.h"

#include "host/data/array_data.h"
#include "host/nodes/declare.h"

namespace vesk::nodes {

namespace {

using graph::boolean;
using graph::compound;
using graph::real;
using graph::typed;

struct Array {
    const char* longName;
    const char* shortName;
    MFnData::Type type;
    bool hasTwin;
};

constexpr Array kArrays[] = {
    {"position", "pos", MFnData::kVectorArray, true},
    {"velocity", "vel", MFnData::kVectorArray, true},
    {"acceleration", "acc", MFnData::kVectorArray, true},
    {"mass", "mas", MFnData::kDoubleArray, true},
    {"birthTime", "bt", MFnData::kDoubleArray, true},
    {"age", "ag", MFnData::kDoubleArray, true},
    {"particleId", "id", MFnData::kDoubleArray, true},
    {"lifespanPP", "lspp", MFnData::kDoubleArray, true},
    {"finalLifespanPP", "flpp", MFnData::kDoubleArray, true},
    {"force", "frc", MFnData::kVectorArray, false},
    {"deformedPosition", "dpo", MFnData::kVectorArray, false},
    {"lastPosition", "lpos", MFnData::kVectorArray, false},
};

AttrRef transformed(const char* longName, const char* shortName) {
    return typed(longName, shortName, MFnData::kVectorArray)->output();
}

void addArrays(NodeType& type) {
    for (const auto& array : kArrays) {
        type(typed(array.longName, array.shortName, array.type));
        const std::string twin = std::string(array.longName) + "0";
        if (array.hasTwin) type(typed(twin, std::string(array.shortName) + "0", array.type)->asHidden());
    }
    const auto& world = graph::dagAttributes().worldMatrix;
    const auto depends = [&](const char* from, const AttrRef& result, bool onMatrix) {
        type(result);
        (void)type.affects(type.find(from), result.get());
        if (onMatrix) (void)type.affects(world.get(), result.get());
    };
    depends("position", graph::integer("count", "cnt")->output(), false);
    depends("position", transformed("worldPosition", "wps"), true);
    depends("velocity", transformed("worldVelocity", "wvl"), true);
}

/// What emitters, fields, instancers and caches are wired to.
void addWires(NodeType& type) {
    type(typed("newParticles", "npt", MFnData::kDynArrayAttrs)->multi());
    type(typed("inputForce", "ifc", MFnData::kVectorArray)->multi());
    type(boolean("isFull", "ifl"));
    type(graph::unit("timeStepSize", "tss", UnitKind::Time));
    type(real("inheritFactor", "inh"));
    type(graph::unit("startTime", "stt", UnitKind::Time));
    type(real("startFrame", "stf", 1));
    type(graph::integer("seed", "sd", 1)->multi());
    type(graph::unit("currentTime", "cti", UnitKind::Time));
    type(compound("fieldData", "fd",
                  {typed("fieldDataPosition", "fdp", MFnData::kVectorArray),
                   typed("fieldDataVelocity", "fdv", MFnData::kVectorArray),
                   typed("fieldDataMass", "fdm", MFnData::kDoubleArray),
                   graph::unit("fieldDataDeltaTime", "fdt", UnitKind::Time)}));
    type(typed("ppFieldData", "ppfd", MFnData::kVectorArray)->multi());
    type(compound("instanceData", "idt", {typed("instancePointData", "ipd", MFnData::kDynArrayAttrs)})
             ->multi());
    type(typed("cacheArrayData", "cad", MFnData::kDynArrayAttrs));
    type(graph::message("collisionData", "cd")->multi());
}

void addSettings(NodeType& type) {
    for (const auto& [name, shortName, value] :
         {std::tuple("isDynamic", "isd", true), std::tuple("dynamicsWeightOn", "dwo", true),
          std::tuple("forcesInWorld", "fiw", true), std::tuple("expressionsAfterDynamics", "ead", false),
          std::tuple("depthSort", "ds", false), std::tuple("castsShadow", "cshd", true),
          std::tuple("emissionInWorld", "eiw", true), std::tuple("colorAccum", "coa", false),
          std::tuple("useLighting", "ul", false)}) {
        type(boolean(name, shortName, value));
    }
    for (const auto& [name, shortName, value] :
         {std::tuple("conserve", "con", 1.0), std::tuple("dynamicsWeight", "dw", 1.0),
          std::tuple("lifespan", "lsp", 1.0), std::tuple("lifespanRandom", "lspr", 0.0),
          std::tuple("levelOfDetail", "lod", 1.0), std::tuple("pointSize", "ps", 2.0),
          std::tuple("radius", "rad", 0.5), std::tuple("traceDepth", "trd", 10.0)}) {
        type(real(name, shortName, value));
    }
    type(graph::integer("maxCount", "mxc", -1));
    type(graph::integer("particleRenderType", "prt", 3));
    type(graph::integer("lifespanMode", "lsm"));
    type(graph::integer("generalSeed", "gsd"));
    type(triple("centroid", "ctd", UnitKind::Distance));
}

/// What a node of this arithmetic makes of one vector.
using Through = MVector (*)(const MVector&, const MMatrix&);

Ref<Data> throughMatrix(Node& node, const char* from, const MMatrix& matrix, Through through) {
    const auto array = dataOf<VectorArrayData>(node, from);
    if (!array) return nullptr;
    std::vector<MVector> result;
    result.reserve(array->values.read().size());
    for (const auto& vector : array->values.read())
        result.push_back(through(vector, matrix));
    return makeRef<VectorArrayData>(std::move(result));
}

} // namespace

void registerParticles(graph::TypeRegistry& types) {
    NodeType& type = declare<ParticleNode>(types, "particle", MFn::kParticle, "deformableShape");
    addArrays(type);
    addWires(type);
    addSettings(type);
    (void)declare<ParticleNode>(types, "nParticle", MFn::kNParticle, "particle");
}

ComputeResult ParticleNode::compute(Cell& requested) {
    const auto& name = requested.attr.longName;
    if (!isComputed(requested.attr) || requested.isElement()) return DagNode::compute(requested);
    if (name == "count") {
        const auto positions = dataOf<VectorArrayData>(*this, "position");
        graph::putNumber(requested, positions ? static_cast<double>(positions->values.read().size()) : 0);
        return ComputeResult::Done;
    }
    const bool isPosition = name == "worldPosition";
    if (!isPosition && name != "worldVelocity") return DagNode::compute(requested);
    const MMatrix world = matrixIn(cell(*graph::dagAttributes().worldMatrix).element(0));
    graph::putData(
        requested,
        isPosition ? throughMatrix(*this, "position", world,
                                   [](const MVector& v, const MMatrix& m) { return MVector(MPoint(v) * m); })
                   : throughMatrix(*this, "velocity", world,
                                   [](const MVector& v, const MMatrix& m) { return v * m; }));
    return ComputeResult::Done;
}

void ParticleNode::valueStored(Cell& stored) {
    const std::string& name = stored.attr.longName;
    if (stored.attr.kind != graph::AttrKind::Typed || !name.ends_with('0')) return;
    const Attribute* now = findAttribute(std::string_view(name).substr(0, name.size() - 1));
    if (!now || now->kind != stored.attr.kind || now->dataType != stored.attr.dataType || now->array) return;
    Cell& twin = cell(*now);
    if (!twin.source) (void)graph::storeData(twin, stored.data);
}

MBoundingBox ParticleNode::ownBounds() {
    MBoundingBox box;
    if (const auto positions = dataOf<VectorArrayData>(*this, "position")) {
        for (const auto& position : positions->values.read())
            box.expand(MPoint(position));
    }
    return box;
}

} // namespace vesk::nodes
