#pragma once
// Memory for the registers of running procedures.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace vesk::mel {

/// A stack that grows by blocks: what has been handed out never moves, so that a procedure may refer to the
/// registers of its caller.
template <class Item>
class FrameStack {
  public:
    struct Mark {
        std::size_t block = 0;
        std::size_t used = 0;
    };

    Mark mark() const { return {block_, used_}; }
    void release(const Mark& mark) {
        block_ = mark.block;
        used_ = mark.used;
    }

    /// Items as they were left by whoever had them before.
    Item* take(std::size_t count) {
        if (blocks_.empty() || used_ + count > blocks_[block_].size) nextBlock(count);
        Item* const items = blocks_[block_].items.get() + used_;
        used_ += count;
        return items;
    }

  private:
    struct Block {
        std::unique_ptr<Item[]> items;
        std::size_t size = 0;
    };

    void nextBlock(std::size_t count) {
        constexpr std::size_t usual = 4096;
        if (!blocks_.empty()) ++block_;
        used_ = 0;
        if (block_ == blocks_.size()) blocks_.emplace_back();
        Block& block = blocks_[block_];
        if (block.size < count) {
            block.size = std::max(count, usual);
            block.items = std::make_unique<Item[]>(block.size);
        }
    }

    std::vector<Block> blocks_;
    std::size_t block_ = 0;
    std::size_t used_ = 0; ///< of the present block
};

} // namespace vesk::mel
