#pragma once
// Points of shapes by name, as move, xform and pointPosition reach them.

#include "host/commands/command_spec.h"
#include "host/data/component.h"
#include "host/graph/selection.h"

#include <maya/MPoint.h>

#include <functional>

namespace vesk::commands {

/// Components of shapes that a name such as `pCube1.vtx[0:3]`, `curve1.cv[2]` means. Faces and edges stand
/// for their vertices. Throws `mel::Error` when there are none.
std::vector<graph::SelectionItem> pointsNamed(const CommandContext& context, std::string_view name);

/// The points of the item's shape that its components stand for, as components of the points' kind: faces and
/// edges for their vertices. Null when there are no components, or of another kind.
Ref<Component> pointsOf(const graph::SelectionItem& item);

/// Positions in the order of the components, in object or world space.
std::vector<MPoint> readPoints(const std::vector<graph::SelectionItem>& points, bool world);

/// Replaces each point by what `change` makes of it: as a tweak on the shape, so that history below it stays.
void editPoints(const std::vector<graph::SelectionItem>& points, bool world,
                const std::function<MPoint(const MPoint&)>& change);

} // namespace vesk::commands
