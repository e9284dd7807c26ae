#include "host/nodes/anim_curve_node.h"

#include "host/graph/scene.h"
#include "host/nodes/anim_curve.h"
#include "host/nodes/declare.h"

#include <numbers>

namespace vesk::nodes {

namespace {

using graph::enumeration;

constexpr double kTicksPerSecond = 6000;

AttrRef perKey(const char* longName, const char* shortName, MFnNumericData::Type type, double value = 0) {
    return graph::number(longName, shortName, type, value)->multi();
}

AttrRef infinityOf(const char* longName, const char* shortName) {
    auto attribute = enumeration(longName, shortName, {});
    attribute->fields = {
        {"Constant", 0}, {"Linear", 1}, {"Cycle", 3}, {"Cycle with Offset", 4}, {"Oscillate", 5}};
    return attribute;
}

AttrRef ofUnit(const char* longName, const char* shortName, UnitKind kind) {
    return kind == UnitKind::None ? graph::real(longName, shortName) : graph::unit(longName, shortName, kind);
}

class AnimCurveNode : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        if (!isComputed(requested.attr)) return ComputeResult::NotMine;
        graph::putNumber(requested, curve().at(driver()));
        return ComputeResult::Done;
    }

  private:
    bool isTimed() const { return type().followsTime; }
    double toSeconds() const { return isTimed() ? 1 / kTicksPerSecond : 1; }

    double driver() {
        Cell& input = plug(*this, "input");
        if (isTimed() && !input.source) return scene()->frame() * scene()->ticksPerFrame() * toSeconds();
        return graph::pullNumber(input) * toSeconds();
    }

    double valueFactor() const {
        switch (type().find("output")->unit) {
        case UnitKind::Angle: return std::numbers::pi / 180;
        case UnitKind::Time: return scene()->ticksPerFrame();
        default: return 1;
        }
    }

    /// The element of a per-key multi, or `otherwise` where there is none.
    double perKeyNumber(std::string_view name, int index, double otherwise) {
        const Cell* list = cellIfThere(*type().find(name));
        Cell* element = list ? list->elementIfThere(index) : nullptr;
        return element ? graph::pullNumber(*element) : otherwise;
    }

    AnimCurve curve() {
        AnimCurve curve;
        curve.weighted = flagOf(*this, "weightedTangents");
        curve.before = static_cast<Infinity>(countOf(*this, "preInfinity"));
        curve.after = static_cast<Infinity>(countOf(*this, "postInfinity"));
        Cell& list = plug(*this, "keyTimeValue");
        const double usual = valueOf(*this, "tangentType"), factor = valueFactor();
        for (const int index : list.existingIndices()) {
            Cell& pair = list.element(index);
            AnimKey key;
            key.time = graph::pullNumber(pair.child(0)) * toSeconds();
            key.value = graph::pullNumber(pair.child(1)) * factor;
            key.in = static_cast<Tangent>(perKeyNumber("keyTanInType", index, usual));
            key.out = static_cast<Tangent>(perKeyNumber("keyTanOutType", index, usual));
            key.inX = perKeyNumber("keyTanInX", index, 1);
            key.inY = perKeyNumber("keyTanInY", index, 0);
            key.outX = perKeyNumber("keyTanOutX", index, 1);
            key.outY = perKeyNumber("keyTanOutY", index, 0);
            curve.keys.push_back(key);
        }
        std::stable_sort(curve.keys.begin(), curve.keys.end(),
                         [](const AnimKey& a, const AnimKey& b) { return a.time < b.time; });
        return curve;
    }
};

void registerOne(graph::TypeRegistry& types, const std::string& name, bool timed, UnitKind result) {
    NodeType& type = declare<AnimCurveNode>(types, name, MFn::kAnimCurve);
    type.followsTime = timed;
    const UnitKind driver = timed ? UnitKind::Time : UnitKind::None;
    const std::vector<AttrRef> inputs = {
        type(ofUnit("input", "i", driver)),
        type(graph::compound("keyTimeValue", "ktv",
                             {ofUnit("keyTime", "kt", driver), graph::real("keyValue", "kv")})
                 ->multi()),
        type(perKey("keyTanInType", "kit", MFnNumericData::kShort, 9)),
        type(perKey("keyTanOutType", "kot", MFnNumericData::kShort, 9)),
        type(perKey("keyTanInX", "kix", MFnNumericData::kFloat, 1)),
        type(perKey("keyTanInY", "kiy", MFnNumericData::kFloat)),
        type(perKey("keyTanOutX", "kox", MFnNumericData::kFloat, 1)),
        type(perKey("keyTanOutY", "koy", MFnNumericData::kFloat)),
        type(shortNumber("tangentType", "tan", 9)),
        type(graph::boolean("weightedTangents", "wgt", true)),
        type(infinityOf("preInfinity", "pre")),
        type(infinityOf("postInfinity", "pst")),
    };
    type.affectsAll(inputs, {type(ofUnit("output", "o", result)->output())});
    type(perKey("keyTanLocked", "ktl", MFnNumericData::kBoolean, 1));
    type(perKey("keyWeightLocked", "kwl", MFnNumericData::kBoolean, 1));
    type(perKey("keyBreakdown", "kbd", MFnNumericData::kBoolean));
    type(perKey("keyTickDrawSpecial", "ktds", MFnNumericData::kBoolean));
    type(graph::boolean("useCurveColor", "ucc"));
    type(graph::color("curveColor", "cc"));
    type(enumeration("rotationInterpolation", "roti",
                     {"", "None", "Euler", "Quaternion", "Quaternion Slerp", "Quaternion Squad"}, 1));
}

} // namespace

void registerAnimCurves(graph::TypeRegistry& types) {
    constexpr std::pair<char, UnitKind> kResults[] = {
        {'L', UnitKind::Distance}, {'A', UnitKind::Angle}, {'U', UnitKind::None}, {'T', UnitKind::Time}};
    for (const char driver : {'T', 'U'}) {
        for (const auto& [letter, unit] : kResults)
            registerOne(types, std::string("animCurve") + driver + letter, driver == 'T', unit);
    }
}

} // namespace vesk::nodes
