#include "host/nodes/expression_node.h"

#include "host/graph/scene.h"
#include "host/mel/mentions.h"
#include "host/nodes/declare.h"
#include "host/nodes/placeholder.h"

#include <array>

namespace vesk::nodes {

namespace {

using mel::Mention;

/// Elements beyond these are no inputs or outputs of an expression.
constexpr int kMostPlugs = 1 << 16;

/// The body of the procedure: placeholders and the time become its parameters.
std::string bodyOf(std::string_view text) {
    return mel::replaceMentions(text, mel::mentionsIn(text), [text](const Mention& mention) -> std::string {
        switch (mention.kind) {
        case Mention::Kind::Time: return "$expressionTime";
        case Mention::Kind::Frame: return "$expressionFrame";
        case Mention::Kind::Input: return "$expressionInput[" + std::to_string(mention.index) + ']';
        case Mention::Kind::Output: return "$expressionOutput[" + std::to_string(mention.index) + ']';
        case Mention::Kind::Plug:
        case Mention::Kind::Name: break;
        }
        return std::string(text.substr(mention.begin, mention.end - mention.begin));
    });
}

class ExpressionNode : public PlaceholderNode {
  public:
    ExpressionNode(const NodeType& type, mel::Machine& machine) : PlaceholderNode(type), machine_(machine) {}

    ComputeResult compute(Cell& requested) override {
        Cell& outputs = plug(*this, "output");
        if (&requested.attr != &outputs.attr) return ComputeResult::NotMine;
        if (!prepare()) return keepOutputs(outputs);
        const double ticks = valueOf(*this, "time");
        const std::array<mel::Value, 4> arguments{ticks / kTicksPerSecond, ticks / scene()->ticksPerFrame(),
                                                  numbersOf(plug(*this, "input"), true),
                                                  numbersOf(outputs, false)};
        const auto result = machine_.callProc(procedure_, arguments);
        if (!result.ok) return keepOutputs(outputs);
        const auto numbers = result.value.asFloatArray();
        for (const auto& element : outputs.children) {
            const auto index = static_cast<std::size_t>(element->logicalIndex);
            if (index < numbers.read().size()) graph::putNumber(*element, numbers.read()[index]);
        }
        return ComputeResult::Done;
    }

  private:
    static constexpr double kTicksPerSecond = 6000;

    /// After an error, which is told once for all outputs.
    static ComputeResult keepOutputs(const Cell& outputs) {
        for (const auto& element : outputs.children)
            graph::markClean(*element);
        return ComputeResult::Done;
    }

    /// Defines the procedure when text or name have changed; false when the text is not right, which is said
    /// once.
    bool prepare() {
        const std::string text = textIn(plug(*this, "internalExpression"));
        if (text == text_ && name() == definedAs_) return isRight_;
        static int count = 0;
        if (procedure_.empty()) procedure_ = "vesk_expression_" + std::to_string(++count);
        text_ = text;
        definedAs_ = name();
        return isRight_ = machine_.run(expressionProcedure(procedure_, text), definedAs_).ok;
    }

    /// The elements' numbers by index. Of outputs those of the last evaluation.
    static mel::FloatArray numbersOf(Cell& array, bool pull) {
        mel::FloatArray numbers;
        for (const int index : array.existingIndices()) {
            if (index >= kMostPlugs) break;
            Cell& element = array.element(index);
            numbers.resize(static_cast<std::size_t>(index) + 1);
            numbers.back() = pull ? graph::pullNumber(element) : element.number;
        }
        return numbers;
    }

    mel::Machine& machine_;
    std::string procedure_, text_, definedAs_;
    bool isRight_ = false;
};

} // namespace

std::string expressionProcedure(const std::string& name, std::string_view text) {
    // In one line with the text's first one, so that errors tell the lines of the text.
    return "global proc float[] " + name +
           "(float $expressionTime, float $expressionFrame, float $expressionInput[], float "
           "$expressionOutput[]) {" +
           bodyOf(text) + "\n;return $expressionOutput;}";
}

void registerExpression(graph::TypeRegistry& types, mel::Machine& machine) {
    (void)types.add(std::make_unique<NodeType>(
        "expression", MFn::kDependencyNode, types.find("node"),
        [&machine](const NodeType& type) -> Ref<Node> { return makeRef<ExpressionNode>(type, machine); }));
    NodeType& type = *types.find("expression");
    const std::vector<AttrRef> inputs = {type(graph::text("internalExpression", "ixp")),
                                         type(graph::real("input", "in")->multi()),
                                         type(graph::unit("time", "tim", UnitKind::Time))};
    type.affectsAll(inputs, {type(graph::real("output", "out")->multi()->output())});
    type(graph::integer("animated", "ani", 1));
}

} // namespace vesk::nodes
