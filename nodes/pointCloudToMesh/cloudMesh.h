#pragma once
// Faces over a cloud of points, over plain arrays.

#include <maya/MVector.h>

#include <span>
#include <vector>

namespace vesk::nodes {

struct CloudFaces {
    std::vector<int> counts;    ///< corners of each face
    std::vector<int> connects;  ///< vertices of the corners, face by face
    std::size_t pointsLeft = 0; ///< points at the end of the cloud that have no face
};

/// Each `size` points in turn make a face; sizes below 3 count as 3.
CloudFaces consecutiveFaces(std::size_t pointCount, int size);
/// Points in rows of `columns`, quads between them, counter-clockwise where columns run along x and rows
/// along y; fewer than two columns count as 2.
CloudFaces gridFaces(std::size_t pointCount, int columns);
/// One quad over each four vertices.
CloudFaces cardFaces(std::size_t cardCount);

/// The four corners of a square about each point, counter-clockwise against its normal, the second edge up
/// (y, or z where the normal is upright). Without normals, and for one that is zero or no number, it faces z.
std::vector<MVector> cardCorners(std::span<const MVector> points, std::span<const MVector> normals,
                                 double size);

} // namespace vesk::nodes
