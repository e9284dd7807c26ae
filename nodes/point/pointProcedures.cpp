#include "nodes/point/pointProcedures.h"

#include <algorithm>
#include <cstdlib>

namespace vesk::nodes {

namespace {

// What each turn of the loop reads, channel by channel.
constexpr const char* kOffsets = "$ox3=$IDS[$i]*3;$oy3=$ox3+1;$oz3=$ox3+2;"
                                 "$ox4=$IDS[$i]*4;$oy4=$ox4+1;$oz4=$ox4+2;$oa4=$ox4+3;$ou=$i*2;$ov=$ou+1;\n";
constexpr const char* kChannelLines[] = {
    "$TX=$POS[$ox4];$TY=$POS[$oy4];$TZ=$POS[$oz4];$TX2=$POS2[$ox4];$TY2=$POS2[$oy4];$TZ2=$POS2[$oz4];\n",
    "$CR=$CLR[$ox4];$CG=$CLR[$oy4];$CB=$CLR[$oz4];$ALPHA=$CLR[$oa4];"
    "$CR2=$CLR2[$ox4];$CG2=$CLR2[$oy4];$CB2=$CLR2[$oz4];$ALPHA2=$CLR2[$oa4];\n",
    "$WEIGHT=$WGT[$IDS[$i]];$WEIGHT2=$WGT2[$IDS[$i]];\n",
    "$NX=$NML[$ox3];$NY=$NML[$oy3];$NZ=$NML[$oz3];$NX2=$NML2[$ox3];$NY2=$NML2[$oy3];$NZ2=$NML2[$oz3];\n",
    "$RADIUS=$RDS[$IDS[$i]];$RADIUS2=$RDS2[$IDS[$i]];\n",
    "$MAPU=$MAP[$ou];$MAPV=$MAP[$ov];$MAPU2=$MAP2[$ou];$MAPV2=$MAP2[$ov];\n",
};

// Variables of every block, without their "$".
constexpr const char* kPositionNames = " TX TY TZ TX2 TY2 TZ2";
constexpr const char* kOtherNames =
    " WEIGHT WEIGHT2 NX NY NZ NX2 NY2 NZ2 CR CB CG CR2 CB2 CG2 RADIUS RADIUS2 MAPU MAPV MAPU2 MAPV2";

constexpr const char* kLongIntegers = "int $ox,$oy,$oz,$ox3,$oy3,$oz3,$ox4,$oy4,$oz4,$ou,$ov;\n";
constexpr const char* kShortIntegers = "int $ox3,$oy3,$oz3,$ox4,$oy4,$oz4,$ou,$ov;\n";
constexpr const char* kThreeOffsets = "$ox=$i*3;$oy=$ox+1;$oz=$ox+2;";
constexpr const char* kFourOffsets = "$ox=$i*4;$oy=$ox+1;$oz=$ox+2;$oa=$ox+3;";
constexpr const char* kStoreVector = "$OUTPUT[$ox]=$X;$OUTPUT[$oy]=$Y;$OUTPUT[$oz]=$Z;\n";

/// What sets one block apart from the others.
struct Form {
    const char* procedure;
    const char* attribute;
    unsigned declaredPerPoint;
    unsigned returnedPerPoint;
    const char* integers;
    const char* ownNames;  ///< declared before the names of every block
    const char* zeroNames; ///< zeroed after the names of the position; those not declared become so
    const char* offsets;   ///< before those of every block
    int channel;           ///< the line of `kChannelLines` that gives way
    const char* channelLine;
    const char* store;
};

constexpr Form kForms[] = {
    {"position_POINT", "stringPosition", 4, 3, kLongIntegers, " X Y Z", " R G B A R2 G2 B2 A2", kThreeOffsets,
     0,
     "$X=$TX=$POS[$ox4];$Y=$TY=$POS[$oy4];$Z=$TZ=$POS[$oz4];"
     "$TX2=$POS2[$ox4];$TY2=$POS2[$oy4];$TZ2=$POS2[$oz4];\n",
     kStoreVector},
    {"weight_POINT", "stringWeight", 1, 1, kShortIntegers, " W W2 ALPHA ALPHA2", "", "", 2,
     "$W=$WEIGHT=$WGT[$IDS[$i]];$WEIGHT2=$WGT2[$IDS[$i]];\n", "$OUTPUT[$i]=$W;\n"},
    {"color_POINT", "stringColor", 4, 4, kLongIntegers, " R G B A R2 G2 B2 A2 ALPHA ALPHA2", "", kFourOffsets,
     1,
     "$R=$CR=$CLR[$ox4];$G=$CG=$CLR[$oy4];$B=$CB=$CLR[$oz4];$A=$ALPHA=$CLR[$oa4];"
     "$R2=$CR2=$CLR2[$ox4];$G2=$CG2=$CLR2[$oy4];$B2=$CB2=$CLR2[$oz4];$A2=$ALPHA2=$CLR2[$oa4];\n",
     "$OUTPUT[$ox]=$R;$OUTPUT[$oy]=$G;$OUTPUT[$oz]=$B;$OUTPUT[$oa]=$A;\n"},
    {"normal_POINT", "stringNormal", 1, 3, kLongIntegers, " X Y Z ALPHA ALPHA2", "", kThreeOffsets, 3,
     "$X=$NX=$NML[$ox3];$Y=$NY=$NML[$oy3];$Z=$NZ=$NML[$oz3];"
     "$NX2=$NML2[$ox3];$NY2=$NML2[$oy3];$NZ2=$NML2[$oz3];\n",
     kStoreVector},
    {"radius_POINT", "stringRadius", 1, 1, kShortIntegers, " R R2 ALPHA ALPHA2", "", "", 4,
     "$R=$RADIUS=$RDS[$IDS[$i]];$R2=$RADIUS2=$RDS2[$IDS[$i]];\n", "$OUTPUT[$i]=$R;\n"},
    {"map_POINT", "stringMap", 2, 2, kShortIntegers, " U V ALPHA ALPHA2", "", "", 5,
     "$U=$MAPU=$MAP[$ou];$V=$MAPV=$MAP[$ov];$MAPU2=$MAP2[$ou];$MAPV2=$MAP2[$ov];\n",
     "$OUTPUT[$ou]=$U;$OUTPUT[$ov]=$V;\n"},
};

const Form& formOf(PointBlock block) { return kForms[static_cast<int>(block)]; }

/// " A B" as ",$A,$B".
std::string listed(const char* names, char separator) {
    std::string text;
    for (const char* at = names; *at; ++at) {
        if (*at == ' ') {
            text += {separator, '$'};
        } else {
            text += *at;
        }
    }
    return text;
}

int lineBreaks(std::string_view text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

/// The number behind the last `lead` in the first place where one follows; 0 when there is none.
int numberBehind(std::string_view text, std::string_view lead) {
    const std::size_t at = text.find(lead);
    if (at == std::string_view::npos) return 0;
    return std::atoi(std::string(text.substr(at + lead.size(), 9)).c_str());
}

} // namespace

const char* procedureName(PointBlock block) { return formOf(block).procedure; }
const char* blockAttribute(PointBlock block) { return formOf(block).attribute; }
unsigned numbersPerPoint(PointBlock block) { return formOf(block).returnedPerPoint; }

PointProcedure::PointProcedure(PointBlock block, const PointScript& script, std::string_view text,
                               unsigned count)
    : block_(block) {
    const Form& form = formOf(block);
    add(std::string("global proc float[] ") + form.procedure + "()\n{\n");
    addDeclarations(script, count);
    parts_[0] = addUserText("stringStartBlock", script.startText, ";\n");
    addLoopHead(count);
    parts_[1] = addUserText(form.attribute, text, "\n");
    add(form.store);
    add("}\n");
    parts_[2] = addUserText("stringEndBlock", script.endText, ";\n");
    add("return $OUTPUT;\n}\n");
}

PointProcedure::Part PointProcedure::addUserText(const char* attribute, std::string_view piece,
                                                 std::string_view behind) {
    const int first = lineBreaks(text_) + 1;
    add(piece);
    add(behind);
    return {attribute, first, first + lineBreaks(piece)};
}

void PointProcedure::addDeclarations(const PointScript& script, unsigned count) {
    const Form& form = formOf(block_);
    add("string $NODE=\"" + script.node + "\";\n");
    add("float $FF=" + script.frame + ";int $F=$FF;\n");
    addFetches(script.plugs);
    add(form.integers);
    const auto size = static_cast<unsigned long long>(count) * form.declaredPerPoint;
    add("float $OUTPUT[" + std::to_string(size) + "],$ID,$MP" + listed(form.ownNames, ',') +
        listed(kPositionNames, ',') + listed(kOtherNames, ',') + ";\n");
    add("$ID" + listed(form.ownNames, '=') + listed(kPositionNames, '=') + listed(form.zeroNames, '=') +
        listed(kOtherNames, '=') + "=0;\n");
}

void PointProcedure::addFetches(const PointPlugs& plugs) {
    const bool isMap = block_ == PointBlock::kMap;
    const auto fetch = [&](const char* declaration, const std::string& plug) {
        add(declaration);
        add("`getAttr " + plug + "`;");
    };
    fetch("int $IDS[]=", isMap ? plugs.mapVertices : plugs.ids);
    if (isMap) {
        fetch("int $MAPID[]=", plugs.mapIds);
    } else {
        add("int $MAPID[];");
    }
    fetch("float $POS[]=", plugs.positions);
    fetch("float $POS2[]=", plugs.positions2);
    fetch("float $CLR[] = ", plugs.colors);
    fetch("float $CLR2[] = ", plugs.colors2);
    fetch("float $WGT[]=", plugs.weights);
    fetch("float $WGT2[]=", plugs.weights2);
    fetch("float $NML[]=", plugs.normals);
    fetch("float $NML2[]=", plugs.normals2);
    fetch("float $RDS[]=", plugs.radii);
    fetch("float $RDS2[]=", plugs.radii2);
    fetch("float $MAP[]=", isMap ? plugs.map : plugs.sharedMap);
    fetch("float $MAP2[]=", isMap ? plugs.map2 : plugs.sharedMap2);
    add("\n");
}

void PointProcedure::addLoopHead(unsigned count) {
    const Form& form = formOf(block_);
    add("for($i=0;$i<" + std::to_string(count) + ";$i++)\n{\n");
    add(block_ == PointBlock::kMap ? "$ID=(float)$IDS[$i];$MP=(float)$i;\n" : "$ID=(float)$IDS[$i];\n");
    add(form.offsets);
    add(kOffsets);
    for (int channel = 0; channel < 6; ++channel)
        add(channel == form.channel ? form.channelLine : kChannelLines[channel]);
}

PointLine PointProcedure::origin(int line) const {
    for (const Part& part : parts_) {
        if (line >= part.first && line <= part.last) return {part.attribute, line - part.first + 1};
    }
    return {};
}

/// Errors of what the text calls name this procedure among those that were running; its own errors begin with
/// their line.
int PointProcedure::lineOf(std::string_view message) const {
    const int running = numberBehind(message, std::string("in ") + procedureName(block_) + ", line ");
    return running == 0 && message.starts_with("line ") ? numberBehind(message, "line ") : running;
}

std::string PointProcedure::explain(std::string_view message) const {
    const int line = lineOf(message);
    std::string_view said = message.substr(0, message.find('\n'));
    const std::string lead = "line " + std::to_string(line) + ": ";
    if (said.starts_with(lead)) said.remove_prefix(lead.size());
    const PointLine from = origin(line);
    std::string where = from.attribute ? from.attribute : blockAttribute(block_);
    if (from.attribute) where += ", line " + std::to_string(from.line);
    where += line > 0 ? " (line " + std::to_string(line) + " of " + procedureName(block_) + ")"
                      : std::string(" (") + procedureName(block_) + ")";
    where += ": " + std::string(said);
    if (line > 0 && !from.attribute)
        where += " The line is not one of the block: see that its braces and quotes are closed.";
    return where;
}

} // namespace vesk::nodes
