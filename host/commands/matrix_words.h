#pragma once

#include "host/commands/words.h"
#include "host/data/data.h"

namespace vesk::commands {

/// A matrix: 16 numbers row by row; or the word `xform` and the components of a transform, in order: scale,
/// rotation (radians), rotation order (0 is xyz), translation, shear, scale pivot, scale pivot translation,
/// rotate pivot, rotate pivot translation (3 numbers each but the order), rotation orientation and joint
/// orientation (quaternions x y z w), inverse scale of the parent (3), and whether that scale counts.
Result<Ref<Data>> readMatrix(Words& words);

} // namespace vesk::commands
