#pragma once

#include <maya/MFnComponent.h>
#include <maya/MIntArray.h>

/// Function set of components with three indices: lattice points (s, t, u). Elements are unique and ascend by
/// the first index, then the second, then the third.
class MFnTripleIndexedComponent : public MFnComponent {
  public:
    MFnTripleIndexedComponent() = default;
    explicit MFnTripleIndexedComponent(MObject& object, MStatus* status = nullptr);
    explicit MFnTripleIndexedComponent(const MObject& object, MStatus* status = nullptr);

    /// An empty component; `kInvalidParameter` for a kind with another number of indices.
    MObject create(MFn::Type kind, MStatus* status = nullptr);
    /// Negative indices are refused with `kInvalidParameter`.
    MStatus addElement(int s, int t, int u);
    /// Arrays of one length, or `kInvalidParameter`.
    MStatus addElements(const MIntArray& s, const MIntArray& t, const MIntArray& u);
    /// `kInvalidParameter` past the end.
    MStatus getElement(int position, int& s, int& t, int& u) const;
    MStatus getElements(MIntArray& s, MIntArray& t, MIntArray& u) const;
    /// Stands for all triples below these numbers from now on.
    MStatus setCompleteData(int countS, int countT, int countU);
    MStatus getCompleteData(int& countS, int& countT, int& countU) const;

  private:
    bool accepts(const vesk::Object& object) const override;
};
