#!/usr/bin/env bash
# The demo: makes a scene of 120,000 points once, saves it, then opens that file and takes it through the whole road.
# usage: demo.sh VESK OUTPUT-FOLDER
set -euo pipefail
vesk=$1
out=$2
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$out"

# Banner and progress of the two runs are kept beside the results.
run() { "$vesk" run "$@" 2>>"$out/log.txt" || { tail -n 20 "$out/log.txt" >&2; exit 1; }; }
: >"$out/log.txt"

cat >"$out/save.mel" <<MEL
file -rename "$(cd "$out" && pwd)/scene.ma";
file -save -type "mayaAscii";
MEL
run "$here/scene.mel" "$out/save.mel"

start=$(date +%s%N)
run "$out/scene.ma" --time \
    --export "$out/hills.csv=readHills.outPositionPP,readHills.outNormalPP,readHills.outRotationPP" \
    --export "$out/hills_colours.npy=readHills.outRgbaPP" \
    --export "$out/hills_uvs.npy=readHills.outSharedMapPP" \
    --export "$out/flight.json=readFlight.outIdPP,readFlight.outPositionPP,readFlight.outTangentPP" \
    --export "$out/lake.json=readLake.outIdPP,readLake.outPositionPP,readLake.outNormalPP" \
    --export "$out/swarm.json=readSwarm.outPositionPP" \
    --export "$out/hills.ply=hillsShape.worldMesh[0]" \
    --export "$out/hills.obj=hillsShape.worldMesh[0]"
took=$((($(date +%s%N) - start) / 1000000))

grep -A 8 '^node type' "$out/log.txt" | tail -n 9
echo
points=$(($(wc -l <"$out/hills.csv") - 1))
echo "The scene $out/scene.ma ($(du -h "$out/scene.ma" | cut -f1)) went through the road: $points points of its mesh, a curve,"
echo "a surface and particles were read into arrays. Written in $took ms:"
(cd "$out" && du -h hills.csv hills_colours.npy hills_uvs.npy flight.json lake.json swarm.json hills.ply hills.obj | sed 's/^/  /')
