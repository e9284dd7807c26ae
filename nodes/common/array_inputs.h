#pragma once
// Array inputs, read without a copy where the kind is the one asked for.

#include "nodes/common/arrays.h"

#include <maya/MPlug.h>

#include <initializer_list>

namespace vesk::nodes {

/// Vectors as they are, points without their w; empty for any other data. Vectors are a view of what the
/// input holds, for reading only.
MVectorArray vectorsIn(MObject data);
/// Doubles as a view, ints as a converted copy; empty for any other data.
MDoubleArray doublesIn(MObject data);

/// Tells that an array input does not go with the points: `node: attribute array length does not match the
/// point count.`
void warnOfLength(const MString& nodeName, const char* attribute);

/// Whether the length is right; if not, there is a warning, unless the array is empty, as when nothing feeds
/// it.
bool fitsPoints(const MString& nodeName, const char* attribute, std::size_t length, std::size_t wanted);

/// Whether the plug belongs to one of these attributes, as an element or a child of it too.
bool isOneOf(const MPlug& plug, std::initializer_list<const MObject*> attributes);

} // namespace vesk::nodes
