#pragma once
// What an `MArrayDataBuilder` works on.

#include "host/data/data.h"
#include "host/graph/cell.h"
#include "host/graph/node.h"

#include <map>
#include <memory>
#include <vector>

namespace vesk::api {

/// The elements of a multi of numbers in two flat runs. As the data of a detached multi without children it
/// stands for those children until somebody asks for one.
class NumberElements : public Data {
  public:
    std::vector<int> indices; ///< ascending
    std::vector<double> numbers;

    /// Place of an index, or of the first behind it.
    std::size_t placeOf(int index) const;
    bool has(int index, std::size_t place) const { return place < indices.size() && indices[place] == index; }

    MFn::Type apiType() const override { return MFn::kData; }
    MFnData::Type dataType() const override { return MFnData::kInvalid; }
    Ref<Data> clone() const override;
};

/// The elements of a live multi of numbers that count.
Ref<NumberElements> numbersOfElements(const graph::Cell& multi);
/// What stands for a detached multi's children; null when they are there themselves.
NumberElements* flatElements(const graph::Cell& multi);
/// Makes the children that flat elements stand for.
void unfold(graph::Cell& multi);

/// Elements of one multi in the making. Numbers are kept flat, and an element of them is a cell only as long
/// as a handle holds it; anything else is a child of a detached cell that stands for the multi.
class BuiltElements {
  public:
    /// A cell, what keeps it, and whose element it is.
    struct Open {
        Ref<graph::Node> node; ///< which the cell refers to
        std::unique_ptr<graph::Cell> cell;
        int index;
    };
    /// No elements; room for so many.
    BuiltElements(graph::Node& node, const graph::Attribute& attribute, std::size_t count);
    /// The elements of a multi.
    explicit BuiltElements(const graph::Cell& from);

    const graph::Attribute& attribute() const { return multi_->attr; }
    std::size_t count() const { return numbers_ ? numbers_->indices.size() : multi_->children.size(); }
    /// Highest index; -1 when there is none.
    int last() const;
    /// The element of a multi of numbers, made if missing.
    std::shared_ptr<Open> number(int index);
    /// Of any other multi.
    graph::Cell& element(int index) { return multi_->element(index); }
    bool ofNumbers() const { return numbers_ != nullptr; }
    /// False when there is none.
    bool remove(int index);
    /// Replaces the elements of a multi, detached or not.
    void putInto(graph::Cell& multi);

  private:
    void own();
    void take(const Open& open);

    Ref<graph::Node> node_;              ///< kept alive for the cells, which refer to it
    std::unique_ptr<graph::Cell> multi_; ///< not null
    Ref<NumberElements> numbers_;        ///< null unless of numbers
    std::shared_ptr<Open> latest_;       ///< used again once its handles are gone
    std::size_t latestPlace_ = 0;        ///< where it was put
    std::map<int, std::shared_ptr<Open>> held_;
    /// Elements that were taken out while a handle may still point to them.
    std::vector<std::unique_ptr<graph::Cell>> removed_;
};

} // namespace vesk::api
