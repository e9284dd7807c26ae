// The compiler's part for truth: conditions as jumps, and the expressions that are made of them.

#include "host/mel/compiler.h"

#include <utility>

namespace vesk::mel {

namespace {

constexpr std::int32_t kYes = 1;
constexpr std::int32_t kNo = 0;

/// The jump for a comparison of numbers, and whether its operands change places.
struct ComparedJump {
    Op op;
    bool swapped;
};

ComparedJump intJump(BinaryOp op, bool sense) {
    switch (op) {
    case BinaryOp::Less:
        return sense ? ComparedJump{Op::JumpLessInt, false} : ComparedJump{Op::JumpLessEqualInt, true};
    case BinaryOp::LessEqual:
        return sense ? ComparedJump{Op::JumpLessEqualInt, false} : ComparedJump{Op::JumpLessInt, true};
    case BinaryOp::Greater: return intJump(BinaryOp::LessEqual, !sense);
    case BinaryOp::GreaterEqual: return intJump(BinaryOp::Less, !sense);
    case BinaryOp::Equal: return {sense ? Op::JumpEqualInt : Op::JumpNotEqualInt, false};
    default: return {sense ? Op::JumpNotEqualInt : Op::JumpEqualInt, false};
    }
}

ComparedJump floatJump(BinaryOp op, bool sense) {
    switch (op) {
    case BinaryOp::Less: return {sense ? Op::JumpLessFloat : Op::JumpNotLessFloat, false};
    case BinaryOp::LessEqual: return {sense ? Op::JumpLessEqualFloat : Op::JumpNotLessEqualFloat, false};
    case BinaryOp::Greater: return {sense ? Op::JumpLessFloat : Op::JumpNotLessFloat, true};
    case BinaryOp::GreaterEqual: return {sense ? Op::JumpLessEqualFloat : Op::JumpNotLessEqualFloat, true};
    case BinaryOp::Equal: return {sense ? Op::JumpEqualFloat : Op::JumpNotEqualFloat, false};
    default: return {sense ? Op::JumpNotEqualFloat : Op::JumpEqualFloat, false};
    }
}

/// The jump for a comparison of an int with a small constant, which needs no register.
struct SmallJump {
    Op op;
    std::int64_t number;
};

std::optional<SmallJump> smallJump(BinaryOp op, bool sense, const Operand& left, const Operand& right) {
    if (left.isConstant() == right.isConstant()) return std::nullopt;
    const std::int64_t number = (right.isConstant() ? right : left).constant.asInt();
    const auto asSmall = [](Op code, std::int64_t by) -> std::optional<SmallJump> {
        if (!isSmall(by)) return std::nullopt;
        return SmallJump{code, by};
    };
    if (op == BinaryOp::Equal || op == BinaryOp::NotEqual) {
        return asSmall((op == BinaryOp::Equal) == sense ? Op::JumpEqualSmall : Op::JumpNotEqualSmall, number);
    }
    // `number < n` is `n > number`; of the false forms `!(n < number)` is `n > number - 1`.
    const bool orEqual = op == BinaryOp::LessEqual || op == BinaryOp::GreaterEqual;
    const bool less = (op == BinaryOp::Less || op == BinaryOp::LessEqual) == right.isConstant();
    const bool below = less == sense;
    const bool inclusive = orEqual == sense;
    if (below) return asSmall(Op::JumpLessSmall, inclusive ? number + 1 : number);
    return asSmall(Op::JumpGreaterSmall, inclusive ? number - 1 : number);
}

Operand intConstant(int value) {
    Operand operand;
    operand.type = Type::Int;
    operand.constant = value;
    return operand;
}

} // namespace

/// Adds jumps that are taken when the expression is true (`sense`) or false; else the code goes on.
void FunctionCompiler::jumpWhen(const Expr& expr, bool sense, Jumps& jumps) {
    if (expr.kind == Expr::Kind::Not) {
        jumpWhen(*static_cast<const UnaryExpr&>(expr).operand, !sense, jumps);
        return;
    }
    if (expr.kind == Expr::Kind::Logic) {
        jumpWhenLogic(static_cast<const LogicExpr&>(expr), sense, jumps);
        return;
    }
    if (expr.kind == Expr::Kind::Chain &&
        jumpWhenCompared(static_cast<const ChainExpr&>(expr), sense, jumps)) {
        return;
    }
    builder_.setPlace(expr.at);
    const Operand value = truth(valued(expr));
    if (value.isConstant()) {
        if (value.constant.asBool() == sense) jumps.push_back(builder_.jump(Op::Jump));
        return;
    }
    jumps.push_back(builder_.jump(sense ? Op::JumpIf : Op::JumpUnless, value.reg));
    release(value);
}

void FunctionCompiler::jumpWhenLogic(const LogicExpr& expr, bool sense, Jumps& jumps) {
    // An "and" is decided by the first false operand, an "or" by the first true one.
    const bool deciding = !expr.isAnd;
    if (sense == deciding) {
        for (const ExprPtr& operand : expr.operands)
            jumpWhen(*operand, sense, jumps);
        return;
    }
    Jumps decided;
    for (std::size_t i = 0; i + 1 < expr.operands.size(); ++i)
        jumpWhen(*expr.operands[i], deciding, decided);
    jumpWhen(*expr.operands.back(), sense, jumps);
    builder_.landHere(decided);
}

/// One comparison of numbers as one instruction; false when it is anything else, and nothing is emitted.
bool FunctionCompiler::jumpWhenCompared(const ChainExpr& expr, bool sense, Jumps& jumps) {
    if (expr.links.size() != 1 || !isComparison(expr.links.front().op)) return false;
    const ChainExpr::Link& link = expr.links.front();
    Operand left = kept(valued(*expr.first), link.operand->effects);
    Operand right = valued(*link.operand);
    builder_.setPlace(link.at);
    const Form form = formOf(link.op, left.type, right.type);
    if ((form != Form::Int && form != Form::Float) || (left.isConstant() && right.isConstant())) {
        const Operand value = truth(binary(link.op, std::move(left), std::move(right), {}));
        jumps.push_back(builder_.jump(sense ? Op::JumpIf : Op::JumpUnless, registerOf(value)));
        release(value);
        return true;
    }
    const Type type = form == Form::Int ? Type::Int : Type::Float;
    left = converted(std::move(left), type);
    right = converted(std::move(right), type);
    if (const std::optional<SmallJump> small =
            form == Form::Int ? smallJump(link.op, sense, left, right) : std::nullopt) {
        const Operand& number = right.isConstant() ? left : right;
        jumps.push_back(builder_.jump(small->op, registerOf(number), static_cast<Reg>(small->number)));
        release(number);
        return true;
    }
    const ComparedJump jump = form == Form::Int ? intJump(link.op, sense) : floatJump(link.op, sense);
    const Reg a = registerOf(jump.swapped ? right : left);
    const Reg b = registerOf(jump.swapped ? left : right);
    jumps.push_back(builder_.jump(jump.op, a, b));
    release(left);
    release(right);
    return true;
}

/// The operand as an int that is not 0 when it is true.
Operand FunctionCompiler::truth(Operand operand) {
    if (operand.type == Type::Int) return operand;
    if (!isConvertible(operand.type, Type::Int)) cannotConvert(operand.type, Type::Int);
    if (operand.isConstant()) return intConstant(operand.constant.asBool() ? 1 : 0);
    if (operand.type == Type::Any) {
        Operand result = temporary(Type::Int);
        builder_.emit(Op::TruthOfAny, result.reg, operand.reg);
        release(operand);
        return result;
    }
    const Operand number = converted(std::move(operand), Type::Float);
    Operand result = temporary(Type::Int);
    builder_.emit(Op::TruthOfFloat, result.reg, number.reg);
    release(number);
    return result;
}

/// `!a`, `a && b`, `a || b` as a value.
Operand FunctionCompiler::logic(const Expr& expr, const Want& want) {
    if (expr.kind == Expr::Kind::Not) {
        const Operand value = truth(valued(*static_cast<const UnaryExpr&>(expr).operand));
        if (value.isConstant()) return intConstant(value.constant.asBool() ? 0 : 1);
        Operand result = temporary(Type::Int, want);
        builder_.emit(Op::Not, result.reg, value.reg);
        release(value);
        return result;
    }
    Jumps isFalse;
    jumpWhen(expr, false, isFalse);
    Operand result = temporary(Type::Int, want);
    builder_.emit(Op::MoveNumber, result.reg, builder_.constant(kYes));
    const std::size_t end = builder_.jump(Op::Jump);
    builder_.landHere(isFalse);
    builder_.emit(Op::MoveNumber, result.reg, builder_.constant(kNo));
    builder_.land(end, builder_.here());
    return result;
}

namespace {

/// The one type that both results of `?:` are converted to.
Type commonType(Type a, Type b) {
    if (a == b) return a;
    if (a == Type::None || b == Type::None) cannotConvert(Type::None, a == Type::None ? b : a);
    if (a == Type::Any || b == Type::Any) return Type::Any;
    for (const Type wider : {Type::String, Type::Matrix, Type::Vector, Type::Floats, Type::Float}) {
        if (a != wider && b != wider) continue;
        if (!isConvertible(a, wider)) cannotConvert(a, wider);
        if (!isConvertible(b, wider)) cannotConvert(b, wider);
        return wider;
    }
    cannotConvert(b, a);
}

} // namespace

Operand FunctionCompiler::choice(const ChoiceExpr& expr, const Want& want) {
    Jumps otherwise;
    jumpWhen(*expr.condition, false, otherwise);
    // The first result waits in a register of its own type; when the second needs a common one, both are
    // converted to that.
    Operand yes = valued(*expr.yes, {want.type, std::nullopt});
    Operand first = temporary(yes.type);
    const Type firstType = yes.type;
    store(yes, firstType, first.reg);
    const std::size_t done = builder_.jump(Op::Jump);
    builder_.landHere(otherwise);
    Operand no = valued(*expr.no, {want.type, std::nullopt});
    const Type type = commonType(firstType, no.type);
    if (type == firstType) {
        store(no, type, first.reg);
        builder_.land(done, builder_.here());
        return first;
    }
    Operand result = temporary(type, want);
    store(no, type, result.reg);
    const std::size_t end = builder_.jump(Op::Jump);
    builder_.land(done, builder_.here());
    store(first, type, result.reg);
    builder_.land(end, builder_.here());
    return result;
}

} // namespace vesk::mel
