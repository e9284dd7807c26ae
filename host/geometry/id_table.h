#pragma once
// Ids by 64-bit keys, for tables that only grow.

#include <cstdint>
#include <utility>
#include <vector>

namespace vesk::geom {

/// One array with linear probing: about one cache line a look-up. Ids must not be negative.
class IdTable {
  public:
    /// The id of the key, or -1.
    int find(std::uint64_t key) const {
        if (slots_.empty()) return -1;
        return slots_[place(key)].id;
    }

    /// The id's place, for reading and writing, and whether the key is new; then `id` stands there. Good
    /// until the next insertion.
    std::pair<int&, bool> insert(std::uint64_t key, int id) {
        if (2 * (count_ + 1) > slots_.size()) grow();
        Slot& slot = slots_[place(key)];
        const bool isNew = slot.id < 0;
        if (isNew) {
            slot = {key, id};
            ++count_;
        }
        return {slot.id, isNew};
    }

  private:
    struct Slot {
        std::uint64_t key = 0;
        int id = -1;
    };

    /// Where the key is, or would go.
    std::size_t place(std::uint64_t key) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t at = (key * 0x9E3779B97F4A7C15ULL >> 24U) & mask;
        while (slots_[at].id >= 0 && slots_[at].key != key)
            at = (at + 1) & mask;
        return at;
    }

    void grow() {
        std::vector<Slot> old(slots_.empty() ? 64 : 2 * slots_.size());
        old.swap(slots_);
        for (const Slot& slot : old) {
            if (slot.id >= 0) slots_[place(slot.key)] = slot;
        }
    }

    std::vector<Slot> slots_; ///< a power of two, at most half of it taken
    std::size_t count_ = 0;
};

} // namespace vesk::geom
