#pragma once
// Memory for the registers of running procedures.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vesk::mel {

/// A stack that grows by blocks: what has been handed out never moves, so that a procedure may refer to the
/// registers of its caller. What lies in a block is one row, so that taking and giving back moves one
/// pointer.
template <class Item>
class FrameStack {
  public:
    FrameStack() {
        addBlock(kUsual);
        enter(0);
    }

    /// Items as they were left by whoever had them before.
    Item* take(std::size_t count) {
        // As addresses: a pointer past the block would be undefined, a difference takes longer.
        if (address(top_) + count * sizeof(Item) > address(end_)) [[unlikely]]
            nextBlock(count);
        Item* const items = top_;
        top_ += count;
        return items;
    }

    /// Gives back everything from `items` on, which a call of `take` returned.
    void release(Item* items) {
        top_ = items;
        if (items == start_) [[unlikely]]
            previousBlock();
    }

  private:
    static constexpr std::size_t kUsual = 4096;

    struct Block {
        std::unique_ptr<Item[]> items;
        std::size_t size = 0;
        Item* top = nullptr; ///< while a later block is in use
    };

    static std::uintptr_t address(const Item* item) { return reinterpret_cast<std::uintptr_t>(item); }

    void addBlock(std::size_t size) { blocks_.push_back({std::make_unique<Item[]>(size), size, nullptr}); }

    void enter(std::size_t block) {
        block_ = block;
        start_ = blocks_[block].items.get();
        end_ = start_ + blocks_[block].size;
        top_ = start_;
    }

    [[gnu::noinline]] void nextBlock(std::size_t count) {
        blocks_[block_].top = top_;
        const std::size_t next = block_ + 1;
        if (next < blocks_.size() && blocks_[next].size < count) blocks_.resize(next);
        if (next == blocks_.size()) addBlock(std::max(count, kUsual));
        enter(next);
    }

    [[gnu::noinline]] void previousBlock() {
        if (block_ == 0) return;
        enter(block_ - 1);
        top_ = blocks_[block_].top;
    }

    std::vector<Block> blocks_;
    std::size_t block_ = 0; ///< the one in use
    Item* start_ = nullptr;
    Item* top_ = nullptr;
    Item* end_ = nullptr;
};

} // namespace vesk::mel
