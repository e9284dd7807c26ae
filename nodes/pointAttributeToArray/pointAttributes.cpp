#include "nodes/pointAttributeToArray/pointAttributes.h"

#include <maya/MMatrix.h>
#include <maya/MTransformationMatrix.h>
#include <maya/MVector.h>

#include <algorithm>

namespace vesk::nodes {

namespace {

constexpr double kShortest = 0.00001;   ///< below this a sum of directions has cancelled out
constexpr double kSmallestAngle = 0.01; ///< radians between normal and tangent
constexpr double kLargestAngle = 3.13;
constexpr double kDegreesPerRadian = 57.29582;

/// Rows of the rotation by `rotationOrder`: 0 normal, 1 tangent, 2 binormal.
constexpr int kRowOrders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};

/// The corners of one vertex.
struct Corners {
    const unsigned* first;
    unsigned count;

    /// The one at an offset, which is lowered for good where the vertex has fewer faces.
    Corners single(int& offset) const {
        if (count == 0) return *this;
        offset = std::min(offset, static_cast<int>(count) - 1);
        return {first + offset, 1};
    }
};

class Walk {
  public:
    Walk(const PointGeometry& geometry, const PointSettings& settings, PointArrays& out)
        : geometry_(geometry), settings_(settings), out_(out),
          normalOffset_(std::max(settings.normalIdOffset, 0)),
          binormalOffset_(std::max(settings.binormalIdOffset, 0)),
          tangentOffset_(std::max(settings.tangentIdOffset, 0)),
          rows_(kRowOrders[std::clamp(settings.rotationOrder, 0, 5)]) {}

    void point(unsigned index) {
        const unsigned vertex = index * geometry_.verticesPerPoint;
        const Corners corners = cornersOf(vertex);
        if (settings_.position) position(index, vertex);
        if (settings_.rotation) rotation(vertex, corners);
        if (settings_.normal) normal(vertex, corners);
        if (settings_.binormal) {
            const Corners used = settings_.averagedBinormals ? corners : corners.single(binormalOffset_);
            out_.binormals.append(sum(binormal_, geometry_.cornerBinormals, used));
        }
        if (settings_.tangent) {
            const Corners used = settings_.averagedTangents ? corners : corners.single(tangentOffset_);
            out_.tangents.append(sum(tangent_, geometry_.cornerTangents, used));
        }
        if (settings_.color) color(vertex);
        if (settings_.mapData) map(corners);
    }

    void placeholder(unsigned index) {
        const MVector zero;
        if (settings_.position) {
            id(index);
            out_.positions.append(zero);
        }
        if (settings_.normal) out_.normals.append(zero);
        if (settings_.binormal) out_.binormals.append(zero);
        if (settings_.tangent) out_.tangents.append(zero);
        if (settings_.color) noColor();
        if (settings_.mapData) out_.mapCounts.append(0);
    }

  private:
    Corners cornersOf(unsigned vertex) const {
        if (vertex + 1 >= geometry_.cornerStart.size()) return {nullptr, 0};
        const unsigned start = geometry_.cornerStart[vertex];
        return {geometry_.corners.data() + start, geometry_.cornerStart[vertex + 1] - start};
    }

    void id(unsigned index) {
        if (geometry_.numCVsInV > 0) {
            out_.ids.append(static_cast<int>(index / geometry_.numCVsInV));
            out_.ids.append(static_cast<int>(index % geometry_.numCVsInV));
        } else {
            // A curve's ids repeat in pairs: part of the contract.
            out_.ids.append(static_cast<int>(geometry_.isCurve ? index >> 1U : index));
        }
    }

    void position(unsigned index, unsigned vertex) {
        id(index);
        out_.positions.append(MVector(geometry_.positions[vertex]));
    }

    /// Adds the corners' vectors to the running sum and brings it to unit length.
    static const MVector& sum(MVector& running, const MFloatVectorArray& vectors, Corners corners) {
        for (unsigned i = 0; i < corners.count; ++i)
            running += MVector(vectors[corners.first[i]]);
        if (running.length() < kShortest) {
            running = corners.count > 0 ? MVector(vectors[corners.first[0]]) : MVector(0, 1, 0);
        }
        running.normalize();
        return running;
    }

    void rotation(unsigned vertex, Corners corners) {
        normal_ = MVector(geometry_.vertexNormals[vertex]);
        const MVector& n = normal_;
        sum(tangent_, geometry_.cornerTangents, corners);
        const double angle = n.angle(tangent_);
        if (angle >= kSmallestAngle && angle <= kLargestAngle) {
            binormal_ = n ^ tangent_;
            binormal_.normalize();
            tangent_ = n ^ binormal_;
            tangent_.normalize();
        } else {
            sum(binormal_, geometry_.cornerBinormals, corners);
            tangent_ = n ^ binormal_;
            tangent_.normalize();
            binormal_ = n ^ tangent_;
            binormal_.normalize();
        }
        const MVector axes[3] = {n, tangent_, binormal_};
        MMatrix matrix;
        for (unsigned row = 0; row < 3; ++row) {
            const MVector& axis = axes[rows_[row]];
            for (unsigned column = 0; column < 3; ++column)
                matrix[row][column] = axis[column];
        }
        double angles[3] = {0, 0, 0};
        MTransformationMatrix::RotationOrder order = MTransformationMatrix::kXYZ;
        MTransformationMatrix(matrix).getRotation(angles, order);
        out_.rotations.append(MVector(angles[0], angles[1], angles[2]) * kDegreesPerRadian);
    }

    void normal(unsigned vertex, Corners corners) {
        if (settings_.averagedNormals) {
            normal_ = MVector(geometry_.vertexNormals[vertex]);
        } else if (corners.count > 0) {
            normal_ = MVector(geometry_.cornerNormals[corners.single(normalOffset_).first[0]]);
        }
        out_.normals.append(normal_);
    }

    void noColor() {
        for (int i = 0; i < 4; ++i)
            out_.rgba.append(0.0);
    }

    void color(unsigned vertex) {
        if (vertex >= geometry_.colors.length()) return noColor();
        const MColor& c = geometry_.colors[vertex];
        if (c.r == -1 && c.g == -1 && c.b == -1 && c.a == -1) return noColor(); // the host's mark for none
        out_.rgba.append(c.r);
        out_.rgba.append(c.g);
        out_.rgba.append(c.b);
        out_.rgba.append(c.a);
    }

    void uv(MDoubleArray& to, int uvId) {
        to.append(geometry_.us[static_cast<unsigned>(uvId)]);
        to.append(geometry_.vs[static_cast<unsigned>(uvId)]);
    }

    void map(Corners corners) {
        if (geometry_.cornerUvIds.empty()) return;
        vertexUvs_.clear();
        for (unsigned i = 0; i < corners.count; ++i) {
            const int uvId = geometry_.cornerUvIds[corners.first[i]];
            if (uvId >= 0 && std::find(vertexUvs_.begin(), vertexUvs_.end(), uvId) == vertexUvs_.end()) {
                vertexUvs_.push_back(uvId);
            }
        }
        // A vertex without UVs appends nothing, not even a count: part of the contract.
        if (vertexUvs_.empty()) return;
        const auto used = geometry_.isCurve ? 1 : vertexUvs_.size();
        out_.mapCounts.append(static_cast<int>(used));
        for (std::size_t i = 0; i < used; ++i) {
            out_.mapIds.append(vertexUvs_[i]);
            uv(out_.maps, vertexUvs_[i]);
        }
        uv(out_.sharedMaps, vertexUvs_[0]);
    }

    const PointGeometry& geometry_;
    const PointSettings& settings_;
    PointArrays& out_;
    int normalOffset_, binormalOffset_, tangentOffset_;
    const int* rows_;
    MVector tangent_, binormal_, normal_;
    std::vector<int> vertexUvs_;
};

} // namespace

void readPointAttributes(const PointGeometry& geometry, const PointSettings& settings,
                         const std::vector<char>& inside, PointArrays& out) {
    Walk walk(geometry, settings, out);
    for (unsigned i = 0; i < geometry.pointCount; ++i) {
        if (inside[i]) {
            walk.point(i);
        } else if (!settings.prune) {
            walk.placeholder(i);
        }
    }
}

} // namespace vesk::nodes
