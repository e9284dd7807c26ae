#include "nodes/common/choice.h"

#include "nodes/common/steps.h"

#include <maya/MDataBlock.h>
#include <maya/MDataHandle.h>
#include <maya/MFnDoubleIndexedComponent.h>
#include <maya/MFnIntArrayData.h>
#include <maya/MFnSingleIndexedComponent.h>

namespace vesk::nodes {

PointSelection PointSelection::ofComponents(MObject components) {
    PointSelection selection;
    selection.everything_ = false;
    selection.component_ = firstComponent(components);
    return selection;
}

PointSelection PointSelection::ofObjectGroup(const MObject& geometryData, int groupId) {
    PointSelection selection;
    selection.everything_ = false;
    selection.component_ = objectGroupIn(geometryData, groupId);
    return selection;
}

std::vector<char> PointSelection::mask(MFn::Type pointKind, unsigned pointCount, unsigned numCVsInV) const {
    std::vector<char> inside(pointCount, everything_ ? 1 : 0);
    if (everything_ || component_.apiType() != pointKind) return inside;
    const auto choose = [&](unsigned index) {
        if (index < pointCount) inside[index] = 1;
    };
    MObject component = component_;
    MStatus status;
    if (const MFnSingleIndexedComponent single(component, &status); status) {
        if (single.isComplete()) return std::vector<char>(pointCount, 1);
        MIntArray ids;
        single.getElements(ids);
        for (unsigned i = 0; i < ids.length(); ++i)
            choose(static_cast<unsigned>(ids[i]));
    } else if (const MFnDoubleIndexedComponent pairs(component, &status); status) {
        if (pairs.isComplete()) return std::vector<char>(pointCount, 1);
        MIntArray us, vs;
        pairs.getElements(us, vs);
        for (unsigned i = 0; i < us.length(); ++i) {
            if (static_cast<unsigned>(vs[i]) < numCVsInV) {
                choose(static_cast<unsigned>(us[i]) * numCVsInV + static_cast<unsigned>(vs[i]));
            }
        }
    }
    return inside;
}

MIntArray PointSelection::ids(MFn::Type pointKind, unsigned pointCount, unsigned numCVsInV) const {
    const std::vector<char> inside = mask(pointKind, pointCount, numCVsInV);
    MIntArray ids(pointCount);
    unsigned chosen = 0;
    for (unsigned i = 0; i < pointCount; ++i) {
        if (inside[i]) ids[chosen++] = static_cast<int>(i);
    }
    ids.setLength(chosen);
    return ids;
}

std::vector<char> maskOf(const MIntArray& ids, unsigned count) {
    std::vector<char> inside(count, 0);
    for (unsigned i = 0; i < ids.length(); ++i) {
        if (static_cast<unsigned>(ids[i]) < count) inside[static_cast<unsigned>(ids[i])] = 1;
    }
    return inside;
}

PointSelection chosenBy(MDataBlock& block, const ChoiceAttributes& a, const MObject& geometryData) {
    switch (block.inputValue(a.useComponents).asShort()) {
    case kInputComponentList: return PointSelection::ofComponents(block.inputValue(a.inComponents).data());
    case kInputObjectGroup:
        return PointSelection::ofObjectGroup(geometryData, block.inputValue(a.groupId).asInt());
    default: return {};
    }
}

MIntArray particleIds(MObject components, unsigned count) {
    MIntArray ids;
    if (components.apiType() == MFn::kIntArrayData) {
        MFnIntArrayData(components).copyTo(ids);
        return ids;
    }
    MObject component = firstComponent(components);
    MStatus status;
    const MFnSingleIndexedComponent single(component, &status);
    if (!status) return ids;
    if (!single.isComplete()) {
        single.getElements(ids);
        return ids;
    }
    ids.setLength(count);
    for (unsigned i = 0; i < count; ++i)
        ids[i] = static_cast<int>(i);
    return ids;
}

} // namespace vesk::nodes
