#pragma once

#include "host/graph/node_type.h"
#include "host/mel/interpreter.h"

#include <string>
#include <string_view>

namespace vesk::nodes {

/// Type `expression`: `output[]` from `input[]`, the time and the text in `internalExpression`, in which
/// `.I[n]` and `.O[n]` stand for elements of the two. All numbers are in the units of the interface; `time`
/// is in seconds. The text runs as the body of a procedure of the machine, which must outlive the type's
/// nodes; errors are on the log with the node's name in the place of a file's, and the outputs stay as they
/// were.
void registerExpression(graph::TypeRegistry& types, mel::Machine& machine);

/// The definition of a procedure that does what such a text says: `float[] NAME(float seconds, float frame,
/// float[] inputs, float[] outputs)` answers the outputs. The lines are those of the text.
std::string expressionProcedure(const std::string& name, std::string_view text);

} // namespace vesk::nodes
