#pragma once

#include "host/commands/words.h"
#include "host/data/data.h"

namespace vesk::commands {

/// A mesh as one value. Sections in order, each a word, a count and its entries: `v` points x y z, `vn`
/// normals x y z, `vt` texture coordinates u v, `e` edges as two vertices and `hard` or `smooth`; all but the
/// first may be missing. Then the faces, as in `polyFaces` records. Normals are taken when there is one for
/// each corner, in face order.
Result<Ref<Data>> readMesh(Words& words);

} // namespace vesk::commands
