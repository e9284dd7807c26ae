#pragma once
// Geometry on a wire: a shape in its own space, the matrix that takes it to the world, and groups of its
// points.

#include "host/data/data.h"
#include "host/data/object_groups.h"

#include <maya/MMatrix.h>

#include <utility>

namespace vesk {

/// What all kinds of geometry share.
class GeometryData : public Data {
  public:
    /// From object space to the world; identity unless the geometry came from a plug in world space.
    const MMatrix& matrix() const { return matrix_; }
    bool hasMatrix() const { return hasMatrix_; }
    void setMatrix(const MMatrix& matrix) {
        matrix_ = matrix;
        hasMatrix_ = matrix != MMatrix::identity;
        changed();
    }

    const ObjectGroups& groups() const { return groups_; }
    ObjectGroups& writeGroups() {
        changed();
        return groups_;
    }

    /// The same geometry and groups with the matrix applied to every point; its own matrix is identity. For
    /// reading only. This object itself when there is nothing to apply. Made once, and anew after this object
    /// was written.
    Ref<GeometryData> transformed();

  protected:
    GeometryData() = default;
    /// For clones: everything but the counts and flags of the object itself.
    GeometryData(const GeometryData& other)
        : Data(), matrix_(other.matrix_), hasMatrix_(other.hasMatrix_), groups_(other.groups_),
          transformed_(other.transformed_) {}
    /// A new object with the matrix applied to the geometry alone.
    virtual Ref<GeometryData> applied(const MMatrix& matrix) const = 0;
    void changed() { transformed_ = nullptr; }

  private:
    MMatrix matrix_;
    bool hasMatrix_ = false; ///< other than identity: point queries ask one by one
    ObjectGroups groups_;
    Ref<GeometryData> transformed_; ///< null until asked for
};

/// Geometry held as a value whose copies are cheap and have `transformed(matrix)` and `byteSize()`.
template <class Geometry, MFn::Type kind, MFnData::Type type>
class GeometryDataOf final : public GeometryData {
  public:
    GeometryDataOf() = default;
    explicit GeometryDataOf(Geometry geometry) : geometry_(std::move(geometry)) {}
    GeometryDataOf(const GeometryDataOf&) = default;
    GeometryDataOf& operator=(const GeometryDataOf&) = delete;
    ~GeometryDataOf() override = default;

    const Geometry& geometry() const { return geometry_; }
    /// To be taken anew for each change: what is derived from the geometry is dropped here.
    Geometry& write() {
        changed();
        return geometry_;
    }

    MFn::Type apiType() const override { return kind; }
    MFnData::Type dataType() const override { return type; }
    Ref<Data> clone() const override { return makeRef<GeometryDataOf>(*this); }
    std::size_t byteSize() const override { return geometry_.byteSize(); }

  protected:
    Ref<GeometryData> applied(const MMatrix& matrix) const override {
        return makeRef<GeometryDataOf>(geometry_.transformed(matrix));
    }

  private:
    Geometry geometry_;
};

} // namespace vesk
