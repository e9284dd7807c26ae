#pragma once

#include <maya/MDataHandle.h>

class MDataBlock;

namespace vesk::api {
class BuiltElements;
} // namespace vesk::api

/// Elements of a multi in the making. They show only once `MArrayDataHandle::set` took the builder.
/// Copies work on the same elements.
class MArrayDataBuilder {
  public:
    MArrayDataBuilder() = default;
    /// No elements; `count` is a hint.
    MArrayDataBuilder(MDataBlock* block, const MObject& attribute, unsigned int count,
                      MStatus* status = nullptr);

    /// The element with a logical index, new with the attribute's default if it was missing.
    MDataHandle addElement(unsigned int index, MStatus* status = nullptr);
    /// A new element behind the highest index.
    MDataHandle addLast(MStatus* status = nullptr);
    MStatus removeElement(unsigned int index);
    unsigned int elementCount(MStatus* status = nullptr) const;
    MStatus setGrowSize(unsigned int) { return {}; }

    /// For the host.
    explicit MArrayDataBuilder(std::shared_ptr<vesk::api::BuiltElements> elements)
        : elements_(std::move(elements)) {}
    const std::shared_ptr<vesk::api::BuiltElements>& hostElements() const { return elements_; }

  private:
    std::shared_ptr<vesk::api::BuiltElements> elements_; ///< null: a failed builder
};
