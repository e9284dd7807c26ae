#pragma once
// Dirt and its cleaning: setting values, wiring cells, pulling results.

#include "host/core/outcome.h"
#include "host/graph/node.h"
#include "host/graph/plug.h"

#include <chrono>
#include <map>
#include <span>

namespace vesk::graph {

/// Native recursion allowed while pulling; longer chains are cleaned from an explicit stack first.
inline constexpr int kMaxPullDepth = 64;

// --- reading: cleans what is dirty
// -----------------------------------------------------------------------------------

/// Makes the cell's value valid (its children's and elements' too): pulls what feeds it, or computes it.
void clean(Cell& cell);
double pullNumber(Cell& cell);
/// The data object; null when there is none. For a connected input this is the source's own object.
Ref<Data> pullData(Cell& cell);
/// As the typed class, or null when other data is there.
template <class T>
Ref<T> pullAs(Cell& cell) {
    return Ref<T>(dynamic_cast<T*>(pullData(cell).get()));
}
/// Numbers of a compound or tuple, in order.
std::vector<double> pullNumbers(Cell& compound);

// --- writing: dirties what depends on it
// -----------------------------------------------------------------------------

/// Values set from outside (commands, files, API plugs). Refuse what is locked, fed by a wire or not
/// writable.
Outcome storeNumber(Cell& cell, double value);
Outcome storeData(Cell& cell, Ref<Data> value);
/// Whether a value may be stored, with the host's sentence if not.
Outcome checkWritable(const Cell& cell);

/// Values set by a node from inside a compute: no dirt is spread, the cell is clean afterwards if `nowClean`.
void putNumber(Cell& cell, double value, bool nowClean = true);
/// Places a fresh object as it is, and a clone of one that a plug holds already.
void putData(Cell& cell, Ref<Data> value, bool nowClean = true);
/// Deep copy of values from a cell of the same shape: compounds by position, multis by logical index.
void copyCell(Cell& to, Cell& from);
void markClean(Cell& cell);
/// The multi gets exactly these elements (ascending, made for it). Elements that wires hang on stay, at their
/// default.
void replaceElements(Cell& array, const std::vector<std::unique_ptr<Cell>>& elements);
/// The same for a multi of numbers: those at the indices, which ascend. Elements that are there are kept.
void replaceNumbers(Cell& array, std::span<const int> indices, std::span<const double> numbers);

/// Dirt for all that depends on this cell; not for the cell itself.
void spreadDirt(Cell& cell);
/// Dirt for the cell and all that depends on it.
void markDirty(Cell& cell);

// --- wires
// -----------------------------------------------------------------------------------------------------------

/// Whether a wire is possible: flags and types. The message names both plugs.
Outcome checkConnectable(const Cell& source, const Cell& destination);
/// Makes the wire. A present one at the destination is an error unless `force`.
Outcome connect(Cell& source, Cell& destination, bool force = false);
Outcome disconnect(Cell& source, Cell& destination);
/// Cuts every wire at the cell and below it.
void disconnectAll(Cell& cell);

// --- other times
// -----------------------------------------------------------------------------------------------------

/// While alive, every change of a cell's value or dirt is undone at the end: evaluation in another context.
class Preserve {
  public:
    explicit Preserve(Scene& scene);
    ~Preserve();
    Preserve(const Preserve&) = delete;
    Preserve& operator=(const Preserve&) = delete;

  private:
    Scene& scene_;
    std::size_t start_;
    bool outermost_;
};

// --- figures
// ---------------------------------------------------------------------------------------------------------

struct Cost {
    std::size_t computes = 0;
    std::chrono::nanoseconds own{0}; ///< without the time of nodes pulled from inside
    std::chrono::nanoseconds total{0};
};

/// Counts of computes by node type; times only while `timed` is on.
struct Profile {
    bool timed = false;
    std::size_t computes = 0;
    std::size_t cycles = 0; ///< pulls that met a plug being computed
    std::map<std::string, Cost> byType;
};

} // namespace vesk::graph
