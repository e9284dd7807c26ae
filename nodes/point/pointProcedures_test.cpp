#include "nodes/point/pointProcedures.h"

#include <gtest/gtest.h>

#include <map>

namespace vesk::nodes {
namespace {

PointScript scriptOf(const std::string& startText, const std::string& endText) {
    return {.node = "p",
            .frame = "2.5",
            .plugs = {.ids = "p.outIdPP",
                      .mapIds = "p.outIdPM",
                      .mapVertices = "p.outIdForMapPP",
                      .positions = "p.outPositionPP",
                      .positions2 = "p.outPositionPP2",
                      .colors = "p.outRgbaPP",
                      .colors2 = "p.outRgbaPP2",
                      .weights = "p.inWeightPP",
                      .weights2 = "p.inWeightPP2",
                      .normals = "p.outNormalPP",
                      .normals2 = "p.outNormalPP2",
                      .radii = "p.inRadiusPP",
                      .radii2 = "p.inRadiusPP2",
                      .sharedMap = "p.outSharedMapPP",
                      .sharedMap2 = "p.outSharedMapPP2",
                      .map = "p.outMapPP",
                      .map2 = "p.outMapPP2"},
            .startText = startText,
            .endText = endText};
}

// The lines that all six have, and those of each channel.
const std::string kFetches =
    "int $IDS[]=`getAttr p.outIdPP`;int $MAPID[];float $POS[]=`getAttr p.outPositionPP`;"
    "float $POS2[]=`getAttr p.outPositionPP2`;float $CLR[] = `getAttr p.outRgbaPP`;"
    "float $CLR2[] = `getAttr p.outRgbaPP2`;float $WGT[]=`getAttr p.inWeightPP`;"
    "float $WGT2[]=`getAttr p.inWeightPP2`;float $NML[]=`getAttr p.outNormalPP`;"
    "float $NML2[]=`getAttr p.outNormalPP2`;float $RDS[]=`getAttr p.inRadiusPP`;"
    "float $RDS2[]=`getAttr p.inRadiusPP2`;float $MAP[]=`getAttr p.outSharedMapPP`;"
    "float $MAP2[]=`getAttr p.outSharedMapPP2`;\n";
const std::string kMapFetches =
    "int $IDS[]=`getAttr p.outIdForMapPP`;int $MAPID[]=`getAttr p.outIdPM`;"
    "float $POS[]=`getAttr p.outPositionPP`;"
    "float $POS2[]=`getAttr p.outPositionPP2`;float $CLR[] = `getAttr p.outRgbaPP`;"
    "float $CLR2[] = `getAttr p.outRgbaPP2`;float $WGT[]=`getAttr p.inWeightPP`;"
    "float $WGT2[]=`getAttr p.inWeightPP2`;float $NML[]=`getAttr p.outNormalPP`;"
    "float $NML2[]=`getAttr p.outNormalPP2`;float $RDS[]=`getAttr p.inRadiusPP`;"
    "float $RDS2[]=`getAttr p.inRadiusPP2`;float $MAP[]=`getAttr p.outMapPP`;"
    "float $MAP2[]=`getAttr p.outMapPP2`;\n";
const std::string kLongIntegers = "int $ox,$oy,$oz,$ox3,$oy3,$oz3,$ox4,$oy4,$oz4,$ou,$ov;\n";
const std::string kShortIntegers = "int $ox3,$oy3,$oz3,$ox4,$oy4,$oz4,$ou,$ov;\n";
const std::string kDeclared =
    "$TX,$TY,$TZ,$TX2,$TY2,$TZ2,$WEIGHT,$WEIGHT2,$NX,$NY,$NZ,$NX2,$NY2,$NZ2,$CR,$CB,$CG,$CR2,$CB2,$CG2,"
    "$RADIUS,$RADIUS2,$MAPU,$MAPV,$MAPU2,$MAPV2;\n";
const std::string kZeroPositions = "$TX=$TY=$TZ=$TX2=$TY2=$TZ2=";
const std::string kZeroOthers = "$WEIGHT=$WEIGHT2=$NX=$NY=$NZ=$NX2=$NY2=$NZ2=$CR=$CB=$CG=$CR2=$CB2=$CG2="
                                "$RADIUS=$RADIUS2=$MAPU=$MAPV=$MAPU2=$MAPV2=0;\n";
const std::string kOffsets = "$ox3=$IDS[$i]*3;$oy3=$ox3+1;$oz3=$ox3+2;$ox4=$IDS[$i]*4;$oy4=$ox4+1;"
                             "$oz4=$ox4+2;$oa4=$ox4+3;$ou=$i*2;$ov=$ou+1;\n";
const std::string kPosition =
    "$TX=$POS[$ox4];$TY=$POS[$oy4];$TZ=$POS[$oz4];$TX2=$POS2[$ox4];$TY2=$POS2[$oy4];$TZ2=$POS2[$oz4];\n";
const std::string kColor = "$CR=$CLR[$ox4];$CG=$CLR[$oy4];$CB=$CLR[$oz4];$ALPHA=$CLR[$oa4];"
                           "$CR2=$CLR2[$ox4];$CG2=$CLR2[$oy4];$CB2=$CLR2[$oz4];$ALPHA2=$CLR2[$oa4];\n";
const std::string kWeight = "$WEIGHT=$WGT[$IDS[$i]];$WEIGHT2=$WGT2[$IDS[$i]];\n";
const std::string kNormal =
    "$NX=$NML[$ox3];$NY=$NML[$oy3];$NZ=$NML[$oz3];$NX2=$NML2[$ox3];$NY2=$NML2[$oy3];$NZ2=$NML2[$oz3];\n";
const std::string kRadius = "$RADIUS=$RDS[$IDS[$i]];$RADIUS2=$RDS2[$IDS[$i]];\n";
const std::string kMap = "$MAPU=$MAP[$ou];$MAPV=$MAP[$ov];$MAPU2=$MAP2[$ou];$MAPV2=$MAP2[$ov];\n";
const std::string kStart = "{\nstring $NODE=\"p\";\nfloat $FF=2.5;int $F=$FF;\n";
const std::string kEnd = "}\nEND;\nreturn $OUTPUT;\n}\n";

/// From the start block to the first line of a turn, for four points.
std::string loop(const std::string& id = "") {
    return "START;\nfor($i=0;$i<4;$i++)\n{\n$ID=(float)$IDS[$i];" + id + "\n";
}

TEST(PointProcedure, WholeTextsForFourPoints) {
    const auto textOf = [](PointBlock block) {
        return PointProcedure(block, scriptOf("START", "END"), "BLOCK", 4).text();
    };
    EXPECT_EQ(textOf(PointBlock::kPosition),
              "global proc float[] position_POINT()\n" + kStart + kFetches + kLongIntegers +
                  "float $OUTPUT[16],$ID,$MP,$X,$Y,$Z," + kDeclared + "$ID=$X=$Y=$Z=" + kZeroPositions +
                  "$R=$G=$B=$A=$R2=$G2=$B2=$A2=" + kZeroOthers + loop() + "$ox=$i*3;$oy=$ox+1;$oz=$ox+2;" +
                  kOffsets +
                  "$X=$TX=$POS[$ox4];$Y=$TY=$POS[$oy4];$Z=$TZ=$POS[$oz4];"
                  "$TX2=$POS2[$ox4];$TY2=$POS2[$oy4];$TZ2=$POS2[$oz4];\n" +
                  kColor + kWeight + kNormal + kRadius + kMap +
                  "BLOCK\n$OUTPUT[$ox]=$X;$OUTPUT[$oy]=$Y;$OUTPUT[$oz]=$Z;\n" + kEnd);
    EXPECT_EQ(textOf(PointBlock::kWeight),
              "global proc float[] weight_POINT()\n" + kStart + kFetches + kShortIntegers +
                  "float $OUTPUT[4],$ID,$MP,$W,$W2,$ALPHA,$ALPHA2," + kDeclared +
                  "$ID=$W=$W2=$ALPHA=$ALPHA2=" + kZeroPositions + kZeroOthers + loop() + kOffsets +
                  kPosition + kColor + "$W=$WEIGHT=$WGT[$IDS[$i]];$WEIGHT2=$WGT2[$IDS[$i]];\n" + kNormal +
                  kRadius + kMap + "BLOCK\n$OUTPUT[$i]=$W;\n" + kEnd);
    EXPECT_EQ(
        textOf(PointBlock::kColor),
        "global proc float[] color_POINT()\n" + kStart + kFetches + kLongIntegers +
            "float $OUTPUT[16],$ID,$MP,$R,$G,$B,$A,$R2,$G2,$B2,$A2,$ALPHA,$ALPHA2," + kDeclared +
            "$ID=$R=$G=$B=$A=$R2=$G2=$B2=$A2=$ALPHA=$ALPHA2=" + kZeroPositions + kZeroOthers + loop() +
            "$ox=$i*4;$oy=$ox+1;$oz=$ox+2;$oa=$ox+3;" + kOffsets + kPosition +
            "$R=$CR=$CLR[$ox4];$G=$CG=$CLR[$oy4];$B=$CB=$CLR[$oz4];$A=$ALPHA=$CLR[$oa4];"
            "$R2=$CR2=$CLR2[$ox4];$G2=$CG2=$CLR2[$oy4];$B2=$CB2=$CLR2[$oz4];$A2=$ALPHA2=$CLR2[$oa4];\n" +
            kWeight + kNormal + kRadius + kMap +
            "BLOCK\n$OUTPUT[$ox]=$R;$OUTPUT[$oy]=$G;$OUTPUT[$oz]=$B;$OUTPUT[$oa]=$A;\n" + kEnd);
    EXPECT_EQ(textOf(PointBlock::kNormal),
              "global proc float[] normal_POINT()\n" + kStart + kFetches + kLongIntegers +
                  "float $OUTPUT[4],$ID,$MP,$X,$Y,$Z,$ALPHA,$ALPHA2," + kDeclared +
                  "$ID=$X=$Y=$Z=$ALPHA=$ALPHA2=" + kZeroPositions + kZeroOthers + loop() +
                  "$ox=$i*3;$oy=$ox+1;$oz=$ox+2;" + kOffsets + kPosition + kColor + kWeight +
                  "$X=$NX=$NML[$ox3];$Y=$NY=$NML[$oy3];$Z=$NZ=$NML[$oz3];"
                  "$NX2=$NML2[$ox3];$NY2=$NML2[$oy3];$NZ2=$NML2[$oz3];\n" +
                  kRadius + kMap + "BLOCK\n$OUTPUT[$ox]=$X;$OUTPUT[$oy]=$Y;$OUTPUT[$oz]=$Z;\n" + kEnd);
    EXPECT_EQ(textOf(PointBlock::kRadius), "global proc float[] radius_POINT()\n" + kStart + kFetches +
                                               kShortIntegers +
                                               "float $OUTPUT[4],$ID,$MP,$R,$R2,$ALPHA,$ALPHA2," + kDeclared +
                                               "$ID=$R=$R2=$ALPHA=$ALPHA2=" + kZeroPositions + kZeroOthers +
                                               loop() + kOffsets + kPosition + kColor + kWeight + kNormal +
                                               "$R=$RADIUS=$RDS[$IDS[$i]];$R2=$RADIUS2=$RDS2[$IDS[$i]];\n" +
                                               kMap + "BLOCK\n$OUTPUT[$i]=$R;\n" + kEnd);
    EXPECT_EQ(textOf(PointBlock::kMap),
              "global proc float[] map_POINT()\n" + kStart + kMapFetches + kShortIntegers +
                  "float $OUTPUT[8],$ID,$MP,$U,$V,$ALPHA,$ALPHA2," + kDeclared +
                  "$ID=$U=$V=$ALPHA=$ALPHA2=" + kZeroPositions + kZeroOthers + loop("$MP=(float)$i;") +
                  kOffsets + kPosition + kColor + kWeight + kNormal + kRadius +
                  "$U=$MAPU=$MAP[$ou];$V=$MAPV=$MAP[$ov];$MAPU2=$MAP2[$ou];$MAPV2=$MAP2[$ov];\n"
                  "BLOCK\n$OUTPUT[$ou]=$U;$OUTPUT[$ov]=$V;\n" +
                  kEnd);
}

TEST(PointProcedure, LinesLeadBackToTheTextsOfTheUser) {
    // Eight lines stand before the start text, which ends with the ";" in line 11; ten lines on comes the
    // block.
    const PointProcedure procedure(PointBlock::kRadius, scriptOf("a\nb\n", "e"), "x\ny", 3);
    const auto origin = [&](int line) {
        const PointLine from = procedure.origin(line);
        return (from.attribute ? from.attribute : "") + std::string(" ") + std::to_string(from.line);
    };
    const std::map<int, std::string> expected = {{8, " 0"},
                                                 {9, "stringStartBlock 1"},
                                                 {11, "stringStartBlock 3"},
                                                 {12, " 0"},
                                                 {21, " 0"},
                                                 {22, "stringRadius 1"},
                                                 {23, "stringRadius 2"},
                                                 {24, " 0"},
                                                 {25, " 0"},
                                                 {26, "stringEndBlock 1"},
                                                 {27, " 0"},
                                                 {0, " 0"}};
    for (const auto& [line, from] : expected)
        EXPECT_EQ(origin(line), from) << line;

    EXPECT_EQ(procedure.explain("line 23: Bad thing."),
              "stringRadius, line 2 (line 23 of radius_POINT): Bad thing.");
    // An error elsewhere, called from the block's first line.
    EXPECT_EQ(procedure.explain("file \"lib.mel\" line 3: Bad thing.\n3:1 | x\nin helper, file \"lib.mel\" "
                                "line 3\nin radius_POINT, line 22\nin line 1"),
              "stringRadius, line 1 (line 22 of radius_POINT): file \"lib.mel\" line 3: Bad thing.");
    EXPECT_EQ(procedure.explain("line 4: Lost."),
              "stringRadius (line 4 of radius_POINT): Lost. The line is not one of the block: see that its "
              "braces and quotes are closed.");
    EXPECT_EQ(procedure.explain("Lost."), "stringRadius (radius_POINT): Lost.");
}

} // namespace
} // namespace vesk::nodes
