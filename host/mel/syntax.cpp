// Memory of the tree: taken from the front of large blocks, given back when the last node of the thread goes.

#include "host/mel/syntax.h"

#include <cstddef>

namespace vesk::mel {

namespace {

class TreeMemory {
  public:
    void* take(std::size_t size) {
        size = (size + kAlignment - 1) / kAlignment * kAlignment;
        if (size > room_) addBlock(size);
        ++nodes_;
        room_ -= size;
        return blocks_.back().get() + (blockSize_ - size - room_);
    }

    void giveBack() noexcept {
        if (--nodes_ > 0) return;
        if (blocks_.size() > 1) {
            blocks_.clear();
            blockSize_ = 0;
        }
        room_ = blockSize_;
    }

  private:
    static constexpr std::size_t kAlignment = alignof(std::max_align_t);
    static constexpr std::size_t kBlock = std::size_t{1} << 20U;

    void addBlock(std::size_t size) {
        blockSize_ = size > kBlock ? size : kBlock;
        blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(blockSize_));
        room_ = blockSize_;
    }

    std::vector<std::unique_ptr<std::byte[]>> blocks_;
    std::size_t blockSize_ = 0; ///< of the last block
    std::size_t room_ = 0;      ///< left in it
    std::size_t nodes_ = 0;
};

thread_local TreeMemory memory;

} // namespace

void* TreeNode::operator new(std::size_t size) { return memory.take(size); }

void TreeNode::operator delete(void*) noexcept { memory.giveBack(); }

} // namespace vesk::mel
