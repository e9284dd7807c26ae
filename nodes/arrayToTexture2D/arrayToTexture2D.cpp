#include "nodes/arrayToTexture2D/arrayToTexture2D.h"

#include "nodes/arrayToTexture2D/scatteredWeights.h"
#include "nodes/common/arrays.h"
#include "nodes/common/attributes.h"

#include <algorithm>
#include <cmath>

using namespace vesk::nodes;

MObject arrayToTexture2D::inMapPP;
MObject arrayToTexture2D::inWeightPP;
MObject arrayToTexture2D::uvCoord;
MObject arrayToTexture2D::uCoord;
MObject arrayToTexture2D::vCoord;
MObject arrayToTexture2D::uvFilterSize;
MObject arrayToTexture2D::uvFilterSizeX;
MObject arrayToTexture2D::uvFilterSizeY;
MObject arrayToTexture2D::interpolation;
MObject arrayToTexture2D::power;
MObject arrayToTexture2D::outColor;

MTypeId arrayToTexture2D::id(0x11576e);

void* arrayToTexture2D::creator() { return new arrayToTexture2D; }

MStatus arrayToTexture2D::initialize() {
    AttributeTable t;
    t.typed(inMapPP, "inMapPP", "impp", MFnData::kDoubleArray);
    t.typed(inWeightPP, "inWeightPP", "iwpp", MFnData::kDoubleArray);
    t.real(uCoord, "uCoord", "u", 0).keyable().hidden();
    t.real(vCoord, "vCoord", "v", 0).keyable().hidden();
    t.tuple(uvCoord, "uvCoord", "uv", {&uCoord, &vCoord}).keyable().hidden();
    t.real(uvFilterSizeX, "uvFilterSizeX", "fsx", 0).keyable().hidden();
    t.real(uvFilterSizeY, "uvFilterSizeY", "fsy", 0).keyable().hidden();
    t.tuple(uvFilterSize, "uvFilterSize", "fs", {&uvFilterSizeX, &uvFilterSizeY}).keyable().hidden();
    // A change of the interpolation alone does not make the colour dirty: part of the contract.
    t.enumeration(interpolation, "interpolation", "i", {"nearest-neighbor", "distance weighted"}, 1)
        .keyable()
        .aside();
    t.real(power, "power", "p", 7).keyable();
    t.color(outColor, "outColor", "oc", 0, 0, 0).output();
    return t.finish();
}

// The renderer may sample from several threads: a compute keeps everything on its stack.
void arrayToTexture2D::postConstructor() { setMPSafe(true); }

MStatus arrayToTexture2D::compute(const MPlug& plug, MDataBlock& block) {
    if (plug != outColor && !(plug.isChild() && plug.parent() == outColor)) return MS::kUnknownParameter;
    ArrayView<MFnDoubleArrayData> map(block.inputValue(inMapPP).data());
    ArrayView<MFnDoubleArrayData> weights(block.inputValue(inWeightPP).data());
    if (!areScatteredWeights(map.values(), weights.values())) return MS::kSuccess;
    const float2& uv = block.inputValue(uvCoord).asFloat2();
    const float u = uv[0] - std::floor(uv[0]);
    const float v = uv[1] - std::floor(uv[1]);
    const int chosen = std::clamp<int>(block.inputValue(interpolation).asShort(), 0, 1);
    const auto value = static_cast<float>(scatteredWeight(map.values(), weights.values(), u, v,
                                                          static_cast<TextureInterpolation>(chosen),
                                                          block.inputValue(power).asFloat()));
    MDataHandle color = block.outputValue(outColor);
    color.set(value, value, value);
    color.setClean();
    return MS::kSuccess;
}
