#pragma once
// What a plug holds, as a value of the language.

#include "host/graph/scene.h"
#include "host/mel/value.h"

#include <memory>
#include <vector>

namespace vesk::commands {

/// Elements that one command may ask for by a range.
inline constexpr std::size_t kMostElements = std::size_t{1} << 24;

/// A plug's cell for reading. Where nothing was ever set or computed, a cell of its own that shows the
/// default, so that looking at an element does not make it.
class ReadCell {
  public:
    explicit ReadCell(const graph::Plug& plug);
    /// Null when the index of an element on the way is open.
    graph::Cell* get() const { return cell_; }

  private:
    std::unique_ptr<graph::Cell> spare_;
    graph::Cell* cell_ = nullptr;
};

/// Evaluates the multi and gives the logical indices of its elements, also of those that only its feeding
/// multi has.
std::vector<int> elementIndices(graph::Cell& array);

/// Evaluates what is named. Numbers are in UI units: one number as int or float, several (tuples, compounds
/// of numbers, ranges, whole multis) as an array of them, ints when all are whole by kind. Data becomes the
/// value that fits it; an attribute without data gives an empty one, or none when it could be of any kind.
/// Throws `mel::Error` for what the language has no value for.
mel::Value plugValue(graph::Scene& scene, const graph::PlugRange& range);

} // namespace vesk::commands
