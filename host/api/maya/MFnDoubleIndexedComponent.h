#pragma once

#include <maya/MFnComponent.h>
#include <maya/MIntArray.h>

/// Function set of components with two indices: surface CVs (u, v), vertices of faces (vertex, face).
/// Elements are unique and ascend by the first index, then by the second.
class MFnDoubleIndexedComponent : public MFnComponent {
  public:
    MFnDoubleIndexedComponent() = default;
    explicit MFnDoubleIndexedComponent(MObject& object, MStatus* status = nullptr);
    explicit MFnDoubleIndexedComponent(const MObject& object, MStatus* status = nullptr);

    /// An empty component; `kInvalidParameter` for a kind with another number of indices.
    MObject create(MFn::Type kind, MStatus* status = nullptr);
    /// Negative indices are refused with `kInvalidParameter`.
    MStatus addElement(int u, int v);
    /// Arrays of one length, or `kInvalidParameter`.
    MStatus addElements(const MIntArray& u, const MIntArray& v);
    /// `kInvalidParameter` past the end.
    MStatus getElement(int position, int& u, int& v) const;
    MStatus getElements(MIntArray& u, MIntArray& v) const;
    /// Stands for all pairs below these numbers from now on.
    MStatus setCompleteData(int countU, int countV);
    MStatus getCompleteData(int& countU, int& countV) const;

  private:
    bool accepts(const vesk::Object& object) const override;
};
