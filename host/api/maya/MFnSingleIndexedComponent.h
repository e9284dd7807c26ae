#pragma once

#include <maya/MFnComponent.h>
#include <maya/MIntArray.h>

/// Function set of components with one index: mesh vertices, edges, faces, UVs, curve CVs, particles.
/// Elements are ascending and unique, in whatever order they were added.
class MFnSingleIndexedComponent : public MFnComponent {
  public:
    MFnSingleIndexedComponent() = default;
    explicit MFnSingleIndexedComponent(MObject& object, MStatus* status = nullptr);
    explicit MFnSingleIndexedComponent(const MObject& object, MStatus* status = nullptr);

    /// An empty component; `kInvalidParameter` for a kind with more indices or none.
    MObject create(MFn::Type kind, MStatus* status = nullptr);
    /// Negative ids are refused with `kInvalidParameter`.
    MStatus addElement(int element);
    MStatus addElements(const MIntArray& elements);
    /// -1 past the end.
    int element(int position, MStatus* status = nullptr) const;
    MStatus getElements(MIntArray& elements) const;
    /// Stands for 0 up to `count` - 1 from now on.
    MStatus setCompleteData(int count);
    MStatus getCompleteData(int& count) const;

  private:
    bool accepts(const vesk::Object& object) const override;
};
