#include "nodes/point/point.h"

#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"
#include "nodes/point/pointEvaluation.h"

#include <algorithm>

MObject point::inMessage, point::inMessageList;
MObject point::inGeometry, point::inGeometry2, point::outGeometry;
MObject point::inComponents, point::useComponents, point::groupId;
MObject point::currentTime, point::coordinateSystem;
MObject point::colorSet, point::colorSet2, point::uvSet, point::uvSet2;
MObject point::stringStartBlock, point::stringEndBlock;
MObject point::enablePosition, point::applyChangesPosition, point::stringPosition;
MObject point::enableWeight, point::stringWeight;
MObject point::enableColor, point::applyChangesColor, point::stringColor;
MObject point::enableNormal, point::applyChangesNormal, point::stringNormal;
MObject point::enableRadius, point::stringRadius;
MObject point::enableMap, point::applyChangesMap, point::stringMap;
MObject point::inWeightPP, point::inRgbaPP, point::inNormalPP, point::inRadiusPP;
MObject point::inWeightPP2, point::inNormalPP2, point::inRgbaPP2, point::inRadiusPP2;
MObject point::outIdPP, point::outPositionPP, point::outWeightPP, point::outRgbaPP, point::outNormalPP;
MObject point::outMapPP, point::outSharedMapPP, point::outIdForMapPP, point::outIdPM, point::outRadiusPP;
MObject point::outPositionPP2, point::outRgbaPP2, point::outNormalPP2, point::outMapPP2;
MObject point::outSharedMapPP2;

MTypeId point::id(0x115749);

void* point::creator() { return new point; }

namespace {

using namespace vesk::nodes;

constexpr const char* kStartText = "// START BLOCK (this code is executed before the main loop)\n"
                                   "//\n"
                                   "// Be careful with the \"getAttr\" and \"setAttr\" commands,\n"
                                   "// they may cause cycle loops if you are trying to access\n"
                                   "// nodes located in the downstream graph of this one.\n";
constexpr const char* kEndText = "// END BLOCK (this code is executed after the main loop)\n"
                                 "//\n"
                                 "// Paceholder for code that will be executed after the main loop.\n"
                                 "// Be careful with the \"getAttr\" and \"setAttr\" commands,\n"
                                 "// they may cause cycle loops if you are trying to access\n"
                                 "// nodes located in the downstream graph of this one.\n";
constexpr const char* kPositionText = "// POINT POSITION\n$X=$TX;\n$Y=$TY;\n$Z=$TZ;";
constexpr const char* kWeightText = "// POINT WEIGHT\n$W=$WEIGHT;";
constexpr const char* kColorText = "// POINT COLOR (RGBA)\n$R=$CR;\n$G=$CG;\n$B=$CB;\n$A=$ALPHA;";
constexpr const char* kNormalText = "// POINT NORMAL (PARTICLE VELOCITY)\n$X=$NX;\n$Y=$NY;\n$Z=$NZ;";
constexpr const char* kRadiusText = "// POINT RADIUS\n$R=$RADIUS;";
constexpr const char* kMapText = "// MAP (UV POSITION)\n$U=$MAPU;\n$V=$MAPV;";

void declareInputs(AttributeTable& t) {
    t.message(point::inMessage, "inMessage", "im");
    t.compound(point::inMessageList, "inMessageList", "iml", {&point::inMessage}).array();
    t.generic(point::inGeometry, "inGeometry", "ig",
              {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface})
        .notStorable()
        .resets();
    t.generic(point::inGeometry2, "inGeometry2", "ig2",
              {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface})
        .notStorable()
        .resets();
    t.generic(point::outGeometry, "outGeometry", "og",
              {MFnData::kMesh, MFnData::kNurbsCurve, MFnData::kNurbsSurface})
        .output();
    t.typed(point::inComponents, "inComponents", "ic", MFnData::kComponentList).notStorable();
    t.enumeration(point::useComponents, "useComponents", "uc",
                  {"None", "Input Component List", "Input Object Group"})
        .keyable();
    t.integer(point::groupId, "groupId", "gid", -1).keyable();
    t.number(point::currentTime, "currentTime", "ctm", 0);
    t.enumeration(point::coordinateSystem, "coordinateSystem", "cs", {"World", "Object"}).keyable();
    t.string(point::colorSet, "colorSet", "clrs").keyable();
    t.string(point::colorSet2, "colorSet2", "clrs2").keyable();
    t.string(point::uvSet, "uvSet", "uvs", "map1").keyable();
    t.string(point::uvSet2, "uvSet2", "uvs2", "map1").keyable();
}

void declareBlocks(AttributeTable& t) {
    t.string(point::stringStartBlock, "stringStartBlock", "ssb", kStartText);
    t.boolean(point::enablePosition, "enablePosition", "ep", false).keyable();
    t.boolean(point::applyChangesPosition, "applyChangesPosition", "acp", true).keyable();
    t.string(point::stringPosition, "stringPosition", "sp", kPositionText);
    t.boolean(point::enableWeight, "enableWeight", "ew", false).keyable();
    t.string(point::stringWeight, "stringWeight", "sw", kWeightText);
    t.boolean(point::enableColor, "enableColor", "ec", false).keyable();
    t.boolean(point::applyChangesColor, "applyChangesColor", "acc", true).keyable();
    t.string(point::stringColor, "stringColor", "sc", kColorText);
    t.boolean(point::enableNormal, "enableNormal", "en", false).keyable();
    t.boolean(point::applyChangesNormal, "applyChangesNormal", "acn", true).keyable();
    t.string(point::stringNormal, "stringNormal", "sn", kNormalText);
    t.boolean(point::enableRadius, "enableRadius", "er", false).keyable();
    t.string(point::stringRadius, "stringRadius", "sr", kRadiusText);
    t.boolean(point::enableMap, "enableMap", "em", false).keyable();
    t.boolean(point::applyChangesMap, "applyChangesMap", "acm", true).keyable();
    t.string(point::stringMap, "stringMap", "sm", kMapText);
    t.string(point::stringEndBlock, "stringEndBlock", "seb", kEndText);
}

void declareArrays(AttributeTable& t) {
    t.typed(point::inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray).notStorable();
    t.typed(point::inRgbaPP, "inRgbaPP", "irgbapp", MFnData::kDoubleArray).notStorable();
    t.typed(point::inNormalPP, "inNormalPP", "inpp", MFnData::kVectorArray).notStorable();
    t.typed(point::inRadiusPP, "inRadiusPP", "irpp", MFnData::kDoubleArray).notStorable();
    t.typed(point::inWeightPP2, "inWeightPP2", "iwpp2", MFnData::kDoubleArray).notStorable();
    t.typed(point::inNormalPP2, "inNormalPP2", "inpp2", MFnData::kVectorArray).notStorable();
    t.typed(point::inRgbaPP2, "inRgbaPP2", "irgbapp2", MFnData::kDoubleArray).notStorable();
    t.typed(point::inRadiusPP2, "inRadiusPP2", "irpp2", MFnData::kDoubleArray).notStorable();
    t.typed(point::outIdPP, "outIdPP", "oipp", MFnData::kIntArray).output();
    t.generic(point::outPositionPP, "outPositionPP", "oppp", {MFnData::kPointArray, MFnData::kVectorArray})
        .output();
    t.typed(point::outWeightPP, "outWeightPP", "owpp", MFnData::kDoubleArray).output();
    t.typed(point::outRgbaPP, "outRgbaPP", "orgbapp", MFnData::kDoubleArray).output();
    t.typed(point::outNormalPP, "outNormalPP", "onpp", MFnData::kVectorArray).output();
    t.typed(point::outMapPP, "outMapPP", "ompp", MFnData::kDoubleArray).output();
    t.typed(point::outSharedMapPP, "outSharedMapPP", "osmpp", MFnData::kDoubleArray).output();
    t.typed(point::outIdForMapPP, "outIdForMapPP", "oifmpp", MFnData::kIntArray).output();
    t.typed(point::outIdPM, "outIdPM", "oipm", MFnData::kIntArray).output();
    t.typed(point::outRadiusPP, "outRadiusPP", "orpp", MFnData::kDoubleArray).output();
    t.typed(point::outPositionPP2, "outPositionPP2", "oppp2", MFnData::kPointArray).output();
    t.typed(point::outRgbaPP2, "outRgbaPP2", "orgbapp2", MFnData::kDoubleArray).output();
    t.typed(point::outNormalPP2, "outNormalPP2", "onpp2", MFnData::kVectorArray).output();
    t.typed(point::outMapPP2, "outMapPP2", "ompp2", MFnData::kDoubleArray).output();
    t.typed(point::outSharedMapPP2, "outSharedMapPP2", "osmpp2", MFnData::kDoubleArray).output();
}

PointSwitches readSwitches(MDataBlock& block) {
    const auto isOn = [&](const MObject& attribute) { return block.inputValue(attribute).asBool(); };
    return {{isOn(point::enablePosition), isOn(point::enableWeight), isOn(point::enableColor),
             isOn(point::enableNormal), isOn(point::enableRadius), isOn(point::enableMap)},
            {isOn(point::applyChangesPosition), false, isOn(point::applyChangesColor),
             isOn(point::applyChangesNormal), false, isOn(point::applyChangesMap)}};
}

/// Whether a compute fills this plug. An array whose block is switched off is emptied and done with.
bool isServed(const MPlug& plug, MDataBlock& block, const PointSwitches& switches) {
    if (plug == point::outGeometry) return true;
    if (plug == point::outIdPP) {
        if (!switches.any()) putEmptyArray<IntsOutput>(block, point::outIdPP);
        return switches.any();
    }
    const auto rows = blockArrays();
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const BlockArray& one) { return plug == *one.attribute; });
    if (row == rows.end()) return false;
    if (!switches.runs(row->block)) row->putEmpty(block, *row->attribute);
    return switches.runs(row->block);
}

} // namespace

MStatus point::initialize() {
    AttributeTable t;
    declareInputs(t);
    declareBlocks(t);
    declareArrays(t);
    return t.finish();
}

MStatus point::compute(const MPlug& plug, MDataBlock& block) {
    switch (nodeState(block)) {
    case kHasNoEffect: {
        MDataHandle output = block.outputValue(outGeometry);
        output.copy(block.inputValue(inGeometry));
        output.setClean();
        return MS::kSuccess;
    }
    case kBlocking: return MS::kUnknownParameter;
    default: break;
    }
    const PointSwitches switches = readSwitches(block);
    if (!isServed(plug, block, switches) || !isConnected(*this, inGeometry)) return MS::kSuccess;
    PointEvaluation(*this, block, switches).run();
    return MS::kSuccess;
}
