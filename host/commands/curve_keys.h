#pragma once
// The keys of an animation curve node as one table, and the curve that drives a plug.

#include "host/core/result.h"
#include "host/graph/scene.h"

#include <array>
#include <optional>
#include <vector>

namespace vesk::commands {

/// All that a curve stores key by key, in the units of the interface: frames (or whatever drives the curve)
/// and degrees.
class CurveKeys {
  public:
    /// What was stored beside time and value, each where it was stored at all: tangent types and directions,
    /// locks and marks. In the order of `kColumns`.
    static constexpr std::array<std::string_view, 9> kColumns{
        "keyTanInType", "keyTanOutType", "keyTanInX",       "keyTanInY",   "keyTanOutX",
        "keyTanOutY",   "keyTanLocked",  "keyWeightLocked", "keyBreakdown"};
    enum Column : std::size_t { kInType, kOutType };
    struct Key {
        double time = 0;
        double value = 0;
        std::array<std::optional<double>, kColumns.size()> columns;
    };

    /// Reads the curve, ascending by time.
    explicit CurveKeys(graph::Node& curve);

    const std::vector<Key>& keys() const { return keys_; }
    /// The key at that time, made in its place when there is none.
    Key& at(double time);
    /// Takes out the keys from one time to another, both included; answers how many there were.
    std::size_t remove(double first, double last);
    /// Whether a key's time lies from one time to another, but for the digits that ticks lose.
    static bool isWithin(double time, double first, double last);
    /// Writes the table back: key n is element n.
    Outcome store();

  private:
    graph::Node& curve_;
    std::vector<Key> keys_;
};

/// Whether the node is an animation curve; `timed`: one that time drives.
bool isAnimCurve(const graph::Node& node, bool timed = false);

/// The curve whose output feeds the cell, itself or by way of a conversion of units; null when there is none.
graph::Node* curveBehind(const graph::Cell& cell);

/// A new curve that time drives, of the kind that the cell's unit asks for, wired to the cell. Its tangents
/// are automatic and without weights.
Result<graph::Node*> makeCurve(graph::Scene& scene, graph::Cell& cell);

} // namespace vesk::commands
