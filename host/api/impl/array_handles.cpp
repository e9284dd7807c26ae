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
    indices_ = hostCell() ? vesk::api::existingIndices(*hostCell()) : std::vector<int>();
    place_ = 0;
}

Cell* MArrayDataHandle::present() const {
    // Mostly every element counts, and stands where its place says.
    const auto* cell = hostCell();
    if (cell && place_ < indices_.size() && place_ < cell->children.size() &&
        cell->children[place_]->logicalIndex == indices_[place_]) {
        return cell->children[place_].get();
    }
    return place_ < indices_.size() ? &hostCell()->element(indices_[place_]) : nullptr;
}

unsigned int MArrayDataHandle::elementCount(MStatus* status) {
    if (!hostCell()) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(indices_.size()));
}

unsigned int MArrayDataHandle::elementIndex(MStatus* status) {
    if (place_ >= indices_.size()) return answer(status, 0U, MStatus::kFailure);
    return answer(status, static_cast<unsigned int>(indices_[place_]));
}

MStatus MArrayDataHandle::next() {
    if (place_ + 1 >= indices_.size()) return MStatus::kFailure;
    ++place_;
    return {};
}

MStatus MArrayDataHandle::jumpToElement(unsigned int index) {
    const auto at = std::lower_bound(indices_.begin(), indices_.end(), static_cast<int>(index));
    if (at == indices_.end() || *at != static_cast<int>(index)) return MStatus::kInvalidParameter;
    place_ = static_cast<std::size_t>(at - indices_.begin());
    return {};
}

MStatus MArrayDataHandle::jumpToArrayElement(unsigned int position) {
    if (position >= indices_.size()) return MStatus::kInvalidParameter;
    place_ = position;
    return {};
}

MDataHandle MArrayDataHandle::inputValue(MStatus* status) {
    Cell* cell = present();
    if (!cell) return answer(status, MDataHandle(), MStatus::kFailure);
    vesk::graph::clean(*cell);
    return answer(status, MDataHandle(cell, true, multi_.hostOwner()));
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
    auto built = std::make_shared<BuiltElements>();
    built->node = &cell->node;
    built->multi = vesk::api::detachedCopy(*cell);
    return answer(status, MArrayDataBuilder(std::move(built)));
}

MStatus MArrayDataHandle::set(const MArrayDataBuilder& builder) {
    const auto& built = builder.hostElements();
    if (!hostCell() || !built || &built->multi->attr != &hostCell()->attr) return MStatus::kInvalidParameter;
    vesk::graph::replaceElements(*hostCell(), built->multi->children);
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

MArrayDataBuilder::MArrayDataBuilder(MDataBlock* block, const MObject& attribute, unsigned int,
                                     MStatus* status) {
    const auto* attr = vesk::api::attributeOf(attribute);
    auto* node = block ? block->hostNode() : nullptr;
    const bool fits = node && attr && attr->array && attr->usesArrayDataBuilder && attr->index >= 0 &&
                      node->attributeAt(attr->index) == attr;
    vesk::api::report(status, fits ? MStatus::kSuccess : MStatus::kInvalidParameter);
    if (!fits) return;
    elements_ = std::make_shared<BuiltElements>();
    elements_->node = node;
    elements_->multi = Cell::detached(*node, *attr);
}

MDataHandle MArrayDataBuilder::addElement(unsigned int index, MStatus* status) {
    if (!elements_ || static_cast<int>(index) < 0)
        return answer(status, MDataHandle(), MStatus::kInvalidParameter);
    return answer(status, MDataHandle(&elements_->multi->element(static_cast<int>(index)), false, elements_));
}

MDataHandle MArrayDataBuilder::addLast(MStatus* status) {
    if (!elements_) return answer(status, MDataHandle(), MStatus::kInvalidParameter);
    const auto& present = elements_->multi->children;
    return addElement(present.empty() ? 0U : static_cast<unsigned int>(present.back()->logicalIndex) + 1U,
                      status);
}

MStatus MArrayDataBuilder::removeElement(unsigned int index) {
    if (!elements_) return MStatus::kInvalidParameter;
    auto& present = elements_->multi->children;
    const auto at = std::lower_bound(present.begin(), present.end(), static_cast<int>(index),
                                     [](const auto& one, int wanted) { return one->logicalIndex < wanted; });
    if (at == present.end() || (*at)->logicalIndex != static_cast<int>(index))
        return MStatus::kInvalidParameter;
    elements_->removed.push_back(std::move(*at));
    present.erase(at);
    return {};
}

unsigned int MArrayDataBuilder::elementCount(MStatus* status) const {
    if (!elements_) return answer(status, 0U, MStatus::kInvalidParameter);
    return answer(status, static_cast<unsigned int>(elements_->multi->children.size()));
}
