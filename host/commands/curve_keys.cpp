#include "host/commands/curve_keys.h"

#include "host/commands/ui_units.h"
#include "host/nodes/anim_curve.h"

#include <algorithm>
#include <limits>

namespace vesk::commands {

using graph::Cell;
using graph::Node;
using graph::UnitKind;

namespace {

Cell& cellOf(Node& node, std::string_view attribute) { return node.cell(*node.type().find(attribute)); }

UnitKind unitOfTime(const Node& curve) { return curve.type().find("keyTime")->unit; }

/// Takes out the elements from `count` on.
void shorten(Cell& array, int count) {
    bool changed = false;
    while (!array.children.empty() && array.children.back()->logicalIndex >= count) {
        graph::disconnectAll(*array.children.back());
        array.removeElement(array.children.back()->logicalIndex);
        changed = true;
    }
    if (changed) graph::spreadDirt(array);
}

/// `pSphere1_translateY`; of an element `n_weight_3_`.
std::string curveName(const Cell& cell) {
    std::string name = cell.node.name() + '_' + graph::Plug(cell).attributePath();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '[' || c == ']' || c == '.'; }, '_');
    return name;
}

std::string curveType(const graph::Attribute& attribute) {
    switch (attribute.kind == graph::AttrKind::Unit ? attribute.unit : UnitKind::None) {
    case UnitKind::Distance: return "animCurveTL";
    case UnitKind::Angle: return "animCurveTA";
    case UnitKind::Time: return "animCurveTT";
    case UnitKind::None: break;
    }
    return "animCurveTU";
}

} // namespace

CurveKeys::CurveKeys(Node& curve) : curve_(curve) {
    Cell& list = cellOf(curve, "keyTimeValue");
    const UnitKind unit = unitOfTime(curve);
    for (const int index : list.existingIndices()) {
        Cell& pair = list.element(index);
        Key key;
        key.time = toUi(*curve.scene(), unit, graph::pullNumber(pair.child(0)));
        key.value = graph::pullNumber(pair.child(1));
        for (std::size_t i = 0; i < kColumns.size(); ++i) {
            Cell* own = cellOf(curve, kColumns[i]).elementIfThere(index);
            if (own && own->isInUse()) key.columns[i] = graph::pullNumber(*own);
        }
        keys_.push_back(key);
    }
    std::stable_sort(keys_.begin(), keys_.end(), [](const Key& a, const Key& b) { return a.time < b.time; });
}

bool CurveKeys::isWithin(double time, double first, double last) {
    // Times that came through ticks and back differ in their last digits.
    constexpr double kSame = 1e-6;
    return time > first - kSame && time < last + kSame;
}

CurveKeys::Key& CurveKeys::at(double time) {
    constexpr double kEver = std::numeric_limits<double>::infinity();
    const auto place = std::find_if(keys_.begin(), keys_.end(),
                                    [time](const Key& key) { return isWithin(key.time, time, kEver); });
    if (place != keys_.end() && isWithin(place->time, time, time)) return *place;
    Key key;
    key.time = time;
    return *keys_.insert(place, key);
}

std::size_t CurveKeys::remove(double first, double last) {
    return std::erase_if(keys_, [&](const Key& key) { return isWithin(key.time, first, last); });
}

Outcome CurveKeys::store() {
    const graph::Scene& scene = *curve_.scene();
    const UnitKind unit = unitOfTime(curve_);
    const int count = static_cast<int>(keys_.size());
    Cell& list = cellOf(curve_, "keyTimeValue");
    shorten(list, count);
    for (int i = 0; i < count; ++i) {
        const Key& key = keys_[static_cast<std::size_t>(i)];
        Cell& pair = list.element(i);
        if (auto stored = graph::storeNumber(pair.child(0), toInternal(scene, unit, key.time)); !stored)
            return stored;
        if (auto stored = graph::storeNumber(pair.child(1), key.value); !stored) return stored;
    }
    for (std::size_t column = 0; column < kColumns.size(); ++column) {
        Cell& array = cellOf(curve_, kColumns[column]);
        shorten(array, 0);
        for (int i = 0; i < count; ++i) {
            const auto& own = keys_[static_cast<std::size_t>(i)].columns[column];
            if (!own) continue;
            if (auto stored = graph::storeNumber(array.element(i), *own); !stored) return stored;
        }
    }
    return {};
}

bool isAnimCurve(const Node& node, bool timed) {
    return node.apiType() == MFn::kAnimCurve && (!timed || node.type().followsTime);
}

Node* curveBehind(const Cell& cell) {
    const Cell* source = cell.feedingAncestor();
    if (!source || !(source = source->source)) return nullptr;
    if (source->node.type().name() == "unitConversion") source = cellOf(source->node, "input").source;
    return source && isAnimCurve(source->node) ? &source->node : nullptr;
}

Result<Node*> makeCurve(graph::Scene& scene, Cell& cell) {
    const Ref<Node> curve = scene.create(*scene.types().find(curveType(cell.attr)), curveName(cell));
    (void)graph::storeNumber(cellOf(*curve, "tangentType"), static_cast<double>(nodes::Tangent::Auto));
    (void)graph::storeNumber(cellOf(*curve, "weightedTangents"), 0);
    if (auto wired = graph::connect(cellOf(*curve, "output"), cell); !wired) {
        scene.remove(*curve);
        return wired;
    }
    return curve.get();
}

} // namespace vesk::commands
