#pragma once
// Data objects out of the words behind `-type`: texts, arrays, matrices, component lists.

#include "host/commands/words.h"
#include "host/data/data.h"

#include <maya/MFnNumericData.h>

namespace vesk::commands {

/// Whether `readData` knows the type.
bool isDataType(std::string_view typeName);

/// Takes one object of the type from the stream: `string`, `stringArray`, `doubleArray`, `floatArray`,
/// `Int32Array`, `vectorArray`, `pointArray`, `matrix` (16 numbers, or the components after the word
/// `xform`), `componentList`, `nurbsCurve`, `nurbsSurface`, `mesh`. Counts are checked before memory is taken
/// for them.
Result<Ref<Data>> readData(std::string_view typeName, Words& words);

/// All that is left of the stream, as it was written.
Ref<Data> readOpaque(std::string_view typeName, Words& words);

/// How many numbers a value of a type such as `double3`, `short2` or `reflectanceRGB` has; 0 for other types.
int tupleSize(std::string_view typeName);
/// The numeric type of the same.
MFnNumericData::Type tupleType(std::string_view typeName);

/// Fails when there are words left that nothing has taken.
Outcome checkUsed(Words& words);

/// `Error reading data element number 3: word.`
Outcome badElement(std::size_t position, Words& words);

} // namespace vesk::commands
