#include <maya/MRampAttribute.h>

#include "host/api/impl/access.h"
#include "host/api/impl/cell_values.h"
#include "host/api/impl/ramp_curve.h"
#include "host/graph/evaluate.h"

#include <algorithm>

using vesk::text;
using vesk::api::answer;
using vesk::api::handleOn;
using vesk::api::report;
using vesk::graph::Attribute;
using vesk::graph::Cell;
using vesk::graph::RampKind;

namespace {

/// Places of an entry's parts among its children.
enum Part { kPosition = 0, kValue = 1, kInterpolation = 2 };

/// What an attribute is as a ramp: made as one, or built by hand with the same parts in the same order.
RampKind kindOf(const Attribute& attribute) {
    if (attribute.ramp != RampKind::None) return attribute.ramp;
    const auto& parts = attribute.children;
    if (!attribute.array || parts.size() != 3) return RampKind::None;
    const bool endsRight = parts[kPosition]->longName.ends_with("Position") &&
                           parts[kInterpolation]->longName.ends_with("Interp");
    if (!endsRight || !parts[kPosition]->isNumber() || !parts[kInterpolation]->isNumber())
        return RampKind::None;
    if (parts[kValue]->isNumber()) return RampKind::Curve;
    return parts[kValue]->children.size() == 3 ? RampKind::Color : RampKind::None;
}

/// The cell of a ramp plug, if the ramp is of the wanted kind; else null and the status says why.
Cell* rampCell(const MPlug& plug, MStatus* status, RampKind wanted = RampKind::None) {
    const auto host = plug.hostPlug();
    Cell* cell = host.isNull() ? nullptr : host.cell();
    if (!cell) return answer<Cell*>(status, nullptr, MStatus::kInvalidParameter);
    const bool fits = wanted == RampKind::None || kindOf(cell->attr) == wanted;
    return answer(status, fits ? cell : nullptr, fits ? MStatus::kSuccess : MStatus::kFailure);
}

/// An entry that exists, or null and `kInvalidParameter`.
Cell* entryAt(Cell& ramp, unsigned int index, MStatus* status) {
    Cell* entry = ramp.elementIfThere(static_cast<int>(index));
    const bool exists = entry && entry->isInUse();
    return answer(status, exists ? entry : nullptr, exists ? MStatus::kSuccess : MStatus::kInvalidParameter);
}

template <int Channels>
vesk::api::RampKey<Channels> keyOf(Cell& entry) {
    vesk::graph::clean(entry);
    vesk::api::RampKey<Channels> key;
    key.position = static_cast<float>(entry.child(kPosition).number);
    key.step = static_cast<int>(entry.child(kInterpolation).number);
    Cell& value = entry.child(kValue);
    for (int i = 0; i < Channels; ++i) {
        key.values[static_cast<std::size_t>(i)] =
            static_cast<float>(Channels == 1 ? value.number : value.child(i).number);
    }
    return key;
}

} // namespace

namespace vesk::api {

/// Reads the entries of a ramp on each call, and sorts them anew only when they changed.
class RampReader {
  public:
    template <int Channels>
    typename RampCurve<Channels>::Values at(Cell& ramp, float position) {
        auto& [curve, keys] = std::get<Reading<Channels>>(readings_);
        keys.clear();
        if (ramp.feedingAncestor()) graph::clean(ramp);
        for (std::size_t i = 0; i < ramp.children.size(); ++i) {
            if (ramp.children[i]->isInUse()) keys.push_back(keyOf<Channels>(*ramp.children[i]));
        }
        curve.set(keys);
        return curve.at(position);
    }

  private:
    template <int Channels>
    struct Reading {
        RampCurve<Channels> curve;
        std::vector<RampKey<Channels>> keys;
    };
    std::tuple<Reading<1>, Reading<3>> readings_;
};

} // namespace vesk::api

MRampAttribute::MRampAttribute(const MPlug& plug, MStatus* status) {
    const auto host = plug.hostPlug();
    const bool isRamp =
        !host.isNull() && host.isArray() && kindOf(*host.attr) != RampKind::None && host.cell();
    report(status, isRamp ? MStatus::kSuccess : MStatus::kInvalidParameter);
    if (!isRamp) return;
    ramp_ = plug;
    reader_ = std::make_shared<vesk::api::RampReader>();
}

MRampAttribute::MRampAttribute(const MObject& node, const MObject& attribute, MStatus* status)
    : MRampAttribute(MPlug(node, attribute), status) {}

namespace {

MObject createRamp(const MString& longName, const MString& shortName, RampKind kind, MStatus* status) {
    if (longName.length() == 0) return answer(status, MObject(), MStatus::kInvalidParameter);
    return answer(status, handleOn(vesk::graph::rampAttribute(text(longName), text(shortName), kind).get()));
}

} // namespace

MObject MRampAttribute::createCurveRamp(const MString& longName, const MString& shortName, MStatus* status) {
    return createRamp(longName, shortName, RampKind::Curve, status);
}
MObject MRampAttribute::createColorRamp(const MString& longName, const MString& shortName, MStatus* status) {
    return createRamp(longName, shortName, RampKind::Color, status);
}

bool MRampAttribute::isCurveRamp(MStatus* status) const {
    const Cell* ramp = rampCell(ramp_, status);
    return ramp && kindOf(ramp->attr) == RampKind::Curve;
}
bool MRampAttribute::isColorRamp(MStatus* status) const {
    const Cell* ramp = rampCell(ramp_, status);
    return ramp && kindOf(ramp->attr) == RampKind::Color;
}

unsigned int MRampAttribute::getNumEntries(MStatus* status) const {
    const Cell* ramp = rampCell(ramp_, status);
    return ramp ? static_cast<unsigned int>(ramp->existingIndices().size()) : 0U;
}

namespace {

/// Calls `visit` with the index and the key of each entry.
template <int Channels, class Visit>
void eachEntry(Cell& ramp, Visit visit) {
    for (const int index : ramp.existingIndices())
        visit(index, keyOf<Channels>(*ramp.elementIfThere(index)));
}

} // namespace

void MRampAttribute::getEntries(MIntArray& indices, MFloatArray& positions, MFloatArray& values,
                                MIntArray& interpolations, MStatus* status) const {
    indices.clear(), positions.clear(), values.clear(), interpolations.clear();
    Cell* ramp = rampCell(ramp_, status, RampKind::Curve);
    if (!ramp) return;
    eachEntry<1>(*ramp, [&](int index, const auto& key) {
        indices.append(index);
        positions.append(key.position);
        values.append(key.values[0]);
        interpolations.append(key.step);
    });
}

void MRampAttribute::getEntries(MIntArray& indices, MFloatArray& positions, MColorArray& colors,
                                MIntArray& interpolations, MStatus* status) const {
    indices.clear(), positions.clear(), colors.clear(), interpolations.clear();
    Cell* ramp = rampCell(ramp_, status, RampKind::Color);
    if (!ramp) return;
    eachEntry<3>(*ramp, [&](int index, const auto& key) {
        indices.append(index);
        positions.append(key.position);
        colors.append(MColor(key.values[0], key.values[1], key.values[2]));
        interpolations.append(key.step);
    });
}

namespace {

MStatus storeValue(Cell& entry, float value) {
    return vesk::api::toStatus(vesk::graph::storeNumber(entry.child(kValue), static_cast<double>(value)));
}

MStatus storeValue(Cell& entry, const MColor& color) {
    Cell& value = entry.child(kValue);
    MStatus status;
    for (int i = 0; i < 3; ++i) {
        const double channel = static_cast<double>(color[static_cast<unsigned int>(i)]);
        if (!vesk::graph::storeNumber(value.child(i), channel)) status = MStatus::kFailure;
    }
    return status;
}

MStatus storePart(Cell& entry, Part part, double value) {
    return vesk::api::toStatus(vesk::graph::storeNumber(entry.child(part), value));
}

template <class Values>
MStatus append(Cell& ramp, const MFloatArray& positions, const Values& values, const MIntArray& steps) {
    if (positions.length() != values.length() || positions.length() != steps.length()) {
        return MStatus::kInvalidParameter;
    }
    const auto present = ramp.existingIndices();
    int next = present.empty() ? 0 : present.back() + 1;
    for (unsigned int i = 0; i < positions.length(); ++i) {
        Cell& entry = ramp.element(next++);
        MStatus status = storePart(entry, kPosition, static_cast<double>(positions[i]));
        if (status) status = storeValue(entry, values[i]);
        if (status) status = storePart(entry, kInterpolation, steps[i]);
        if (!status) return status;
    }
    return {};
}

} // namespace

void MRampAttribute::addEntries(const MFloatArray& positions, const MFloatArray& values,
                                const MIntArray& interpolations, MStatus* status) {
    Cell* ramp = rampCell(ramp_, status, RampKind::Curve);
    if (ramp) report(status, append(*ramp, positions, values, interpolations));
}

void MRampAttribute::addEntries(const MFloatArray& positions, const MColorArray& colors,
                                const MIntArray& interpolations, MStatus* status) {
    Cell* ramp = rampCell(ramp_, status, RampKind::Color);
    if (ramp) report(status, append(*ramp, positions, colors, interpolations));
}

void MRampAttribute::deleteEntries(const MIntArray& indices, MStatus* status) {
    Cell* ramp = rampCell(ramp_, status);
    if (!ramp) return;
    // What is evaluated for another time must not change what there is.
    if (ramp->node.scene()->preserving) return report(status, MStatus::kFailure);
    std::vector<int> doomed = vesk::storage(indices);
    std::sort(doomed.begin(), doomed.end());
    doomed.erase(std::unique(doomed.begin(), doomed.end()), doomed.end());
    for (const int index : doomed) {
        if (!entryAt(*ramp, static_cast<unsigned int>(index), status)) return;
    }
    if (doomed.size() >= ramp->existingIndices().size()) return report(status, MStatus::kFailure);
    for (const int index : doomed) {
        vesk::graph::disconnectAll(ramp->element(index));
        ramp->removeElement(index);
    }
    vesk::graph::spreadDirt(*ramp);
}

void MRampAttribute::setPositionAtIndex(float position, unsigned int index, MStatus* status) {
    Cell* ramp = rampCell(ramp_, status);
    Cell* entry = ramp ? entryAt(*ramp, index, status) : nullptr;
    if (entry) report(status, storePart(*entry, kPosition, static_cast<double>(position)));
}

void MRampAttribute::setValueAtIndex(float value, unsigned int index, MStatus* status) {
    Cell* ramp = rampCell(ramp_, status, RampKind::Curve);
    Cell* entry = ramp ? entryAt(*ramp, index, status) : nullptr;
    if (entry) report(status, storeValue(*entry, value));
}

void MRampAttribute::setColorAtIndex(const MColor& color, unsigned int index, MStatus* status) {
    Cell* ramp = rampCell(ramp_, status, RampKind::Color);
    Cell* entry = ramp ? entryAt(*ramp, index, status) : nullptr;
    if (entry) report(status, storeValue(*entry, color));
}

void MRampAttribute::setInterpolationAtIndex(MInterpolation interpolation, unsigned int index,
                                             MStatus* status) {
    Cell* ramp = rampCell(ramp_, status);
    Cell* entry = ramp ? entryAt(*ramp, index, status) : nullptr;
    if (entry) report(status, storePart(*entry, kInterpolation, interpolation));
}

void MRampAttribute::getValueAtPosition(float position, float& value, MStatus* status) const {
    Cell* ramp = rampCell(ramp_, status, RampKind::Curve);
    if (ramp) value = reader_->at<1>(*ramp, position)[0];
}

void MRampAttribute::getColorAtPosition(float position, MColor& color, MStatus* status) const {
    Cell* ramp = rampCell(ramp_, status, RampKind::Color);
    if (!ramp) return;
    const auto values = reader_->at<3>(*ramp, position);
    color = MColor(values[0], values[1], values[2]);
}
