#include "bench/mel_programs.h"

namespace vesk::bench {

namespace {

constexpr const char* pointsMel = R"(
global proc float points() {
    float $out[] = position_POINT();
    return size($out) + $out[100] + $out[150001] + $out[299999];
})";

// What the procedure does, line by line.
constexpr const char* pointsLua = R"(
local N = 100000
local ids, fours, threes, ones, twos = {}, {}, {}, {}, {}
for i = 0, N - 1 do
    ids[#ids + 1] = i
    for k = 0, 3 do fours[#fours + 1] = i * 0.001 + k end
    for k = 0, 2 do threes[#threes + 1] = i * 0.001 + k end
    for k = 0, 1 do twos[#twos + 1] = i * 0.001 + k end
    ones[#ones + 1] = i * 0.001
end
local sin = math.sin
function position()
    local IDS, POS, POS2, CLR, CLR2 = ids, fours, fours, fours, fours
    local WGT, WGT2, NML, NML2, RDS, RDS2, MAP, MAP2 = ones, ones, threes, threes, ones, ones, twos, twos
    local OUTPUT = {}
    local ox, oy, oz, ox3, oy3, oz3, ox4, oy4, oz4, oa4, ou, ov
    local ID, X, Y, Z, TX, TY, TZ, TX2, TY2, TZ2 = 0, 0, 0, 0, 0, 0, 0, 0, 0, 0
    local WEIGHT, WEIGHT2, NX, NY, NZ, NX2, NY2, NZ2 = 0, 0, 0, 0, 0, 0, 0, 0
    local CR, CG, CB, ALPHA, CR2, CG2, CB2, ALPHA2 = 0, 0, 0, 0, 0, 0, 0, 0
    local RADIUS, RADIUS2, MAPU, MAPV, MAPU2, MAPV2 = 0, 0, 0, 0, 0, 0
    for i = 1, N do
        ID = IDS[i]
        ox = i * 3 - 2; oy = ox + 1; oz = ox + 2
        ox3 = IDS[i] * 3 + 1; oy3 = ox3 + 1; oz3 = ox3 + 2
        ox4 = IDS[i] * 4 + 1; oy4 = ox4 + 1; oz4 = ox4 + 2; oa4 = ox4 + 3
        ou = i * 2 - 1; ov = ou + 1
        TX = POS[ox4]; X = TX; TY = POS[oy4]; Y = TY; TZ = POS[oz4]; Z = TZ
        TX2 = POS2[ox4]; TY2 = POS2[oy4]; TZ2 = POS2[oz4]
        CR = CLR[ox4]; CG = CLR[oy4]; CB = CLR[oz4]; ALPHA = CLR[oa4]
        CR2 = CLR2[ox4]; CG2 = CLR2[oy4]; CB2 = CLR2[oz4]; ALPHA2 = CLR2[oa4]
        WEIGHT = WGT[IDS[i] + 1]; WEIGHT2 = WGT2[IDS[i] + 1]
        NX = NML[ox3]; NY = NML[oy3]; NZ = NML[oz3]
        NX2 = NML2[ox3]; NY2 = NML2[oy3]; NZ2 = NML2[oz3]
        RADIUS = RDS[IDS[i] + 1]; RADIUS2 = RDS2[IDS[i] + 1]
        MAPU = MAP[ou]; MAPV = MAP[ov]; MAPU2 = MAP2[ou]; MAPV2 = MAP2[ov]
        X = TX + sin(TY * 2.5) * 0.25
        Y = TY * 1.5 - NX * 0.1
        Z = TZ + (NY - NZ) * WEIGHT / 3.0
        OUTPUT[ox] = X; OUTPUT[oy] = Y; OUTPUT[oz] = Z
    end
    return OUTPUT
end
function points()
    local out = position()
    return #out + out[101] + out[150002] + out[300000]
end)";

constexpr const char* fibMel = R"(
global proc int fib(int $n) {
    if ($n < 2) return $n;
    return fib($n - 1) + fib($n - 2);
}
global proc int fib30() { return fib(30); })";

constexpr const char* fibLua = R"(
local function fib(n)
    if n < 2 then return n end
    return fib(n - 1) + fib(n - 2)
end
function fib30() return fib(30) end)";

constexpr const char* sieveMel = R"(
global proc int sieve() {
    int $composite[];
    int $count, $i, $k;
    for ($i = 2; $i <= 1000000; $i++) {
        if ($composite[$i]) continue;
        $count++;
        for ($k = $i + $i; $k <= 1000000; $k += $i) $composite[$k] = 1;
    }
    return $count;
})";

constexpr const char* sieveLua = R"(
function sieve()
    local composite = {}
    local count = 0
    for i = 1, 1000000 do composite[i] = false end
    for i = 2, 1000000 do
        if not composite[i] then
            count = count + 1
            for k = i + i, 1000000, i do composite[k] = true end
        end
    end
    return count
end)";

constexpr const char* appendMel = R"(
global proc float append() {
    float $a[];
    int $i;
    for ($i = 0; $i < 1000000; $i++) $a[size($a)] = $i * 0.5;
    return size($a) + $a[999999];
})";

constexpr const char* appendLua = R"(
function append()
    local a = {}
    for i = 0, 999999 do a[#a + 1] = i * 0.5 end
    return #a + a[1000000]
end)";

constexpr const char* textMel = R"(
global proc int text() {
    string $s;
    int $i;
    for ($i = 0; $i < 100000; $i++) $s += "piece" + $i + " ";
    string $pieces[];
    tokenize($s, " ", $pieces);
    return size($pieces) + size($s) + size($pieces[99999]);
})";

constexpr const char* textLua = R"(
function text()
    local t = {}
    for i = 0, 99999 do t[#t + 1] = "piece" .. i .. " " end
    local s = table.concat(t)
    local pieces = {}
    for piece in s:gmatch("%S+") do pieces[#pieces + 1] = piece end
    return #pieces + #s + #pieces[100000]
end)";

constexpr const char* sortMel = R"(
global proc float sorted() {
    float $a[];
    int $i;
    int $seed = 1;
    for ($i = 0; $i < 200000; $i++) {
        $seed = ($seed * 171 + 11213) % 53125;
        $a[$i] = $seed * 0.25;
    }
    $a = sort($a);
    return $a[0] + $a[100000] * 2 + $a[199999] * 3;
})";

constexpr const char* sortLua = R"(
function sorted()
    local a = {}
    local seed = 1
    for i = 1, 200000 do
        seed = (seed * 171 + 11213) % 53125
        a[i] = seed * 0.25
    end
    table.sort(a)
    return a[1] + a[100001] * 2 + a[200000] * 3
end)";

constexpr Program list[] = {
    {"points", "MEL: generated position procedure, 100,000 points", 0.5, pointsMel, pointsLua},
    {"fib30", "MEL: recursive fib(30)", 0.5, fibMel, fibLua},
    {"sieve", "MEL: sieve to a million", 0.5, sieveMel, sieveLua},
    {"append", "MEL: appending a million floats", 1.0, appendMel, appendLua},
    {"text", "MEL: a string of 100,000 pieces, built and split", 1.0, textMel, textLua},
    {"sorted", "MEL: sorting 200,000 floats", 1.0, sortMel, sortLua},
};

} // namespace

std::span<const Program> programs() { return list; }

std::string positionProcedure() {
    return "global proc float[] position_POINT()\n{\nstring $NODE=\"point1\";\nfloat $FF=1;int $F=$FF;\n"
           "int $IDS[]=`getAttr ids`;int $MAPID[];float $POS[]=`getAttr fours`;float $POS2[]=`getAttr fours`;"
           "float $CLR[] = `getAttr fours`;float $CLR2[] = `getAttr fours`;float $WGT[]=`getAttr ones`;"
           "float $WGT2[]=`getAttr ones`;float $NML[]=`getAttr threes`;float $NML2[]=`getAttr threes`;"
           "float $RDS[]=`getAttr ones`;float $RDS2[]=`getAttr ones`;float $MAP[]=`getAttr twos`;"
           "float $MAP2[]=`getAttr twos`;\n"
           "int $ox,$oy,$oz,$ox3,$oy3,$oz3,$ox4,$oy4,$oz4,$ou,$ov;\n"
           "float $OUTPUT[" +
           std::to_string(4 * kPoints) +
           "],$ID,$MP,$X,$Y,$Z,$TX,$TY,$TZ,$TX2,$TY2,$TZ2,$WEIGHT,$WEIGHT2,$NX,$NY,$NZ,$NX2,$NY2,$NZ2,$CR,$"
           "CB,"
           "$CG,$CR2,$CB2,$CG2,$RADIUS,$RADIUS2,$MAPU,$MAPV,$MAPU2,$MAPV2;\n"
           "$ID=$X=$Y=$Z=$TX=$TY=$TZ=$TX2=$TY2=$TZ2=$R=$G=$B=$A=$R2=$G2=$B2=$A2=$WEIGHT=$WEIGHT2=$NX=$NY=$NZ="
           "$NX2=$NY2=$NZ2=$CR=$CB=$CG=$CR2=$CB2=$CG2=$RADIUS=$RADIUS2=$MAPU=$MAPV=$MAPU2=$MAPV2=0;\n"
           "// START BLOCK (this code is executed before the main loop)\n;\n"
           "for($i=0;$i<" +
           std::to_string(kPoints) +
           ";$i++)\n{\n$ID=(float)$IDS[$i];\n"
           "$ox=$i*3;$oy=$ox+1;$oz=$ox+2;$ox3=$IDS[$i]*3;$oy3=$ox3+1;$oz3=$ox3+2;$ox4=$IDS[$i]*4;$oy4=$ox4+1;"
           "$oz4=$ox4+2;$oa4=$ox4+3;$ou=$i*2;$ov=$ou+1;\n"
           "$X=$TX=$POS[$ox4];$Y=$TY=$POS[$oy4];$Z=$TZ=$POS[$oz4];$TX2=$POS2[$ox4];$TY2=$POS2[$oy4];"
           "$TZ2=$POS2[$oz4];\n"
           "$CR=$CLR[$ox4];$CG=$CLR[$oy4];$CB=$CLR[$oz4];$ALPHA=$CLR[$oa4];$CR2=$CLR2[$ox4];"
           "$CG2=$CLR2[$oy4];$CB2=$CLR2[$oz4];$ALPHA2=$CLR2[$oa4];\n"
           "$WEIGHT=$WGT[$IDS[$i]];$WEIGHT2=$WGT2[$IDS[$i]];\n"
           "$NX=$NML[$ox3];$NY=$NML[$oy3];$NZ=$NML[$oz3];$NX2=$NML2[$ox3];$NY2=$NML2[$oy3];"
           "$NZ2=$NML2[$oz3];\n"
           "$RADIUS=$RDS[$IDS[$i]];$RADIUS2=$RDS2[$IDS[$i]];\n"
           "$MAPU=$MAP[$ou];$MAPV=$MAP[$ov];$MAPU2=$MAP2[$ou];$MAPV2=$MAP2[$ov];\n"
           "// POINT POSITION\n"
           "$X=$TX+sin($TY*2.5)*0.25;\n$Y=$TY*1.5-$NX*0.1;\n$Z=$TZ+($NY-$NZ)*$WEIGHT/3.0;\n"
           "$OUTPUT[$ox]=$X;$OUTPUT[$oy]=$Y;$OUTPUT[$oz]=$Z;\n}\n"
           "// END BLOCK (this code is executed after the main loop)\n;\nreturn $OUTPUT;\n}\n";
}

} // namespace vesk::bench
