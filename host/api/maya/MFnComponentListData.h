#pragma once

#include <maya/MFnData.h>

/// Function set of a list of components, one entry a kind. Components go in and come out as copies.
class MFnComponentListData : public MFnData {
  public:
    MFnComponentListData() = default;
    explicit MFnComponentListData(MObject& object, MStatus* status = nullptr);
    explicit MFnComponentListData(const MObject& object, MStatus* status = nullptr);
    MFn::Type type() const override { return MFn::kComponentListData; }

    unsigned int length(MStatus* status = nullptr) const;
    /// A copy of an entry, for reading; null past the end.
    MObject operator[](unsigned int index) const;
    /// Whether the entry of the same kind holds every element of the component; false for an empty one.
    bool has(const MObject& component, MStatus* status = nullptr) const;
    /// Joins with the entry of the same kind, or appends one.
    MStatus add(const MObject& component);
    /// Takes the elements from the entry of the same kind; an entry left empty disappears. `kFailure` when
    /// there is no such entry.
    MStatus remove(const MObject& component);
    MStatus remove(unsigned int index);
    MStatus clear();
    MObject create(MStatus* status = nullptr);

  private:
    bool accepts(const vesk::Object& object) const override;
};
