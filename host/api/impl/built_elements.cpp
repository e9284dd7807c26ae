#include "host/api/impl/built_elements.h"

#include "host/api/impl/cell_values.h"
#include "host/graph/evaluate.h"

#include <algorithm>

namespace vesk::api {

using graph::Cell;

// --- flat numbers
// ----------------------------------------------------------------------------------------------------

std::size_t NumberElements::placeOf(int index) const {
    // Elements mostly arrive in ascending order.
    if (indices.empty() || indices.back() < index) return indices.size();
    return static_cast<std::size_t>(std::lower_bound(indices.begin(), indices.end(), index) -
                                    indices.begin());
}

Ref<Data> NumberElements::clone() const {
    auto copy = makeRef<NumberElements>();
    copy->indices = indices;
    copy->numbers = numbers;
    return copy;
}

Ref<NumberElements> numbersOfElements(const Cell& multi) {
    auto result = makeRef<NumberElements>();
    result->indices.reserve(multi.children.size());
    result->numbers.reserve(multi.children.size());
    for (const auto& element : multi.children) {
        if (!element->isSet && !element->isInUse()) continue;
        result->indices.push_back(element->logicalIndex);
        result->numbers.push_back(element->number);
    }
    return result;
}

NumberElements* flatElements(const Cell& multi) {
    return multi.isDetached() && multi.isArray() ? dynamic_cast<NumberElements*>(multi.data.get()) : nullptr;
}

void unfold(Cell& multi) {
    const Ref<NumberElements> flat(flatElements(multi));
    if (!flat) return;
    multi.data = nullptr;
    graph::replaceNumbers(multi, flat->indices, flat->numbers);
}

// --- elements in the making
// ------------------------------------------------------------------------------------------

BuiltElements::BuiltElements(graph::Node& node, const graph::Attribute& attribute, std::size_t count)
    : node_(&node), multi_(Cell::detached(node, attribute)) {
    if (!attribute.isNumber()) return;
    constexpr std::size_t kMostAtOnce = 1U << 24U; // the count is a hint, and may be a wild one
    numbers_ = makeRef<NumberElements>();
    numbers_->indices.reserve(std::min(count, kMostAtOnce));
    numbers_->numbers.reserve(std::min(count, kMostAtOnce));
}

BuiltElements::BuiltElements(const Cell& from) : node_(&from.node) {
    if (from.attr.isNumber() && !from.attr.packed) {
        multi_ = Cell::detached(from.node, from.attr);
        numbers_ = Ref<NumberElements>(flatElements(from));
        if (!numbers_) numbers_ = numbersOfElements(from);
    } else {
        multi_ = detachedCopy(from);
    }
}

int BuiltElements::last() const {
    if (count() == 0) return -1;
    return numbers_ ? numbers_->indices.back() : multi_->children.back()->logicalIndex;
}

/// The numbers may be shared with a multi that they were put into.
void BuiltElements::own() {
    if (numbers_->referenceCount() > 1)
        numbers_ = Ref<NumberElements>(static_cast<NumberElements*>(numbers_->clone().get()));
}

void BuiltElements::take(const Open& open) {
    const std::size_t place =
        numbers_->has(open.index, latestPlace_) ? latestPlace_ : numbers_->placeOf(open.index);
    if (numbers_->has(open.index, place)) numbers_->numbers[place] = open.cell->number;
}

std::shared_ptr<BuiltElements::Open> BuiltElements::number(int index) {
    own();
    if (latest_) {
        if (latest_->index == index) return latest_;
        take(*latest_);
        if (latest_.use_count() > 1) {
            held_.emplace(latest_->index, latest_);
            latest_ = nullptr;
        }
    }
    if (const auto held = held_.find(index); held != held_.end()) return held->second;
    const std::size_t place = numbers_->placeOf(index);
    if (!numbers_->has(index, place)) {
        const auto at = static_cast<std::ptrdiff_t>(place);
        numbers_->indices.insert(numbers_->indices.begin() + at, index);
        numbers_->numbers.insert(numbers_->numbers.begin() + at, attribute().defaultNumber);
    }
    if (!latest_) {
        latest_ = std::make_shared<Open>(Open{node_, Cell::detached(*node_, attribute(), 0), index});
    }
    latestPlace_ = place;
    latest_->index = index;
    latest_->cell->number = numbers_->numbers[place];
    return latest_;
}

bool BuiltElements::remove(int index) {
    if (numbers_) {
        own();
        const std::size_t place = numbers_->placeOf(index);
        if (!numbers_->has(index, place)) return false;
        const auto at = static_cast<std::ptrdiff_t>(place);
        numbers_->indices.erase(numbers_->indices.begin() + at);
        numbers_->numbers.erase(numbers_->numbers.begin() + at);
        if (latest_ && latest_->index == index) latest_ = nullptr;
        held_.erase(index);
        return true;
    }
    auto& present = multi_->children;
    const auto at = std::lower_bound(present.begin(), present.end(), index,
                                     [](const auto& one, int wanted) { return one->logicalIndex < wanted; });
    if (at == present.end() || (*at)->logicalIndex != index) return false;
    removed_.push_back(std::move(*at));
    present.erase(at);
    return true;
}

void BuiltElements::putInto(Cell& multi) {
    if (!numbers_) return graph::replaceElements(multi, multi_->children);
    own();
    if (latest_) take(*latest_);
    for (const auto& [index, open] : held_)
        take(*open);
    // A child of an element in the making is copied along with it, and has to be there itself.
    if (multi.isDetached() && !multi.parent && multi.children.empty()) {
        multi.data = numbers_;
    } else {
        graph::replaceNumbers(multi, numbers_->indices, numbers_->numbers);
    }
}

} // namespace vesk::api
