#pragma once
// Polygon meshes as OBJ and PLY files, in and out.

#include "host/core/outcome.h"
#include "host/core/result.h"
#include "host/geometry/mesh.h"

#include <filesystem>
#include <string_view>

namespace vesk::formats {

// What both readers do. Numbers that are used must be finite and fit into a float; those of what is skipped
// may be anything. Corners that repeat their neighbour and faces with fewer than three corners are left out,
// with what lies on them. A fault gives no mesh but a message that begins with the file and the line
// ("a.obj:12:") or, in binary data, the byte ("a.ply: byte 512:"). `name` stands for the file in messages.

/// OBJ: `v`, `vt`, `vn`, `f`; indices may be negative or point ahead. Several objects and groups become one
/// mesh. Other statements (materials, smoothing groups, lines, curves) are passed over. `vt` fill the UV set
/// "map1", `vn` become locked normals of their corners. `v` with three more numbers has a colour, with four a
/// colour with alpha, in the set "colorSet1"; a single fourth number, a weight, is dropped.
Result<geom::Mesh> readObj(const std::filesystem::path& path);
Result<geom::Mesh> parseObj(std::string_view text, const std::filesystem::path& name);

/// PLY 1.0: ascii, one row a line, and binary of either byte order. Elements and properties may come in any
/// order; unknown ones are passed over. Of `vertex`: x y z; nx ny nz (locked normals of all its corners); s
/// t, u v or texture_u texture_v; red green blue alpha (also diffuse_red ...), integers scaled so that the
/// largest of their type is 1, floats as they are, in the set "colorSet1". Of `face`: vertex_index or
/// vertex_indices; texcoord, a list of u v per corner, empty where unmapped, which comes before UVs per
/// vertex.
Result<geom::Mesh> readPly(const std::filesystem::path& path);
Result<geom::Mesh> parsePly(std::string_view bytes, const std::filesystem::path& name);

// Both writers write the current UV set, with a face's UVs only when all its corners are mapped, and of the
// current colour set the mean at each vertex, white where nothing is set and nothing at all when no corner
// is. A mesh with a number that is not finite is refused. Else they fail as `AtomicFile` says.

struct MeshWriteOptions {
    bool normals = true;
};

/// Normals per corner, locked or not; equal ones at a vertex are listed once. Colours as three numbers after
/// the point, without alpha. Numbers read back as the same bits.
Outcome writeObj(const std::filesystem::path& path, const geom::Mesh& mesh,
                 const MeshWriteOptions& options = {});

enum class PlyEncoding { Binary, Ascii };

/// Binary is little-endian. Normals only when every vertex has one normal in all its corners, since a PLY
/// vertex has one. UVs the same way as s t of the vertices, else as texcoord of the faces. Colours with
/// alpha, as bytes, or as floats when any component leaves 0 to 1. In ascii, numbers read back as the same
/// bits.
Outcome writePly(const std::filesystem::path& path, const geom::Mesh& mesh,
                 PlyEncoding encoding = PlyEncoding::Binary, const MeshWriteOptions& options = {});

} // namespace vesk::formats
