// Handles on multis, and the building of their elements.

#include "host/api/impl/access.h"
#include "host/api/impl/built_elements.h"
#include "host/api/impl/cell_values.h"
#include "host/graph/evaluate.h"

#include <maya/MArrayDataBuilder.h>
#include <maya/MArrayDataHandle.h>
#include <maya/MDataBlock.h>

#include <algorithm>

using vesk::api::answer;
using vesk::api::BuiltElements;
using vesk::graph::Cell;

MArrayDataHandle::MArrayDataHandle(const MDataHandle& handle, MStatus* status) {
    const Cell* cell = handle.hostCell();
    vesk::api::report(status, cell && cell->isArray() ? MStatus::kSuccess : MStatus::kInvalidParameter);
    if (!cell || !cell->isArray()) return;
    multi_ = handle;
    collect();
}

void MArrayDataHandle::collect() {
    const Cell* cell = hostCell();
    indices_.clear();
    place_ = 0;
    if (!cell) {
        count_ = 0;
    } else if (cell->settled) {
        count_ = cell->children.size();
    } else {
        const auto* flat = vesk::api::flatElements(*cell);
        indices_ = flat ? flat->indices : vesk::api::existingIndices(*cell);
        count_ = indices_.size();
    }
}

namespace {

/// The element at a place among those that count (`indices`, or all when that is empty), where it stands at
/// that place of the multi, as it mostly does; else null.
Cell* standingAt(const Cell& multi, const std::vector<int>& indices, std::size_t place) {
    if (place >= multi.children.size()) return nullptr;
    Cell* cell = multi.children[place].get();
    return indices.empty() || cell->logicalIndex == indices[place] ? cell : nullptr;
}

} // namespace

Cell* MArrayDataHandle::present() const {
    if (place_ >= count_) return nullptr;
    Cell& multi = *hostCell();
    if (Cell* cell = standingAt(multi, indices_, place_)) return cell;
    if (indices_.empty()) return nullptr; // taken out since
    vesk::api::unfold(multi);
    return &multi.element(indices_[place_]);
}

unsigned int MArrayDataHandle::elementCount(MStatus* status) {
    if (!hostCell()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(count_));
}

unsigned int MArrayDataHandle::elementIndex(MStatus* status) {
    const Cell* whole = indices_.empty() ? present() : nullptr;
    if (place_ >= count_ || (indices_.empty() && !whole)) return answer(status, 0U, MStatus::kFailure);
    return answer(status, static_cast<unsigned int>(whole ? whole->logicalIndex : indices_[place_]));
}

MStatus MArrayDataHandle::jumpToElement(unsigned int index) {
    const int wanted = static_cast<int>(index);
    std::size_t place = count_;
    if (!indices_.empty()) {
        const auto at = std::lower_bound(indices_.begin(), indices_.end(), wanted);
        if (at != indices_.end() && *at == wanted) place = static_cast<std::size_t>(at - indices_.begin());
    } else if (count_ > 0) {
        const auto& elements = hostCell()->children;
        const auto at =
            std::lower_bound(elements.begin(), elements.end(), wanted,
                             [](const auto& one, int sought) { return one->logicalIndex < sought; });
        if (at != elements.end() && (*at)->logicalIndex == wanted)
            place = static_cast<std::size_t>(at - elements.begin());
    }
    return jumpToArrayElement(static_cast<unsigned int>(place));
}

MStatus MArrayDataHandle::jumpToArrayElement(unsigned int position) {
    if (position >= count_) return MStatus::kInvalidParameter;
    place_ = position;
    return {};
}

MDataHandle MArrayDataHandle::inputValue(MStatus* status) {
    Cell* cell = place_ < count_ ? standingAt(*hostCell(), indices_, place_) : nullptr;
    if (!cell) cell = present();
    if (!cell) return answer(status, MDataHandle(), MStatus::kFailure);
    if (cell->dirty || !cell->isLeaf()) vesk::graph::clean(*cell);
    vesk::api::report(status);
    return MDataHandle(cell, true, multi_.hostOwner());
}

MDataHandle MArrayDataHandle::outputValue(MStatus* status) {
    Cell* cell = present();
    if (!cell) return answer(status, MDataHandle(), MStatus::kFailure);
    return answer(status, MDataHandle(cell, false, multi_.hostOwner()));
}

MArrayDataBuilder MArrayDataHandle::builder(MStatus* status) const {
    const Cell* cell = hostCell();
    if (!cell || !cell->attr.usesArrayDataBuilder) {
        return answer(status, MArrayDataBuilder(), MStatus::kInvalidParameter);
    }
    return answer(status, MArrayDataBuilder(std::make_shared<BuiltElements>(*cell)));
}

MStatus MArrayDataHandle::set(const MArrayDataBuilder& builder) {
    const auto& built = builder.hostElements();
    if (!hostCell() || !built || &built->attribute() != &hostCell()->attr) return MStatus::kInvalidParameter;
    built->putInto(*hostCell());
    collect();
    return {};
}

MStatus MArrayDataHandle::setClean() {
    Cell* cell = present();
    if (!cell) return MStatus::kFailure;
    vesk::graph::markClean(*cell);
    return {};
}

MStatus MArrayDataHandle::setAllClean() {
    if (!hostCell()) return MStatus::kInvalidParameter;
    vesk::graph::markClean(*hostCell());
    return {};
}

// --- builder
// ---------------------------------------------------------------------------------------------------------

MArrayDataBuilder::MArrayDataBuilder(MDataBlock* block, const MObject& attribute, unsigned int count,
                                     MStatus* status) {
    const auto* attr = vesk::api::attributeOf(attribute);
    auto* node = block ? block->hostNode() : nullptr;
    const bool fits = node && attr && attr->array && attr->usesArrayDataBuilder && attr->index >= 0 &&
                      node->attributeAt(attr->index) == attr;
    vesk::api::report(status, fits ? MStatus::kSuccess : MStatus::kInvalidParameter);
    if (fits) elements_ = std::make_shared<BuiltElements>(*node, *attr, count);
}

MDataHandle MArrayDataBuilder::addElement(unsigned int index, MStatus* status) {
    const int logical = static_cast<int>(index);
    if (!elements_ || logical < 0) return answer(status, MDataHandle(), MStatus::kInvalidParameter);
    if (!elements_->ofNumbers())
        return answer(status, MDataHandle(&elements_->element(logical), false, elements_));
    auto open = elements_->number(logical);
    Cell* cell = open->cell.get();
    return answer(status, MDataHandle(cell, false, std::move(open)));
}

MDataHandle MArrayDataBuilder::addLast(MStatus* status) {
    if (!elements_) return answer(status, MDataHandle(), MStatus::kInvalidParameter);
    return addElement(static_cast<unsigned int>(elements_->last()) + 1U, status);
}

MStatus MArrayDataBuilder::removeElement(unsigned int index) {
    const bool isGone = elements_ && elements_->remove(static_cast<int>(index));
    return isGone ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

unsigned int MArrayDataBuilder::elementCount(MStatus* status) const {
    if (!elements_) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(elements_->count()));
}
