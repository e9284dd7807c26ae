#include "host/nodes/arithmetic.h"

#include "host/nodes/declare.h"

#include <algorithm>
#include <cmath>

namespace vesk::nodes {

namespace {

using graph::enumeration;
using graph::real;

/// The attribute itself or the compound whose child it is.
bool asksFor(const Cell& requested, const Attribute* output) {
    return &requested.attr == output || requested.attr.parent == output;
}

AttrRef floats(const std::string& longName, const std::string& shortName, double value = 0) {
    return graph::tuple(longName, shortName, MFnNumericData::k3Float, {"X", "Y", "Z"}, UnitKind::None, value);
}

/// A node whose output is as many numbers as `calculate` fills, from a base of numbers by name.
class NumberNode : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        const Attribute* output = requested.attr.parent ? requested.attr.parent : &requested.attr;
        if (!isComputed(*output)) return ComputeResult::NotMine;
        Cell& cell = this->cell(*output);
        if (cell.isLeaf()) {
            graph::putNumber(cell, calculate(0));
        } else {
            for (int i = 0; i < static_cast<int>(output->children.size()); ++i)
                graph::putNumber(cell.child(i), calculate(i));
        }
        return ComputeResult::Done;
    }

  protected:
    /// The i-th number of the output.
    virtual double calculate(int i) = 0;
    double number(std::string_view name) { return valueOf(*this, name); }
    double number(std::string_view name, int i) { return graph::pullNumber(plug(*this, name).child(i)); }
    int operation() { return countOf(*this, "operation"); }
};

class UnitConversion : public NumberNode {
    using NumberNode::NumberNode;
    double calculate(int /*i*/) override { return number("input") * number("conversionFactor"); }
};

class Sum : public NumberNode {
    using NumberNode::NumberNode;
    double calculate(int /*i*/) override { return number("input1") + number("input2"); }
};

class Product : public NumberNode {
    using NumberNode::NumberNode;
    double calculate(int /*i*/) override { return number("input1") * number("input2"); }
};

class MultiplyDivide : public NumberNode {
    using NumberNode::NumberNode;
    double calculate(int i) override {
        const double a = number("input1", i), b = number("input2", i);
        switch (operation()) {
        case 1: return a * b;
        case 2: return b != 0 ? a / b : 0;
        case 3: return std::pow(a, b);
        default: return a;
        }
    }
};

class Reverse : public NumberNode {
    using NumberNode::NumberNode;
    double calculate(int i) override { return 1 - number("input", i); }
};

class Clamp : public NumberNode {
    using NumberNode::NumberNode;
    double calculate(int i) override {
        return std::max(number("min", i), std::min(number("max", i), number("input", i)));
    }
};

class Condition : public NumberNode {
    using NumberNode::NumberNode;
    double calculate(int i) override { return number(holds() ? "colorIfTrue" : "colorIfFalse", i); }
    bool holds() {
        const double a = number("firstTerm"), b = number("secondTerm");
        switch (operation()) {
        case 0: return a == b;
        case 1: return a != b;
        case 2: return a > b;
        case 3: return a >= b;
        case 4: return a < b;
        default: return a <= b;
        }
    }
};

/// Sums, differences and means of the elements that are there, for one, two and three numbers an element.
class PlusMinusAverage : public Node {
  public:
    using Node::Node;

    ComputeResult compute(Cell& requested) override {
        for (const char* size : {"1D", "2D", "3D"}) {
            const Attribute* output = type().find("output" + std::string(size));
            if (!asksFor(requested, output)) continue;
            Cell& elements = plug(*this, "input" + std::string(size));
            const auto indices = elements.existingIndices();
            Cell& result = cell(*output);
            if (result.isLeaf()) {
                graph::putNumber(result, combined(elements, indices, -1));
            } else {
                for (int i = 0; i < static_cast<int>(output->children.size()); ++i)
                    graph::putNumber(result.child(i), combined(elements, indices, i));
            }
            return ComputeResult::Done;
        }
        return ComputeResult::NotMine;
    }

  private:
    double combined(Cell& elements, const std::vector<int>& indices, int child) {
        const int operation = countOf(*this, "operation");
        double total = 0;
        bool first = true;
        for (const int index : indices) {
            Cell& element = elements.element(index);
            const double value = graph::pullNumber(child < 0 ? element : element.child(child));
            total += operation == 2 && !first ? -value : value;
            first = false;
            if (operation == 0) break;
        }
        return operation == 3 && !indices.empty() ? total / static_cast<double>(indices.size()) : total;
    }
};

template <class T>
NodeType& add(graph::TypeRegistry& types, const char* name, const std::vector<AttrRef>& inputs,
              const AttrRef& result) {
    NodeType& type = declare<T>(types, name, MFn::kDependencyNode);
    for (const auto& input : inputs)
        type(input);
    type(output(result));
    type.affectsAll(inputs, {result});
    return type;
}

void registerPlusMinusAverage(graph::TypeRegistry& types) {
    NodeType& type = declare<PlusMinusAverage>(types, "plusMinusAverage", MFn::kDependencyNode);
    const auto operation =
        type(enumeration("operation", "op", {"No operation", "Sum", "Subtract", "Average"}, 1));
    const auto add = [&](const AttrRef& input, const AttrRef& result) {
        type(input->multi());
        type(output(result));
        type.affectsAll({input, operation}, {result});
    };
    const auto pair = [](const char* longName, const char* shortName) {
        return graph::tuple(longName, shortName, MFnNumericData::k2Float, {"x", "y"});
    };
    const auto triple = [](const char* longName, const char* shortName) {
        return graph::tuple(longName, shortName, MFnNumericData::k3Float, {"x", "y", "z"});
    };
    add(floatNumber("input1D", "i1"), floatNumber("output1D", "o1"));
    add(pair("input2D", "i2"), pair("output2D", "o2"));
    add(triple("input3D", "i3"), triple("output3D", "o3"));
}

} // namespace

void registerArithmetic(graph::TypeRegistry& types) {
    const auto time = [](const char* longName, const char* shortName) {
        return graph::unit(longName, shortName, UnitKind::Time);
    };
    const auto factor = [] { return real("conversionFactor", "cf", 1); };
    add<UnitConversion>(types, "unitConversion", {real("input", "i"), factor()}, real("output", "o"));
    add<UnitConversion>(types, "timeToUnitConversion", {time("input", "i"), factor()}, real("output", "o"));
    add<UnitConversion>(types, "unitToTimeConversion", {real("input", "i"), factor()}, time("output", "o"));
    add<Sum>(types, "addDoubleLinear", {distance("input1", "i1"), distance("input2", "i2")},
             distance("output", "o"));
    add<Product>(types, "multDoubleLinear", {distance("input1", "i1"), distance("input2", "i2")},
                 distance("output", "o"));
    add<MultiplyDivide>(types, "multiplyDivide",
                        {enumeration("operation", "op", {"No operation", "Multiply", "Divide", "Power"}, 1),
                         floats("input1", "i1"), floats("input2", "i2", 1)},
                        floats("output", "o"));
    add<Reverse>(types, "reverse", {floats("input", "i")}, floats("output", "o"));
    add<Clamp>(types, "clamp",
               {graph::color("min", "mn"), graph::color("max", "mx"), graph::color("input", "ip")},
               graph::color("output", "op"));
    add<Condition>(types, "condition",
                   {enumeration("operation", "op",
                                {"Equal", "Not Equal", "Greater Than", "Greater or Equal", "Less Than",
                                 "Less or Equal"}),
                    floatNumber("firstTerm", "ft"), floatNumber("secondTerm", "st"),
                    graph::color("colorIfTrue", "ct"), graph::color("colorIfFalse", "cf", 1, 1, 1)},
                   graph::color("outColor", "oc"));
    registerPlusMinusAverage(types);
}

} // namespace vesk::nodes
