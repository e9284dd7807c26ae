#include <maya/MDataBlock.h>

#include "host/api/impl/access.h"
#include "host/graph/evaluate.h"

#include <maya/MTime.h>

using vesk::api::answer;
using vesk::api::attributeOf;
using vesk::api::report;
using vesk::graph::Cell;

Cell* MDataBlock::find(const MObject& attribute, MStatus* status) {
    const auto* attr = node_ ? attributeOf(attribute) : nullptr;
    if (attr) {
        Cell* cell = node_->cellIfThere(*attr);
        if (cell && &cell->attr == attr) return answer(status, cell);
        if (vesk::api::hasOneCell(*node_, *attr)) return answer(status, &node_->cell(*attr));
    }
    return answer<Cell*>(status, nullptr, MStatus::kInvalidParameter);
}

Cell* MDataBlock::find(const MPlug& plug, MStatus* status) {
    const auto host = plug.hostPlug();
    Cell* cell = node_ && host.node.get() == node_ ? host.cell() : nullptr;
    return answer(status, cell, cell ? MStatus::kSuccess : MStatus::kInvalidParameter);
}

MDataHandle MDataBlock::input(Cell* cell) {
    if (!cell) return {};
    vesk::graph::clean(*cell);
    return MDataHandle(cell, true);
}

MArrayDataHandle MDataBlock::arrayOf(Cell* cell, bool asInput, MStatus* status) {
    if (!cell) return {};
    return MArrayDataHandle(MDataHandle(cell, asInput), status);
}

MDataHandle MDataBlock::inputValue(const MObject& attribute, MStatus* status) {
    return input(find(attribute, status));
}
MDataHandle MDataBlock::inputValue(const MPlug& plug, MStatus* status) { return input(find(plug, status)); }

MDataHandle MDataBlock::outputValue(const MObject& attribute, MStatus* status) {
    return MDataHandle(find(attribute, status));
}
MDataHandle MDataBlock::outputValue(const MPlug& plug, MStatus* status) {
    return MDataHandle(find(plug, status));
}

MArrayDataHandle MDataBlock::inputArrayValue(const MObject& attribute, MStatus* status) {
    return arrayOf(find(attribute, status), true, status);
}
MArrayDataHandle MDataBlock::inputArrayValue(const MPlug& plug, MStatus* status) {
    return arrayOf(find(plug, status), true, status);
}
MArrayDataHandle MDataBlock::outputArrayValue(const MObject& attribute, MStatus* status) {
    return arrayOf(find(attribute, status), false, status);
}
MArrayDataHandle MDataBlock::outputArrayValue(const MPlug& plug, MStatus* status) {
    return arrayOf(find(plug, status), false, status);
}

MStatus MDataBlock::setClean(const MPlug& plug) {
    MStatus status;
    if (Cell* cell = find(plug, &status)) vesk::graph::markClean(*cell);
    return status;
}

MStatus MDataBlock::setClean(const MObject& attribute) {
    MStatus status;
    if (Cell* cell = find(attribute, &status)) vesk::graph::markClean(*cell);
    return status;
}

bool MDataBlock::isClean(const MPlug& plug, MStatus* status) {
    const Cell* cell = find(plug, status);
    return cell && !cell->dirty;
}

bool MDataBlock::isClean(const MObject& attribute, MStatus* status) {
    const Cell* cell = find(attribute, status);
    return cell && !cell->dirty;
}

MDGContext MDataBlock::context(MStatus* status) const {
    const auto* scene = node_ ? node_->scene() : nullptr;
    if (!scene || !scene->preserving) return answer(status, MDGContext());
    return answer(status, MDGContext(MTime(scene->frame() / scene->framesPerSecond(), MTime::kSeconds)));
}
