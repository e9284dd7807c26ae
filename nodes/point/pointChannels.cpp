#include "nodes/point/pointChannels.h"

namespace vesk::nodes {

void fitToPoints(PointChannels& channels, unsigned pointCount) {
    channels.weights.setLength(pointCount);
    channels.radii.setLength(pointCount);
    channels.sharedMap.setLength(2 * pointCount);
    const unsigned present = channels.rgba.length() / 4;
    channels.rgba.setLength(4 * present); // no part of a colour
    channels.rgba.setLength(4 * pointCount);
    for (unsigned i = present; i < pointCount; ++i)
        channels.rgba[4 * i + 3] = 1;
}

MDoubleArray interleaved(const MFloatArray& us, const MFloatArray& vs, const MIntArray& ids) {
    MDoubleArray map(2 * ids.length());
    for (unsigned i = 0; i < ids.length(); ++i) {
        const auto id = static_cast<unsigned>(ids[i]);
        if (id >= us.length()) continue;
        map[2 * i] = static_cast<double>(us[id]);
        map[2 * i + 1] = static_cast<double>(vs[id]);
    }
    return map;
}

void storePositions(const MDoubleArray& result, const MIntArray& ids, MPointArray& points) {
    for (unsigned i = 0; i < ids.length(); ++i) {
        MPoint& point = points[static_cast<unsigned>(ids[i])];
        point.x = result[3 * i];
        point.y = result[3 * i + 1];
        point.z = result[3 * i + 2];
    }
}

void storeNumbers(const MDoubleArray& result, const MIntArray& ids, MDoubleArray& numbers) {
    for (unsigned i = 0; i < ids.length(); ++i)
        numbers[static_cast<unsigned>(ids[i])] = result[i];
}

void storeColors(const MDoubleArray& result, const MIntArray& ids, MDoubleArray& rgba) {
    for (unsigned i = 0; i < ids.length(); ++i) {
        for (unsigned k = 0; k < 4; ++k)
            rgba[4 * static_cast<unsigned>(ids[i]) + k] = result[4 * i + k];
    }
}

void storeNormals(const MDoubleArray& result, const MIntArray& ids, MVectorArray& normals) {
    for (unsigned i = 0; i < ids.length(); ++i) {
        normals[static_cast<unsigned>(ids[i])] = MVector(result[3 * i], result[3 * i + 1], result[3 * i + 2]);
    }
}

void storeUvs(const MDoubleArray& result, const MIntArray& ids, MFloatArray& us, MFloatArray& vs) {
    for (unsigned i = 0; i < ids.length(); ++i) {
        us[static_cast<unsigned>(ids[i])] = static_cast<float>(result[2 * i]);
        vs[static_cast<unsigned>(ids[i])] = static_cast<float>(result[2 * i + 1]);
    }
}

MColorArray colorsOf(const MDoubleArray& result) {
    MColorArray colors(result.length() / 4);
    const auto at = [&](unsigned i) { return static_cast<float>(result[i]); };
    for (unsigned i = 0; i < colors.length(); ++i)
        colors[i] = MColor(at(4 * i), at(4 * i + 1), at(4 * i + 2), at(4 * i + 3));
    return colors;
}

MVectorArray vectorsOf(const MDoubleArray& result) {
    MVectorArray vectors(result.length() / 3);
    for (unsigned i = 0; i < vectors.length(); ++i)
        vectors[i] = MVector(result[3 * i], result[3 * i + 1], result[3 * i + 2]);
    return vectors;
}

} // namespace vesk::nodes
