#pragma once
// One live plug of a node: its value, its dirt, its wires, its children or elements.

#include "host/graph/attribute.h"

#include <memory>
#include <vector>

namespace vesk::graph {

class Node;

/// Cells are made when first touched; a cell that does not exist yet reads as its attribute's default.
/// For a compound, `children` stand by position (null until touched); for a multi they are its elements,
/// ascending by logical index. Numbers are kept in `number`, everything else in `data` (null: no data).
class Cell {
  public:
    Cell(Node& owner, const Attribute& attribute, Cell* parentCell, int logicalIndex);
    /// A cell that belongs to no data block: it shows the default, is never dirty, and evaluates nothing.
    static std::unique_ptr<Cell> detached(Node& owner, const Attribute& attribute, int logicalIndex = -1);
    ~Cell();
    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;

    Node& node;
    const Attribute& attr;
    Cell* const parent;
    const int logicalIndex; ///< -1 unless this is an element of a multi

    // What a walk over many elements reads lies together.

    /// On a compound or multi: everything below is dirty. Clear: something below may still be.
    bool dirty = false;
    bool computing = false;
    bool fresh = false; ///< set by its node since it got dirty; the node itself may read it back
    bool isSet = false; ///< a value was stored here; else it shows the default
    double number;
    Cell* source = nullptr; ///< what this is fed by
    Ref<Data> data;
    std::vector<Cell*> destinations; ///< what this feeds, in order of connection
    std::vector<std::unique_ptr<Cell>> children;

    bool locked = false;
    /// On a multi of numbers: every element was found clean, set and without a wire of its own, and nothing
    /// has changed that since. Whoever makes an element dirty or unsets it clears this.
    bool settled = false;
    std::int8_t keyable = -1, channelBox = -1; ///< per-plug override of the attribute's flag; -1: none

    /// It, or what it stands below, was made by `detached`.
    bool isDetached() const { return detached_; }
    bool isElement() const { return logicalIndex >= 0; }
    /// The whole of a multi, not one of its elements.
    bool isArray() const { return attr.array && !isElement(); }
    bool isCompound() const { return !isArray() && attr.isCompound(); }
    bool isLeaf() const { return !isArray() && !isCompound(); }

    /// Child of a compound, made when missing.
    Cell& child(int position);
    Cell& child(const Attribute& attribute);
    Cell* childIfThere(int position) const;
    /// Element of a multi, made when missing.
    Cell& element(int index);
    Cell* elementIfThere(int index) const;
    /// Takes an element out; its wires must be gone.
    void removeElement(int index);
    /// Elements that are connected or hold a value, themselves or in a child.
    std::vector<int> existingIndices() const;
    bool isInUse() const;

    /// Connected itself, or through a child or element, on the given side.
    bool hasWiresBelow(bool asDestination) const;
    /// This cell's incoming wire, or the one of the nearest ancestor that has one.
    const Cell* feedingAncestor() const;

    /// Calls `visit` for this cell and all existing cells below it.
    template <class F>
    void walk(F&& visit) {
        visit(*this);
        for (auto& below : children) {
            if (below) below->walk(visit);
        }
    }

    void resetToDefault();

  private:
    Cell(Node& owner, const Attribute& attribute, Cell* parentCell, int logicalIndex, bool detached);

    const bool detached_;
};

} // namespace vesk::graph
