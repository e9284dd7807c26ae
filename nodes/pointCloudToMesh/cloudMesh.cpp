#include "nodes/pointCloudToMesh/cloudMesh.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vesk::nodes {

CloudFaces consecutiveFaces(std::size_t pointCount, int size) {
    const auto corners = static_cast<std::size_t>(std::max(size, 3));
    CloudFaces faces;
    faces.counts.assign(pointCount / corners, static_cast<int>(corners));
    faces.connects.resize(faces.counts.size() * corners);
    std::iota(faces.connects.begin(), faces.connects.end(), 0);
    faces.pointsLeft = pointCount % corners;
    return faces;
}

CloudFaces gridFaces(std::size_t pointCount, int columns) {
    const auto width = static_cast<std::size_t>(std::max(columns, 2));
    const std::size_t rows = pointCount / width;
    CloudFaces faces;
    faces.pointsLeft = rows < 2 ? pointCount : pointCount % width;
    if (rows < 2) return faces;
    faces.counts.assign((rows - 1) * (width - 1), 4);
    faces.connects.reserve(4 * faces.counts.size());
    for (std::size_t row = 0; row + 1 < rows; ++row) {
        for (std::size_t column = 0; column + 1 < width; ++column) {
            const auto corner = static_cast<int>(row * width + column),
                       above = corner + static_cast<int>(width);
            for (const int vertex : {corner, corner + 1, above + 1, above})
                faces.connects.push_back(vertex);
        }
    }
    return faces;
}

CloudFaces cardFaces(std::size_t cardCount) { return consecutiveFaces(4 * cardCount, 4); }

std::vector<MVector> cardCorners(std::span<const MVector> points, std::span<const MVector> normals,
                                 double size) {
    std::vector<MVector> corners;
    corners.reserve(4 * points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        MVector normal = normals.empty() ? MVector::zAxis : normals[i];
        const double length = normal.length();
        normal = std::isnormal(length) ? normal / length : MVector::zAxis;
        const MVector upwards = std::abs(normal.y) < 0.999 ? MVector::yAxis : MVector::zAxis;
        MVector right = upwards ^ normal;
        right.normalize();
        const MVector up = (normal ^ right) * (size / 2);
        right *= size / 2;
        for (const MVector& away : {-right - up, right - up, right + up, up - right})
            corners.push_back(points[i] + away);
    }
    return corners;
}

} // namespace vesk::nodes
