#pragma once

#include <maya/MFnData.h>
#include <maya/MMatrix.h>

namespace vesk {
class GeometryData;
}

/// Function set of geometry data: its matrix to the world and its numbered groups of components. Calls that
/// write fail with `kFailure` on data from a node's input.
class MFnGeometryData : public MFnData {
  public:
    MFnGeometryData() = default;
    explicit MFnGeometryData(MObject& object, MStatus* status = nullptr);
    explicit MFnGeometryData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kGeometryData; }

    MStatus getMatrix(MMatrix& matrix) const;
    MStatus setMatrix(const MMatrix& matrix);
    bool matrixIsIdentity(MStatus* status = nullptr) const;
    bool matrixIsNotIdentity(MStatus* status = nullptr) const;

    bool hasObjectGroup(unsigned int groupId, MStatus* status = nullptr) const;
    unsigned int objectGroupCount(MStatus* status = nullptr) const;
    /// Id of a group by position; 0, and `kInvalidParameter`, past the end.
    unsigned int objectGroup(unsigned int position, MStatus* status = nullptr) const;
    /// No effect when the group is there.
    MStatus addObjectGroup(unsigned int groupId);
    MStatus removeObjectGroup(unsigned int groupId);
    /// `kFailure` when there is no such group, or one of the new id.
    MStatus changeObjectGroupId(unsigned int groupId, unsigned int newId);
    /// Takes over the groups of other geometry in the place of its own.
    MStatus copyObjectGroups(const MObject& from);

    /// A copy of what a group holds; null when that is nothing.
    MObject objectGroupComponent(unsigned int groupId, MStatus* status = nullptr) const;
    MFn::Type objectGroupType(unsigned int groupId, MStatus* status = nullptr) const;
    // `kFailure` when there is no such group, or it holds components of another kind (joining).
    MStatus addObjectGroupComponent(unsigned int groupId, const MObject& component);
    MStatus setObjectGroupComponent(unsigned int groupId, const MObject& component);
    MStatus removeObjectGroupComponent(unsigned int groupId, const MObject& component);

  protected:
    bool accepts(const vesk::Object& object) const override;

  private:
    vesk::GeometryData* geometry() const;
};
