#pragma once

#include <maya/MArrayDataBuilder.h>
#include <maya/MDataHandle.h>
#include <maya/MPlug.h>

#include <vector>

/// The elements of a multi that are connected or hold a value, ascending by logical index, with a place among
/// them.
class MArrayDataHandle {
  public:
    /// The elements behind a handle on a multi; `kInvalidParameter` on anything else.
    explicit MArrayDataHandle(const MDataHandle& handle, MStatus* status = nullptr);

    unsigned int elementCount(MStatus* status = nullptr);
    /// Logical index of the present element.
    unsigned int elementIndex(MStatus* status = nullptr);
    /// `kFailure` at the last element, and the place stays.
    MStatus next() {
        if (place_ + 1 >= count_) return MStatus::kFailure;
        ++place_;
        return {};
    }
    /// To the element with a logical index; `kInvalidParameter` when there is none, and the place stays.
    MStatus jumpToElement(unsigned int index);
    /// To the element at a position; `kInvalidParameter` beyond the count, and the place stays.
    MStatus jumpToArrayElement(unsigned int position);

    /// The present element: evaluated, or as it is. `kFailure` and an empty handle when there is none.
    MDataHandle inputValue(MStatus* status = nullptr);
    MDataHandle outputValue(MStatus* status = nullptr);

    /// A builder with the present elements. The attribute has to use one: `kInvalidParameter` otherwise.
    MArrayDataBuilder builder(MStatus* status = nullptr) const;
    /// Replaces all elements by the builder's.
    MStatus set(const MArrayDataBuilder& builder);
    MStatus setClean();
    MStatus setAllClean();

    /// For the host.
    MArrayDataHandle() = default;
    vesk::graph::Cell* hostCell() const { return multi_.hostCell(); }
    const MDataHandle& hostHandle() const { return multi_; }

  private:
    void collect();
    vesk::graph::Cell* present() const;

    MDataHandle multi_;        ///< empty unless on a multi
    std::vector<int> indices_; ///< left empty where all elements count
    std::size_t count_ = 0;
    std::size_t place_ = 0;
};
