#pragma once

#include "host/commands/command_spec.h"

#include <maya/MMatrix.h>

namespace vesk::commands {

/// xform, move, rotate, scale, pointPosition.
void addTransformCommands(mel::CommandTable& table, CommandContext& context);

/// Stores translation, rotation (in the node's own order), scale and shear that give this local matrix with
/// the pivots where they are. Throws `mel::Error` when one of them is locked or fed by a wire.
void setLocalMatrix(graph::DagNode& node, const MMatrix& matrix);

} // namespace vesk::commands
