#include "nodes/point/pointEvaluation.h"

#include "nodes/common/arrays.h"
#include "nodes/common/choice.h"
#include "nodes/point/point.h"

#include <maya/MCommandMessage.h>
#include <maya/MGlobal.h>

#include <algorithm>

namespace vesk::nodes {

namespace {

using Self = point;

template <class Array>
struct DataSetOf;
template <>
struct DataSetOf<MIntArray> {
    using Type = MFnIntArrayData;
};
template <>
struct DataSetOf<MDoubleArray> {
    using Type = MFnDoubleArrayData;
};
template <>
struct DataSetOf<MVectorArray> {
    using Type = MFnVectorArrayData;
};
template <>
struct DataSetOf<MPointArray> {
    using Type = MFnPointArrayData;
};

MDoubleArray doublesAt(MDataHandle handle) {
    MDoubleArray values;
    MObject data = handle.data();
    MFnDoubleArrayData(data).copyTo(values);
    return values;
}

/// Keeps the last error of the host while it exists.
class ErrorListener {
  public:
    ErrorListener() : id_(MCommandMessage::addCommandOutputCallback(hear, this)) {}
    ~ErrorListener() { MMessage::removeCallback(id_); }
    ErrorListener(const ErrorListener&) = delete;
    ErrorListener& operator=(const ErrorListener&) = delete;

    const MString& last() const { return last_; }

  private:
    static void hear(const MString& message, MCommandMessage::MessageType type, void* self) {
        if (type == MCommandMessage::kError) static_cast<ErrorListener*>(self)->last_ = message;
    }

    MString last_;
    MCallbackId id_;
};

const MObject& textAttribute(PointBlock block) {
    switch (block) {
    case PointBlock::kPosition: return Self::stringPosition;
    case PointBlock::kWeight: return Self::stringWeight;
    case PointBlock::kColor: return Self::stringColor;
    case PointBlock::kNormal: return Self::stringNormal;
    case PointBlock::kRadius: return Self::stringRadius;
    case PointBlock::kMap: break;
    }
    return Self::stringMap;
}

} // namespace

std::span<const BlockArray> blockArrays() {
    static const BlockArray rows[] = {
        {&Self::outPositionPP, PointBlock::kPosition, putEmptyArray<VectorsOutput>},
        {&Self::outPositionPP2, PointBlock::kPosition, putEmptyArray<PointsOutput>},
        {&Self::outWeightPP, PointBlock::kWeight, putEmptyArray<DoublesOutput>},
        {&Self::outRgbaPP, PointBlock::kColor, putEmptyArray<DoublesOutput>},
        {&Self::outRgbaPP2, PointBlock::kColor, putEmptyArray<DoublesOutput>},
        {&Self::outNormalPP, PointBlock::kNormal, putEmptyArray<VectorsOutput>},
        {&Self::outNormalPP2, PointBlock::kNormal, putEmptyArray<VectorsOutput>},
        {&Self::outRadiusPP, PointBlock::kRadius, putEmptyArray<DoublesOutput>},
        {&Self::outMapPP, PointBlock::kMap, putEmptyArray<DoublesOutput>},
        {&Self::outMapPP2, PointBlock::kMap, putEmptyArray<DoublesOutput>},
        {&Self::outSharedMapPP, PointBlock::kMap, putEmptyArray<DoublesOutput>},
        {&Self::outSharedMapPP2, PointBlock::kMap, putEmptyArray<DoublesOutput>},
        {&Self::outIdPM, PointBlock::kMap, putEmptyArray<IntsOutput>},
        {&Self::outIdForMapPP, PointBlock::kMap, putEmptyArray<IntsOutput>},
    };
    return rows;
}

bool PointSwitches::any() const { return std::find(std::begin(run), std::end(run), true) != std::end(run); }

PointEvaluation::Inputs PointEvaluation::firstInputs() {
    return {Self::inGeometry,
            Self::colorSet,
            Self::uvSet,
            Self::inWeightPP,
            Self::inRgbaPP,
            Self::inNormalPP,
            Self::inRadiusPP,
            "inGeometry is periodic nurbs surface. Rebuild using \"End Conditions\" / \"Multiple Knots\" "
            "options.",
            "inNormalPP has length different than the number of points of inGeometry."};
}

PointEvaluation::Inputs PointEvaluation::secondInputs() {
    return {Self::inGeometry2,
            Self::colorSet2,
            Self::uvSet2,
            Self::inWeightPP2,
            Self::inRgbaPP2,
            Self::inNormalPP2,
            Self::inRadiusPP2,
            "inGeometry2 is periodic nurbs surface. Rebuild using \"End Conditions\" / \"Multiple Knots\" "
            "options.",
            "inNormalPP2 has length different than the number of points of inGeometry2."};
}

PointEvaluation::PointEvaluation(const MPxNode& node, MDataBlock& block, const PointSwitches& switches)
    : node_(node), block_(block), switches_(switches), name_(nodeName(node, Self::inGeometry)) {}

std::string PointEvaluation::plugName(const MObject& attribute) const {
    return MPlug(node_.thisMObject(), attribute).name().asChar();
}

MString PointEvaluation::textOf(const MObject& attribute) { return block_.inputValue(attribute).asString(); }

template <class Array>
MObject PointEvaluation::publish(const MObject& attribute, Array values) {
    typename DataSetOf<Array>::Type set;
    MObject data = set.create();
    set.array() = std::move(values);
    place(attribute, data);
    return data;
}

void PointEvaluation::place(const MObject& attribute, const MObject& data) {
    MDataHandle handle = block_.outputValue(attribute);
    handle.set(data);
    handle.setClean();
}

void PointEvaluation::run() {
    if (!prepare(firstInputs(), first_) || !prepare(secondInputs(), second_)) return;
    first_.makeCopy();
    if (switches_.any() && !first_.object().isNull()) runBlocks();
    publishResults();
    MDataHandle output = block_.outputValue(Self::outGeometry);
    output.set(first_.object());
    output.setClean();
}

bool PointEvaluation::prepare(const Inputs& inputs, EditedGeometry& geometry) {
    MDataHandle handle = block_.inputValue(inputs.geometry);
    geometry = EditedGeometry(handle, MPlug(node_.thisMObject(), inputs.geometry),
                              block_.inputValue(Self::coordinateSystem).asShort());
    if (geometry.isPeriodic()) warn(name_, inputs.periodicWarning);
    return !geometry.isPeriodic();
}

// --- what the blocks read
// --------------------------------------------------------------------------------------------

PointSelection PointEvaluation::selection() {
    return chosenBy(block_, {Self::useComponents, Self::inComponents, Self::groupId},
                    block_.inputValue(Self::inGeometry).data());
}

PointChannels PointEvaluation::load(const EditedGeometry& geometry, const Inputs& inputs) {
    PointChannels channels;
    channels.points = geometry.points();
    channels.rgba = geometry.isMesh() ? geometry.meshColors(textOf(inputs.colorSet))
                                      : doublesAt(block_.inputValue(inputs.colors));
    channels.weights = doublesAt(block_.inputValue(inputs.weights));
    channels.radii = doublesAt(block_.inputValue(inputs.radii));
    channels.normals = normalsOf(geometry, inputs);
    const MString uvSet = textOf(inputs.uvSet);
    channels.sharedMap = geometry.sharedMap(uvSet);
    if (uvs_.ids.length() > 0) {
        MFloatArray us, vs;
        geometry.uvs(uvSet, us, vs);
        channels.map = interleaved(us, vs, uvs_.ids);
    }
    fitToPoints(channels, geometry.pointCount());
    return channels;
}

MVectorArray PointEvaluation::normalsOf(const EditedGeometry& geometry, const Inputs& inputs) {
    if (!isConnected(node_, inputs.normals)) return geometry.normals();
    MVectorArray normals;
    MObject data = block_.inputValue(inputs.normals).data();
    MFnVectorArrayData(data).copyTo(normals);
    if (normals.length() != geometry.pointCount()) warn(name_, inputs.lengthWarning);
    normals.setLength(geometry.pointCount());
    return normals;
}

PointScript PointEvaluation::script() {
    const auto plug = [&](const MObject& attribute) { return plugName(attribute); };
    PointScript script;
    script.node = name_.asChar();
    script.frame = (MString() + block_.inputValue(Self::currentTime).asDouble()).asChar();
    script.plugs = {.ids = plug(Self::outIdPP),
                    .mapIds = plug(Self::outIdPM),
                    .mapVertices = plug(Self::outIdForMapPP),
                    .positions = plug(Self::outPositionPP),
                    .positions2 = plug(Self::outPositionPP2),
                    .colors = plug(Self::outRgbaPP),
                    .colors2 = plug(Self::outRgbaPP2),
                    .weights = plug(Self::inWeightPP),
                    .weights2 = plug(Self::inWeightPP2),
                    .normals = plug(Self::outNormalPP),
                    .normals2 = plug(Self::outNormalPP2),
                    .radii = plug(Self::inRadiusPP),
                    .radii2 = plug(Self::inRadiusPP2),
                    .sharedMap = plug(Self::outSharedMapPP),
                    .sharedMap2 = plug(Self::outSharedMapPP2),
                    .map = plug(Self::outMapPP),
                    .map2 = plug(Self::outMapPP2)};
    script.startText = textOf(Self::stringStartBlock).asChar();
    script.endText = textOf(Self::stringEndBlock).asChar();
    return script;
}

/// The procedures read these outputs back: they must hold the inputs while a block runs. Without a second
/// geometry the second arrays are the first.
void PointEvaluation::publishInputs() {
    // What no block goes on with is handed over, not copied.
    const auto given = [&](PointBlock block, auto& array) {
        return switches_.runs(block) ? array : std::move(array);
    };
    publish(Self::outIdPP, ids_);
    publish(Self::outIdPM, uvs_.ids);
    publish(Self::outIdForMapPP, uvs_.vertices);
    const MObject points = publish(Self::outPositionPP, given(PointBlock::kPosition, work_.points));
    const MObject rgba = publish(Self::outRgbaPP, given(PointBlock::kColor, work_.rgba));
    const MObject normals = publish(Self::outNormalPP, given(PointBlock::kNormal, work_.normals));
    const MObject map = publish(Self::outMapPP, given(PointBlock::kMap, work_.map));
    const MObject sharedMap = publish(Self::outSharedMapPP, given(PointBlock::kMap, work_.sharedMap));
    if (second_.pointCount() == 0) {
        place(Self::outPositionPP2, points);
        place(Self::outRgbaPP2, rgba);
        place(Self::outNormalPP2, normals);
        place(Self::outMapPP2, map);
        place(Self::outSharedMapPP2, sharedMap);
        return;
    }
    PointChannels second = load(second_, secondInputs());
    publish(Self::outPositionPP2, std::move(second.points));
    publish(Self::outRgbaPP2, std::move(second.rgba));
    publish(Self::outNormalPP2, std::move(second.normals));
    publish(Self::outMapPP2, std::move(second.map));
    publish(Self::outSharedMapPP2, std::move(second.sharedMap));
}

// --- the blocks
// ------------------------------------------------------------------------------------------------------

void PointEvaluation::runBlocks() {
    ids_ = first_.idsOf(selection());
    const bool runsMap = switches_.runs(PointBlock::kMap) && first_.isMesh();
    if (runsMap) uvs_ = first_.uvsAt(ids_, textOf(Self::uvSet));
    work_ = load(first_, firstInputs());
    publishInputs();
    const PointScript shared = script();
    const QuietCommands quiet;
    for (const PointBlock block : kPointBlocks) {
        if (!switches_.runs(block) || (block == PointBlock::kMap && !runsMap)) continue;
        MDoubleArray result;
        const unsigned count = block == PointBlock::kMap ? uvs_.ids.length() : ids_.length();
        if (call(block, shared, count, result)) {
            take(block, result);
        } else {
            clear(block);
        }
    }
}

/// Whether the procedure could be defined and returned as many numbers as it should.
bool PointEvaluation::call(PointBlock block, const PointScript& script, unsigned count,
                           MDoubleArray& result) {
    const PointProcedure procedure(block, script, textOf(textAttribute(block)).asChar(), count);
    const ErrorListener errors;
    const MString call = MString(procedureName(block)) + "()";
    if (!MGlobal::executeCommand(procedure.text().c_str(), false, false) ||
        !MGlobal::executeCommand(call, result, false, false)) {
        warn(name_, procedure.explain(errors.last().asChar()).c_str());
        return false;
    }
    const unsigned expected = count * numbersPerPoint(block);
    if (result.length() == expected) return true;
    MGlobal::displayInfo(name_ + ": " + blockAttribute(block) + ": " + procedureName(block) + " returned " +
                         result.length() + " numbers instead of " + expected +
                         ". The geometry stays as it is.");
    return false;
}

void PointEvaluation::take(PointBlock block, const MDoubleArray& result) {
    const bool applies = switches_.applies(block) && ids_.length() > 0;
    switch (block) {
    case PointBlock::kPosition:
        storePositions(result, ids_, work_.points);
        if (applies) first_.setPoints(work_.points);
        break;
    case PointBlock::kWeight: storeNumbers(result, ids_, work_.weights); break;
    case PointBlock::kColor:
        storeColors(result, ids_, work_.rgba);
        if (applies) first_.setColors(colorsOf(result), ids_);
        break;
    case PointBlock::kNormal:
        storeNormals(result, ids_, work_.normals);
        if (applies) first_.setNormals(vectorsOf(result), ids_);
        break;
    case PointBlock::kRadius: storeNumbers(result, ids_, work_.radii); break;
    case PointBlock::kMap: takeMap(result); break;
    }
}

void PointEvaluation::takeMap(const MDoubleArray& result) {
    const MString uvSet = textOf(Self::uvSet);
    MFloatArray us, vs;
    first_.uvs(uvSet, us, vs);
    storeUvs(result, uvs_.ids, us, vs);
    EditedGeometry changed = first_;
    changed.makeCopy();
    changed.setUvs(us, vs, uvSet);
    work_.map = result;
    work_.sharedMap = changed.sharedMap(uvSet);
    if (switches_.applies(PointBlock::kMap)) first_ = changed;
}

void PointEvaluation::clear(PointBlock block) {
    switch (block) {
    case PointBlock::kPosition: work_.points.clear(); break;
    case PointBlock::kWeight: work_.weights.clear(); break;
    case PointBlock::kColor: work_.rgba.clear(); break;
    case PointBlock::kNormal: work_.normals.clear(); break;
    case PointBlock::kRadius: work_.radii.clear(); break;
    case PointBlock::kMap: work_.map.clear(); work_.sharedMap.clear();
    }
}

/// The second arrays and the ids stay as the blocks saw them; those of blocks that are switched off come out
/// empty.
void PointEvaluation::publishResults() {
    MVectorArray positions(work_.points.length());
    for (unsigned i = 0; i < positions.length(); ++i)
        positions[i] = MVector(work_.points[i]);
    publish(Self::outPositionPP, std::move(positions));
    publish(Self::outWeightPP, std::move(work_.weights));
    publish(Self::outRgbaPP, std::move(work_.rgba));
    publish(Self::outNormalPP, std::move(work_.normals));
    publish(Self::outRadiusPP, std::move(work_.radii));
    publish(Self::outMapPP, std::move(work_.map));
    publish(Self::outSharedMapPP, std::move(work_.sharedMap));
    for (const BlockArray& row : blockArrays()) {
        if (!switches_.runs(row.block)) row.putEmpty(block_, *row.attribute);
    }
    if (!switches_.any()) putEmptyArray<IntsOutput>(block_, Self::outIdPP);
}

} // namespace vesk::nodes
