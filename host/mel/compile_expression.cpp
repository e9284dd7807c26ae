// The compiler's part for expressions.

#include "host/mel/compiler.h"

#include <algorithm>
#include <utility>

namespace vesk::mel {

namespace {

Operand constantOperand(Value value) {
    Operand operand;
    operand.type = value.type();
    operand.constant = std::move(value);
    return operand;
}

struct TypedOps {
    Op ints;
    Op floats;
    Op vectors;
};

TypedOps arithmetic(BinaryOp op) {
    switch (op) {
    case BinaryOp::Add: return {Op::AddInt, Op::AddFloat, Op::AddVector};
    case BinaryOp::Sub: return {Op::SubInt, Op::SubFloat, Op::SubVector};
    case BinaryOp::Mul: return {Op::MulInt, Op::MulFloat, Op::DotVector};
    case BinaryOp::Div: return {Op::DivInt, Op::DivFloat, Op::DivVector};
    case BinaryOp::Mod: return {Op::ModInt, Op::ModFloat, Op::ModVector};
    default: return {Op::ModInt, Op::ModFloat, Op::CrossVector};
    }
}

} // namespace

/// A call may have no value, then the operand's type is None; anything else has one.
Operand FunctionCompiler::expression(const Expr& expr, const Want& want) {
    builder_.setPlace(expr.at);
    switch (expr.kind) {
    case Expr::Kind::Constant: return constantOperand(static_cast<const ConstantExpr&>(expr).value);
    case Expr::Kind::Variable: return read(variableNamed(static_cast<const VariableExpr&>(expr)));
    case Expr::Kind::Index: return element(static_cast<const IndexExpr&>(expr), want);
    case Expr::Kind::Component: return component(static_cast<const ComponentExpr&>(expr));
    case Expr::Kind::Negate: return negate(static_cast<const UnaryExpr&>(expr), want);
    case Expr::Kind::Not:
    case Expr::Kind::Logic: return logic(expr, want);
    case Expr::Kind::Chain: return chain(static_cast<const ChainExpr&>(expr), want);
    case Expr::Kind::Choice: return choice(static_cast<const ChoiceExpr&>(expr), want);
    case Expr::Kind::Assign: return assign(static_cast<const AssignExpr&>(expr));
    case Expr::Kind::Step: return step(static_cast<const StepExpr&>(expr), true);
    case Expr::Kind::Cast: {
        const auto& cast = static_cast<const UnaryExpr&>(expr);
        return converted(valued(*cast.operand, {cast.type, std::nullopt}), cast.type, want);
    }
    case Expr::Kind::Call: return call(static_cast<const CallExpr&>(expr), want, true);
    case Expr::Kind::Catch: return catchExpr(static_cast<const CatchExpr&>(expr), want);
    case Expr::Kind::Vector: return vectorLiteral(static_cast<const ListExpr&>(expr), want);
    case Expr::Kind::Array: return arrayLiteral(static_cast<const ListExpr&>(expr), want);
    case Expr::Kind::Matrix: return matrixLiteral(static_cast<const ListExpr&>(expr));
    }
    return {};
}

/// An expression whose value is needed.
Operand FunctionCompiler::valued(const Expr& expr, const Want& want) {
    Operand operand = expression(expr, want);
    if (operand.type == Type::None) {
        const auto* called = expr.kind == Expr::Kind::Call ? &static_cast<const CallExpr&>(expr) : nullptr;
        fail(expr.at, called ? "\"" + called->name + "\" returns no value." : "There is no value here.");
    }
    return operand;
}

void FunctionCompiler::into(const Expr& expr, Type type, Reg reg) {
    const Operand value = valued(expr, {type, reg});
    builder_.setPlace(expr.at);
    store(value, type, reg);
}

/// Evaluates for the effects alone.
void FunctionCompiler::discard(const Expr& expr) {
    builder_.setPlace(expr.at);
    if (expr.kind == Expr::Kind::Call) {
        release(call(static_cast<const CallExpr&>(expr), {}, false));
    } else if (expr.kind == Expr::Kind::Step) {
        release(step(static_cast<const StepExpr&>(expr), false));
    } else {
        release(expression(expr));
    }
}

Operand FunctionCompiler::index(const Expr& expr) {
    Operand operand = valued(expr, {Type::Int, std::nullopt});
    builder_.setPlace(expr.at);
    return converted(std::move(operand), Type::Int);
}

Operand FunctionCompiler::element(const IndexExpr& expr, const Want& want) {
    Operand array = valued(*expr.array);
    const bool effects = expr.index->effects || (expr.column && expr.column->effects);
    array = kept(std::move(array), effects);
    if (expr.column) return matrixElement(expr, array, want);
    if (!isArray(array.type) && array.type != Type::Any) {
        fail(expr.at, "Data of type " + std::string(nameOf(array.type)) + " has no elements.");
    }
    const Operand at = index(*expr.index);
    builder_.setPlace(expr.at);
    const bool joined = array.type == Type::Floats && at.isTemporary();
    Operand result = joined ? joinedElement(array, at, want) : getElement(array, at, want);
    release(at);
    release(array);
    return result;
}

Operand FunctionCompiler::getElement(const Operand& array, const Operand& index, const Want& want) {
    const Type type = elementOf(array.type);
    Operand result = temporary(type, want);
    const Op op = type == Type::Int      ? Op::GetInt
                  : type == Type::Float  ? Op::GetFloat
                  : type == Type::Vector ? Op::GetVector
                  : type == Type::String ? Op::GetText
                                         : Op::GetAny;
    builder_.emit(op, result.reg, registerOf(array), registerOf(index));
    return result;
}

/// The same for floats and an index that nobody reads again.
Operand FunctionCompiler::joinedElement(const Operand& array, const Operand& index, const Want& want) {
    Operand result = temporary(Type::Float, want);
    const Reg from = registerOf(array);
    if (!builder_.joinElement(result.reg, from, index.reg)) {
        builder_.emit(Op::GetFloat, result.reg, from, index.reg);
    }
    return result;
}

Operand FunctionCompiler::matrixElement(const IndexExpr& expr, const Operand& matrix, const Want& want) {
    if (matrix.type != Type::Matrix) fail(expr.at, "Only a matrix has two indices.");
    const Operand row = kept(index(*expr.index), expr.column->effects);
    const Operand column = index(*expr.column);
    builder_.setPlace(expr.at);
    Operand result = temporary(Type::Float, want);
    builder_.emit(Op::GetMatrix, result.reg, registerOf(matrix), registerOf(row), registerOf(column));
    release(row);
    release(column);
    release(matrix);
    return result;
}

Operand FunctionCompiler::component(const ComponentExpr& expr) {
    Operand vector = valued(*expr.vector);
    builder_.setPlace(expr.at);
    if (vector.type != Type::Vector && vector.type != Type::Any && vector.type != Type::Matrix) {
        fail(expr.at, "Data of type " + std::string(nameOf(vector.type)) + " has no component.");
    }
    vector = converted(std::move(vector), Type::Vector);
    Operand component;
    component.type = Type::Float;
    component.kind = Operand::Kind::Variable;
    component.reg = static_cast<Reg>(registerOf(vector) + expr.component);
    if (!vector.isTemporary()) return component;
    Operand result = temporary(Type::Float);
    move(Type::Float, result.reg, component);
    release(vector);
    return result;
}

Operand FunctionCompiler::negate(const UnaryExpr& expr, const Want& want) {
    Operand operand = valued(*expr.operand);
    builder_.setPlace(expr.at);
    if (operand.isConstant()) return constantOperand(negated(operand.constant));
    if (operand.type == Type::String || isArray(operand.type)) {
        illegalOperation(BinaryOp::Sub, operand.type, operand.type);
    }
    const Type type = operand.type;
    Operand result = temporary(type, want);
    const Op op = type == Type::Int      ? Op::NegateInt
                  : type == Type::Float  ? Op::NegateFloat
                  : type == Type::Vector ? Op::NegateVector
                                         : Op::NegateAny;
    builder_.emit(op, result.reg, operand.reg);
    release(operand);
    return result;
}

Operand FunctionCompiler::chain(const ChainExpr& expr, const Want& want) {
    Operand left = valued(*expr.first);
    for (const ChainExpr::Link& link : expr.links) {
        left = kept(std::move(left), link.operand->effects);
        Operand right = valued(*link.operand);
        builder_.setPlace(link.at);
        // Only the last result may go where it is wanted: until then that place may still be read.
        const bool last = &link == &expr.links.back();
        left = binary(link.op, std::move(left), std::move(right), last ? want : Want{});
    }
    return left;
}

Operand FunctionCompiler::binary(BinaryOp op, Operand left, Operand right, const Want& want) {
    const Form form = formOf(op, left.type, right.type);
    if (form == Form::Illegal) illegalOperation(op, left.type, right.type);
    if (form == Form::Text && op == BinaryOp::Add) return joinTexts(std::move(left), std::move(right), want);
    const bool mayFail = op == BinaryOp::Div || op == BinaryOp::Mod || form == Form::Matrix;
    if (left.isConstant() && right.isConstant() && !mayFail) {
        return constantOperand(operate(op, left.constant, right.constant));
    }
    if (form == Form::Unknown || form == Form::Matrix) {
        return binaryUnknown(op, std::move(left), std::move(right), want);
    }

    Type operands = form == Form::Int ? Type::Int : form == Form::Float ? Type::Float : Type::Vector;
    if (form == Form::Text) operands = Type::String;
    if (form == Form::Scale) {
        if (left.type != Type::Vector) std::swap(left, right);
        right = converted(std::move(right), Type::Float);
    } else {
        left = converted(std::move(left), operands);
        right = converted(std::move(right), operands);
    }
    if (operands == Type::Vector && isComparison(op) && op < BinaryOp::Equal) {
        operands = Type::Float; // vectors are in the order of their lengths
        left = converted(std::move(left), operands);
        right = converted(std::move(right), operands);
    }
    if (isComparison(op)) {
        Operand result = compared(op, operands, left, right, want);
        release(left);
        release(right);
        return result;
    }
    if (form == Form::Int && right.isConstant() && (op == BinaryOp::Add || op == BinaryOp::Sub)) {
        const int by = right.constant.asInt();
        Operand result = temporary(Type::Int, want);
        builder_.emit(Op::StepInt, result.reg, registerOf(left), 0,
                      op == BinaryOp::Add ? by : subInts(0, by));
        release(left);
        return result;
    }
    const TypedOps ops = arithmetic(op);
    Op code = form == Form::Int ? ops.ints : form == Form::Float ? ops.floats : ops.vectors;
    if (form == Form::Scale) code = Op::ScaleVector;
    Operand result = temporary(resultOf(op, form), want);
    builder_.emit(code, result.reg, registerOf(left), registerOf(right));
    release(left);
    release(right);
    return result;
}

/// The operation on values whose types only the run knows.
Operand FunctionCompiler::binaryUnknown(BinaryOp op, Operand left, Operand right, const Want& want) {
    left = converted(std::move(left), Type::Any);
    right = converted(std::move(right), Type::Any);
    Operand result = temporary(Type::Any, isComparison(op) ? Want{} : want);
    builder_.emit(Op::BinaryAny, result.reg, registerOf(left), registerOf(right),
                  static_cast<std::int32_t>(op));
    release(left);
    release(right);
    return isComparison(op) ? converted(std::move(result), Type::Int, want) : result;
}

Operand FunctionCompiler::joinTexts(Operand left, Operand right, const Want& want) {
    left = converted(std::move(left), Type::String);
    right = converted(std::move(right), Type::String);
    if (left.isConstant() && right.isConstant()) {
        *left.constant.ifString() += *right.constant.ifString();
        return left;
    }
    if (left.isTemporary()) { // the sum of a chain so far: no new text for every piece
        builder_.emit(Op::Append, left.reg, registerOf(right));
        release(right);
        return left;
    }
    Operand result = temporary(Type::String, want);
    builder_.emit(Op::Join, result.reg, registerOf(left), registerOf(right));
    release(left);
    release(right);
    return result;
}

/// A comparison of two operands of one type.
Operand FunctionCompiler::compared(BinaryOp op, Type type, const Operand& left, const Operand& right,
                                   const Want& want) {
    Operand result = temporary(Type::Int, want);
    const Reg a = registerOf(left);
    const Reg b = registerOf(right);
    if (type == Type::String) {
        builder_.emit(Op::CompareText, result.reg, a, b, static_cast<std::int32_t>(op));
        return result;
    }
    const bool ints = type == Type::Int;
    switch (op) {
    case BinaryOp::Less: builder_.emit(ints ? Op::LessInt : Op::LessFloat, result.reg, a, b); break;
    case BinaryOp::LessEqual:
        builder_.emit(ints ? Op::LessEqualInt : Op::LessEqualFloat, result.reg, a, b);
        break;
    case BinaryOp::Greater: builder_.emit(ints ? Op::LessInt : Op::LessFloat, result.reg, b, a); break;
    case BinaryOp::GreaterEqual:
        builder_.emit(ints ? Op::LessEqualInt : Op::LessEqualFloat, result.reg, b, a);
        break;
    case BinaryOp::Equal:
        builder_.emit(ints                   ? Op::EqualInt
                      : type == Type::Vector ? Op::EqualVector
                                             : Op::EqualFloat,
                      result.reg, a, b);
        break;
    default:
        builder_.emit(ints                   ? Op::NotEqualInt
                      : type == Type::Vector ? Op::NotEqualVector
                                             : Op::NotEqualFloat,
                      result.reg, a, b);
    }
    return result;
}

Operand FunctionCompiler::vectorLiteral(const ListExpr& expr, const Want& want) {
    std::vector<Operand> parts;
    bool constant = true;
    for (std::size_t i = 0; i < expr.items.size(); ++i) {
        const bool later = (i < 1 && expr.items[1]->effects) || (i < 2 && expr.items[2]->effects);
        parts.push_back(kept(converted(valued(*expr.items[i]), Type::Float), later));
        constant = constant && parts.back().isConstant();
    }
    if (constant) {
        return constantOperand(
            MVector(parts[0].constant.asFloat(), parts[1].constant.asFloat(), parts[2].constant.asFloat()));
    }
    builder_.setPlace(expr.at);
    Operand result = temporary(Type::Vector, want);
    builder_.emit(Op::MakeVector, result.reg, registerOf(parts[0]), registerOf(parts[1]),
                  registerOf(parts[2]));
    for (const Operand& part : parts)
        release(part);
    return result;
}

Operand FunctionCompiler::matrixLiteral(const ListExpr& expr) {
    const std::size_t columns = expr.items.size() / static_cast<std::size_t>(expr.rows);
    constexpr std::size_t longest = 1024;
    if (columns > longest || expr.rows > static_cast<int>(longest)) {
        fail(expr.at, "A matrix has at most " + std::to_string(longest) + " rows and columns.");
    }
    Operand result = temporary(Type::Matrix);
    builder_.emit(Op::MakeMatrix, result.reg, static_cast<Reg>(expr.rows), static_cast<Reg>(columns));
    for (std::size_t i = 0; i < expr.items.size(); ++i) {
        const Operand item = converted(valued(*expr.items[i]), Type::Float);
        builder_.emit(Op::SetMatrix, result.reg, builder_.constant(static_cast<int>(i / columns)),
                      builder_.constant(static_cast<int>(i % columns)), registerOf(item));
        release(item);
    }
    return result;
}

/// The array type of a literal: what is wanted if that is an array, else the widest of its items.
Type FunctionCompiler::literalType(const ListExpr& expr, const std::vector<Operand>& items,
                                   const Want& want) const {
    if (isArray(want.type)) return want.type;
    if (items.empty()) fail(expr.at, "The type of this empty array is not known.");
    Type type = Type::Int;
    for (const Operand& item : items) {
        if (arrayOf(item.type) == Type::None && item.type != Type::Any) {
            fail(expr.at, "There are no arrays of type " + std::string(nameOf(item.type)) + ".");
        }
        type = std::max(type, item.type); // int, float, string, vector, in the order of the types
    }
    return type == Type::Any ? Type::Any : arrayOf(type);
}

Operand FunctionCompiler::arrayLiteral(const ListExpr& expr, const Want& want) {
    const Want itemWant{isArray(want.type) ? elementOf(want.type) : Type::None, std::nullopt};
    std::vector<Operand> items;
    bool constant = true;
    for (const ExprPtr& item : expr.items) {
        items.push_back(kept(valued(*item, itemWant), expr.effects));
        constant = constant && items.back().isConstant();
    }
    builder_.setPlace(expr.at);
    const Type type = literalType(expr, items, want);
    if (constant) {
        Value array = Value::zero(type);
        for (std::size_t i = 0; i < items.size(); ++i)
            array.setElement(i, items[i].constant);
        return constantOperand(std::move(array));
    }
    Operand result = temporary(type);
    builder_.emit(Op::ZeroObject, result.reg, static_cast<Reg>(type));
    const Operand counter = temporary(Type::Int);
    builder_.emit(Op::MoveNumber, counter.reg, builder_.constant(0));
    Variable array;
    array.type = type;
    array.reg = result.reg;
    for (Operand& item : items) {
        const Operand value = converted(std::move(item), elementOf(type));
        setElement(array, counter, value);
        release(value);
        builder_.emit(Op::StepInt, counter.reg, counter.reg, 0, 1);
    }
    release(counter);
    return result;
}

} // namespace vesk::mel
