#pragma once
// A run of values that several data objects hold until one of them writes.

#include <memory>
#include <utility>
#include <vector>

namespace vesk {

/// Copying shares; a writer that is not the only holder takes a copy first. Views that were handed out count
/// as no holder: they show what their holder writes, and keep what they saw once that holder has split off.
template <class T>
class SharedValues {
  public:
    using Values = std::vector<T>;

    SharedValues() : block_(std::make_shared<Block>()) {}
    explicit SharedValues(Values values) : SharedValues() { block_->values = std::move(values); }
    SharedValues(const SharedValues& other) : block_(other.block_) { ++block_->holders; }
    SharedValues& operator=(SharedValues other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~SharedValues() { --block_->holders; }

    const Values& read() const { return block_->values; }
    Values& write() {
        if (isShared()) *this = SharedValues(block_->values);
        return block_->values;
    }
    /// Replaces the values without copying those that were there.
    void set(Values values) {
        if (isShared()) {
            *this = SharedValues(std::move(values));
        } else {
            block_->values = std::move(values);
        }
    }

    bool isShared() const { return block_->holders > 1; }
    std::shared_ptr<Values> view() const { return {block_, &block_->values}; }

  private:
    struct Block {
        Values values;
        int holders = 1;
    };
    std::shared_ptr<Block> block_; ///< never null
};

} // namespace vesk
